#pragma once

#include <arborium/nodes/KsNode.h>

/// What is known of the faces behind it.
class ARBORIUM_API KsShapeHints : public KsNode {
    KS_NODE_HEADER(KsShapeHints);

public:
    /// How the corners of a face run for someone in front of it.
    enum VertexOrdering { UNKNOWN_ORDERING, CLOCKWISE, COUNTERCLOCKWISE };
    /// SOLID: the faces enclose a volume, so that their backs are never seen.
    enum ShapeType { UNKNOWN_SHAPE_TYPE, SOLID };
    /// UNKNOWN_FACE_TYPE: faces may be concave.
    enum FaceType { UNKNOWN_FACE_TYPE, CONVEX };

    KsShapeHints();

    KsSFEnum vertexOrdering; ///< Default UNKNOWN_ORDERING: both sides of a face are lit.
    KsSFEnum shapeType;      ///< Default UNKNOWN_SHAPE_TYPE.
    KsSFEnum faceType;       ///< Default CONVEX.
    /// Edges between faces that meet at a smaller angle, in radians, look smooth. Default 0.5.
    KsSFFloat creaseAngle;

    void doAction(KsAction* action) override;

protected:
    ~KsShapeHints() override;
};
