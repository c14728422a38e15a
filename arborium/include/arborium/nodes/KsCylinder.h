#pragma once

#include <arborium/nodes/KsShape.h>

/// A cylinder around the y axis, its middle at the origin. A negative size counts as positive; one
/// that is no number shows nothing.
class ARBORIUM_API KsCylinder : public KsShape {
    KS_NODE_HEADER(KsCylinder);

public:
    /// The mantle and the discs at its ends.
    enum Part { SIDES = 1, TOP = 2, BOTTOM = 4, ALL = 7 };

    KsSFBitMask parts; ///< What is there of it, to be seen and picked. Default ALL; 0 is nothing.
    KsSFFloat radius;  ///< Default 1.
    KsSFFloat height;  ///< Default 2.

    KsCylinder();
    Form getForm(const KsState* state) override;

protected:
    ~KsCylinder() override;
};
