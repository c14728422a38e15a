// Push buttons, check boxes, radio buttons and separators in menus, in both presentations.

#include "Menu.h"

#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>

namespace {

std::string in(const std::string& entries, const char* fields = "")
{
    return "TopLevelDialog { position3D 100 50 0 width 200 height 60 MenuBar { auditorID \"bar\" "
           "MenuPopup { label \"Menu\" auditorID \"menu\" " +
           std::string(fields) + entries + " } } }";
}

const std::string push = "MenuPushButton { label \"Push\" auditorID \"push\" }";
const std::string check = "MenuCheckBox { label \"Off\" onString \"On\" auditorID \"check\" }";
const std::string radio = "MenuRadioButtons { auditorID \"radio\" items [ \"one\", \"two\", "
                          "\"three\" ] accelerators [ \"Ctrl+1\" ] }";

KbString shownText(KsFormweave* entry)
{
    auto* group = ksCast<KsGroup>(entry->getAnyPart("labelSep", false));
    for (int i = 0; group && i < group->getNumChildren(); ++i)
        if (auto* text = ksCast<KsText3>(group->getChild(i))) return text->string[0];
    return "no text";
}

class OwnPush : public KsMenuPushButtonAuditor {
public:
    void menuPushButton(KsMenuPushButton*) override { ++calls; }
    int calls = 0;
};
class OwnCheck : public KsMenuCheckBoxAuditor {
public:
    void menuCheckBox(KsMenuCheckBox* box) override
    {
        ++calls;
        if (then) then(box);
    }
    int calls = 0;
    std::function<void(KsMenuCheckBox*)> then;
};
class OwnRadio : public KsMenuRadioButtonsAuditor {
public:
    void menuRadioButtons(KsMenuRadioButtons* node) override
    {
        ++calls;
        if (then) then(node);
    }
    int calls = 0;
    std::function<void(KsMenuRadioButtons*)> then;
};

} // namespace

TEST(MenuPushButton, tellsItsOwnAuditorsElseTheNearestMenusElseTheDialogs)
{
    MenuStage stage(in(push));
    stage.clickThrough({"Menu", "Push"});
    EXPECT_EQ(stage.heard(), Heard({"push:push"}));
    MenuListener menu, bar;
    stage.find<KsMenuBar>("bar")->addAuditor(&bar);
    stage.clickOn({"menu", "push"});
    EXPECT_EQ(bar.take(), Heard({"push:push"}));
    stage.find<KsMenuPopup>("menu")->addAuditor(&menu);
    stage.clickThrough({"Menu", "Push"});
    EXPECT_EQ(menu.take(), Heard({"push:push"}));
    OwnPush own;
    stage.find<KsMenuPushButton>("push")->addAuditor(&own);
    stage.clickOn({"menu", "push"});
    stage.clickThrough({"Menu", "Push"});
    EXPECT_EQ(own.calls, 2);
    EXPECT_EQ(menu.take(), Heard());
    EXPECT_EQ(bar.take(), Heard());
    EXPECT_EQ(stage.heard(), Heard());
}

TEST(MenuPushButton, showsThatItIsPressed)
{
    MenuStage stage(in(push), Stage::Scene);
    stage.clickOn({"menu"});
    auto* button = stage.find<KsMenuPushButton>("push");
    const KbVec2f place = stage.placeOf(button, "btnSep");
    EXPECT_EQ(Stage::shown(button, "btnSwtch"), 0);
    stage.press(place);
    EXPECT_EQ(Stage::shown(button, "btnSwtch"), 1);
    EXPECT_EQ(stage.heard(), Heard());
    stage.release(place);
    EXPECT_EQ(Stage::shown(button, "btnSwtch"), 0);
    EXPECT_EQ(stage.heard(), Heard({"push:push"}));
}

