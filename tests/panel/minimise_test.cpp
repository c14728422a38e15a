// A panel as a strip, and open again.

#include "Panel.h"

#include <formweave/KsTopComponent.h>

namespace {

class Strip : public PanelTest {
protected:
    static constexpr const char* children =
        " DialogCheckBox { auditorID \"a\" label \"First\" onString \"on\" } "
        "RowDialog { auditorID \"rows\" DialogCheckBox { auditorID \"b\" label \"Second\" } } ";
    KsTopLevelDialog* panel(const std::string& fields = "")
    {
        return add("TopLevelDialog { position3D 100 50 0 width 300 height 100 label \"Title\" " +
                   fields + children + "}");
    }
    bool showsAllChildren(KsTopLevelDialog* dialog)
    {
        return isVisible(child(dialog, "a")) && isVisible(child(dialog, "b")) &&
               isVisible(child<KsRowDialog>(dialog, "rows"));
    }
    bool showsNoChild(KsTopLevelDialog* dialog)
    {
        return !isVisible(child(dialog, "a")) && !isVisible(child(dialog, "b")) &&
               !isVisible(child<KsRowDialog>(dialog, "rows"));
    }
    /// The upper left corner of what is drawn as the frame, y downward.
    KbVec3f corner(KsTopLevelDialog* dialog)
    {
        const KbBox3f box = boxOf(dialog, "frameSep");
        return KbVec3f(box.getMin()[0], -box.getMax()[1], box.getMin()[2]);
    }
};

} // namespace

TEST_F(Strip, isTwentyHighAndHidesTheChildren)
{
    KsTopLevelDialog* dialog = panel();
    EXPECT_TRUE(showsAllChildren(dialog));
    dialog->minimized = true;
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 20, 1)));
    EXPECT_TRUE(showsNoChild(dialog));
    const KbBox3f box = boxOf(dialog, "frameSep");
    const KbBox3f button = boxOf(dialog, "minSep");
    EXPECT_TRUE(isNear(box.getMin(), KbVec3f(100, -70, 0)));
    EXPECT_TRUE(isNear(box.getMax(), KbVec3f(408, -50, 1)));
    EXPECT_TRUE(isNear(button.getCenter(), KbVec3f(408 - 12, -60, 1.1f)));
    EXPECT_NEAR(boxOf(firstIn<KsText3>(dialog, "labelSep")).getCenter()[1], -60, 1e-2);
    EXPECT_NEAR(boxOf(firstIn<KsText3>(dialog, "labelSep")).getMin()[0], 112, 1.5);
}

TEST_F(Strip, opensAgainAsItWas)
{
    KsTopLevelDialog* dialog = panel();
    const KbBox3f whole = boxOf(dialog);
    const KbBox3f title = boxOf(dialog, "labelSep");
    const KbBox3f b = boxOf(child(dialog, "b"));
    for (int i = 0; i < 3; ++i) {
        clickButton(dialog);
        EXPECT_TRUE(dialog->minimized);
        EXPECT_TRUE(showsNoChild(dialog));
        clickButton(dialog);
        EXPECT_FALSE(dialog->minimized);
        EXPECT_TRUE(showsAllChildren(dialog));
        EXPECT_TRUE(boxOf(dialog) == whole);
        EXPECT_TRUE(boxOf(dialog, "labelSep") == title);
        EXPECT_TRUE(boxOf(child(dialog, "b")) == b);
    }
    EXPECT_TRUE(click(middleOf(child(dialog, "b"), "stateSep")));
    EXPECT_TRUE(child(dialog, "b")->state);
}

TEST_F(Strip, ofTheFirstTimeStandsAtThePanelsCornerEvenWithAPositionOfItsOwn)
{
    for (const char* fields : {"independentMinimizedPosition TRUE minimized3DPosition 7 8 9",
                               "independentMinimizedPosition FALSE"}) {
        KsTopLevelDialog* dialog = panel(fields);
        clickButton(dialog);
        EXPECT_TRUE(isNear(corner(dialog), KbVec3f(100, 50, 0))) << fields;
        EXPECT_TRUE(isNear(dialog->minimized3DPosition, KbVec3f(100, 50, 0))) << fields;
        scene->removeChild(scene->findChild(dialog));
    }
}

