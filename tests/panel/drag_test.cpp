// Panels and their children under the pointer.

#include "Panel.h"

#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsSphere.h>

namespace {

class PanelDrag : public PanelTest {
protected:
    static constexpr const char* children =
        " DialogCheckBox { auditorID \"a\" label \"First\" onString \"on\" } "
        "RowDialog { auditorID \"rows\" edgeStyle SHADOW_IN margin 10 "
        "  DialogCheckBox { auditorID \"b\" label \"Second\" onString \"on\" } } ";
    KsTopLevelDialog* panel(const std::string& fields = "position3D 100 50 0 ",
                            KsGroup* where = nullptr)
    {
        return add("TopLevelDialog { width 300 height 100 label \"Title\" " + fields + children +
                       "}",
                   where);
    }
    KbVec2f middleOfState(KsTopLevelDialog* dialog, const char* id)
    {
        return middleOf(child(dialog, id), "stateSep");
    }
    /// Clicks each check box where it is drawn.
    void expectClicksReachTheBoxes(KsTopLevelDialog* dialog)
    {
        for (const char* id : {"a", "b"}) {
            const bool before = child(dialog, id)->state;
            EXPECT_TRUE(click(middleOfState(dialog, id))) << id;
            EXPECT_EQ(child(dialog, id)->state, !before) << id;
        }
    }
};

} // namespace

// Dragging.

TEST_F(PanelDrag, thePanelFollowsThePointerAsFarAsItMoves)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f start = titleOf(dialog);
    const KbBox3f a = boxOf(child(dialog, "a"));
    EXPECT_TRUE(press(start));
    for (int i = 1; i <= 30; ++i) {
        const float d = static_cast<float>(i);
        EXPECT_TRUE(move(KbVec2f(start[0] + 3 * d, start[1] - 2 * d)));
        frame();
        // At each step, without trembling.
        ASSERT_TRUE(isNear(dialog->position3D, KbVec3f(100 + 3 * d, 50 + 2 * d, 0)));
        ASSERT_TRUE(
            isNear(boxOf(child(dialog, "a")).getMin(), a.getMin() + KbVec3f(3 * d, -2 * d, 0)));
    }
    EXPECT_TRUE(release(KbVec2f(start[0] + 90, start[1] - 60)));
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(190, 110, 0)));
    move(KbVec2f(0, 0));
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(190, 110, 0))) << "it was let go";
}

TEST_F(PanelDrag, aPointerThatDoesNotMoveLeavesThePanelWhereItIs)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f start = titleOf(dialog);
    press(start);
    for (int i = 0; i < 20; ++i) {
        move(start);
        frame();
        ASSERT_TRUE(isNear(dialog->position3D, KbVec3f(100, 50, 0), 1e-3f));
    }
    release(start);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(100, 50, 0), 1e-3f));
}

TEST_F(PanelDrag, theLettersOfTheTitleAreNotInTheWay)
{
    KsTopLevelDialog* dialog = panel();
    auto* text = firstIn<KsText3>(dialog, "labelSep");
    text->string = "IIIIIIIIIIII";
    const KbBox3f box = boxOf(text);
    for (int i = 0; i < 8; ++i) {
        const KbVec3f before = dialog->position3D;
        drag(pixel(KbVec3f(box.getMin()[0] + static_cast<float>(i) * 0.7f, box.getCenter()[1], 2)),
             0, -1);
        dialog->position3D = before;
        drag(pixel(KbVec3f(box.getMin()[0] + static_cast<float>(i) * 0.7f, box.getCenter()[1], 2)),
             12, 0);
        EXPECT_TRUE(isNear(dialog->position3D, before + KbVec3f(12, 0, 0)));
        dialog->position3D = before;
    }
}

TEST_F(PanelDrag, theFrameMayBeGrabbedAtItsRimToo)
{
    KsTopLevelDialog* dialog = panel();
    const KbBox3f box = boxOf(dialog, "frameSep");
    drag(pixel(KbVec3f(box.getMin()[0] + 2, box.getMin()[1] + 2, box.getMax()[2])), -40, 20);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(60, 30, 0)));
}

