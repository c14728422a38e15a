// Sliders in a window: position, text and value, and the three ways to change them.

#include "Sliders.h"

#include <arborium/io/KsInput.h>
#include <arborium/kits/KsNodekitCatalog.h>

#include <QLocale>
#include <QWindow>
#include <clocale>
#include <cmath>
#include <limits>

namespace {

constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

void buildIn3D(KsDialogComponent* element)
{
    KsGetBoundingBoxAction action{KbViewportRegion(100, 100)};
    action.apply(element);
}

int widthOf(const std::string& text)
{
    return KsFormweave::getLabelPixelSize(KbString(text), nullptr)[0];
}

} // namespace

// The class as tables.

TEST(Slider, hasItsFieldsAndDefaults)
{
    const Library library;
    const KsRef<KsDialogIntegerSlider> whole(new KsDialogIntegerSlider);
    const KsRef<KsDialogRealSlider> real(new KsDialogRealSlider);
    EXPECT_TRUE(whole->valueVisible);
    EXPECT_FALSE(whole->continuousTrigger);
    EXPECT_TRUE(whole->toggleVisible);
    EXPECT_FALSE(whole->fixedLimits);
    EXPECT_TRUE(whole->shadedColors);
    ASSERT_EQ(whole->colors.getNum(), 1);
    EXPECT_EQ(whole->colors[0], KbColor(0.66f, 0.66f, 0.66f));
    EXPECT_EQ(whole->format, KbString("%d"));
    EXPECT_EQ(real->format, KbString("%.3f"));
    EXPECT_TRUE(real->format.isDefault());
    EXPECT_EQ(whole->min, 0);
    EXPECT_EQ(whole->max, 1);
    EXPECT_EQ(whole->value, 0);
    EXPECT_EQ(real->max, 1.0f);
    EXPECT_TRUE(whole->isOfType(KsDialogSlider::getClassTypeId()));
    KsFieldList fields;
    whole->getFields(fields);
    std::string names;
    for (const KsFieldEntry& entry : fields) {
        if (entry.name == "valueVisible") names.clear();
        names += std::string(entry.name.getString()) + " ";
    }
    EXPECT_EQ(names, "valueVisible format continuousTrigger toggleVisible fixedLimits colors "
                     "shadedColors min max value ");
}

TEST(Slider, hasItsPartsInTheirOrder)
{
    const Library library;
    const KsRef<KsDialogRealSlider> slider(new KsDialogRealSlider);
    const KsNodekitCatalog* catalog = slider->getNodekitCatalog();
    std::string parts;
    for (int i = catalog->getPartNumber("labelSep"); i < catalog->getNumEntries(); ++i) {
        parts += std::string(catalog->getName(i).getString()) + "<" +
                 catalog->getName(catalog->getParent(i)).getString() +
                 (catalog->isPublic(i) ? "* " : " ");
    }
    EXPECT_EQ(parts, "labelSep<geomSwitch labelSwitch<labelSep labelProp<labelSwitch* "
                     "checkSep<geomSwitch checkSwtch<checkSep checkStateOff<checkSwtch* "
                     "checkStateOn<checkSwtch* sliderSep<geomSwitch frameSep<sliderSep "
                     "frame<frameSep* cursorSep<sliderSep cursor<cursorSep* edtSwtch<geomSwitch "
                     "edtFrmSep<edtSwtch edtFrmSwtch<edtFrmSep valueFrame<edtFrmSwtch* "
                     "editValueFrame<edtFrmSwtch* editTextSep<edtSwtch editTextProp<editTextSep* ");
}

TEST(Slider, ofNoKindIsAnEmptyFrameWithAFormatOfItsOwn)
{
    Stage stage("TopLevelDialog { DialogSlider { auditorID \"bare\" } }");
    auto* bare = stage.find<KsDialogSlider>("bare");
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->format, KbString("%3f"));
    ASSERT_TRUE(bare->getWidget());
    EXPECT_FALSE(Stage::widgetOf<QLineEdit>(bare));
    EXPECT_FALSE(bare->getAnyPart("frame", false));
    bare->colors = KbColor(1, 0, 0);
    bare->valueVisible = false;
    bare->toggleVisible = false;
    bare->continuousTrigger = true;
    EXPECT_EQ(bare->computeEditZoneWidth(), 0);
    EXPECT_EQ(bare->getValue(), 0);
}

// Limits at the build.

TEST(Slider, theFirstWholeOneOfAProcessIsBroughtIntoItsLimitsAndLaterOnesMoveThem)
{
    Stage stage("TopLevelDialog { DialogIntegerSlider { auditorID \"1\" max 10 value 12 } "
                "DialogIntegerSlider { auditorID \"2\" max 10 value 12 } "
                "DialogIntegerSlider { auditorID \"3\" max 10 value -5 } "
                "DialogIntegerSlider { auditorID \"4\" max 10 value 12 fixedLimits TRUE } }");
    const auto at = [&](const char* id) { return stage.find<KsDialogIntegerSlider>(id); };
    EXPECT_EQ(at("1")->value, 10);
    EXPECT_EQ(at("1")->max, 10);
    EXPECT_EQ(at("2")->value, 12);
    EXPECT_EQ(at("2")->max, 12);
    EXPECT_EQ(at("3")->value, -5);
    EXPECT_EQ(at("3")->min, -5);
    EXPECT_EQ(at("4")->value, 10);
    EXPECT_EQ(at("4")->max, 10);
    EXPECT_EQ(at("2")->getValue(), 1);
    EXPECT_EQ(at("3")->getValue(), 0);
}

