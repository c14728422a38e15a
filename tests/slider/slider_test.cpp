// Sliders in a window: their class, what the bar and the text show, sizes and places.

#include "Sliders.h"

namespace {

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
    EXPECT_EQ(partRows(slider, "labelSep"),
              (Strings{"labelSep Separator geomSwitch", "labelSwitch Switch labelSep",
                       "labelProp Group labelSwitch public", "checkSep Separator geomSwitch",
                       "checkSwtch Switch checkSep", "checkStateOff Group checkSwtch public",
                       "checkStateOn Group checkSwtch public", "sliderSep Separator geomSwitch",
                       "frameSep Separator sliderSep", "frame Group frameSep public",
                       "cursorSep Separator sliderSep", "cursor Group cursorSep public",
                       "edtSwtch Switch geomSwitch", "edtFrmSep Separator edtSwtch",
                       "edtFrmSwtch Switch edtFrmSep", "valueFrame Group edtFrmSwtch public",
                       "editValueFrame Group edtFrmSwtch public", "editTextSep Separator edtSwtch",
                       "editTextProp Group editTextSep public"}));
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
