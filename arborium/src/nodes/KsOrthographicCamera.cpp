#include <arborium/nodes/KsOrthographicCamera.h>

#include <algorithm>
#include <cmath>

KS_NODE_SOURCE(KsOrthographicCamera, KsCamera)

KsOrthographicCamera::KsOrthographicCamera()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("height", height, 2.0f);
}

KsOrthographicCamera::~KsOrthographicCamera() = default;

KbViewVolume KsOrthographicCamera::getViewVolume(float aspect) const
{
    const float half = height.getValue() / 2;
    const float side = half * usableAspect(aspect);
    KbViewVolume volume;
    volume.ortho(-side, side, -half, half, nearDistance, farDistance);
    return placed(volume);
}

float KsOrthographicCamera::fit(const KbVec3f (&corners)[8], float aspect, float slack)
{
    float half = 0, nearest = 0, extent = 0;
    for (const KbVec3f& corner : corners) {
        half = std::max({half, std::fabs(corner[1]), std::fabs(corner[0]) / aspect});
        nearest = std::max(nearest, corner[2]);
        extent = std::max(extent, corner.length());
    }
    height = 2 * (half > 0 ? half : extent) * slack;
    return nearest + extent;
}