TEST(Slider, theFirstRealOneOfAProcessIsAnotherFirstOne)
{
    Stage stage("TopLevelDialog { DialogIntegerSlider { } "
                "DialogRealSlider { auditorID \"1\" value 1.5 } "
                "DialogRealSlider { auditorID \"2\" value 1.5 } }");
    EXPECT_EQ(stage.find<KsDialogRealSlider>("1")->value, 1.0f);
    EXPECT_EQ(stage.find<KsDialogRealSlider>("2")->value, 1.5f);
    EXPECT_EQ(stage.find<KsDialogRealSlider>("2")->max, 1.5f);
}

TEST(Slider, withEqualLimitsAndAnotherValueTakesTheLimit)
{
    for (const char* value : {"7", "3"}) {
        const std::string fields = std::string("fixedLimits TRUE min 5 max 5 value ") + value;
        ShownInteger whole(fields);
        EXPECT_EQ(whole.slider->value, 5);
        EXPECT_EQ(whole.position(), 0);
        EXPECT_EQ(whole.text2D(), "5");
        EXPECT_EQ(whole.text3D(), "5");
        ShownReal real(fields);
        EXPECT_EQ(real.slider->value.getValue(), 5.0f);
        EXPECT_EQ(real.position(), 0);
    }
}

TEST(Slider, withEqualLimitsTakesTheLimitAndStandsAtTheLeft)
{
    const Library library;
    const KsRef<KsDialogIntegerSlider> first(new KsDialogIntegerSlider);
    buildIn3D(first.get());
    ShownInteger shown("min 5 max 5 value 5");
    EXPECT_EQ(shown.slider->value, 5);
    EXPECT_EQ(shown.slider->getValue(), 0);
    EXPECT_EQ(shown.text2D(), "5");
    shown.type2D("5");
    EXPECT_EQ(shown.slider->value, 5);
    shown.drag2D(0, 0.6f);
    EXPECT_EQ(shown.slider->value, 5);
    EXPECT_EQ(shown.text2D(), "5");
    EXPECT_TRUE(shown.listener.values.empty());
}

// The text and the bar follow the value.

TEST(Slider, theBarAndTheTextShowTheValue)
{
    ShownInteger shown("max 10 value 3");
    EXPECT_FLOAT_EQ(shown.slider->getValue(), 0.3f);
    EXPECT_EQ(shown.text2D(), "3");
    shown.slider->value = 7;
    EXPECT_FLOAT_EQ(shown.slider->getValue(), 0.7f);
    EXPECT_EQ(shown.text2D(), "7");
    EXPECT_TRUE(shown.listener.values.empty()) << "the application's own change is no news to it";
}

TEST(Slider, aValueBeyondTheLimitsIsKeptAndMovesThePositionBeyondTheEnds)
{
    ShownReal shown("max 10 value 3");
    shown.slider->value = 15;
    EXPECT_EQ(shown.slider->value, 15.0f);
    EXPECT_EQ(shown.slider->max, 10.0f);
    EXPECT_FLOAT_EQ(shown.position(), 1.5f);
    EXPECT_FLOAT_EQ(shown.slider->getValue(), 1.5f);
    EXPECT_EQ(shown.text2D(), "15.000");
    EXPECT_EQ(shown.text3D(), "15.000");
    EXPECT_FLOAT_EQ(shown.cursor3D(), 1.5f * shown.travel3D());
    shown.slider->value = -5;
    EXPECT_FLOAT_EQ(shown.position(), -0.5f);
    EXPECT_TRUE(shown.listener.values.empty());
}

TEST(Slider, aLimitThatPassesTheValueTakesItAlongWithoutAnAuditor)
{
    ShownInteger shown("max 10 value 3");
    shown.slider->min = 5;
    EXPECT_EQ(shown.slider->value, 5);
    EXPECT_EQ(shown.position(), 0);
    EXPECT_EQ(shown.text2D(), "5");
    EXPECT_EQ(shown.text3D(), "5");
    shown.slider->min = 0;
    shown.slider->max = 4;
    EXPECT_EQ(shown.slider->value, 4);
    EXPECT_EQ(shown.position(), 1);
    EXPECT_TRUE(shown.listener.values.empty());
    // A limit makes room for its digits.
    const int before = shown.editZone();
    shown.slider->max = 400000;
    EXPECT_EQ(shown.editZone(), widthOf("999999") + 8);
    EXPECT_GT(shown.editZone(), before);
    EXPECT_EQ(shown.edit()->width(), shown.editZone());
}

TEST(Slider, wholeNumbersAreTheNearestStepHalvesUpward)
{
    ShownInteger shown("max 10 value 3");
    const auto at = [&](float position) {
        shown.slider->changeValueAfterFinish(position);
        return shown.slider->value.getValue();
    };
    EXPECT_EQ(at(0.449f), 4);
    EXPECT_EQ(at(0.451f), 5);
    EXPECT_EQ(at(0.25f), 3);
    EXPECT_EQ(at(0.75f), 8);
    EXPECT_EQ(at(0), 0);
    EXPECT_EQ(at(1), 10);
    // So is what the application sets beyond the limits.
    shown.slider->value = -5;
    EXPECT_EQ(shown.text2D(), "-5");
    shown.slider->value = 14;
    EXPECT_EQ(shown.text2D(), "14");
}

