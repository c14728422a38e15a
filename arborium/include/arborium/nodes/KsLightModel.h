#pragma once

#include <arborium/nodes/KsNode.h>

/// Whether light falls on the surfaces behind it.
class ARBORIUM_API KsLightModel : public KsNode {
    KS_NODE_HEADER(KsLightModel);

public:
    /// BASE_COLOR shows the diffuse colour as it is.
    enum Model { BASE_COLOR, PHONG };

    KsLightModel();

    KsSFEnum model; ///< Default PHONG.

    void doAction(KsAction* action) override;

protected:
    ~KsLightModel() override;
};
