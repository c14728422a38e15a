#pragma once

#include <formweave/KsFormweave.h>

/// A modal message box. It has no form in a scene and takes no part in a dialog's layout; it may
/// stand in a file, and shows nothing until `show` is called. Its text is the `label`.
class FORMWEAVE_API KsMessageDialog : public KsFormweave {
    KS_KIT_HEADER(KsMessageDialog);

public:
    enum Type {
        MD_ERROR = 0,
        MD_INFORMATION = 1,
        MD_MESSAGE = 2,  ///< No icon but that of the program.
        MD_QUESTION = 3, ///< With the buttons Yes and No; the answer is not kept.
        MD_WARNING = 4,
        MD_WORKING = 5 ///< Nothing is shown.
    };

    KsSFString title; ///< Caption of the box. Default empty.
    KsSFEnum type;    ///< A `Type`. Default MD_MESSAGE.

    KsMessageDialog();
    /// Shows the box, and returns when the user has closed it.
    KsMessageDialog(KbString label, KbString title, Type type);

    /// Shows the box with the fields as they are, in front of `KsQt::getTopLevelWidget`, and returns
    /// when the user has closed it. Texts are plain text, cut at the length that `KsLimits` allows.
    /// What is being dragged in a scene is let go first. Needs a `QApplication`.
    virtual void show();
    /// Nothing: only the user closes a box.
    virtual void close();
    /// Deletes the node, whoever holds it.
    void destroy() override;

    /// Nothing.
    void createWorkingMessageDialog();
    /// (0, 0): it measures nothing.
    static KbVec2i32 getLabelPixelSize(KbString text);

protected:
    ~KsMessageDialog() override;
};
