// Menus whose tree changes: entries that come and go, rebuilds, files, dying elements.

#include "Menu.h"

#include <arborium/base/KsDBImpl.h>

#include <sstream>

TEST(MenuTree, aRebuiltWindowHasOneBarWithAllMenusOnce)
{
    MenuStage stage(twoMenus);
    const QPointer<QMenuBar> first = stage.bar();
    QMenu* menu = first->actions()[0]->menu();
    stage.dialog->addChild(new KsDialogCheckBox);
    EXPECT_FALSE(first) << "the old bar is deleted";
    EXPECT_EQ(stage.textsOf({}), QStringList({"File", "View"}));
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"New", "Recent"}));
    EXPECT_EQ(stage.textsOf({"File", "Recent"}), QStringList({"one"}));
    EXPECT_EQ(stage.bar()->actions()[0]->menu(), menu) << "a popup keeps its menu";
    EXPECT_TRUE(stage.bar()->isVisible());
    stage.clickThrough({"File", "New"});
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
}

TEST(MenuTree, entriesAreAddedInsertedReplacedAndRemoved)
{
    MenuStage stage(twoMenus);
    auto* file = stage.find<KsMenuPopup>("file");
    file->addChild(button("last"));
    file->insertChild(button("early"), 0);
    EXPECT_EQ(file->findChild(stage.find<KsMenuItem>("early")), 0);
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"New", "Recent", "last", "early"}))
        << "in a window in the order of their coming";
    stage.clickOn({"file"});
    EXPECT_GT(stage.boxOf("early", "itemFrameSep").getMin()[1],
              stage.boxOf("new", "itemFrameSep").getMin()[1]);
    file->replaceChild(file->findChild(stage.find<KsMenuItem>("new")), button("other"));
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"Recent", "last", "early", "other"}));
    stage.clickOn({"file", "other"});
    EXPECT_EQ(stage.heard(), Heard({"push:other"}));
    const KsRef<KsMenuItem> gone(stage.find<KsMenuItem>("recent"));
    file->removeChild(gone);
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"last", "early", "other"}));
    EXPECT_FALSE(stage.isDrawn(gone));
    file->addChild(gone);
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"last", "early", "other", "Recent"}));
    EXPECT_EQ(stage.textsOf({"File", "Recent"}), QStringList({"one"}));
    stage.clickThrough({"File", "Recent", "one"});
    EXPECT_EQ(stage.heard(), Heard({"push:one"}));
    stage.clickOn({"file", "recent", "one"});
    EXPECT_EQ(stage.heard(), Heard({"push:one"}));
    file->removeAllChildren();
    EXPECT_EQ(stage.textsOf({"File"}), QStringList());
    file->addChild(button("new life"));
    stage.clickOn({"file", "new life"});
    EXPECT_EQ(stage.heard(), Heard({"push:new life"}));
}

TEST(MenuTree, anEntryThatComesLeavesTheColumnClosed)
{
    MenuStage stage(twoMenus, Stage::Scene);
    stage.clickOn({"file", "recent"});
    stage.find<KsMenuPopup>("recent")->addChild(button("two"));
    for (const char* id : {"new", "one", "two"}) EXPECT_FALSE(stage.isDrawn(id)) << id;
    EXPECT_EQ(Stage::shown(stage.find<KsMenuPopup>("file"), "frameSwitch"), 0);
    stage.clickOn({"file", "recent", "two"});
    EXPECT_EQ(stage.heard(), Heard({"push:two"}));
}

TEST(MenuTree, popupsComeAndGoInABarThatIsShown)
{
    MenuStage stage(twoMenus);
    auto* bar = stage.find<KsMenuBar>("bar");
    auto* help = new KsMenuPopup;
    help->label = "Help";
    help->auditorID = "help";
    help->addChild(button("about"));
    bar->addChild(help);
    EXPECT_EQ(stage.textsOf({}), QStringList({"File", "View", "Help"}));
    stage.clickThrough({"Help", "about"});
    EXPECT_EQ(stage.heard(), Heard({"push:about"}));
    stage.clickOn({"help", "about"});
    EXPECT_EQ(stage.heard(), Heard({"push:about"}));
    const KsRef<KsMenuPopup> view(stage.find<KsMenuPopup>("view"));
    bar->removeChild(view);
    EXPECT_EQ(stage.textsOf({}), QStringList({"File", "Help"}));
    EXPECT_FALSE(stage.isDrawn(view));
    bar->addChild(view);
    EXPECT_EQ(stage.textsOf({}), QStringList({"File", "Help", "View"}));
    stage.clickThrough({"View", "Grid"});
    stage.clickOn({"view", "grid"});
    EXPECT_EQ(stage.heard(), Heard({"check:grid on", "check:grid off"}));
}

