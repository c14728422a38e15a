#pragma once

#include <arborium/base/KbBox3f.h>

/// Where an orthographic camera stands that looks along -z and shows a whole box with a small
/// margin. An empty box gives a camera in front of the origin.
struct KsFraming {
    KsFraming(const KbBox3f& box, float aspect);

    KbVec3f position;
    float height;
    float focalDistance; ///< To the centre of the box.
    float nearDistance;
    float farDistance;
};
