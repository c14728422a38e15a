// A push button in its two presentations, pressed where it is drawn.

#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Stage.h>

#include <fstream>

namespace {

/// What tests look at behind a push button.
class Button : public KsDialogPushButton {
public:
    using KsDialogComponent::m_defaultSize;
    using KsDialogComponent::m_labelSize;
    using KsFormweave::m_lastActive;
    using KsFormweave::set3DCurrentActive;
};

class Listener : public KsDialogPushButtonAuditor {
public:
    void dialogPushButton(KsDialogPushButton* button) override
    {
        told.push_back(button->auditorID.getValue().toUtf8());
        if (then) then(button);
    }
    Strings told;
    std::function<void(KsDialogPushButton*)> then;
};

/// One dialog with a push button "button" in it.
class Shown : public Stage {
public:
    explicit Shown(const std::string& fields = "label \"Preview\" buttonLabel \"Render\"",
                   Road road = Both)
        : Stage("TopLevelDialog { label \"Form\" DialogPushButton { auditorID \"button\" " +
                    fields +
                    " } DialogPushButton { auditorID \"other\" label \"A longer label\" } }",
                road),
          button(find<KsDialogPushButton>("button"))
    {
        button->addAuditor(&listener);
    }
    QPushButton* widget() const { return widgetOf<QPushButton>(button); }
    QLabel* labelWidget() const { return widgetOf<QLabel>(button); }
    QPoint middle() const { return widget()->rect().center(); }
    void pressInWindow() const
    {
        QTest::mousePress(widget(), Qt::LeftButton, Qt::NoModifier, middle());
    }
    template <class T> const T* last(const char* part) const { return lastIn<T>(button, part); }
    const KsNode* before(const char* part) const { return nodeBefore(button, part); }
    Strings lines3D(const char* part) const { return textLines(last<KsText3>(part)); }
    std::string text3D() const
    {
        const Strings lines = lines3D("buttonLabelSep");
        return lines.empty() ? std::string() : lines[0];
    }
    int labelWidth() const { return (button->*&Button::m_labelSize)[0]; }

    KsDialogPushButton* button;
    Listener listener;
};

std::string skinFile(const char* skin)
{
    std::ifstream file(std::string(FORMWEAVE_SKIN_DIR) + "/" + skin + "/DialogPushButton.arb");
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

// Texts and sizes.

TEST(PushButton, withoutATextAsksForItsMarginsAlone)
{
    Shown shown("label \"Preview\"");
    EXPECT_EQ(shown.widget()->text(), "");
    EXPECT_EQ(shown.text3D(), "");
    KsRef<KsDialogPushButton> button(new KsDialogPushButton);
    EXPECT_EQ(button->getComponentInitSize(), KbVec2i32(12, 12));
}

TEST(PushButton, itsTextMakesItsSize)
{
    const Library library;
    KsRef<KsDialogPushButton> button(new KsDialogPushButton);
    button->buttonLabel = "two\\nlines";
    const KbVec2i32 text = KsFormweave::getLabelPixelSize(button->buttonLabel, button.get());
    EXPECT_EQ(button->getComponentInitSize(), text + KbVec2i32(12, 12));
    KbVec2i32 zone(10, 10), label(50, 20), size, min, max;
    button->setComponentSize(zone);
    button->setLabelSize(label);
    button->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(10 + 50 + 2, text[1] + 12));
    EXPECT_EQ(min, KbVec2i32(25, 25));
    EXPECT_EQ(max, KbVec2i32(32767, 32767));
    // Asked once, until the sizes are reset.
    button->buttonLabel = "";
    EXPECT_EQ(button->getComponentInitSize(), text + KbVec2i32(12, 12));
    button->resetSize();
    EXPECT_EQ(button->getComponentInitSize(), KbVec2i32(12, 12));
}

TEST(PushButton, withoutItsLabelItIsNarrowerByTheLabelsZoneButKeepsItsHeight)
{
    const Library library;
    KsRef<KsDialogPushButton> button(new KsDialogPushButton);
    button->buttonLabel = "a text that is wide enough\\nand has\\nthree lines";
    const KbVec2i32 text = KsFormweave::getLabelPixelSize(button->buttonLabel, button.get());
    KbVec2i32 label(40, 10), zone(5, 5), size, min, max;
    button->setLabelSize(label);
    button->setComponentSize(zone);
    button->labelVisibility = false;
    EXPECT_EQ(button->getComponentInitSize(), text + KbVec2i32(12 - 40, 12));
    button->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(5, text[1] + 12));
}