TEST(MenuTree, removingAPopupRebuildsNothing)
{
    MenuStage stage(twoMenus);
    const QPointer<QMenuBar> bar = stage.bar();
    const float place = stage.boxOf("view").getMin()[0];
    stage.find<KsMenuBar>("bar")->removeChild(0);
    EXPECT_EQ(stage.bar(), bar.data());
    EXPECT_EQ(stage.boxOf("view").getMin()[0], place) << "the others stay where they are";
    EXPECT_EQ(stage.textsOf({}), QStringList({"View"}));
}

TEST(MenuTree, aBarThatIsTakenOutTakesItsMenusAlong)
{
    MenuStage stage(twoMenus);
    const KsRef<KsMenuBar> bar(stage.find<KsMenuBar>("bar"));
    stage.dialog->removeChild(bar);
    EXPECT_EQ(stage.bar(), nullptr);
    stage.dialog->insertChild(bar, 0);
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"New", "Recent"}));
    stage.clickThrough({"File", "New"});
    stage.clickOn({"file", "new"});
    EXPECT_EQ(stage.heard(), Heard({"push:new", "push:new"}));
}

TEST(MenuTree, aBarWithoutADialogBuildsNoWidgets)
{
    KsFormweave::init();
    {
        const KsRef<KsMenuBar> bar(new KsMenuBar);
        auto* popup = new KsMenuPopup;
        popup->addChild(button("a"));
        bar->addChild(popup);
        EXPECT_EQ(bar->getMenu(nullptr), nullptr);
        popup->buildMenu(nullptr, 1, -1);
        EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty() || !bar->getMenu(nullptr));
    }
    KsFormweave::finish();
}

TEST(MenuTree, getMenuBuildsTheBarThatIsMissing)
{
    MenuStage stage("TopLevelDialog { DialogCheckBox { } }", Stage::Window);
    auto* bar = new KsMenuBar;
    auto* popup = new KsMenuPopup;
    popup->label = "M";
    bar->addChild(popup);
    bar->setParent(stage.dialog);
    const KsRef<KsMenuBar> hold(bar);
    auto* menu = static_cast<QMenuBar*>(static_cast<QWidget*>(bar->getMenu(nullptr)));
    ASSERT_TRUE(menu);
    EXPECT_EQ(MenuStage::texts(menu), QStringList({"M"}));
    EXPECT_EQ(bar->getMenu(nullptr), menu);
    bar->destroyWidget();
}

TEST(MenuTree, theBarsSizeIsThatOfItsTitles)
{
    KsFormweave::init();
    {
        const KsRef<KsMenuBar> bar(new KsMenuBar);
        int text = 0;
        for (const char* label : {"File", "A longer title"}) {
            auto* popup = new KsMenuPopup;
            popup->label = label;
            bar->addChild(popup);
            text += KsFormweave::getLabelPixelSize(label, nullptr)[0];
        }
        KbVec2i32 size, min, max;
        bar->getSize(size, min, max);
        EXPECT_EQ(size, KbVec2i32(10 + text + 2 * 9, 19));
        EXPECT_EQ(min, KbVec2i32(0, 0));
        EXPECT_EQ(max, KbVec2i32(32767, 32767));
    }
    KsFormweave::finish();
}

TEST(MenuTree, anEmptyBarHidesItsStripOnlyWhereThereIsAWindowToo)
{
    const char* const text = "TopLevelDialog { position3D 100 50 0 MenuBar { auditorID \"bar\" } "
                             "DialogCheckBox { auditorID \"box\" } }";
    {
        MenuStage stage(text, Stage::Scene);
        EXPECT_TRUE(stage.isDrawn("bar"));
    }
    MenuStage stage(text);
    stage.dialog->updateDialogBuild(0);
    EXPECT_FALSE(stage.isDrawn("bar"));
    auto* popup = new KsMenuPopup;
    popup->label = "M";
    stage.find<KsMenuBar>("bar")->addChild(popup);
    EXPECT_TRUE(stage.isDrawn("bar"));
    EXPECT_TRUE(stage.isDrawn(popup));
}

