#pragma once

#include <formweave/KsNumberSlider.h>

class KsDialogIntegerSliderAuditor;

/// A slider of whole numbers. Its default `format` is "%d".
class FORMWEAVE_API KsDialogIntegerSlider : public KsNumberSlider<KsSFInt32> {
    KS_KIT_HEADER(KsDialogIntegerSlider);

public:
    KsDialogIntegerSlider();

    // The auditors of this slider; with none, those of its containers are told.
    void addAuditor(KsDialogIntegerSliderAuditor* auditor);
    void removeAuditor(KsDialogIntegerSliderAuditor* auditor);
    void applyDlgCptAuditor() override;

protected:
    ~KsDialogIntegerSlider() override;
};