TEST_F(PanelDrag, oneOfTwoPanelsStaysWhenTheOtherIsDragged)
{
    KsTopLevelDialog* left = panel("position3D 20 20 0 ");
    KsTopLevelDialog* right = panel("position3D 400 20 0 ");
    const KbBox3f before = boxOf(right);
    drag(titleOf(left), 30, -200);
    EXPECT_TRUE(isNear(left->position3D, KbVec3f(50, 220, 0)));
    EXPECT_TRUE(boxOf(right) == before);
    EXPECT_TRUE(isNear(right->position3D, KbVec3f(400, 20, 0)));
    EXPECT_TRUE(click(middleOfState(right, "a")));
    EXPECT_TRUE(child(right, "a")->state);
    EXPECT_FALSE(child(left, "a")->state);
    clickButton(left);
    EXPECT_TRUE(left->minimized);
    EXPECT_FALSE(right->minimized);
    EXPECT_TRUE(isVisible(child(right, "a")));
    expectClicksReachTheBoxes(right);
}

TEST_F(PanelDrag, thePanelInFrontIsMeant)
{
    KsTopLevelDialog* behind = panel("position3D 100 50 0 ");
    KsTopLevelDialog* front = panel("position3D 120 60 20 ");
    drag(titleOf(front), 10, 0);
    EXPECT_TRUE(isNear(front->position3D, KbVec3f(130, 60, 20)));
    EXPECT_TRUE(isNear(behind->position3D, KbVec3f(100, 50, 0)));
    EXPECT_TRUE(click(middleOfState(front, "a")));
    EXPECT_TRUE(child(front, "a")->state);
    EXPECT_FALSE(child(behind, "a")->state);
}

TEST_F(PanelDrag, aPanelThatHidesItsChildrenIsDraggedAsAnEmptyFrame)
{
    KsTopLevelDialog* dialog = panel("position3D 100 50 0 hideChildren TRUE ");
    const KbBox3f a = boxOf(child(dialog, "a"));
    const KbVec2f start = titleOf(dialog);
    press(start);
    EXPECT_FALSE(isVisible(child(dialog, "a")));
    EXPECT_FALSE(isVisible(child(dialog, "b")));
    move(KbVec2f(start[0] + 70, start[1] - 30));
    EXPECT_FALSE(isVisible(child(dialog, "a")));
    EXPECT_TRUE(isVisible(dialog->getAnyPart("frameSep", false)));
    release(KbVec2f(start[0] + 70, start[1] - 30));
    EXPECT_TRUE(isVisible(child(dialog, "b")));
    EXPECT_TRUE(isNear(boxOf(child(dialog, "a")).getMin(), a.getMin() + KbVec3f(70, -30, 0)));
    expectClicksReachTheBoxes(dialog);
}

TEST_F(PanelDrag, childrenThatADragHidStayHiddenWithTheirPanel)
{
    KsTopLevelDialog* dialog = panel("position3D 100 50 0 hideChildren TRUE ");
    const KbVec2f start = titleOf(dialog);
    press(start);
    dialog->show3D(0);
    auto* box = new KsDialogCheckBox;
    dialog->addChild(box);
    frame();
    EXPECT_FALSE(isVisible(box));
    release(start);
    EXPECT_FALSE(isVisible(dialog));
    dialog->show3D(1);
    EXPECT_TRUE(isVisible(child(dialog, "a")));
    EXPECT_TRUE(isVisible(box));
}

TEST_F(PanelDrag, aPressOnAChildOfAPanelThatHidesItsChildrenHidesNothing)
{
    KsTopLevelDialog* dialog = panel("position3D 100 50 0 hideChildren TRUE ");
    press(middleOfState(dialog, "a"));
    EXPECT_TRUE(isVisible(child(dialog, "a")));
    release(KbVec2f(0, 0));
    EXPECT_TRUE(isVisible(child(dialog, "a")));
}

TEST_F(PanelDrag, theFieldTellsOfEachMoveAndTheApplicationMayHoldThePanelBack)
{
    KsTopLevelDialog* dialog = panel();
    // Keeps the panel on its line.
    Watch watch(&dialog->position3D);
    watch.then = [&] {
        watch.sensor.detach();
        dialog->position3D = KbVec3f(dialog->position3D.getValue()[0], 50, 0);
        watch.sensor.attach(&dialog->position3D);
    };
    drag(titleOf(dialog), 40, -40);
    EXPECT_EQ(watch.calls, 4);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(140, 50, 0)));
    EXPECT_TRUE(isNear(boxOf(dialog, "frameSep").getMin(), KbVec3f(140, -177, 0)));
}

