#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbLine.h>
#include <arborium/base/KbPlane.h>
#include <arborium/base/KbRotation.h>
#include <arborium/base/KbViewVolume.h>
#include <arborium/base/KbViewportRegion.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {
constexpr float s_pi = 3.14159265f;
constexpr float s_nan = std::numeric_limits<float>::quiet_NaN();
} // namespace

// shows: KbLine::getClosestPoint
TEST(Line, findsTheClosestPoint)
{
    const KbLine line(KbVec3f(0, 1, 0), KbVec3f(5, 1, 0));
    EXPECT_EQ(line.getClosestPoint(KbVec3f(3, 7, 2)), KbVec3f(3, 1, 0));
    const KbLine none(KbVec3f(1, 2, 3), KbVec3f(1, 2, 3));
    EXPECT_EQ(none.getClosestPoint(KbVec3f(9, 9, 9)), KbVec3f(1, 2, 3));
}

// shows: KbLine::getClosestPoints
TEST(Line, findsWhereTwoLinesAreClosest)
{
    const KbLine a(KbVec3f(0, 0, 0), KbVec3f(1, 0, 0)), b(KbVec3f(3, -2, 1), KbVec3f(3, 5, 1));
    KbVec3f onA, onB;
    ASSERT_TRUE(a.getClosestPoints(b, onA, onB));
    EXPECT_TRUE(onA.equals(KbVec3f(3, 0, 0), 1e-6f)) << onA;
    EXPECT_TRUE(onB.equals(KbVec3f(3, 0, 1), 1e-6f)) << onB;

    const KbLine parallel(KbVec3f(0, 2, 0), KbVec3f(-1, 2, 0));
    EXPECT_FALSE(a.getClosestPoints(parallel, onA, onB));
    EXPECT_EQ(onA, KbVec3f(0, 0, 0));
    EXPECT_EQ(onB, KbVec3f(0, 2, 0));
    const KbLine none(KbVec3f(5, 5, 5), KbVec3f(5, 5, 5));
    EXPECT_FALSE(a.getClosestPoints(none, onA, onB));
    EXPECT_EQ(onB, KbVec3f(5, 5, 5));
}

// shows: KbLine::intersect
TEST(Line, meetsATriangleFromEitherSideAndNotBehindItself)
{
    const KbVec3f a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
    KbVec3f point, weights;
    bool front = false;
    ASSERT_TRUE(
        KbLine(KbVec3f(1, 1, 5), KbVec3f(1, 1, 4)).intersect(a, b, c, point, weights, front));
    EXPECT_TRUE(front);
    EXPECT_TRUE(point.equals(KbVec3f(1, 1, 0), 1e-6f));
    EXPECT_TRUE(weights.equals(KbVec3f(0.5f, 0.25f, 0.25f), 1e-6f)) << weights;
    ASSERT_TRUE(
        KbLine(KbVec3f(1, 1, -5), KbVec3f(1, 1, -4)).intersect(a, b, c, point, weights, front));
    EXPECT_FALSE(front);
    point.setValue(7, 7, 7);
    EXPECT_FALSE(
        KbLine(KbVec3f(1, 1, 5), KbVec3f(1, 1, 6)).intersect(a, b, c, point, weights, front));
    EXPECT_EQ(point, KbVec3f(7, 7, 7));
    EXPECT_FALSE(
        KbLine(KbVec3f(3, 3, 5), KbVec3f(3, 3, 4)).intersect(a, b, c, point, weights, front));
    EXPECT_FALSE(
        KbLine(KbVec3f(1, 1, 0), KbVec3f(2, 1, 0)).intersect(a, b, c, point, weights, front));
    EXPECT_FALSE(
        KbLine(KbVec3f(1, 1, 5), KbVec3f(1, 1, 4)).intersect(a, a, c, point, weights, front));
}

