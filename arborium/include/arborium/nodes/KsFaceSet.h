#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsVertexShape.h>

/// Polygons over consecutive points. They may be concave. Faces of fewer than three corners, or
/// without an area, show nothing.
class ARBORIUM_API KsFaceSet : public KsVertexShape {
    KS_NODE_HEADER(KsFaceSet);

public:
    KsSFInt32
        startIndex; ///< The first point that is used. Default 0; below 0: no faces, a message.
    KsMFInt32 numVertices; ///< Corners of each face; -1 stands for all the rest. Default -1.

    KsFaceSet();

protected:
    ~KsFaceSet() override;
    bool listCorners(std::size_t numPoints, KsFaceList& list) const override;
};
