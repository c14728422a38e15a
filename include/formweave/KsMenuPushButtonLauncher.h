#pragma once

#include <formweave/KsElementContainer.h>
#include <formweave/KsMenuPushButton.h>
#include <formweave/KsTopLevelDialog.h>

/// An entry with dialogs below it: picking it shows them. In a window the auditors hear of it
/// first; in a scene the press shows the panels, no auditor is told and the menu stays open. It
/// never closes them. When the launcher dies, or a dialog is taken out of it, the dialog's window
/// is hidden.
class FORMWEAVE_API KsMenuPushButtonLauncher
    : public KsElementContainer<KsMenuPushButton, KsTopLevelDialog> {
    KS_KIT_HEADER(KsMenuPushButtonLauncher);

public:
    KsMenuPushButtonLauncher();

    /// The first of the dialogs and of the elements in them, in depth, whose `auditorID` is `id`;
    /// null if none.
    KsFormweave* searchForAuditorId(KbString id);

    void buildMenu(void* parentMenu, int build2D, int position) override;
    void menuEvent(void* data, int id) override;
    void draggerStartCallback3D() override;
    /// Nothing: the dialogs appear at the press.
    void draggerFinishCallback3D() override;
    /// FALSE: no dialog is shown in a scene before the entry is picked.
    int showsChildren3D() const override { return 0; }

protected:
    ~KsMenuPushButtonLauncher() override;
};