// shows: KbLine::intersect
TEST(Line, meetsABox)
{
    const KbBox3f box(0, 0, 0, 1, 1, 1);
    KbVec3f enter, exit;
    const KbLine through(KbVec3f(-5, 0.5f, 0.5f), KbVec3f(-4, 0.5f, 0.5f));
    ASSERT_TRUE(through.intersect(box, enter, exit, true));
    EXPECT_EQ(enter, KbVec3f(0, 0.5f, 0.5f));
    EXPECT_EQ(exit, KbVec3f(1, 0.5f, 0.5f));
    const KbLine away(KbVec3f(-5, 0.5f, 0.5f), KbVec3f(-6, 0.5f, 0.5f));
    EXPECT_FALSE(away.intersect(box, enter, exit, true));
    EXPECT_TRUE(away.intersect(box));
    EXPECT_FALSE(KbLine(KbVec3f(-5, 2, 0.5f), KbVec3f(-4, 2, 0.5f)).intersect(box));
    EXPECT_FALSE(through.intersect(KbBox3f()));
    EXPECT_FALSE(KbLine(KbVec3f(0.5f, 0.5f, 0.5f), KbVec3f(0.5f, 0.5f, 0.5f)).intersect(box))
        << "a line of no direction";
    // A ray that begins inside.
    const KbLine inside(KbVec3f(0.25f, 0.5f, 0.5f), KbVec3f(1, 0.5f, 0.5f));
    ASSERT_TRUE(inside.intersect(box, enter, exit, true));
    EXPECT_EQ(enter, KbVec3f(0.25f, 0.5f, 0.5f));
    EXPECT_EQ(exit, KbVec3f(1, 0.5f, 0.5f));
    // A flat box, seen from above and along its plane.
    const KbBox3f flat(0, 0, 0, 1, 1, 0);
    EXPECT_TRUE(KbLine(KbVec3f(0.5f, 0.5f, 9), KbVec3f(0.5f, 0.5f, 8)).intersect(flat));
    EXPECT_TRUE(KbLine(KbVec3f(-3, 0, 0), KbVec3f(-2, 0, 0)).intersect(flat));
}

// shows: KbPlane, KbPlane::getNormal, KbPlane::getDistanceFromOrigin, KbPlane::getDistance,
// KbPlane::isInHalfSpace
TEST(Plane, isMadeOfANormalAndAPointOrOfThreePoints)
{
    const KbPlane plane(KbVec3f(0, 0, 4), KbVec3f(7, 7, 3));
    EXPECT_EQ(plane.getNormal(), KbVec3f(0, 0, 1));
    EXPECT_EQ(plane.getDistanceFromOrigin(), 3.0f);
    EXPECT_EQ(plane.getDistance(KbVec3f(0, 0, 5)), 2.0f);
    EXPECT_TRUE(plane.isInHalfSpace(KbVec3f(0, 0, 3)));
    EXPECT_FALSE(plane.isInHalfSpace(KbVec3f(0, 0, 2)));
    EXPECT_EQ(KbPlane(KbVec3f(0, 0, 3), KbVec3f(1, 0, 3), KbVec3f(0, 1, 3)), plane);
    EXPECT_EQ(KbPlane(KbVec3f(), 2.0f).getNormal(), KbVec3f(0, 0, 1));
    EXPECT_EQ(KbPlane(), KbPlane(KbVec3f(0, 0, 1), 0.0f));
    EXPECT_EQ(KbPlane(KbVec3f(0, 0, -1), KbVec3f(7, 7, 3)).getDistanceFromOrigin(), -3.0f);
}

// shows: KbPlane::intersect
TEST(Plane, meetsALineUnlessItIsParallel)
{
    const KbPlane plane(KbVec3f(0, 0, 1), 3.0f);
    KbVec3f point(9, 9, 9);
    ASSERT_TRUE(plane.intersect(KbLine(KbVec3f(1, 2, 0), KbVec3f(1, 2, -1)), point));
    EXPECT_EQ(point, KbVec3f(1, 2, 3));
    EXPECT_FALSE(plane.intersect(KbLine(KbVec3f(1, 2, 0), KbVec3f(2, 2, 0)), point));
    EXPECT_FALSE(plane.intersect(KbLine(KbVec3f(1, 2, 0), KbVec3f(1, 2, 0)), point));
    EXPECT_EQ(point, KbVec3f(1, 2, 3));
    KbLine line;
    ASSERT_TRUE(plane.intersect(KbPlane(KbVec3f(1, 0, 0), 2.0f), line));
    EXPECT_NEAR(plane.getDistance(line.getPosition()), 0, 1e-5f);
    EXPECT_NEAR(line.getPosition()[0], 2, 1e-5f);
    EXPECT_NEAR(std::fabs(line.getDirection()[1]), 1, 1e-6f);
    EXPECT_FALSE(plane.intersect(plane, line));
}

