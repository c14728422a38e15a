#include <arborium/actions/KsGetMatrixAction.h>

#include <arborium/actions/KsState.h>
#include <arborium/nodes/KsNode.h>

KsGetMatrixAction::KsGetMatrixAction(const KbViewportRegion& viewport) : m_viewport(viewport) {}

KsType KsGetMatrixAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "GetMatrixAction");
    return type;
}

void KsGetMatrixAction::beginTraversal(KsNode* root)
{
    m_matrix.makeIdentity();
    m_state->edit(m_state->viewport) = m_viewport;
    KsAction::beginTraversal(root);
}

void KsGetMatrixAction::visit(KsNode* node) { node->getMatrix(this); }
