#include <arborium/nodes/KsBaseColor.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsBaseColor, KsNode)

KsBaseColor::KsBaseColor()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("rgb", rgb, KsMaterialState().diffuse);
}

KsBaseColor::~KsBaseColor() = default;

void KsBaseColor::doAction(KsAction* action)
{
    KsState* state = action->getState();
    if (rgb.getNum() > 0 && rgb[0].isFinite()) state->edit(state->material).diffuse = rgb[0];
}
