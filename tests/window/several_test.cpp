// More than one: dialogs beside each other, one file loaded twice, copies; and elements without a
// dialog around them.

#include "Window.h"

namespace {

class Several : public WindowBase {
protected:
    std::string file(const std::string& name, const std::string& text)
    {
        return folder.file(name, header + text);
    }
    /// The dialog of a file; the reference of the caller goes with the test.
    KsTopLevelDialog* load(const std::string& path, const char* id = "")
    {
        auto* dialog = ksCast<KsTopLevelDialog>(KsFormweave::loadFromFile(path.c_str(), id));
        EXPECT_TRUE(dialog);
        if (dialog) m_loaded.push_back(dialog);
        return dialog;
    }
    void TearDown() override
    {
        for (KsTopLevelDialog* dialog : m_loaded) {
            delete dialog->getBaseWidget();
            dialog->unref();
        }
        WindowBase::TearDown();
    }
    static KsDialogCheckBox* first(KsTopLevelDialog* dialog)
    {
        return static_cast<KsDialogCheckBox*>(dialog->getChild(0));
    }
    Folder folder;

private:
    std::vector<KsTopLevelDialog*> m_loaded;
};

const char* const form = R"(
TopLevelDialog {
    label "Settings"
    width 300
    DialogCheckBox { label "Shadows" auditorID "shadows" }
    RowDialog {
        DialogCheckBox { label "Fog" width 120 }
        DialogCheckBox { }
    }
}
)";

} // namespace

TEST_F(Several, twoDialogsHaveTwoWindowsAndTwoAuditors)
{
    KsTopLevelDialog* dialogs[] = {make(), make()};
    DialogListener listeners[2];
    KsDialogCheckBox* boxes[] = {box("a"), box("b")};
    for (int i = 0; i < 2; ++i) {
        dialogs[i]->addChild(boxes[i]);
        dialogs[i]->addAuditor(&listeners[i]);
        open(dialogs[i]);
    }
    EXPECT_NE(dialogs[0]->getBaseWidget(), dialogs[1]->getBaseWidget());
    click(boxes[1]);
    EXPECT_EQ(listeners[0].told, Calls());
    EXPECT_EQ(listeners[1].told, Calls{"b+"});
    click(boxes[0]);
    EXPECT_EQ(listeners[0].told, Calls{"a+"});
    dialogs[0]->hide();
    EXPECT_TRUE(dialogs[1]->getBaseWidget()->isVisible());
    QPointer<QWidget> former = dialogs[0]->getBaseWidget();
    letGo(dialogs[0]);
    delete former;
    click(boxes[1]);
    EXPECT_EQ(listeners[1].told, (Calls{"b+", "b-"}));
}

TEST_F(Several, anAuditorOfOneDialogMayDeleteTheOther)
{
    KsTopLevelDialog *one = make(), *two = make();
    KsDialogCheckBox *a = box("a"), *b = box("b");
    one->addChild(a);
    two->addChild(b);
    DialogListener listener;
    one->addAuditor(&listener);
    QPointer<QWidget> other = open(two);
    open(one);
    listener.then = [&](KsDialogCheckBox*) { letGo(two); };
    click(a);
    settle();
    EXPECT_EQ(numToggles(other), 0);
    delete other;
    click(a);
    EXPECT_EQ(listener.told, (Calls{"a+", "a-"}));
}

TEST_F(Several, aFileLoadedTwiceIsOneDialogWithOneWindow)
{
    const std::string path = file("a.arb", form);
    KsTopLevelDialog* one = load(path);
    QWidget* window = open(one);
    KsTopLevelDialog* two = load(path);
    EXPECT_EQ(one, two);
    two->buildDialog();
    two->show();
    EXPECT_EQ(two->getBaseWidget(), window);
    EXPECT_EQ(numToggles(window), 3);
    click(first(two));
    EXPECT_TRUE(first(one)->state);
}

