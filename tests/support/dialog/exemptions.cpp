// What the dialog library keeps for good, so that a test is not blamed for it.

#include "LeakGuard.h"

#include "dialog/KsFileCache.h"

#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsNodeList.h>
#include <arborium/nodes/KsVertexShape.h>
#include <formweave/KsFormweave.h>

#include <unordered_set>

namespace {

class Kept : public KsFormweave {
public:
    using KsFormweave::getSkinRoots;
    using KsFormweave::s_listData;
};

/// The nodes of a tree, hidden ones too, each once. The library may be finished by now, and its
/// types gone with it.
void collect(KsNode* node, std::unordered_set<KsNode*>& found)
{
    if (!node || !found.insert(node).second) return;
    if (KsChildList* children = node->getChildren()) {
        for (int i = 0; i < children->getLength(); ++i) collect((*children)[i], found);
    }
    if (auto* shape = dynamic_cast<KsVertexShape*>(node))
        collect(shape->vertexProperty.getValue(), found);
}

long loadedSkins()
{
    std::unordered_set<KsNode*> found;
    for (int i = 0; i < Kept::getSkinRoots().getLength(); ++i)
        collect(Kept::getSkinRoots()[i], found);
    return static_cast<long>(found.size());
}

long fileCache()
{
    std::unordered_set<KsNode*> found;
    for (int i = 0; Kept::s_listData && i < Kept::s_listData->getLength(); ++i)
        collect(static_cast<DialogFileRecord*>(Kept::s_listData->get(i))->root, found);
    return static_cast<long>(found.size());
}

const bool registered = [] {
    addLeakExemption("nodes", "loaded skins", loadedSkins);
    addLeakExemption("nodes", "the file cache", fileCache);
    return true;
}();

} // namespace
