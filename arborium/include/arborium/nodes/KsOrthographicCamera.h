#pragma once

#include <arborium/nodes/KsCamera.h>

/// A camera that shows things in the same size at all distances.
class ARBORIUM_API KsOrthographicCamera : public KsCamera {
    KS_NODE_HEADER(KsOrthographicCamera);

public:
    KsOrthographicCamera();

    KsSFFloat height; ///< Of what is seen, in units of its space. Default 2.

    KbViewVolume getViewVolume(float aspect = 0) const override;

protected:
    ~KsOrthographicCamera() override;
    float fit(const KbVec3f (&corners)[8], float aspect, float slack) override;
};
