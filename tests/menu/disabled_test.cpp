// Entries, menus and bars that are disabled, in both presentations.

#include "Menu.h"

#include <arborium/nodes/KsMaterial.h>

namespace {

const char* const overControls =
    "TopLevelDialog { position3D 100 50 0 width 300 height 160 MenuBar { auditorID \"bar\" "
    "MenuPopup { label \"Menu\" auditorID \"menu\" "
    "  MenuPushButton { label \"Push\" auditorID \"push\" accelerator \"Ctrl+P\" } "
    "  MenuCheckBox { label \"Check\" auditorID \"check\" } "
    "  MenuRadioButtons { auditorID \"radio\" items [ \"one\", \"two\" ] } "
    "  MenuPopup { label \"Inner\" auditorID \"inner\" "
    "    MenuPushButton { label \"Deep\" auditorID \"deep\" } } } "
    "MenuPopup { label \"Other\" auditorID \"other\" "
    "  MenuPushButton { label \"Second\" auditorID \"second\" } } } "
    "DialogCheckBox { onString \"a text that the menu covers\" auditorID \"box\" height 140 } }";

bool isGrey(KsFormweave* element)
{
    auto* geometry = ksCast<KsGroup>(element->getAnyPart("geomSwitch", false));
    auto* material = geometry ? ksCast<KsMaterial>(geometry->getChild(0)) : nullptr;
    EXPECT_TRUE(material);
    return material && material->emissiveColor[0][0] > 0.4f;
}

} // namespace

TEST(DisabledEntry, takesAPressSoThatNothingBehindTheMenuGetsItAndTheMenuStaysOpen)
{
    MenuStage stage(overControls, Stage::Scene);
    for (const char* id : {"push", "check", "radio", "inner"})
        stage.find<KsMenuItem>(id)->enable = false;
    stage.clickOn({"menu"});
    for (const char* id : {"push", "check", "radio", "inner"}) {
        EXPECT_TRUE(isGrey(stage.find<KsFormweave>(id))) << id;
        stage.clickPart(stage.find<KsFormweave>(id), "itemFrameSep");
        stage.clickPart(stage.find<KsFormweave>(id), "labelSep");
        EXPECT_EQ(stage.heard(), Heard()) << id;
        EXPECT_TRUE(stage.isDrawn(id)) << id;
    }
    EXPECT_FALSE(stage.isDrawn("deep"));
    EXPECT_FALSE(stage.find<KsDialogCheckBox>("box")->state);
    EXPECT_FALSE(stage.find<KsMenuCheckBox>("check")->state);
    EXPECT_EQ(stage.find<KsMenuRadioButtons>("radio")->selectedItem, 0);
    stage.find<KsMenuItem>("inner")->enable = true;
    EXPECT_FALSE(isGrey(stage.find<KsFormweave>("inner")));
    stage.clickOn({"inner", "deep"});
    EXPECT_EQ(stage.heard(), Heard({"push:deep"}));
}

TEST(DisabledEntry, thatIsDisabledInTheMiddleOfAPressIsNotPicked)
{
    for (const char* id : {"push", "check", "radio"}) {
        MenuStage stage(overControls, Stage::Scene);
        stage.clickOn({"menu"});
        auto* entry = stage.find<KsMenuItem>(id);
        const KbVec2f place = stage.placeOf(entry, "itemFrameSep");
        stage.press(place);
        entry->enable = false;
        stage.release(place);
        EXPECT_EQ(stage.heard(), Heard()) << id;
        if (std::string(id) == "push") {
            EXPECT_EQ(Stage::shown(entry, "btnSwtch"), 0) << "it springs back";
        }
    }
}

