#pragma once

#include <formweave/KsAuditor.h>

class KsDialogPushButton;

/// Listens to one push button: told when it is pressed.
class FORMWEAVE_API KsDialogPushButtonAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsDialogPushButtonAuditor);

public:
    virtual void dialogPushButton(KsDialogPushButton* button) = 0;
};
