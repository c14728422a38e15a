// The controls that open dialogs.

#include <MessageGuard.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/base/KsDBImpl.h>
#include <dialog/Stage.h>

namespace {

/// Hears every control below the container that it is added to.
class Listener : public KsDialogAuditor {
public:
    void dialogPushButton(KsDialogPushButton* node) override { note(node); }
    void dialogCheckBox(KsDialogCheckBox* node) override { note(node); }
    Strings told;
    std::function<void(KsFormweave*)> then;

private:
    void note(KsFormweave* node)
    {
        told.push_back(node->auditorID.getValue().toUtf8());
        if (then) then(node);
    }
};

const std::string inner =
    "TopLevelDialog { label \"One\" auditorID \"one\" position3D 300 0 0 "
    "DialogCheckBox { auditorID \"first\" label \"First\" } } "
    "TopLevelDialog { label \"Two\" auditorID \"two\" position3D 300 200 0 "
    "RowDialog { DialogPushButton { auditorID \"second\" buttonLabel \"Second\" } } } ";

std::string form(const std::string& type, const std::string& rest)
{
    return "TopLevelDialog { label \"Form\" ColumnDialog { " + type +
           " { auditorID \"launcher\" label \"Launcher\" " + rest + " } } }";
}

/// A dialog with a launcher of two dialogs in it.
template <class Launcher> class Launch : public Stage {
public:
    Launch(const std::string& type, const std::string& fields, Road road)
        : Stage(form(type, fields + " " + inner), road), launcher(find<Launcher>("launcher"))
    {
        dialog->addAuditor(&listener);
    }
    KsTopLevelDialog* child(int i) const { return launcher->getChild(i); }
    QWidget* window(int i) const { return child(i)->getBaseWidget(); }
    bool isOpen(int i) const { return window(i) && window(i)->isVisible(); }
    /// Whether something of the child is drawn in the scene.
    bool isDrawn(int i)
    {
        draw();
        return !boxOf(child(i), "frameSep").isEmpty();
    }

    KsRef<Launcher> launcher; // also when an auditor has taken it out
    Listener listener;
};

class Checked : public Launch<KsDialogCheckBoxLauncher> {
public:
    explicit Checked(const std::string& fields = "", Road road = Both)
        : Launch("DialogCheckBoxLauncher", fields, road)
    {}
    void clickInWindow() const
    {
        auto* toggle = widgetOf<QCheckBox>(launcher);
        clickWidget(toggle, QPoint(8, toggle->height() / 2));
    }
};

class Pushed : public Launch<KsDialogPushButtonLauncher> {
public:
    explicit Pushed(Road road = Both) : Launch("DialogPushButtonLauncher", "", road) {}
    void pressInWindow() const
    {
        QTest::mousePress(widgetOf<QPushButton>(launcher), Qt::LeftButton);
    }
};

KsRef<KsNode> read(const std::string& text)
{
    KsInput in;
    in.setBuffer(text.data(), text.size());
    const KsRef<KsSeparator> root(KsDB::readAll(&in));
    return KsRef<KsNode>(root && root->getNumChildren() ? root->getChild(0) : nullptr);
}

/// The child operations of both classes.
template <class Launcher> class Children : public testing::Test {
protected:
    void SetUp() override
    {
        KsFormweave::init();
        m_launcher = new Launcher;
        name = std::string("Ks") + m_launcher->getTypeId().getName().getString() + "::";
    }
    void TearDown() override
    {
        m_launcher.reset();
        KsFormweave::finish();
    }
    std::string where(const char* operation) const { return name + operation; }

    KsRef<Launcher> m_launcher;
    std::string name;
};
using Launchers = testing::Types<KsDialogCheckBoxLauncher, KsDialogPushButtonLauncher>;
TYPED_TEST_SUITE(Children, Launchers);

} // namespace

// The check box launcher.

