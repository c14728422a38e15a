#include <arborium/nodes/KsFaceSet.h>

#include "render/KsMeshBuilder.h"

KS_NODE_SOURCE(KsFaceSet, KsVertexShape)

KsFaceSet::KsFaceSet()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("startIndex", startIndex, 0);
    build.field("numVertices", numVertices, std::int32_t(-1));
}

KsFaceSet::~KsFaceSet() = default;

bool KsFaceSet::listCorners(std::size_t numPoints, KsFaceList& list) const
{
    if (startIndex.getValue() < 0) return false;
    auto next = static_cast<std::size_t>(startIndex.getValue());
    for (const std::int32_t count : numVertices.values()) {
        const bool rest = count == -1;
        if (!rest &&
            (count < 0 || next > numPoints || static_cast<std::size_t>(count) > numPoints - next))
            return false; // and what follows cannot be told either
        const std::size_t end =
            rest ? std::max(numPoints, next) : next + static_cast<std::size_t>(count);
        for (; next < end; ++next) list.corners.push_back(static_cast<std::uint32_t>(next));
        list.endFace();
    }
    return true;
}
