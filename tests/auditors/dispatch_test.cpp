// By which operation a container tells of an element, and what the operations say by default.

#include "MessageGuard.h"

#include <arborium/base/KsPreferences.h>
#include <arborium/fields/KsMField.h>
#include <formweave/formweave.h>

#include <gtest/gtest.h>

namespace {

class Counter : public KsDialogAuditor {
public:
    void dialogPushButton(KsDialogPushButton* e) override { hear("dialogPushButton", e); }
    void dialogCheckBox(KsDialogCheckBox* e) override { hear("dialogCheckBox", e); }
    void dialogComboBox(KsDialogComboBox* e) override { hear("dialogComboBox", e); }
    void dialogEditText(KsDialogEditText* e) override { hear("dialogEditText", e); }
    void dialogIntegerSlider(KsDialogIntegerSlider* e) override { hear("dialogIntegerSlider", e); }
    void dialogRadioButtons(KsDialogRadioButtons* e) override { hear("dialogRadioButtons", e); }
    void dialogRealSlider(KsDialogRealSlider* e) override { hear("dialogRealSlider", e); }
    void tabDialog(KsTabDialog* e) override { hear("tabDialog", e); }
    void menuPushButton(KsMenuPushButton* e) override { hear("menuPushButton", e); }
    void menuCheckBox(KsMenuCheckBox* e) override { hear("menuCheckBox", e); }
    void menuFileSelection(KsMenuFileSelection* e) override { hear("menuFileSelection", e); }
    void menuRadioButtons(KsMenuRadioButtons* e) override { hear("menuRadioButtons", e); }

    std::string told;
    const void* element = nullptr;

private:
    void hear(const char* operation, const void* e)
    {
        told += (told.empty() ? "" : " ") + std::string(operation);
        element = e;
    }
};

class Dispatch : public testing::Test {
protected:
    void SetUp() override
    {
        KsFormweave::init();
        dialog = new KsTopLevelDialog;
        group = new KsRowDialog;
    }
    void TearDown() override
    {
        dialog.reset();
        group.reset();
        KsFormweave::finish();
    }
    // The operations that tell of the element, of a group's auditor and of a dialog's.
    std::string asGroup(KsFormweave* element) { return tell(*group, element); }
    std::string asDialog(KsFormweave* element) { return tell(*dialog, element); }
    template <class Container> static std::string tell(Container& container, KsFormweave* element)
    {
        Counter counter;
        container.addAuditor(&counter);
        container.applyAuditor(element);
        container.removeAuditor(&counter);
        EXPECT_TRUE(counter.told.empty() || counter.element == element);
        return counter.told;
    }
    // What the default operation says of it.
    std::string report(KsFormweave* element, const char* where)
    {
        KsPreferences::setString("DEBUG_FORMWEAVE_AUDITORS", "1");
        ExpectedMessages messages(where, "");
        dialog->applyAuditor(element);
        KsPreferences::unset("DEBUG_FORMWEAVE_AUDITORS");
        return messages.messages().empty() ? "" : messages.messages()[0].text;
    }
    static std::string start(const char* className)
    {
        return std::string("WARNING ! The DialogAuditor does not define the ") + className +
               " component :\n\t\t -> ";
    }

    KsRef<KsTopLevelDialog> dialog;
    KsRef<KsRowDialog> group;
};

template <class Element> KsRef<Element> make() { return KsRef<Element>(new Element); }

} // namespace

TEST_F(Dispatch, eachControlHasItsOwnOperation)
{
    const std::pair<KsRef<KsFormweave>, const char*> controls[] = {
        {new KsDialogPushButton, "dialogPushButton"},
        {new KsDialogCheckBox, "dialogCheckBox"},
        {new KsDialogComboBox, "dialogComboBox"},
        {new KsDialogEditText, "dialogEditText"},
        {new KsDialogRadioButtons, "dialogRadioButtons"},
        {new KsDialogIntegerSlider, "dialogIntegerSlider"},
        {new KsDialogRealSlider, "dialogRealSlider"},
    };
    for (const auto& [element, operation] : controls) {
        EXPECT_EQ(asGroup(element), operation);
        EXPECT_EQ(asDialog(element), operation);
    }
}

TEST_F(Dispatch, menuItemsAreToldByDialogsButNotByGroups)
{
    const std::pair<KsRef<KsFormweave>, const char*> items[] = {
        {new KsMenuCheckBox, "menuCheckBox"},
        {new KsMenuRadioButtons, "menuRadioButtons"},
        {new KsMenuPushButton, "menuPushButton"},
    };
    for (const auto& [element, operation] : items) {
        EXPECT_EQ(asGroup(element), "");
        EXPECT_EQ(asDialog(element), operation);
    }
}

