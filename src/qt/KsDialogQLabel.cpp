#include "KsDialogQLabel.h"

#include <formweave/KsDialogLabel.h>

KsDialogQLabel::KsDialogQLabel(QWidget* parent, KsDialogLabel* label)
    : KsRelayFrame(parent, label, "KsDialogQLabel")
{
    createLabel();
}
