#include <arborium/nodes/KsCube.h>

#include "nodes/ShapeSize.h"
#include "render/KsMeshBuilder.h"

KS_NODE_SOURCE(KsCube, KsShape)

KsCube::KsCube()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("width", width, 2.0f);
    build.field("height", height, 2.0f);
    build.field("depth", depth, 2.0f);
}

KsCube::~KsCube() = default;

KsShape::Form KsCube::getForm(const KsState*)
{
    return sizedForm(ksBoxMesh(), KbVec3f(width, height, depth) * 0.5f);
}
