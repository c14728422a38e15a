#pragma once

#include <formweave/KsDialogPushButton.h>
#include <formweave/KsElementContainer.h>
#include <formweave/KsTopLevelDialog.h>

/// A push button with dialogs below it: a press in its window shows theirs. It never closes them,
/// and a press in a scene shows none. When the launcher dies, or a dialog is taken out of it, the
/// dialog's window is hidden.
class FORMWEAVE_API KsDialogPushButtonLauncher
    : public KsElementContainer<KsDialogPushButton, KsTopLevelDialog> {
    KS_KIT_HEADER(KsDialogPushButtonLauncher);

public:
    KsDialogPushButtonLauncher();

    /// Reports every element of the dialogs, as if each had just been used.
    void applyAuditors();
    /// The first of the dialogs and of the elements in them, in depth, whose `auditorID` is `id`;
    /// null if none.
    KsFormweave* searchForAuditorId(KbString id);

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void eventNotify(unsigned int value, unsigned long long data) override;
    /// FALSE: no dialog is shown in a scene before a program shows it.
    int showsChildren3D() const override { return 0; }

protected:
    ~KsDialogPushButtonLauncher() override;
};
