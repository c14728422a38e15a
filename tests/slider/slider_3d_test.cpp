// Sliders in a scene: the bar, the toggle and the text that is typed there.

#include "Sliders.h"

#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/render/KsOffscreenRenderer.h>

namespace {

constexpr int padSeven = KsKeyboardEvent::PAD_7, padZero = KsKeyboardEvent::PAD_0;

} // namespace

TEST(SliderInAScene, standsInItsZones)
{
    ShownInteger shown("max 100 value 40", Stage::Scene);
    const float w = static_cast<float>(shown.slider->width.getValue());
    const float label = static_cast<float>(shown.labelWidth());
    const float edit = static_cast<float>(shown.editZone());
    const float x = 3 + label + 2;
    const float bar = w - 6 - label - 2 - 2 - 18 - edit - 2;
    EXPECT_EQ(shown.child<KsTranslation>("checkSep", 0)->translation,
              KbVec3f(x - w / 2 + 10, 0, 0));
    EXPECT_EQ(shown.child<KsScale>("checkSep", 1)->scaleFactor, KbVec3f(14, 14, 1));
    EXPECT_EQ(shown.child<KsScale>("frameSep", 0)->scaleFactor, KbVec3f(bar, 20, 1));
    EXPECT_EQ(shown.child<KsTranslation>("sliderSep", 0)->translation,
              KbVec3f(x + 20 - w / 2 + bar / 2, 0, 0));
    EXPECT_EQ(shown.child<KsTranslation>("cursorSep", 1)->translation,
              KbVec3f(-bar / 2 + 5, -5, 0));
    EXPECT_EQ(shown.child<KsScale>("cursorSep", 2)->scaleFactor, KbVec3f(10, 10, 1));
    EXPECT_FLOAT_EQ(shown.cursor3D(), (bar - 10) * 0.4f);
    EXPECT_EQ(shown.child<KsTranslation>("edtSwtch", 1)->translation,
              KbVec3f((w - 6 - edit) / 2, 0, 0));
    EXPECT_EQ(shown.child<KsScale>("edtFrmSep", 0)->scaleFactor, KbVec3f(edit, 20, 1));
    EXPECT_FLOAT_EQ(shown.child<KsTranslation>("editTextSep", 0)->translation.getValue()[0],
                    -edit / 2 + 3);
    EXPECT_EQ(shown.text3D(), "40");

    shown.slider->toggleVisible = false;
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), -1);
    EXPECT_FLOAT_EQ(shown.barWidth3D(), bar + 18);
    EXPECT_FLOAT_EQ(shown.cursor3D(), (bar + 18 - 10) * 0.4f) << "the cursor stays on its value";
    shown.slider->valueVisible = false;
    EXPECT_EQ(Stage::shown(shown.slider, "edtSwtch"), -1);
    EXPECT_FLOAT_EQ(shown.barWidth3D(), bar + 18 + edit + 2);
    shown.slider->labelVisibility = false;
    EXPECT_EQ(Stage::shown(shown.slider, "labelSwitch"), -1);
    EXPECT_FLOAT_EQ(shown.barWidth3D(), w - 6 - 2);
    EXPECT_FLOAT_EQ(shown.cursor3D(), (w - 6 - 2 - 10) * 0.4f);
    shown.slider->valueVisible = true;
    EXPECT_EQ(Stage::shown(shown.slider, "edtSwtch"), -3);
    shown.slider->toggleVisible = true;
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), 0);
}

