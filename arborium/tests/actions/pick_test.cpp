#include "TestShape.h"

#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>

#include <limits>

class Pick : public ShapeTest {
protected:
    /// A shape of its own at a place.
    TestShape* shapeAt(const KbVec3f& place, KsGroup* parent = nullptr)
    {
        auto* own = addTo<KsSeparator>(parent ? parent : root.get());
        addTo<KsTranslation>(own)->translation = place;
        return addTo<TestShape>(own);
    }
    /// What a ray along -z from z = 100 meets first at (x, y).
    KsNode* at(float x, float y)
    {
        pick.setRay({x, y, 100}, {0, 0, -1});
        pick.apply(root);
        return pick.getPickedPoint() ? pick.getPickedPoint()->getPath()->getTail() : nullptr;
    }
    KsRef<KsSeparator> root{new KsSeparator};
    KsRayPickAction pick{KbViewportRegion(100, 100)};
};

// shows: KsPickedPoint::getPoint, KsPickedPoint::getDistance, KsRayPickAction,
// KsRayPickAction::setRay, KsRayPickAction::getPickedPoint
TEST_F(Pick, meetsTheNearestShape)
{
    TestShape* back = shapeAt({0, 0, 0});
    TestShape* front = shapeAt({0.5f, 0, 10});
    EXPECT_EQ(at(0, 0), front);
    EXPECT_EQ(at(-0.75f, 0), back);
    EXPECT_EQ(at(3, 0), nullptr);
    ASSERT_EQ(at(1, 0.25f), front);
    const KsPickedPoint* hit = pick.getPickedPoint();
    EXPECT_TRUE(near(hit->getPoint(), {1, 0.25f, 11}));
    EXPECT_TRUE(near(hit->getObjectPoint(), {0.5f, 0.25f, 1}));
    EXPECT_TRUE(near(hit->getNormal(), {0, 0, 1}));
    EXPECT_NEAR(hit->getDistance(), 89, 1e-3);
    EXPECT_EQ(hit->getPath()->getLength(), 3);
    EXPECT_EQ(hit->getPath()->getHead(), root.get());
    EXPECT_EQ(pick.getPickedPointsListLength(), 1);
    EXPECT_EQ(pick.getPickedPoint(1), nullptr);
    EXPECT_EQ(pick.getUnsortedPickedPoint(-1), nullptr);
}

// shows: KsPickedPoint::getPath, KsRayPickAction::setPickAll,
// KsRayPickAction::getPickedPointsListLength, KsRayPickAction::getUnsortedPickedPoint
TEST_F(Pick, ofAllShapesSortsThemByDistance)
{
    TestShape* middle = shapeAt({0, 0, 5});
    TestShape* front = shapeAt({0, 0, 10});
    TestShape* back = shapeAt({0, 0, 0});
    pick.setPickAll(true);
    at(0, 0);
    ASSERT_EQ(pick.getPickedPointsListLength(), 3);
    EXPECT_EQ(pick.getPickedPoint(0)->getPath()->getTail(), front);
    EXPECT_EQ(pick.getPickedPoint(1)->getPath()->getTail(), middle);
    EXPECT_EQ(pick.getPickedPoint(2)->getPath()->getTail(), back);
    EXPECT_EQ(pick.getUnsortedPickedPoint(0)->getPath()->getTail(), middle);
    EXPECT_EQ(pick.getUnsortedPickedPoint(2)->getPath()->getTail(), back);
}

TEST_F(Pick, amongEqualDistancesTakesWhatWasMetFirst)
{
    TestShape* first = shapeAt({0, 0, 0});
    shapeAt({0.5f, 0, 0});
    EXPECT_EQ(at(0.25f, 0), first);
}

// shows: KsPickedPoint::getObjectPoint
TEST_F(Pick, followsTransforms)
{
    addTo<KsTranslation>(root)->translation = KbVec3f(10, 0, 0);
    addTo<KsRotation>(root)->rotation = KbRotation(KbVec3f(0, 0, 1), 1.5707963f);
    addTo<KsScale>(root)->scaleFactor = KbVec3f(4, 1, 1);
    auto* shape = addTo<TestShape>(root);
    EXPECT_EQ(at(10, 3.9f), shape); // its long side stands upright
    EXPECT_EQ(at(10, 4.1f), nullptr);
    EXPECT_EQ(at(11.1f, 0), nullptr);
    ASSERT_EQ(at(10, 2), shape);
    EXPECT_TRUE(near(pick.getPickedPoint()->getObjectPoint(), {0.5f, 0, 1}));
}

