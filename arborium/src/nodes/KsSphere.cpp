#include <arborium/nodes/KsSphere.h>

#include "nodes/ShapeSize.h"
#include "render/KsMeshBuilder.h"

KS_NODE_SOURCE(KsSphere, KsShape)

KsSphere::KsSphere()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("radius", radius, 1.0f);
}

KsSphere::~KsSphere() = default;

KsShape::Form KsSphere::getForm(const KsState*)
{
    return sizedForm(ksSphereMesh(), KbVec3f(radius, radius, radius));
}
