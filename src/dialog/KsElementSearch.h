#pragma once

class KbString;
class KsElementList;
class KsFormweave;

// Walks over the elements below a container, in depth and in the order of the children. Containers
// are told from other elements by their element list.

/// Reports every element below `container`, whose children are `elements`, through the container
/// in which it stands. A menu bar is not entered. An auditor may take elements out or add some:
/// those that have gone are left out, those that came are not told.
void ksApplyAuditors(KsFormweave* container, const KsElementList& elements);

/// The first element below whose `auditorID` is `id`; null if there is none.
KsFormweave* ksSearchForAuditorId(const KsElementList& elements, const KbString& id);