TEST(CheckBoxLauncher, isACheckBoxWithoutDialogs)
{
    Stage stage(form("DialogCheckBoxLauncher", "onString \"On\" offString \"Off\""));
    auto* box = stage.find<KsDialogCheckBoxLauncher>("launcher");
    auto* toggle = Stage::widgetOf<QCheckBox>(box);
    Stage::clickWidget(toggle, QPoint(8, toggle->height() / 2));
    EXPECT_TRUE(box->state);
    EXPECT_EQ(toggle->text(), "On");
    stage.clickPart(box, "stateSep");
    EXPECT_FALSE(box->state);
    EXPECT_FALSE(toggle->isChecked());
    EXPECT_EQ(toggle->text(), "Off");
    EXPECT_EQ(Stage::shown(box, "stateSwitch"), 0);
}

TEST(CheckBoxLauncher, aClickInTheSceneCountsWhereverItIs)
{
    Stage stage(form("DialogCheckBoxLauncher", "onString \"On\""));
    auto* box = stage.find<KsDialogCheckBoxLauncher>("launcher");
    bool expected = false;
    for (const char* part : {"labelSep", "frameSep", "stateSep", "onOffStringSep"}) {
        stage.clickPart(box, part);
        expected = !expected;
        EXPECT_EQ(box->state, expected) << part;
        EXPECT_EQ(Stage::shown(box, "stateSwitch"), expected ? 1 : 0) << part;
    }
}

TEST(CheckBoxLauncher, uncheckedAtTheBuildItsDialogsAreBuiltAndHidden)
{
    Checked shown;
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(shown.window(i)) << "built, not skipped";
        EXPECT_FALSE(shown.isOpen(i));
        EXPECT_FALSE(shown.isDrawn(i));
    }
}

TEST(CheckBoxLauncher, checkedAtTheBuildItsDialogsAreShown)
{
    Checked shown("state TRUE");
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(shown.isOpen(i));
        EXPECT_TRUE(shown.isDrawn(i));
    }
}

TEST(CheckBoxLauncher, aClickInTheWindowShowsAndHidesThem)
{
    Checked shown;
    shown.listener.then = [&](KsFormweave*) {
        EXPECT_EQ(shown.isOpen(0), !shown.launcher->state) << "the auditors come first";
    };
    for (const bool on : {true, false, true}) {
        shown.clickInWindow();
        EXPECT_EQ(shown.launcher->state, on);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(shown.isOpen(i), on);
            EXPECT_EQ(shown.isDrawn(i), on);
        }
    }
    EXPECT_EQ(shown.listener.told, (Strings{"launcher", "launcher", "launcher"}));
}

TEST(CheckBoxLauncher, aClickInTheSceneShowsAndHidesThem)
{
    Checked shown;
    for (const bool on : {true, false}) {
        shown.clickPart(shown.launcher, "stateSep");
        EXPECT_EQ(shown.launcher->state, on);
        EXPECT_EQ(Stage::widgetOf<QCheckBox>(shown.launcher)->isChecked(), on);
        EXPECT_EQ(Stage::shown(shown.launcher, "stateSwitch"), on ? 1 : 0);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(shown.isOpen(i), on);
            EXPECT_EQ(shown.isDrawn(i), on);
        }
    }
    EXPECT_EQ(shown.listener.told, (Strings{"launcher", "launcher"}));
}

TEST(CheckBoxLauncher, inASceneAloneNoWindowIsMade)
{
    Checked shown("", Stage::Scene);
    shown.clickPart(shown.launcher, "stateSep");
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(shown.window(i));
        EXPECT_TRUE(shown.isDrawn(i));
    }
}

TEST(CheckBoxLauncher, aStateFromCodeMovesNoDialogBeforeTheNextBuild)
{
    Checked shown;
    shown.launcher->state = true;
    EXPECT_FALSE(shown.isOpen(0));
    shown.dialog->updateDialogBuild(1);
    EXPECT_TRUE(shown.isOpen(0));
}

