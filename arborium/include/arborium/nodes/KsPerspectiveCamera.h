#pragma once

#include <arborium/nodes/KsCamera.h>

/// A camera that shows far things smaller.
class ARBORIUM_API KsPerspectiveCamera : public KsCamera {
    KS_NODE_HEADER(KsPerspectiveCamera);

public:
    KsPerspectiveCamera();

    KsSFFloat heightAngle; ///< Between the upper and the lower edge, in radians. Default 0.785398.

    KbViewVolume getViewVolume(float aspect = 0) const override;

protected:
    ~KsPerspectiveCamera() override;
    float fit(const KbVec3f (&corners)[8], float aspect, float slack) override;
};