// A drag.

TEST(Slider, aDragShowsTheTextAndSetsTheValueAtItsEnd)
{
    ShownInteger shown("max 10 value 2");
    shown.press2D(0.2f);
    shown.move2D(0.5f);
    EXPECT_EQ(shown.text2D(), "5");
    EXPECT_EQ(shown.text3D(), "5");
    EXPECT_NEAR(shown.cursor3D(), 0.5f * shown.travel3D(), 1.5f);
    EXPECT_EQ(shown.slider->value, 2);
    shown.move2D(0.8f);
    EXPECT_EQ(shown.text2D(), "8");
    EXPECT_TRUE(shown.listener.values.empty());
    shown.release2D(0.8f);
    EXPECT_EQ(shown.slider->value, 8);
    EXPECT_EQ(shown.listener.values, std::vector<int>{8});
}

TEST(Slider, aDragThatEndsWhereItBeganTellsNobody)
{
    ShownInteger whole("max 10 value 2");
    whole.press2D(0.2f);
    whole.move2D(0.7f);
    whole.move2D(0.2f);
    whole.release2D(0.2f);
    EXPECT_TRUE(whole.listener.values.empty());
    EXPECT_EQ(whole.text2D(), "2");
}

TEST(Slider, aPressOnTheCursorAloneChangesNoRealValueByALastDigit)
{
    // From the value to the position and back is not the same value for all of these.
    for (const char* value : {"0.1", "0.3", "-0.7", "0.123456", "0.9999"}) {
        ShownReal shown(std::string("min -1 max 1 value ") + value);
        const float before = shown.slider->value;
        // On the cursor's tip, where nothing jumps.
        const QPoint place =
            shown.barPlace(shown.slider->getValue()) + QPoint(0, shown.bar()->height() / 2);
        QTest::mouseClick(shown.bar(), Qt::LeftButton, Qt::NoModifier, place);
        EXPECT_EQ(shown.slider->value, before);
        EXPECT_TRUE(shown.listener.values.empty());
    }
}

TEST(Slider, continuousTheAuditorsHearEachNewValueOnce)
{
    ShownInteger shown("max 10 continuousTrigger TRUE");
    shown.drag2D(0, 1, 300);
    EXPECT_EQ(shown.slider->value, 10);
    EXPECT_EQ(shown.listener.values, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(Slider, continuousARealValueFollowsEachMove)
{
    ShownReal shown("continuousTrigger TRUE");
    shown.press2D(0);
    shown.move2D(0.25f);
    EXPECT_NEAR(shown.slider->value, 0.25f, 0.02f);
    shown.move2D(0.5f);
    shown.release2D(0.5f);
    EXPECT_EQ(shown.listener.values.size(), 2u);
    EXPECT_NEAR(shown.slider->value, 0.5f, 0.02f);
}

TEST(Slider, aClickOnTheBarJumpsThere)
{
    ShownInteger shown("max 100");
    QTest::mouseClick(shown.bar(), Qt::LeftButton, Qt::NoModifier, shown.barPlace(0.6f));
    EXPECT_NEAR(shown.slider->value, 60, 2);
    EXPECT_EQ(shown.listener.values.size(), 1u);
}

TEST(Slider, theArrowKeysMoveTheBar)
{
    ShownInteger shown("max 100 value 50");
    shown.bar()->setFocus();
    QTest::keyClick(shown.bar(), Qt::Key_Right);
    EXPECT_EQ(shown.slider->value, 51);
    QTest::keyClick(shown.bar(), Qt::Key_End);
    EXPECT_EQ(shown.slider->value, 100);
    EXPECT_EQ(shown.listener.values, (std::vector<int>{51, 100}));
}

// The toggle.

TEST(Slider, theToggleSwitchesTheTriggerAndTellsNoAuditor)
{
    ShownInteger shown("max 10");
    QTest::mouseClick(shown.toggle(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, shown.toggle()->height() / 2));
    EXPECT_TRUE(shown.slider->continuousTrigger);
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), 1);
    EXPECT_TRUE(shown.listener.values.empty());
    shown.press2D(0);
    shown.move2D(0.5f);
    EXPECT_EQ(shown.listener.values, std::vector<int>{5});
    shown.release2D(0.5f);
    QTest::mouseClick(shown.toggle(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, shown.toggle()->height() / 2));
    EXPECT_FALSE(shown.slider->continuousTrigger);
    shown.press2D(0.5f);
    shown.move2D(0.9f);
    EXPECT_EQ(shown.slider->value, 5);
    shown.release2D(0.9f);
    EXPECT_EQ(shown.slider->value, 9);
}

TEST(Slider, theTriggerSetByTheApplicationCountsInTheWindow)
{
    ShownInteger shown("max 10");
    shown.slider->continuousTrigger = true;
    EXPECT_TRUE(shown.toggle()->isChecked());
    shown.press2D(0);
    shown.move2D(0.4f);
    EXPECT_EQ(shown.slider->value, 4);
    shown.release2D(0.4f);
    shown.slider->continuousTrigger = false;
    EXPECT_FALSE(shown.toggle()->isChecked());
    shown.press2D(0.4f);
    shown.move2D(0.8f);
    EXPECT_EQ(shown.slider->value, 4);
    shown.release2D(0.8f);
    EXPECT_EQ(shown.slider->value, 8);
}

