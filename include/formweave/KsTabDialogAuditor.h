#pragma once

#include <formweave/KsAuditor.h>

class KsTabDialog;

/// Listens to one tab dialog: told when another page is selected. Its type is the bad type unless the
/// application calls `initClass`: `KsAuditor::initClasses` leaves this class out.
class FORMWEAVE_API KsTabDialogAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsTabDialogAuditor);

public:
    virtual void tabDialog(KsTabDialog* tabDialog) = 0;
};
