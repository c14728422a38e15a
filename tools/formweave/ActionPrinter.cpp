#include "ActionPrinter.h"

#include <arborium/base/KbNumber.h>
#include <formweave/formweave.h>

#include <cstdio>

namespace {

std::string nameOf(const KsFormweave* element)
{
    const KbString& id = element->auditorID.getValue();
    return (id.isEmpty() ? element->label.getValue() : id).toUtf8();
}

void print(const KsFormweave* element, const std::string& what)
{
    std::printf("%s: %s\n", nameOf(element).c_str(), what.c_str());
    std::fflush(stdout);
}

// One that has no item says so by its number.
template <class Choice> void printChoice(const Choice* choice)
{
    const int selected = choice->selectedItem;
    const bool exists = selected >= 0 && selected < choice->items.getNum();
    print(choice, exists ? choice->items[selected].toUtf8() : std::to_string(selected));
}

} // namespace

void ActionPrinter::printPress(const KsFormweave* element)
{
    print(element, "pressed");
    // It may be gone afterwards.
    if (pressed) pressed(element->auditorID.getValue().toUtf8());
}

void ActionPrinter::dialogPushButton(KsDialogPushButton* button) { printPress(button); }

void ActionPrinter::dialogCheckBox(KsDialogCheckBox* checkBox)
{
    print(checkBox, checkBox->state ? "on" : "off");
}

void ActionPrinter::dialogComboBox(KsDialogComboBox* comboBox) { printChoice(comboBox); }

void ActionPrinter::dialogEditText(KsDialogEditText* editText)
{
    print(editText, editText->editText.getValue().toUtf8());
}

void ActionPrinter::dialogIntegerSlider(KsDialogIntegerSlider* slider)
{
    print(slider, KbNumber::toString(slider->value.getValue()));
}

void ActionPrinter::dialogRadioButtons(KsDialogRadioButtons* buttons) { printChoice(buttons); }

void ActionPrinter::dialogRealSlider(KsDialogRealSlider* slider)
{
    print(slider, KbNumber::toString(slider->value.getValue()));
}

void ActionPrinter::menuPushButton(KsMenuPushButton* item) { printPress(item); }

void ActionPrinter::menuCheckBox(KsMenuCheckBox* item) { print(item, item->state ? "on" : "off"); }

void ActionPrinter::menuFileSelection(KsMenuFileSelection* item)
{
    print(item, item->filename.getValue().toUtf8());
}

void ActionPrinter::menuRadioButtons(KsMenuRadioButtons* item) { printChoice(item); }
