// Menus in a window and in a scene: opened, used and closed.

#include "Menu.h"

namespace {

const char* const editor =
    "TopLevelDialog { label \"Editor\" position3D 100 50 0 width 300 height 160 "
    "MenuBar { auditorID \"bar\" "
    "MenuPopup { label \"File\" auditorID \"file\" "
    "  MenuPushButton { label \"New\" auditorID \"new\" accelerator \"Ctrl+N\" } "
    "  MenuPopup { label \"Recent\" auditorID \"recent\" "
    "    MenuPushButton { label \"one\" auditorID \"one\" } "
    "    MenuPopup { label \"Older\" auditorID \"older\" "
    "      MenuPushButton { label \"two\" auditorID \"two\" } "
    "      MenuPopup { label \"Oldest\" auditorID \"oldest\" "
    "        MenuPushButton { label \"three\" auditorID \"three\" } } } } "
    "  MenuPopup { label \"Other\" auditorID \"other\" "
    "    MenuPushButton { label \"four\" auditorID \"four\" } } "
    "  MenuSeparator { auditorID \"rule\" } "
    "  MenuPushButton { label \"Save\" auditorID \"save\" enable FALSE } } "
    "MenuPopup { label \"View\" auditorID \"view\" "
    "  MenuCheckBox { label \"Show\" onString \"Hide\" auditorID \"show\" accelerator "
    "\"shift ctrl g\" } } } "
    "DialogCheckBox { auditorID \"box\" label \"Box\" onString \"a long text behind the menu\" } }";

} // namespace

TEST(Menu, standsInTheWindowAsQtMenusWithTheirActionsInOrder)
{
    MenuStage stage(editor, Stage::Window);
    EXPECT_EQ(stage.textsOf({}), QStringList({"File", "View"}));
    EXPECT_EQ(stage.textsOf({"File"}), QStringList({"New", "Recent", "Other", "-", "Save"}));
    EXPECT_EQ(stage.textsOf({"File", "Recent", "Older"}), QStringList({"two", "Oldest"}));
    EXPECT_EQ(stage.textsOf({"View"}), QStringList({"Show"}));
    EXPECT_FALSE(stage.action({"File", "Save"})->isEnabled());
    EXPECT_EQ(stage.action({"File", "New"})->shortcut(), QKeySequence("Ctrl+N"));
    EXPECT_TRUE(stage.action({"View", "Show"})->isCheckable());
}

TEST(Menu, isUsedByTheMouseInItsWindow)
{
    MenuStage stage(editor, Stage::Window);
    stage.clickThrough({"File", "New"});
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
    stage.clickThrough({"File", "Save"});
    EXPECT_EQ(stage.heard(), Heard());
    stage.bar()->actions()[0]->menu()->hide();
    stage.clickThrough({"View", "Show"});
    EXPECT_EQ(stage.heard(), Heard({"check:show on"}));
    EXPECT_TRUE(stage.action({"View", "Hide"}));
    EXPECT_TRUE(stage.action({"View", "Hide"})->isChecked());
}

TEST(Menu, acceleratorsFireInTheWindow)
{
    MenuStage stage(editor, Stage::Window);
    QWidget* window = stage.dialog->getBaseWidget();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
    stage.find<KsMenuPushButton>("new")->accelerator = "Alt+F2";
    QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(stage.heard(), Heard());
    QTest::keyClick(window, Qt::Key_F2, Qt::AltModifier);
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
}

TEST(Menu, opensInASceneAndIsUsedThere)
{
    MenuStage stage(editor, Stage::Scene);
    EXPECT_TRUE(stage.isDrawn("file"));
    EXPECT_FALSE(stage.isDrawn("new"));
    stage.clickOn({"file"});
    EXPECT_TRUE(stage.isDrawn("new"));
    EXPECT_TRUE(stage.isDrawn("recent"));
    EXPECT_FALSE(stage.isDrawn("one"));
    EXPECT_EQ(Stage::shown(stage.find<KsMenuPopup>("file"), "frameSwitch"), 1);
    stage.clickOn({"new"});
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
    EXPECT_FALSE(stage.isDrawn("new")) << "a pick closes the menu";
    EXPECT_EQ(Stage::shown(stage.find<KsMenuPopup>("file"), "frameSwitch"), 0);
    stage.clickOn({"view", "show"});
    EXPECT_EQ(stage.heard(), Heard({"check:show on"}));
    EXPECT_FALSE(stage.isDrawn("show"));
}

TEST(Menu, opensBesideItsParentAtEachLevel)
{
    MenuStage stage(editor, Stage::Scene);
    stage.clickOn({"file", "recent", "older", "oldest"});
    const char* levels[] = {"file", "recent", "older", "oldest"};
    const char* first[] = {"new", "one", "two", "three"};
    for (int i = 0; i < 4; ++i) {
        const KbBox3f title = stage.boxOf(levels[i]);
        const KbBox3f entry = stage.boxOf(first[i], "itemFrameSep");
        ASSERT_FALSE(entry.isEmpty()) << first[i];
        if (i == 0) {
            EXPECT_NEAR(entry.getMin()[0], title.getMin()[0], 1.5);
            EXPECT_NEAR(entry.getMax()[1], title.getMin()[1], 1.5) << "below the title";
        } else {
            EXPECT_NEAR(entry.getMin()[0], title.getMax()[0], 1) << "right of the entry";
            EXPECT_NEAR(entry.getMax()[1], title.getMax()[1], 0.1) << "at its upper edge";
        }
    }
    stage.clickOn({"three"});
    EXPECT_EQ(stage.heard(), Heard({"push:three"}));
    for (const char* id : first) EXPECT_FALSE(stage.isDrawn(id)) << id;
}

