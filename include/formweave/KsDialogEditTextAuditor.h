#pragma once

#include <formweave/KsAuditor.h>

class KsDialogEditText;

/// Listens to one edit text: told when the text changed.
class FORMWEAVE_API KsDialogEditTextAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsDialogEditTextAuditor);

public:
    virtual void dialogEditText(KsDialogEditText* editText) = 0;
};
