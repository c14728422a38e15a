#pragma once

#include <arborium/nodes/KsNode.h>

/// Whether light falls on the surfaces behind it.
class ARBORIUM_API KsLightModel : public KsNode {
    KS_NODE_HEADER(KsLightModel);

public:
    /// PHONG: surfaces are lit. BASE_COLOR shows their diffuse colour as it is, from any side, and
    /// nothing of what they emit.
    enum Model { BASE_COLOR, PHONG };

    KsLightModel();

    KsSFEnum model; ///< Default PHONG.

    void doAction(KsAction* action) override;

protected:
    ~KsLightModel() override;
};
