#include <arborium/actions/KsGetBoundingBoxAction.h>

#include <arborium/actions/KsState.h>
#include <arborium/nodes/KsNode.h>

KsGetBoundingBoxAction::KsGetBoundingBoxAction(const KbViewportRegion& viewport)
    : m_viewport(viewport)
{}

KsType KsGetBoundingBoxAction::getClassTypeId()
{
    static const KsType type =
        KsType::createType(KsAction::getClassTypeId(), "GetBoundingBoxAction");
    return type;
}

void KsGetBoundingBoxAction::apply(const KsPathList& paths)
{
    KbBox3f all;
    for (int i = 0; i < paths.getLength(); ++i) {
        const KsRef<KsPath> path(paths[i]); // the list may change meanwhile
        if (!path) continue;
        apply(path.get());
        all.extendBy(m_box);
    }
    m_box = all;
}

void KsGetBoundingBoxAction::beginTraversal(KsNode* root)
{
    m_box.makeEmpty();
    m_outermostUse = 1 << 30;
    m_metCamera = false;
    m_state->edit(m_state->viewport) = m_viewport;
    KsAction::beginTraversal(root);
}

void KsGetBoundingBoxAction::visit(KsNode* node)
{
    m_nodeStale = node->isStale(KsNode::StaleBox);
    // Before the visit, so that a change during it marks the node again. Along a path not all of
    // what is below a node is visited, so that its mark must stay.
    const PathCode code = getPathCode();
    if (code == NO_PATH || code == BELOW_PATH) node->clearStale(KsNode::StaleBox);
    node->getBoundingBox(this);
}

void KsGetBoundingBoxAction::extendBy(const KbBox3f& localBox)
{
    if (localBox.isEmpty()) return;
    KbBox3f box(localBox);
    const KbMatrix& matrix = m_state->modelMatrix.get();
    if (!matrix.isIdentity()) box.transform(matrix);
    extendByRootBox(box);
}

bool KsGetBoundingBoxAction::passBy(const KbBox3f& box)
{
    KbBox3f all(box);
    const KbMatrix& matrix = m_state->modelMatrix.get();
    if (!matrix.isIdentity()) {
        // What is around boxes that were turned is less than a turned box around them.
        for (int i = 0; i < 12; ++i)
            if (i % 5 != 0 && matrix[i / 4][i % 4] != 0) return false;
        all.transform(matrix);
    }
    // One of them alone may be beyond all numbers.
    if (!all.isEmpty() && (!all.getMin().isFinite() || !all.getMax().isFinite())) return false;
    extendByRootBox(all);
    return true;
}

void KsGetBoundingBoxAction::extendByRootBox(const KbBox3f& box)
{
    // One number that is none would spoil each box above.
    if (getPathCode() == OFF_PATH || !box.getMin().isFinite() || !box.getMax().isFinite()) return;
    m_box.extendBy(box);
}

KbBox3f KsGetBoundingBoxAction::exchange(const KbBox3f& box)
{
    const KbBox3f former = m_box;
    m_box = box;
    return former;
}