TEST_F(PanelDrag, a3DPointerDragsThePanelInItsPlane)
{
    KsTopLevelDialog* dialog = panel();
    const auto point = [&](KsTrackerEvent::Action action, float x, float y) {
        return send(KsTrackerEvent(action, KbVec3f(x, y, 300), KbRotation()));
    };
    const KbBox3f box = boxOf(dialog, "frameSep");
    const float x = box.getMax()[0] - 40, y = box.getMax()[1] - 12;
    EXPECT_TRUE(point(KsTrackerEvent::PRESS, x, y));
    point(KsTrackerEvent::MOVE, x + 25, y + 15);
    point(KsTrackerEvent::RELEASE, x + 25, y + 15);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(125, 35, 0)));
}

// Where the panel stands in the world.

TEST_F(PanelDrag, aPanelInAScaledSceneIsClickedAndDraggedWhereItIsDrawn)
{
    auto* part = new KsSeparator;
    auto* scale = new KsScale;
    scale->scaleFactor = KbVec3f(1.5f, 1.5f, 1.5f);
    part->addChild(scale);
    scene->addChild(part);
    KsTopLevelDialog* dialog = panel("position3D 100 50 0 ", part);
    EXPECT_NEAR(boxOf(dialog, "frameSep").getSize()[0], 308 * 1.5, 1e-2);
    expectClicksReachTheBoxes(dialog);
    drag(titleOf(dialog), 30, -60);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(120, 90, 0)));
    expectClicksReachTheBoxes(dialog);
    clickButton(dialog);
    EXPECT_TRUE(dialog->minimized);
}

TEST_F(PanelDrag, aPanelInATurnedSceneIsClickedAndDraggedWhereItIsDrawn)
{
    auto* part = new KsSeparator;
    auto* place = new KsTransform;
    place->translation = KbVec3f(300, -300, 0);
    place->rotation = KbRotation(KbVec3f(0.3f, 1, 0.2f), 0.5f);
    part->addChild(place);
    scene->addChild(part);
    KsTopLevelDialog* dialog = panel("position3D -100 -80 0 ", part);
    expectClicksReachTheBoxes(dialog);
    // The grabbed point stays under the pointer.
    const KbVec3f size = dialog->getTopLevelSize();
    const KbVec3f grabbed(-100 + size[0] - 30, 80 - 12, 1);
    const KbVec2f from = placeOf(dialog, grabbed);
    drag(from, 40, -50);
    const KbVec3f moved = dialog->position3D;
    EXPECT_NEAR(moved[2], 0, 1e-2) << "in its plane";
    const KbVec2f now =
        placeOf(dialog, grabbed + KbVec3f(moved[0] + 100, -(moved[1] + 80), moved[2]));
    EXPECT_NEAR(now[0], from[0] + 40, 0.1);
    EXPECT_NEAR(now[1], from[1] - 50, 0.1);
    expectClicksReachTheBoxes(dialog);
    clickButton(dialog);
    EXPECT_TRUE(dialog->minimized);
    EXPECT_FALSE(isVisible(child(dialog, "a")));
    clickButton(dialog);
    expectClicksReachTheBoxes(dialog);
}

TEST_F(PanelDrag, aPanelSeenInPerspectiveFromAsideIsClickedAndDraggedWhereItIsDrawn)
{
    auto* eye = new KsPerspectiveCamera;
    eye->position = KbVec3f(600, 0, 400);
    eye->pointAt(KbVec3f(250, -110, 0));
    eye->nearDistance = 10;
    eye->farDistance = 2000;
    scene->replaceChild(0, eye);
    camera = eye;
    KsTopLevelDialog* dialog = panel();
    expectClicksReachTheBoxes(dialog);
    const KbVec3f grabbed(100 + 308 - 30, -50 - 12, 1);
    const KbVec2f from = placeOf(dialog, grabbed);
    drag(from, -60, -30);
    const KbVec3f moved = dialog->position3D;
    const KbVec2f now = placeOf(dialog, grabbed + KbVec3f(moved[0] - 100, -(moved[1] - 50), 0));
    EXPECT_NEAR(now[0], from[0] - 60, 0.2);
    EXPECT_NEAR(now[1], from[1] - 30, 0.2);
    expectClicksReachTheBoxes(dialog);
}

