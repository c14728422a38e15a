#pragma once

#include <arborium/nodes/KsNode.h>

/// What is known of the faces behind it. Without one, nothing is known and all edges are sharp.
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

    /// To which side the normals of faces point; unknown is as counterclockwise. Default
    /// UNKNOWN_ORDERING.
    KsSFEnum vertexOrdering;
    /// Backs are neither lit nor drawn if this is SOLID and the ordering is known; else both sides
    /// of a face are. Default UNKNOWN_SHAPE_TYPE.
    KsSFEnum shapeType;
    /// Kept for files only: concave faces are recognised whatever it says. Default CONVEX.
    KsSFEnum faceType;
    /// Edges between faces that meet at a smaller angle, in radians, look smooth. Default 0.5; what
    /// is no number leaves the angle that is in force.
    KsSFFloat creaseAngle;

    void doAction(KsAction* action) override;

protected:
    ~KsShapeHints() override;
};