TEST(CheckBoxLauncher, theDialogsThatItOpensWorkInBothPresentations)
{
    Checked shown("state TRUE");
    auto* first = shown.find<KsDialogCheckBox>("first");
    ASSERT_TRUE(first) << "found through the launcher";
    Listener inChild;
    shown.child(0)->addAuditor(&inChild);
    shown.draw();
    shown.clickPart(first, "stateSep");
    EXPECT_TRUE(first->state);
    EXPECT_TRUE(shown.launcher->state) << "the press was the inner control's";
    auto* toggle = Stage::widgetOf<QCheckBox>(first);
    EXPECT_TRUE(toggle->isChecked());
    Stage::clickWidget(toggle, QPoint(8, toggle->height() / 2));
    EXPECT_FALSE(first->state);
    EXPECT_EQ(inChild.told, (Strings{"first", "first"}));
    EXPECT_TRUE(shown.listener.told.empty()) << "each dialog has its own auditors";
}

TEST(CheckBoxLauncher, aDialogThatJoinsABuiltLauncherFollowsItAtTheNextClick)
{
    Checked shown;
    auto* third = new KsTopLevelDialog;
    auto* box = new KsDialogCheckBox;
    box->label = "Third";
    third->addChild(box);
    third->position3D = KbVec3f(0, 300, 0);
    shown.launcher->addChild(third);
    EXPECT_FALSE(shown.isDrawn(2)) << "unchecked: nothing of it shows";
    EXPECT_FALSE(shown.window(2));
    shown.clickInWindow();
    EXPECT_TRUE(shown.isOpen(2));
    EXPECT_TRUE(shown.isDrawn(2));
}

TEST(CheckBoxLauncher, anAuditorMayLetItGoOrItsDialogs)
{
    for (const bool inScene : {false, true}) {
        for (const bool all : {false, true}) {
            Checked shown;
            shown.listener.then = [&](KsFormweave* told) {
                if (all)
                    static_cast<KsDialogGroup*>(told->getParentElement())->removeAllChildren();
                else
                    shown.launcher->removeChild(0);
            };
            if (inScene)
                shown.clickPart(shown.launcher, "stateSep");
            else
                shown.clickInWindow();
            EXPECT_EQ(shown.listener.told, Strings{"launcher"});
            EXPECT_EQ(shown.launcher->getNumChildren(), all ? 2 : 1);
            if (!all) {
                EXPECT_TRUE(shown.isOpen(0));
            }
        }
    }
}

// The push button launcher.

TEST(PushButtonLauncher, showsNoDialogAtTheBuild)
{
    Pushed shown;
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(shown.window(i));
        EXPECT_FALSE(shown.isOpen(i));
        EXPECT_FALSE(shown.isDrawn(i));
    }
}

TEST(PushButtonLauncher, pressedTwiceInTheWindowItShowsTwiceAndClosesNothing)
{
    class Counter : public KsTopLevelDialog {
    public:
        void show() override
        {
            ++shows;
            KsTopLevelDialog::show();
        }
        int shows = 0;
    };
    Pushed shown;
    auto* counter = new Counter;
    shown.launcher->addChild(counter);
    shown.pressInWindow();
    EXPECT_EQ(counter->shows, 1);
    EXPECT_TRUE(shown.isOpen(2)) << "built at the press";
    const QWidget* window = shown.window(2);
    shown.pressInWindow();
    EXPECT_EQ(counter->shows, 2);
    EXPECT_EQ(shown.window(2), window) << "built once";
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(shown.isOpen(i));
    shown.child(0)->hide();
    shown.pressInWindow();
    EXPECT_TRUE(shown.isOpen(0));
    EXPECT_EQ(shown.listener.told, (Strings{"launcher", "launcher", "launcher"}));
}

