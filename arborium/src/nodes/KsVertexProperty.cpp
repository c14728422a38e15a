#include <arborium/nodes/KsVertexProperty.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsVertexProperty, KsNode)

KsVertexProperty::KsVertexProperty()
{
    KsInstanceBuilder build(classRecord, this);
    build.emptyField("vertex", vertex);
    build.emptyField("normal", normal);
    build.emptyField("texCoord", texCoord);
}

KsVertexProperty::~KsVertexProperty() = default;

void KsVertexProperty::doAction(KsAction* action)
{
    KsState* state = action->getState();
    if (!state) return;
    if (vertex.getNum()) state->edit(state->coordinates) = this;
    if (normal.getNum()) state->edit(state->normals) = this;
    if (texCoord.getNum()) state->edit(state->vertexProperty) = this;
}

void KsVertexProperty::markChanged()
{
    m_stamp.renew();
    KsNode::markChanged();
}