TEST(MenuTree, messagesNameTheClassAndTheRange)
{
    KsFormweave::init();
    {
        const KsRef<KsMenuBar> bar(new KsMenuBar);
        const KsRef<KsMenuPopup> popup(new KsMenuPopup);
        const KsRef<KsMenuPushButtonLauncher> launcher(new KsMenuPushButtonLauncher);
        const KsRef<KsMenuCheckBoxLauncher> checkLauncher(new KsMenuCheckBoxLauncher);
        const auto says = [](const char* where, const char* text,
                             const std::function<void()>& act) {
            ExpectedMessages messages(where, text);
            act();
            EXPECT_EQ(messages.messages().size(), 1u) << where;
        };
        KsMenuPopup* noPopup = nullptr;
        KsMenuItem* noItem = nullptr;
        KsTopLevelDialog* noDialog = nullptr;
        const KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
        const KsRef<KsMenuItem> spare(button("spare"));
        says("KsMenuBar::addChild", "NULL child node", [&] { bar->addChild(noPopup); });
        says("KsMenuBar::insertChild", "NULL child node", [&] { bar->insertChild(noPopup, 0); });
        says("KsMenuBar::insertChild", "Index 1 is out of range 0 - 0",
             [&] { bar->insertChild(popup, 1); });
        says("KsMenuBar::getChild", "Index 0 is out of range 0 - 0", [&] { bar->getChild(0); });
        says("KsMenuBar::removeChild", "Index 0 is out of range 0 - -1",
             [&] { bar->removeChild(0); });
        says("KsMenuBar::replaceChild", "Index 3 is out of range 0 - -1",
             [&] { bar->replaceChild(3, popup); });
        says("KsMenuPopup::addChild", "NULL child node", [&] { popup->addChild(noItem); });
        says("KsMenuPopup::insertChild", "NULL child node", [&] { popup->insertChild(noItem, 0); });
        says("KsMenuPopup::insertChild", "Index -1 is out of range 0 - 0",
             [&] { popup->insertChild(spare, -1); });
        says("KsMenuPopup::getChild", "Index 2 is out of range 0 - 0", [&] { popup->getChild(2); });
        EXPECT_EQ(popup->getChild(-1), nullptr);
        popup->addChild(button("a"));
        says("KsMenuPopup::removeChild", "Index 1 is out of range 0 - 0",
             [&] { popup->removeChild(1); });
        says("KsMenuPopup::replaceChild", "Index 1 is out of range 0 - 0",
             [&] { popup->replaceChild(1, spare); });
        const auto launcherSays = [&](auto* opener) {
            const std::string name = opener->getTypeId().getName().getString();
            const auto each = [&](const char* operation, const char* text,
                                  const std::function<void()>& act) {
                says(("Ks" + name + "::" + operation).c_str(), text, act);
            };
            each("addChild", "NULL child node", [&] { opener->addChild(noDialog); });
            each("insertChild", "NULL child node", [&] { opener->insertChild(noDialog, 0); });
            each("insertChild", "Index 1 is out of range 0 - 0",
                 [&] { opener->insertChild(dialog, 1); });
            opener->addChild(new KsTopLevelDialog);
            each("getChild", "Index 1 is out of range 0 - 1; Be careful",
                 [&] { opener->getChild(1); });
            each("removeChild", "Index 1 is out of range 0 - 0", [&] { opener->removeChild(1); });
            each("replaceChild", "Index -1 is out of range 0 - 0",
                 [&] { opener->replaceChild(-1, dialog); });
            EXPECT_EQ(opener->getChild(-1), nullptr) << "the range test does not refuse it";
            opener->removeAllChildren();
            EXPECT_EQ(opener->getNumChildren(), 0);
            EXPECT_EQ(opener->getChildren()->getLength(), 0) << "the kit's own entry goes too";
        };
        launcherSays(launcher.get());
        launcherSays(checkLauncher.get());
    }
    KsFormweave::finish();
}

TEST(MenuTree, aRemovedOrDyingEntryLeavesNothingInTheWindow)
{
    MenuStage stage(twoMenus, Stage::Window);
    auto* file = stage.find<KsMenuPopup>("file");
    // In its own call: the action's signal is running.
    stage.listener.then = [&] { file->removeAllChildren(); };
    stage.clickThrough({"File", "New"});
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
    EXPECT_EQ(stage.textsOf({"File"}), QStringList());
    Stage::settle();
    auto* bar = stage.find<KsMenuBar>("bar");
    stage.listener.then = [&] { bar->removeAllChildren(); };
    stage.clickThrough({"View", "Grid"});
    EXPECT_EQ(stage.textsOf({}), QStringList());
    Stage::settle();
    stage.listener.then = nullptr;
}

