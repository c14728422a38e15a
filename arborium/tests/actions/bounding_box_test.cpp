#include "TestShape.h"

#include "MessageGuard.h"

#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsMatrixTransform.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>

#include <cmath>
#include <limits>

class BoundingBox : public ShapeTest {
protected:
    KsRef<KsSeparator> root{new KsSeparator};
};

TEST_F(BoundingBox, ofAnEmptySceneIsEmpty)
{
    EXPECT_TRUE(boxOf(root).isEmpty());
    EXPECT_TRUE(boxOf(nullptr).isEmpty());
}

// shows: KsAction::apply, KsGetBoundingBoxAction, KsGetBoundingBoxAction::getBoundingBox
TEST_F(BoundingBox, ofTheLastApplyCounts)
{
    addTo<TestShape>(root);
    KsGetBoundingBoxAction action{KbViewportRegion()};
    action.apply(root);
    EXPECT_TRUE(near(action.getBoundingBox(), {-1, -1, -1}, {1, 1, 1}));
    action.apply(static_cast<KsNode*>(nullptr));
    EXPECT_TRUE(action.getBoundingBox().isEmpty());
}

TEST_F(BoundingBox, followsTheTransformsBeforeAShape)
{
    addTo<KsTranslation>(root)->translation = KbVec3f(10, 0, 0);
    addTo<KsScale>(root)->scaleFactor = KbVec3f(2, 3, 4);
    addTo<TestShape>(root);
    EXPECT_TRUE(near(boxOf(root), {8, -3, -4}, {12, 3, 4}));
    addTo<KsTranslation>(root)->translation = KbVec3f(1, 0, 0); // behind the shape
    EXPECT_TRUE(near(boxOf(root), {8, -3, -4}, {12, 3, 4}));
}

// shows: KsNode::getBoundingBox
TEST_F(BoundingBox, turnsWithARotation)
{
    addTo<KsRotation>(root)->rotation = KbRotation(KbVec3f(0, 0, 1), float(M_PI / 2));
    addTo<TestShape>(root)->size = KbVec3f(4, 2, 2);
    EXPECT_TRUE(near(boxOf(root), {-1, -2, -1}, {1, 2, 1}));
}

TEST_F(BoundingBox, ofTransformsInsideSeparatorsEndsWithThem)
{
    auto* moved = addTo<KsSeparator>(root);
    addTo<KsTranslation>(moved)->translation = KbVec3f(5, 0, 0);
    addTo<TestShape>(moved);
    addTo<TestShape>(root);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {6, 1, 1}));
}

TEST_F(BoundingBox, ofTransformsInsideGroupsGoesOn)
{
    addTo<KsTranslation>(addTo<KsGroup>(root))->translation = KbVec3f(5, 0, 0);
    addTo<TestShape>(root);
    EXPECT_TRUE(near(boxOf(root), {4, -1, -1}, {6, 1, 1}));
}

TEST_F(BoundingBox, holdsWhatASwitchShows)
{
    auto* choice = addTo<KsSwitch>(root);
    addTo<TestShape>(choice)->size = KbVec3f(2, 2, 2);
    addTo<TestShape>(choice)->size = KbVec3f(4, 4, 4);
    EXPECT_TRUE(boxOf(root).isEmpty());
    choice->whichChild = 0;
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
    choice->whichChild = KsSwitch::ALL;
    EXPECT_TRUE(near(boxOf(root), {-2, -2, -2}, {2, 2, 2}));
    choice->whichChild = 2;
    EXPECT_TRUE(boxOf(root).isEmpty());
}

TEST_F(BoundingBox, ignoresCamerasAndClipPlanes)
{
    addTo<KsOrthographicCamera>(root)->position = KbVec3f(0, 0, 100);
    addTo<KsClipPlane>(root);
    addTo<TestShape>(root);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
}

TEST_F(BoundingBox, ignoresWhatIsNoNumber)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    addTo<TestShape>(root);
    auto* broken = addTo<KsSeparator>(root);
    auto* move = addTo<KsTranslation>(broken);
    move->translation = KbVec3f(nan, 0, 0);
    addTo<TestShape>(broken);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
    move->translation = KbVec3f(infinite, 0, 0);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
    move->translation = KbVec3f(3, 0, 0);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {4, 1, 1}));
}

