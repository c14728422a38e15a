#include <arborium/nodes/KsNormal.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsNormal, KsNode)

KsNormal::KsNormal()
{
    KsInstanceBuilder build(classRecord, this);
    build.emptyField("vector", vector);
}

KsNormal::~KsNormal() = default;

void KsNormal::doAction(KsAction* action)
{
    if (KsState* state = action->getState()) state->edit(state->normals) = this;
}

void KsNormal::markChanged()
{
    m_stamp.renew();
    KsNode::markChanged();
}
