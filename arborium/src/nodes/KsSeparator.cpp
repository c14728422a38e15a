#include <arborium/nodes/KsSeparator.h>

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsState.h>

#include <algorithm>

KS_NODE_SOURCE(KsSeparator, KsGroup)

KsSeparator::KsSeparator() { KsInstanceBuilder build(classRecord, this); }

KsSeparator::~KsSeparator() = default;

void KsSeparator::doAction(KsAction* action)
{
    KsState* state = action->getState();
    state->push();
    getChildren()->traverseInPath(action);
    state->pop();
}

void KsSeparator::GLRender(KsRenderAction* action)
{
    // Never the same number for two separators: one may stand where another was in memory.
    static std::uint64_t s_lastVersion = 0;
    if (action->isNodeChanged() || !m_drawVersion) m_drawVersion = ++s_lastVersion;
    if (action->reuse(this, m_drawVersion)) return;
    // A camera in it has to be met, wherever the rest is.
    const KbBox3f* box = getKeptBox();
    if (box && !m_holdsCamera && action->isOutOfView(*box)) return;
    const KsRenderAction::Recording recording(action, this, m_drawVersion);
    doAction(action);
}

void KsSeparator::getBoundingBox(KsGetBoundingBoxAction* action)
{
    const KsAction::PathCode code = action->getPathCode();
    const bool whole = code == KsAction::NO_PATH || code == KsAction::BELOW_PATH;
    if (whole && m_boxKept && !action->isNodeStale()) {
        action->extendBy(m_box);
        if (m_holdsCamera) action->m_metCamera = true;
        return;
    }
    if (whole) m_boxKept = false;

    // The box is gathered as if the separator stood at the root, so that it stays right wherever
    // the separator is met again.
    KsState* state = action->getState();
    const int outerUse = action->m_outermostUse;
    action->m_outermostUse = 1 << 30;
    const bool metBefore = action->m_metCamera;
    action->m_metCamera = false;
    const KbBox3f outerBox = action->exchange(KbBox3f());
    state->push();
    const int depth = state->getDepth();
    state->edit(state->modelMatrix).makeIdentity();
    getChildren()->traverseInPath(action);
    state->pop();
    const KbBox3f box = action->exchange(outerBox);
    action->extendBy(box);

    if (whole && action->m_outermostUse >= depth && !action->isTerminated()) {
        m_box = box;
        m_boxKept = true;
        m_holdsCamera = action->m_metCamera;
    }
    action->m_metCamera = action->m_metCamera || metBefore;
    action->m_outermostUse = std::min(action->m_outermostUse, outerUse);
}

void KsSeparator::getMatrix(KsGetMatrixAction* action)
{
    if (action->getPathCode() == KsAction::IN_PATH) getChildren()->traverseInPath(action);
}

void KsSeparator::rayPick(KsRayPickAction* action)
{
    const KbBox3f* box = getKeptBox();
    if (!box || !action->hasRay() || action->intersectBox(*box)) doAction(action);
}