TEST_F(PanelDrag, aPointerThatLeavesThePlaneOfThePanelDoesNotThrowItAway)
{
    // The plane ends at its horizon, in the middle of the picture.
    auto* eye = new KsPerspectiveCamera;
    eye->position = KbVec3f(200, -400, 60);
    eye->orientation = KbRotation(KbVec3f(1, 0, 0), 1.4f);
    eye->nearDistance = 1;
    eye->farDistance = 2000;
    scene->replaceChild(0, eye);
    camera = eye;
    KsTopLevelDialog* dialog = panel();
    const KbVec2f from = placeOf(dialog, KbVec3f(250, -62, 1));
    EXPECT_TRUE(press(from));
    move(KbVec2f(from[0] + 5, from[1]));
    const KbVec3f before = dialog->position3D;
    EXPECT_FALSE(before.equals(KbVec3f(100, 50, 0), 0.5f)) << "it is held";
    move(KbVec2f(from[0], windowHeight - 5)); // the sky
    EXPECT_TRUE(isNear(dialog->position3D, before));
    release(from);
    // The same if the sky is the first that it meets.
    const KbVec2f again = placeOf(dialog, KbVec3f(before[0] + 150, -before[1] - 12, 1));
    EXPECT_TRUE(press(again));
    move(KbVec2f(again[0], windowHeight - 5));
    EXPECT_TRUE(isNear(dialog->position3D, before));
    release(again);
}

TEST_F(PanelDrag, aMovedCameraIsTakenIntoAccount)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f before = middleOfState(dialog, "a");
    camera->position = KbVec3f(windowWidth / 2 - 150, -windowHeight / 2 + 70, 500);
    EXPECT_NEAR(middleOfState(dialog, "a")[0], before[0] + 150, 1e-2);
    EXPECT_FALSE(click(KbVec2f(before[0] - 100, before[1] + 60)));
    expectClicksReachTheBoxes(dialog);
    drag(titleOf(dialog), 20, -10);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(120, 60, 0)));
}

// Who gets the press.

TEST_F(PanelDrag, aPressOnLabelGroupOrEdgeReachesThePanelWhichTakesTheActivity)
{
    KsTopLevelDialog* dialog = panel();
    auto* box = child(dialog, "b");
    auto* rows = child<KsRowDialog>(dialog, "rows");
    const KbBox3f edge = boxOf(rows, "mainCptSeparator");
    const struct {
        const char* name;
        KbVec2f place;
    } places[] = {
        {"group", pixel(KbVec3f(edge.getMin()[0] + 5, edge.getMin()[1] + 5, edge.getMax()[2]))},
        {"title", titleOf(dialog)},
    };
    for (const auto& each : places) {
        Active::set3DCurrentActive(child(dialog, "a"));
        const bool before = box->state;
        EXPECT_TRUE(press(each.place)) << each.name;
        EXPECT_EQ(Active::m_lastActive, dialog) << each.name;
        release(each.place);
        EXPECT_EQ(box->state, before) << each.name;
        EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(100, 50, 0))) << each.name;
    }
}

TEST_F(PanelDrag, thePressOnTheMarginOfABoxIsTheBoxesAndDoesNothing)
{
    KsTopLevelDialog* dialog = panel();
    const KbBox3f box = boxOf(child(dialog, "a"));
    const KbVec2f place = pixel(KbVec3f(box.getMin()[0] + 1, box.getMin()[1] + 1, 5));
    EXPECT_TRUE(press(place));
    move(KbVec2f(place[0] + 20, place[1]));
    release(place);
    EXPECT_FALSE(child(dialog, "a")->state);
    EXPECT_EQ(Active::m_lastActive, nullptr);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(100, 50, 0)));
}

TEST_F(PanelDrag, aGroupCannotDragThePanel)
{
    KsTopLevelDialog* dialog = panel();
    const KbBox3f edge = boxOf(child<KsRowDialog>(dialog, "rows"), "mainCptSeparator");
    drag(pixel(KbVec3f(edge.getMin()[0] + 5, edge.getMin()[1] + 5, edge.getMax()[2])), 50, 50);
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(100, 50, 0)));
}