// Typing.

TEST(Slider, aTypedValueBeyondALimitMovesTheLimit)
{
    ShownInteger shown("max 10 value 3");
    shown.type2D("12");
    EXPECT_EQ(shown.slider->max, 12);
    EXPECT_EQ(shown.slider->value, 12);
    EXPECT_EQ(shown.position(), 1);
    EXPECT_EQ(shown.slider->getValue(), 1);
    EXPECT_EQ(shown.text2D(), "12");
    EXPECT_EQ(shown.text3D(), "12");
    EXPECT_EQ(shown.listener.values, std::vector<int>{12});
    shown.type2D("-4");
    EXPECT_EQ(shown.slider->min, -4);
    EXPECT_EQ(shown.slider->value, -4);
    EXPECT_EQ(shown.position(), 0);
}

TEST(Slider, aTypedValueBeyondAFixedLimitIsRewritten)
{
    ShownInteger whole("max 10 value 3 fixedLimits TRUE");
    whole.type2D("12");
    EXPECT_EQ(whole.text2D(), "10");
    EXPECT_EQ(whole.slider->value, 10);
    EXPECT_EQ(whole.slider->max, 10);
    EXPECT_EQ(whole.listener.values, std::vector<int>{10});
    whole.type2D("-12");
    EXPECT_EQ(whole.text2D(), "0");
    ShownReal real("max 10 value 3 fixedLimits TRUE");
    real.type2D("12.5");
    EXPECT_EQ(real.text2D(), "10.000");
    EXPECT_EQ(real.slider->value, 10.0f);
}

TEST(Slider, aFractionTypedIntoAWholeSliderIsRewritten)
{
    ShownInteger shown("max 10");
    shown.type2D("3.7");
    EXPECT_EQ(shown.text2D(), "3");
    EXPECT_EQ(shown.slider->value, 3);
    EXPECT_EQ(shown.text3D(), "3");
}

TEST(Slider, ATypedRealStaysAsItWasTyped)
{
    ShownReal shown("max 10");
    shown.type2D("2.5");
    EXPECT_EQ(shown.text2D(), "2.5");
    EXPECT_EQ(shown.text3D(), "2.500");
    EXPECT_EQ(shown.slider->value, 2.5f);
    EXPECT_EQ(shown.listener.values, std::vector<float>{2.5f});
}

TEST(Slider, aTypedValueIsSetWhateverTheTrigger)
{
    for (const char* trigger : {"TRUE", "FALSE"}) {
        ShownInteger shown(std::string("max 10 continuousTrigger ") + trigger);
        shown.type2D("6");
        EXPECT_EQ(shown.slider->value, 6);
        EXPECT_EQ(shown.listener.values, std::vector<int>{6});
    }
}

TEST(Slider, aTextThatIsNoNumberCountsAsZero)
{
    ShownInteger shown("max 10 value 5");
    shown.type2D("abc");
    EXPECT_EQ(shown.slider->value, 0);
    EXPECT_EQ(shown.position(), 0);
}

TEST(Slider, anEmptyTextKeepsTheEditorsHeight)
{
    ShownInteger shown("max 10 value 5");
    const int height = shown.edit()->height();
    shown.edit()->clear();
    shown.slider->updateEditWidget();
    EXPECT_EQ(shown.edit()->height(), height);
}

TEST(Slider, theStepOperationNeitherClampsNorSetsTheValue)
{
    ShownInteger shown("max 10 value 5");
    shown.slider->changeSliderFromSlider(0.25f);
    EXPECT_FLOAT_EQ(shown.slider->getValue(), 0.75f);
    shown.slider->changeSliderFromSlider(1);
    EXPECT_FLOAT_EQ(shown.position(), 1.75f);
    EXPECT_FLOAT_EQ(shown.cursor3D(), 1.75f * shown.travel3D());
    EXPECT_EQ(shown.slider->value, 5);
    EXPECT_EQ(shown.text2D(), "5");
}

TEST(Slider, withoutAWindowTheTextOfTheWindowIsZero)
{
    ShownInteger shown("max 10 value 5", Stage::Scene);
    EXPECT_EQ(shown.slider->getValueFromEdit(), "0");
    EXPECT_FALSE(shown.slider->getActive2d());
    EXPECT_FLOAT_EQ(shown.slider->getValue(), 0.5f);
    shown.slider->changeSliderFromEdit();
    EXPECT_EQ(shown.slider->value, 0) << "no text is the text 0";
}

// Sizes and places.

TEST(Slider, isMadeUpOfItsTwoZones)
{
    const Library library;
    const KsRef<KsDialogRealSlider> slider(new KsDialogRealSlider);
    EXPECT_EQ(slider->getComponentInitSize(), KbVec2i32(150, 30));
    KbVec2i32 zone(120, 40), label(50, 20), size, min, max;
    slider->setComponentSize(zone);
    slider->setLabelSize(label);
    slider->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(120 + 50 + 2, 40));
    slider->labelVisibility = false;
    slider->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(120, 40));
    EXPECT_EQ(slider->getComponentInitSize(), KbVec2i32(150, 30));
}

