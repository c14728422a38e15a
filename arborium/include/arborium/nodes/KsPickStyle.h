#pragma once

#include <arborium/nodes/KsNode.h>

/// How picks see the shapes behind it. Without one, by their geometry.
class ARBORIUM_API KsPickStyle : public KsNode {
    KS_NODE_HEADER(KsPickStyle);

public:
    /// By their geometry, by their boxes, or not at all.
    enum Style { SHAPE = 0, BOUNDING_BOX = 1, UNPICKABLE = 2 };

    KsPickStyle();

    KsSFEnum style; ///< Default SHAPE.

    void doAction(KsAction* action) override;

protected:
    ~KsPickStyle() override;
};
