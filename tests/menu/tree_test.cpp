// Menus whose tree changes: entries that come and go, rebuilds, files, dying elements.

#include "Menu.h"

#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/render/KsOffscreenRenderer.h>

namespace {

const char* const twoMenus =
    "TopLevelDialog { position3D 100 50 0 width 300 height 100 MenuBar { auditorID \"bar\" "
    "MenuPopup { label \"File\" auditorID \"file\" "
    "MenuPushButton { label \"New\" auditorID \"new\" } "
    "MenuPopup { label \"Recent\" auditorID \"recent\" "
    "MenuPushButton { label \"one\" auditorID \"one\" } } } "
    "MenuPopup { label \"View\" auditorID \"view\" "
    "MenuCheckBox { label \"Grid\" auditorID \"grid\" } } } "
    "DialogCheckBox { auditorID \"box\" onString \"text\" } }";

KsMenuPushButton* button(const char* label)
{
    auto* made = new KsMenuPushButton;
    made->label = label;
    made->auditorID = label;
    return made;
}

std::string written(KsNode* node)
{
    KsWriteAction action;
    action.apply(node);
    return action.getOutput()->getBuffer();
}

} // namespace

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
        const auto says = [](const char* where, const char* text,
                             const std::function<void()>& act) {
            ExpectedMessages messages(where, text);
            act();
            EXPECT_EQ(messages.messages().size(), 1u) << where;
        };
        KsMenuPopup* noPopup = nullptr;
        KsMenuItem* noItem = nullptr;
        KsTopLevelDialog* noDialog = nullptr;
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
        says("KsMenuPopup::getChild", "Index 2 is out of range 0 - 0", [&] { popup->getChild(2); });
        EXPECT_EQ(popup->getChild(-1), nullptr);
        says("KsMenuPushButtonLauncher::addChild", "NULL child node",
             [&] { launcher->addChild(noDialog); });
        launcher->addChild(new KsTopLevelDialog);
        says("KsMenuPushButtonLauncher::removeChild", "Index 1 is out of range 0 - 0",
             [&] { launcher->removeChild(1); });
        says("KsMenuPushButtonLauncher::getChild", "Index 1 is out of range 0 - 1; Be careful",
             [&] { launcher->getChild(1); });
        EXPECT_EQ(launcher->getChild(-1), nullptr) << "the range test does not refuse it";
        launcher->removeAllChildren();
        EXPECT_EQ(launcher->getNumChildren(), 0);
        EXPECT_EQ(launcher->getChildren()->getLength(), 0) << "the kit's own entry goes too";
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

// In the scene.

TEST(MenuPlace, aPanelThatIsMovedTakesItsOpenMenusAlong)
{
    MenuStage stage(twoMenus, Stage::Scene);
    stage.clickOn({"file", "recent"});
    const KbBox3f entry = stage.boxOf("new"), deep = stage.boxOf("one");
    stage.dialog->position3D = KbVec3f(150, 80, 30);
    const KbVec3f moved(50, -30, 30);
    EXPECT_TRUE(stage.boxOf("new").getMin().equals(entry.getMin() + moved, 1e-2f));
    ASSERT_FALSE(stage.boxOf("one").isEmpty()) << "the inner one stays open";
    EXPECT_TRUE(stage.boxOf("one").getMin().equals(deep.getMin() + moved, 1e-2f));
}

TEST(MenuPlace, worksOnAPanelThatIsScaledAndTurned)
{
    MenuStage stage(twoMenus, Stage::Scene);
    auto* group = new KsSeparator;
    auto* transform = new KsTransform;
    transform->translation = KbVec3f(250, -100, 0);
    transform->scaleFactor = KbVec3f(1.3f, 1.3f, 1.3f);
    transform->rotation = KbRotation(KbVec3f(0.3f, 1, 0.4f), 0.5f);
    group->addChild(transform);
    stage.scene()->addChild(group);
    const KsRef<KsTopLevelDialog> dialog(stage.dialog);
    stage.scene()->removeChild(1);
    group->addChild(dialog.get());
    stage.draw();
    stage.clickPart(stage.find<KsFormweave>("file"), "labelSep");
    stage.clickPart(stage.find<KsFormweave>("recent"), "labelSep");
    EXPECT_TRUE(stage.isDrawn("one"));
    stage.clickPart(stage.find<KsFormweave>("one"), "labelSep");
    EXPECT_EQ(stage.heard(), Heard({"push:one"}));
    EXPECT_FALSE(stage.isDrawn("one"));
}

