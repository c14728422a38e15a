// The window on screen: shown, hidden, closed, and its end or that of its dialog.

#include "Window.h"

TEST_F(Window, showsAndHides)
{
    auto* dialog = make();
    dialog->show(); // there is none yet
    dialog->hide();
    EXPECT_FALSE(dialog->getBaseWidget());
    QWidget* window = open(dialog);
    EXPECT_TRUE(window->isVisible());
    dialog->hide();
    EXPECT_FALSE(window->isVisible());
    dialog->show();
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Window, closingItByItsFrameIsHidingIt)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    QWidget* window = open(dialog);
    const int references = dialog->getRefCount();
    const QPointer<QCheckBox> widget = toggle(child);
    closeByFrame(window);
    settle();
    EXPECT_EQ(dialog->getBaseWidget(), window);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(dialog->getRefCount(), references);
    EXPECT_TRUE(widget);
    child->state = true;
    dialog->addChild(box("b"));
    EXPECT_FALSE(window->isVisible());
    dialog->show();
    settle();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(toggle(child)->isChecked());
    EXPECT_EQ(numToggles(window), 2);
    click(child);
    EXPECT_FALSE(child->state);
}

TEST_F(Window, closeHidesItAndDropsOneReference)
{
    auto* dialog = make();
    dialog->ref();
    QPointer<QWidget> window = open(dialog);
    const int references = dialog->getRefCount();
    dialog->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(dialog->getRefCount(), references - 1);
    // Usually the last one: the dialog dies, its window stays.
    const int nodes = KsBase::getNumInstances();
    dialog->ref();
    letGo(dialog);
    dialog->show();
    dialog->close();
    EXPECT_LT(KsBase::getNumInstances(), nodes);
    ASSERT_TRUE(window);
    EXPECT_FALSE(window->isVisible());
    delete window;
}

TEST_F(Window, destroyDialogHidesAWindowOfItsOwn)
{
    auto* dialog = make();
    const QWidget* window = open(dialog);
    EXPECT_EQ(dialog->destroyDialog(), 0);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(dialog->getBaseWidget(), window);
}

TEST_F(Window, destroyDialogInsideAParentEndsTheProcess)
{
    auto* dialog = make();
    QWidget parent;
    dialog->buildDialog(&parent, 1);
    EXPECT_EXIT(dialog->destroyDialog(), testing::ExitedWithCode(0), "");
    letGo(dialog);
}

TEST_F(Window, outlivesItsDialogWithoutItsControls)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    auto* rows = new KsRowDialog;
    rows->addChild(box("b"));
    dialog->addChild(rows);
    QPointer<QWidget> window = open(dialog);
    letGo(dialog);
    settle();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(numToggles(window), 0);
    // Nothing in it knows the dialog any more.
    window->resize(500, 400);
    QTest::mouseClick(window, Qt::LeftButton);
    closeByFrame(window);
    EXPECT_FALSE(window->isVisible());
    delete window;
}

TEST_F(Window, deletedByTheApplicationItIsMadeAnewByARebuild)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    auto* rows = new KsRowDialog;
    KsDialogCheckBox* inner = box("b");
    rows->addChild(inner);
    dialog->addChild(child);
    dialog->addChild(rows);
    delete open(dialog);
    EXPECT_FALSE(dialog->getBaseWidget());
    EXPECT_FALSE(dialog->getLayout());
    // No change reaches a window that is not there.
    dialog->label = "New";
    dialog->enable = false;
    dialog->enable = true;
    dialog->position = KbVec2i32(3, 4);
    dialog->minWidth = 40;
    dialog->rowSpacing = 2;
    child->state = true;
    child->label = "c";
    dialog->show();
    dialog->hide();
    KsDialogCheckBox* late = box("late");
    dialog->addChild(late);
    QWidget* window = dialog->getBaseWidget();
    ASSERT_TRUE(window);
    EXPECT_EQ(window->windowTitle(), "New");
    dialog->show();
    settle();
    EXPECT_EQ(numToggles(window), 3);
    EXPECT_TRUE(toggle(child)->isChecked());
    for (KsDialogCheckBox* each : {inner, late}) {
        click(each);
        EXPECT_TRUE(each->state);
    }
}

TEST_F(Window, aParentThatIsGoneIsNotBuiltInAgain)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    auto* parent = new QWidget;
    dialog->buildDialog(parent, 1);
    delete parent;
    const int windows = QApplication::topLevelWidgets().size();
    dialog->addChild(box("b"));
    dialog->removeChild(0);
    EXPECT_FALSE(dialog->getBaseWidget());
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
    // Another one will do.
    QWidget other;
    dialog->buildDialog(&other, 1);
    EXPECT_EQ(numToggles(&other), 1);
    letGo(dialog);
}

TEST_F(Window, widgetsThatAreLeftInItsCareGoWithIt)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QPointer<QWidget> window = open(dialog);
    EXPECT_FALSE(dialog->getCurrentFocusedWidget());
    EXPECT_FALSE(dialog->getCurrentScrolledWidget());
    QPointer<QWidget> focused = new QWidget(window);
    QPointer<QWidget> scrolled = new QWidget;
    dialog->setCurrentFocusedWidget(focused);
    dialog->setCurrentScrolledWidget(scrolled);
    EXPECT_EQ(dialog->getCurrentFocusedWidget(), focused);
    EXPECT_EQ(dialog->getCurrentScrolledWidget(), scrolled);
    letGo(dialog);
    EXPECT_FALSE(focused);
    EXPECT_FALSE(scrolled);
    EXPECT_TRUE(window);
    delete window;
}
