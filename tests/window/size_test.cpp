// How large the window of a dialog is and may become.

#include "Window.h"

#include <formweave/KsMenuBar.h>

// Size and limits.

TEST_F(Window, withoutASizeItOpensAtThatOfItsChildrenWithMarginsAndSpacing)
{
    auto* dialog = make();
    dialog->minWidth = 10;
    dialog->minHeight = 12;
    dialog->maxWidth = 2000;
    dialog->maxHeight = 1900;
    dialog->margin = 5;
    dialog->rowSpacing = 7;
    KsDialogCheckBox* boxes[] = {box("short"), box("a longer one"), box()};
    boxes[2]->height = 44;
    for (KsDialogCheckBox* each : boxes) dialog->addChild(each);
    dialog->buildDialog();
    int widest = 0, sum = 0;
    for (const KsDialogCheckBox* each : boxes) {
        widest = std::max<int>(widest, each->width);
        sum += each->height;
    }
    ASSERT_GT(widest, 0);
    EXPECT_EQ(boxes[2]->height, 44);
    const QSize expected(widest + 2 * 5, sum + 2 * 5 + 2 * 7);
    EXPECT_EQ(dialog->getBaseWidget()->size(), expected);
    EXPECT_EQ(sizeOf(dialog), expected);
    EXPECT_EQ(minOf(dialog), QSize(10, 12));
    EXPECT_EQ(maxOf(dialog), QSize(2000, 1900));
    dialog->show();
    settle();
    EXPECT_EQ(dialog->getBaseWidget()->size(), expected);
}

TEST_F(Window, minimaOfTheChildrenCountWhereTheDialogHasNone)
{
    auto* dialog = make();
    dialog->margin = 3;
    dialog->rowSpacing = 2;
    for (int i = 0; i < 3; ++i) dialog->addChild(box("a"));
    dialog->buildDialog();
    // Each child bears 25 by 25.
    EXPECT_EQ(minOf(dialog), QSize(25 + 6, 75 + 6 + 4));
    EXPECT_EQ(maxOf(dialog), unlimited);
    EXPECT_EQ(dialog->getBaseWidget()->minimumSize(), minOf(dialog));
    EXPECT_EQ(dialog->getBaseWidget()->maximumSize(), unlimited);
}

TEST_F(Window, maximaOf0AreThoseOfTheChildren)
{
    auto* dialog = make();
    dialog->maxWidth = 0;
    dialog->maxHeight = 0;
    KsDialogCheckBox* boxes[] = {box("a"), box("b")};
    for (KsDialogCheckBox* each : boxes) {
        each->maxWidth = 300;
        each->maxHeight = 40;
        dialog->addChild(each);
    }
    dialog->margin = 2;
    dialog->rowSpacing = 6;
    dialog->buildDialog();
    EXPECT_EQ(maxOf(dialog), QSize(304, 80 + 4 + 6));
    EXPECT_EQ(dialog->getBaseWidget()->maximumSize(), maxOf(dialog));
}

TEST_F(Window, anOpenMaximumOfAChildIsOneOfTheDialog)
{
    auto* dialog = make();
    dialog->maxWidth = 0;
    dialog->maxHeight = 0;
    dialog->margin = 2;
    dialog->addChild(box("a"));
    dialog->addChild(box("b"));
    dialog->buildDialog();
    EXPECT_EQ(maxOf(dialog), QSize(32767, 32767));
}

TEST_F(Window, anEmptyDialogLosesOneSpacingInHeight)
{
    auto* dialog = make();
    dialog->margin = 8;
    dialog->rowSpacing = 5;
    dialog->maxHeight = 500; // asked in every combination with zeros
    dialog->buildDialog();
    EXPECT_EQ(minOf(dialog), QSize(16, 11));
    EXPECT_EQ(sizeOf(dialog), QSize(16, 11));
}

TEST_F(Window, aWidthBelowTheMinimumIsRaisedAndWrittenWithoutAChangeOfWidth)
{
    auto* dialog = make<ProbeDialog>();
    dialog->addChild(box("a"));
    dialog->minWidth = 300;
    dialog->width = 100;
    dialog->buildDialog();
    EXPECT_EQ(dialog->width, 300);
    EXPECT_EQ(dialog->getBaseWidget()->width(), 300);
    EXPECT_EQ(dialog->calls, Calls());
    // Now that the sensors are there, the application's write is heard, the dialog's own is not.
    dialog->width = 120;
    EXPECT_EQ(dialog->calls, Calls{"changeWidth"});
    EXPECT_EQ(dialog->getBaseWidget()->width(), 300) << "a field does not resize the window";
    dialog->updateDialogBuild(1);
    EXPECT_EQ(dialog->width, 300);
    EXPECT_EQ(dialog->calls, Calls{"changeWidth"});
    dialog->height = 70;
    EXPECT_EQ(dialog->calls, (Calls{"changeWidth", "changeHeight"}));
}

TEST_F(Window, aMaximumWinsOverAMinimum)
{
    auto* dialog = make();
    dialog->width = 500;
    dialog->minWidth = 300;
    dialog->maxWidth = 200;
    dialog->buildDialog();
    EXPECT_EQ(dialog->width, 200);
}

