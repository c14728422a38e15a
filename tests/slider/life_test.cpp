// Sliders that are built again, taken out, deleted by an auditor, read and written.

#include "Sliders.h"

#include <arborium/io/KsInput.h>

#include <QWindow>

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
