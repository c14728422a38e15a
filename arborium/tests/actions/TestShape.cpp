#include "TestShape.h"

#include <arborium/render/KsMesh.h>

KS_NODE_SOURCE(TestShape, KsNode)

TestShape::TestShape()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("size", size, KbVec3f(2, 2, 2));
}

TestShape::~TestShape() = default;

void TestShape::getBoundingBox(KsGetBoundingBoxAction* action)
{
    ++boxVisits;
    if (duringBox) duringBox();
    if (usesFont) action->usesStateOf(action->getState()->font.setAt());
    action->extendBy(box());
}

void TestShape::rayPick(KsRayPickAction* action)
{
    ++pickVisits;
    if (duringPick) duringPick();
    if (action->intersectBox(box())) action->addBoxIntersection(box());
}

void TestShape::GLRender(KsRenderAction* action)
{
    ++renderVisits;
    static const KsMeshPtr mesh = [] {
        auto made = std::make_shared<KsMesh>();
        made->positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        made->indices = {0, 1, 2};
        made->computeBox();
        return made;
    }();
    KbMatrix scale;
    scale.setScale(size.getValue());
    action->draw(mesh, scale);
}
