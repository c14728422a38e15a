#pragma once

#include <arborium/nodes/KsTransformation.h>

/// Scales what stands behind it about the origin.
class ARBORIUM_API KsScale : public KsTransformation {
    KS_NODE_HEADER(KsScale);

public:
    KsScale();

    KsSFVec3f scaleFactor; ///< Along x, y and z; below 0 it mirrors. Default (1, 1, 1).

protected:
    ~KsScale() override;
    void multInto(KbMatrix& matrix) const override;
};