TEST(Slider, theEditZoneHoldsAsManyDigitsAsTheLimits)
{
    const Library library;
    const auto whole = [](int min, int max, const char* format = "%d") {
        const KsRef<KsDialogIntegerSlider> slider(new KsDialogIntegerSlider);
        slider->min = min;
        slider->max = max;
        slider->format = format;
        return slider->computeEditZoneWidth() - 8;
    };
    EXPECT_EQ(whole(0, 1), widthOf("9"));
    EXPECT_EQ(whole(0, 9), widthOf("9"));
    EXPECT_EQ(whole(0, 10), widthOf("99"));
    EXPECT_EQ(whole(-5, 5), widthOf("99"));
    EXPECT_EQ(whole(-100, 5), widthOf("9999"));
    EXPECT_EQ(whole(0, 100, "%d km"), widthOf("999 km"));
    EXPECT_EQ(whole(0, 0), widthOf("9"));
    EXPECT_EQ(whole(0, largest), widthOf("2147483647"));
    EXPECT_EQ(whole(smallest, 0), widthOf("-2147483648"));
    const auto real = [](float min, float max) {
        const KsRef<KsDialogRealSlider> slider(new KsDialogRealSlider);
        slider->min = min;
        slider->max = max;
        return slider->computeEditZoneWidth() - 8;
    };
    EXPECT_EQ(real(0, 1), widthOf("9.010"));
    EXPECT_EQ(real(0, 0.5f), widthOf("9.010"));
    EXPECT_EQ(real(0, 10), widthOf("99.010"));
    EXPECT_EQ(real(-5, 5), widthOf("9.010"));
    EXPECT_EQ(real(-9, 5), widthOf("99.010")) << "the sign counts inside the logarithm";
    EXPECT_EQ(real(-infinite, 3e38f), widthOf("9999999999.010"));
}

TEST(Slider, standsInItsZonesInTheWindow)
{
    ShownInteger shown("max 100 value 40");
    const int h = shown.slider->getWidget()->height() - 6;
    const int w = shown.slider->getWidget()->width() - 6;
    const int label = shown.labelWidth() + 2;
    const int edit = widthOf("999") + 8;
    const int text = KsFormweave::getLabelPixelSize("40", nullptr)[1];
    EXPECT_EQ(shown.toggle()->geometry(), QRect(3 + label, 3, 16, h));
    EXPECT_EQ(shown.bar()->geometry(), QRect(3 + 18 + label, 3, w - 18 - label - edit - 2, h));
    EXPECT_EQ(shown.edit()->geometry(), QRect(3 + w - edit, 3 + (h - text) / 2, edit, text));
    EXPECT_EQ(shown.labelWidget()->x(), 3);
    EXPECT_EQ(shown.labelWidget()->width(), shown.labelWidth());

    shown.slider->toggleVisible = false;
    EXPECT_TRUE(shown.toggle()->isHidden());
    EXPECT_EQ(shown.bar()->geometry(), QRect(3 + label, 3, w - label - edit - 2, h));
    EXPECT_EQ(shown.edit()->x(), 3 + w - edit);
    shown.slider->valueVisible = false;
    EXPECT_TRUE(shown.edit()->isHidden());
    EXPECT_EQ(shown.bar()->geometry(), QRect(3 + label, 3, w - label, h));
    shown.slider->labelVisibility = false;
    EXPECT_TRUE(shown.labelWidget()->isHidden());
    EXPECT_EQ(shown.bar()->geometry(), QRect(3, 3, w, h));
    shown.slider->toggleVisible = true;
    EXPECT_EQ(shown.toggle()->geometry(), QRect(3, 3, 16, h));
    shown.slider->valueVisible = true;
    EXPECT_EQ(shown.bar()->geometry(), QRect(21, 3, w - 18 - edit - 2, h));
}

TEST(Slider, itsSizeIsTheLeastSizeOfItsFrame)
{
    ShownInteger shown("width 300 height 40 fixedWidth TRUE");
    const QWidget* frame = shown.slider->getWidget();
    EXPECT_EQ(frame->minimumWidth(), 300);
    EXPECT_EQ(frame->minimumHeight(), 40);
    EXPECT_EQ(frame->maximumWidth(), 300);
}

TEST(Slider, hiddenPartsAreHiddenFromTheStart)
{
    ShownInteger shown("toggleVisible FALSE valueVisible FALSE labelVisibility FALSE");
    EXPECT_TRUE(shown.toggle()->isHidden());
    EXPECT_TRUE(shown.edit()->isHidden());
    EXPECT_TRUE(shown.labelWidget()->isHidden());
    EXPECT_EQ(Stage::shown(shown.slider, "checkSwtch"), -1);
    EXPECT_EQ(Stage::shown(shown.slider, "edtSwtch"), -1);
    EXPECT_EQ(Stage::shown(shown.slider, "labelSwitch"), -1);
}

TEST(Slider, disabledItTakesNoInput)
{
    ShownInteger shown("max 10 enable FALSE");
    EXPECT_FALSE(shown.bar()->isEnabled());
    EXPECT_FALSE(shown.edit()->isEnabled());
    shown.drag2D(0, 1);
    EXPECT_EQ(shown.slider->value, 0);
    shown.slider->enable = true;
    shown.drag2D(0, 1);
    EXPECT_EQ(shown.slider->value, 10);
}

