#include <arborium/nodes/KsIndexedLineSet.h>

#include "nodes/IndexedCorners.h"

KS_NODE_SOURCE(KsIndexedLineSet, KsVertexShape)

KsIndexedLineSet::KsIndexedLineSet()
{
    KsInstanceBuilder build(classRecord, this);
    build.emptyField("coordIndex", coordIndex);
}

KsIndexedLineSet::~KsIndexedLineSet() = default;

bool KsIndexedLineSet::listCorners(std::size_t, KsFaceList& list) const
{
    listIndexedCorners(coordIndex, list);
    return true;
}
