// The frame that stands for a check box in a window, driven by real Qt events.

#include <dialog/Listeners.h>

#include <QtTest/QtTest>
#include <gtest/gtest.h>

namespace {

class CheckBoxRelay : public testing::Test {
protected:
    void SetUp() override
    {
        KsFormweave::init();
        dialog = new KsTopLevelDialog;
        box = new KsDialogCheckBox;
        box->label = "Shadows";
        dialog->addChild(box);
        box->addAuditor(&listener);
        dialog->buildDialog();
        dialog->show();
        QApplication::setActiveWindow(dialog->getBaseWidget());
        QApplication::processEvents();
    }
    void TearDown() override
    {
        if (dialog) window = dialog->getBaseWidget();
        dialog.reset();
        delete window;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        KsFormweave::finish();
    }
    QFrame* frame() const
    {
        return dialog->getBaseWidget()->findChild<QFrame*>("LMNKsDialogQCheckBoxFrame");
    }
    QCheckBox* toggle() const
    {
        return frame()->findChild<QCheckBox*>("LMNKsDialogQCheckBoxCheckBoxWidget");
    }
    QLabel* labelWidget() const
    {
        return frame()->findChild<QLabel*>("LMNKsDialogQCheckBoxLabelWidget");
    }
    static void click(QCheckBox* widget)
    {
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget->height() / 2));
    }
    int numToggles() const { return dialog->getBaseWidget()->findChildren<QCheckBox*>().size(); }

    CheckBoxListener listener;
    KsRef<KsTopLevelDialog> dialog;
    KsDialogCheckBox* box = nullptr;
    QPointer<QWidget> window;
};

} // namespace

TEST_F(CheckBoxRelay, holdsTheCheckBoxAndThenTheLabelUnderTheirNames)
{
    ASSERT_TRUE(frame());
    EXPECT_EQ(box->getWidget(), frame());
    QObjectList widgets;
    for (QObject* child : frame()->children()) {
        if (child->isWidgetType()) widgets << child;
    }
    EXPECT_EQ(widgets, (QObjectList{toggle(), labelWidget()}));
    const QString font = KsFormweave::getFormweaveFont().toString();
    EXPECT_EQ(toggle()->font().toString(), font);
    EXPECT_EQ(labelWidget()->font().toString(), font);
}

TEST_F(CheckBoxRelay, aClickChangesTheStateAndTellsOnce)
{
    click(toggle());
    EXPECT_TRUE(box->state);
    EXPECT_TRUE(toggle()->isChecked());
    click(toggle());
    EXPECT_FALSE(box->state);
    EXPECT_EQ(listener.states, (std::vector<bool>{true, false}));
}

TEST_F(CheckBoxRelay, partiallyCheckedCountsAsOn)
{
    toggle()->setTristate(true);
    toggle()->setCheckState(Qt::PartiallyChecked);
    EXPECT_TRUE(box->state);
    EXPECT_EQ(listener.states, std::vector<bool>{true});
}

TEST_F(CheckBoxRelay, aStateThatTheNodeSetsDoesNotComeBack)
{
    box->state = true;
    EXPECT_TRUE(toggle()->isChecked());
    EXPECT_EQ(listener.states, std::vector<bool>());
    // And the relay hears again afterwards.
    click(toggle());
    EXPECT_EQ(listener.states, std::vector<bool>{false});
}

TEST_F(CheckBoxRelay, aResizeWritesTheSizeFieldsAndTheirSensorsRun)
{
    struct Count {
        static void add(void* data, KsSensor*) { ++*static_cast<int*>(data); }
    };
    int widths = 0, heights = 0;
    KsFieldSensor widthSensor(&Count::add, &widths), heightSensor(&Count::add, &heights);
    for (KsFieldSensor* sensor : {&widthSensor, &heightSensor}) sensor->setPriority(0);
    widthSensor.attach(&box->width);
    heightSensor.attach(&box->height);
    const QSize wanted = frame()->size() + QSize(40, 12);
    frame()->resize(wanted);
    EXPECT_EQ(box->width, wanted.width());
    EXPECT_EQ(box->height, wanted.height());
    EXPECT_EQ(widths, 1);
    EXPECT_EQ(heights, 1);
    EXPECT_EQ(toggle()->geometry().right(), wanted.width() - 1 - 4);
    EXPECT_EQ(toggle()->height(), wanted.height() - 6);
}

