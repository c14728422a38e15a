#pragma once

#include <formweave/KsNumberSlider.h>

class KsDialogRealSliderAuditor;

/// A slider of real numbers. Its default `format` is "%.3f".
class FORMWEAVE_API KsDialogRealSlider : public KsNumberSlider<KsSFFloat> {
    KS_KIT_HEADER(KsDialogRealSlider);

public:
    KsDialogRealSlider();

    // The auditors of this slider; with none, those of its containers are told.
    void addAuditor(KsDialogRealSliderAuditor* auditor);
    void removeAuditor(KsDialogRealSliderAuditor* auditor);
    void applyDlgCptAuditor() override;

protected:
    ~KsDialogRealSlider() override;
};
