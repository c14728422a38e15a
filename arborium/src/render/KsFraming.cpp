#include "KsFraming.h"

#include <algorithm>
#include <cmath>

KsFraming::KsFraming(const KbBox3f& box, float aspect)
{
    constexpr float margin = 1.06f;
    KbVec3f center = box.getCenter();
    KbVec3f size = box.getSize();
    if (box.isEmpty() || !center.isFinite() || !size.isFinite()) {
        center.setValue(0, 0, 0);
        size.setValue(2, 2, 2);
    }
    if (!(aspect > 0) || !std::isfinite(aspect)) aspect = 1;
    height = std::max(size[1], size[0] / aspect) * margin;
    const float largest = std::max({size[0], size[1], size[2]});
    if (!(height > 0)) height = largest > 0 ? largest : 1;
    // Far enough that a scene which grows stays in front of the camera.
    focalDistance = 2 * std::max(largest, height);
    position = center + KbVec3f(0, 0, focalDistance);
    nearDistance = 0.01f * focalDistance;
    farDistance = 20 * focalDistance;
}
