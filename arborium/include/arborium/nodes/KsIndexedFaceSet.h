#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsVertexShape.h>

/// Polygons over points that are named by number. They may be concave. Faces of fewer than three
/// corners, or without an area, show nothing.
class ARBORIUM_API KsIndexedFaceSet : public KsVertexShape {
    KS_NODE_HEADER(KsIndexedFaceSet);

public:
    /// The corners of each face, -1 behind each; behind the last one it may be missing. Default:
    /// none.
    KsMFInt32 coordIndex;

    KsIndexedFaceSet();

protected:
    ~KsIndexedFaceSet() override;
    bool listCorners(std::size_t numPoints, KsFaceList& list) const override;
};
