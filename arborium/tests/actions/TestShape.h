#pragma once

#include "SceneTest.h"

#include <arborium/nodes/KsNode.h>

#include <functional>

/// A box that counts its visits.
class TestShape : public KsNode {
    KS_NODE_HEADER(TestShape);

public:
    TestShape();

    KsSFVec3f size; ///< Around the origin.
    bool usesFont = false;
    int boxVisits = 0;
    int pickVisits = 0;
    int renderVisits = 0;
    std::function<void()> duringBox; ///< Called in the middle of a bounding-box visit.
    std::function<void()> duringPick;

    KbBox3f box() const
    {
        const KbVec3f half = size.getValue() * 0.5f;
        return KbBox3f(-half, half);
    }
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void rayPick(KsRayPickAction* action) override;
    void GLRender(KsRenderAction* action) override;

protected:
    ~TestShape() override;
};

/// Knows the type of the test shape as well.
class ShapeTest : public SceneTest {
protected:
    ShapeTest() { TestShape::initClass(); }
};