TEST(SliderInAScene, itsNodesStandInTheirOrder)
{
    ShownInteger shown("max 100", Stage::Scene);
    const auto order = [&](const char* part) {
        std::string types;
        auto* group = static_cast<KsGroup*>(shown.slider->getAnyPart(part, false));
        for (int i = 0; i < group->getNumChildren(); ++i)
            types += std::string(group->getChild(i)->getTypeId().getName().getString()) + " ";
        return types;
    };
    EXPECT_EQ(order("labelSwitch"), "Translation Group Text3 ");
    EXPECT_EQ(order("checkSep"), "Translation Scale Switch ");
    EXPECT_EQ(order("sliderSep"), "Translation Separator Transform Separator ");
    EXPECT_EQ(order("frameSep"), "Scale Group ");
    EXPECT_EQ(order("cursorSep"), "Translation Translation Scale Group ");
    EXPECT_EQ(order("edtSwtch"), "EventCallback Translation Separator Transform Separator ");
    EXPECT_EQ(order("edtFrmSep"), "Scale Switch ");
    EXPECT_EQ(order("editTextSep"), "Translation Group Text3 ");
    EXPECT_EQ(Stage::shown(shown.slider, "edtFrmSwtch"), 0);
}

TEST(SliderInAScene, aPressOnTheBarJumpsThere)
{
    for (const char* trigger : {"TRUE", "FALSE"}) {
        ShownInteger shown(std::string("max 10 value 5 continuousTrigger ") + trigger);
        shown.press(shown.barPlace3D(0.8f));
        EXPECT_EQ(shown.slider->value, 8) << "at the press";
        EXPECT_NEAR(shown.position(), 0.8f, 1e-3f);
        EXPECT_EQ(shown.text3D(), "8");
        EXPECT_EQ(shown.text2D(), "8");
        EXPECT_NEAR(shown.slider->getValue(), 0.8f, 1e-3f);
        EXPECT_NEAR(shown.cursor3D(), 0.8f * shown.travel3D(), 0.1f);
        shown.release(shown.barPlace3D(0.8f));
        EXPECT_EQ(shown.listener.values, std::vector<int>{8});
    }
}

TEST(SliderInAScene, theEndsOfTheBarAreTheEndsOfTheRange)
{
    ShownReal shown("value 0.5", Stage::Scene);
    shown.draw();
    const KbBox3f bar = shown.boxOf(shown.slider, "frameSep");
    const float y = bar.getMax()[1] - 2 + Stage::viewHeight;
    shown.click({bar.getMin()[0] + 1, y});
    EXPECT_EQ(shown.position(), 0);
    EXPECT_EQ(shown.slider->value, 0.0f);
    shown.click({bar.getMax()[0] - 1, y});
    EXPECT_EQ(shown.position(), 1);
    shown.click({bar.getMin()[0] + 4, y});
    EXPECT_EQ(shown.position(), 0) << "half a cursor at each end";
    shown.click({bar.getCenter()[0], y});
    EXPECT_NEAR(shown.position(), 0.5f, 1e-4f);
}

TEST(SliderInAScene, aPressOnTheBarOfATurnedPanelIsRight)
{
    // A panel of twice the size, turned by a quarter and seen from the front.
    KsFormweave::init();
    {
        KsRef<KsSeparator> scene(new KsSeparator);
        auto* camera = new KsOrthographicCamera;
        camera->position = KbVec3f(0, 0, 500);
        camera->height = 600;
        camera->nearDistance = 1;
        camera->farDistance = 1000;
        scene->addChild(camera);
        auto* turn = new KsTransform;
        turn->rotation = KbRotation(KbVec3f(0, 0, 1), 1.5707963f);
        turn->scaleFactor = KbVec3f(2, 2, 1);
        scene->addChild(turn);
        auto* slider = new KsDialogRealSlider;
        slider->labelVisibility = false;
        scene->addChild(slider);
        const KbViewportRegion view(600, 600);
        KsGetBoundingBoxAction boxes(view);
        boxes.apply(scene.get());
        KsSearchAction search;
        search.setSearchingAll(true);
        search.setNode(slider->getAnyPart("frame", false));
        search.apply(scene.get());
        ASSERT_TRUE(search.getPath());
        boxes.apply(search.getPath());
        const KbBox3f bar = boxes.getBoundingBox();
        EXPECT_GT(bar.getSize()[1], bar.getSize()[0]) << "it stands upright";
        const float length = bar.getSize()[1];
        for (const float position : {0.2f, 0.5f, 0.9f}) {
            // Away from the cursor, which stands on the other half of the bar's breadth.
            const KbVec2f at(bar.getMin()[0] + 4 + 300,
                             bar.getMin()[1] + 10 + position * (length - 20) + 300);
            KsHandleEventAction events(view);
            for (const auto state : {KsButtonEvent::DOWN, KsButtonEvent::UP}) {
                const KsMouseButtonEvent event(KsMouseButtonEvent::BUTTON1, state, at);
                events.setEvent(&event);
                events.apply(scene.get());
            }
            EXPECT_NEAR(slider->value, position, 2e-3f);
        }
    }
    KsFormweave::finish();
}