// shows: KsPickedPoint::getNormal
TEST_F(Pick, turnsNormalsAsSurfacesDo)
{
    addTo<KsRotation>(root)->rotation = KbRotation(KbVec3f(0, 1, 0), 0.5f);
    addTo<KsScale>(root)->scaleFactor = KbVec3f(10, 1, 0.1f);
    addTo<TestShape>(root);
    ASSERT_NE(at(0, 0), nullptr);
    EXPECT_TRUE(near(pick.getPickedPoint()->getNormal(), {std::sin(0.5f), 0, std::cos(0.5f)}));
}

TEST_F(Pick, seesWhatASwitchShows)
{
    auto* choice = addTo<KsSwitch>(root);
    auto* shape = addTo<TestShape>(choice);
    EXPECT_EQ(at(0, 0), nullptr);
    choice->whichChild = 0;
    EXPECT_EQ(at(0, 0), shape);
}

TEST_F(Pick, passesByWhatAPlaneCutsOff)
{
    auto* clipped = addTo<KsSeparator>(root);
    addTo<KsTranslation>(clipped)->translation = KbVec3f(0.5f, 0, 0);
    auto* plane = addTo<KsClipPlane>(clipped); // keeps x >= 0.5 of the world
    addTo<KsTranslation>(clipped)->translation = KbVec3f(-0.5f, 0, 0);
    auto* front = addTo<TestShape>(clipped);
    TestShape* back = shapeAt({0, 0, -10}); // outside of the separator
    EXPECT_EQ(at(0.75f, 0), front);
    EXPECT_EQ(at(0.25f, 0), back);
    plane->on = false;
    EXPECT_EQ(at(0.25f, 0), front);
}

TEST_F(Pick, obeysPickStyles)
{
    auto* style = addTo<KsPickStyle>(root);
    auto* shape = addTo<TestShape>(root);
    EXPECT_EQ(at(0, 0), shape);
    style->style = KsPickStyle::UNPICKABLE;
    EXPECT_EQ(at(0, 0), nullptr);
    style->style = KsPickStyle::BOUNDING_BOX;
    EXPECT_EQ(at(0, 0), shape);
}

TEST_F(Pick, endsAPickStyleWithItsSeparator)
{
    auto* inner = addTo<KsSeparator>(root);
    addTo<KsPickStyle>(inner)->style = KsPickStyle::UNPICKABLE;
    addTo<TestShape>(inner);
    TestShape* behind = shapeAt({0, 0, -5});
    EXPECT_EQ(at(0, 0), behind);
}

// shows: KsRayPickAction::intersectBox
TEST_F(Pick, leavesOutSeparatorsWhoseKeptBoxItMisses)
{
    TestShape* left = shapeAt({-10, 0, 0});
    TestShape* right = shapeAt({10, 0, 0});
    at(10, 0);
    EXPECT_EQ(left->pickVisits, 1); // no box is known yet, and a pick measures none
    EXPECT_EQ(left->boxVisits, 0);
    boxOf(root);
    EXPECT_EQ(at(10, 0), right);
    EXPECT_EQ(left->pickVisits, 1);
    EXPECT_EQ(right->pickVisits, 2);
    left->size = KbVec3f(50, 2, 2); // its box is known no more
    EXPECT_EQ(at(5, 0), left);
}

TEST_F(Pick, leavesOutSeparatorsBehindTheNearestHit)
{
    shapeAt({0, 0, 10});
    TestShape* back = shapeAt({0, 0, 0});
    boxOf(root);
    at(0, 0);
    EXPECT_EQ(back->pickVisits, 0);
    pick.setPickAll(true);
    at(0, 0);
    EXPECT_EQ(back->pickVisits, 1);
}

