#include <arborium/nodes/KsDirectionalLight.h>

#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsDirectionalLight, KsLight)

KsDirectionalLight::KsDirectionalLight()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("direction", direction, KbVec3f(0, 0, -1));
}

KsDirectionalLight::~KsDirectionalLight() = default;

bool KsDirectionalLight::describe(KsLightState& light) const
{
    light.kind = KsLightState::Directional;
    light.vector = direction.getValue();
    return light.vector.normalize() > 0;
}
