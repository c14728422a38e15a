#include <arborium/nodes/KsCylinder.h>

#include "nodes/ShapeSize.h"
#include "render/KsMeshBuilder.h"

KS_NODE_SOURCE(KsCylinder, KsShape)

KsCylinder::KsCylinder()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Part", {{"SIDES", SIDES}, {"TOP", TOP}, {"BOTTOM", BOTTOM}, {"ALL", ALL}});
    build.enumField("parts", parts, "Part", ALL);
    build.field("radius", radius, 1.0f);
    build.field("height", height, 2.0f);
}

KsCylinder::~KsCylinder() = default;

KsShape::Form KsCylinder::getForm(const KsState*)
{
    const int mask = parts.getValue();
    return sizedForm(ksCylinderMesh(mask & SIDES, mask & TOP, mask & BOTTOM),
                     KbVec3f(radius, height * 0.5f, radius));
}