TEST(MenuPushButton, itsAcceleratorFollowsTheField)
{
    MenuStage stage(in("MenuPushButton { label \"Push\" auditorID \"push\" accelerator \"F5\" }"),
                    Stage::Window);
    const QAction* action = stage.action({"Menu", "Push"});
    EXPECT_EQ(action->shortcut(), QKeySequence("F5"));
    auto* button = stage.find<KsMenuPushButton>("push");
    button->accelerator = "shift+CTRL+q";
    EXPECT_EQ(action->shortcut(), QKeySequence("Ctrl+Shift+Q"));
    button->accelerator = "Ctrl";
    EXPECT_EQ(action->shortcut(), QKeySequence("Ctrl+"));
    button->accelerator = "";
    EXPECT_TRUE(action->shortcut().isEmpty());
}

TEST(MenuPushButton, anAcceleratorWithoutAWindowIsKeptForIt)
{
    MenuStage stage(in(push), Stage::Scene);
    stage.find<KsMenuPushButton>("push")->accelerator = "Ctrl+P";
    stage.dialog->buildDialog();
    EXPECT_EQ(stage.action({"Menu", "Push"})->shortcut(), QKeySequence("Ctrl+P"));
    delete stage.dialog->getBaseWidget();
}

TEST(MenuPushButton, labelsReachTheMenuAsTheyAreWritten)
{
    MenuStage stage(in(push));
    auto* button = stage.find<KsMenuPushButton>("push");
    for (const char* text : {"&Open", "a && b", "Open\tCtrl+O", "two\nlines", "", "na\xC3\xAFve"}) {
        button->label = KbString::fromUtf8(text);
        EXPECT_EQ(MenuStage::texts(stage.bar()->actions()[0]->menu()),
                  QStringList({QString::fromUtf8(text)}));
        EXPECT_EQ(shownText(button).toUtf8(), text);
        stage.draw();
    }
    button->label = KbString::fromUtf8("\xD0\x96 a");
    EXPECT_EQ(MenuStage::texts(stage.bar()->actions()[0]->menu()), QStringList({"? a"}))
        << "what is not Latin-1 is lost in a window";
    EXPECT_EQ(shownText(button).toUtf8(), "\xD0\x96 a");
}

TEST(MenuEntry, whatIsNotLatin1IsLostInAWindowButInTitlesAndInAScene)
{
    MenuStage stage(in(push + check + radio));
    const KbString wide = KbString::fromUtf8("\xD0\x96 a");
    for (const char* id : {"push", "check", "menu"}) stage.find<KsMenuItem>(id)->label = wide;
    stage.find<KsMenuRadioButtons>("radio")->items.set1Value(0, wide);
    EXPECT_EQ(stage.textsOf({}), QStringList({QString::fromUtf8("\xD0\x96 a")}));
    EXPECT_EQ(MenuStage::texts(stage.bar()->actions()[0]->menu()),
              QStringList({"? a", "? a", "? a", "two", "three"}));
    for (const char* id : {"push", "check", "menu"})
        EXPECT_EQ(shownText(stage.find<KsMenuItem>(id)), wide) << id;
    auto* row = ksCast<KsGroup>(stage.find<KsFormweave>("radio")->getAnyPart("labelSep", false));
    EXPECT_EQ(ksCast<KsText3>(row->getChild(row->getNumChildren() - 1))->string[0], wide);
}

TEST(MenuPushButton, aLongerTextMakesItsColumnWider)
{
    MenuStage stage(in(push + check), Stage::Scene);
    stage.clickOn({"menu"});
    const float before = stage.boxOf("check", "itemFrameSep").getSize()[0];
    stage.find<KsMenuPushButton>("push")->label = "A text that is much longer than before";
    for (const char* id : {"push", "check"}) {
        const KbBox3f frame = stage.boxOf(id, "itemFrameSep");
        EXPECT_GT(frame.getSize()[0], before + 50) << id;
        EXPECT_LE(stage.boxOf(id, "labelSep").getMax()[0], frame.getMax()[0]) << id;
    }
}

