#pragma once

#include <formweave/KsAuditor.h>

class KsDialogIntegerSlider;

/// Listens to one slider of whole numbers: told when its value changed.
class FORMWEAVE_API KsDialogIntegerSliderAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsDialogIntegerSliderAuditor);

public:
    virtual void dialogIntegerSlider(KsDialogIntegerSlider* slider) = 0;
};
