#pragma once

#include <formweave/KsDialogAuditor.h>

#include <functional>
#include <string>

class KsFormweave;

/// Tells on standard output what a person does in either presentation.
class ActionPrinter : public KsDialogAuditor {
public:
    /// Called with the `auditorID` of what was pressed, after it was told.
    std::function<void(const std::string& id)> pressed;

    void dialogPushButton(KsDialogPushButton* button) override;
    void dialogCheckBox(KsDialogCheckBox* checkBox) override;
    void dialogComboBox(KsDialogComboBox* comboBox) override;
    void dialogEditText(KsDialogEditText* editText) override;
    void dialogIntegerSlider(KsDialogIntegerSlider* slider) override;
    void dialogRadioButtons(KsDialogRadioButtons* buttons) override;
    void dialogRealSlider(KsDialogRealSlider* slider) override;
    void menuPushButton(KsMenuPushButton* item) override;
    void menuCheckBox(KsMenuCheckBox* item) override;
    void menuFileSelection(KsMenuFileSelection* item) override;
    void menuRadioButtons(KsMenuRadioButtons* item) override;

private:
    void printPress(const KsFormweave* element);
};
