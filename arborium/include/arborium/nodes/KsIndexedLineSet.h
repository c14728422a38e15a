#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsVertexShape.h>

/// Lines through points that are named by number, a pixel wide. A ray hits them within the radius
/// of the pick. Light does not change their colour. Lines of fewer than two points show nothing.
class ARBORIUM_API KsIndexedLineSet : public KsVertexShape {
    KS_NODE_HEADER(KsIndexedLineSet);

public:
    /// The points of each line, -1 behind each; behind the last one it may be missing. Default:
    /// none.
    KsMFInt32 coordIndex;

    KsIndexedLineSet();

protected:
    ~KsIndexedLineSet() override;
    bool listCorners(std::size_t numPoints, KsFaceList& list) const override;
    bool hasFaces() const override { return false; }
};
