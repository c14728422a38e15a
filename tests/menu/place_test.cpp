// Where menus stand in a scene: on panels of all kinds, and alone.

#include "Menu.h"

#include <arborium/nodes/KsTransform.h>

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