TEST_F(PanelDrag, aPressOnTheButtonTakesTheActivity)
{
    KsTopLevelDialog* dialog = panel();
    press(middleOf(dialog, "minSep"));
    EXPECT_EQ(Active::m_lastActive, dialog);
    release(KbVec2f(0, 0));
}

TEST_F(PanelDrag, aPressBesideThePanelsReachesNobody)
{
    KsTopLevelDialog* dialog = panel();
    EXPECT_FALSE(press(KbVec2f(5, 5)));
    EXPECT_FALSE(release(KbVec2f(5, 5)));
    EXPECT_EQ(Active::m_lastActive, nullptr);
    EXPECT_FALSE(child(dialog, "a")->state);
}

TEST_F(PanelDrag, thePanelIsActiveUntilItDies)
{
    KsTopLevelDialog* dialog = panel();
    click(titleOf(dialog));
    EXPECT_EQ(Active::m_lastActive, dialog);
    scene->removeChild(scene->findChild(dialog));
    EXPECT_EQ(Active::m_lastActive, nullptr);
}

// Enabled and disabled.

TEST_F(PanelDrag, aDisabledBoxIsGreyAndLetsThePressThrough)
{
    KsTopLevelDialog* dialog = panel();
    auto* box = child(dialog, "a");
    const KbVec2f place = middleOfState(dialog, "a");
    box->enable = false;
    EXPECT_FALSE(box->state);
    click(place);
    EXPECT_FALSE(box->state);
    box->enable = true;
    click(place);
    EXPECT_TRUE(box->state);
}

TEST_F(PanelDrag, aDisabledGroupDisablesWhatStandsInIt)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f place = middleOfState(dialog, "b");
    child<KsRowDialog>(dialog, "rows")->enable = false;
    click(place);
    EXPECT_FALSE(child(dialog, "b")->state);
    EXPECT_TRUE(child(dialog, "b")->enable);
    child<KsRowDialog>(dialog, "rows")->enable = true;
    click(place);
    EXPECT_TRUE(child(dialog, "b")->state);
}

// What an application does meanwhile.

TEST_F(PanelDrag, anAuditorHearsTheClickInTheScene)
{
    KsTopLevelDialog* dialog = panel();
    BoxesListener listener;
    dialog->addAuditor(&listener);
    click(middleOfState(dialog, "b"));
    click(middleOfState(dialog, "b"));
    EXPECT_EQ(listener.told, (std::vector<std::string>{"b+", "b-"}));
    dialog->removeAuditor(&listener);
}

TEST_F(PanelDrag, anAuditorMayRemoveTheDialogThatWasClicked)
{
    KsTopLevelDialog* dialog = panel();
    panel("position3D 450 50 0 ");
    const int before = scene->getNumChildren();
    BoxesListener listener;
    dialog->addAuditor(&listener);
    listener.then = [&](KsDialogCheckBox*) { scene->removeChild(scene->findChild(dialog)); };
    EXPECT_TRUE(click(middleOfState(dialog, "b")));
    EXPECT_EQ(scene->getNumChildren(), before - 1);
    EXPECT_EQ(events.getGrabber(), nullptr);
    EXPECT_EQ(Active::m_lastActive, nullptr);
    // The others go on.
    auto* other = ksCast<KsTopLevelDialog>(scene->getChild(before - 2));
    ASSERT_NE(other, nullptr);
    frame();
    expectClicksReachTheBoxes(other);
}

TEST_F(PanelDrag, anAuditorMayRemoveTheClickedBoxOrAddOthers)
{
    KsTopLevelDialog* dialog = panel();
    BoxesListener listener;
    dialog->addAuditor(&listener);
    listener.then = [&](KsDialogCheckBox* box) {
        auto* fresh = new KsDialogCheckBox;
        fresh->auditorID = "fresh";
        dialog->addChild(fresh);
        dialog->removeChild(box);
    };
    EXPECT_TRUE(click(middleOfState(dialog, "a")));
    EXPECT_EQ(child(dialog, "a"), nullptr);
    ASSERT_NE(child(dialog, "fresh"), nullptr);
    listener.then = {};
    frame();
    click(middleOfState(dialog, "fresh"));
    EXPECT_TRUE(child(dialog, "fresh")->state);
    dialog->removeAuditor(&listener);
}