TEST(PushButton, standsBehindItsLabelInTheWindow)
{
    Shown shown("label \"Preview\" buttonLabel \"Render\"", Stage::Window);
    const int w = shown.button->getWidget()->width(), h = shown.button->getWidget()->height();
    const int l = shown.labelWidth();
    ASSERT_GT(l, 0);
    EXPECT_EQ(shown.widget()->geometry(), QRect(l + 4, 3, w - 6 - (l + 2), h - 6));
    const int lines = KsFormweave::getLabelPixelSize(shown.button->label, nullptr)[1];
    EXPECT_EQ(shown.labelWidget()->geometry(), QRect(3, 3 + (h - 3 - lines) / 2, l, lines));
    shown.button->labelVisibility = false;
    EXPECT_TRUE(shown.labelWidget()->isHidden());
    EXPECT_EQ(shown.widget()->geometry(), QRect(2, 3, w - 6, h - 6));
}

TEST(PushButton, itsFrameHasItsLimitsAlsoWhereTheSizeIsNotFixed)
{
    Shown shown("buttonLabel \"b\" minWidth 60 minHeight 30 maxWidth 444 maxHeight 66");
    const QWidget* frame = shown.button->getWidget();
    EXPECT_EQ(frame->minimumSize(), QSize(60, 30));
    EXPECT_EQ(frame->maximumSize(), QSize(444, 66));
    EXPECT_EQ(frame->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    EXPECT_EQ(frame->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    Shown fixed("buttonLabel \"b\" width 90 height 40 fixedWidth TRUE fixedHeight TRUE");
    frame = fixed.button->getWidget();
    EXPECT_EQ(frame->minimumSize(), QSize(90, 40));
    EXPECT_EQ(frame->maximumSize(), QSize(90, 40));
    EXPECT_EQ(frame->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
    EXPECT_EQ(frame->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
}

TEST(PushButton, itsTextKeepsUpInBothPresentationsAndInTheMiddle)
{
    Shown shown;
    const auto offCentre = [&] {
        const KbVec3f text = shown.boxOf(shown.button, "buttonLabelSep").getCenter();
        const KbVec3f plate = shown.boxOf(shown.button, "frameSep").getCenter();
        return std::max(std::abs(text[0] - plate[0]), std::abs(text[1] - plate[1]));
    };
    EXPECT_EQ(shown.widget()->text(), "Render");
    EXPECT_EQ(shown.text3D(), "Render");
    EXPECT_LT(offCentre(), 2);
    shown.button->buttonLabel = "Stop\\nat once, please";
    EXPECT_EQ(shown.widget()->text(), "Stop\nat once, please");
    EXPECT_EQ(shown.lines3D("buttonLabelSep"), (Strings{"Stop", "at once, please"}));
    EXPECT_LT(offCentre(), 2);
    shown.button->buttonLabel = "Go";
    EXPECT_EQ(shown.lines3D("buttonLabelSep"), Strings{"Go"});
    EXPECT_LT(offCentre(), 2);
    EXPECT_TRUE(shown.listener.told.empty());
}

TEST(PushButton, inASceneNoChangeButThatOfItsTextReachesIt)
{
    Shown shown;
    shown.button->label = "New";
    EXPECT_EQ(shown.lines3D("labelSwitch"), Strings{"Preview"});
    EXPECT_EQ(shown.labelWidget()->text(), "Preview");
    shown.button->enable = false;
    EXPECT_TRUE(shown.widget()->isEnabled());
    shown.button->labelVisibility = false;
    EXPECT_FALSE(shown.labelWidget()->isHidden());
    EXPECT_EQ(Stage::shown(shown.button, "labelSwitch"), KsSwitch::ALL);
    const KbVec2i32 asked = shown.button->*&Button::m_defaultSize;
    shown.button->width = 345;
    EXPECT_EQ(shown.button->*&Button::m_defaultSize, asked);
    EXPECT_EQ(shown.text3D(), "Render");
}

TEST(PushButton, inAWindowAloneEveryChangeReachesIt)
{
    Shown shown("label \"Preview\" buttonLabel \"Render\"", Stage::Window);
    shown.button->label = "New";
    EXPECT_EQ(shown.labelWidget()->text(), "New");
    shown.button->labelAlignment = KsFormweave::CENTER;
    EXPECT_EQ(shown.labelWidget()->alignment(), Qt::AlignHCenter);
    shown.button->enable = false;
    EXPECT_FALSE(shown.widget()->isEnabled());
    EXPECT_FALSE(shown.labelWidget()->isEnabled());
    shown.button->edgeStyle = KsDialogComponent::SHADOW_OUT;
    EXPECT_EQ(qobject_cast<QFrame*>(shown.button->getWidget())->frameShadow(), QFrame::Raised);
    shown.button->buttonLabel = "Other";
    EXPECT_EQ(shown.widget()->text(), "Other");
}

// Who hears of what.

TEST(PushButton, aPressInTheWindowIsToldBeforeTheRelease)
{
    Shown shown;
    shown.pressInWindow();
    EXPECT_EQ(shown.listener.told, Strings{"button"});
    EXPECT_TRUE(shown.widget()->isDown());
    QTest::mouseRelease(shown.widget(), Qt::LeftButton, Qt::NoModifier, shown.middle());
    EXPECT_EQ(shown.listener.told, Strings{"button"}) << "once";
    QTest::keyClick(shown.widget(), Qt::Key_Space);
    EXPECT_EQ(shown.listener.told, (Strings{"button", "button"}));
}

TEST(PushButton, aPressInTheSceneIsToldAtTheRelease)
{
    Shown shown;
    for (const char* part : {"frameSep", "buttonLabelSep"}) {
        shown.listener.told.clear();
        int look = -1;
        const KsFormweave* active = shown.button;
        shown.listener.then = [&](KsDialogPushButton*) {
            look = Stage::shown(shown.button, "frameSwitch");
            active = Button::m_lastActive;
        };
        const KbVec2f place = shown.placeOf(shown.button, part);
        EXPECT_TRUE(shown.press(place)) << part;
        EXPECT_TRUE(shown.listener.told.empty()) << part;
        EXPECT_EQ(Stage::shown(shown.button, "frameSwitch"), 1);
        EXPECT_EQ(Button::m_lastActive, shown.button);
        shown.release(place);
        EXPECT_EQ(shown.listener.told, Strings{"button"}) << part;
        EXPECT_EQ(look, 0) << "the auditors see the button at rest";
        EXPECT_EQ(active, nullptr);
        EXPECT_EQ(Stage::shown(shown.button, "frameSwitch"), 0);
    }
}

TEST(PushButton, aPressInTheSceneClosesWhatIsOpen)
{
    Shown shown;
    Button::set3DCurrentActive(shown.find<KsDialogPushButton>("other"));
    shown.clickPart(shown.button, "frameSep");
    EXPECT_EQ(Button::m_lastActive, nullptr);
}

TEST(PushButton, aClickInTheSceneOnTheLabelDoesNothing)
{
    Shown shown;
    const KbVec2f place = shown.placeOf(shown.button, "labelSep");
    shown.press(place);
    EXPECT_EQ(Stage::shown(shown.button, "frameSwitch"), 0);
    shown.release(place);
    EXPECT_TRUE(shown.listener.told.empty());
}

TEST(PushButton, theTextStandsOnTheButtonPressedOrNot)
{
    Shown shown;
    const auto gap = [&] {
        return shown.boxOf(shown.button, "buttonLabelSep").getMin()[2] -
               shown.boxOf(shown.button, "frameSep").getMax()[2];
    };
    EXPECT_GT(gap(), 0);
    EXPECT_LT(gap(), 2);
    const float top = shown.boxOf(shown.button, "frameSep").getMax()[2];
    const KbVec2f place = shown.placeOf(shown.button, "frameSep");
    shown.press(place);
    EXPECT_LT(shown.boxOf(shown.button, "frameSep").getMax()[2], top) << "it goes down";
    EXPECT_GT(gap(), 0);
    EXPECT_LT(gap(), 2);
    shown.release(place);
    EXPECT_EQ(shown.boxOf(shown.button, "frameSep").getMax()[2], top);
}

TEST(PushButton, withoutAuditorsItsContainersAreTold)
{
    class Container : public KsDialogAuditor {
    public:
        void dialogPushButton(KsDialogPushButton*) override { ++calls; }
        int calls = 0;
    };
    Shown shown;
    Container container;
    shown.dialog->addAuditor(&container);
    shown.pressInWindow();
    EXPECT_EQ(container.calls, 0) << "its own auditors are enough";
    shown.button->removeAuditor(&shown.listener);
    shown.pressInWindow();
    shown.clickPart(shown.button, "frameSep");
    shown.button->applyDlgCptAuditor();
    EXPECT_EQ(container.calls, 3);
    shown.button->activateButton();
    EXPECT_EQ(container.calls, 3) << "that does nothing";
    KsRef<KsDialogPushButton> alone(new KsDialogPushButton);
    alone->applyDlgCptAuditor();
}

TEST(PushButton, aPressOfTheWindowEndsThePressedLookOfTheScene)
{
    Shown shown;
    shown.press(shown.placeOf(shown.button, "frameSep"));
    ASSERT_EQ(Stage::shown(shown.button, "frameSwitch"), 1);
    shown.pressInWindow();
    EXPECT_EQ(Stage::shown(shown.button, "frameSwitch"), 0);
    EXPECT_EQ(shown.listener.told, Strings{"button"});
}

TEST(PushButton, builtDisabledItTakesNoPressInEitherPresentation)
{
    Shown shown("label \"Preview\" buttonLabel \"Render\" enable FALSE");
    EXPECT_FALSE(shown.widget()->isEnabled());
    shown.pressInWindow();
    shown.clickPart(shown.button, "frameSep");
    EXPECT_TRUE(shown.listener.told.empty());
}

TEST(PushButton, anAuditorMayLetItGo)
{
    for (const bool inScene : {false, true}) {
        Shown shown;
        const QPointer<QPushButton> pressed(shown.widget());
        shown.listener.then = [&](KsDialogPushButton* told) { shown.dialog->removeChild(told); };
        if (inScene)
            shown.clickPart(shown.button, "frameSep");
        else
            QTest::mouseClick(pressed, Qt::LeftButton, Qt::NoModifier, shown.middle());
        EXPECT_EQ(shown.listener.told, Strings{"button"});
        EXPECT_FALSE(shown.find<KsDialogPushButton>("button"));
        Stage::settle();
        EXPECT_FALSE(pressed);
        EXPECT_EQ(shown.dialog->getBaseWidget()->findChildren<QPushButton*>().size(), 1);
    }
}

TEST(PushButton, anAuditorMayDeleteTheDialog)
{
    for (const bool inScene : {false, true}) {
        Shown shown;
        const QPointer<QPushButton> pressed(shown.widget());
        shown.listener.then = [&](KsDialogPushButton*) { shown.dropDialog(); };
        if (inScene)
            shown.clickPart(shown.button, "frameSep");
        else
            QTest::mouseClick(pressed, Qt::LeftButton, Qt::NoModifier, shown.middle());
        EXPECT_EQ(shown.listener.told, Strings{"button"});
        Stage::settle();
        EXPECT_FALSE(pressed);
    }
}

TEST(PushButton, anAuditorMayRebuildItAndItWorksAfterwards)
{
    Shown shown;
    const QPointer<QPushButton> pressed(shown.widget());
    shown.listener.then = [&](KsDialogPushButton*) { shown.dialog->updateAfterSceneGraphChange(); };
    QTest::mouseClick(pressed, Qt::LeftButton, Qt::NoModifier, shown.middle());
    EXPECT_EQ(shown.listener.told, Strings{"button"});
    shown.listener.then = nullptr;
    Stage::settle();
    EXPECT_FALSE(pressed);
    EXPECT_EQ(shown.dialog->getBaseWidget()->findChildren<QPushButton*>().size(), 2);
    EXPECT_FALSE(shown.widget()->isDown());
    shown.pressInWindow();
    shown.clickPart(shown.button, "frameSep");
    EXPECT_EQ(shown.listener.told, (Strings{"button", "button", "button"}));
}

// The relay.

TEST(PushButton, itsRelayHoldsTheButtonAndThenTheLabelUnderTheirNames)
{
    Shown shown("label \"<b>bold</b>\" buttonLabel \"<i>text</i>\"");
    QWidget* frame = shown.button->getWidget();
    EXPECT_EQ(frame->objectName(), "LMNKsDialogQPushButtonFrame");
    EXPECT_EQ(shown.widget()->objectName(), "LMNKsDialogQPushButtonButtonWidget");
    EXPECT_EQ(shown.labelWidget()->objectName(), "LMNKsDialogQPushButtonLabelWidget");
    QObjectList widgets;
    for (QObject* child : frame->children()) {
        if (child->isWidgetType()) widgets << child;
    }
    EXPECT_EQ(widgets, (QObjectList{shown.widget(), shown.labelWidget()}));
    const QString font = KsFormweave::getFormweaveFont().toString();
    EXPECT_EQ(shown.widget()->font().toString(), font);
    EXPECT_EQ(shown.labelWidget()->font().toString(), font);
    EXPECT_EQ(shown.labelWidget()->textFormat(), Qt::PlainText);
    EXPECT_EQ(shown.button->getLabelWidget(), nullptr) << "the relay keeps it to itself";
}

TEST(PushButton, aResizeOfItsFrameWritesItsSizeAndPlacesItsWidgets)
{
    Shown shown("label \"Preview\" buttonLabel \"Render\"", Stage::Window);
    QWidget* frame = shown.button->getWidget();
    const QSize wanted = frame->size() + QSize(40, 12);
    frame->resize(wanted);
    EXPECT_EQ(shown.button->width, wanted.width());
    EXPECT_EQ(shown.button->height, wanted.height());
    EXPECT_EQ(shown.widget()->height(), wanted.height() - 6);
    EXPECT_EQ(shown.widget()->geometry().right(), wanted.width() - 1 - 4);
}

TEST(PushButton, aSecondBuildLeavesOneWidgetAndHandsTheFocusOn)
{
    Shown shown;
    const QPointer<QPushButton> former(shown.widget());
    former->setFocus();
    shown.dialog->updateDialogBuild(1);
    EXPECT_NE(shown.widget(), former.data());
    EXPECT_EQ(shown.dialog->getBaseWidget()->focusWidget(), shown.widget());
    EXPECT_TRUE(shown.widget()->isVisible());
    QTest::mousePress(former, Qt::LeftButton);
    EXPECT_TRUE(shown.listener.told.empty()) << "the former one tells nothing";
    Stage::settle();
    EXPECT_FALSE(former);
    shown.pressInWindow();
    EXPECT_EQ(shown.listener.told, Strings{"button"});
}

// The form in the scene.

TEST(PushButton, itsPartsStandInTheOrderOfTheCatalog)
{
    Shown shown;
    EXPECT_EQ(partRows(shown.button, "labelSep"),
              (Strings{"labelSep Separator geomSwitch", "labelSwitch Switch labelSep",
                       "labelProp Group labelSwitch public", "frameSep Separator geomSwitch",
                       "frameSwitch Switch frameSep", "released Group frameSwitch public",
                       "pressed Group frameSwitch public", "buttonLabelSep Separator geomSwitch",
                       "buttonLabelProp Group buttonLabelSep public"}));
}

TEST(PushButton, itFillsTheControlsZone)
{
    for (const bool withLabel : {true, false}) {
        Shown shown(std::string("label \"Preview\" labelVisibility ") +
                        (withLabel ? "TRUE" : "FALSE"),
                    Stage::Scene);
        KbVec2i32 size, centre;
        shown.button->get3DComponentSize(size, centre);
        const auto* move = ksCast<KsTranslation>(shown.before("frameSep"));
        ASSERT_TRUE(move);
        EXPECT_TRUE(move->translation.getValue() ==
                    KbVec3f(static_cast<float>(centre[0]), static_cast<float>(centre[1]), 0));
        EXPECT_TRUE(shown.last<KsScale>("frameSep")->scaleFactor.getValue() ==
                    KbVec3f(static_cast<float>(size[0]), static_cast<float>(size[1]), 1));
        EXPECT_TRUE(ksCast<KsTransform>(shown.before("buttonLabelSep")));
        EXPECT_EQ(Stage::shown(shown.button, "labelSwitch"),
                  withLabel ? KsSwitch::ALL : KsSwitch::NONE);
        EXPECT_EQ(shown.last<KsText3>("buttonLabelSep")->parts.getValue(), KsText3::FRONT);
    }
}

TEST(PushButton, thePressedGeometryIsShownAtRestAndTheReleasedOneWhilePressed)
{
    for (const bool beforeTheBuild : {true, false}) {
        Stage stage("TopLevelDialog { DialogPushButton { auditorID \"b\" buttonLabel \"B\" } }",
                    Stage::Window);
        auto* button = stage.find<KsDialogPushButton>("b");
        KsRef<KsSeparator> scene(new KsSeparator);
        scene->addChild(stage.dialog.get());
        const auto draw = [&] {
            KsGetBoundingBoxAction action{KbViewportRegion()};
            action.apply(scene.get());
        };
        KsRef<KsSeparator> first(new KsSeparator);
        first->addChild(new KsCube);
        KsRef<KsCube> second(new KsCube);
        if (!beforeTheBuild) draw();
        button->set3DPressedGeometry(first.get());
        button->set3DReleasedGeometry(second.get());
        button->set3DPressedGeometry(nullptr);
        draw();
        auto* frames = static_cast<KsSwitch*>(button->getAnyPart("frameSwitch", false));
        ASSERT_EQ(frames->getNumChildren(), 2);
        EXPECT_EQ(frames->getChild(0), first.get());
        EXPECT_EQ(static_cast<KsGroup*>(frames->getChild(1))->getChild(0), second.get());
        EXPECT_EQ(frames->whichChild, 0);
        button->change3DButtonState(1);
        EXPECT_EQ(frames->whichChild, 1);
        KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/dark");
        EXPECT_EQ(frames->getChild(0), first.get()) << "a skin does not take it away";
    }
}

TEST(PushButton, aSkinIsSwappedOnScreenAndTheDefaultOneIsTheBuiltInLook)
{
    Shown shown("label \"Preview\" buttonLabel \"Render\"", Stage::Scene);
    const KsNode* released = shown.button->getAnyPart("released", false);
    const auto top = [&] {
        return shown.boxOf(shown.button, "frameSep").getMax()[2] -
               shown.boxOf(shown.button, "mainCptSeparator").getMax()[2];
    };
    const float builtIn = top();
    EXPECT_EQ(KsDialogPushButton::isSkinLoaded(), 1);
    KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/dark");
    shown.draw();
    EXPECT_EQ(shown.button->getAnyPart("released", false), released);
    EXPECT_NE(top(), builtIn);
    const float gap = shown.boxOf(shown.button, "buttonLabelSep").getMin()[2] -
                      shown.boxOf(shown.button, "frameSep").getMax()[2];
    EXPECT_GT(gap, 0) << "the text stands on the new look";
    KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/default");
    shown.draw();
    EXPECT_EQ(top(), builtIn);

    // Node for node.
    const auto parts = [](const std::string& text) {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        return root ? written(root.get()) : std::string();
    };
    EXPECT_EQ(parts(KsDialogPushButton::DialogPushButton), parts(skinFile("default")));
    EXPECT_NE(parts(skinFile("default")), parts(skinFile("dark")));
    EXPECT_NE(parts(skinFile("dark")), "");
}

// Files.

TEST(PushButton, isWrittenAsItWasRead)
{
    const Library library;
    const std::string text = "DialogPushButton { label \"L\" auditorID \"id\" labelAlignment LEFT "
                             "width 90 fixedWidth TRUE labelVisibility FALSE edgeStyle SHADOW_IN "
                             "buttonLabel \"a \\\"b\\\" \\\\n\" }";
    const auto read = [](const std::string& from) {
        KsInput in;
        in.setBuffer(from.data(), from.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        return KsRef<KsNode>(root && root->getNumChildren() ? root->getChild(0) : nullptr);
    };
    const KsRef<KsNode> first = read(text);
    ASSERT_TRUE(first);
    EXPECT_EQ(static_cast<KsDialogPushButton*>(first.get())->buttonLabel.getValue(), "a \"b\" \\n");
    const std::string once = written(first.get());
    const KsRef<KsNode> second = read(once);
    ASSERT_TRUE(second);
    EXPECT_EQ(written(second.get()), once);
    EXPECT_NE(once.find("buttonLabel"), std::string::npos);
}

TEST(PushButton, textsAndSizesOfAnyKindAreHarmless)
{
    const std::string big(1 << 20, 'x');
    for (const std::string& fields :
         {"buttonLabel \"" + big + "\"", std::string("buttonLabel \"a\tb\nc\xC3\xA9\""),
          std::string("buttonLabel \"b\" width -5 height -100"),
          std::string("buttonLabel \"b\" width 2000000000 height 2000000000"),
          std::string("buttonLabel \"b\" minWidth 300 maxWidth 100 minHeight 90 maxHeight 40")}) {
        Shown shown(fields);
        shown.draw();
        EXPECT_TRUE(shown.widget());
        EXPECT_GE(shown.button->getWidget()->width(), 0);
        shown.dialog->updateAfterSceneGraphChange();
        shown.pressInWindow();
        EXPECT_EQ(shown.listener.told, Strings{"button"});
    }
}
