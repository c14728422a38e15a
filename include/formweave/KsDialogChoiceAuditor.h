#pragma once

#include <formweave/KsAuditor.h>

class KsDialogChoice;

/// Listens to one combo box or set of radio buttons: told when the selection changed.
class FORMWEAVE_API KsDialogChoiceAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsDialogChoiceAuditor);

public:
    virtual void dialogChoice(KsDialogChoice* choice) = 0;
};
