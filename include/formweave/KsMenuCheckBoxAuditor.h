#pragma once

#include <formweave/KsAuditor.h>

class KsMenuCheckBox;

/// Listens to one checkable menu entry: told when its state changed.
class FORMWEAVE_API KsMenuCheckBoxAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsMenuCheckBoxAuditor);

public:
    virtual void menuCheckBox(KsMenuCheckBox* item) = 0;
};
