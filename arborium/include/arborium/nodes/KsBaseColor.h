#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsNode.h>

/// Sets the diffuse colour of the surfaces behind it and leaves the rest of their looks.
class ARBORIUM_API KsBaseColor : public KsNode {
    KS_NODE_HEADER(KsBaseColor);

public:
    KsBaseColor();

    KsMFColor rgb; ///< The first value counts. Default (0.8, 0.8, 0.8).

    void doAction(KsAction* action) override;

protected:
    ~KsBaseColor() override;
};
