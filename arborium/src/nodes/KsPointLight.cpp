#include <arborium/nodes/KsPointLight.h>

#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsPointLight, KsLight)

KsPointLight::KsPointLight()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("location", location, KbVec3f(0, 0, 1));
}

KsPointLight::~KsPointLight() = default;

bool KsPointLight::describe(KsLightState& light) const
{
    light.kind = KsLightState::Point;
    light.vector = location.getValue();
    return true;
}
