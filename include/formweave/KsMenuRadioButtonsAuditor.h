#pragma once

#include <formweave/KsAuditor.h>

class KsMenuRadioButtons;

/// Listens to one set of exclusive menu entries: told when the selection changed.
class FORMWEAVE_API KsMenuRadioButtonsAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsMenuRadioButtonsAuditor);

public:
    virtual void menuRadioButtons(KsMenuRadioButtons* item) = 0;
};