TEST(DisabledEntry, itsAcceleratorIsSilent)
{
    MenuStage stage(overControls, Stage::Window);
    QWidget* window = stage.dialog->getBaseWidget();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    stage.find<KsMenuItem>("push")->enable = false;
    QTest::keyClick(window, Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(stage.heard(), Heard());
    stage.find<KsMenuItem>("push")->enable = true;
    QTest::keyClick(window, Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(stage.heard(), Heard({"push:push"}));
}

TEST(DisabledMenu, doesNotOpenAndClosesIfItIsOpen)
{
    MenuStage stage(overControls);
    auto* menu = stage.find<KsMenuPopup>("menu");
    stage.clickOn({"menu", "inner"});
    menu->enable = false;
    EXPECT_FALSE(stage.isDrawn("push"));
    EXPECT_FALSE(stage.isDrawn("deep"));
    EXPECT_TRUE(isGrey(menu));
    EXPECT_FALSE(stage.action({"Menu"})->isEnabled());
    stage.clickOn({"menu"});
    EXPECT_FALSE(stage.isDrawn("push"));
    stage.clickOn({"other"});
    EXPECT_TRUE(stage.isDrawn("second")) << "the others are not touched";
    menu->enable = true;
    EXPECT_TRUE(stage.action({"Menu"})->isEnabled());
    stage.clickOn({"menu", "push"});
    EXPECT_EQ(stage.heard(), Heard({"push:push"}));
}

TEST(DisabledBar, opensNoMenuInEitherPresentation)
{
    MenuStage stage(overControls);
    auto* bar = stage.find<KsMenuBar>("bar");
    QWidget* window = stage.dialog->getBaseWidget();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    stage.clickOn({"menu"});
    bar->enable = false;
    EXPECT_FALSE(stage.bar()->isEnabled());
    EXPECT_FALSE(stage.isDrawn("push")) << "what was open is closed";
    for (const char* id : {"bar", "menu", "other"})
        EXPECT_TRUE(isGrey(stage.find<KsFormweave>(id))) << id;
    stage.clickOn({"menu", "other"});
    EXPECT_FALSE(stage.isDrawn("push"));
    EXPECT_FALSE(stage.isDrawn("second"));
    QTest::mouseClick(stage.bar(), Qt::LeftButton, Qt::NoModifier,
                      stage.bar()->actionGeometry(stage.action({"Menu"})).center());
    EXPECT_FALSE(stage.action({"Menu"})->menu()->isVisible());
    QTest::keyClick(window, Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(stage.heard(), Heard());
    stage.find<KsMenuPopup>("other")->enable = false;
    bar->enable = true;
    EXPECT_FALSE(isGrey(stage.find<KsFormweave>("menu")));
    EXPECT_TRUE(isGrey(stage.find<KsFormweave>("other"))) << "its own field still says so";
    stage.clickOn({"menu", "push"});
    stage.clickThrough({"Menu", "Push"});
    EXPECT_EQ(stage.heard(), Heard({"push:push", "push:push"}));
}

TEST(DisabledBar, greysTheMenusThatStandOnItOnly)
{
    MenuStage stage("TopLevelDialog { position3D 100 50 0 width 300 height 60 MenuBar { auditorID "
                    "\"bar\" enable FALSE MenuPopup { label \"M\" auditorID \"m\" "
                    "MenuPushButton { label \"P\" auditorID \"p\" } } } }");
    EXPECT_TRUE(isGrey(stage.find<KsFormweave>("bar"))) << "it comes so";
    auto* bar = stage.find<KsMenuBar>("bar");
    auto* late = new KsMenuPopup;
    late->label = "Late";
    late->auditorID = "late";
    bar->addChild(late);
    EXPECT_FALSE(stage.bar()->isEnabled());
    for (const char* id : {"m", "late"}) {
        stage.clickOn({id});
        EXPECT_TRUE(isGrey(stage.find<KsFormweave>(id))) << id;
        EXPECT_FALSE(stage.find<KsMenuPopup>(id)->showsChildren3D()) << id;
    }
    const KsRef<KsMenuPopup> moved(late);
    bar->removeChild(moved);
    const KsRef<KsMenuPopup> column(new KsMenuPopup);
    column->label = "Column";
    column->addChild(moved);
    EXPECT_TRUE(column->enable.getValue());
    moved->buildMenu(nullptr, 0, 0);
    EXPECT_FALSE(isGrey(moved)) << "in another place it is as its own field says";
}
