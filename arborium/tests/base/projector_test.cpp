#include <arborium/base/KbLineProjector.h>
#include <arborium/base/KbPlaneProjector.h>
#include <arborium/base/KbRotation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

constexpr float s_pi = 3.14159265f;

// 4 units wide and high, looking down at the xy plane.
KbViewVolume fromAbove()
{
    KbViewVolume volume;
    volume.ortho(-2, 2, -2, 2, 0, 20);
    volume.translateCamera(KbVec3f(0, 0, 10));
    return volume;
}

KbViewVolume perspective()
{
    KbViewVolume volume;
    volume.perspective(s_pi / 2, 1, 1, 100);
    volume.translateCamera(KbVec3f(0, 0, 10));
    return volume;
}

} // namespace

// shows: KbPlaneProjector, KbPlaneProjector::setPlane, KbProjector::project
TEST(PlaneProjector, findsThePointUnderThePointer)
{
    KbPlaneProjector projector(0);
    EXPECT_TRUE(projector.project(KbVec2f(0.75f, 0.5f)).equals(KbVec3f(0.5f, 0, 0), 1e-6f))
        << "without a view volume the screen shows the cube of -1 to 1";
    projector.setPlane(KbPlane(KbVec3f(0, 0, 1), KbVec3f(0, 0, 3)));
    projector.setViewVolume(fromAbove());
    EXPECT_TRUE(projector.project(KbVec2f(0.75f, 0.25f)).equals(KbVec3f(1, -1, 3), 1e-5f));
    projector.setViewVolume(perspective());
    // The plane lies 7 below the eye, whose right angle shows 14 units there.
    EXPECT_TRUE(projector.project(KbVec2f(1, 0.5f)).equals(KbVec3f(7, 0, 3), 1e-4f));
}

// shows: KbProjector::setWorkingSpace
TEST(PlaneProjector, answersInItsWorkingSpace)
{
    KbPlaneProjector projector(0);
    projector.setViewVolume(fromAbove());
    KbMatrix space;
    space.setTransform(KbVec3f(1, 0, 0), KbRotation(KbVec3f(0, 0, 1), s_pi / 2), KbVec3f(2, 2, 2));
    projector.setWorkingSpace(space);
    const KbVec3f local = projector.project(KbVec2f(0.75f, 0.75f)); // (1, 1, 0) in the world
    KbVec3f world;
    space.multVecMatrix(local, world);
    EXPECT_TRUE(world.equals(KbVec3f(1, 1, 0), 1e-5f)) << world;
    EXPECT_TRUE(local.equals(KbVec3f(0.5f, 0, 0), 1e-5f)) << local;
}

TEST(PlaneProjector, keepsTheLastPointWhereThereIsNone)
{
    KbPlaneProjector projector(0);
    projector.setPlane(KbPlane(KbVec3f(0, 1, 0), KbVec3f(0, 0.5f, 0))); // seen along itself
    projector.setViewVolume(fromAbove());
    KbVec3f point(9, 9, 9);
    EXPECT_FALSE(projector.tryProject(KbVec2f(0.5f, 0.5f), point));
    EXPECT_EQ(point, KbVec3f(9, 9, 9));
    EXPECT_EQ(projector.project(KbVec2f(0.5f, 0.5f)), KbVec3f(0, 0.5f, 0));

    projector.setPlane(KbPlane(KbVec3f(0, 0, 1), 0.0f));
    const KbVec3f last = projector.project(KbVec2f(0.75f, 0.5f));
    KbMatrix flat;
    flat.setScale(0);
    projector.setWorkingSpace(flat);
    EXPECT_EQ(projector.project(KbVec2f(0.1f, 0.1f)), last);
}

// shows: KbProjector::tryProject
TEST(PlaneProjector, doesNotLookBehindAPerspectiveEye)
{
    KbPlaneProjector projector(0);
    projector.setViewVolume(perspective());
    projector.setPlane(KbPlane(KbVec3f(0, 1, 0), -2.0f)); // a floor: above the horizon is none
    KbVec3f point;
    EXPECT_TRUE(projector.tryProject(KbVec2f(0.5f, 0.25f), point));
    EXPECT_NEAR(point[1], -2, 1e-4f);
    EXPECT_FALSE(projector.tryProject(KbVec2f(0.5f, 0.75f), point));
}