TEST(SliderInAScene, aDragShowsTheTextAndSetsTheValueAtItsEnd)
{
    ShownInteger shown("max 10 value 2");
    const KbVec2f start = shown.cursorPlace3D();
    shown.press(start);
    EXPECT_EQ(shown.slider->value, 2);
    shown.move(start + KbVec2f(0.5f * shown.travel3D(), 0));
    EXPECT_EQ(shown.text3D(), "7");
    EXPECT_EQ(shown.text2D(), "7");
    EXPECT_NEAR(shown.slider->getValue(), 0.7f, 0.02f);
    EXPECT_NEAR(shown.cursor3D(), 0.7f * shown.travel3D(), 0.5f);
    EXPECT_EQ(shown.slider->value, 2);
    EXPECT_TRUE(shown.listener.values.empty());
    // Beyond the end it stays at the end.
    shown.move(start + KbVec2f(2 * shown.travel3D(), 40));
    EXPECT_EQ(shown.position(), 1);
    shown.release(start + KbVec2f(2 * shown.travel3D(), 40));
    EXPECT_EQ(shown.slider->value, 10);
    EXPECT_EQ(shown.listener.values, std::vector<int>{10});
}

TEST(SliderInAScene, continuousTheAuditorsHearEachNewValueOnce)
{
    ShownInteger shown("max 10 continuousTrigger TRUE", Stage::Scene);
    shown.drag3D(shown.travel3D() + 10, 300);
    EXPECT_EQ(shown.listener.values, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(SliderInAScene, aPressOnTheCursorAloneTellsNobody)
{
    for (const char* value : {"0.1", "0.3", "-0.7"}) {
        ShownReal shown(std::string("min -1 max 1 value ") + value);
        const float before = shown.slider->value;
        shown.click(shown.cursorPlace3D());
        EXPECT_EQ(shown.slider->value, before);
        EXPECT_TRUE(shown.listener.values.empty());
    }
}

TEST(SliderInAScene, theToggleSwitchesTheTriggerInBoth)
{
    ShownInteger shown("max 10");
    shown.clickPart(shown.slider, "checkSep");
    EXPECT_TRUE(shown.slider->continuousTrigger);
    EXPECT_TRUE(shown.toggle()->isChecked());
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), 1);
    shown.press2D(0);
    shown.move2D(0.5f);
    EXPECT_EQ(shown.slider->value, 5);
    shown.release2D(0.5f);
    shown.clickPart(shown.slider, "checkSep");
    EXPECT_FALSE(shown.slider->continuousTrigger);
    EXPECT_FALSE(shown.toggle()->isChecked());
    shown.press2D(0.5f);
    shown.move2D(1);
    EXPECT_EQ(shown.slider->value, 5);
    shown.release2D(1);
    EXPECT_EQ(shown.slider->value, 10);
    EXPECT_EQ(shown.listener.values, (std::vector<int>{5, 10}));
}

TEST(SliderInAScene, aTriggerThatChangesBringsAHiddenToggleBack)
{
    ShownInteger shown("max 10 toggleVisible FALSE", Stage::Scene);
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), -1);
    shown.slider->continuousTrigger = true;
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), 1);
    shown.slider->continuousTrigger = false;
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), 0);
}

TEST(SliderInAScene, aWindowThatIsMadeLaterLeavesAHiddenToggleHidden)
{
    ShownInteger shown("max 10 toggleVisible FALSE continuousTrigger TRUE");
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), -1);
}

