#pragma once

#include <formweave/KsDialogAuditor.h>

class KsFormweave;

// A container tells one auditor of an element below it: the operation is chosen by the element's
// type; an element that is of none of the types is passed over in silence. A null auditor or
// element does nothing. The element lives until the call is over; the auditor may die in it.

/// Of the controls in a dialog, as groups do.
void ksTellComponent(KsDialogAuditor* auditor, KsFormweave* node);
/// Of controls and of menu items, as a top-level dialog does.
void ksTellTopLevel(KsDialogAuditor* auditor, KsFormweave* node);
/// Of menu items, as menu bars and popups do.
void ksTellMenu(KsDialogAuditor* auditor, KsFormweave* node);

/// What a group without parent tells when nobody else listens.
class KsDialogGroupAuditor : public KsDialogAuditor {};
/// What a top-level dialog tells when nobody else listens.
class KsTopLevelAuditor : public KsDialogAuditor {};