// The format.

TEST(Slider, aNewFormatCountsFromTheNextPrintingOn)
{
    ShownReal shown("max 10 value 2.5");
    shown.slider->format = "%.1f m";
    EXPECT_EQ(shown.text2D(), "2.500");
    shown.slider->value = 3;
    EXPECT_EQ(shown.text2D(), "3.0 m");
    EXPECT_EQ(shown.text3D(), "3.0 m");
}

TEST(Slider, aConversionOfTheOtherKindConvertsTheNumber)
{
    ShownReal real("max 10 value 2.75 format \"%d of 10\"");
    EXPECT_EQ(real.text2D(), "2 of 10");
    EXPECT_EQ(real.text3D(), "2 of 10");
    ShownInteger whole("max 10 value 3 format \"%.1f%%\"");
    EXPECT_EQ(whole.text2D(), "3.0%");
}

TEST(Slider, aBadFormatIsReportedKeptAndReplacedInWhatIsShown)
{
    for (const char* format : {"%s%s%n", "%*d", "%1000000d", "%", "%lld", "", "none"}) {
        ExpectedMessages messages("KsDialogSlider::format", "is no format of one number");
        ShownReal real(std::string("max 10 value 2.5 format \"") + format + "\"");
        EXPECT_EQ(messages.messages().size(), 1u) << format;
        EXPECT_EQ(real.text2D(), "2.500");
        EXPECT_EQ(real.text3D(), "2.500");
        EXPECT_EQ(real.slider->format, KbString(format));
        real.slider->value = 5;
        EXPECT_EQ(real.text2D(), "5.000");
        EXPECT_NE(written(real.slider).find(std::string("format \"") + format + "\""),
                  std::string::npos);
    }
}

TEST(Slider, aBadFormatInAFileIsReportedWithItsPlace)
{
    const Library library;
    const std::string text = "Separator {\n  DialogRealSlider {\n    format \"%n\"\n  }\n}";
    ExpectedMessages messages("KsDialogSlider::format", "<buffer>:3:12: \"%n\"");
    KsInput in;
    in.setBuffer(text.data(), text.size());
    const KsRef<KsSeparator> root(KsDB::readAll(&in));
    EXPECT_TRUE(root) << "the file is taken all the same";
}

TEST(Slider, aBadFormatOfTheApplicationIsReported)
{
    const Library library;
    const KsRef<KsDialogRealSlider> slider(new KsDialogRealSlider);
    slider->format = "%5.1f";
    ExpectedMessages messages("KsDialogSlider::format", "\"%s\" is no format");
    slider->format = "%s";
    EXPECT_EQ(slider->format, KbString("%s"));
}

TEST(Slider, textAroundTheConversionIsKeptInAnyAlphabet)
{
    ShownReal shown("max 10 value 2.5");
    shown.slider->format = KbString::fromUtf8("%.1f \xce\xa9 (100 %%)");
    shown.slider->value = 3.5f;
    EXPECT_EQ(shown.edit()->text(), QString::fromUtf8("3.5 \xce\xa9 (100 %)"));
    EXPECT_EQ(shown.text3D(), "3.5 \xce\xa9 (100 %)");
    // A character is whole or not there.
    std::string long95;
    for (int i = 0; i < 60; ++i) long95 += "\xce\xa9";
    shown.slider->format = KbString::fromUtf8(long95 + "%.1f");
    shown.slider->value = 4.5f;
    EXPECT_EQ(shown.edit()->text(), QString(47, QChar(0x3a9)));
}

TEST(Slider, theProgramsLocaleChangesNeitherPrintingNorTypingNorParsing)
{
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C"})
        if (std::setlocale(LC_ALL, name)) break;
    QLocale::setDefault(QLocale(QLocale::German));
    ShownReal shown("max 10 value 2.5");
    EXPECT_EQ(shown.text2D(), "2.500");
    EXPECT_EQ(shown.text3D(), "2.500");
    shown.type2D("1.25");
    EXPECT_EQ(shown.slider->value, 1.25f);
    shown.clickPart(shown.slider, "edtSwtch");
    shown.clear3D();
    shown.type3D("7,5.5");
    EXPECT_EQ(shown.text3D(), "75.5");
    shown.enter3D();
    EXPECT_EQ(shown.slider->value, 75.5f);
    std::setlocale(LC_ALL, "C");
}

TEST(Slider, whatIsPrintedIsCutAt95Characters)
{
    ShownInteger shown("max 10 value 5 format \"" + std::string(200, 'x') + "%d\"");
    EXPECT_EQ(shown.text2D(), std::string(95, 'x'));
    shown.slider->value = 7;
    EXPECT_EQ(shown.text3D(), std::string(95, 'x'));
}

// Bad numbers.

TEST(Slider, limitsOfAllKindsGiveNumbersAndNoHarm)
{
    const float none = std::nanf("");
    const float all[] = {0, -1, 5, 1e30f, -3.4e38f, 3.4e38f, infinite, -infinite, none};
    ShownReal shown("max 10 value 2.5");
    for (const float min : all) {
        for (const float max : all) {
            shown.slider->min = min;
            shown.slider->max = max;
            shown.slider->value = 1;
            EXPECT_TRUE(std::isfinite(shown.position())) << min << " " << max;
            EXPECT_TRUE(std::isfinite(shown.cursor3D()));
            shown.drag2D(0, 0.7f, 2);
            shown.type2D("12");
            EXPECT_TRUE(std::isfinite(shown.position())) << min << " " << max;
            shown.draw();
        }
    }
}

