#pragma once

#include "render/KsMeshBuilder.h"

#include <arborium/fields/KsMField.h>

/// Cuts a list of numbers at each -1. Other negative numbers stay, as points that cannot exist.
inline void listIndexedCorners(const KsMFInt32& indices, KsFaceList& list)
{
    list.corners.reserve(indices.values().size());
    for (const std::int32_t index : indices.values()) {
        if (index == -1)
            list.endFace();
        else
            list.corners.push_back(static_cast<std::uint32_t>(index));
    }
    list.endFace();
}
