#include "../actions/SceneTest.h"

#include <arborium/base/KbLine.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsTranslation.h>

#include <algorithm>
#include <limits>

class Camera : public SceneTest {
protected:
    /// The part of the screen that a box takes: 0 to 1 if all of it is seen.
    static void expectSeen(const KbViewVolume& volume, const KbBox3f& box, float fills)
    {
        float low = 1, high = 0;
        for (int i = 0; i < 8; ++i) {
            const KbVec3f corner(i & 1 ? box.getMax()[0] : box.getMin()[0],
                                 i & 2 ? box.getMax()[1] : box.getMin()[1],
                                 i & 4 ? box.getMax()[2] : box.getMin()[2]);
            KbVec3f seen;
            volume.projectToScreen(corner, seen);
            for (int axis = 0; axis < 2; ++axis) {
                low = std::min(low, seen[axis]);
                high = std::max(high, seen[axis]);
            }
            EXPECT_TRUE(seen[2] > 0 && seen[2] < 1) << seen;
        }
        EXPECT_GT(low, -1e-3);
        EXPECT_LT(high, 1 + 1e-3);
        EXPECT_NEAR(high - low, fills, 2e-3);
    }
    const KbViewportRegion wide{200, 100};
};

// shows: KsCamera::getViewVolume, KsOrthographicCamera, KsPerspectiveCamera
TEST_F(Camera, standsAndSeesAsDocumented)
{
    const KsRef<KsOrthographicCamera> camera(new KsOrthographicCamera);
    EXPECT_EQ(camera->position.getValue(), KbVec3f(0, 0, 1));
    EXPECT_EQ(camera->height.getValue(), 2);
    KbViewVolume volume = camera->getViewVolume();
    EXPECT_EQ(volume.getProjectionType(), KbViewVolume::ORTHOGRAPHIC);
    EXPECT_NEAR(volume.getWidth(), 2, 1e-5);
    EXPECT_NEAR(camera->getViewVolume(3).getWidth(), 6, 1e-5);
    camera->aspectRatio = 2.0f; // where no window says more
    EXPECT_NEAR(camera->getViewVolume().getWidth(), 4, 1e-5);
    EXPECT_NEAR(camera->getViewVolume(3).getWidth(), 6, 1e-5);
    camera->aspectRatio = 1.0f;
    EXPECT_TRUE(near(volume.getProjectionDirection(), {0, 0, -1}));
    camera->orientation = KbRotation(KbVec3f(0, 1, 0), 1.5707963f);
    EXPECT_TRUE(near(camera->getViewVolume().getProjectionDirection(), {-1, 0, 0}));

    const KsRef<KsPerspectiveCamera> other(new KsPerspectiveCamera);
    volume = other->getViewVolume(2);
    EXPECT_EQ(volume.getProjectionType(), KbViewVolume::PERSPECTIVE);
    EXPECT_NEAR(volume.getNearDist(), 1, 1e-5);
    EXPECT_NEAR(volume.getDepth(), 9, 1e-4);
    EXPECT_NEAR(volume.getHeight(), 2 * std::tan(0.785398f / 2), 1e-4);
    EXPECT_NEAR(volume.getWidth(), 2 * volume.getHeight(), 1e-4);
}

// shows: KsCamera::viewAll
TEST_F(Camera, framesABoxTightly)
{
    const KbBox3f box(10, 20, 30, 18, 26, 31);
    const KsRef<KsOrthographicCamera> flat(new KsOrthographicCamera);
    flat->viewAll(box, wide);
    EXPECT_NEAR(flat->height.getValue(), 6, 1e-4); // the box is less wide than the window
    expectSeen(flat->getViewVolume(2), box, 1);
    flat->viewAll(box, wide, 2);
    expectSeen(flat->getViewVolume(2), box, 0.5f);
    flat->viewAll(box, KbViewportRegion(100, 200));
    expectSeen(flat->getViewVolume(0.5f), box, 1);

    const KsRef<KsPerspectiveCamera> deep(new KsPerspectiveCamera);
    deep->viewAll(box, wide);
    expectSeen(deep->getViewVolume(2), box, 1);
}

TEST_F(Camera, framesInTheDirectionInWhichItLooks)
{
    const KbBox3f box(-4, -1, -2, 4, 1, 2);
    for (const float angle : {0.3f, 1.5707963f, 3.0f}) {
        const KsRef<KsPerspectiveCamera> camera(new KsPerspectiveCamera);
        camera->orientation = KbRotation(KbVec3f(1, 1, 0), angle);
        const KbRotation before = camera->orientation.getValue();
        camera->viewAll(box, wide);
        EXPECT_EQ(camera->orientation.getValue(), before);
        const KbViewVolume volume = camera->getViewVolume(2);
        for (int i = 0; i < 8; ++i) {
            const KbVec3f corner(i & 1 ? 4.0f : -4.0f, i & 2 ? 1.0f : -1.0f, i & 4 ? 2.0f : -2.0f);
            EXPECT_TRUE(volume.intersect(corner * 0.999f)) << corner << " at " << angle;
        }
        EXPECT_TRUE(near(volume.getSightPoint(camera->focalDistance.getValue()), {0, 0, 0}, 1e-3f));
    }
}