TEST_F(CheckBoxRelay, aLabelIsPlainText)
{
    box->label = "<b>bold</b>";
    EXPECT_EQ(labelWidget()->textFormat(), Qt::PlainText);
    EXPECT_EQ(labelWidget()->text(), "<b>bold</b>");
}

TEST_F(CheckBoxRelay, labelFieldsReachTheLabel)
{
    box->labelAlignment = KsFormweave::CENTER;
    EXPECT_EQ(labelWidget()->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    box->labelVisibility = false;
    EXPECT_TRUE(labelWidget()->isHidden());
    box->labelVisibility = true;
    EXPECT_FALSE(labelWidget()->isHidden());
}

TEST_F(CheckBoxRelay, tabReachesTheCheckBoxAndSpaceTogglesIt)
{
    auto* second = new KsDialogCheckBox;
    dialog->addChild(second);
    QApplication::processEvents();
    toggle()->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QWidget* focus = dialog->getBaseWidget()->focusWidget();
    ASSERT_TRUE(focus);
    EXPECT_EQ(focus, second->getWidget()->findChild<QCheckBox*>());
    QTest::keyClick(focus, Qt::Key_Space);
    EXPECT_TRUE(second->state);
}

TEST_F(CheckBoxRelay, aRebuildLeavesOneWidgetAndHandsTheFocusOn)
{
    QPointer<QCheckBox> former = toggle();
    former->setFocus();
    dialog->updateDialogBuild(1);
    EXPECT_EQ(numToggles(), 1);
    EXPECT_NE(toggle(), former.data());
    EXPECT_TRUE(toggle()->isVisible());
    EXPECT_EQ(dialog->getBaseWidget()->focusWidget(), toggle());
    click(toggle());
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(former);
}

TEST_F(CheckBoxRelay, aRelayThatWasReplacedTellsNothing)
{
    QPointer<QCheckBox> former = toggle();
    dialog->updateDialogBuild(1);
    ASSERT_TRUE(former);
    former->setChecked(true);
    EXPECT_FALSE(box->state);
    EXPECT_TRUE(listener.states.empty());
}

TEST_F(CheckBoxRelay, mayBeRebuiltInItsOwnSignal)
{
    listener.then = [&](KsDialogCheckBox*) { dialog->updateDialogBuild(1); };
    QPointer<QCheckBox> former = toggle();
    click(former);
    EXPECT_EQ(numToggles(), 1);
    EXPECT_TRUE(toggle()->isChecked());
    click(toggle());
    EXPECT_EQ(listener.states, (std::vector<bool>{true, false}));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(former);
}

TEST_F(CheckBoxRelay, mayBeRemovedInItsOwnSignal)
{
    const KsRef<KsDialogCheckBox> keep(box);
    listener.then = [&](KsDialogCheckBox* told) { dialog->removeChild(told); };
    QPointer<QCheckBox> former = toggle();
    click(former);
    EXPECT_EQ(numToggles(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(former);
    // It can be added again.
    listener.then = nullptr;
    dialog->addChild(box);
    QApplication::processEvents();
    EXPECT_EQ(numToggles(), 1);
    EXPECT_TRUE(toggle()->isChecked());
}

TEST_F(CheckBoxRelay, theDialogMayDieInItsSignal)
{
    window = dialog->getBaseWidget();
    listener.then = [&](KsDialogCheckBox*) { dialog.reset(); };
    QPointer<QCheckBox> former = toggle();
    click(former);
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(former);
}

TEST_F(CheckBoxRelay, theDialogMayDieWhileAResizeIsTold)
{
    window = dialog->getBaseWidget();
    struct Kill {
        static void now(void* data, KsSensor*)
        {
            static_cast<KsRef<KsTopLevelDialog>*>(data)->reset();
        }
    };
    KsFieldSensor sensor(&Kill::now, &dialog);
    sensor.setPriority(0);
    sensor.attach(&box->width);
    QPointer<QFrame> former = frame();
    former->resize(former->size() + QSize(30, 0));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(former);
}