// shows: KbProjector::project, KbProjector::tryProject, KbProjector::intersect
TEST(PlaneProjector, takesRaysInTheWorld)
{
    KbPlaneProjector projector(0);
    KbMatrix space;
    space.setTranslate(KbVec3f(0, 0, 4));
    projector.setWorkingSpace(space);
    const KbLine down(KbVec3f(1, 2, 10), KbVec3f(1, 2, 9)),
        up(KbVec3f(1, 2, 10), KbVec3f(1, 2, 11));
    KbVec3f point;
    EXPECT_TRUE(projector.tryProject(down, point));
    EXPECT_TRUE(point.equals(KbVec3f(1, 2, 0), 1e-5f)) << point;
    EXPECT_FALSE(projector.tryProject(up, point));
    EXPECT_TRUE(projector.project(down).equals(KbVec3f(1, 2, 0), 1e-5f));
    EXPECT_TRUE(projector.intersect(down, point));
}

// shows: KbPlaneProjector::setOrientToEye, KbProjector::setViewVolume
TEST(PlaneProjector, turnsToTheEyeWhenToldTo)
{
    KbPlaneProjector projector(KbPlane(KbVec3f(0, 1, 0), 0.0f), 1);
    projector.setViewVolume(fromAbove());
    // The floor alone could not be hit from straight above.
    EXPECT_TRUE(projector.project(KbVec2f(0.75f, 0.75f)).equals(KbVec3f(1, 1, 0), 1e-5f));
    projector.setViewVolume(perspective());
    EXPECT_TRUE(projector.project(KbVec2f(0.5f, 0.75f)).equals(KbVec3f(0, 5, 0), 1e-4f));
    KbVec3f point;
    EXPECT_TRUE(projector.tryProject(KbVec2f(0.5f, 0.75f), point));
    projector.setOrientToEye(0);
    EXPECT_FALSE(projector.tryProject(KbVec2f(0.5f, 0.75f), point)) << "along the floor itself";
}

// shows: KbProjector::getVector, KbProjector::setStartPosition
TEST(PlaneProjector, measuresTheWayOfThePointer)
{
    KbPlaneProjector projector(0);
    projector.setViewVolume(fromAbove());
    EXPECT_TRUE(projector.getVector(KbVec2f(0.25f, 0.5f), KbVec2f(0.5f, 0.75f))
                    .equals(KbVec3f(1, 1, 0), 1e-5f));
    EXPECT_TRUE(projector.getVector(KbVec2f(0.5f, 0.5f)).equals(KbVec3f(0, -1, 0), 1e-5f));
    projector.setStartPosition(KbVec2f(0, 0));
    EXPECT_TRUE(projector.getVector(KbVec2f(0.25f, 0)).equals(KbVec3f(1, 0, 0), 1e-5f));
    projector.setStartPosition(KbVec3f(0, 0, 7));
    EXPECT_TRUE(projector.getVector(KbVec2f(0.5f, 0.5f)).equals(KbVec3f(0, 0, -7), 1e-5f));
}

// shows: KbProjector::copy
TEST(Projector, copiesItsKindAndState)
{
    KbPlaneProjector projector(0);
    projector.setViewVolume(fromAbove());
    projector.setPlane(KbPlane(KbVec3f(0, 0, 1), 2.0f));
    KbProjector& base = projector;
    const std::unique_ptr<KbProjector> copy(base.copy());
    ASSERT_NE(dynamic_cast<KbPlaneProjector*>(copy.get()), nullptr);
    EXPECT_EQ(copy->project(KbVec2f(0.75f, 0.5f)), projector.project(KbVec2f(0.75f, 0.5f)));

    KbLineProjector line;
    line.setLine(KbLine(KbVec3f(0, 1, 0), KbVec3f(1, 1, 0)));
    line.setViewVolume(fromAbove());
    const std::unique_ptr<KbLineProjector> lineCopy(line.copy());
    EXPECT_EQ(lineCopy->getLine().getPosition(), KbVec3f(0, 1, 0));
    EXPECT_EQ(lineCopy->project(KbVec2f(0.75f, 0)), line.project(KbVec2f(0.75f, 0)));
}

// shows: KbLineProjector, KbLineProjector::setLine
TEST(LineProjector, findsTheNearestPointOfItsLine)
{
    KbLineProjector projector;
    projector.setViewVolume(fromAbove());
    projector.setLine(KbLine(KbVec3f(0, 1, 0), KbVec3f(1, 1, 0)));
    EXPECT_TRUE(projector.project(KbVec2f(0.75f, 0.1f)).equals(KbVec3f(1, 1, 0), 1e-5f));
    projector.setViewVolume(perspective());
    // The eye, 10 above, shows 20 units.
    EXPECT_TRUE(projector.project(KbVec2f(0.75f, 0.55f)).equals(KbVec3f(5, 1, 0), 1e-4f));
}

TEST(LineProjector, keepsTheLastPointWhenSeenFromItsEnd)
{
    KbLineProjector projector;
    projector.setViewVolume(fromAbove());
    projector.setLine(KbLine(KbVec3f(1, 1, 5), KbVec3f(1, 1, 6)));
    EXPECT_EQ(projector.project(KbVec2f(0.75f, 0.1f)), KbVec3f(1, 1, 0));
}

