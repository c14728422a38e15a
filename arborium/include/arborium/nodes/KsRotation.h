#pragma once

#include <arborium/nodes/KsTransformation.h>

/// Rotates what stands behind it about the origin.
class ARBORIUM_API KsRotation : public KsTransformation {
    KS_NODE_HEADER(KsRotation);

public:
    KsRotation();

    KsSFRotation rotation; ///< Axis and angle in radians. Default none.

protected:
    ~KsRotation() override;
    void multInto(KbMatrix& matrix) const override;
};
