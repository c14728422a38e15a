#pragma once

#include <arborium/nodes/KsLight.h>

/// Light from one place in all directions.
class ARBORIUM_API KsPointLight : public KsLight {
    KS_NODE_HEADER(KsPointLight);

public:
    KsPointLight();

    KsSFVec3f location; ///< Default (0, 0, 1).

protected:
    ~KsPointLight() override;
    bool describe(KsLightState& light) const override;
};