TEST_F(Several, aCopyOfALoadedDialogIsAnotherDialog)
{
    KsTopLevelDialog* original = load(file("a.arb", form));
    const std::string text = written(original);
    const KsRef<KsTopLevelDialog> early(static_cast<KsTopLevelDialog*>(original->copy()));
    DialogListener listener;
    original->addAuditor(&listener);
    original->buildDialog();
    measure(original);
    // Built or not: a copy is a new dialog that asks for the same.
    const KsRef<KsTopLevelDialog> late(static_cast<KsTopLevelDialog*>(original->copy()));
    open(original);
    for (KsTopLevelDialog* copy : {early.get(), late.get()}) {
        EXPECT_FALSE(copy->getBaseWidget());
        EXPECT_FALSE(copy->isBuilt3D());
        EXPECT_EQ(copy->width, 300);
        EXPECT_EQ(copy->height, 0);
        EXPECT_EQ(copy->maxWidth, 16777215);
        EXPECT_EQ(written(copy), text);
        ASSERT_EQ(copy->getNumChildren(), 2);
        EXPECT_EQ(copy->getChild(0)->getParentElement(), copy);
        QPointer<QWidget> window = open(copy);
        ASSERT_TRUE(window);
        EXPECT_NE(window, original->getBaseWidget());
        EXPECT_EQ(window->size(), original->getBaseWidget()->size());
        EXPECT_EQ(numToggles(window), 3);
        click(first(copy));
        EXPECT_TRUE(first(copy)->state);
        EXPECT_FALSE(first(original)->state);
        EXPECT_EQ(listener.told, Calls()) << "auditors are not copied";
        delete window;
    }
    click(first(original));
    EXPECT_EQ(listener.told, Calls{"Shadows+"});
    original->removeAuditor(&listener);
}

TEST_F(Several, aCopyOfADialogThatStandsInASceneOnlyWritesTheSameText)
{
    KsTopLevelDialog* original = load(file("a.arb", form));
    const std::string text = written(original);
    measure(original);
    const KsRef<KsNode> copy(original->copy());
    EXPECT_EQ(written(copy.get()), text);
    measure(copy.get());
    EXPECT_EQ(written(copy.get()), text);
}

TEST_F(Several, twoNamesOfOneFileAreTwoDialogs)
{
    const std::string path = file("a.arb", form);
    KsTopLevelDialog* one = load(path);
    KsTopLevelDialog* two = load(folder.path() + "/./a.arb");
    ASSERT_NE(one, two);
    open(one);
    open(two);
    EXPECT_NE(one->getBaseWidget(), two->getBaseWidget());
    click(first(two));
    EXPECT_TRUE(first(two)->state);
    EXPECT_FALSE(first(one)->state);
    EXPECT_FALSE(toggle(first(one))->isChecked());
}

TEST_F(Several, aBadFileLeavesOpenWindowsUntouched)
{
    KsTopLevelDialog* good = load(file("good.arb", form));
    DialogListener listener;
    good->addAuditor(&listener);
    QWidget* window = open(good);
    const std::string before = written(good);
    const QRect place = window->geometry();
    const QPointer<QCheckBox> widget = toggle(first(good));
    int number = 0;
    for (const char* text :
         {"", "TopLevelDialog {", "TopLevelDialog { DialogCheckBox { label \"a\" state MAYBE } }",
          "TopLevelDialog { Cube { } }", "TopLevelDialog { DialogCheckBox { } USE nobody }",
          "Nonsense { }"}) {
        ExpectedMessages messages;
        messages.allow("", "");
        const int nodes = KsBase::getNumInstances();
        const std::string path = file("bad" + std::to_string(++number) + ".arb", text);
        EXPECT_FALSE(KsFormweave::loadFromFile(path.c_str(), "")) << text;
        EXPECT_FALSE(messages.messages().empty()) << text;
        // A file without an element is a file: its root stays in the cache.
        EXPECT_EQ(KsBase::getNumInstances(), nodes + (*text ? 0 : 1)) << text;
    }
    settle();
    EXPECT_EQ(good->getBaseWidget(), window);
    EXPECT_EQ(window->geometry(), place);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(widget);
    EXPECT_EQ(written(good), before);
    click(first(good));
    EXPECT_EQ(listener.told, Calls{"Shadows+"});
    good->removeAuditor(&listener);
}