TEST_F(Window, notResizableWithAWidthIsPinnedToIt)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    dialog->resizable = false;
    dialog->width = 300;
    QWidget* window = open(dialog);
    EXPECT_EQ(dialog->minWidth, 300);
    EXPECT_EQ(dialog->maxWidth, 300);
    EXPECT_EQ(window->minimumWidth(), 300);
    EXPECT_EQ(window->maximumWidth(), 300);
    window->resize(500, 400);
    EXPECT_EQ(window->width(), 300);
}

TEST_F(Window, notResizableWithoutASizeIsPinnedToThatOfItsChildren)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    dialog->resizable = false;
    QWidget* window = open(dialog);
    EXPECT_EQ(minOf(dialog), sizeOf(dialog));
    EXPECT_EQ(maxOf(dialog), sizeOf(dialog));
    const QSize before = window->size();
    window->resize(before + QSize(50, 60));
    EXPECT_EQ(window->size(), before);
}

TEST_F(Window, turningResizableOffLaterWaitsForTheNextRebuild)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->resizable = false;
    EXPECT_EQ(window->maximumSize(), unlimited);
    dialog->addChild(box("b"));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
}

TEST_F(Window, aMenuBarCountsInTheHeightButNotInTheSpacing)
{
    auto* dialog = make();
    dialog->maxWidth = dialog->maxHeight = 0;
    dialog->rowSpacing = 10;
    KsDialogCheckBox* boxes[] = {box("a"), box("b")};
    for (KsDialogCheckBox* each : boxes) {
        each->maxHeight = 60;
        dialog->addChild(each);
    }
    auto* bar = new KsMenuBar;
    EXPECT_FALSE(dialog->widgetHasMenuBar());
    dialog->insertChild(bar, 0);
    EXPECT_EQ(dialog->widgetHasMenuBar(), bar);
    dialog->buildDialog();
    EXPECT_EQ(dialog->height, 19 + boxes[0]->height + boxes[1]->height + 10);
    EXPECT_EQ(dialog->minHeight, 25 + 25 + 10) << "its minimum is 0";
    EXPECT_EQ(dialog->maxHeight, 60 + 60 + 10) << "it cannot grow";
    QPointer<QWidget> window = dialog->getBaseWidget();
    letGo(dialog);
    delete window;
}

TEST_F(Window, fieldsOfLimitsReachItAtOnce)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->minWidth = 210;
    dialog->maxHeight = 333;
    EXPECT_EQ(window->minimumWidth(), 210);
    EXPECT_EQ(window->maximumHeight(), 333);
    KbVec2i32 size, min, max;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(min, KbVec2i32(210, dialog->minHeight));
    EXPECT_EQ(max, KbVec2i32(dialog->maxWidth, 333));
    dialog->maxWidth = 0;
    EXPECT_EQ(window->maximumWidth(), QWIDGETSIZE_MAX) << "none";
}

TEST_F(Window, whatItRemembersIsNothingUntilAFieldIsWritten)
{
    auto* dialog = make();
    dialog->width = 320;
    dialog->buildDialog();
    KbVec2i32 size, min, max;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(size, KbVec2i32(0, 0));
    EXPECT_EQ(min, KbVec2i32(0, 0));
    EXPECT_EQ(max, KbVec2i32(0, 0));
    dialog->height = 99;
    dialog->width = 340;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(size, KbVec2i32(340, 99));
}

TEST_F(Window, aDialogBuiltInASceneFirstRemembersWhatItWasAskedFor)
{
    auto* dialog = make();
    dialog->width = 320;
    dialog->minHeight = 70;
    measure(dialog);
    KbVec2i32 size, min, max;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(size, KbVec2i32(320, 0));
    EXPECT_EQ(min, KbVec2i32(0, 70));
    EXPECT_EQ(max, KbVec2i32(16777215, 16777215));
}

TEST_F(Window, sizesFromAFileOfAnyMagnitudeAreBorne)
{
    for (const char* value : {"2147483647", "-2147483648"}) {
        const std::string v(value);
        auto* dialog =
            read("TopLevelDialog { width " + v + " height " + v + " minWidth " + v + " minHeight " +
                 v + " maxWidth " + v + " maxHeight " + v + " margin " + v + " rowSpacing " + v +
                 " position " + v + " " + v + " DialogCheckBox { } DialogCheckBox { } }");
        dialog->buildDialog();
        ASSERT_TRUE(dialog->getBaseWidget());
        measure(dialog);
        dialog->rowSpacing = dialog->rowSpacing.getValue();
        dialog->addChild(box("a"));
        EXPECT_EQ(numToggles(dialog->getBaseWidget()), 3);
    }
}

