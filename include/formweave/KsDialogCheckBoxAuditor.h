#pragma once

#include <formweave/KsAuditor.h>

class KsDialogCheckBox;

/// Listens to one check box: told when its state changed.
class FORMWEAVE_API KsDialogCheckBoxAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsDialogCheckBoxAuditor);

public:
    virtual void dialogCheckBox(KsDialogCheckBox* checkBox) = 0;
};
