#include <arborium/nodes/KsPerspectiveCamera.h>

#include <algorithm>
#include <cmath>

KS_NODE_SOURCE(KsPerspectiveCamera, KsCamera)

KsPerspectiveCamera::KsPerspectiveCamera()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("heightAngle", heightAngle, 0.785398f);
}

KsPerspectiveCamera::~KsPerspectiveCamera() = default;

KbViewVolume KsPerspectiveCamera::getViewVolume(float aspect) const
{
    KbViewVolume volume;
    volume.perspective(heightAngle, usableAspect(aspect), nearDistance, farDistance);
    return placed(volume);
}

float KsPerspectiveCamera::fit(const KbVec3f (&corners)[8], float aspect, float slack)
{
    const float angle = heightAngle.getValue();
    const bool usable = std::isfinite(angle) && angle > 0.001f && angle < 3.1f;
    const float slopeY = std::tan((usable ? angle : 0.785398f) / 2);
    const float slopeX = slopeY * aspect;
    // Each corner asks for a distance at which the edges of the picture have opened up to it.
    float distance = 0;
    for (const KbVec3f& corner : corners) {
        const float wanted = std::max(std::fabs(corner[1]) / slopeY, std::fabs(corner[0]) / slopeX);
        distance = std::max(distance, corner[2] + wanted * slack);
    }
    return distance;
}