TEST_F(BoundingBox, ofAPathHoldsWhatIsBelowItsEnd)
{
    addTo<KsTranslation>(root)->translation = KbVec3f(10, 0, 0);
    addTo<TestShape>(root)->size = KbVec3f(100, 100, 100); // beside the path
    auto* inner = addTo<KsSeparator>(root);
    addTo<TestShape>(inner);
    addTo<TestShape>(root)->size = KbVec3f(100, 100, 100);
    KsRef<KsPath> path(new KsPath(root));
    ASSERT_TRUE(path->append(inner));
    KsGetBoundingBoxAction action{KbViewportRegion()};
    action.apply(path.get());
    EXPECT_TRUE(near(action.getBoundingBox(), {9, -1, -1}, {11, 1, 1}));
}

// ---- what separators keep ----

TEST_F(BoundingBox, isKeptUntilALeafChanges)
{
    TestShape* shapes[3][3];
    for (auto& row : shapes) {
        auto* group = addTo<KsSeparator>(root);
        for (TestShape*& shape : row) {
            auto* own = addTo<KsSeparator>(group);
            shape = addTo<TestShape>(own);
        }
    }
    const auto visits = [&shapes] {
        int sum = 0;
        for (auto& row : shapes)
            for (TestShape* shape : row) sum += shape->boxVisits;
        return sum;
    };
    boxOf(root);
    EXPECT_EQ(visits(), 9);
    boxOf(root);
    EXPECT_EQ(visits(), 9);
    shapes[1][1]->size = KbVec3f(20, 2, 2);
    EXPECT_TRUE(near(boxOf(root), {-10, -1, -1}, {10, 1, 1}));
    EXPECT_EQ(visits(), 10); // its neighbours have boxes of their own
    EXPECT_EQ(shapes[1][1]->boxVisits, 2);
}

TEST_F(BoundingBox, isKeptInTheSpaceOfTheSeparator)
{
    auto* move = addTo<KsTranslation>(root);
    auto* inner = addTo<KsSeparator>(root);
    auto* shape = addTo<TestShape>(inner);
    boxOf(root);
    move->translation = KbVec3f(7, 0, 0);
    EXPECT_TRUE(near(boxOf(root), {6, -1, -1}, {8, 1, 1}));
    EXPECT_EQ(shape->boxVisits, 1);
    EXPECT_TRUE(near(boxOf(inner), {-1, -1, -1}, {1, 1, 1}));
}

TEST_F(BoundingBox, isRightAfterAChangeDuringTheVisit)
{
    auto* inner = addTo<KsSeparator>(root);
    auto* shape = addTo<TestShape>(inner);
    auto* later = addTo<TestShape>(inner);
    later->duringBox = [shape] {
        if (shape->size.getValue()[0] < 3) shape->size = KbVec3f(8, 2, 2);
    };
    boxOf(root);
    EXPECT_TRUE(near(boxOf(root), {-4, -1, -1}, {4, 1, 1}));
}

TEST_F(BoundingBox, isNotKeptWhereAShapeUsesAFontFromOutside)
{
    auto* before = addTo<KsGroup>(root);
    auto* inner = addTo<KsSeparator>(root);
    auto* shape = addTo<TestShape>(inner);
    shape->usesFont = true;
    boxOf(root);
    boxOf(root);
    EXPECT_EQ(shape->boxVisits, 2); // a font may come any time, without a change of the inner one
    addTo<KsFont>(before);
    boxOf(root);
    EXPECT_EQ(shape->boxVisits, 3);
    boxOf(root);
    EXPECT_EQ(shape->boxVisits, 3); // kept by the outer separator, which holds the font
}

TEST_F(BoundingBox, isKeptWhereTheFontStandsInside)
{
    auto* inner = addTo<KsSeparator>(root);
    addTo<KsFont>(inner);
    auto* shape = addTo<TestShape>(inner);
    shape->usesFont = true;
    auto* sibling = addTo<KsTranslation>(root);
    boxOf(root);
    sibling->translation = KbVec3f(1, 1, 1);
    boxOf(root);
    EXPECT_EQ(shape->boxVisits, 1);
}

