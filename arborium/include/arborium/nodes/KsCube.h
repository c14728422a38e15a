#pragma once

#include <arborium/nodes/KsShape.h>

/// A box around the origin, its edges along the axes. A negative size counts as positive; one that
/// is no number shows nothing.
class ARBORIUM_API KsCube : public KsShape {
    KS_NODE_HEADER(KsCube);

public:
    KsSFFloat width;  ///< Along x. Default 2.
    KsSFFloat height; ///< Along y. Default 2.
    KsSFFloat depth;  ///< Along z. Default 2.

    KsCube();
    Form getForm(const KsState* state) override;

protected:
    ~KsCube() override;
};