TEST_F(PanelDrag, aPanelMayDieDuringItsDrag)
{
    for (const bool hides : {false, true}) {
        KsTopLevelDialog* dialog =
            panel(hides ? "position3D 100 50 0 hideChildren TRUE " : "position3D 100 50 0 ");
        const KbVec2f start = titleOf(dialog);
        press(start);
        move(KbVec2f(start[0] + 10, start[1]));
        EXPECT_EQ(Active::m_lastActive, dialog);
        scene->removeChild(scene->findChild(dialog));
        frame();
        move(KbVec2f(start[0] + 20, start[1]));
        release(KbVec2f(start[0] + 20, start[1]));
        EXPECT_EQ(events.getGrabber(), nullptr);
        EXPECT_EQ(Active::m_lastActive, nullptr) << "it is dead";
        EXPECT_EQ(scene->getNumChildren(), 1);
    }
}

TEST_F(PanelDrag, aPanelMayBeRemovedBecauseItMoved)
{
    KsTopLevelDialog* dialog = panel();
    Watch watch(&dialog->position3D);
    watch.then = [&] {
        watch.sensor.detach();
        scene->removeChild(scene->findChild(dialog));
    };
    drag(titleOf(dialog), 30, 30);
    EXPECT_EQ(watch.calls, 1);
    EXPECT_EQ(scene->getNumChildren(), 1);
}

TEST_F(PanelDrag, aPanelMayBeRemovedBecauseItWasMinimized)
{
    KsTopLevelDialog* dialog = panel();
    Watch watch(&dialog->minimized);
    watch.then = [&] {
        watch.sensor.detach();
        scene->removeChild(scene->findChild(dialog));
    };
    clickButton(dialog);
    EXPECT_EQ(watch.calls, 1);
    EXPECT_EQ(scene->getNumChildren(), 1);
}

TEST_F(PanelDrag, aDialogThatIsClosedByAClickGoesWithItsPanel)
{
    const auto dialog =
        read<>(std::string("TopLevelDialog { position3D 100 50 0 width 300 ") + children + "}");
    scene->addChild(dialog.get());
    dialog->buildDialog();
    dialog->show();
    frame();
    QPointer<QWidget> window = dialog->getBaseWidget();
    BoxesListener listener;
    dialog->addAuditor(&listener);
    listener.then = [&](KsDialogCheckBox*) {
        scene->removeChild(scene->findChild(dialog.get()));
        dialog->ref(); // what `close` drops
        dialog->close();
    };
    EXPECT_TRUE(click(middleOfState(dialog.get(), "a")));
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(events.getGrabber(), nullptr);
    dialog->removeAuditor(&listener);
    delete window;
}

TEST_F(PanelDrag, aClickIsSeenInTheWindowInTheSameCall)
{
    const auto dialog =
        read<>(std::string("TopLevelDialog { position3D 100 50 0 width 300 ") + children + "}");
    scene->addChild(dialog.get());
    dialog->buildDialog();
    dialog->show();
    frame();
    const KbVec2f place = middleOfState(dialog.get(), "a");
    auto* widget = child(dialog.get(), "a")->getWidget()->findChild<QCheckBox*>();
    ASSERT_NE(widget, nullptr);
    click(place);
    EXPECT_TRUE(widget->isChecked());
    widget->click();
    EXPECT_FALSE(child(dialog.get(), "a")->state);
    EXPECT_EQ(shown(child(dialog.get(), "a"), "stateSwitch"), 0);
    delete dialog->getBaseWidget();
}

TEST_F(PanelDrag, theSameFileTwiceGivesPanelsThatKnowNothingOfEachOther)
{
    KsTopLevelDialog* one = panel("position3D 20 20 0 ");
    KsTopLevelDialog* two = panel("position3D 400 20 0 ");
    one->label = "changed";
    EXPECT_EQ(firstIn<KsText3>(one, "labelSep")->string[0], "changed");
    EXPECT_EQ(firstIn<KsText3>(two, "labelSep")->string[0], "Title");
    one->show3D(0);
    EXPECT_FALSE(isVisible(one));
    EXPECT_TRUE(isVisible(two));
    EXPECT_TRUE(isVisible(child(two, "a")));
}
