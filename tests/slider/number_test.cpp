// Limits and formats of all kinds, sensible and not.

#include "Sliders.h"

#include <CommaLocale.h>
#include <arborium/io/KsInput.h>

#include <QLocale>
#include <cmath>

namespace {

/// A slider prints, and takes what is typed, with a point.
void usesAPoint()
{
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
}

} // namespace

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

TEST(Slider, theLocaleOfQtChangesNeitherPrintingNorTypingNorParsing)
{
    QLocale::setDefault(QLocale(QLocale::German));
    ASSERT_EQ(QLocale().toString(2.5), "2,5");
    usesAPoint();
}

TEST(Slider, theLocaleOfTheProgramChangesNeitherPrintingNorTypingNorParsing)
{
    const CommaLocale locale;
    if (!locale.isSet()) GTEST_SKIP() << "no locale with a decimal comma can be had here";
    usesAPoint();
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
