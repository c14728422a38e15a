#pragma once

#include <arborium/actions/KsAction.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbViewportRegion.h>

/// Computes the matrix in force behind a node (apply to a node: the node's own) or at the end of a
/// path (the transforms on it and before it; of the last node too).
class ARBORIUM_API KsGetMatrixAction : public KsAction {
public:
    explicit KsGetMatrixAction(const KbViewportRegion& viewport);
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    /// The window for which cameras and what depends on it are asked.
    void setViewportRegion(const KbViewportRegion& viewport) { m_viewport = viewport; }
    /// The identity before the first apply.
    const KbMatrix& getMatrix() const { return m_matrix; }
    /// The identity if the matrix cannot be inverted.
    KbMatrix getInverse() const { return m_matrix.inverse(); }
    /// For nodes: what they change.
    KbMatrix& editMatrix() { return m_matrix; }

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    KbViewportRegion m_viewport;
    KbMatrix m_matrix;
};