TEST_F(Strip, ofTheSecondTimeStandsWhereItWasDragged)
{
    KsTopLevelDialog* dialog = panel();
    clickButton(dialog);
    drag(titleOf(dialog), 60, -100);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(160, 150, 0)));
    clickButton(dialog);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(100, 50, 0))) << "the panel has its own place";
    drag(titleOf(dialog), 30, -30);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(130, 80, 0)));
    clickButton(dialog);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(160, 150, 0)));
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(130, 80, 0)));
}

TEST_F(Strip, withASharedPositionTakesThePanelAlongWhenItIsDragged)
{
    KsTopLevelDialog* dialog = panel("independentMinimizedPosition FALSE");
    const KbBox3f a = boxOf(child(dialog, "a"));
    clickButton(dialog);
    drag(titleOf(dialog), 60, -100);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(160, 150, 0)));
    clickButton(dialog);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(160, 150, 0)));
    EXPECT_TRUE(isNear(boxOf(child(dialog, "a")).getMin(), a.getMin() + KbVec3f(60, -100, 0)));
    // And the panel the strip.
    drag(titleOf(dialog), -20, 10);
    EXPECT_TRUE(isNear(dialog->minimized3DPosition, KbVec3f(140, 140, 0)));
    clickButton(dialog);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(140, 140, 0)));
}

TEST_F(Strip, withASharedPositionAndHiddenChildrenOpensAsAWhole)
{
    KsTopLevelDialog* dialog = panel("independentMinimizedPosition FALSE hideChildren TRUE");
    const KbBox3f a = boxOf(child(dialog, "a"));
    clickButton(dialog);
    drag(titleOf(dialog), 60, -100);
    clickButton(dialog);
    EXPECT_TRUE(isNear(boxOf(child(dialog, "a")).getMin(), a.getMin() + KbVec3f(60, -100, 0)));
    EXPECT_TRUE(showsAllChildren(dialog));
}

TEST_F(Strip, sharesAndPartsItsPositionWhenTheApplicationSaysSo)
{
    KsTopLevelDialog* dialog = panel();
    dialog->independentMinimizedPosition = false;
    EXPECT_EQ(dialog->minimized3DPosition.getConnectedField(), &dialog->position3D);
    dialog->position3D = KbVec3f(1, 2, 3);
    EXPECT_TRUE(isNear(dialog->minimized3DPosition, KbVec3f(1, 2, 3)));
    dialog->minimized = true;
    EXPECT_EQ(dialog->position3D.getConnectedField(), &dialog->minimized3DPosition);
    EXPECT_FALSE(dialog->minimized3DPosition.isConnected());
    dialog->independentMinimizedPosition = true;
    EXPECT_FALSE(dialog->position3D.isConnected());
    dialog->minimized3DPosition = KbVec3f(9, 9, 9);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(1, 2, 3)));
    dialog->independentMinimizedPosition = false;
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(9, 9, 9)));
}

TEST_F(Strip, leavesAConnectionThatTheApplicationMade)
{
    KsTopLevelDialog* dialog = panel();
    KsRef<KsTranslation> source(new KsTranslation);
    dialog->position3D.connectFrom(&source->translation);
    dialog->minimized = true;
    dialog->minimized = false;
    dialog->independentMinimizedPosition = true;
    EXPECT_EQ(dialog->position3D.getConnectedField(), &source->translation);
    source->translation = KbVec3f(5, 6, 7);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(5, 6, 7)));
}

