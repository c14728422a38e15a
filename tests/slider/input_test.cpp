// The three ways to change a slider in a window: its bar, its toggle and its text.

#include "Sliders.h"

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
