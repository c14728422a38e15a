#pragma once

#include <formweave/KsAuditor.h>

class KsMenuPushButton;

/// Listens to one menu entry: told when it is chosen.
class FORMWEAVE_API KsMenuPushButtonAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsMenuPushButtonAuditor);

public:
    virtual void menuPushButton(KsMenuPushButton* item) = 0;
};