TEST(Slider, limitsOfAllKindsAreReadFromFiles)
{
    for (const char* limits : {"min 10 max 0", "min 3.4e38 max -3.4e38", "min -3.4e38 max 3.4e38",
                               "min 0 max 1e-45", "min 5 max 5"}) {
        for (const char* fixed : {" fixedLimits TRUE", ""}) {
            ShownReal shown(std::string(limits) + fixed + " value 4");
            EXPECT_TRUE(std::isfinite(shown.position())) << limits;
            EXPECT_TRUE(std::isfinite(shown.cursor3D())) << limits;
            EXPECT_LT(shown.editZone(), 1000) << limits;
            EXPECT_TRUE(shown.draw().getMin().isFinite());
        }
    }
    for (const char* limits :
         {"min 0 max 2147483647", "min -2147483648 max 0", "min 7 max -7",
          "min -2147483648 max 2147483647", "min -2147483648 max -2147483648"}) {
        ShownInteger shown(std::string(limits) + " value 4");
        EXPECT_TRUE(std::isfinite(shown.position())) << limits;
        EXPECT_GT(shown.editZone(), 8) << limits;
        shown.drag2D(0, 0.7f, 2);
        shown.type2D("2147483647");
        EXPECT_TRUE(std::isfinite(shown.cursor3D())) << limits;
    }
}

TEST(Slider, reversedLimitsRunFromRightToLeft)
{
    ShownInteger shown("min 10 max 0");
    shown.slider->min = 10;
    shown.slider->max = 0;
    shown.slider->value = 8;
    EXPECT_FLOAT_EQ(shown.position(), 0.2f);
    shown.slider->changeValueAfterFinish(1);
    EXPECT_EQ(shown.slider->value, 0);
}

TEST(Slider, theWidestRangeOfWholeNumbersHasBothItsEnds)
{
    ShownInteger shown;
    shown.slider->min = smallest;
    shown.slider->max = largest;
    shown.slider->changeValueAfterFinish(1);
    EXPECT_EQ(shown.slider->value, largest);
    EXPECT_EQ(shown.text2D(), "2147483647");
    shown.slider->changeValueAfterFinish(0);
    EXPECT_EQ(shown.slider->value, smallest);
    EXPECT_EQ(shown.text2D(), "-2147483648");
    shown.type2D("99999999999999999999");
    EXPECT_EQ(shown.slider->value, largest);
    EXPECT_EQ(shown.text2D(), "2147483647");
}

// Trees, rebuilds and files.

TEST(Slider, isBuiltAgainWithWhatTheUserIsTyping)
{
    ShownReal shown("max 10 value 2.5");
    shown.edit()->setFocus();
    shown.edit()->selectAll();
    QTest::keyClicks(shown.edit(), "7.25");
    QTest::keyClick(shown.edit(), Qt::Key_Left, Qt::ShiftModifier);
    const QPointer<QLineEdit> earlier = shown.edit();
    shown.dialog->addChild(new KsDialogCheckBox);
    QApplication::processEvents();
    ASSERT_NE(shown.edit(), earlier.data());
    EXPECT_EQ(shown.text2D(), "7.25");
    EXPECT_EQ(shown.edit()->selectedText(), "5");
    EXPECT_EQ(shown.edit()->cursorPosition(), 3);
    EXPECT_TRUE(shown.edit()->hasFocus());
    EXPECT_EQ(shown.slider->value, 2.5f);
    QTest::keyClick(shown.edit(), Qt::Key_Return);
    EXPECT_EQ(shown.slider->value, 7.25f);
    Stage::settle();
    EXPECT_FALSE(earlier);
}

TEST(Slider, isBuiltAgainWhileTheUserDragsIt)
{
    for (const bool continuous : {false, true}) {
        ShownReal shown(std::string("max 10 value 0 width 400 continuousTrigger ") +
                        (continuous ? "TRUE" : "FALSE"));
        QWindow* window = shown.dialog->getBaseWidget()->windowHandle();
        const auto at = [&](float position) {
            return shown.bar()->mapTo(shown.dialog->getBaseWidget(), shown.barPlace(position));
        };
        // As the screen sends it: Qt chooses who gets the moves.
        QTest::mousePress(window, Qt::LeftButton, {}, at(0.2f));
        QTest::mouseMove(window, at(0.3f));
        EXPECT_NEAR(shown.position(), 0.3f, 0.01f);
        const QPointer<QWidget> earlier = shown.bar();
        shown.dialog->addChild(new KsDialogCheckBox);
        QApplication::processEvents();
        ASSERT_NE(shown.bar(), earlier.data());
        QTest::mouseMove(window, at(0.6f));
        EXPECT_NEAR(shown.position(), 0.6f, 0.01f) << "the drag goes on";
        // Also where the pointer has left the bar.
        QTest::mouseMove(window, at(0.8f) + QPoint(0, 60));
        EXPECT_NEAR(shown.position(), 0.8f, 0.01f);
        if (!continuous) {
            EXPECT_TRUE(shown.listener.values.empty());
        }
        QTest::mouseRelease(window, Qt::LeftButton, {}, at(0.8f) + QPoint(0, 60));
        ASSERT_FALSE(shown.listener.values.empty());
        EXPECT_NEAR(shown.listener.values.back(), 8, 0.1f);
        EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
        QTest::mouseMove(window, at(0.4f));
        EXPECT_NEAR(shown.position(), 0.8f, 0.01f);
    }
}