TEST(PushButtonLauncher, aPressInTheSceneIsToldButShowsNothing)
{
    Pushed shown;
    shown.clickPart(shown.launcher, "frameSep");
    EXPECT_EQ(shown.listener.told, Strings{"launcher"});
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(shown.isOpen(i));
        EXPECT_FALSE(shown.isDrawn(i));
    }
    // The program may show it there.
    shown.child(0)->show3D(1);
    EXPECT_TRUE(shown.isDrawn(0));
}

TEST(PushButtonLauncher, inASceneItsDialogsHaveTheirWindowsReady)
{
    Pushed shown(Stage::Scene);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(shown.window(i));
        EXPECT_FALSE(shown.isOpen(i));
        EXPECT_FALSE(shown.isDrawn(i));
    }
}

TEST(PushButtonLauncher, withoutLocalWidgetsItsDialogsAreBuiltAsHiddenPanels)
{
    KsDBImpl::m_noLocalWidgets = true;
    {
        Pushed shown(Stage::Scene);
        for (int i = 0; i < 2; ++i) {
            EXPECT_FALSE(shown.window(i));
            EXPECT_TRUE(shown.child(i)->isBuilt3D());
            EXPECT_FALSE(shown.isDrawn(i));
        }
    }
    KsDBImpl::m_noLocalWidgets = false;
}

TEST(PushButtonLauncher, anAuditorMayLetItGoOrItsDialogs)
{
    Pushed shown(Stage::Window);
    shown.listener.then = [&](KsFormweave*) { shown.launcher->removeChild(1); };
    shown.pressInWindow();
    EXPECT_EQ(shown.launcher->getNumChildren(), 1);
    EXPECT_TRUE(shown.isOpen(0));
    shown.listener.then = [&](KsFormweave* told) {
        static_cast<KsDialogGroup*>(told->getParentElement())->removeAllChildren();
    };
    shown.pressInWindow();
    EXPECT_EQ(shown.listener.told, (Strings{"launcher", "launcher"}));
    Stage::settle();
    EXPECT_FALSE(shown.launcher->getWidget());
}

// What both do.

TYPED_TEST(Children, standInFrontOfTheKitsOwnNode)
{
    auto& launcher = *this->m_launcher;
    launcher.getAnyPart("geomSwitch", true);
    ASSERT_EQ(launcher.getChildren()->getLength(), 1);
    auto *a = new KsTopLevelDialog, *b = new KsTopLevelDialog, *c = new KsTopLevelDialog;
    launcher.addChild(a);
    launcher.addChild(c);
    launcher.insertChild(b, 1);
    EXPECT_EQ(launcher.getNumChildren(), 3);
    EXPECT_EQ(launcher.getChildren()->getLength(), 4);
    EXPECT_EQ((*launcher.getChildren())[1], b);
    EXPECT_EQ(launcher.getChild(0), a);
    EXPECT_EQ(launcher.getChild(-1), nullptr);
    EXPECT_EQ(launcher.findChild(c), 2);
    EXPECT_EQ(launcher.findChild(nullptr), -1);
    EXPECT_EQ(b->getParentElement(), &launcher);
    launcher.removeChild(a);
    EXPECT_EQ(launcher.getChild(0), b);
    auto* d = new KsTopLevelDialog;
    launcher.replaceChild(b, d);
    EXPECT_EQ(launcher.getChild(0), d);
    EXPECT_EQ(d->getParentElement(), &launcher);
    // The scene graph's own operations come to the same.
    auto* e = new KsTopLevelDialog;
    launcher.internalInsertChild(e, 0);
    EXPECT_EQ(launcher.internalGetChild(0), e);
    EXPECT_EQ(launcher.internalFindChild(e), 0);
    launcher.internalRemoveChild(e);
    EXPECT_EQ(launcher.getNumChildren(), 2);
    launcher.removeAllChildren();
    EXPECT_EQ(launcher.getNumChildren(), 0);
    EXPECT_EQ(launcher.getChildren()->getLength(), 0) << "the kit's own node goes with them";
    launcher.addChild(new KsTopLevelDialog);
    EXPECT_EQ(launcher.getChildren()->getLength(), 2);
}