TEST(MenuEntry, aDisabledOneIsGreyAndCannotBePicked)
{
    MenuStage stage(in("MenuPushButton { label \"Push\" auditorID \"push\" enable FALSE }" +
                       std::string("MenuCheckBox { label \"Off\" auditorID \"check\" enable FALSE "
                                   "} MenuRadioButtons { auditorID \"radio\" items [ \"a\", \"b\" "
                                   "] enable FALSE }")));
    stage.clickOn({"menu", "push", "check", "radio"});
    for (const char* text : {"Push", "Off", "a", "b"})
        EXPECT_FALSE(stage.action({"Menu", text})->isEnabled()) << text;
    EXPECT_EQ(stage.heard(), Heard());
    for (const char* id : {"push", "check", "radio"}) {
        auto* entry = stage.find<KsMenuItem>(id);
        auto* geometry = ksCast<KsGroup>(entry->getAnyPart("geomSwitch", false));
        auto* material = ksCast<KsMaterial>(geometry->getChild(0));
        ASSERT_TRUE(material) << id;
        EXPECT_NEAR(material->emissiveColor[0][0], 0.5, 1e-6) << id;
        entry->enable = true;
        EXPECT_NEAR(material->emissiveColor[0][0], 0, 1e-6) << id;
    }
    EXPECT_TRUE(stage.action({"Menu", "Push"})->isEnabled());
    stage.clickOn({"push"});
    EXPECT_EQ(stage.heard(), Heard({"push:push"}));
}

TEST(MenuCheckBox, changesItsTextWithItsState)
{
    MenuStage stage(in(check));
    auto* box = stage.find<KsMenuCheckBox>("check");
    stage.clickThrough({"Menu", "Off"});
    EXPECT_TRUE(box->state);
    EXPECT_EQ(stage.heard(), Heard({"check:check on"}));
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"On"}));
    EXPECT_TRUE(stage.action({"Menu", "On"})->isChecked());
    EXPECT_EQ(shownText(box), "On");
    EXPECT_EQ(Stage::shown(box, "chkSwtch"), 1);
    stage.clickOn({"menu", "check"});
    EXPECT_FALSE(box->state);
    EXPECT_EQ(stage.heard(), Heard({"check:check off"}));
    EXPECT_FALSE(stage.action({"Menu", "Off"})->isChecked());
    EXPECT_EQ(shownText(box), "Off");
    EXPECT_FALSE(stage.isDrawn("check")) << "the menu is closed";
}

TEST(MenuCheckBox, aStateThatAProgramSetsIsShownAndNotReported)
{
    MenuStage stage(in(check));
    auto* box = stage.find<KsMenuCheckBox>("check");
    box->state = true;
    EXPECT_EQ(stage.heard(), Heard());
    EXPECT_TRUE(stage.action({"Menu", "On"})->isChecked());
    EXPECT_EQ(shownText(box), "On");
    box->onString = "Switched on";
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Switched on"}));
    EXPECT_EQ(shownText(box), "Switched on");
    box->onString = "";
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Off"})) << "the label stays";
    EXPECT_EQ(shownText(box), "Off");
    box->label = "Other";
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Other"}));
    EXPECT_EQ(shownText(box), "Other");
}

TEST(MenuCheckBox, thatComesCheckedHasItsTextButNoMarkInAWindow)
{
    MenuStage stage(in("MenuCheckBox { label \"Off\" onString \"On\" auditorID \"check\" state "
                       "TRUE accelerator \"Ctrl+K\" }"));
    EXPECT_FALSE(stage.action({"Menu", "On"})->isChecked());
    EXPECT_EQ(stage.action({"Menu", "On"})->shortcut(), QKeySequence("Ctrl+K"));
    EXPECT_EQ(Stage::shown(stage.find<KsMenuCheckBox>("check"), "chkSwtch"), 1);
    EXPECT_EQ(shownText(stage.find<KsMenuCheckBox>("check")), "On");
    stage.clickThrough({"Menu", "On"});
    EXPECT_FALSE(stage.find<KsMenuCheckBox>("check")->state);
    EXPECT_FALSE(stage.action({"Menu", "Off"})->isChecked());
}