TEST(Slider, isBuiltAgainWithTheFocusWhereItWas)
{
    ShownReal shown("max 10 value 2.5");
    shown.bar()->setFocus();
    shown.dialog->addChild(new KsDialogCheckBox);
    QApplication::processEvents();
    EXPECT_TRUE(shown.bar()->hasFocus());
    shown.toggle()->setFocus();
    shown.dialog->addChild(new KsDialogCheckBox);
    QApplication::processEvents();
    EXPECT_TRUE(shown.toggle()->hasFocus());
    // One bar each, and its callbacks once.
    QTest::keyClick(shown.bar(), Qt::Key_End);
    EXPECT_EQ(shown.listener.values, std::vector<float>{10});
}

TEST(Slider, isTakenOutOfTheTreeAndComesBack)
{
    ShownInteger shown("max 10 value 4");
    const KsRef<KsDialogIntegerSlider> held(shown.slider);
    shown.dialog->removeChild(shown.dialog->findChild(shown.slider));
    Stage::settle();
    EXPECT_FALSE(shown.slider->getWidget());
    shown.slider->value = 6;
    shown.slider->colors = KbColor(1, 0, 0);
    EXPECT_FLOAT_EQ(shown.slider->getValue(), 0.6f);
    shown.dialog->addChild(shown.slider);
    QApplication::processEvents();
    EXPECT_EQ(shown.text2D(), "6");
    shown.drag2D(0.6f, 1);
    EXPECT_EQ(shown.slider->value, 10);
}

TEST(Slider, mayDieInItsOwnAuditor)
{
    for (const char* how : {"drag", "type", "key"}) {
        ShownInteger shown("max 10 continuousTrigger TRUE");
        shown.listener.then = [&](KsDialogIntegerSlider* slider) {
            slider->removeAuditor(&shown.listener);
            shown.dialog->removeChild(shown.dialog->findChild(slider));
        };
        if (std::string(how) == "drag") {
            const QPointer<QWidget> bar = shown.bar();
            shown.press2D(0);
            QMouseEvent move(QEvent::MouseMove, shown.barPlace(1), Qt::NoButton, Qt::LeftButton,
                             {});
            QApplication::sendEvent(bar, &move);
        } else if (std::string(how) == "type") {
            shown.type2D("7");
        } else {
            QTest::keyClick(shown.bar(), Qt::Key_End);
        }
        EXPECT_EQ(shown.listener.values.size(), 1u);
        shown.slider = nullptr;
        Stage::settle();
    }
}

TEST(Slider, anAuditorMayCloseTheWholeDialog)
{
    ShownInteger shown("max 10 continuousTrigger TRUE");
    shown.listener.then = [&](KsDialogIntegerSlider* slider) {
        slider->removeAuditor(&shown.listener);
        shown.dropDialog();
    };
    shown.type2D("7");
    EXPECT_EQ(shown.listener.values, std::vector<int>{7});
    shown.slider = nullptr;
}

TEST(Slider, fieldsBeforeAnyBuildAreTakenUpByIt)
{
    const Library library;
    const KsRef<KsDialogRealSlider> slider(new KsDialogRealSlider);
    slider->colors = KbColor(0, 1, 0);
    slider->shadedColors = false;
    slider->continuousTrigger = true;
    slider->value = 0.5f;
    slider->min = 0.25f;
    EXPECT_EQ(slider->getValue(), 0);
    buildIn3D(slider.get());
    EXPECT_FLOAT_EQ(slider->getValue(), 1 / 3.0f);
}

TEST(Slider, isWrittenAsItWasRead)
{
    const std::string fields = "label \"Slider\" auditorID \"s\" format \"%5.1f\" "
                               "continuousTrigger TRUE fixedLimits TRUE colors [ 1 0 0, 0 1 0 ] "
                               "shadedColors FALSE min -2 max 7 value 1.5";
    const Library library;
    const auto read = [](const std::string& text) {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        return KsRef<KsSeparator>(KsDB::readAll(&in));
    };
    const auto root = read("DialogRealSlider { " + fields + " }");
    ASSERT_TRUE(root);
    const std::string once = written(root->getChild(0));
    const auto again = read(once);
    ASSERT_TRUE(again);
    EXPECT_EQ(written(again->getChild(0)), once);
    buildIn3D(static_cast<KsDialogComponent*>(again->getChild(0)));
    EXPECT_EQ(written(again->getChild(0)), once) << "a build for a scene leaves no trace";
}

TEST(Slider, aTreeOfSlidersAndItsCopyAreEqual)
{
    const Library library;
    const KsRef<KsDialogIntegerSlider> slider(new KsDialogIntegerSlider);
    slider->max = 20;
    slider->value = 4;
    slider->format = "%03d";
    const KsRef<KsNode> copy(slider->copy());
    EXPECT_TRUE(copy->fieldsAreEqual(slider.get()));
}
