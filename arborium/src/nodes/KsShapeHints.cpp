#include <arborium/nodes/KsShapeHints.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

#include <cmath>

KS_NODE_SOURCE(KsShapeHints, KsNode)

KsShapeHints::KsShapeHints()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("VertexOrdering", {{"UNKNOWN_ORDERING", UNKNOWN_ORDERING},
                                   {"CLOCKWISE", CLOCKWISE},
                                   {"COUNTERCLOCKWISE", COUNTERCLOCKWISE}});
    build.enums("ShapeType", {{"UNKNOWN_SHAPE_TYPE", UNKNOWN_SHAPE_TYPE}, {"SOLID", SOLID}});
    build.enums("FaceType", {{"UNKNOWN_FACE_TYPE", UNKNOWN_FACE_TYPE}, {"CONVEX", CONVEX}});
    build.enumField("vertexOrdering", vertexOrdering, "VertexOrdering", UNKNOWN_ORDERING);
    build.enumField("shapeType", shapeType, "ShapeType", UNKNOWN_SHAPE_TYPE);
    build.enumField("faceType", faceType, "FaceType", CONVEX);
    build.field("creaseAngle", creaseAngle, 0.5f);
}

KsShapeHints::~KsShapeHints() = default;

void KsShapeHints::doAction(KsAction* action)
{
    KsState* state = action->getState();
    KsShapeHintsState& hints = state->edit(state->shapeHints);
    hints.ordered = vertexOrdering.getValue() != UNKNOWN_ORDERING;
    hints.counterClockwise = vertexOrdering.getValue() != CLOCKWISE;
    hints.solid = shapeType.getValue() == SOLID;
    hints.convex = faceType.getValue() == CONVEX;
    if (std::isfinite(creaseAngle.getValue())) hints.creaseAngle = creaseAngle.getValue();
}