// shows: KbPlane::transform
TEST(Plane, movesWithItsPoints)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<float> number(-2, 2);
    for (int round = 0; round < 200; ++round) {
        const KbVec3f p0(number(random), number(random), number(random));
        const KbVec3f normal(number(random), number(random), number(random));
        KbPlane plane(normal, p0);
        const KbVec3f above = p0 + plane.getNormal();
        KbMatrix m;
        m.setTransform(KbVec3f(number(random), number(random), number(random)),
                       KbRotation(normal, number(random)), KbVec3f(round % 2 ? -2 : 1, 0.5f, 3));
        plane.transform(m);
        KbVec3f q0, q1;
        m.multVecMatrix(p0, q0);
        m.multVecMatrix(above, q1);
        EXPECT_NEAR(plane.getDistance(q0), 0, 1e-4f);
        EXPECT_TRUE(plane.isInHalfSpace(q1));
    }
    KbMatrix flat;
    flat.setScale(0);
    KbPlane plane(KbVec3f(0, 1, 0), 4.0f);
    plane.transform(flat);
    EXPECT_EQ(plane, KbPlane(KbVec3f(0, 1, 0), 4.0f));
}

// shows: KbViewportRegion, KbViewportRegion::setWindowSize, KbViewportRegion::setViewport,
// KbViewportRegion::setViewportPixels, KbViewportRegion::getViewportOrigin,
// KbViewportRegion::getViewportOriginPixels, KbViewportRegion::getViewportAspectRatio
TEST(Viewport, isAShareOfItsWindow)
{
    EXPECT_EQ(KbViewportRegion().getWindowSize(), KbVec2i32(100, 100));
    EXPECT_EQ(KbViewportRegion(KbVec2i32(8, 6)).getWindowSize(), KbVec2i32(8, 6));
    KbViewportRegion region(800, 600);
    EXPECT_EQ(region.getViewportSizePixels(), KbVec2i32(800, 600));
    EXPECT_FLOAT_EQ(region.getViewportAspectRatio(), 800 / 600.0f);
    region.setViewportPixels(100, 50, 333, 251);
    EXPECT_EQ(region.getViewportOriginPixels(), KbVec2i32(100, 50));
    EXPECT_EQ(region.getViewportSizePixels(), KbVec2i32(333, 251));
    region.setViewport(0.5f, 0, 0.5f, 1);
    EXPECT_EQ(region.getViewportOrigin(), KbVec2f(0.5f, 0));
    region.setWindowSize(1000, 100);
    EXPECT_EQ(region.getViewportOriginPixels(), KbVec2i32(500, 0));
    EXPECT_EQ(region.getViewportSizePixels(), KbVec2i32(500, 100));
    region.setWindowSize(KbVec2i32(10, 20));
    EXPECT_EQ(region.getViewportSizePixels(), KbVec2i32(5, 20));
    region.setViewportPixels(KbVec2i32(1, 2), KbVec2i32(3, 4));
    EXPECT_EQ(region.getViewportOriginPixels(), KbVec2i32(1, 2));
    EXPECT_EQ(region.getViewportSizePixels(), KbVec2i32(3, 4));
    region.setViewport(KbVec2f(0, 0.5f), KbVec2f(1, 0.25f));
    EXPECT_EQ(region.getViewportOriginPixels(), KbVec2i32(0, 10));
    EXPECT_EQ(region.getViewportSizePixels(), KbVec2i32(10, 5));
}

// shows: KbViewportRegion::getWindowSize, KbViewportRegion::getViewportSizePixels,
// KbViewportRegion::setPixelsPerInch, KbViewportRegion::getPixelsPerInch
TEST(Viewport, hasNoSizeOfZero)
{
    KbViewportRegion region(0, -5);
    EXPECT_EQ(region.getWindowSize(), KbVec2i32(1, 1));
    region.setViewport(0, 0, 0, 0);
    EXPECT_EQ(region.getViewportSizePixels(), KbVec2i32(1, 1));
    EXPECT_EQ(region.getViewportAspectRatio(), 1.0f);
    region.setViewport(s_nan, 0, 1, 1);
    EXPECT_EQ(region.getViewportOrigin(), KbVec2f(0, 0));
    region.setPixelsPerInch(96);
    for (float bad : {-1.0f, 0.0f, s_nan}) region.setPixelsPerInch(bad);
    EXPECT_EQ(region.getPixelsPerInch(), 96.0f);
}

