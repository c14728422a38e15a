// Menus by the keyboard of a window.

#include "Menu.h"

#include <QTimer>

namespace {

const char* const keyed =
    "TopLevelDialog { MenuBar { MenuPopup { label \"&File\" auditorID \"file\" "
    "MenuPushButton { label \"&New\" auditorID \"new\" accelerator \"Ctrl+N\" } "
    "MenuCheckBox { label \"Grid\" auditorID \"grid\" accelerator \"SHIFT+ctrl+g\" } "
    "MenuRadioButtons { auditorID \"radio\" items [ \"one\", \"two\", \"three\" ] "
    "  accelerators [ \"F1\", \"Alt+F2\" ] } "
    "MenuPopup { label \"Deep\" MenuPopup { label \"Deeper\" "
    "  MenuPushButton { label \"Deepest\" auditorID \"deepest\" accelerator \"Ctl+Alt+D\" } } } } "
    "} DialogEditText { auditorID \"edit\" label \"Text\" } }";

class Keys : public testing::Test {
protected:
    Keys() : stage(keyed, Stage::Window), window(stage.dialog->getBaseWidget()) {}
    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(window)); }
    Heard afterKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : window, key, modifiers);
        return stage.heard();
    }
    MenuStage stage;
    QWidget* window;
};

} // namespace

TEST_F(Keys, acceleratorsOfEachKindOfEntryFire)
{
    EXPECT_EQ(afterKey(Qt::Key_N, Qt::ControlModifier), Heard({"push:new"}));
    EXPECT_EQ(afterKey(Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier),
              Heard({"check:grid on"}));
    EXPECT_EQ(afterKey(Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier),
              Heard({"check:grid off"}));
    EXPECT_EQ(afterKey(Qt::Key_G, Qt::ControlModifier), Heard());
    EXPECT_EQ(afterKey(Qt::Key_F2, Qt::AltModifier), Heard({"radio:radio 1"}));
    EXPECT_TRUE(stage.action({"&File", "two"})->isChecked());
    EXPECT_EQ(afterKey(Qt::Key_F1), Heard({"radio:radio 0"}));
    EXPECT_EQ(afterKey(Qt::Key_D, Qt::ControlModifier | Qt::AltModifier), Heard({"push:deepest"}));
}

TEST_F(Keys, acceleratorsFireWhileAFieldOfTheFormHasTheFocus)
{
    auto* edit = stage.find<KsDialogEditText>("edit");
    edit->setFocus();
    QWidget* focus = QApplication::focusWidget();
    ASSERT_TRUE(focus && focus != window);
    EXPECT_EQ(afterKey(Qt::Key_N, Qt::ControlModifier), Heard({"push:new"}));
    EXPECT_EQ(QApplication::focusWidget(), focus);
}

TEST_F(Keys, acceleratorsFireAfterTheWindowWasRebuilt)
{
    stage.dialog->addChild(new KsDialogCheckBox);
    Stage::settle();
    EXPECT_EQ(afterKey(Qt::Key_N, Qt::ControlModifier), Heard({"push:new"})) << "and once";
    EXPECT_EQ(afterKey(Qt::Key_D, Qt::ControlModifier | Qt::AltModifier), Heard({"push:deepest"}));
}

TEST_F(Keys, anAcceleratorIsTakenAwayAndGivenToAnother)
{
    stage.find<KsMenuPushButton>("new")->accelerator = "";
    EXPECT_EQ(afterKey(Qt::Key_N, Qt::ControlModifier), Heard());
    stage.find<KsMenuCheckBox>("grid")->accelerator = "Ctrl+N";
    EXPECT_EQ(afterKey(Qt::Key_N, Qt::ControlModifier), Heard({"check:grid on"}));
    stage.find<KsMenuPopup>("file")->removeChild(stage.find<KsMenuItem>("grid"));
    EXPECT_EQ(afterKey(Qt::Key_N, Qt::ControlModifier), Heard()) << "it went with its entry";
}

TEST_F(Keys, aMenuIsOpenedAndUsedByItsLetters)
{
    QTest::keyClick(window, Qt::Key_F, Qt::AltModifier);
    QMenu* file = stage.action({"&File"})->menu();
    ASSERT_TRUE(QTest::qWaitFor([=] { return file->isVisible(); }, 2000));
    QTest::keyClick(file, Qt::Key_N);
    EXPECT_EQ(stage.heard(), Heard({"push:new"}));
    EXPECT_FALSE(file->isVisible());
    QTest::keyClick(window, Qt::Key_F, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([=] { return file->isVisible(); }, 2000));
    QTest::keyClick(file, Qt::Key_Down);
    if (file->activeAction() == file->actions()[0]) QTest::keyClick(file, Qt::Key_Down);
    EXPECT_EQ(file->activeAction(), file->actions()[1]);
    QTest::keyClick(file, Qt::Key_Return);
    EXPECT_EQ(stage.heard(), Heard({"check:grid on"}));
}