TEST_F(Window, setSizeWritesTheFieldsInSilence)
{
    auto* dialog = make<ProbeDialog>();
    QWidget* window = open(dialog);
    const QSize before = window->size();
    const QSize limit = window->maximumSize();
    dialog->setSize(201, 102, 33, 44, 505, 406);
    EXPECT_EQ(sizeOf(dialog), QSize(201, 102));
    EXPECT_EQ(minOf(dialog), QSize(33, 44));
    EXPECT_EQ(maxOf(dialog), QSize(505, 406));
    EXPECT_EQ(dialog->calls, Calls());
    EXPECT_EQ(window->size(), before);
    EXPECT_EQ(window->maximumSize(), limit);
    dialog->width = 7; // and the sensors hear again
    EXPECT_EQ(dialog->calls, Calls{"changeWidth"});
}

// Labels and controls of its children stand in columns.

TEST_F(Window, labelsAndControlsOfItsChildrenShareTheirColumns)
{
    class Zones : public PlainComponent {
    public:
        Zones(KbVec2i32 l, KbVec2i32 c) : inLabel(l), inControl(c) {}
        KbVec2i32 getLabelInitSize() override { return inLabel; }
        KbVec2i32 getComponentInitSize() override { return inControl; }
        using PlainComponent::m_componentSize;
        KbVec2i32 inLabel, inControl;
    };
    auto* dialog = make();
    auto* small = new Zones({30, 12}, {40, 10});
    auto* large = new Zones({50, 30}, {20, 20});
    auto* hidden = new Zones({90, 33}, {70, 15});
    hidden->labelVisibility = false;
    for (Zones* each : {small, large, hidden}) dialog->addChild(each);
    dialog->buildDialog();
    EXPECT_EQ(small->m_labelSize, KbVec2i32(50, 12));
    EXPECT_EQ(large->m_labelSize, KbVec2i32(50, 30));
    EXPECT_EQ(hidden->m_labelSize, KbVec2i32(50, 0)) << "a hidden label has no height";
    EXPECT_EQ(small->m_componentSize, KbVec2i32(70, 12));
    EXPECT_EQ(large->m_componentSize, KbVec2i32(70, 30));
    EXPECT_EQ(hidden->m_componentSize, KbVec2i32(70, 15));
}

// Resets.

TEST_F(Window, aRebuildKeepsTheSizeUnlessItIsToFollowItsChildren)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    const QSize before = window->size();
    dialog->addChild(box("b"));
    EXPECT_EQ(window->size(), before);
    dialog->windowResizedByChildren = true;
    dialog->addChild(box("a label that is much longer than the other ones"));
    EXPECT_EQ(sizeOf(dialog), window->size());
    EXPECT_GT(window->height(), before.height());
    EXPECT_GT(window->width(), before.width());
}

TEST_F(Window, aResetGoesBackToWhatItRemembersInAllSixFields)
{
    auto* dialog = make();
    dialog->windowResizedByChildren = true;
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->width = 260;
    dialog->height = 90;
    dialog->minWidth = 150;
    dialog->minHeight = 60;
    dialog->maxWidth = 700;
    dialog->maxHeight = 500;
    dialog->setSize(1, 2, 3, 4, 5, 6);
    dialog->updateDialogBuild(1);
    EXPECT_EQ(sizeOf(dialog), QSize(260, 90));
    EXPECT_EQ(minOf(dialog), QSize(150, 60));
    EXPECT_EQ(maxOf(dialog), QSize(700, 500));
    EXPECT_EQ(window->size(), QSize(260, 90));
    EXPECT_EQ(window->minimumSize(), QSize(150, 60));
    EXPECT_EQ(window->maximumSize(), QSize(700, 500));
    // And again: the reset did not change what is remembered.
    dialog->setSize(1, 2, 3, 4, 5, 6);
    dialog->updateDialogBuild(1);
    EXPECT_EQ(sizeOf(dialog), QSize(260, 90));
    EXPECT_EQ(maxOf(dialog), QSize(700, 500));
}

TEST_F(Window, aResetToNothingLeavesItWithTheLimitsOfItsChildren)
{
    auto* dialog = make();
    dialog->windowResizedByChildren = true;
    KsDialogCheckBox* child = box("a");
    child->maxWidth = 400;
    dialog->addChild(child);
    QWidget* window = open(dialog);
    EXPECT_EQ(window->maximumSize(), unlimited);
    dialog->updateDialogBuild(1);
    // The remembered maximum is none.
    EXPECT_EQ(maxOf(dialog), QSize(400, 32767));
    EXPECT_EQ(window->maximumSize(), QSize(400, 32767));
    EXPECT_EQ(window->minimumSize(), minOf(dialog));
    EXPECT_EQ(window->size(), sizeOf(dialog));
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Window, theLimitsOfAVisibleWindowNeverCollapseDuringAReset)
{
    struct Watch : QObject {
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            if (event->type() == QEvent::Resize) sizes << static_cast<QWidget*>(watched)->size();
            return false;
        }
        QList<QSize> sizes;
    };
    auto* dialog = make();
    dialog->windowResizedByChildren = true;
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    const QSize before = window->size();
    Watch watch;
    window->installEventFilter(&watch);
    dialog->updateDialogBuild(1);
    settle();
    for (const QSize& size : watch.sizes) EXPECT_EQ(size, before);
    EXPECT_EQ(window->size(), before);
}