TYPED_TEST(Children, badArgumentsAreToldAndChangeNothing)
{
    auto& launcher = *this->m_launcher;
    launcher.addChild(new KsTopLevelDialog);
    KsRef<KsTopLevelDialog> unknown(new KsTopLevelDialog);
    const auto refused = [&](const char* operation, const char* text, auto&& call) {
        ExpectedMessages messages(this->where(operation).c_str(), text);
        call();
        EXPECT_EQ(messages.messages().size(), 1u) << operation;
        for (const auto& message : messages.messages()) EXPECT_EQ(message.text, text);
        EXPECT_EQ(launcher.getNumChildren(), 1);
    };
    refused("addChild", "NULL child node", [&] { launcher.addChild(nullptr); });
    refused("insertChild", "NULL child node", [&] { launcher.insertChild(nullptr, 0); });
    refused("insertChild", "Index 2 is out of range 0 - 1",
            [&] { launcher.insertChild(unknown.get(), 2); });
    refused("insertChild", "Index -1 is out of range 0 - 1",
            [&] { launcher.insertChild(unknown.get(), -1); });
    refused("getChild", "Index 1 is out of range 0 - 1; Be careful",
            [&] { EXPECT_EQ(launcher.getChild(1), nullptr); });
    refused("removeChild", "Index 1 is out of range 0 - 0", [&] { launcher.removeChild(1); });
    refused("removeChild", "Index -1 is out of range 0 - 0",
            [&] { launcher.removeChild(unknown.get()); });
    refused("replaceChild", "Index 1 is out of range 0 - 0",
            [&] { launcher.replaceChild(1, unknown.get()); });
    refused("replaceChild", "Index -1 is out of range 0 - 0",
            [&] { launcher.replaceChild(unknown.get(), unknown.get()); });
}

TYPED_TEST(Children, areWrittenAndReadWithIt)
{
    const std::string type = this->m_launcher->getTypeId().getName().getString();
    const KsRef<KsNode> first = read(type + " { label \"L\" " + inner + "}");
    ASSERT_TRUE(first);
    auto* launcher = static_cast<TypeParam*>(first.get());
    ASSERT_EQ(launcher->getNumChildren(), 2);
    EXPECT_EQ(launcher->getChild(1)->label.getValue(), "Two");
    EXPECT_EQ(launcher->getChild(1)->getParentElement(), launcher);
    const std::string once = written(launcher);
    const KsRef<KsNode> second = read(once);
    ASSERT_TRUE(second);
    EXPECT_EQ(written(second.get()), once);
    EXPECT_EQ(static_cast<TypeParam*>(second.get())->getNumChildren(), 2);
    const KsRef<KsNode> copy(static_cast<KsNode*>(launcher->copy()));
    EXPECT_EQ(written(copy.get()), once);
}

TYPED_TEST(Children, ofAnotherTypeMakeAFileBroken)
{
    const std::string type = this->m_launcher->getTypeId().getName().getString();
    ExpectedMessages messages;
    messages.allow("KsInput::read", "").allow("KsDB::readAll", "").allow("KsBase::read", "");
    const KsRef<KsNode> node = read(type + " { DialogCheckBox { } }");
    EXPECT_FALSE(node);
    EXPECT_FALSE(messages.messages().empty());
}

TYPED_TEST(Children, areFoundById)
{
    const std::string type = this->m_launcher->getTypeId().getName().getString();
    const KsRef<KsNode> node = read(form(type, inner));
    ASSERT_TRUE(node);
    auto* dialog = static_cast<KsTopLevelDialog*>(node.get());
    auto* launcher = static_cast<TypeParam*>(dialog->searchForAuditorId("launcher"));
    ASSERT_TRUE(launcher);
    EXPECT_EQ(launcher->searchForAuditorId("two"), launcher->getChild(1));
    EXPECT_EQ(launcher->searchForAuditorId("first")->label.getValue(), "First");
    EXPECT_EQ(launcher->searchForAuditorId("launcher"), nullptr) << "its own is not asked";
    EXPECT_EQ(dialog->searchForAuditorId("second"), launcher->searchForAuditorId("second"));
}

