#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsNode.h>

/// Sets the diffuse colour of the surfaces behind it and leaves the rest of their looks.
class ARBORIUM_API KsBaseColor : public KsNode {
    KS_NODE_HEADER(KsBaseColor);

public:
    KsBaseColor();

    /// The first value counts; one that is no number, or none at all, leaves the colour that is in
    /// force. Default (0.8, 0.8, 0.8), which is set too.
    KsMFColor rgb;

    void doAction(KsAction* action) override;

protected:
    ~KsBaseColor() override;
};