TEST_F(Strip, doesNotWriteTheConnectionThatItMade)
{
    KsTopLevelDialog* dialog = panel("independentMinimizedPosition FALSE");
    clickButton(dialog);
    ASSERT_TRUE(dialog->position3D.isConnected());
    const std::string asStrip = written(dialog);
    EXPECT_EQ(asStrip.find(" = "), std::string::npos) << asStrip;
    EXPECT_EQ(asStrip.find("USE"), std::string::npos) << asStrip;
    clickButton(dialog);
    ASSERT_TRUE(dialog->minimized3DPosition.isConnected());
    const std::string open = written(dialog);
    EXPECT_EQ(open.find(" = "), std::string::npos) << open;
    // What is written can be read, and is as it was.
    const auto again = read<>(open.substr(open.find("TopLevelDialog")));
    ASSERT_TRUE(again);
    EXPECT_FALSE(again->position3D.isConnected());
    EXPECT_FALSE(again->minimized3DPosition.isConnected());
    EXPECT_TRUE(isNear(again->position3D, KbVec3f(100, 50, 0)));
}

TEST_F(Strip, takesAChildInWithoutShowingItUntilItOpens)
{
    KsTopLevelDialog* dialog = panel();
    clickButton(dialog);
    auto* box = new KsDialogCheckBox;
    box->auditorID = "new";
    dialog->addChild(box);
    auto* inGroup = new KsDialogCheckBox;
    child<KsRowDialog>(dialog, "rows")->addChild(inGroup);
    frame();
    EXPECT_TRUE(box->isBuilt3D());
    EXPECT_FALSE(isVisible(box));
    EXPECT_FALSE(isVisible(inGroup));
    EXPECT_TRUE(showsNoChild(dialog));
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 20, 1))) << "still a strip";
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(100, 50, 0)));
    clickButton(dialog);
    EXPECT_TRUE(isVisible(box));
    EXPECT_TRUE(isVisible(inGroup));
    EXPECT_TRUE(showsAllChildren(dialog));
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 127, 1)));
}

TEST_F(Strip, staysOneWhenItsTreeIsLaidOutAnew)
{
    KsTopLevelDialog* dialog = panel("windowResizedByChildren TRUE");
    clickButton(dialog);
    drag(titleOf(dialog), 60, -100);
    dialog->updateAfterSceneGraphChange();
    frame();
    EXPECT_TRUE(showsNoChild(dialog));
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 20, 1)));
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(160, 150, 0)));
    EXPECT_NEAR(boxOf(dialog, "labelSep").getCenter()[1], -160, 1e-2);
}

TEST_F(Strip, thatIsHiddenAndShownAgainIsStillAStrip)
{
    KsTopLevelDialog* dialog = panel();
    dialog->minimized = true;
    dialog->show3D(0);
    EXPECT_FALSE(isVisible(dialog));
    dialog->show3D(1);
    EXPECT_TRUE(showsNoChild(dialog));
    EXPECT_TRUE(isVisible(dialog->getAnyPart("frameSep", false)));
    dialog->minimized = false;
    EXPECT_TRUE(showsAllChildren(dialog));
}

TEST_F(Strip, thatOpensWhileItIsHiddenShowsNothing)
{
    KsTopLevelDialog* dialog = panel();
    dialog->minimized = true;
    dialog->show3D(0);
    dialog->minimized = false;
    EXPECT_FALSE(isVisible(dialog));
    EXPECT_TRUE(showsNoChild(dialog));
    dialog->show3D(1);
    EXPECT_TRUE(showsAllChildren(dialog));
}

TEST_F(Strip, childrenThatJoinAHiddenPanelStayHidden)
{
    KsTopLevelDialog* dialog = panel();
    dialog->show3D(0);
    auto* box = new KsDialogCheckBox;
    dialog->addChild(box);
    frame();
    EXPECT_TRUE(box->isBuilt3D());
    EXPECT_FALSE(isVisible(box));
    EXPECT_FALSE(isVisible(dialog));
    dialog->show3D(1);
    EXPECT_TRUE(isVisible(box));
}

