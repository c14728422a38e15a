#include <arborium/nodes/KsCamera.h>

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsState.h>

#include <algorithm>
#include <cmath>

KS_ABSTRACT_NODE_SOURCE(KsCamera, KsNode)

KsCamera::KsCamera()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("position", position, KbVec3f(0, 0, 1));
    build.field("orientation", orientation, KbRotation());
    build.field("aspectRatio", aspectRatio, 1.0f);
    build.field("nearDistance", nearDistance, 1.0f);
    build.field("farDistance", farDistance, 10.0f);
    build.field("focalDistance", focalDistance, 5.0f);
}

KsCamera::~KsCamera() = default;

float KsCamera::usableAspect(float aspect) const
{
    for (const float each : {aspect, aspectRatio.getValue()})
        if (std::isfinite(each) && each > 0) return each;
    return 1;
}

KbViewVolume KsCamera::placed(KbViewVolume volume) const
{
    volume.rotateCamera(orientation.getValue());
    volume.translateCamera(position.getValue());
    return volume;
}

bool KsCamera::setViewVolume(KsAction* action)
{
    KsState* state = action->getState();
    const KbMatrix& matrix = state->modelMatrix.get();
    if (!position.getValue().isFinite() || !matrix.isFinite() || !matrix.isInvertible())
        return false;
    KbViewVolume volume = getViewVolume(state->viewport.get().getViewportAspectRatio());
    if (!matrix.isIdentity()) volume.transform(matrix);
    state->edit(state->viewVolume) = volume;
    return true;
}

void KsCamera::doAction(KsAction* action) { setViewVolume(action); }

// While boxes are gathered the model matrix does not lead to the world.
void KsCamera::getBoundingBox(KsGetBoundingBoxAction* action) { action->m_metCamera = true; }

void KsCamera::GLRender(KsRenderAction* action)
{
    if (setViewVolume(action)) action->setViewVolume(action->getState()->viewVolume.get());
}

void KsCamera::rayPick(KsRayPickAction* action)
{
    if (setViewVolume(action)) action->computeRay();
}

void KsCamera::viewAll(KsNode* root, const KbViewportRegion& viewport, float slack)
{
    KsGetBoundingBoxAction boxes(viewport);
    boxes.apply(root);
    KbBox3f box = boxes.getBoundingBox();
    if (box.isEmpty()) return;

    KsSearchAction search;
    search.setNode(this);
    search.setSearchingAll(true);
    search.apply(root);
    if (search.getPath()) {
        // The camera's fields are in the space in which it stands.
        KsGetMatrixAction matrix(viewport);
        matrix.apply(search.getPath());
        box.transform(matrix.getInverse());
    }
    viewAll(box, viewport, slack);
}

void KsCamera::viewAll(const KbBox3f& box, const KbViewportRegion& viewport, float slack)
{
    const KbVec3f center = box.getCenter();
    if (box.isEmpty() || !center.isFinite() || !box.getSize().isFinite()) return;
    if (!(slack > 0) || !std::isfinite(slack)) slack = 1;

    const KbRotation toCamera = orientation.getValue().inverse();
    KbVec3f corners[8];
    float nearest = 0, farthest = 0, extent = 0;
    for (int i = 0; i < 8; ++i) {
        const KbVec3f corner(i & 1 ? box.getMax()[0] : box.getMin()[0],
                             i & 2 ? box.getMax()[1] : box.getMin()[1],
                             i & 4 ? box.getMax()[2] : box.getMin()[2]);
        toCamera.multVec(corner - center, corners[i]);
        nearest = std::max(nearest, corners[i][2]);
        farthest = std::min(farthest, corners[i][2]);
        extent = std::max(extent, corners[i].length());
    }
    if (!(extent > 0)) { // a point: any size shows it
        extent = 1;
        corners[0].setValue(1, 1, 0);
        corners[1].setValue(-1, -1, 0);
    }
    // The camera keeps off by an extent, so that what grows towards it stays in sight.
    const float distance =
        std::max(fit(corners, usableAspect(viewport.getViewportAspectRatio()), slack),
                 nearest + 0.1f * extent);
    KbVec3f away;
    orientation.getValue().multVec(KbVec3f(0, 0, 1), away);
    position = center + away * distance;
    focalDistance = distance;
    nearDistance = std::max((distance - nearest) * 0.5f, distance * 0.001f);
    farDistance = distance - farthest + extent;
}

void KsCamera::pointAt(const KbVec3f& target, const KbVec3f& up)
{
    KbVec3f back = position.getValue() - target;
    if (back.normalize() <= 0) return;
    KbVec3f right = up.cross(back);
    if (right.normalize() < 1e-6f) {
        // The direction is the one upward: any other axis will do.
        const KbVec3f other = std::fabs(back[2]) < 0.9f ? KbVec3f(0, 0, back[1] > 0 ? -1.0f : 1.0f)
                                                        : KbVec3f(1, 0, 0);
        right = other.cross(back);
        right.normalize();
    }
    const KbVec3f top = back.cross(right);
    orientation = KbRotation(KbMatrix(right[0], right[1], right[2], 0, top[0], top[1], top[2], 0,
                                      back[0], back[1], back[2], 0, 0, 0, 0, 1));
}