// shows: KbViewVolume::isSet, KbViewVolume::ortho, KbViewVolume::frustum,
// KbViewVolume::getProjectionType, KbViewVolume::getNearDist, KbViewVolume::getDepth,
// KbViewVolume::getWidth, KbViewVolume::getHeight
TEST(ViewVolume, isNotSetUntilACameraShapesIt)
{
    KbViewVolume volume;
    EXPECT_FALSE(volume.isSet());
    EXPECT_TRUE(volume.intersect(KbVec3f(0.9f, -0.9f, 0.9f)));
    EXPECT_FALSE(volume.intersect(KbVec3f(0, 0, 1.1f))) << "the cube of -1 to 1 is seen";
    volume.ortho(-2, 2, -1, 1, 0, 10);
    EXPECT_TRUE(volume.isSet());
    EXPECT_EQ(volume.getDepth(), 10.0f);
    EXPECT_EQ(volume.getWidth(), 4.0f);
    EXPECT_EQ(volume.getProjectionType(), KbViewVolume::ORTHOGRAPHIC);
    volume.frustum(-1, 3, -1, 2, 2, 10);
    EXPECT_EQ(volume.getProjectionType(), KbViewVolume::PERSPECTIVE);
    EXPECT_EQ(volume.getWidth(), 4.0f);
    EXPECT_EQ(volume.getHeight(), 3.0f);
    EXPECT_EQ(volume.getNearDist(), 2.0f);
    EXPECT_EQ(volume.getDepth(), 8.0f);
    KbVec3f screen;
    volume.projectToScreen(KbVec3f(3, -1, -2), screen); // the lower right corner
    EXPECT_TRUE(screen.equals(KbVec3f(1, 0, 0), 1e-6f)) << screen;
    volume.projectToScreen(KbVec3f(6, -2, -4), screen); // twice as far away
    EXPECT_TRUE(screen.equals(KbVec3f(1, 0, 0.625f), 1e-6f)) << screen;
}

// shows: KbViewVolume::getMatrix, KbViewVolume::projectPointToLine, KbViewVolume::projectToScreen
TEST(ViewVolume, leadsFromTheScreenToTheSpaceAndBack)
{
    KbViewVolume ortho, perspective;
    ortho.ortho(-2, 4, -1, 3, 1, 10);
    perspective.perspective(s_pi / 3, 1.5f, 1, 100);
    KbMatrix odd;
    odd.setTransform(KbVec3f(3, 4, 5), KbRotation(KbVec3f(1, 1, 0), 0.7f), KbVec3f(1, 2, 3));
    for (KbViewVolume volume : {ortho, perspective}) {
        volume.rotateCamera(KbRotation(KbVec3f(0, 1, 0), 0.4f));
        volume.translateCamera(KbVec3f(5, 6, 7));
        for (bool moved : {false, true}) {
            if (moved) volume.transform(odd);
            for (const KbVec2f& point : {KbVec2f(0, 0), KbVec2f(0.5f, 0.5f), KbVec2f(1, 0.25f)}) {
                KbVec3f nearPoint, farPoint, screen;
                volume.projectPointToLine(point, nearPoint, farPoint);
                KbLine line;
                volume.projectPointToLine(point, line);
                EXPECT_EQ(line.getPosition(), nearPoint);
                EXPECT_TRUE(line.getClosestPoint(farPoint).equals(farPoint, 1e-2f));
                volume.projectToScreen(nearPoint, screen);
                EXPECT_TRUE(screen.equals(KbVec3f(point[0], point[1], 0), 1e-3f)) << screen;
                volume.projectToScreen(farPoint, screen);
                EXPECT_TRUE(screen.equals(KbVec3f(point[0], point[1], 1), 1e-3f)) << screen;
                // The matrix, whose cube goes from -1 to 1, says the same.
                KbVec3f cube;
                volume.getMatrix().multVecMatrix(farPoint, cube);
                EXPECT_TRUE(cube.equals(KbVec3f(point[0] * 2 - 1, point[1] * 2 - 1, 1), 1e-2f))
                    << cube;
            }
        }
    }
}

