#include "KsElementSearch.h"

#include <formweave/KsElementContainer.h>

#include <vector>

void ksApplyAuditors(KsFormweave* container, const KsElementList& elements)
{
    const KsKeepAlive keep(container);
    std::vector<KsRef<KsFormweave>> children;
    children.reserve(static_cast<std::size_t>(elements.count()));
    for (int i = 0; i < elements.count(); ++i) children.emplace_back(elements.at(i));
    // What a menu bar holds is no part of the state of a dialog.
    const KsType menuBar = KsType::fromName("MenuBar");
    for (const auto& child : children) {
        if (child->getParentElement() != container) continue;
        const KsElementList* below = child->isOfType(menuBar) ? nullptr : child->getElements();
        if (below)
            ksApplyAuditors(child, *below);
        else
            container->applyAuditor(child);
    }
}

KsFormweave* ksSearchForAuditorId(const KsElementList& elements, const KbString& id)
{
    for (int i = 0; i < elements.count(); ++i) {
        KsFormweave* child = elements.at(i);
        if (child->auditorID == id) return child;
        const KsElementList* below = child->getElements();
        KsFormweave* found = below ? ksSearchForAuditorId(*below, id) : nullptr;
        if (found) return found;
    }
    return nullptr;
}
