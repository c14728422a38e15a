#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsVertexShape.h>

/// Lines through points that are named by number. A ray hits them within the radius of the pick.
class ARBORIUM_API KsIndexedLineSet : public KsVertexShape {
    KS_NODE_HEADER(KsIndexedLineSet);

public:
    KsMFInt32 coordIndex; ///< The points of each line, -1 behind each. Default: none.

    KsIndexedLineSet();

protected:
    ~KsIndexedLineSet() override;
    bool listCorners(std::size_t numPoints, KsFaceList& list) const override;
    bool hasFaces() const override { return false; }
};
