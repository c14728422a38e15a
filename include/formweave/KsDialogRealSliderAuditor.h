#pragma once

#include <formweave/KsAuditor.h>

class KsDialogRealSlider;

/// Listens to one slider of real numbers: told when its value changed.
class FORMWEAVE_API KsDialogRealSliderAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsDialogRealSliderAuditor);

public:
    virtual void dialogRealSlider(KsDialogRealSlider* slider) = 0;
};
