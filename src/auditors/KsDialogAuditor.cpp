// What an auditor says of operations that it does not define.

#include <formweave/KsDialogAuditor.h>

#include <arborium/base/KbNumber.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/fields/KsMField.h>
#include <formweave/KsFormweave.h>

#include <string>

namespace {

// What stands behind the caption.
enum class Rest { Nothing, Texts, Selection, Number, FormattedNumber };

struct Undefined {
    const char* operation;
    const char* className;
    const char* captionField;
    Rest rest;
    const char* textFields[2];
    bool silentIfConnected; // a selection that follows another one is no action of its own
};
constexpr Undefined pushButton{"dialogPushButton", "KsDialogPushButton", "label",
                               Rest::Texts,        {"buttonLabel"},      false};
constexpr Undefined checkBox{"dialogCheckBox", "KsDialogCheckBox",        "label",
                             Rest::Texts,      {"onString", "offString"}, false};
constexpr Undefined comboBox{
    "dialogComboBox", "KsDialogComboBox", "label", Rest::Selection, {}, false};
constexpr Undefined editText{"dialogEditText", "KsDialogEditText", "label",
                             Rest::Texts,      {"editText"},       false};
constexpr Undefined integerSlider{
    "dialogIntegerSlider", "KsDialogIntegerSlider", "label", Rest::Number, {}, false};
constexpr Undefined radioButtons{
    "dialogRadioButtons", "KsDialogRadioButtons", "label", Rest::Selection, {}, false};
constexpr Undefined realSlider{
    "dialogRealSlider", "KsDialogRealSlider", "label", Rest::FormattedNumber, {}, false};
constexpr Undefined menuButton{
    "menuPushButton", "KsMenuPushButton", "label", Rest::Nothing, {}, false};
constexpr Undefined menuCheck{"menuCheckBox", "KsMenuCheckBox", "label",
                              Rest::Texts,    {"onString"},     false};
constexpr Undefined menuFile{"menuFileSelection", "KsMenuFileSelection", "title",
                             Rest::Texts,         {"filename"},          false};
constexpr Undefined menuRadio{
    "menuRadioButtons", "KsMenuRadioButtons", "label", Rest::Selection, {}, true};

const char* const newLine = "\n\t\t -> ";

// The fields are found by name: this file knows no control.
KbString textOf(const KsFormweave* node, const char* name)
{
    const KsField* field = node->getField(name);
    if (const auto* text = ksCast<KsSFString>(field)) return text->getValue();
    if (const auto* path = ksCast<KsSFFilePathString>(field)) return path->getValue();
    return KbString();
}

int numberOf(const KsFormweave* node, const char* name)
{
    const auto* number = ksCast<KsSFInt32>(node->getField(name));
    return number ? number->getValue() : 0;
}

KbString selectionOf(const KsFormweave* node)
{
    const int index = numberOf(node, "selectedItem");
    const auto* items = ksCast<KsMFString>(node->getField("items"));
    return KbString(index) + " : " + (items ? (*items)[index] : KbString());
}

KbString formattedNumberOf(const KsFormweave* node)
{
    const auto* value = ksCast<KsSFFloat>(node->getField("value"));
    // As the slider itself prints it.
    KbNumberFormat format;
    if (!format.parse(textOf(node, "format").toUtf8())) format.parse("%.3f");
    return KbString::fromUtf8(format.print(value ? static_cast<double>(value->getValue()) : 0.0));
}

void appendQuoted(KbString& text, const KsFormweave* node, const char* field)
{
    text += newLine;
    text += field;
    text += " \"";
    text += textOf(node, field);
    text += "\"";
}

// `element` is an element of a class that this file does not know; each derives from `KsFormweave`
// first and alone, so the address is the same.
template <class Element> void report(const Undefined& what, Element* element)
{
    const auto* node = reinterpret_cast<const KsFormweave*>(element);
    if (!node || !KsPreferences::getValue("DEBUG_FORMWEAVE_AUDITORS")) return;
    if (what.silentIfConnected) {
        const KsField* selection = node->getField("selectedItem");
        if (selection && selection->isConnected()) return;
    }
    KbString text("WARNING ! The DialogAuditor does not define the ");
    text += what.className;
    text += " component :";
    appendQuoted(text, node, what.captionField);
    switch (what.rest) {
    case Rest::Nothing: break;
    case Rest::Texts:
        for (const char* field : what.textFields) {
            if (field) appendQuoted(text, node, field);
        }
        break;
    case Rest::Selection:
        text += newLine;
        text += "selectedItem ";
        text += selectionOf(node);
        break;
    case Rest::Number: text += KbString(numberOf(node, "value")); break;
    case Rest::FormattedNumber:
        text += newLine;
        text += "value \"";
        text += formattedNumberOf(node);
        text += "\"";
        break;
    }
    const std::string where = std::string("KsDialogAuditor::") + what.operation;
    KsDebugError::postInfo(where.c_str(), "%s", text.toUtf8().c_str());
}

} // namespace

void KsDialogAuditor::dialogPushButton(KsDialogPushButton* button) { report(pushButton, button); }

void KsDialogAuditor::dialogCheckBox(KsDialogCheckBox* box) { report(checkBox, box); }

void KsDialogAuditor::dialogComboBox(KsDialogComboBox* box) { report(comboBox, box); }

void KsDialogAuditor::dialogEditText(KsDialogEditText* text) { report(editText, text); }

void KsDialogAuditor::dialogIntegerSlider(KsDialogIntegerSlider* slider)
{
    report(integerSlider, slider);
}

void KsDialogAuditor::dialogRadioButtons(KsDialogRadioButtons* buttons)
{
    report(radioButtons, buttons);
}

void KsDialogAuditor::dialogRealSlider(KsDialogRealSlider* slider) { report(realSlider, slider); }

void KsDialogAuditor::tabDialog(KsTabDialog*) {}

void KsDialogAuditor::menuPushButton(KsMenuPushButton* item) { report(menuButton, item); }

void KsDialogAuditor::menuCheckBox(KsMenuCheckBox* item) { report(menuCheck, item); }

void KsDialogAuditor::menuFileSelection(KsMenuFileSelection* item) { report(menuFile, item); }

void KsDialogAuditor::menuRadioButtons(KsMenuRadioButtons* item) { report(menuRadio, item); }