TEST(SliderInAScene, colorsAreForWindowsOnly)
{
    ShownInteger shown("max 10", Stage::Scene);
    const auto picture = [&] {
        KsOffscreenRenderer renderer(KbViewportRegion(Stage::viewWidth, Stage::viewHeight));
        EXPECT_TRUE(renderer.render(shown.scene()));
        const auto image = renderer.getImage();
        renderer.releaseScene();
        return image;
    };
    const auto before = picture();
    shown.slider->colors = KbColor(1, 0, 0);
    shown.slider->colors.set1Value(3, KbColor(0, 1, 0));
    shown.slider->shadedColors = false;
    EXPECT_EQ(shown.slider->colors.getNum(), 4);
    EXPECT_TRUE(picture() == before);
    shown.slider->value = 7;
    EXPECT_FALSE(picture() == before) << "a change is seen in such pictures";
}

TEST(SliderInAScene, disabledItIsGreyAndTakesNoInput)
{
    ShownInteger shown("max 10 value 5 enable FALSE", Stage::Scene);
    shown.click(shown.barPlace3D(0.9f));
    EXPECT_EQ(shown.slider->value, 5);
    shown.slider->enable = true;
    shown.click(shown.barPlace3D(0.9f));
    EXPECT_EQ(shown.slider->value, 9);
}

// Typing.

TEST(SliderInAScene, aPressOnTheTextBeginsTypingAndReturnEndsIt)
{
    ShownInteger shown("max 100 value 40");
    shown.type3D("7");
    EXPECT_EQ(shown.text3D(), "40") << "nobody types yet";
    shown.clickPart(shown.slider, "edtFrmSep");
    EXPECT_EQ(shown.editMode(), 1);
    EXPECT_EQ(Stage::shown(shown.slider, "edtFrmSwtch"), 1);
    shown.clear3D();
    shown.type3D("73");
    EXPECT_EQ(shown.text3D(), "73");
    EXPECT_EQ(shown.slider->value, 40);
    shown.enter3D();
    EXPECT_EQ(shown.slider->value, 73);
    EXPECT_EQ(shown.listener.values, std::vector<int>{73});
    EXPECT_EQ(shown.editMode(), 0);
    EXPECT_EQ(Stage::shown(shown.slider, "edtFrmSwtch"), 0);
    EXPECT_FLOAT_EQ(shown.slider->getValue(), 0.73f);
    EXPECT_EQ(shown.text2D(), "73");
    EXPECT_FLOAT_EQ(shown.cursor3D(), 0.73f * shown.travel3D());
}

TEST(SliderInAScene, aWholeSliderTakesDigitsOnly)
{
    ShownInteger shown("max 100 value 4", Stage::Scene);
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.type3D("a-.,+ e\xB2");
    shown.key(KsKeyboardEvent::PAD_DELETE);
    shown.key(KsKeyboardEvent::LEFT_ARROW);
    shown.key(KsKeyboardEvent::LEFT_SHIFT);
    shown.key(KsKeyboardEvent::DELETE_KEY, 127);
    EXPECT_EQ(shown.text3D(), "4");
    shown.clear3D();
    for (int key = padSeven; key <= padZero; ++key) shown.key(key);
    EXPECT_EQ(shown.text3D(), "7486293150");
}

TEST(SliderInAScene, aRealSliderTakesWhatReadsAsOneNumber)
{
    ShownReal shown("max 10 value 2", Stage::Scene);
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.type3D("x");
    EXPECT_EQ(shown.text3D(), "2.000");
    shown.clear3D();
    shown.type3D(".-e+");
    EXPECT_EQ(shown.text3D(), "") << "none of these begins a number";
    shown.type3D("1");
    shown.key(KsKeyboardEvent::PAD_DELETE);
    shown.type3D("5.x");
    EXPECT_EQ(shown.text3D(), "1.5");
    shown.enter3D();
    EXPECT_EQ(shown.slider->value, 1.5f);
    EXPECT_EQ(shown.text3D(), "1.500");
}

