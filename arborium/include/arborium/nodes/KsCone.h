#pragma once

#include <arborium/nodes/KsShape.h>

/// A cone around the y axis, its middle at the origin and its apex up. A negative size counts as
/// positive; one that is no number shows nothing.
class ARBORIUM_API KsCone : public KsShape {
    KS_NODE_HEADER(KsCone);

public:
    /// The mantle and the disc below it.
    enum Part { SIDES = 1, BOTTOM = 2, ALL = 3 };

    KsSFBitMask parts; ///< What is there of it, to be seen and picked. Default ALL; 0 is nothing.
    KsSFFloat bottomRadius; ///< Default 1.
    KsSFFloat height;       ///< Default 2.

    KsCone();
    Form getForm(const KsState* state) override;

protected:
    ~KsCone() override;
};
