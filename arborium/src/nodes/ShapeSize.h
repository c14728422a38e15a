#pragma once

#include <arborium/nodes/KsShape.h>

#include <cmath>

/// A shared mesh at a size that comes from fields: negative sizes count as positive, so that no
/// shape is turned inside out; nothing is shown where one is no number.
inline KsShape::Form sizedForm(const KsMeshPtr& mesh, const KbVec3f& size)
{
    if (!mesh || !size.isFinite()) return {};
    return {mesh, KbVec3f(std::fabs(size[0]), std::fabs(size[1]), std::fabs(size[2]))};
}