// Elements without a dialog.

TEST_F(Several, aComponentWithoutADialogJoinsTheLayoutOfTheWidgetGiven)
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* above = new QLabel("above");
    layout->addWidget(above);
    const KsRef<KsDialogCheckBox> alone(box("alone"));
    build(alone.get(), 1, 0, 0, &window);
    ASSERT_EQ(layout->count(), 2);
    EXPECT_EQ(layout->itemAt(1)->layout(), static_cast<QBoxLayout*>(alone->getLayout()));
    auto* below = new QLabel("below");
    layout->addWidget(below);
    window.show();
    settle();
    EXPECT_GT(alone->getWidget()->y(), above->geometry().bottom());
    EXPECT_LT(alone->getWidget()->geometry().bottom(), below->y());
    click(alone.get()); // nobody hears it
    EXPECT_TRUE(alone->state);
    // A second build changes nothing in the layout.
    build(alone.get(), 1, 0, 0, &window);
    settle();
    EXPECT_EQ(layout->count(), 3);
    EXPECT_EQ(numToggles(&window), 1);
    EXPECT_EQ(layout->indexOf(below), 2);
    EXPECT_TRUE(toggle(alone.get())->isChecked());
    click(alone.get());
    EXPECT_FALSE(alone->state);
    alone->destroyWidget();
    EXPECT_EQ(layout->count(), 2);
    EXPECT_EQ(numToggles(&window), 0);
}

TEST_F(Several, aComponentWithoutADialogStandsInAWidgetWithoutALayout)
{
    QWidget window;
    const KsRef<KsDialogCheckBox> alone(box("alone"));
    build(alone.get(), 1, 0, 0, &window);
    ASSERT_TRUE(alone->getWidget());
    EXPECT_EQ(alone->getWidget()->parentWidget(), &window);
    EXPECT_FALSE(window.layout());
    window.show();
    settle();
    click(alone.get());
    EXPECT_TRUE(alone->state);
}

TEST_F(Several, aComponentMayOutliveTheWidgetItWasGiven)
{
    const KsRef<KsDialogCheckBox> alone(box("alone"));
    auto* window = new QWidget;
    new QVBoxLayout(window);
    build(alone.get(), 1, 0, 0, window);
    delete window;
    EXPECT_FALSE(alone->getWidget());
    alone->label = "other";
    alone->state = true;
    alone->enable = false;
    alone->enable = true;
    QWidget second;
    auto* layout = new QVBoxLayout(&second);
    build(alone.get(), 1, 0, 0, &second);
    EXPECT_EQ(layout->count(), 1);
    second.show();
    settle();
    EXPECT_TRUE(toggle(alone.get())->isChecked());
    click(alone.get());
    EXPECT_FALSE(alone->state);
}

TEST_F(Several, aGroupWithoutADialogJoinsTheLayoutWithItsChildren)
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    const KsRef<KsRowDialog> rows(new KsRowDialog);
    KsDialogCheckBox *a = box("a"), *b = box("b");
    rows->addChild(a);
    rows->addChild(b);
    DialogListener listener;
    rows->addAuditor(&listener);
    build(rows.get(), 1, 0, 0, &window);
    EXPECT_EQ(layout->count(), 1);
    window.show();
    settle();
    click(b);
    EXPECT_EQ(listener.told, Calls{"b+"});
    EXPECT_GT(toggle(b)->mapTo(&window, QPoint()).y(), toggle(a)->mapTo(&window, QPoint()).y());
    rows->destroyWidget();
    EXPECT_EQ(numToggles(&window), 0);
}