TEST(LineProjector, answersInItsWorkingSpace)
{
    KbLineProjector projector;
    projector.setViewVolume(fromAbove());
    projector.setLine(KbLine(KbVec3f(0, 0, 0), KbVec3f(1, 0, 0)));
    KbMatrix space;
    space.setTransform(KbVec3f(0, 0, 0), KbRotation(), KbVec3f(0.1f, 0.1f, 0.1f));
    projector.setWorkingSpace(space);
    EXPECT_TRUE(projector.project(KbVec2f(0.75f, 0.5f)).equals(KbVec3f(10, 0, 0), 1e-4f));
    EXPECT_TRUE(projector.getVector(KbVec2f(0.5f, 0.5f), KbVec2f(0.25f, 0))
                    .equals(KbVec3f(-10, 0, 0), 1e-4f));
}

namespace {

/// A projector of one's own: onto the unit sphere about the origin.
class SphereProjector : public KbProjector {
public:
    SphereProjector() { restartAt(KbVec3f(0, 0, 1)); }
    SphereProjector* copy() const override { return new SphereProjector(*this); }
    SphereProjector& operator=(const SphereProjector&) = default;
    SphereProjector(const SphereProjector&) = default;
    using KbProjector::getEyeDirection;

protected:
    bool intersectShape(const KbLine& ray, KbVec3f& result) const override
    {
        const KbVec3f nearest = ray.getClosestPoint(KbVec3f());
        const float rest = 1 - nearest.sqrLength();
        if (rest < 0) return false;
        result = nearest - ray.getDirection() * std::sqrt(rest);
        return true;
    }
};

} // namespace

// shows: KbProjector::getViewVolume, KbProjector::getWorkingSpace, KbProjector::intersect,
// KbProjector::operator=, KbProjector::intersectShape, KbProjector::restartAt,
// KbProjector::getEyeDirection
TEST(Projector, ofOnesOwnNeedsOnlyItsShape)
{
    SphereProjector sphere;
    sphere.setViewVolume(fromAbove());
    EXPECT_TRUE(sphere.getViewVolume() == fromAbove());
    EXPECT_EQ(sphere.project(KbVec2f(0, 0)), KbVec3f(0, 0, 1)) << "beside it: where it was last";
    EXPECT_TRUE(sphere.project(KbVec2f(0.5f, 0.5f)).equals(KbVec3f(0, 0, 1), 1e-5f));
    EXPECT_TRUE(sphere.getEyeDirection(KbVec3f()).equals(KbVec3f(0, 0, 1), 1e-5f));

    KbMatrix space;
    space.setTranslate(KbVec3f(1, 0, 0));
    sphere.setWorkingSpace(space);
    EXPECT_TRUE(sphere.getWorkingSpace() == space);
    EXPECT_TRUE(sphere.project(KbVec2f(0.75f, 0.5f)).equals(KbVec3f(0, 0, 1), 1e-5f));

    KbVec3f point(7, 7, 7);
    EXPECT_FALSE(sphere.intersect(KbLine(KbVec3f(2, 0, 9), KbVec3f(2, 0, 0)), point));
    EXPECT_EQ(point, KbVec3f(7, 7, 7));
    EXPECT_TRUE(sphere.intersect(KbLine(KbVec3f(0, 0, 9), KbVec3f()), point));
    EXPECT_TRUE(point.equals(KbVec3f(0, 0, 1), 1e-5f));

    SphereProjector other;
    other = sphere;
    EXPECT_TRUE(other.getWorkingSpace() == space);
}

// shows: KbLineProjector::getLine, KbPlaneProjector::getPlane, KbPlaneProjector::setOrientToEye,
// KbPlaneProjector::isOrientToEye
TEST(Projector, tellsItsShape)
{
    KbLineProjector line;
    EXPECT_EQ(line.getLine().getDirection(), KbVec3f(0, 1, 0));
    EXPECT_EQ(KbPlaneProjector().getPlane(), KbPlane(KbVec3f(0, 0, 1), 0.0f));
    KbVec3f point;
    EXPECT_TRUE(line.intersect(KbLine(KbVec3f(3, 2, 9), KbVec3f(3, 2, 0)), point));
    EXPECT_TRUE(point.equals(KbVec3f(0, 2, 0), 1e-5f)) << "the nearest point of the line";

    KbPlaneProjector plane(KbPlane(KbVec3f(0, 1, 0), 2));
    EXPECT_TRUE(plane.getPlane() == KbPlane(KbVec3f(0, 1, 0), 2));
    EXPECT_FALSE(plane.isOrientToEye());
    plane.setOrientToEye(1);
    EXPECT_TRUE(plane.isOrientToEye());
}