TEST_F(BoundingBox, isNotKeptWhereASwitchInheritsFromOutside)
{
    auto* outer = addTo<KsSwitch>(root);
    outer->whichChild = KsSwitch::ALL;
    auto* inner = addTo<KsSeparator>(outer);
    auto* heir = addTo<KsSwitch>(inner);
    heir->whichChild = KsSwitch::INHERIT;
    addTo<TestShape>(heir);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
    outer->whichChild = 0;
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
    addTo<TestShape>(heir)->size = KbVec3f(4, 4, 4);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
    outer->whichChild = KsSwitch::ALL;
    EXPECT_TRUE(near(boxOf(root), {-2, -2, -2}, {2, 2, 2}));
}

TEST_F(BoundingBox, ofASeparatorThatStandsInTwoPlacesIsRightInBoth)
{
    KsRef<KsSeparator> shared(new KsSeparator);
    auto* shape = addTo<TestShape>(shared);
    root->addChild(shared);
    addTo<KsTranslation>(root)->translation = KbVec3f(10, 0, 0);
    root->addChild(shared);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {11, 1, 1}));
    EXPECT_EQ(shape->boxVisits, 1);
    shape->size = KbVec3f(4, 4, 4);
    EXPECT_TRUE(near(boxOf(root), {-2, -2, -2}, {12, 2, 2}));
}

TEST_F(BoundingBox, isKeptApartFromTraversalsAlongPaths)
{
    auto* inner = addTo<KsSeparator>(root);
    auto* first = addTo<TestShape>(inner);
    auto* second = addTo<TestShape>(inner);
    second->size = KbVec3f(6, 6, 6);
    KsRef<KsPath> path(new KsPath(root));
    path->append(inner);
    path->append(first);
    KsGetBoundingBoxAction action{KbViewportRegion()};
    action.apply(path.get());
    EXPECT_TRUE(near(action.getBoundingBox(), {-1, -1, -1}, {1, 1, 1}));
    EXPECT_TRUE(near(boxOf(root), {-3, -3, -3}, {3, 3, 3}));
    first->size = KbVec3f(8, 8, 8);
    action.apply(path.get());
    EXPECT_TRUE(near(action.getBoundingBox(), {-4, -4, -4}, {4, 4, 4}));
    EXPECT_TRUE(near(boxOf(root), {-4, -4, -4}, {4, 4, 4}));
}

TEST_F(BoundingBox, appearsForNodesAddedInSilence)
{
    boxOf(root);
    root->enableNotify(false);
    addTo<TestShape>(root);
    root->enableNotify(true);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, -1}, {1, 1, 1}));
}

// ---- limits ----

TEST_F(BoundingBox, ofATreeDeeperThanTheLimitLeavesOutTheRestWithOneMessage)
{
    const int levels = KsLimits::current().nesting * 3;
    KsGroup* tail = root;
    for (int i = 1; i < levels - 1; ++i) tail = addTo<KsGroup>(tail);
    auto* last = addTo<TestShape>(tail); // at the limit
    EXPECT_FALSE(boxOf(root).isEmpty());
    tail->removeChild(last);
    tail = addTo<KsGroup>(tail);
    addTo<TestShape>(tail);
    addTo<TestShape>(tail);
    ExpectedMessages messages("KsAction::traverse", "deeper than 1536 levels");
    EXPECT_TRUE(boxOf(root).isEmpty());
}

TEST_F(BoundingBox, ofNodesSharedTooOftenEndsWithOneMessage)
{
    KsLimits::current().visits = 10000;
    KsRef<KsGroup> level(new KsGroup);
    addTo<TestShape>(level);
    for (int i = 0; i < 40; ++i) {
        KsRef<KsGroup> above(new KsGroup);
        above->addChild(level);
        above->addChild(level);
        level = above;
    }
    ExpectedMessages messages("KsAction::traverse", "more than 10000 nodes");
    boxOf(level);
}