TEST(MenuCheckBox, allViewsAreCurrentWhenAWindowsAuditorsHear)
{
    MenuStage stage(in(check));
    OwnCheck own;
    own.then = [&](KsMenuCheckBox* box) {
        EXPECT_TRUE(stage.action({"Menu", "On"})->isChecked());
        EXPECT_EQ(shownText(box), "On");
    };
    stage.find<KsMenuCheckBox>("check")->addAuditor(&own);
    stage.clickThrough({"Menu", "Off"});
    EXPECT_EQ(own.calls, 1);
}

TEST(MenuCheckBox, aloneInASceneHasNoMenuToClose)
{
    KsFormweave::init();
    {
        Stage stage("TopLevelDialog { }", Stage::Scene);
        auto* box = new KsMenuCheckBox;
        box->label = "Alone";
        stage.scene()->addChild(box);
        EXPECT_TRUE(stage.clickPart(box, "chkSep"));
        EXPECT_TRUE(box->state);
        const KbBox3f frame = stage.boxOf(box, "itemFrameSep");
        EXPECT_NEAR(frame.getSize()[1], 18, 1e-3);
        EXPECT_NEAR(frame.getSize()[0], box->getItemInitSize()[0], 1e-3);
    }
    KsFormweave::finish();
}

TEST(MenuRadioButtons, areExclusiveInAWindow)
{
    MenuStage stage(in(radio), Stage::Window);
    auto* buttons = stage.find<KsMenuRadioButtons>("radio");
    OwnRadio own;
    buttons->addAuditor(&own);
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"one", "two", "three"}));
    EXPECT_TRUE(stage.action({"Menu", "one"})->isChecked());
    own.then = [&](KsMenuRadioButtons* r) {
        EXPECT_EQ(r->selectedItem, 2);
        EXPECT_TRUE(stage.action({"Menu", "one"})->isChecked()) << "not yet unchecked";
    };
    stage.clickThrough({"Menu", "three"});
    EXPECT_EQ(own.calls, 1);
    EXPECT_TRUE(stage.action({"Menu", "three"})->isChecked());
    EXPECT_FALSE(stage.action({"Menu", "one"})->isChecked());
    own.then = nullptr;
    stage.clickThrough({"Menu", "three"});
    EXPECT_EQ(own.calls, 2);
    EXPECT_TRUE(stage.action({"Menu", "three"})->isChecked()) << "it cannot be unchecked";
}

TEST(MenuRadioButtons, areExclusiveInAScene)
{
    MenuStage stage(in(push + radio));
    auto* buttons = stage.find<KsMenuRadioButtons>("radio");
    OwnRadio own;
    buttons->addAuditor(&own);
    stage.clickOn({"menu"});
    const KbBox3f above = stage.boxOf("push", "itemFrameSep");
    const float x = above.getCenter()[0];
    const float first = above.getMin()[1] - 9;
    const auto row = [&](int i) { return KbVec2f(x, first - 18 * i + Stage::viewHeight); };
    stage.click(row(1));
    EXPECT_EQ(buttons->selectedItem, 1);
    EXPECT_EQ(own.calls, 1);
    EXPECT_TRUE(stage.action({"Menu", "two"})->isChecked());
    EXPECT_FALSE(stage.action({"Menu", "one"})->isChecked());
    EXPECT_FALSE(stage.isDrawn("radio"));
    stage.clickOn({"menu"});
    stage.click(row(1));
    EXPECT_EQ(own.calls, 2) << "told although nothing changed";
    stage.clickOn({"menu"});
    stage.click(row(2));
    EXPECT_EQ(buttons->selectedItem, 2);
    stage.clickOn({"menu"});
    stage.click(row(0));
    EXPECT_EQ(buttons->selectedItem, 0);
    EXPECT_EQ(own.calls, 4);
}

TEST(MenuRadioButtons, acceleratorsMayBeFewerOrMoreThanTheRows)
{
    MenuStage stage(in(radio));
    auto* buttons = stage.find<KsMenuRadioButtons>("radio");
    EXPECT_EQ(stage.action({"Menu", "one"})->shortcut(), QKeySequence("Ctrl+1"));
    EXPECT_TRUE(stage.action({"Menu", "two"})->shortcut().isEmpty());
    const KbString four[] = {"F1", "F2", "F3", "F4"};
    buttons->accelerators.setValues(0, 4, four);
    EXPECT_EQ(stage.action({"Menu", "three"})->shortcut(), QKeySequence("F3"));
    buttons->accelerators = KbString("F5");
    EXPECT_EQ(stage.action({"Menu", "one"})->shortcut(), QKeySequence("F5"));
    EXPECT_EQ(stage.action({"Menu", "three"})->shortcut(), QKeySequence("F3")) << "it keeps it";
}

