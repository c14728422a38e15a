#pragma once

#include <formweave/KsDialogCheckBox.h>
#include <formweave/KsElementContainer.h>
#include <formweave/KsTopLevelDialog.h>

/// A check box with dialogs below it, which are shown while it is checked and hidden while it is
/// not: from the build on, and at each click. A `state` that a program sets moves no dialog before
/// then. A click in a scene counts wherever it meets the launcher, also on the label. When the
/// launcher dies, or a dialog is taken out of it, the dialog's window is hidden.
class FORMWEAVE_API KsDialogCheckBoxLauncher
    : public KsElementContainer<KsDialogCheckBox, KsTopLevelDialog> {
    KS_KIT_HEADER(KsDialogCheckBoxLauncher);

public:
    KsDialogCheckBoxLauncher();

    /// Reports every element of the dialogs, as if each had just been used.
    void applyAuditors();
    /// The first of the dialogs and of the elements in them, in depth, whose `auditorID` is `id`;
    /// null if none.
    KsFormweave* searchForAuditorId(KbString id);

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void eventNotify(unsigned int value, unsigned long long data) override;
    void draggerFinishCallback3D() override;
    int showsChildren3D() const override { return state; }

protected:
    ~KsDialogCheckBoxLauncher() override;

private:
    void showDialogs();
    void showInWindow(KsTopLevelDialog* child);
};