// shows: KsRayPickAction::setPoint, KsRayPickAction::setNormalizedPoint
TEST_F(Pick, needsACameraForAPoint)
{
    auto* shape = addTo<TestShape>(root);
    pick.setPoint({50, 50});
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPoint(), nullptr);
    auto* camera = new KsOrthographicCamera;
    root->insertChild(camera, 0);
    camera->position = KbVec3f(0, 0, 5);
    camera->height = 10;
    pick.apply(root);
    ASSERT_NE(pick.getPickedPoint(), nullptr);
    EXPECT_EQ(pick.getPickedPoint()->getPath()->getTail(), shape);
    EXPECT_TRUE(near(pick.getPickedPoint()->getPoint(), {0, 0, 1}));
    pick.setPoint({59, 50}); // ten pixels for a unit
    pick.apply(root);
    ASSERT_NE(pick.getPickedPoint(), nullptr);
    EXPECT_NEAR(pick.getPickedPoint()->getPoint()[0], 0.9f, 1e-4);
    pick.setPoint({75, 50});
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPoint(), nullptr);
    pick.setNormalizedPoint({0.5f, 0.42f});
    pick.apply(root);
    ASSERT_NE(pick.getPickedPoint(), nullptr);
    EXPECT_NEAR(pick.getPickedPoint()->getPoint()[1], -0.8f, 1e-4);
}

TEST_F(Pick, endsAtThePlanesOfTheCamera)
{
    auto* camera = addTo<KsOrthographicCamera>(root);
    camera->position = KbVec3f(0, 0, 5);
    camera->height = 10;
    addTo<TestShape>(root); // its front at a distance of 4
    pick.setPoint({50, 50});
    const auto isHit = [this] {
        pick.apply(root);
        return pick.getPickedPoint() != nullptr;
    };
    EXPECT_TRUE(isHit());
    camera->farDistance = 3.9f;
    EXPECT_FALSE(isHit());
    camera->farDistance = 20;
    camera->nearDistance = 4.1f; // inside of the shape: its back is seen
    ASSERT_TRUE(isHit());
    EXPECT_TRUE(near(pick.getPickedPoint()->getPoint(), {0, 0, -1}));
    camera->nearDistance = 6.1f;
    EXPECT_FALSE(isHit());
}

TEST_F(Pick, goesThroughACameraThatIsMovedAndTurned)
{
    addTo<KsTranslation>(root)->translation = KbVec3f(20, 0, 0);
    addTo<KsRotation>(root)->rotation = KbRotation(KbVec3f(0, 1, 0), 1.5707963f);
    auto* camera = addTo<KsPerspectiveCamera>(root);
    camera->position = KbVec3f(0, 0, 0);
    camera->farDistance = 100;
    // The camera stands at x = 20 now and looks along -x.
    auto* scene = addTo<KsSeparator>(root);
    addTo<KsTranslation>(scene)->translation = KbVec3f(0, 0, -20);
    auto* shape = addTo<TestShape>(scene);
    pick.setPoint({50, 50});
    pick.apply(root);
    ASSERT_NE(pick.getPickedPoint(), nullptr);
    EXPECT_EQ(pick.getPickedPoint()->getPath()->getTail(), shape);
    EXPECT_TRUE(near(pick.getPickedPoint()->getPoint(), {1, 0, 0}, 1e-3f));
    EXPECT_TRUE(near(pick.getPickedPoint()->getNormal(), {1, 0, 0}, 1e-3f));
}

TEST_F(Pick, ofARayObeysItsDistances)
{
    shapeAt({0, 0, 0});
    const auto isHit = [this](float nearest, float farthest) {
        pick.setRay({0, 0, 10}, {0, 0, -5}, nearest, farthest);
        pick.apply(root);
        return pick.getPickedPoint() != nullptr;
    };
    EXPECT_TRUE(isHit(0, -1));
    EXPECT_TRUE(isHit(8, 10));
    EXPECT_FALSE(isHit(0, 8));
    EXPECT_TRUE(isHit(10, -1)); // its back
    EXPECT_FALSE(isHit(12, -1));
    pick.setRay({0, 0, -10}, {0, 0, -1}); // behind its start
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPoint(), nullptr);
}