TEST(MenuPlace, eachEntryIsPickedWhereItIsDrawnAndNowhereElse)
{
    MenuStage stage("TopLevelDialog { position3D 100 50 0 width 300 height 160 MenuBar { "
                    "MenuPopup { label \"M\" auditorID \"m\" MenuPushButton { label \"first\" "
                    "auditorID \"0\" } MenuPushButton { label \"the widest of all\" auditorID "
                    "\"1\" } MenuPushButton { label \"last\" auditorID \"2\" } } } }",
                    Stage::Scene);
    for (int i = 0; i < 3; ++i) {
        const std::string id = std::to_string(i);
        stage.clickOn({"m"});
        const KbBox3f box = stage.boxOf(id.c_str(), "itemFrameSep");
        const float x[] = {box.getMin()[0] + 1, box.getMax()[0] - 1};
        const float y[] = {box.getMin()[1] + 1, box.getMax()[1] - 1};
        for (float px : x) {
            for (float py : y) {
                if (!stage.isDrawn(id.c_str())) stage.clickOn({"m"});
                stage.click(KbVec2f(px, py + Stage::viewHeight));
                EXPECT_EQ(stage.heard(), Heard({"push:" + id})) << px << ' ' << py;
            }
        }
        stage.clickOn({"m"});
        for (float px : {box.getMin()[0] - 2, box.getMax()[0] + 2}) {
            if (!stage.isDrawn(id.c_str())) stage.clickOn({"m"});
            stage.click(KbVec2f(px, box.getCenter()[1] + Stage::viewHeight));
            EXPECT_EQ(stage.heard(), Heard());
        }
    }
}

TEST(MenuPlace, aPopupAloneInASceneOpensAndClosesByAPressElsewhere)
{
    Stage stage("TopLevelDialog { }", Stage::Scene);
    auto* popup = new KsMenuPopup;
    popup->label = "Alone";
    popup->addChild(button("a"));
    auto* inner = new KsMenuPopup;
    inner->label = "Inner";
    inner->addChild(button("b"));
    popup->addChild(inner);
    MenuListener listener;
    popup->addAuditor(&listener);
    auto* place = new KsTransform;
    place->translation = KbVec3f(400, -200, 0);
    auto* group = new KsSeparator;
    group->addChild(place);
    group->addChild(popup);
    stage.scene()->addChild(group);
    stage.clickPart(popup, "frameSep");
    stage.clickPart(popup->getChild(0), "btnSep");
    EXPECT_EQ(listener.take(), Heard({"push:a"}));
    EXPECT_TRUE(popup->showsChildren3D()) << "there is no bar whose menus close";
    stage.clickPart(inner, "frameSep");
    EXPECT_TRUE(inner->showsChildren3D());
    stage.click(KbVec2f(Stage::viewWidth - 1, 1));
    EXPECT_FALSE(popup->showsChildren3D());
    EXPECT_FALSE(inner->showsChildren3D());
    popup->removeAuditor(&listener);
}

TEST(MenuPlace, aBarAloneInASceneIsAsWideAsItsTitles)
{
    Stage stage("TopLevelDialog { }", Stage::Scene);
    auto* bar = new KsMenuBar;
    for (const char* label : {"One", "Two"}) {
        auto* popup = new KsMenuPopup;
        popup->label = label;
        popup->addChild(button(label));
        bar->addChild(popup);
    }
    auto* place = new KsTransform;
    place->translation = KbVec3f(400, -200, 0);
    auto* group = new KsSeparator;
    group->addChild(place);
    group->addChild(bar);
    stage.scene()->addChild(group);
    stage.draw();
    const int titles = bar->getChild(0)->getItemSize()[0] + bar->getChild(1)->getItemSize()[0];
    EXPECT_NEAR(stage.boxOf(bar, "frameSep").getSize()[0], titles + 2 + 1, 1e-3);
    EXPECT_NEAR(stage.boxOf(bar, "frameSep").getSize()[1], 20, 1e-3);
    stage.clickPart(bar->getChild(1), "frameSep");
    EXPECT_TRUE(bar->getChild(1)->showsChildren3D());
}

TEST(MenuPlace, aSwapOfSkinsLeavesAnOpenMenuInPlace)
{
    KsFormweave::init();
    KsFormweave::setSkinsDirectories(FORMWEAVE_SKIN_DIR);
    KsFormweave::setSkin("default");
    {
        MenuStage stage(twoMenus, Stage::Scene);
        stage.clickOn({"file", "recent"});
        const float panel = stage.boxOf("box").getMax()[2];
        KsFormweave::setSkin("dark");
        for (const char* id : {"new", "one"}) {
            ASSERT_TRUE(stage.isDrawn(id)) << id;
            EXPECT_GE(stage.boxOf(id).getMin()[2], stage.boxOf("box").getMax()[2] - 1e-3) << id;
        }
        EXPECT_LT(stage.boxOf("box").getMax()[2], panel) << "the dark plates are thinner";
        stage.clickOn({"one"});
        EXPECT_EQ(stage.heard(), Heard({"push:one"}));
    }
    KsFormweave::finish();
}