// shows: KbViewVolume::rotateCamera, KbViewVolume::translateCamera, KbViewVolume::transform,
// KbViewVolume::getPlane, KbViewVolume::getSightPoint,
// KbViewVolume::getProjectionPoint, KbViewVolume::getProjectionDirection, KbViewVolume::getViewUp,
// KbViewVolume::getNearDist, KbViewVolume::getWorldToScreenScale
TEST(ViewVolume, looksAlongMinusZFromTheCamera)
{
    KbViewVolume volume;
    volume.perspective(s_pi / 2, 1, 1, 10);
    volume.translateCamera(KbVec3f(0, 0, 5));
    EXPECT_TRUE(volume.getProjectionPoint().equals(KbVec3f(0, 0, 5), 1e-6f));
    EXPECT_TRUE(volume.getProjectionDirection().equals(KbVec3f(0, 0, -1), 1e-6f));
    EXPECT_TRUE(volume.getViewUp().equals(KbVec3f(0, 1, 0), 1e-6f));
    EXPECT_TRUE(volume.getSightPoint(2).equals(KbVec3f(0, 0, 3), 1e-6f));
    EXPECT_TRUE(volume.getPlane(2).getNormal().equals(KbVec3f(0, 0, 1), 1e-6f));
    EXPECT_NEAR(volume.getPlane(2).getDistanceFromOrigin(), 3, 1e-5f);
    EXPECT_NEAR(volume.getNearDist(), 1, 1e-6f);
    // At distance 5 the right angle opens 10 units.
    EXPECT_NEAR(volume.getWorldToScreenScale(KbVec3f(0, 0, 0), 0.5f), 5, 1e-4f);

    // A quarter to the left, about the origin; then as a thing in the space.
    volume.rotateCamera(KbRotation(KbVec3f(0, 1, 0), s_pi / 2));
    EXPECT_TRUE(volume.getProjectionPoint().equals(KbVec3f(5, 0, 0), 1e-5f));
    EXPECT_TRUE(volume.getProjectionDirection().equals(KbVec3f(-1, 0, 0), 1e-5f));
    KbMatrix move;
    move.setTranslate(KbVec3f(0, 3, 0));
    volume.transform(move);
    EXPECT_TRUE(volume.getProjectionPoint().equals(KbVec3f(5, 3, 0), 1e-5f));
    move.setScale(0);
    volume.transform(move); // cannot be inverted
    EXPECT_TRUE(volume.getProjectionPoint().equals(KbVec3f(5, 3, 0), 1e-5f));
}

// shows: KbViewVolume::getViewVolumePlanes
TEST(ViewVolume, hasPlanesThatFaceInwards)
{
    KbViewVolume ortho, perspective;
    ortho.ortho(-2, 4, -1, 3, 1, 10);
    perspective.frustum(-1, 2, -1, 1, 1, 10);
    KbViewVolume mirrored = perspective, turned = ortho;
    mirrored.scaleWidth(-1);
    turned.scale(-1);
    for (KbViewVolume volume : {ortho, perspective, mirrored, turned}) {
        volume.rotateCamera(KbRotation(KbVec3f(1, 2, 0), 0.4f));
        volume.translateCamera(KbVec3f(5, 6, 7));
        KbPlane planes[6];
        volume.getViewVolumePlanes(planes);
        KbVec3f nearPoint, farPoint;
        volume.projectPointToLine(KbVec2f(0.5f, 0.5f), nearPoint, farPoint);
        const KbVec3f inside = (nearPoint + farPoint) / 2;
        for (const KbPlane& plane : planes) EXPECT_GT(plane.getDistance(inside), 0.1f);
        volume.projectPointToLine(KbVec2f(0, 0.3f), nearPoint, farPoint);
        EXPECT_NEAR(planes[0].getDistance(nearPoint), 0, 1e-4f);
        EXPECT_NEAR(planes[0].getDistance(farPoint), 0, 1e-4f);
        EXPECT_NEAR(planes[4].getDistance(nearPoint), 0, 1e-4f);
        EXPECT_NEAR(planes[5].getDistance(farPoint), 0, 1e-4f);
        volume.projectPointToLine(KbVec2f(0.6f, 1), nearPoint, farPoint);
        EXPECT_NEAR(planes[3].getDistance(farPoint), 0, 1e-4f);
        volume.getViewVolumePlanes(nullptr); // does nothing
    }
}

