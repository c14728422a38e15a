#pragma once

#include <arborium/nodes/KsTransformation.h>

/// Places what stands behind it by any matrix.
class ARBORIUM_API KsMatrixTransform : public KsTransformation {
    KS_NODE_HEADER(KsMatrixTransform);

public:
    KsMatrixTransform();

    /// Default the identity. What stands behind a matrix that cannot be inverted, or is not finite,
    /// is not picked.
    KsSFMatrix matrix;

protected:
    ~KsMatrixTransform() override;
    void multInto(KbMatrix& target) const override;
};
