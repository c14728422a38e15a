#pragma once

#include <formweave/KsAuditor.h>

class KsDialogCheckBox;
class KsDialogComboBox;
class KsDialogEditText;
class KsDialogIntegerSlider;
class KsDialogPushButton;
class KsDialogRadioButtons;
class KsDialogRealSlider;
class KsMenuCheckBox;
class KsMenuFileSelection;
class KsMenuPushButton;
class KsMenuRadioButtons;
class KsTabDialog;

/// Listens at a container: it is told of every element below that has no auditor of its own nearer.
/// An application overrides the operations that it cares for. The others do nothing, but post a
/// message where the preference DEBUG_FORMWEAVE_AUDITORS is set, whatever its value.
class FORMWEAVE_API KsDialogAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsDialogAuditor);

public:
    virtual void dialogPushButton(KsDialogPushButton* button);
    virtual void dialogCheckBox(KsDialogCheckBox* checkBox);
    virtual void dialogComboBox(KsDialogComboBox* comboBox);
    virtual void dialogEditText(KsDialogEditText* editText);
    virtual void dialogIntegerSlider(KsDialogIntegerSlider* slider);
    virtual void dialogRadioButtons(KsDialogRadioButtons* buttons);
    virtual void dialogRealSlider(KsDialogRealSlider* slider);
    /// Never called: a tab dialog tells only auditors of its own.
    virtual void tabDialog(KsTabDialog* tabDialog);
    virtual void menuPushButton(KsMenuPushButton* item);
    virtual void menuCheckBox(KsMenuCheckBox* item);
    virtual void menuFileSelection(KsMenuFileSelection* item);
    virtual void menuRadioButtons(KsMenuRadioButtons* item);

protected:
    KsDialogAuditor() = default;
};
