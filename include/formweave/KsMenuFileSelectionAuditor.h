#pragma once

#include <formweave/KsAuditor.h>

class KsMenuFileSelection;

/// Listens to one menu entry that asks for a file: told when a file is chosen.
class FORMWEAVE_API KsMenuFileSelectionAuditor : public KsAuditor {
    KS_AUDITOR_HEADER(KsMenuFileSelectionAuditor);

public:
    virtual void menuFileSelection(KsMenuFileSelection* item) = 0;
};
