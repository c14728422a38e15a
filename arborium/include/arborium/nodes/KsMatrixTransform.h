#pragma once

#include <arborium/nodes/KsTransformation.h>

/// Places what stands behind it by any matrix.
class ARBORIUM_API KsMatrixTransform : public KsTransformation {
    KS_NODE_HEADER(KsMatrixTransform);

public:
    KsMatrixTransform();

    KsSFMatrix matrix; ///< Default the identity.

protected:
    ~KsMatrixTransform() override;
    void multInto(KbMatrix& target) const override;
};