TEST_F(Dispatch, aFileSelectionIsOneCallAndNoPushButton)
{
    EXPECT_EQ(asDialog(make<KsMenuFileSelection>()), "menuFileSelection");
}

TEST_F(Dispatch, nobodyIsToldOfTabDialogsGroupsAndTheLike)
{
    EXPECT_EQ(asDialog(make<KsTabDialog>()), "");
    EXPECT_EQ(asGroup(make<KsTabDialog>()), "");
    EXPECT_EQ(asDialog(make<KsColumnDialog>()), "");
    EXPECT_EQ(asDialog(nullptr), "");
}

TEST_F(Dispatch, anIntegerSlidersTextEndsInAQuoteAndTheNumberDirectlyBehindIt)
{
    const auto slider = make<KsDialogIntegerSlider>();
    slider->label = "a";
    slider->value = 7;
    EXPECT_EQ(report(slider, "KsDialogAuditor::dialogIntegerSlider"),
              start("KsDialogIntegerSlider") + "label \"a\"7");
}

TEST_F(Dispatch, theTextsOfControlsHoldTheirCurrentFields)
{
    const auto button = make<KsDialogPushButton>();
    button->label = "l";
    button->buttonLabel = "press";
    EXPECT_EQ(report(button, "KsDialogAuditor::dialogPushButton"),
              start("KsDialogPushButton") + "label \"l\"\n\t\t -> buttonLabel \"press\"");
    const auto text = make<KsDialogEditText>();
    text->editText = "some";
    EXPECT_EQ(report(text, "KsDialogAuditor::dialogEditText"),
              start("KsDialogEditText") + "label \"\"\n\t\t -> editText \"some\"");
    const auto slider = make<KsDialogRealSlider>();
    slider->value = 1.5f;
    slider->format = "%.2f m";
    EXPECT_EQ(report(slider, "KsDialogAuditor::dialogRealSlider"),
              start("KsDialogRealSlider") + "label \"\"\n\t\t -> value \"1.50 m\"");
}

TEST_F(Dispatch, theTextOfASelectionHasItsNumberAndItem)
{
    const auto combo = make<KsDialogComboBox>();
    combo->items.set1Value(0, "red");
    combo->items.set1Value(1, "green");
    combo->selectedItem = 1;
    const std::string begin = start("KsDialogComboBox") + "label \"\"\n\t\t -> selectedItem ";
    EXPECT_EQ(report(combo, "KsDialogAuditor::dialogComboBox"), begin + "1 : green");
    combo->selectedItem = -3;
    EXPECT_EQ(report(combo, "KsDialogAuditor::dialogComboBox"), begin + "-3 : ");
    combo->selectedItem = 2;
    EXPECT_EQ(report(combo, "KsDialogAuditor::dialogComboBox"), begin + "2 : ");
    const auto radio = make<KsDialogRadioButtons>();
    EXPECT_EQ(report(radio, "KsDialogAuditor::dialogRadioButtons"),
              start("KsDialogRadioButtons") + "label \"\"\n\t\t -> selectedItem 0 : ");
}

TEST_F(Dispatch, theTextsOfMenuItems)
{
    const auto button = make<KsMenuPushButton>();
    button->label = "Quit";
    EXPECT_EQ(report(button, "KsDialogAuditor::menuPushButton"),
              start("KsMenuPushButton") + "label \"Quit\"");
    const auto check = make<KsMenuCheckBox>();
    check->onString = "shown";
    EXPECT_EQ(report(check, "KsDialogAuditor::menuCheckBox"),
              start("KsMenuCheckBox") + "label \"\"\n\t\t -> onString \"shown\"");
    const auto file = make<KsMenuFileSelection>();
    file->label = "not shown";
    file->title = "Open";
    file->filename = KbString("scene.arb");
    EXPECT_EQ(report(file, "KsDialogAuditor::menuFileSelection"),
              start("KsMenuFileSelection") + "title \"Open\"\n\t\t -> filename \"scene.arb\"");
}

TEST_F(Dispatch, aConnectedMenuSelectionIsNotReported)
{
    const auto item = make<KsMenuRadioButtons>();
    item->items.set1Value(0, "one");
    EXPECT_EQ(report(item, "KsDialogAuditor::menuRadioButtons"),
              start("KsMenuRadioButtons") + "label \"\"\n\t\t -> selectedItem 0 : one");
    KsSFInt32 master;
    item->selectedItem.connectFrom(&master);
    KsPreferences::setString("DEBUG_FORMWEAVE_AUDITORS", "1");
    dialog->applyAuditor(item); // a message would fail the test
    KsPreferences::unset("DEBUG_FORMWEAVE_AUDITORS");
    item->selectedItem.disconnect();
}