TEST(MenuRadioButtons, newRowsStandAtTheEndInAWindowAndInPlaceInAScene)
{
    MenuStage stage(in(radio + push));
    auto* buttons = stage.find<KsMenuRadioButtons>("radio");
    const KbString five[] = {"a", "b", "c", "d", "e with a longer text"};
    buttons->items.setValues(0, 5, five);
    EXPECT_EQ(stage.textsOf({"Menu"}),
              QStringList({"Push", "a", "b", "c", "d", "e with a longer text"}));
    stage.clickOn({"menu"});
    EXPECT_NEAR(stage.boxOf("radio").getSize()[1], 5 * 18, 0.1);
    EXPECT_NEAR(stage.boxOf("push", "itemFrameSep").getMax()[1], stage.boxOf("radio").getMin()[1],
                0.1);
    EXPECT_NEAR(stage.boxOf("push", "itemFrameSep").getSize()[0], stage.boxOf("radio").getSize()[0],
                0.1);
    buttons->items.setNum(2);
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Push", "a", "b"}));
    EXPECT_NEAR(stage.boxOf("radio").getSize()[1], 2 * 18, 0.1);
    EXPECT_NEAR(stage.boxOf("push", "itemFrameSep").getMax()[1], stage.boxOf("radio").getMin()[1],
                0.1);
    buttons->items.setNum(0);
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Push"}));
    EXPECT_LT(stage.boxOf("radio", "itemFrameSep").getSize()[1], 0.1) << "no row, no room";
    buttons->items = KbString("again");
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Push", "again"}));
    EXPECT_NEAR(stage.boxOf("radio").getSize()[1], 18, 0.1);
}

TEST(MenuRadioButtons, aSelectionOutOfRangeChecksNothing)
{
    MenuStage stage(in(radio));
    auto* buttons = stage.find<KsMenuRadioButtons>("radio");
    for (int selected : {7, -1, 2147483647, -2147483647}) {
        buttons->selectedItem = selected;
        for (const char* text : {"one", "two", "three"})
            EXPECT_FALSE(stage.action({"Menu", text})->isChecked());
        EXPECT_EQ(buttons->selectedItem, selected);
    }
    buttons->selectedItem = 1;
    EXPECT_TRUE(stage.action({"Menu", "two"})->isChecked());
    EXPECT_EQ(stage.heard(), Heard());
}

TEST(MenuRadioButtons, aPickOnNoRowIsToldAndChangesNothing)
{
    MenuStage stage(in(radio));
    auto* buttons = stage.find<KsMenuRadioButtons>("radio");
    buttons->selectedItem = 1;
    auto* ornament = new KsSeparator;
    auto* place = new KsTranslation;
    place->translation = KbVec3f(200, 0, 0);
    auto* cube = new KsCube;
    cube->width = cube->height = cube->depth = 10;
    ornament->addChild(place);
    ornament->addChild(cube);
    ksCast<KsGroup>(buttons->getAnyPart("geomSwitch", false))->insertChild(ornament, 0);
    stage.clickOn({"menu"});
    const KbVec3f row = stage.boxOf("radio", "radioSep").getMax();
    const float left = stage.boxOf("radio", "radioSep").getMin()[0];
    EXPECT_TRUE(stage.click(KbVec2f(left + 200, row[1] - 27 + Stage::viewHeight)));
    EXPECT_EQ(buttons->selectedItem, 1);
    EXPECT_EQ(stage.heard(), Heard({"radio:radio 1"}));
    EXPECT_FALSE(stage.isDrawn("radio"));
}