TYPED_TEST(Children, reportTheirControlsWhenAllAreReported)
{
    const std::string type = this->m_launcher->getTypeId().getName().getString();
    const KsRef<KsNode> node = read(form(type, inner));
    auto* dialog = static_cast<KsTopLevelDialog*>(node.get());
    auto* launcher = static_cast<TypeParam*>(dialog->searchForAuditorId("launcher"));
    Listener outer, first;
    dialog->addAuditor(&outer);
    launcher->getChild(0)->addAuditor(&first);
    dialog->applyAuditors();
    EXPECT_TRUE(outer.told.empty()) << "the launcher itself is passed over";
    EXPECT_EQ(first.told, Strings{"first"});
    launcher->applyAuditors();
    EXPECT_EQ(first.told, (Strings{"first", "first"}));
}

TYPED_TEST(Children, areHiddenWhenTheyLeaveAndWhenTheLauncherDies)
{
    auto& launcher = this->m_launcher;
    KsRef<KsTopLevelDialog> dialogs[4];
    for (auto& dialog : dialogs) {
        dialog = new KsTopLevelDialog;
        dialog->buildDialog();
        dialog->show();
        launcher->addChild(dialog.get());
        EXPECT_TRUE(dialog->getBaseWidget()->isVisible()) << "joining moves nothing";
    }
    dialogs[3]->ref(); // an application's own
    const auto isOpen = [&](int i) { return dialogs[i]->getBaseWidget()->isVisible(); };
    launcher->removeChild(dialogs[0].get());
    EXPECT_FALSE(isOpen(0));
    EXPECT_EQ(dialogs[0]->getRefCount(), 1) << "its reference is dropped, once";
    EXPECT_EQ(dialogs[0]->getParentElement(), nullptr);
    launcher->replaceChild(dialogs[1].get(), dialogs[0].get());
    EXPECT_FALSE(isOpen(1));
    EXPECT_FALSE(isOpen(0));
    dialogs[0]->show();
    launcher.reset();
    for (int i : {0, 2, 3}) {
        EXPECT_FALSE(isOpen(i)) << i;
        EXPECT_EQ(dialogs[i]->getParentElement(), nullptr);
        EXPECT_EQ(dialogs[i]->getRefCount(), i == 3 ? 2 : 1) << i;
    }
    dialogs[3]->unref();
    for (auto& dialog : dialogs) delete dialog->getBaseWidget();
}

TYPED_TEST(Children, thatComeBackAreOpenedWithALiveWindow)
{
    auto& launcher = this->m_launcher;
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    launcher->addChild(dialog.get());
    KbVec2i32 size(0, 0), place(0, 0);
    QWidget window;
    launcher->buildWidget(&window, size, place, 1);
    launcher->eventNotify(1, 0);
    ASSERT_TRUE(dialog->getBaseWidget());
    EXPECT_TRUE(dialog->getBaseWidget()->isVisible());
    launcher->removeChild(0);
    EXPECT_FALSE(dialog->getBaseWidget()->isVisible());
    launcher->addChild(dialog.get());
    launcher->eventNotify(1, 0);
    EXPECT_TRUE(dialog->getBaseWidget()->isVisible());
    dialog->label = "New";
    EXPECT_EQ(dialog->getBaseWidget()->windowTitle(), "New");
    delete dialog->getBaseWidget();
}

TYPED_TEST(Children, outliveTheLibraryQuietly)
{
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    dialog->buildDialog();
    dialog->show();
    this->m_launcher->addChild(dialog.get());
    KsFormweave::finish();
    this->m_launcher.reset();
    EXPECT_FALSE(dialog->getBaseWidget()->isVisible());
    delete dialog->getBaseWidget();
    dialog.reset();
    KsFormweave::init();
}
