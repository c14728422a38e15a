#include <formweave/KsDialogIntegerSlider.h>

#include <formweave/KsDialogIntegerSliderAuditor.h>

KS_KIT_SOURCE(KsDialogIntegerSlider, KsDialogSlider)

KsDialogIntegerSlider::KsDialogIntegerSlider()
{
    KsInstanceBuilder build(classRecord, this);
    format.initValue("%d");
    build.field("min", min, 0);
    build.field("max", max, 1);
    build.field("value", value, 0);
}

KsDialogIntegerSlider::~KsDialogIntegerSlider() = default;

void KsDialogIntegerSlider::addAuditor(KsDialogIntegerSliderAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsDialogIntegerSlider::removeAuditor(KsDialogIntegerSliderAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsDialogIntegerSlider::applyDlgCptAuditor()
{
    reportAction(this, &KsDialogIntegerSliderAuditor::dialogIntegerSlider);
}
