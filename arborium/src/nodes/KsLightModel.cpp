#include <arborium/nodes/KsLightModel.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsLightModel, KsNode)

KsLightModel::KsLightModel()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Model", {{"BASE_COLOR", BASE_COLOR}, {"PHONG", PHONG}});
    build.enumField("model", model, "Model", PHONG);
}

KsLightModel::~KsLightModel() = default;

void KsLightModel::doAction(KsAction* action)
{
    KsState* state = action->getState();
    state->edit(state->material).lit = model.getValue() != BASE_COLOR;
}