TEST(SliderInAScene, aNegativeNumberThatStandsThereCanBeTypedOn)
{
    ShownReal shown("min -10 max 10 value -2 format \"%.0f\"", Stage::Scene);
    shown.clickPart(shown.slider, "edtFrmSep");
    EXPECT_EQ(shown.text3D(), "-2");
    shown.type3D(".5");
    shown.enter3D();
    EXPECT_EQ(shown.slider->value, -2.5f);
}

TEST(SliderInAScene, anEmptyTextIsZeroAndBackspaceLeavesItEmpty)
{
    ShownInteger shown("max 100 value 40", Stage::Scene);
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.clear3D();
    shown.key(KsKeyboardEvent::BACKSPACE);
    EXPECT_EQ(shown.text3D(), "");
    shown.draw();
    shown.enter3D();
    EXPECT_EQ(shown.slider->value, 0);
    EXPECT_EQ(shown.text3D(), "0");
}

TEST(SliderInAScene, aNumberTypedBeyondFixedLimitsReachesTheValueAsItIs)
{
    ShownInteger shown("max 10 value 4 fixedLimits TRUE");
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.clear3D();
    shown.type3D("50");
    shown.enter3D();
    EXPECT_EQ(shown.slider->value, 50);
    EXPECT_EQ(shown.position(), 1);
    EXPECT_EQ(shown.text3D(), "10");
    EXPECT_EQ(shown.text2D(), "10");
    EXPECT_EQ(shown.slider->max, 10);
    EXPECT_EQ(shown.listener.values, std::vector<int>{50});
}

TEST(SliderInAScene, aNumberTypedBeyondALimitMovesIt)
{
    ShownReal shown("max 10 value 4");
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.clear3D();
    shown.type3D("50");
    shown.enter3D();
    EXPECT_EQ(shown.slider->max, 50.0f);
    EXPECT_EQ(shown.slider->value, 50.0f);
    EXPECT_EQ(shown.position(), 1);
    EXPECT_EQ(shown.text2D(), "50.000");
    EXPECT_EQ(shown.text3D(), "50.000");
}

TEST(SliderInAScene, typingThatIsLeftKeepsTheTextAndSetsNothing)
{
    ShownInteger shown("max 100 value 40");
    auto* other = new KsDialogCheckBox;
    shown.dialog->addChild(other);
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.type3D("7");
    shown.clickPart(other, "stateSep");
    EXPECT_EQ(shown.editMode(), 0);
    EXPECT_EQ(Stage::shown(shown.slider, "edtFrmSwtch"), 0);
    EXPECT_EQ(shown.text3D(), "407");
    EXPECT_EQ(shown.slider->value, 40);
    EXPECT_TRUE(shown.listener.values.empty());
    shown.slider->value = 41;
    EXPECT_EQ(shown.text3D(), "41");
}

TEST(SliderInAScene, aDragOfTheCursorEndsTyping)
{
    ShownInteger shown("max 100 value 40");
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.type3D("7");
    shown.drag3D(10);
    EXPECT_EQ(shown.editMode(), 0);
    EXPECT_EQ(Stage::shown(shown.slider, "edtFrmSwtch"), 0);
    EXPECT_NE(shown.slider->value, 40);
}

TEST(SliderInAScene, twoSlidersDoNotShareTheirKeys)
{
    Stage stage("TopLevelDialog { DialogIntegerSlider { auditorID \"a\" max 10 } "
                "DialogIntegerSlider { auditorID \"b\" max 10 } }",
                Stage::Scene);
    auto* a = stage.find<KsDialogIntegerSlider>("a");
    auto* b = stage.find<KsDialogIntegerSlider>("b");
    stage.clickPart(a, "edtFrmSep");
    stage.clickPart(b, "edtFrmSep");
    stage.key(KsKeyboardEvent::BACKSPACE);
    stage.type("7");
    stage.key(KsKeyboardEvent::RETURN);
    EXPECT_EQ(a->value, 0);
    EXPECT_EQ(b->value, 7);
}

