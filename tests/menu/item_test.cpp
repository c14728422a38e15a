// What all entries share: accelerators, titles, sizes, the way up to the bar.

#include "Menu.h"

#include <arborium/base/KsLimits.h>

#include <random>

namespace {

class Texts : public KsMenuItem {
public:
    using KsMenuItem::buildTitleForMotifMenu;
    using KsMenuItem::getAccelerator;
    static std::string key(const char* accelerator)
    {
        return getKeyCombination(accelerator, nullptr, 0).toUtf8();
    }
    static std::string key(const KbString& accelerator)
    {
        return getKeyCombination(accelerator, nullptr, 0).toUtf8();
    }
};

} // namespace

TEST(Accelerator, modifiersComeOutInOneOrderHoweverTheyAreWritten)
{
    EXPECT_EQ(Texts::key("Ctrl+Shift+S"), "Shift+Ctrl+S");
    EXPECT_EQ(Texts::key("CTRL+SHIFT+S"), "Shift+Ctrl+S");
    EXPECT_EQ(Texts::key("shift ctrl S"), "Shift+Ctrl+  S") << "blanks stay in the key";
    EXPECT_EQ(Texts::key("Alt+Shift+F4"), "Alt+Shift+F4");
    EXPECT_EQ(Texts::key("Ctrl+Meta+Alt+Shift+A"), "Alt+Meta+Shift+Ctrl+A");
}

TEST(Accelerator, knowsCtlButNotCmdNorMetaInSmallLetters)
{
    EXPECT_EQ(Texts::key("Ctl+X"), "Ctrl+X");
    EXPECT_EQ(Texts::key("Cmd+X"), "CmdX");
    EXPECT_EQ(Texts::key("meta+X"), "metaX");
    EXPECT_EQ(Texts::key("ctl+X"), "ctlX");
}

TEST(Accelerator, aModifierTwiceIsAnotherOne)
{
    EXPECT_EQ(Texts::key("Ctrl+Ctrl+X"), "Shift+X");
    EXPECT_EQ(Texts::key("Ctrl+Shift+Ctrl+X"), "Meta+X");
    EXPECT_EQ(Texts::key("Alt+Alt+Meta+X"), "Alt+Meta+Shift+X") << "20 - 8 - 4 - 2 leaves 6";
}

TEST(Accelerator, theRestIsTheKeyAsItStands)
{
    EXPECT_EQ(Texts::key(""), "");
    EXPECT_EQ(Texts::key("Ctrl+"), "Ctrl+");
    EXPECT_EQ(Texts::key("Ctrl++"), "Ctrl+") << "a plus cannot be the key";
    EXPECT_EQ(Texts::key("CtCtrlrl+A"), "Shift+A") << "what a cut joins is looked at again";
    EXPECT_EQ(Texts::key("Altitude"), "Alt+itude");
    EXPECT_EQ(Texts::key(KbString::fromUtf8("Ctrl+\xD0\x96")), "Ctrl+\xD0\x96");
}

TEST(Accelerator, anyTextIsTakenQuickly)
{
    std::mt19937 random(20260101);
    const char* const pieces[] = {"Ctrl", "CTRL", "ctrl", "Ctl",     "Shift", "Meta",
                                  "Alt",  "alt",  "+",    " ",       "C",     "t",
                                  "\t",   "&",    "F1",   "\xC3\xA9"};
    const Library library;
    const KsRef<KsMenuPushButton> button(new KsMenuPushButton);
    button->buildMenu(nullptr, 1, -1);
    for (int i = 0; i < 500; ++i) {
        std::string text;
        for (unsigned n = random() % 12; n > 0; --n) text += pieces[random() % std::size(pieces)];
        button->accelerator = KbString::fromUtf8(text);
        EXPECT_EQ(Texts::key(KbString::fromUtf8(text)).find('\0'), std::string::npos);
    }
    std::string many;
    for (int i = 0; i < 100000; ++i) many += "Ctrl";
    button->accelerator = many.c_str();
}

TEST(MenuTitle, isCutAtItsTab)
{
    EXPECT_EQ(Texts::getAccelerator("Open\tCtrl+O"), "Ctrl+O");
    EXPECT_EQ(Texts::getAccelerator("Open\ta\tb"), "a\tb");
    EXPECT_EQ(Texts::getAccelerator("Open"), "");
    KbString plain;
    EXPECT_EQ(Texts::buildTitleForMotifMenu("&Open\tCtrl+O", plain), 'O');
    EXPECT_EQ(plain, "Open");
    EXPECT_EQ(Texts::buildTitleForMotifMenu("&Save &As", plain), 'A');
    EXPECT_EQ(plain, "Save As");
    EXPECT_EQ(Texts::buildTitleForMotifMenu("a && b", plain), '&');
    EXPECT_EQ(plain, "a & b");
    EXPECT_EQ(Texts::buildTitleForMotifMenu("end&", plain), 0);
    EXPECT_EQ(plain, "end");
    EXPECT_EQ(Texts::buildTitleForMotifMenu("", plain), 0);
    EXPECT_EQ(plain, "");
}

