#pragma once

#include <arborium/nodes/KsShape.h>

/// A sphere around the origin. A negative radius counts as positive; one that is no number shows
/// nothing.
class ARBORIUM_API KsSphere : public KsShape {
    KS_NODE_HEADER(KsSphere);

public:
    KsSFFloat radius; ///< Default 1.

    KsSphere();
    Form getForm(const KsState* state) override;

protected:
    ~KsSphere() override;
};