TEST(SliderInAScene, mayDieInItsOwnAuditor)
{
    for (const char* how : {"bar", "drag", "text"}) {
        ShownInteger shown("max 10 value 2 continuousTrigger TRUE");
        int heard = 0;
        shown.listener.then = [&](KsDialogIntegerSlider* slider) {
            ++heard;
            slider->removeAuditor(&shown.listener);
            shown.dialog->removeChild(shown.dialog->findChild(slider));
        };
        if (std::string(how) == "bar") {
            shown.click(shown.barPlace3D(0.9f));
        } else if (std::string(how) == "drag") {
            const KbVec2f start = shown.cursorPlace3D();
            shown.press(start);
            shown.move(start + KbVec2f(50, 0));
            shown.move(start + KbVec2f(60, 0));
            shown.release(start + KbVec2f(60, 0));
        } else {
            shown.clickPart(shown.slider, "edtFrmSep");
            shown.type3D("1");
            shown.enter3D();
        }
        EXPECT_EQ(heard, 1) << how;
        shown.slider = nullptr;
        Stage::settle();
    }
}

TEST(SliderInAScene, aBarWithoutRoomStaysAtItsLeftEnd)
{
    ShownInteger shown("max 1000000 value 500000 width 60 maxWidth 60", Stage::Scene);
    EXPECT_EQ(shown.cursor3D(), 0);
    shown.click(shown.cursorPlace3D());
    shown.slider->changeSliderFromSlider(0.25f);
    EXPECT_EQ(shown.cursor3D(), 0);
}

TEST(SliderInAScene, aPositionFarAwayKeepsTheSceneFinite)
{
    ShownReal shown("value 0.5", Stage::Scene);
    shown.slider->value = 3e38f;
    const KbBox3f box = shown.draw();
    for (int i = 0; i < 3; ++i) {
        EXPECT_LT(std::abs(box.getMin()[i]), 1e7f);
        EXPECT_LT(std::abs(box.getMax()[i]), 1e7f);
    }
}

TEST(SliderInAScene, borrowsTheLooksOfCheckBoxAndEditText)
{
    ShownInteger shown("max 10", Stage::Scene);
    const auto name = [&](const char* part) {
        return std::string(shown.slider->getAnyPart(part, false)->getName().getString());
    };
    EXPECT_EQ(name("checkStateOff"), "DialogCheckBoxStateOff");
    EXPECT_EQ(name("checkStateOn"), "DialogCheckBoxStateOn");
    EXPECT_EQ(name("frame"), "DialogSliderFrame");
    EXPECT_EQ(name("cursor"), "DialogSliderCursor");
    EXPECT_EQ(name("valueFrame"), "DialogEditTextFrame");
    EXPECT_EQ(name("editValueFrame"), "DialogEditTextEditingFrame");
    EXPECT_EQ(name("labelProp"), "DialogTextProperties");
    EXPECT_EQ(name("editTextProp"), "DialogTextProperties");
    EXPECT_TRUE(KsDialogSlider::isSkinLoaded());
    EXPECT_TRUE(KsDialogCheckBox::isSkinLoaded());
}

TEST(SliderInAScene, aNewSkinIsTakenOverOnScreen)
{
    ShownInteger shown("max 10 value 5");
    const KsNode* frame = shown.slider->getAnyPart("frame", false);
    KsFormweave::setSkin((std::string(FORMWEAVE_SKIN_DIR) + "/dark").c_str());
    EXPECT_EQ(shown.slider->getAnyPart("frame", false), frame);
    EXPECT_GT(static_cast<const KsGroup*>(frame)->getNumChildren(), 0);
    shown.click(shown.barPlace3D(0.9f));
    EXPECT_EQ(shown.slider->value, 9);
}

TEST(SliderInAScene, disabledWhileSomebodyTypesItTakesNoKey)
{
    ShownInteger shown("max 100 value 4", Stage::Scene);
    shown.clickPart(shown.slider, "edtFrmSep");
    shown.slider->enable = false;
    shown.type3D("2");
    EXPECT_EQ(shown.text3D(), "4");
}