TEST_F(Pick, withoutAUsableRayMeetsNothing)
{
    addTo<TestShape>(root);
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPoint(), nullptr);
    pick.setRay({0, 0, 10}, {0, 0, 0});
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPoint(), nullptr);
    pick.setRay({0, 0, std::numeric_limits<float>::quiet_NaN()}, {0, 0, -1});
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPoint(), nullptr);
}

TEST_F(Pick, passesByShapesThatAreFlattenedOrNowhere)
{
    TestShape* good = shapeAt({0, 0, 0});
    auto* own = addTo<KsSeparator>(root);
    auto* scale = addTo<KsScale>(own);
    addTo<TestShape>(own);
    scale->scaleFactor = KbVec3f(1, 1, 0);
    EXPECT_EQ(at(0, 0), good);
    scale->scaleFactor = KbVec3f(std::numeric_limits<float>::infinity(), 1, 1);
    EXPECT_EQ(at(0, 0), good);
}

TEST_F(Pick, alongAPathMeetsWhatIsBelowItsEnd)
{
    shapeAt({0, 0, 20});
    auto* group = addTo<KsGroup>(root);
    auto* shape = addTo<TestShape>(group);
    KsRef<KsPath> path(new KsPath(root));
    path->append(group);
    pick.setRay({0, 0, 100}, {0, 0, -1});
    pick.apply(path.get());
    ASSERT_NE(pick.getPickedPoint(), nullptr);
    EXPECT_EQ(pick.getPickedPoint()->getPath()->getTail(), shape);
}

namespace {
/// A point, or the end of a line, at the origin.
class Dot : public TestShape {
public:
    void rayPick(KsRayPickAction* action) override
    {
        action->addIntersection({0, 0, 0}, {0, 0, 1});
    }
};
} // namespace

// shows: KsRayPickAction::setRadius
TEST_F(Pick, reachesLinesAndPointsFromBeside)
{
    auto* camera = addTo<KsOrthographicCamera>(root);
    camera->position = KbVec3f(0, 0, 5);
    camera->height = 10; // a pixel is a tenth
    auto* inner = addTo<KsSeparator>(root);
    addTo<Dot>(inner)->size = KbVec3f(0, 0, 0);
    boxOf(root); // so that boxes cull
    const auto isHit = [this](float x) {
        pick.setPoint({x, 50});
        pick.apply(root);
        return pick.getPickedPoint() != nullptr;
    };
    EXPECT_TRUE(isHit(50));
    EXPECT_TRUE(isHit(54.9f));
    EXPECT_FALSE(isHit(55.2f));
    pick.setRadius(10);
    EXPECT_TRUE(isHit(59.9f));
    EXPECT_FALSE(isHit(60.2f));
}

// shows: KsNodeKitDetail, KsNodeKitDetail::setNodeKit, KsNodeKitDetail::setPart,
// KsNodeKitDetail::setPartName, KsNodeKitDetail::getNodeKit, KsNodeKitDetail::getPart,
// KsNodeKitDetail::getPartName, KsPickedPoint, KsPickedPoint::getDetail, KsPickedPoint::setDetail
TEST_F(Pick, keepsDetailsByNode)
{
    TestShape* shape = shapeAt({0, 0, 0});
    ASSERT_NE(at(0, 0), nullptr);
    KsPickedPoint* hit = pick.getPickedPoint();
    EXPECT_EQ(hit->getDetail(shape), nullptr);
    auto* detail = new KsNodeKitDetail;
    detail->setNodeKit(root);
    detail->setPart(shape);
    detail->setPartName("frame");
    hit->setDetail(detail, root);
    EXPECT_EQ(hit->getDetail(root), detail);
    EXPECT_EQ(hit->getDetail(shape), nullptr);

    const KsPickedPoint copy(*hit);
    hit->setDetail(nullptr, root);
    EXPECT_EQ(hit->getDetail(root), nullptr);
    const auto* copied = ksCast<KsNodeKitDetail>(copy.getDetail(root));
    ASSERT_NE(copied, nullptr);
    EXPECT_EQ(copied->getNodeKit(), root.get());
    EXPECT_EQ(copied->getPart(), shape);
    EXPECT_EQ(copied->getPartName(), "frame");
    copy.getPath()->setNumPublic(1);
    EXPECT_EQ(hit->getPath()->getLength(), 3); // paths are copied too
}
