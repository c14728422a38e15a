#pragma once

#include <arborium/nodes/KsLight.h>

/// Light from far away.
class ARBORIUM_API KsDirectionalLight : public KsLight {
    KS_NODE_HEADER(KsDirectionalLight);

public:
    KsDirectionalLight();

    /// In which the light goes, in the space in which the node stands. Default (0, 0, -1); of
    /// length 0, or no number: no light.
    KsSFVec3f direction;

protected:
    ~KsDirectionalLight() override;
    bool describe(KsLightState& light) const override;
};
