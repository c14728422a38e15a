#pragma once

#include <arborium/nodes/KsNode.h>

struct KsLightState;

/// Base of the lights. A light shines on what stands behind it, up to the end of its separator.
/// Lights add up, the first eight of them; what stands behind none is lit from the eye.
class ARBORIUM_API KsLight : public KsNode {
    KS_NODE_HEADER(KsLight);

public:
    KsSFBool on;         ///< FALSE is as if the light were not there. Default TRUE.
    KsSFFloat intensity; ///< Multiplies the colour; below 0 counts as 0. Default 1.
    KsSFColor color;     ///< Default white. What is no number, here or above, gives no light.

    void doAction(KsAction* action) override;

protected:
    KsLight();
    ~KsLight() override;

    // Plumbing.
    /// Fills kind and vector, in the space of the node; FALSE if the light has no direction.
    virtual bool describe(KsLightState& light) const = 0;
};
