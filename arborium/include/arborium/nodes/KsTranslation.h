#pragma once

#include <arborium/nodes/KsTransformation.h>

/// Moves what stands behind it.
class ARBORIUM_API KsTranslation : public KsTransformation {
    KS_NODE_HEADER(KsTranslation);

public:
    KsTranslation();

    KsSFVec3f translation; ///< In units of the space in which the node stands. Default (0, 0, 0).

protected:
    ~KsTranslation() override;
    void multInto(KbMatrix& matrix) const override;
};
