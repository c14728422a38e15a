#pragma once

#include <formweave/KsStackDialog.h>

/// Puts its children side by side as columns, each with a label width of its own.
/// Children are added and taken away as `KsElementContainer` says.
class FORMWEAVE_API KsColumnDialog : public KsStackDialog {
    KS_KIT_HEADER(KsColumnDialog);

public:
    KsColumnDialog();

    KsSFInt32 columnSpacing; ///< Pixels between columns. Default 0.

    void setChildrenComponentSize() override;
    void setChildrenLabelSize() override;

protected:
    ~KsColumnDialog() override;
    const KsSFInt32& spacing() const override { return columnSpacing; }
};
