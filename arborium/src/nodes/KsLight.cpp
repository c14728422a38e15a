#include <arborium/nodes/KsLight.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

KS_ABSTRACT_NODE_SOURCE(KsLight, KsNode)

KsLight::KsLight()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("on", on, true);
    build.field("intensity", intensity, 1.0f);
    build.field("color", color, KbColor(1, 1, 1));
}

KsLight::~KsLight() = default;

void KsLight::doAction(KsAction* action)
{
    KsLightState light;
    if (!on.getValue() || !describe(light)) return;
    KsState* state = action->getState();
    const KbMatrix& matrix = state->modelMatrix.get();
    if (light.kind == KsLightState::Directional) {
        matrix.multDirMatrix(light.vector, light.vector);
        if (light.vector.normalize() <= 0) return;
    } else {
        matrix.multVecMatrix(light.vector, light.vector);
    }
    const float strength = intensity.getValue();
    light.color = color.getValue() * (strength < 0 ? 0 : strength);
    if (!light.vector.isFinite() || !light.color.isFinite()) return;
    state->edit(state->lights).push_back(light);
}