TEST(MenuTree, anAuditorMayTakeThePickedEntryOutOfItsOpenMenu)
{
    MenuStage stage("TopLevelDialog { position3D 100 50 0 width 300 height 100 MenuBar { MenuPopup "
                    "{ label \"M\" auditorID \"m\" MenuPushButton { label \"p\" auditorID \"p\" } "
                    "MenuCheckBox { label \"c\" auditorID \"c\" } MenuRadioButtons { auditorID "
                    "\"r\" items \"r\" } MenuPushButton { label \"stays\" auditorID \"stays\" } } "
                    "} }",
                    Stage::Scene);
    auto* menu = stage.find<KsMenuPopup>("m");
    for (const char* id : {"p", "c", "r"}) {
        const KsRef<KsMenuItem> entry(stage.find<KsMenuItem>(id));
        stage.listener.then = [&] { menu->removeChild(entry); };
        stage.clickOn({"m", id});
        EXPECT_EQ(stage.heard().size(), 1u) << id;
        EXPECT_FALSE(menu->showsChildren3D()) << id;
        EXPECT_FALSE(stage.isDrawn("stays")) << id;
    }
    stage.listener.then = nullptr;
}

TEST(MenuTree, aSeparatorThatIsTakenOutTakesItsLineAlong)
{
    MenuStage stage(twoMenus);
    auto* file = stage.find<KsMenuPopup>("file");
    const KsRef<KsMenuSeparator> rule(new KsMenuSeparator);
    file->addChild(rule);
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"New", "Recent", "-"}));
    file->removeChild(rule);
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"New", "Recent"}));
    stage.clickOn({"file"});
    EXPECT_FALSE(stage.isDrawn(rule));
}

TEST(MenuTree, whatComesWhileThePanelIsHiddenStaysHidden)
{
    MenuStage stage(twoMenus, Stage::Scene);
    auto* bar = stage.find<KsMenuBar>("bar");
    const auto added = [&](const char* label) {
        auto* popup = new KsMenuPopup;
        popup->label = label;
        popup->addChild(button("a"));
        bar->addChild(popup);
        return popup;
    };
    stage.dialog->minimized = true;
    KsMenuPopup* first = added("First");
    EXPECT_FALSE(stage.isDrawn(first)) << "the panel is a strip";
    stage.dialog->minimized = false;
    EXPECT_TRUE(stage.isDrawn(first));
    stage.dialog->show3D(0);
    KsMenuPopup* second = added("Second");
    EXPECT_FALSE(stage.isDrawn(second)) << "the panel is not shown";
    stage.dialog->show3D(1);
    EXPECT_TRUE(stage.isDrawn(second));
    EXPECT_FALSE(stage.isDrawn(second->getChild(0)));
}

TEST(MenuTree, anEntryThatIsTakenOutOfAClosedMenuIsSeenWhereItIsPut)
{
    MenuStage stage(twoMenus, Stage::Scene);
    const KsRef<KsMenuItem> entry(stage.find<KsMenuItem>("new"));
    stage.find<KsMenuPopup>("file")->removeChild(entry);
    stage.scene()->addChild(entry.get());
    EXPECT_TRUE(stage.isDrawn(entry));
    stage.scene()->removeChild(stage.scene()->findChild(entry));
    stage.find<KsMenuPopup>("view")->addChild(entry);
    EXPECT_FALSE(stage.isDrawn(entry)) << "in a closed menu again";
    stage.clickOn({"view", "new"});
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
}

TEST(MenuTree, withoutLocalWidgetsABuiltDialogsMenusOpenInAScene)
{
    KsDBImpl::m_noLocalWidgets = true;
    {
        MenuStage stage(twoMenus, Stage::Window);
        EXPECT_EQ(stage.bar(), nullptr);
        stage.scene()->addChild(stage.dialog.get());
        stage.clickOn({"file", "recent", "one"});
        EXPECT_EQ(stage.heard(), Heard({"push:one"}));
    }
    KsDBImpl::m_noLocalWidgets = false;
}

