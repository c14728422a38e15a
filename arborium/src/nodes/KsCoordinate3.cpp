#include <arborium/nodes/KsCoordinate3.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsCoordinate3, KsNode)

KsCoordinate3::KsCoordinate3()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("point", point, KbVec3f());
}

KsCoordinate3::~KsCoordinate3() = default;

void KsCoordinate3::doAction(KsAction* action)
{
    if (KsState* state = action->getState()) state->edit(state->coordinates) = this;
}

void KsCoordinate3::markChanged()
{
    m_stamp.renew();
    KsNode::markChanged();
}