TEST_F(Strip, aPanelThatIsBuiltMinimizedStandsOpenUntilTheFieldChanges)
{
    KsTopLevelDialog* dialog = panel("minimized TRUE minimized3DPosition 7 8 9");
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 127, 1)));
    EXPECT_TRUE(showsAllChildren(dialog));
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(100, 50, 0)));
    EXPECT_NEAR(boxOf(dialog, "labelSep").getCenter()[1], -62, 1e-2) << "the title is on top";
    // As an open panel it is dragged as a whole.
    const KbBox3f a = boxOf(child(dialog, "a"));
    drag(titleOf(dialog), 10, -10);
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(110, 60, 0)));
    EXPECT_TRUE(isNear(boxOf(child(dialog, "a")).getMin(), a.getMin() + KbVec3f(10, -10, 0)));
    dialog->minimized = true;
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 20, 1)));
    EXPECT_TRUE(showsNoChild(dialog));
    EXPECT_TRUE(isNear(corner(dialog), KbVec3f(110, 60, 0)));
}

TEST_F(Strip, ofADialogThatHasAWindowOnlyChangesNothing)
{
    for (const char* independent : {"TRUE", "FALSE"}) {
        SCOPED_TRACE(independent);
        const auto dialog =
            read<>("TopLevelDialog { position3D 100 50 0 minimized3DPosition 4 5 6 "
                   "independentMinimizedPosition " +
                   std::string(independent) + " DialogCheckBox { auditorID \"a\" } }");
        dialog->buildDialog();
        const auto expectItsPlaces = [&] {
            EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(100, 50, 0)));
            EXPECT_TRUE(isNear(dialog->minimized3DPosition, KbVec3f(4, 5, 6)));
            EXPECT_FALSE(dialog->position3D.isConnected());
            EXPECT_FALSE(dialog->minimized3DPosition.isConnected());
        };
        for (const bool minimized : {true, false, true}) {
            dialog->minimized = minimized;
            expectItsPlaces();
        }
        const bool isIndependent = dialog->independentMinimizedPosition;
        dialog->independentMinimizedPosition = !isIndependent;
        expectItsPlaces();
        dialog->independentMinimizedPosition = isIndependent;
        dialog->minimized = false;
        EXPECT_FALSE(dialog->isBuilt3D());
        // A panel that is built later begins as one that was read does.
        scene->addChild(dialog.get());
        frame();
        EXPECT_TRUE(isNear(corner(dialog), KbVec3f(100, 50, 0)));
        clickButton(dialog);
        EXPECT_TRUE(isNear(corner(dialog), KbVec3f(100, 50, 0)));
        EXPECT_EQ(dialog->position3D.isConnected(), !isIndependent);
        delete dialog->getBaseWidget();
        scene->removeChild(scene->findChild(dialog.get()));
    }
}

TEST_F(Strip, thePressedButtonShowsIt)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f button = middleOf(dialog, "minSep");
    EXPECT_TRUE(press(button));
    EXPECT_EQ(shown(dialog, "minSwtch"), 1);
    EXPECT_FALSE(dialog->minimized);
    EXPECT_TRUE(release(button));
    EXPECT_EQ(shown(dialog, "minSwtch"), 0);
    EXPECT_TRUE(dialog->minimized);
}

TEST_F(Strip, aButtonThatIsReleasedElsewhereCountsAllTheSame)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f button = middleOf(dialog, "minSep");
    press(button);
    EXPECT_EQ(shown(dialog, "minSwtch"), 1);
    move(KbVec2f(button[0] - 150, button[1] - 200));
    EXPECT_EQ(shown(dialog, "minSwtch"), 1);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(100, 50, 0))) << "the button does not drag";
    release(KbVec2f(5, 5));
    EXPECT_EQ(shown(dialog, "minSwtch"), 0);
    EXPECT_TRUE(dialog->minimized);
}

TEST_F(Strip, aPressThatBeganElsewhereDoesNotCount)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f button = middleOf(dialog, "minSep");
    press(titleOf(dialog));
    release(button);
    EXPECT_FALSE(dialog->minimized);
    press(KbVec2f(2, 2));
    release(button);
    EXPECT_FALSE(dialog->minimized);
}

