#pragma once

#include <arborium/nodes/KsNode.h>

/// Cuts the shapes behind it, up to the end of its separator: what lies on the side that the
/// plane's normal points to is kept. Boxes are not cut.
class ARBORIUM_API KsClipPlane : public KsNode {
    KS_NODE_HEADER(KsClipPlane);

public:
    KsClipPlane();

    KsSFPlane plane; ///< Default normal (1, 0, 0) at distance 0.
    KsSFBool on;     ///< Default TRUE.

    void doAction(KsAction* action) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;

protected:
    ~KsClipPlane() override;
};
