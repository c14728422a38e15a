#pragma once

#include <formweave/KsElementContainer.h>
#include <formweave/KsMenuCheckBox.h>
#include <formweave/KsTopLevelDialog.h>

/// A check box in a menu with dialogs below it: a pick in its window shows or hides theirs. A pick
/// in a scene does not reach them: there they are shown as the state was when the entry was built.
/// When the launcher dies, or a dialog is taken out of it, the dialog's window is hidden.
class FORMWEAVE_API KsMenuCheckBoxLauncher
    : public KsElementContainer<KsMenuCheckBox, KsTopLevelDialog> {
    KS_KIT_HEADER(KsMenuCheckBoxLauncher);

public:
    KsMenuCheckBoxLauncher();

    /// The first of the dialogs and of the elements in them, in depth, whose `auditorID` is `id`;
    /// null if none.
    KsFormweave* searchForAuditorId(KbString id);

    void menuEvent(void* data, int id) override;
    int showsChildren3D() const override { return state; }

protected:
    ~KsMenuCheckBoxLauncher() override;
    void create3DEntry() override;
};
