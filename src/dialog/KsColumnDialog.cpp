#include <formweave/KsColumnDialog.h>

#include "KsLayouts.h"

KS_KIT_SOURCE(KsColumnDialog, KsDialogGroup)

KsColumnDialog::KsColumnDialog() : KsStackDialog(Across, "LMNKsColumnDialogLayout")
{
    KsInstanceBuilder build(classRecord, this);
    build.field("columnSpacing", columnSpacing, 0);
    armSpacing(columnSpacing);
}

KsColumnDialog::~KsColumnDialog() = default;

void KsColumnDialog::setChildrenLabelSize() { ksAlignLabels(m_elements, false); }

void KsColumnDialog::setChildrenComponentSize() { ksAlignControls(m_elements, false); }
