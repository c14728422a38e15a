#include <arborium/nodes/KsCone.h>

#include "nodes/ShapeSize.h"
#include "render/KsMeshBuilder.h"

KS_NODE_SOURCE(KsCone, KsShape)

KsCone::KsCone()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Part", {{"SIDES", SIDES}, {"BOTTOM", BOTTOM}, {"ALL", ALL}});
    build.enumField("parts", parts, "Part", ALL);
    build.field("bottomRadius", bottomRadius, 1.0f);
    build.field("height", height, 2.0f);
}

KsCone::~KsCone() = default;

KsShape::Form KsCone::getForm(const KsState*)
{
    const int mask = parts.getValue();
    return sizedForm(ksConeMesh(mask & SIDES, mask & BOTTOM),
                     KbVec3f(bottomRadius, height * 0.5f, bottomRadius));
}