TEST(MenuTree, anAuditorMayLetTheWholeDialogGo)
{
    for (const Stage::Road road : {Stage::Window, Stage::Scene}) {
        MenuStage stage(twoMenus, road);
        stage.listener.then = [&] {
            stage.dialog->removeAuditor(&stage.listener);
            stage.dropDialog();
        };
        if (road == Stage::Window) {
            stage.clickThrough({"File", "New"});
        } else {
            stage.clickOn({"file"});
            stage.clickPart(stage.find<KsFormweave>("new"), "btnSep");
        }
        EXPECT_FALSE(stage.dialog);
    }
}

TEST(MenuTree, anAuditorMayRebuildTheWindowOfItsMenu)
{
    MenuStage stage(twoMenus);
    stage.listener.then = [&] { stage.dialog->addChild(new KsDialogCheckBox); };
    stage.clickThrough({"File", "Recent", "one"});
    stage.clickOn({"file", "recent", "one"});
    stage.listener.then = nullptr;
    EXPECT_EQ(stage.heard(), Heard({"push:one", "push:one"}));
    Stage::settle();
    EXPECT_EQ(stage.textsOf({"File", "Recent"}), QStringList({"one"}));
    stage.clickThrough({"File", "New"});
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
}

TEST(MenuTree, whatIsWrittenIsReadAgain)
{
    KsFormweave::init();
    {
        const std::string text =
            "#Arborium V2.1 ascii\n"
            "TopLevelDialog { MenuBar { auditorID \"bar\" enable FALSE MenuPopup { label \"a\\tb\" "
            "MenuPushButton { accelerator \"Ctrl+A\" } MenuSeparator { } "
            "MenuPushButtonLauncher { label \"l\" TopLevelDialog { label \"inner\" "
            "DialogCheckBox { auditorID \"deep\" } } } "
            "MenuCheckBox { state TRUE onString \"on\" accelerator \"F1\" } "
            "MenuCheckBoxLauncher { TopLevelDialog { } TopLevelDialog { } } "
            "MenuRadioButtons { items [ \"x\", \"y\" ] selectedItem 1 accelerators \"F2\" } "
            "MenuFileSelection { title \"t\" filter [ \"*.a\", \"A\" ] defaultFilter 1 "
            "fileDirectory \"d\" filename \"f\" mode SAVE } "
            "MenuPopup { MenuPopup { MenuPushButton { label \"deepest\" } } } } } }";
        const auto read = [](const std::string& from) {
            KsInput in;
            in.setBuffer(from.data(), from.size());
            return KsRef<KsSeparator>(KsDB::readAll(&in));
        };
        const KsRef<KsSeparator> first = read(text);
        ASSERT_TRUE(first);
        auto* dialog = static_cast<KsTopLevelDialog*>(first->getChild(0));
        EXPECT_TRUE(dialog->searchForAuditorId("deep")) << "through launchers";
        const std::string once = written(first);
        EXPECT_NE(once.find("mode SAVE"), std::string::npos);
        EXPECT_NE(once.find("deepest"), std::string::npos);
        const KsRef<KsSeparator> second = read(once);
        ASSERT_TRUE(second);
        EXPECT_EQ(written(second), once);
    }
    KsFormweave::finish();
}

TEST(MenuTree, aSceneWritesWhatItRead)
{
    KsFormweave::init();
    std::string before;
    {
        KsInput in;
        in.setBuffer(twoMenus, strlen(twoMenus));
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        before = written(root->getChild(0));
    }
    KsFormweave::finish();
    MenuStage stage(twoMenus, Stage::Scene);
    stage.clickOn({"file", "recent"});
    EXPECT_EQ(written(stage.dialog), before);
}

TEST(MenuTree, aCopyOfAMenuIsUsedLikeTheOriginal)
{
    MenuStage stage(twoMenus, Stage::Scene);
    stage.clickOn({"file"});
    const KsRef<KsNode> copied(stage.dialog->copy());
    auto* dialog = ksCast<KsTopLevelDialog>(copied.get());
    ASSERT_TRUE(dialog);
    dialog->position3D = KbVec3f(450, 50, 0);
    dialog->addAuditor(&stage.listener);
    stage.scene()->addChild(dialog);
    for (const char* id : {"file", "new"})
        stage.clickPart(dialog->searchForAuditorId(id), "geomSwitch");
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
    dialog->removeAuditor(&stage.listener);
    stage.scene()->removeChild(stage.scene()->findChild(dialog));
}

