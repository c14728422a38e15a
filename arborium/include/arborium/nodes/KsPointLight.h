#pragma once

#include <arborium/nodes/KsLight.h>

/// Light from one place in all directions, as bright far away as near.
class ARBORIUM_API KsPointLight : public KsLight {
    KS_NODE_HEADER(KsPointLight);

public:
    KsPointLight();

    /// In the space in which the node stands. Default (0, 0, 1); no number: no light.
    KsSFVec3f location;

protected:
    ~KsPointLight() override;
    bool describe(KsLightState& light) const override;
};
