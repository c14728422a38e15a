#include <formweave/KsRowDialog.h>

#include "KsLayouts.h"

KS_KIT_SOURCE(KsRowDialog, KsDialogGroup)

// The word Column in the name of the Qt layout is meant: style sheets out there use it.
KsRowDialog::KsRowDialog() : KsStackDialog(Down, "LMN_KsColumnDialog_Layout")
{
    KsInstanceBuilder build(classRecord, this);
    build.field("rowSpacing", rowSpacing, 0);
    armSpacing(rowSpacing);
}

KsRowDialog::~KsRowDialog() = default;

void KsRowDialog::setChildrenLabelSize() { ksAlignLabels(m_elements, true); }

void KsRowDialog::setChildrenComponentSize() { ksAlignControls(m_elements, true); }
