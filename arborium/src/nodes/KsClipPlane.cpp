#include <arborium/nodes/KsClipPlane.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

#include <cmath>

KS_NODE_SOURCE(KsClipPlane, KsNode)

KsClipPlane::KsClipPlane()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("plane", plane, KbPlane(KbVec3f(1, 0, 0), 0.0f));
    build.field("on", on, true);
}

KsClipPlane::~KsClipPlane() = default;

void KsClipPlane::doAction(KsAction* action)
{
    if (!on.getValue()) return;
    KsState* state = action->getState();
    const KbMatrix& matrix = state->modelMatrix.get();
    if (!matrix.isFinite() || !matrix.isInvertible()) return; // nothing behind it can be seen
    KbPlane world = plane.getValue();
    world.transform(matrix);
    if (world.getNormal().isFinite() && std::isfinite(world.getDistanceFromOrigin()))
        state->edit(state->clipPlanes).push_back(world);
}

// Boxes are not cut; and while they are gathered the model matrix does not lead to the world.
void KsClipPlane::getBoundingBox(KsGetBoundingBoxAction*) {}