TEST(Menu, standsInFrontOfItsPanel)
{
    MenuStage stage(editor, Stage::Scene);
    const float panel = stage.draw().getMax()[2];
    stage.clickOn({"file", "recent"});
    for (const char* id : {"new", "recent", "rule", "save", "one", "older"})
        EXPECT_GE(stage.boxOf(id).getMin()[2], panel - 1e-3) << id;
}

TEST(Menu, closesByAPressElsewhere)
{
    MenuStage stage(editor, Stage::Scene);
    auto* box = stage.find<KsDialogCheckBox>("box");
    stage.clickOn({"file", "recent", "older"});
    stage.click(KbVec2f(Stage::viewWidth - 1, 1));
    for (const char* id : {"new", "one", "two"})
        EXPECT_FALSE(stage.isDrawn(id)) << "the sky " << id;
    stage.clickOn({"file", "recent"});
    stage.clickPart(box, "onOffStringSep");
    EXPECT_FALSE(stage.isDrawn("new")) << "a control";
    EXPECT_TRUE(box->state);
    stage.clickOn({"file"});
    stage.click(stage.placeOf(stage.dialog, "labelSep"));
    EXPECT_FALSE(stage.isDrawn("new")) << "the panel";
    stage.clickOn({"file", "view"});
    EXPECT_FALSE(stage.isDrawn("new")) << "another menu of the bar";
    EXPECT_TRUE(stage.isDrawn("show"));
    stage.clickOn({"view"});
    EXPECT_FALSE(stage.isDrawn("show")) << "its own title";
    stage.heard();
}

TEST(Menu, isTheActiveElementAsLongAsItIsOpen)
{
    MenuStage stage(editor, Stage::Scene);
    stage.clickOn({"file"});
    EXPECT_EQ(Active::m_lastActive, stage.find<KsFormweave>("file"));
    stage.clickOn({"recent"});
    EXPECT_EQ(Active::m_lastActive, stage.find<KsFormweave>("file"));
    stage.clickOn({"recent"});
    EXPECT_FALSE(stage.isDrawn("one"));
    EXPECT_EQ(Active::m_lastActive, stage.find<KsFormweave>("file")) << "an inner one only closes";
    stage.clickOn({"file"});
    EXPECT_EQ(Active::m_lastActive, nullptr) << "its title closes and deactivates it";
    EXPECT_FALSE(stage.isDrawn("new"));
}

TEST(Menu, closingAMenuClosesThoseInItFirst)
{
    MenuStage stage(editor, Stage::Scene);
    stage.clickOn({"file", "recent", "older", "oldest"});
    stage.clickOn({"recent"});
    for (const char* id : {"recent", "older", "oldest"})
        EXPECT_FALSE(stage.find<KsMenuPopup>(id)->showsChildren3D()) << id;
    stage.clickOn({"recent"});
    EXPECT_TRUE(stage.isDrawn("older"));
    EXPECT_FALSE(stage.isDrawn("two")) << "it opens with its menus closed";
}

TEST(Menu, allEntriesOfAColumnAreAsWideAsTheWidest)
{
    MenuStage stage(editor, Stage::Scene);
    stage.clickOn({"file"});
    int widest = 0;
    for (const char* id : {"new", "recent", "other", "rule", "save"})
        widest = std::max(widest, stage.find<KsMenuItem>(id)->getItemInitSize()[0]);
    EXPECT_GT(widest, stage.find<KsMenuItem>("new")->getItemInitSize()[0]);
    for (const char* id : {"new", "recent", "other", "rule", "save"}) {
        EXPECT_EQ(stage.find<KsMenuItem>(id)->getItemSize()[0], widest) << id;
        EXPECT_NEAR(stage.boxOf(id, "itemFrameSep").getSize()[0], widest, 1e-3) << id;
    }
}

TEST(Menu, aSecondMenuOfAColumnClosesTheFirst)
{
    MenuStage stage(editor, Stage::Scene);
    stage.clickOn({"file", "recent", "older"});
    EXPECT_TRUE(stage.isDrawn("two"));
    stage.clickOn({"other"});
    EXPECT_TRUE(stage.isDrawn("four"));
    EXPECT_FALSE(stage.isDrawn("one"));
    EXPECT_FALSE(stage.isDrawn("two"));
    EXPECT_TRUE(stage.isDrawn("new"));
    stage.clickOn({"other"});
    EXPECT_FALSE(stage.isDrawn("four"));
    EXPECT_TRUE(stage.isDrawn("new")) << "an open submenu only closes itself";
}

TEST(Menu, nothingOfAClosedMenuCanBePicked)
{
    MenuStage stage(editor, Stage::Scene);
    stage.clickOn({"file", "recent"});
    std::vector<KbVec2f> places;
    for (const char* id : {"new", "one", "older"})
        places.push_back(stage.placeOf(stage.find<KsFormweave>(id), "itemFrameSep"));
    stage.click(KbVec2f(Stage::viewWidth - 1, 1));
    for (const KbVec2f& place : places) stage.click(place);
    for (const std::string& each : stage.heard()) EXPECT_EQ(each, "box:box");
}