// shows: KbViewVolume::perspective, KbViewVolume::intersect
TEST(ViewVolume, cullsOnlyWhatIsOutOfSight)
{
    KbViewVolume volume;
    volume.perspective(s_pi / 2, 1, 1, 10);
    EXPECT_TRUE(volume.intersect(KbVec3f(0, 0, -5)));
    EXPECT_TRUE(volume.intersect(KbVec3f(4.9f, 0, -5)));
    EXPECT_FALSE(volume.intersect(KbVec3f(5.1f, 0, -5)));
    EXPECT_FALSE(volume.intersect(KbVec3f(0, 0, 5)));
    EXPECT_FALSE(volume.intersect(KbVec3f(0, 0, -11)));
    EXPECT_TRUE(volume.intersect(KbBox3f(-100, -100, -100, 100, 100, 100)));
    EXPECT_FALSE(volume.intersect(KbBox3f(6, -1, -5, 8, 1, -4)));
    EXPECT_FALSE(volume.intersect(KbBox3f()));
    EXPECT_TRUE(volume.intersect(KbBox3f(KbVec3f(-1, -1, -6), KbVec3f(1, 1, -5))));

    // No point that the screen shows may belong to a box that was culled.
    std::mt19937 random(9);
    std::uniform_real_distribution<float> number(-12, 12);
    for (int round = 0; round < 2000; ++round) {
        KbBox3f box;
        box.extendBy(KbVec3f(number(random), number(random), number(random)));
        const KbVec3f point(number(random), number(random), number(random));
        box.extendBy(point);
        KbVec3f screen;
        volume.projectToScreen(point, screen);
        const bool seen = point[2] < -1 && screen[0] > 0 && screen[0] < 1 && screen[1] > 0 &&
                          screen[1] < 1 && screen[2] > 0 && screen[2] < 1;
        if (seen) {
            EXPECT_TRUE(volume.intersect(box)) << box;
        }
    }
}

TEST(ViewVolume, isNeverFlat)
{
    KbViewVolume volume;
    for (int kind = 0; kind < 3; ++kind) {
        if (kind == 0) volume.ortho(1, 1, 2, 2, 3, 3);
        if (kind == 1) volume.perspective(0, 0, 0, 0);
        if (kind == 2) volume.perspective(s_nan, s_nan, s_nan, s_nan);
        KbVec3f nearPoint, farPoint;
        volume.projectPointToLine(KbVec2f(0.5f, 0.5f), nearPoint, farPoint);
        EXPECT_TRUE(nearPoint.isFinite());
        EXPECT_TRUE(farPoint.isFinite());
        EXPECT_TRUE(volume.getMatrix().isFinite());
        EXPECT_GT(volume.getDepth(), 0);
        KbVec3f screen;
        volume.projectToScreen(volume.getProjectionPoint(), screen);
        EXPECT_TRUE(screen.isFinite());
    }
}

// shows: KbViewVolume::narrow, KbViewVolume::projectBox
TEST(ViewVolume, narrowsToAPartOfTheScreen)
{
    KbViewVolume volume;
    volume.ortho(-2, 2, -2, 2, 0, 10);
    const KbViewVolume part = volume.narrow(0.5f, 0.5f, 1, 1);
    EXPECT_TRUE(part.intersect(KbVec3f(1, 1, -5)));
    EXPECT_FALSE(part.intersect(KbVec3f(-1, 1, -5)));
    EXPECT_EQ(volume.narrow(s_nan, 0, 1, s_nan).getWidth(), volume.getWidth());
    EXPECT_EQ(volume.projectBox(KbBox3f()), KbVec2f());
    EXPECT_TRUE(
        volume.projectBox(KbBox3f(-1, -1, -5, 1, 1, -5)).equals(KbVec2f(0.5f, 0.5f), 1e-6f));
}
