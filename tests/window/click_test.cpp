// What an auditor may do to the dialog in the middle of a person's click in its window.

#include "Window.h"

namespace {

// window: a, rows { b, c }
class ClickInWindow : public WindowBase {
protected:
    void SetUp() override
    {
        WindowBase::SetUp();
        dialog = make();
        a = box("a");
        b = box("b");
        c = box("c");
        rows = new KsRowDialog;
        dialog->addChild(a);
        dialog->addChild(rows);
        rows->addChild(b);
        rows->addChild(c);
        dialog->addAuditor(&listener);
        window = open(dialog);
    }
    /// Clicks while the dialog, its window or its control may go, and lets Qt delete what is due.
    void clickAndSettle(KsDialogCheckBox* element)
    {
        QPointer<QCheckBox> clicked = toggle(element);
        click(element);
        settle();
    }

    DialogListener listener;
    KsTopLevelDialog* dialog = nullptr;
    KsRowDialog* rows = nullptr;
    KsDialogCheckBox *a = nullptr, *b = nullptr, *c = nullptr;
    QPointer<QWidget> window;
};

} // namespace

TEST_F(ClickInWindow, isHeardOnceAndWritesTheState)
{
    click(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_TRUE(b->state);
    click(b);
    EXPECT_EQ(listener.told, (Calls{"b+", "b-"}));
    EXPECT_FALSE(b->state);
}

TEST_F(ClickInWindow, theAuditorMayRemoveItsControl)
{
    listener.then = [&](KsDialogCheckBox* told) { rows->removeChild(told); };
    const QPointer<QCheckBox> clicked = toggle(b);
    clickAndSettle(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_FALSE(clicked);
    EXPECT_EQ(rows->getNumChildren(), 1);
    EXPECT_EQ(numToggles(window), 2);
    listener.then = nullptr;
    click(c);
    EXPECT_EQ(listener.told, (Calls{"b+", "c+"}));
}

TEST_F(ClickInWindow, theAuditorMayRemoveTheGroupOfItsControl)
{
    listener.then = [&](KsDialogCheckBox*) { dialog->removeChild(rows); };
    clickAndSettle(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_EQ(numToggles(window), 1);
    listener.then = nullptr;
    click(a);
    EXPECT_EQ(listener.told, (Calls{"b+", "a+"}));
}

TEST_F(ClickInWindow, theAuditorMayRemoveAllChildren)
{
    listener.then = [&](KsDialogCheckBox*) { dialog->removeAllChildren(); };
    clickAndSettle(c);
    EXPECT_EQ(listener.told, Calls{"c+"});
    EXPECT_EQ(numToggles(window), 0);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ClickInWindow, theAuditorMayReplaceItsControl)
{
    KsDialogCheckBox* other = box("other");
    listener.then = [&](KsDialogCheckBox* told) { rows->replaceChild(told, other); };
    clickAndSettle(b);
    EXPECT_EQ(numToggles(window), 3);
    listener.then = nullptr;
    click(other);
    EXPECT_EQ(listener.told, (Calls{"b+", "other+"}));
}

TEST_F(ClickInWindow, theAuditorMayDeleteTheDialog)
{
    listener.then = [&](KsDialogCheckBox*) { letGo(dialog); };
    const int nodes = KsBase::getNumInstances();
    clickAndSettle(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_LT(KsBase::getNumInstances(), nodes);
    ASSERT_TRUE(window);
    EXPECT_EQ(numToggles(window), 0);
    delete window;
}

TEST_F(ClickInWindow, theAuditorMayDeleteTheDialogThatHoldsTheClickedWidgetAsItsFocus)
{
    const QPointer<QCheckBox> clicked = toggle(a);
    dialog->setCurrentFocusedWidget(clicked);
    dialog->setCurrentScrolledWidget(clicked);
    listener.then = [&](KsDialogCheckBox*) { letGo(dialog); };
    clickAndSettle(a);
    EXPECT_EQ(listener.told, Calls{"a+"});
    EXPECT_FALSE(clicked);
    delete window;
}

TEST_F(ClickInWindow, theAuditorMayDeleteTheDialogThatKeepsAWidgetAboutTheClickedOne)
{
    // The application's own choice of what the dialog takes with it.
    const QPointer<QWidget> frame = b->getWidget();
    dialog->setCurrentScrolledWidget(frame->parentWidget());
    listener.then = [&](KsDialogCheckBox*) { letGo(dialog); };
    clickAndSettle(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_FALSE(frame);
    delete window;
}

TEST_F(ClickInWindow, theAuditorMayCloseTheDialog)
{
    dialog->ref();
    listener.then = [&](KsDialogCheckBox*) {
        letGo(dialog);
        dialog->close();
    };
    clickAndSettle(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    ASSERT_TRUE(window);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(numToggles(window), 0);
    delete window;
}

TEST_F(ClickInWindow, theAuditorMayHideAndShowTheDialog)
{
    listener.then = [&](KsDialogCheckBox* told) {
        if (told->state) dialog->hide();
    };
    clickAndSettle(b);
    EXPECT_FALSE(window->isVisible());
    dialog->show();
    settle();
    EXPECT_TRUE(toggle(b)->isChecked());
    click(b);
    EXPECT_EQ(listener.told, (Calls{"b+", "b-"}));
}

TEST_F(ClickInWindow, theAuditorMayAddChildrenToTheDialogAndToTheGroup)
{
    listener.then = [&](KsDialogCheckBox*) {
        dialog->addChild(box("d"));
        rows->insertChild(box("e"), 0);
        auto* columns = new KsColumnDialog;
        columns->addChild(box("f"));
        dialog->insertChild(columns, 0);
    };
    clickAndSettle(b);
    listener.then = nullptr;
    EXPECT_EQ(numToggles(window), 6) << "one for each control";
    EXPECT_TRUE(toggle(b)->isChecked());
    for (QCheckBox* each : window->findChildren<QCheckBox*>()) EXPECT_TRUE(each->isVisible());
    click(static_cast<KsDialogCheckBox*>(dialog->getChild(3)));
    click(static_cast<KsDialogCheckBox*>(rows->getChild(0)));
    click(b);
    EXPECT_EQ(listener.told, (Calls{"b+", "d+", "e+", "b-"}));
}

TEST_F(ClickInWindow, theAuditorMayRebuildTheDialog)
{
    listener.then = [&](KsDialogCheckBox*) {
        dialog->updateDialogBuild(1);
        dialog->updateDialogBuild(1);
        dialog->buildDialog();
    };
    const QPointer<QCheckBox> clicked = toggle(b);
    clickAndSettle(b);
    EXPECT_FALSE(clicked);
    EXPECT_EQ(numToggles(window), 3);
    EXPECT_TRUE(toggle(b)->isChecked());
    click(b);
    EXPECT_EQ(listener.told, (Calls{"b+", "b-"}));
}

TEST_F(ClickInWindow, theAuditorMayTakeItselfOut)
{
    DialogListener second;
    dialog->addAuditor(&second);
    listener.then = [&](KsDialogCheckBox*) { dialog->removeAuditor(&listener); };
    click(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_EQ(second.told, Calls{"b+"});
    click(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_EQ(second.told, (Calls{"b+", "b-"}));
    dialog->removeAuditor(&second);
}

TEST_F(ClickInWindow, theAuditorMayDeleteTheWindow)
{
    listener.then = [&](KsDialogCheckBox*) { window->deleteLater(); };
    clickAndSettle(b);
    EXPECT_FALSE(window);
    EXPECT_FALSE(dialog->getBaseWidget());
    listener.then = nullptr;
    dialog->addChild(box("d"));
    dialog->show();
    settle();
    EXPECT_EQ(numToggles(dialog->getBaseWidget()), 4);
    click(b);
    EXPECT_EQ(listener.told, (Calls{"b+", "b-"}));
}

TEST_F(ClickInWindow, theAuditorMayChangeOtherControlsAndTheWindowFollows)
{
    listener.then = [&](KsDialogCheckBox*) {
        a->state = true;
        c->enable = false;
        dialog->label = "Clicked";
        dialog->minWidth = 333;
    };
    click(b);
    EXPECT_TRUE(toggle(a)->isChecked());
    EXPECT_FALSE(toggle(c)->isEnabled());
    EXPECT_EQ(window->windowTitle(), "Clicked");
    EXPECT_EQ(window->minimumWidth(), 333);
    EXPECT_EQ(listener.told, Calls{"b+"}) << "what a program sets is told to nobody";
}
