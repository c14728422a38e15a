#pragma once

#include <arborium/fields/KsMField.h>
#include <formweave/KsMenuPushButton.h>

class KsMenuFileSelectionAuditor;

/// An entry that asks for a file with Qt's file dialog, from a window and from a scene alike, and
/// reports what was chosen. In a scene the auditors hear of it twice: of the file, and of the pick.
class FORMWEAVE_API KsMenuFileSelection : public KsMenuPushButton {
    KS_KIT_HEADER(KsMenuFileSelection);

public:
    enum Mode { OPEN = 1, SAVE = 2 };

    KsSFString title;  ///< Of the file dialog. Default empty.
    KsMFString filter; ///< Pairs: a pattern, then what it stands for. Default: Arborium files.
    KsSFInt32 defaultFilter; ///< Kept in files; not used. Default 0.
    /// Where the dialog opens; then that of the chosen file. `~` and `$NAME` are taken for what they
    /// stand for when it opens. Default ".".
    KsSFFilePathString fileDirectory;
    /// Without its directory; empty if the user cancelled, of which the auditors hear too. Unicode
    /// where the name needs it.
    KsSFFilePathString filename;
    KsSFEnum mode; ///< A `Mode`. Default OPEN.

    KsMenuFileSelection();

    /// An element with auditors of its own is not reported to its container. Those of the base class,
    /// added through a pointer to it, are not of the kind that is told here: do not add them.
    void addAuditor(KsMenuFileSelectionAuditor* auditor);
    void removeAuditor(KsMenuFileSelectionAuditor* auditor);
    void applyDlgCptAuditor() override;
    /// Reports the file that is in the fields.
    void validateFilename();
    /// Kept for programs that call it; without effect.
    void setIsOpened(int opened);

    void menuEvent(void* data, int id) override;
    void draggerFinishCallback3D() override;
    void add3DCallbackMethods() override;

protected:
    ~KsMenuFileSelection() override;
    /// Asks for a file; returns when the dialog is closed and the auditors were told.
    void openDialogBox();

private:
    static void finishCB3D(void* data, KsDragger* dragger);

    int m_isOpened = 0;
};
