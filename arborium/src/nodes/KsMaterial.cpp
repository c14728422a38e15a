#include <arborium/nodes/KsMaterial.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

#include <algorithm>
#include <cmath>

namespace {

void take(const KsMFColor& field, KbColor& target)
{
    if (!field.isDefault() && field.getNum() > 0 && field[0].isFinite()) target = field[0];
}

void take(const KsMFFloat& field, float& target)
{
    if (!field.isDefault() && field.getNum() > 0 && std::isfinite(field[0]))
        target = std::clamp(field[0], 0.0f, 1.0f);
}

} // namespace

KS_NODE_SOURCE(KsMaterial, KsNode)

KsMaterial::KsMaterial()
{
    KsInstanceBuilder build(classRecord, this);
    const KsMaterialState initial;
    build.field("ambientColor", ambientColor, initial.ambient);
    build.field("diffuseColor", diffuseColor, initial.diffuse);
    build.field("specularColor", specularColor, initial.specular);
    build.field("emissiveColor", emissiveColor, initial.emissive);
    build.field("shininess", shininess, initial.shininess);
    build.field("transparency", transparency, initial.transparency);
}

KsMaterial::~KsMaterial() = default;

void KsMaterial::doAction(KsAction* action)
{
    KsState* state = action->getState();
    KsMaterialState& material = state->edit(state->material);
    take(ambientColor, material.ambient);
    take(diffuseColor, material.diffuse);
    take(specularColor, material.specular);
    take(emissiveColor, material.emissive);
    take(shininess, material.shininess);
    take(transparency, material.transparency);
}
