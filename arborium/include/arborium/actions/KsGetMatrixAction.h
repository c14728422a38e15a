#pragma once

#include <arborium/actions/KsAction.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbViewportRegion.h>

/// Computes a matrix from a space to that of the root: of a node its own (a group has none), of a
/// path the one in force behind its last node (all that transforms on it and in front of it).
class ARBORIUM_API KsGetMatrixAction : public KsAction {
public:
    explicit KsGetMatrixAction(const KbViewportRegion& viewport);
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    /// The window that nodes find in the state.
    void setViewportRegion(const KbViewportRegion& viewport) { m_viewport = viewport; }
    /// Of the last apply; the identity before the first one.
    const KbMatrix& getMatrix() const { return m_matrix; }
    /// The identity if the matrix cannot be inverted.
    KbMatrix getInverse() const { return m_matrix.inverse(); }
    /// For nodes: what they change, by multiplying their own on its left.
    KbMatrix& editMatrix() { return m_matrix; }

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    KbViewportRegion m_viewport;
    KbMatrix m_matrix;
};
