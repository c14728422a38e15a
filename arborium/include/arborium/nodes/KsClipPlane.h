#pragma once

#include <arborium/nodes/KsNode.h>

/// Cuts the shapes behind it, up to the end of its separator: what lies on the side that the
/// plane's normal points to is kept. What is cut off is neither drawn nor picked; boxes are not
/// cut. Several planes cut together. A plane that the transforms before it move to nowhere cuts
/// nothing.
class ARBORIUM_API KsClipPlane : public KsNode {
    KS_NODE_HEADER(KsClipPlane);

public:
    KsClipPlane();

    KsSFPlane
        plane;   ///< In the space in which the node stands. Default normal (1, 0, 0), distance 0.
    KsSFBool on; ///< FALSE cuts nothing. Default TRUE.

    void doAction(KsAction* action) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;

protected:
    ~KsClipPlane() override;
};
