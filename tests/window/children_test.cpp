// Children that come and go before and after the window is built.

#include "Window.h"

TEST_F(Window, aChildAddedBeforeTheBuildBuildsNothingAndOneAddedAfterItGetsAWidget)
{
    auto* dialog = make();
    auto* early = new ProbeBox;
    dialog->addChild(early);
    EXPECT_EQ(early->builds, 0);
    EXPECT_FALSE(dialog->getBaseWidget());
    open(dialog);
    EXPECT_EQ(early->builds, 1);
    auto* late = new ProbeBox;
    dialog->addChild(late);
    EXPECT_EQ(late->builds, 1);
    EXPECT_EQ(early->builds, 2) << "the whole tree is built again";
    ASSERT_TRUE(toggle(late));
    settle();
    EXPECT_TRUE(toggle(late)->isVisible());
    EXPECT_EQ(numToggles(dialog->getBaseWidget()), 2);
    click(late);
    EXPECT_TRUE(late->state);
}

TEST_F(Window, thatIsNotThereTheChildrenGetNoneEither)
{
    auto* dialog = make();
    auto* box = new ProbeBox;
    dialog->addChild(box);
    dialog->updateChildren();
    EXPECT_EQ(box->builds, 0);
    // Nor where the dialog stands in a scene only.
    measure(dialog);
    const int before = box->builds;
    dialog->updateChildren();
    EXPECT_EQ(box->builds, before);
    EXPECT_FALSE(box->isBuilt2D());
    EXPECT_FALSE(box->getWidget());
}

TEST_F(Window, aChildAddedWhileItIsHiddenShowsWithIt)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->hide();
    KsDialogCheckBox* late = box("late");
    dialog->addChild(late);
    EXPECT_FALSE(window->isVisible()) << "a rebuild shows nothing";
    EXPECT_FALSE(toggle(late)->isVisible());
    dialog->show();
    EXPECT_TRUE(toggle(late)->isVisible());
    settle();
    click(late);
    EXPECT_TRUE(late->state);
}

TEST_F(Window, aChildAddedWhileItIsMinimisedLeavesItMinimised)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    window->showMinimized();
    KsDialogCheckBox* late = box("late");
    dialog->addChild(late);
    settle();
    EXPECT_TRUE(window->isMinimized());
    window->showNormal();
    settle();
    click(late);
    EXPECT_TRUE(late->state);
    EXPECT_EQ(numToggles(window), 2);
}

TEST_F(Window, removeChildOfAnUnknownNodePostsTheRange)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    KsRef<KsDialogCheckBox> stranger(box("b"));
    ExpectedMessages messages("KsTopLevelDialog::removeChild", "Index -1 is out of range 0 - ");
    dialog->removeChild(stranger.get());
    EXPECT_EQ(dialog->getNumChildren(), 1);
    EXPECT_EQ(dialog->getChild(0), child);
}

TEST_F(Window, getChildAtTheCountPostsItsWarningAndYieldsNull)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    {
        ExpectedMessages messages("KsTopLevelDialog::getChild", "Index 1 is out of range 0 - ");
        EXPECT_EQ(dialog->getChild(1), nullptr);
        ASSERT_EQ(messages.messages().size(), 1u);
        const std::string& text = messages.messages()[0].text;
        const std::string end = "; Be careful";
        ASSERT_GT(text.size(), end.size());
        EXPECT_EQ(text.substr(text.size() - end.size()), end);
    }
    EXPECT_EQ(dialog->getChild(-1), nullptr); // without a message
}

TEST_F(Window, aWrongChildOperationSaysSoAndChangesNothing)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    QWidget* window = open(dialog);
    const QWidget* frame = child->getWidget();
    KsRef<KsDialogCheckBox> other(box("b"));
    {
        ExpectedMessages messages;
        messages.expect("KsTopLevelDialog::addChild", "NULL child node");
        messages.expect("KsTopLevelDialog::insertChild", "NULL child node");
        messages.expect("KsTopLevelDialog::insertChild", "Index 2 is out of range 0 - 1");
        messages.expect("KsTopLevelDialog::insertChild", "Index -1 is out of range 0 - 1");
        messages.expect("KsTopLevelDialog::removeChild", "Index 1 is out of range 0 - ");
        messages.expect("KsTopLevelDialog::replaceChild", "Index 1 is out of range 0 - ");
        messages.expect("KsTopLevelDialog::replaceChild", "Index -1 is out of range 0 - ");
        dialog->addChild(nullptr);
        dialog->insertChild(nullptr, 0);
        dialog->insertChild(other.get(), 2);
        dialog->insertChild(other.get(), -1);
        dialog->removeChild(1);
        dialog->replaceChild(1, other.get());
        dialog->replaceChild(other.get(), other.get());
    }
    EXPECT_EQ(dialog->getNumChildren(), 1);
    EXPECT_EQ(child->getWidget(), frame) << "no rebuild";
    EXPECT_EQ(numToggles(window), 1);
    EXPECT_FALSE(other->getWidget());
}

TEST_F(Window, childOperationsOnAnOpenWindowKeepItInStep)
{
    auto* dialog = make();
    KsDialogCheckBox *a = box("a"), *b = box("b"), *c = box("c");
    dialog->addChild(a);
    QWidget* window = open(dialog);
    const auto labels = [&] {
        settle();
        QList<QLabel*> found = window->findChildren<QLabel*>();
        std::sort(found.begin(), found.end(), [&](QLabel* x, QLabel* y) {
            return x->mapTo(window, QPoint()).y() < y->mapTo(window, QPoint()).y();
        });
        std::string all;
        for (const QLabel* label : found) all += label->text().toStdString();
        return all;
    };
    dialog->insertChild(b, 0);
    EXPECT_EQ(labels(), "ba");
    dialog->insertChild(c, 1);
    EXPECT_EQ(labels(), "bca");
    const KsRef<KsDialogCheckBox> keep(c);
    dialog->removeChild(c);
    EXPECT_EQ(labels(), "ba");
    EXPECT_EQ(numToggles(window), 2);
    dialog->replaceChild(a, c);
    EXPECT_EQ(labels(), "bc");
    dialog->replaceChild(0, box("d"));
    EXPECT_EQ(labels(), "dc");
    dialog->removeAllChildren();
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(dialog->getNumChildren(), 0);
    EXPECT_EQ(static_cast<QLayout*>(window->layout())->count(), 0) << "no layout is left over";
    dialog->addChild(box("e"));
    EXPECT_EQ(labels(), "e");
}