TEST(MenuItem, isEighteenHighAndTakesItsFirstSizeUnlessForced)
{
    const Library library;
    const KsRef<KsMenuPushButton> item(new KsMenuPushButton);
    EXPECT_EQ(item->getItemSize(), KbVec2i32(0, 0));
    item->setItemSize(KbVec2i32(70, 40), 0);
    EXPECT_EQ(item->getItemSize(), KbVec2i32(70, 18));
    item->setItemSize(KbVec2i32(90, 40), 0);
    EXPECT_EQ(item->getItemSize(), KbVec2i32(70, 18));
    item->setItemSize(KbVec2i32(90, 40), 1);
    EXPECT_EQ(item->getItemSize(), KbVec2i32(90, 18));
}

TEST(MenuItem, asksForItsTextAndEight)
{
    const Library library;
    const KsRef<KsMenuPushButton> item(new KsMenuPushButton);
    item->label = "Some text";
    const int text = KsFormweave::getLabelPixelSize("Some text", nullptr)[0];
    EXPECT_EQ(item->getItemInitSize(), KbVec2i32(text + 8, 18));
    const KsRef<KsMenuCheckBox> box(new KsMenuCheckBox);
    box->label = "a";
    box->onString = "Some text";
    EXPECT_EQ(box->getItemInitSize(), KbVec2i32(text + 28, 18));
    const KsRef<KsMenuSeparator> rule(new KsMenuSeparator);
    rule->label = "Some text";
    EXPECT_EQ(rule->getItemInitSize(), KbVec2i32(16, 8));
    const KsRef<KsMenuRadioButtons> radio(new KsMenuRadioButtons);
    EXPECT_EQ(radio->getItemInitSize(), KbVec2i32(28, 0));
    radio->items.set1Value(0, "a");
    radio->items.set1Value(1, "Some text");
    EXPECT_EQ(radio->getItemInitSize(), KbVec2i32(text + 28, 36));
    const KsRef<KsMenuPopup> outer(new KsMenuPopup);
    const KsRef<KsMenuPopup> inner(new KsMenuPopup);
    inner->label = "Some text";
    EXPECT_EQ(inner->getItemInitSize()[0], text + 8);
    outer->addChild(inner);
    EXPECT_EQ(inner->getItemInitSize()[0], text + 28);
}

TEST(MenuItem, findsItsBarAbove)
{
    const Library library;
    const KsRef<KsMenuBar> bar(new KsMenuBar);
    auto* popup = new KsMenuPopup;
    auto* item = new KsMenuPushButton;
    popup->addChild(item);
    const KsRef<KsMenuItem> hold(popup);
    EXPECT_EQ(item->getMenuBar(), nullptr);
    EXPECT_EQ(popup->getMenuBar(), nullptr);
    bar->addChild(popup);
    EXPECT_EQ(item->getMenuBar(), bar.get());
    EXPECT_EQ(popup->getMenuBar(), bar.get());
}

TEST(MenuItem, identifiersOfOneProcessFollowEachOther)
{
    MenuStage stage("TopLevelDialog { MenuBar { MenuPopup { label \"M\" "
                    "MenuPushButton { auditorID \"a\" } "
                    "MenuRadioButtons { auditorID \"b\" items [ \"x\", \"y\", \"z\" ] } "
                    "MenuCheckBox { auditorID \"c\" } } } }",
                    Stage::Window);
    EXPECT_EQ(stage.find<KsMenuItem>("a")->getId(), 1);
    EXPECT_EQ(stage.find<KsMenuItem>("b")->getId(), 2);
    EXPECT_EQ(stage.find<KsMenuItem>("c")->getId(), 5);
}

TEST(MenuItem, aBareOneShowsNothing)
{
    MenuStage stage("TopLevelDialog { MenuBar { MenuPopup { label \"M\" auditorID \"m\" "
                    "MenuItem { auditorID \"bare\" label \"bare\" } "
                    "MenuPushButton { auditorID \"a\" label \"A\" } } } }");
    stage.clickOn({"m"});
    EXPECT_FALSE(stage.isDrawn("bare"));
    stage.find<KsMenuItem>("bare")->label = "other";
    EXPECT_TRUE(stage.isDrawn("a"));
    EXPECT_EQ(stage.textsOf({"M"}), QStringList({"A"}));
}
