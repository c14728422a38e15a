// Menus of sizes and texts that nobody means.

#include "Menu.h"

#include <arborium/base/KsLimits.h>

namespace {

std::string dialog(const std::string& inside)
{
    return "TopLevelDialog { position3D 20 20 0 MenuBar { MenuPopup { label \"M\" auditorID "
           "\"m\" " +
           inside + " } } }";
}

} // namespace

TEST(MenuBadInput, tenThousandEntries)
{
    std::string entries;
    for (int i = 0; i < 10000; ++i) entries += "MenuPushButton { label \"e\" } ";
    MenuStage stage(dialog(entries));
    EXPECT_EQ(stage.textsOf({"M"}).size(), 10000);
    stage.clickOn({"m"});
    auto* menu = stage.find<KsMenuPopup>("m");
    EXPECT_TRUE(menu->showsChildren3D());
    EXPECT_NEAR(stage.boxOf(menu->getChild(9999), "itemFrameSep").getMin()[1],
                stage.boxOf("m").getMin()[1] - 10000 * 18, 5);
    stage.clickPart(menu->getChild(3), "btnSep");
    EXPECT_EQ(stage.heard(), Heard({"push:"}));
}

TEST(MenuBadInput, twoHundredMenusWithinEachOther)
{
    std::string text, end;
    for (int i = 0; i < 200; ++i) {
        text += "MenuPopup { label \"p\" auditorID \"" + std::to_string(i) + "\" ";
        end += "}";
    }
    MenuStage stage(dialog(text + "MenuPushButton { label \"deep\" auditorID \"deep\" }" + end));
    stage.clickOn({"m"});
    for (int i = 0; i < 200; ++i)
        stage.find<KsMenuPopup>(std::to_string(i).c_str())->draggerStartCallback3D();
    EXPECT_TRUE(stage.isDrawn("deep"));
    stage.find<KsMenuPopup>("150")->addChild(new KsMenuPushButton);
    EXPECT_FALSE(stage.isDrawn("deep"));
    QWidget* menu = stage.bar();
    for (int i = 0; i <= 200; ++i) menu = menu->actions()[0]->menu();
    EXPECT_EQ(MenuStage::texts(menu), QStringList({"deep"}));
}

TEST(MenuBadInput, labelsOfAnyKind)
{
    MenuStage stage(dialog("MenuPushButton { auditorID \"a\" } MenuPopup { auditorID \"b\" } "
                           "MenuCheckBox { auditorID \"c\" } MenuRadioButtons { auditorID \"d\" "
                           "items [ \"\", \"\\t&&\\n\", \"x\" ] }"));
    const std::string huge(200000, 'x');
    stage.clickOn({"m"});
    for (const char* id : {"a", "b", "c", "m"}) {
        auto* item = stage.find<KsMenuItem>(id);
        for (const std::string& text :
             {std::string(), std::string("&"), std::string("&&"), std::string("a\tb\tc"),
              std::string("\n\n"), std::string("\xF0\x9F\x90\x9B"), std::string("\x01\x7F"),
              huge}) {
            item->label = KbString::fromUtf8(text);
            stage.draw();
        }
        item->label = "";
    }
    EXPECT_EQ(stage.textsOf({""}).size(), 6);
}

TEST(MenuBadInput, moreRowsThanTheLimitAreNotShown)
{
    const KsLimits limits = KsLimits::current();
    for (int extra : {-1, 0, 1}) {
        KsLimits::current().listItems = 5;
        std::string items;
        for (int i = 0; i < 5 + extra; ++i) items += "\"i\", ";
        MenuStage stage(dialog("MenuRadioButtons { auditorID \"r\" items [ " + items + " ] }"));
        EXPECT_EQ(stage.textsOf({"M"}).size(), std::min(5, 5 + extra));
        stage.clickOn({"m"});
        EXPECT_NEAR(stage.boxOf("r").getSize()[1], 18 * std::min(5, 5 + extra), 0.1);
        KsLimits::current() = limits;
    }
}

TEST(MenuBadInput, aWrongChildIsAnErrorOfTheFile)
{
    KsFormweave::init();
    for (const char* text :
         {"MenuBar { MenuPushButton { } }", "MenuBar { DialogCheckBox { } }",
          "MenuPopup { DialogCheckBox { } }", "MenuPushButtonLauncher { MenuPopup { } }"}) {
        ExpectedMessages messages;
        messages.allow("", "");
        KsInput in;
        in.setBuffer(text, strlen(text));
        EXPECT_EQ(KsDB::readAll(&in), nullptr) << text;
        EXPECT_FALSE(messages.messages().empty()) << text;
    }
    KsFormweave::finish();
}
