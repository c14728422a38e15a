#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsNode.h>

/// Looks of the surfaces behind it. Only fields that were set (that are not default) have an
/// effect; of several values the first one. What is not a number is passed over; shininess and
/// transparency outside of 0 to 1 count as the end that is nearer.
class ARBORIUM_API KsMaterial : public KsNode {
    KS_NODE_HEADER(KsMaterial);

public:
    KsMaterial();

    KsMFColor ambientColor;  ///< Under light from nowhere. Default (0.2, 0.2, 0.2).
    KsMFColor diffuseColor;  ///< The colour proper. Default (0.8, 0.8, 0.8).
    KsMFColor specularColor; ///< Of highlights. Default (0, 0, 0).
    KsMFColor emissiveColor; ///< Shown whatever the light is. Default (0, 0, 0).
    KsMFFloat shininess;     ///< 0 (wide highlights) to 1 (small ones). Default 0.2.
    KsMFFloat transparency;  ///< 0 (opaque) to 1 (invisible). Default 0.

    void doAction(KsAction* action) override;

protected:
    ~KsMaterial() override;
};