TEST(MenuRadioButtons, aloneInASceneAreAsHighAsTheirRows)
{
    Stage stage("TopLevelDialog { }", Stage::Scene);
    auto* buttons = new KsMenuRadioButtons;
    const KbString six[] = {"a", "b", "c", "d", "e", "f with a longer text"};
    buttons->items.setValues(0, 3, six);
    auto* place = new KsTranslation;
    place->translation = KbVec3f(400, -300, 0);
    auto* group = new KsSeparator;
    group->addChild(place);
    group->addChild(buttons);
    stage.scene()->addChild(group);
    for (const int rows : {3, 6, 1, 0, 4}) {
        buttons->items.setNum(0);
        buttons->items.setValues(0, rows, six);
        stage.draw();
        EXPECT_EQ(buttons->getItemSize(), KbVec2i32(buttons->getItemInitSize()[0], rows * 18));
        if (rows == 0) continue;
        EXPECT_NEAR(stage.boxOf(buttons, "itemFrameSep").getSize()[1], 18, 1e-3) << rows;
        EXPECT_NEAR(stage.boxOf(buttons, "geomSwitch").getSize()[1], rows * 18, 1e-3) << rows;
    }
}

TEST(MenuRadioButtons, withoutItemsTakeNoRoom)
{
    MenuStage stage(in("MenuRadioButtons { auditorID \"radio\" label \"unseen\" }" + push));
    stage.clickOn({"menu"});
    const KbBox3f title = stage.boxOf("menu");
    EXPECT_NEAR(stage.boxOf("push", "itemFrameSep").getMax()[1], title.getMin()[1], 1.5);
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Push"}));
}

TEST(MenuSeparator, isALineInBothAndDoesNothing)
{
    MenuStage stage(in(push + "MenuSeparator { label \"unseen\" auditorID \"rule\" }" + check));
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Push", "-", "Off"}));
    stage.clickOn({"menu", "rule"});
    EXPECT_TRUE(stage.isDrawn("push")) << "a click on a line leaves the menu open";
    EXPECT_EQ(stage.heard(), Heard());
    const KbBox3f line = stage.boxOf("rule", "sepSep");
    EXPECT_NEAR(line.getSize()[1], 2, 1e-3);
    EXPECT_NEAR(line.getSize()[0], stage.boxOf("push", "itemFrameSep").getSize()[0] - 6, 1e-3);
    EXPECT_NEAR(stage.boxOf("check", "itemFrameSep").getMax()[1],
                stage.boxOf("push", "itemFrameSep").getMin()[1] - 8, 1e-3);
    stage.find<KsMenuSeparator>("rule")->label = "still";
    EXPECT_FALSE(stage.isDrawn(stage.find<KsMenuSeparator>("rule"), "labelSep"));
    EXPECT_EQ(stage.textsOf({"Menu"}), QStringList({"Push", "-", "Off"}));
}

TEST(MenuSeparator, aMenuBuiltTwiceHasASecondLine)
{
    KsFormweave::init();
    {
        QMenu menu;
        const KsRef<KsMenuSeparator> rule(new KsMenuSeparator);
        rule->buildMenu(static_cast<QWidget*>(&menu), 1, -1);
        rule->buildMenu(static_cast<QWidget*>(&menu), 1, -1);
        EXPECT_EQ(MenuStage::texts(&menu), QStringList({"-", "-"}));
        rule->destroyWidget();
        EXPECT_TRUE(menu.actions().isEmpty());
    }
    KsFormweave::finish();
}

TEST(MenuSeparator, mayBeNarrowerThanItsMargins)
{
    Stage stage("TopLevelDialog { }", Stage::Scene);
    const KsRef<KsMenuSeparator> rule(new KsMenuSeparator);
    rule->setItemSize(KbVec2i32(4, 0), 0);
    stage.scene()->addChild(rule.get());
    stage.draw();
    EXPECT_EQ(rule->getItemSize(), KbVec2i32(4, 8));
    EXPECT_FALSE(stage.boxOf(rule, "sepSep").isEmpty());
    stage.scene()->removeChild(stage.scene()->findChild(rule));
}
