// Entries that open dialogs.

#include "Menu.h"

namespace {

const char* const launchers =
    "TopLevelDialog { position3D 100 50 0 width 200 height 60 MenuBar { MenuPopup { label \"M\" "
    "auditorID \"m\" "
    "MenuPushButtonLauncher { label \"Open\" auditorID \"open\" "
    "  TopLevelDialog { label \"First\" auditorID \"first\" position3D 400 50 0 "
    "    DialogCheckBox { auditorID \"a\" onString \"text\" } } "
    "  TopLevelDialog { label \"Second\" auditorID \"second\" position3D 400 300 0 } } "
    "MenuCheckBoxLauncher { label \"Show\" auditorID \"show\" "
    "  TopLevelDialog { label \"Third\" auditorID \"third\" position3D 100 300 0 "
    "    DialogCheckBox { auditorID \"c\" } } } } } }";

bool isOpen(const KsTopLevelDialog* dialog)
{
    return dialog->getBaseWidget() && dialog->getBaseWidget()->isVisible();
}

class LauncherStage : public MenuStage {
public:
    using MenuStage::MenuStage;
    ~LauncherStage()
    {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (dialog && window != dialog->getBaseWidget() &&
                window->objectName() == "KsTopLevelDialog")
                delete window;
        }
    }
};

} // namespace

TEST(MenuLauncher, showsItsDialogsBehindTheAuditors)
{
    LauncherStage stage(launchers, Stage::Window);
    auto* first = stage.find<KsTopLevelDialog>("first");
    auto* second = stage.find<KsTopLevelDialog>("second");
    stage.listener.then = [&] { EXPECT_FALSE(isOpen(first)) << "the auditors come first"; };
    stage.clickThrough({"M", "Open"});
    stage.listener.then = nullptr;
    EXPECT_EQ(stage.heard(), Heard({"push:open"}));
    EXPECT_TRUE(isOpen(first));
    EXPECT_TRUE(isOpen(second));
    EXPECT_EQ(first->getParentElement(), stage.find<KsFormweave>("open"));
    const QWidget* window = first->getBaseWidget();
    first->hide();
    stage.clickThrough({"M", "Open"});
    EXPECT_TRUE(isOpen(first));
    EXPECT_EQ(first->getBaseWidget(), window) << "shown, not built again";
}

TEST(MenuLauncher, aCheckBoxShowsAndHidesThem)
{
    LauncherStage stage(launchers, Stage::Window);
    auto* third = stage.find<KsTopLevelDialog>("third");
    EXPECT_EQ(third->getBaseWidget(), nullptr) << "nothing is built before a pick";
    stage.clickThrough({"M", "Show"});
    EXPECT_TRUE(isOpen(third));
    stage.clickThrough({"M", "Show"});
    EXPECT_FALSE(isOpen(third));
    EXPECT_EQ(stage.heard(), Heard({"check:show on", "check:show off"}));
}

TEST(MenuLauncher, inASceneTheDialogsAppearAtThePressAndTheMenuStaysOpen)
{
    LauncherStage stage(launchers, Stage::Scene);
    EXPECT_FALSE(stage.isDrawn("first"));
    stage.clickOn({"m"});
    const KbVec2f place = stage.placeOf(stage.find<KsFormweave>("open"), "btnSep");
    stage.press(place);
    EXPECT_TRUE(stage.isDrawn("first"));
    EXPECT_TRUE(stage.isDrawn("second"));
    EXPECT_EQ(Stage::shown(stage.find<KsFormweave>("open"), "btnSwtch"), 0);
    stage.release(place);
    EXPECT_TRUE(stage.isDrawn("open"));
    EXPECT_EQ(stage.heard(), Heard());
    auto* box = stage.find<KsDialogCheckBox>("a");
    stage.clickPart(box, "stateSep");
    EXPECT_TRUE(box->state);
    EXPECT_FALSE(stage.isDrawn("open")) << "a press in the dialog is elsewhere";
    EXPECT_TRUE(stage.isDrawn("first")) << "the dialog outlives the menu";
    EXPECT_EQ(stage.heard(), Heard()) << "a dialog reports to its own auditors";
}

TEST(MenuLauncher, aPickInASceneDoesNotReachTheDialogsOfACheckBox)
{
    LauncherStage stage(launchers, Stage::Scene);
    EXPECT_FALSE(stage.isDrawn("third"));
    stage.clickOn({"m", "show"});
    EXPECT_EQ(stage.heard(), Heard({"check:show on"}));
    EXPECT_FALSE(stage.isDrawn("third"));
}

TEST(MenuLauncher, elementsOfItsDialogsAreFound)
{
    LauncherStage stage(launchers, Stage::Window);
    EXPECT_TRUE(stage.find<KsDialogCheckBox>("a"));
    EXPECT_TRUE(stage.find<KsDialogCheckBox>("c"));
    auto* launcher = stage.find<KsMenuPushButtonLauncher>("open");
    EXPECT_EQ(launcher->searchForAuditorId("second"), launcher->getChild(1));
    EXPECT_EQ(launcher->searchForAuditorId("open"), nullptr);
}

TEST(MenuLauncher, aDialogThatIsTakenOutIsHidden)
{
    LauncherStage stage(launchers, Stage::Window);
    stage.clickThrough({"M", "Open"});
    auto* launcher = stage.find<KsMenuPushButtonLauncher>("open");
    const KsRef<KsTopLevelDialog> first(launcher->getChild(0));
    launcher->removeChild(0);
    EXPECT_FALSE(isOpen(first));
    EXPECT_EQ(launcher->getNumChildren(), 1);
    launcher->addChild(first);
    stage.clickThrough({"M", "Open"});
    EXPECT_TRUE(isOpen(first));
}
