#pragma once

#include <arborium/nodes/KsLight.h>

/// Light from far away.
class ARBORIUM_API KsDirectionalLight : public KsLight {
    KS_NODE_HEADER(KsDirectionalLight);

public:
    KsDirectionalLight();

    KsSFVec3f direction; ///< In which the light goes. Default (0, 0, -1); of length 0: no light.

protected:
    ~KsDirectionalLight() override;
    bool describe(KsLightState& light) const override;
};
