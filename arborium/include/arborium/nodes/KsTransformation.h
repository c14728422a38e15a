#pragma once

#include <arborium/base/KbMatrix.h>
#include <arborium/nodes/KsNode.h>

/// Base of the nodes that place what stands behind them, up to the end of their separator. Of two
/// transformations the one that stands nearer to the shape acts first. Where the product is not
/// finite nothing is seen, measured or picked.
class ARBORIUM_API KsTransformation : public KsNode {
    KS_NODE_HEADER(KsTransformation);

public:
    /// The matrix that the fields describe.
    KbMatrix getLocalMatrix() const;

    void doAction(KsAction* action) override;
    void getMatrix(KsGetMatrixAction* action) override;

protected:
    KsTransformation();
    ~KsTransformation() override;
    /// Multiplies the node's matrix in front of `matrix`.
    virtual void multInto(KbMatrix& matrix) const = 0;
};