namespace {

/// Where everything of the menus is drawn, with those menus open.
std::vector<std::string> places(MenuStage& stage, std::initializer_list<const char*> open)
{
    stage.clickOn(open);
    std::vector<std::string> all;
    for (const char* id : {"file", "new", "view", "grid", "recent", "one"}) {
        const bool isMenu = stage.find<KsMenuPopup>(id);
        for (const char* part : {"itemFrameSep", "labelSep", isMenu ? "frameSep" : "geomSwitch"}) {
            const KbBox3f box = stage.boxOf(id, part);
            std::ostringstream line;
            line << id << " " << part;
            if (!box.isEmpty())
                for (const KbVec3f& corner : {box.getMin(), box.getMax()})
                    line << " " << corner[0] << " " << corner[1] << " " << corner[2];
            all.push_back(line.str());
        }
    }
    stage.closeAll();
    return all;
}

const char* const threeMenus =
    "TopLevelDialog { position3D 100 50 0 width 300 height 100 MenuBar { auditorID \"bar\" "
    "MenuPopup { label \"File\" auditorID \"file\" "
    "MenuPushButton { label \"New\" auditorID \"new\" } } "
    "MenuPopup { label \"View\" auditorID \"view\" "
    "MenuCheckBox { label \"Grid\" auditorID \"grid\" } } "
    "MenuPopup { label \"Recent\" auditorID \"recent\" "
    "MenuPushButton { label \"one\" auditorID \"one\" } } } "
    "DialogCheckBox { auditorID \"box\" onString \"text\" } }";

} // namespace

TEST(MenuTree, aMenuThatIsMovedLooksAsIfItHadAlwaysStoodThere)
{
    MenuStage inColumn(twoMenus, Stage::Scene), inBar(threeMenus, Stage::Scene);
    const auto column = places(inColumn, {"file", "recent"});
    const auto bar = places(inBar, {"recent"});
    const auto move = [](MenuStage& stage, const char* from, const char* to) {
        const KsRef<KsMenuPopup> menu(stage.find<KsMenuPopup>("recent"));
        if (auto* popup = stage.find<KsMenuPopup>(from))
            popup->removeChild(menu);
        else
            stage.find<KsMenuBar>(from)->removeChild(menu);
        if (auto* popup = stage.find<KsMenuPopup>(to))
            popup->addChild(menu);
        else
            stage.find<KsMenuBar>(to)->addChild(menu);
    };
    move(inColumn, "file", "bar");
    EXPECT_EQ(places(inColumn, {"recent"}), bar);
    move(inBar, "bar", "file");
    EXPECT_EQ(places(inBar, {"file", "recent"}), column);
    inBar.clickOn({"file", "recent", "one"});
    EXPECT_EQ(inBar.heard(), Heard({"push:one"}));
    move(inBar, "file", "bar");
    EXPECT_EQ(places(inBar, {"recent"}), bar);
    inBar.clickOn({"recent", "one"});
    EXPECT_EQ(inBar.heard(), Heard({"push:one"}));
}

TEST(MenuTree, aMenuThatStoodAloneLooksLikeOthersInABar)
{
    MenuStage stage(twoMenus, Stage::Scene), inBar(threeMenus, Stage::Scene);
    const KsRef<KsMenuPopup> menu(new KsMenuPopup);
    menu->label = "Recent";
    menu->auditorID = "recent";
    auto* one = new KsMenuPushButton;
    one->label = "one";
    one->auditorID = "one";
    menu->addChild(one);
    stage.scene()->addChild(menu);
    EXPECT_TRUE(stage.isDrawn(menu, "itemFrameSep"));
    stage.scene()->removeChild(stage.scene()->findChild(menu));
    const KsRef<KsMenuItem> other(stage.find<KsMenuItem>("recent"));
    stage.find<KsMenuPopup>("file")->removeChild(other);
    stage.find<KsMenuBar>("bar")->addChild(menu);
    EXPECT_EQ(places(stage, {"recent"}), places(inBar, {"recent"}));
}

TEST(MenuTree, aMenuThatIsMovedKeepsThePartsThatItWasGiven)
{
    MenuStage stage(twoMenus, Stage::Scene);
    const KsRef<KsMenuPopup> menu(stage.find<KsMenuPopup>("recent"));
    const KsRef<KsGroup> given(new KsGroup);
    EXPECT_TRUE(menu->setPart("labelProp", given));
    stage.find<KsMenuPopup>("file")->removeChild(menu);
    stage.find<KsMenuBar>("bar")->addChild(menu);
    EXPECT_EQ(menu->getPart("labelProp", false), given.get());
    EXPECT_TRUE(stage.isDrawn(menu, "labelSep"));
}