TEST_F(Strip, theOtherButtonsOfTheMouseDoNothing)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f button = middleOf(dialog, "minSep");
    for (const auto which : {KsMouseButtonEvent::BUTTON2, KsMouseButtonEvent::BUTTON3}) {
        send(KsMouseButtonEvent(which, KsButtonEvent::DOWN, button));
        EXPECT_EQ(shown(dialog, "minSwtch"), 0);
        send(KsMouseButtonEvent(which, KsButtonEvent::UP, button));
        EXPECT_FALSE(dialog->minimized);
    }
}

TEST_F(Strip, theButtonTellsTheFieldOnce)
{
    KsTopLevelDialog* dialog = panel();
    Watch watch(&dialog->minimized);
    clickButton(dialog);
    EXPECT_EQ(watch.calls, 1);
}

TEST_F(Strip, clicksWhereTheChildrenWereDoNothing)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f where = middleOf(child(dialog, "a"), "stateSep");
    clickButton(dialog);
    EXPECT_FALSE(click(where));
    EXPECT_FALSE(child(dialog, "a")->state);
}

// A panel with a menu bar.

TEST_F(Strip, aMenuBarTakesRoomAboveTheChildrenAndIsHiddenWithThem)
{
    KsTopLevelDialog* dialog =
        add("TopLevelDialog { position3D 100 50 0 width 300 height 100 margin 2 rowSpacing 5 "
            "MenuBar { auditorID \"bar\" MenuPopup { auditorID \"menu\" label \"File\" "
            "MenuPushButton { auditorID \"entry\" label \"Quit\" } } } "
            "DialogCheckBox { auditorID \"a\" } }");
    auto* bar = child<KsMenuBar>(dialog, "bar");
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 112, 1)));
    EXPECT_NEAR(boxOf(bar, "frameSep").getMin()[1], -50 - 41, 1e-2);
    EXPECT_NEAR(boxOf(bar, "frameSep").getMax()[1], -50 - 21, 1e-2);
    EXPECT_NEAR(boxOf(bar, "frameSep").getMin()[0], 104 - 1, 1e-2);
    EXPECT_NEAR(boxOf(bar, "frameSep").getMax()[0] - boxOf(bar, "frameSep").getMin()[0], 294, 1e-2);
    const KbBox3f a = boxOf(child(dialog, "a"));
    EXPECT_NEAR(a.getMax()[1], -50 - 41 - 2, 1e-2) << "the bar does not push the next child";
    EXPECT_TRUE(isVisible(bar));
    clickButton(dialog);
    EXPECT_FALSE(isVisible(bar));
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 20, 1)));
    clickButton(dialog);
    EXPECT_TRUE(isVisible(bar));
}

TEST_F(Strip, closesTheMenusOfItsBar)
{
    KsTopLevelDialog* dialog =
        add("TopLevelDialog { position3D 100 50 0 width 300 height 100 "
            "MenuBar { auditorID \"bar\" MenuPopup { auditorID \"menu\" label \"File\" "
            "MenuPopup { auditorID \"inner\" label \"Recent\" "
            "MenuPushButton { auditorID \"entry\" label \"Quit\" } } } } }");
    auto* entry = child<KsMenuPushButton>(dialog, "entry");
    click(middleOf(child<KsMenuPopup>(dialog, "menu"), "frameSep"));
    frame();
    click(middleOf(child<KsMenuPopup>(dialog, "inner"), "frameSep"));
    frame();
    EXPECT_TRUE(isVisible(entry));
    dialog->minimized = true;
    frame();
    EXPECT_FALSE(isVisible(entry));
    dialog->minimized = false;
    frame();
    EXPECT_TRUE(isVisible(child<KsMenuPopup>(dialog, "menu")));
    EXPECT_FALSE(isVisible(entry)) << "it stays closed";
    EXPECT_FALSE(child<KsMenuPopup>(dialog, "inner")->showsChildren3D());
}
