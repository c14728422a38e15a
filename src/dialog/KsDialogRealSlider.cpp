#include <formweave/KsDialogRealSlider.h>

#include <formweave/KsDialogRealSliderAuditor.h>

KS_KIT_SOURCE(KsDialogRealSlider, KsDialogSlider)

KsDialogRealSlider::KsDialogRealSlider()
{
    KsInstanceBuilder build(classRecord, this);
    format.initValue("%.3f");
    build.field("min", min, 0.0f);
    build.field("max", max, 1.0f);
    build.field("value", value, 0.0f);
}

KsDialogRealSlider::~KsDialogRealSlider() = default;

void KsDialogRealSlider::addAuditor(KsDialogRealSliderAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsDialogRealSlider::removeAuditor(KsDialogRealSliderAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsDialogRealSlider::applyDlgCptAuditor()
{
    reportAction(this, &KsDialogRealSliderAuditor::dialogRealSlider);
}
