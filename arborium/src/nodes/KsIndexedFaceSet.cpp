#include <arborium/nodes/KsIndexedFaceSet.h>

#include "nodes/IndexedCorners.h"

KS_NODE_SOURCE(KsIndexedFaceSet, KsVertexShape)

KsIndexedFaceSet::KsIndexedFaceSet()
{
    KsInstanceBuilder build(classRecord, this);
    build.emptyField("coordIndex", coordIndex);
}

KsIndexedFaceSet::~KsIndexedFaceSet() = default;

bool KsIndexedFaceSet::listCorners(std::size_t, KsFaceList& list) const
{
    listIndexedCorners(coordIndex, list);
    return true;
}
