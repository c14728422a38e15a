#pragma once

#include <formweave/KsStackDialog.h>

/// Stacks its children as rows, one under the other, with common label and control columns.
/// Children are added and taken away as `KsElementContainer` says.
class FORMWEAVE_API KsRowDialog : public KsStackDialog {
    KS_KIT_HEADER(KsRowDialog);

public:
    KsRowDialog();

    KsSFInt32 rowSpacing; ///< Pixels between rows. Default 0.

    void setChildrenComponentSize() override;
    void setChildrenLabelSize() override;

protected:
    ~KsRowDialog() override;
    const KsSFInt32& spacing() const override { return rowSpacing; }
};