// shows: KsCamera::viewAll
TEST_F(Camera, framesASceneFromItsOwnPlaceInIt)
{
    const KsRef<KsSeparator> root(new KsSeparator);
    addTo<KsTranslation>(root)->translation = KbVec3f(100, 0, 0);
    addTo<KsScale>(root)->scaleFactor = KbVec3f(2, 2, 2);
    auto* camera = addTo<KsOrthographicCamera>(root);
    addTo<KsCube>(root);
    camera->viewAll(root, wide);
    // In its own space the cube stands at the origin and is 2 high.
    EXPECT_TRUE(near(camera->position.getValue() * 1.0f, {0, 0, camera->focalDistance.getValue()}));
    EXPECT_NEAR(camera->height.getValue(), 2, 1e-4);

    const KsRef<KsOrthographicCamera> outside(new KsOrthographicCamera);
    outside->viewAll(root, wide);
    EXPECT_NEAR(outside->position.getValue()[0], 100, 1e-3);
    EXPECT_NEAR(outside->height.getValue(), 4, 1e-4);
}

TEST_F(Camera, staysWhereThereIsNothingToSee)
{
    const KsRef<KsOrthographicCamera> camera(new KsOrthographicCamera);
    const KsRef<KsSeparator> root(new KsSeparator);
    camera->viewAll(root, wide);
    camera->viewAll(static_cast<KsNode*>(nullptr), wide);
    camera->viewAll(KbBox3f(), wide);
    const float infinite = std::numeric_limits<float>::infinity();
    camera->viewAll(KbBox3f(0, 0, 0, infinite, 1, 1), wide);
    EXPECT_TRUE(camera->hasDefaultValues());
    camera->viewAll(KbBox3f(1, 2, 3, 1, 2, 3), wide); // a point can be seen
    EXPECT_TRUE(camera->getViewVolume(2).intersect(KbVec3f(1, 2, 3)));
}

// shows: KsCamera::pointAt
TEST_F(Camera, turnsToAPoint)
{
    const KsRef<KsPerspectiveCamera> camera(new KsPerspectiveCamera);
    camera->position = KbVec3f(1, 2, 3);
    for (const KbVec3f& target : {KbVec3f(5, 2, 3), KbVec3f(0, 0, 0), KbVec3f(1, 9, 3),
                                  KbVec3f(1, -9, 3), KbVec3f(1, 2, 90)}) {
        camera->pointAt(target);
        KbVec3f expected = target - camera->position.getValue();
        expected.normalize();
        const KbViewVolume volume = camera->getViewVolume();
        EXPECT_TRUE(near(volume.getProjectionDirection(), expected)) << target;
        EXPECT_GT(volume.getViewUp()[1], -1e-4) << target;
    }
    const KbRotation before = camera->orientation.getValue();
    camera->pointAt(camera->position.getValue());
    EXPECT_EQ(camera->orientation.getValue(), before);
    camera->pointAt(KbVec3f(std::numeric_limits<float>::quiet_NaN(), 0, 0));
    EXPECT_EQ(camera->orientation.getValue(), before);
    camera->pointAt({5, 2, 3}, {0, 0, 1});
    EXPECT_TRUE(near(camera->getViewVolume().getViewUp(), {0, 0, 1}));
}

TEST_F(Camera, withUnusableFieldsStillHasAVolume)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const KsRef<KsPerspectiveCamera> camera(new KsPerspectiveCamera);
    for (const float bad : {nan, 0.0f, -1.0f, std::numeric_limits<float>::infinity()}) {
        camera->heightAngle = bad;
        camera->nearDistance = bad;
        camera->farDistance = bad;
        camera->aspectRatio = bad;
        KbVec3f seen;
        camera->getViewVolume(bad).projectToScreen({0, 0, -5}, seen);
        EXPECT_TRUE(seen.isFinite()) << bad;
    }
    // One that is nowhere sets no volume at all.
    const KsRef<KsSeparator> root(new KsSeparator);
    root->addChild(camera);
    camera->position = KbVec3f(nan, 0, 0);
    KsRenderAction render{wide};
    render.apply(root);
    EXPECT_FALSE(render.getDrawList().hasCamera);
}
