// Draggers under real mouse events in a viewer, and under the events of a pointer in space.

#include "ViewerScene.h"

#include <arborium/base/KbLine.h>
#include <arborium/base/KbPlaneProjector.h>
#include <arborium/kits/KsDragger.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsTranslation.h>

#include <functional>
#include <vector>

namespace {

/// A cube that follows the pointer in its plane, as an application would make it.
class Block {
public:
    Block(float x, float y, float size)
    {
        place->translation = KbVec3f(x, y, 0);
        cube->width = cube->height = cube->depth = size;
        look()->addChild(place.get());
        look()->addChild(cube.get());
        dragger->addStartCallback(&started, this);
        dragger->addMotionCallback(&moved, this);
        dragger->addFinishCallback(&finished, this);
    }
    KsSeparator* look() const
    {
        return ksCast<KsSeparator>(dragger->getAnyPart("geomSeparator", true));
    }
    KbVec3f at() const { return place->translation; }

    KsRef<KsDragger> dragger{new KsDragger};
    KsRef<KsTranslation> place{new KsTranslation};
    KsRef<KsCube> cube{new KsCube};
    int starts = 0, motions = 0, finishes = 0;
    std::function<void()> duringMotion;

private:
    KbVec3f pointed()
    {
        m_projector.setViewVolume(dragger->getViewVolume());
        m_projector.setWorkingSpace(dragger->getLocalToWorldMatrix());
        if (!dragger->getEvent()->isOfType(KsTrackerEvent::getClassTypeId()))
            return m_projector.project(dragger->getNormalizedLocaterPosition());
        KbVec3f result;
        m_projector.intersect(dragger->getTrackerRay(), result);
        return result;
    }
    static void started(void* data, KsDragger* dragger)
    {
        auto* self = static_cast<Block*>(data);
        ++self->starts;
        const KbVec3f point = dragger->getLocalStartingPoint();
        self->m_projector.setPlane(KbPlane(KbVec3f(0, 0, 1), point));
        self->m_offset = self->at() - self->pointed();
    }
    static void moved(void* data, KsDragger*)
    {
        auto* self = static_cast<Block*>(data);
        ++self->motions;
        self->place->translation = self->pointed() + self->m_offset;
        if (self->duringMotion) self->duringMotion();
    }
    static void finished(void* data, KsDragger*) { ++static_cast<Block*>(data)->finishes; }

    KbPlaneProjector m_projector;
    KbVec3f m_offset;
};

/// To a pixel, which is a twentieth of a unit.
testing::AssertionResult isAt(const KbVec3f& p, float x, float y)
{
    if (std::fabs(p[0] - x) < 0.051f && std::fabs(p[1] - y) < 0.051f)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "at " << p[0] << ' ' << p[1] << ", not at " << x << ' ' << y;
}

class ViewerDrag : public ViewerScene {
protected:
    KsHandleEventAction* action() const { return viewer->getHandleEventAction(); }
};

} // namespace

TEST_F(ViewerDrag, aBlockFollowsTheMouse)
{
    Block block(-2, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(-2.2, 0.1);
    EXPECT_TRUE(block.dragger->isDragging());
    move(0.8, 2.1);
    EXPECT_TRUE(isAt(block.at(), 1, 2));
    move(2.8, -2.9);
    EXPECT_TRUE(isAt(block.at(), 3, -3));
    release(2.8, -2.9);
    move(0, 0, Qt::NoButton);
    EXPECT_TRUE(isAt(block.at(), 3, -3));
    EXPECT_EQ(block.starts, 1);
    EXPECT_EQ(block.motions, 2);
    EXPECT_EQ(block.finishes, 1);
}

TEST_F(ViewerDrag, anInnerBlockMovesAloneAndGoesAlongWithTheOuterOne)
{
    Block outer(-2, 0, 1), inner(2, 0, 1);
    outer.look()->addChild(inner.dragger); // behind the outer one's place
    scene->addChild(outer.dragger);
    show();
    // The inner block stands at 0 0 of the scene.
    press(0, 0);
    EXPECT_TRUE(inner.dragger->isDragging());
    EXPECT_FALSE(outer.dragger->isDragging());
    move(0, 2);
    release(0, 2);
    EXPECT_TRUE(isAt(inner.at(), 2, 2));
    EXPECT_TRUE(isAt(outer.at(), -2, 0));

    press(-2, 0);
    EXPECT_FALSE(inner.dragger->isDragging());
    move(-1, -2);
    release(-1, -2);
    EXPECT_TRUE(isAt(outer.at(), -1, -2));
    EXPECT_TRUE(isAt(inner.at(), 2, 2)) << "in the space of the outer one";
    EXPECT_EQ(inner.starts, 1);

    // It is found where the outer one took it: at 1 0.
    press(1, 0);
    EXPECT_TRUE(inner.dragger->isDragging());
    move(3, 0);
    release(3, 0);
    EXPECT_TRUE(isAt(inner.at(), 4, 2));
    EXPECT_EQ(outer.finishes, 1);
    EXPECT_EQ(inner.finishes, 2);
}

TEST_F(ViewerDrag, anInnerBlockIsLeftToTheOuterOneAsLongAsNobodyListensToIt)
{
    Block outer(-2, 0, 1);
    Block* inner = new Block(2, 0, 1);
    const KsRef<KsDragger> silent(static_cast<KsDragger*>(inner->dragger->copy()));
    delete inner;
    outer.look()->addChild(silent);
    scene->addChild(outer.dragger);
    show();
    press(0, 0); // on the copy, which has no callbacks
    EXPECT_TRUE(outer.dragger->isDragging());
    move(1, 1);
    release(1, 1);
    EXPECT_TRUE(isAt(outer.at(), -1, 1));
}

TEST_F(ViewerDrag, aBlockStaysUnderThePointerWhileTheCameraMoves)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(0, 0);
    move(1, 0);
    EXPECT_TRUE(isAt(block.at(), 1, 0));
    camera->position = KbVec3f(2, -1, 20);
    move(1, 0); // the same pixel means another point
    EXPECT_TRUE(isAt(block.at(), 3, -1));
    camera->height = 5.0f;
    move(2, 0);
    EXPECT_TRUE(isAt(block.at(), 2 + 1, -1)) << "each pixel is half as much";
    release(2, 0);
    EXPECT_EQ(block.finishes, 1);
}

TEST_F(ViewerDrag, theCameraMayTurnDuringADrag)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(0, 0);
    camera->orientation = KbRotation(KbVec3f(0, 0, 1), 1.5707963f); // a quarter about its view
    move(2, 0);
    EXPECT_TRUE(isAt(block.at(), 0, 2)) << "rightward on the screen is upward in the scene";
    // Seen edge on, the plane has no point under the pointer: the last one holds.
    camera->orientation = KbRotation(KbVec3f(0, 1, 0), 1.5707963f);
    move(4, 0);
    EXPECT_TRUE(isAt(block.at(), 0, 2));
    release(4, 0);
    EXPECT_FALSE(block.dragger->isDragging());
}

TEST_F(ViewerDrag, theWheelIsSwallowedDuringADrag)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(0, 0);
    turnWheel(120, 0, 0);
    EXPECT_FLOAT_EQ(camera->height.getValue(), 10);
    release(0, 0);
    turnWheel(120, 0, 0);
    EXPECT_FLOAT_EQ(camera->height.getValue(), 9);
}

TEST_F(ViewerDrag, aBlockThatIsTakenOutOfTheSceneEndsItsDragAndAnotherCanBegin)
{
    Block gone(-2, 0, 1), other(2, 0, 1);
    const KsRef<KsSeparator> group(new KsSeparator);
    group->addChild(gone.dragger);
    scene->addChild(group);
    scene->addChild(other.dragger);
    show();
    press(-2, 0);
    move(-2, 1);
    scene->removeChild(group);
    move(-2, 2);
    EXPECT_EQ(gone.motions, 1);
    EXPECT_EQ(gone.finishes, 0);
    EXPECT_FALSE(gone.dragger->isDragging());
    EXPECT_EQ(action()->getGrabber(), nullptr);
    release(-2, 2);
    press(2, 0);
    move(2, 1);
    release(2, 1);
    EXPECT_TRUE(isAt(other.at(), 2, 1));
    // Back in the scene it is dragged as before.
    scene->addChild(group);
    press(-2, 1);
    move(-3, 1);
    release(-3, 1);
    EXPECT_TRUE(isAt(gone.at(), -3, 1));
}

TEST_F(ViewerDrag, aDragGoesOnThoughTheShapeThatWasHitIsReplaced)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(0, 0);
    block.look()->removeChild(block.cube);
    move(1, 1);
    EXPECT_TRUE(isAt(block.at(), 1, 1));
    release(1, 1);
    EXPECT_EQ(block.finishes, 1);
}

TEST_F(ViewerDrag, aBlockMayTakeItselfOutInItsMotionAndDie)
{
    auto block = std::make_unique<Block>(0.0f, 0.0f, 1.0f);
    Block other(2, 0, 1);
    scene->addChild(block->dragger);
    scene->addChild(other.dragger);
    show();
    block->duringMotion = [&] { scene->removeChild(block->dragger); };
    press(0, 0);
    move(1, 0);
    block.reset();
    move(2, 0);
    release(2, 0);
    EXPECT_EQ(action()->getGrabber(), nullptr);
    press(2, 0);
    EXPECT_TRUE(other.dragger->isDragging());
    release(2, 0);
}

TEST_F(ViewerDrag, aSecondPressDuringADragChangesNothing)
{
    Block first(-2, 0, 1), second(2, 0, 1);
    scene->addChild(first.dragger);
    scene->addChild(second.dragger);
    show();
    press(-2, 0);
    move(-2, 1);
    press(2, 0, Qt::RightButton);
    press(2, 0); // as from another device
    EXPECT_EQ(second.starts, 0);
    move(2, 1);
    EXPECT_TRUE(isAt(first.at(), 2, 1));
    release(2, 1, Qt::RightButton);
    EXPECT_TRUE(first.dragger->isDragging()) << "its own button is still down";
    release(2, 1);
    EXPECT_EQ(first.starts, 1);
    EXPECT_EQ(first.finishes, 1);
    EXPECT_FALSE(first.dragger->isDragging());
}

TEST_F(ViewerDrag, viewModeEndsADrag)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(0, 0);
    move(1, 0);
    QTest::keyClick(viewer.get(), Qt::Key_Escape);
    ASSERT_TRUE(viewer->isViewing());
    EXPECT_FALSE(block.dragger->isDragging());
    move(2, 0);
    release(2, 0);
    EXPECT_TRUE(isAt(block.at(), 1, 0));
}

TEST_F(ViewerDrag, aModalWindowThatGetsTheReleaseEndsADrag)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(0, 0);
    move(1, 0);
    QDialog box;
    box.setModal(true);
    box.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    EXPECT_FALSE(block.dragger->isDragging());
    EXPECT_EQ(block.finishes, 0);
    box.hide();
    move(2, 0, Qt::NoButton);
    EXPECT_TRUE(isAt(block.at(), 1, 0));
    // The next drag is one like any other; a window that is not modal changes nothing.
    press(1, 0);
    QDialog other;
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    move(2, 0);
    release(2, 0);
    EXPECT_TRUE(isAt(block.at(), 2, 0));
    EXPECT_EQ(block.finishes, 1);
}

TEST_F(ViewerDrag, aMotionWithoutTheButtonEndsADragWhoseReleaseWentElsewhere)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    press(0, 0);
    move(1, 0);
    move(2, 0, Qt::NoButton);
    EXPECT_FALSE(block.dragger->isDragging());
    EXPECT_TRUE(isAt(block.at(), 1, 0));
    EXPECT_EQ(block.finishes, 0);
}

TEST_F(ViewerDrag, aPointerInSpaceDragsWhatItPointsAt)
{
    Block outer(-2, 0, 1), inner(2, 0, 1);
    outer.look()->addChild(inner.dragger);
    scene->addChild(outer.dragger);
    show();
    EXPECT_FALSE(point(KsTrackerEvent::PRESS, 3, 3)) << "there is nothing";
    EXPECT_TRUE(point(KsTrackerEvent::PRESS, -2, 0));
    EXPECT_TRUE(outer.dragger->isDragging());
    EXPECT_TRUE(point(KsTrackerEvent::MOVE, -1, 1));
    EXPECT_TRUE(isAt(outer.at(), -1, 1));
    EXPECT_TRUE(point(KsTrackerEvent::RELEASE, -1, 1));
    EXPECT_EQ(outer.finishes, 1);

    // The inner one, in the space that the outer one has moved.
    point(KsTrackerEvent::PRESS, 1, 1);
    EXPECT_TRUE(inner.dragger->isDragging());
    point(KsTrackerEvent::MOVE, 1, -1);
    point(KsTrackerEvent::RELEASE, 1, -1);
    EXPECT_TRUE(isAt(inner.at(), 2, -2));
    EXPECT_TRUE(isAt(outer.at(), -1, 1));
}

TEST_F(ViewerDrag, aPointerInSpaceMayTurnInPlace)
{
    Block block(0, 0, 1);
    scene->addChild(block.dragger);
    show();
    point(KsTrackerEvent::PRESS, 0, 0);
    // From 10 units off the front face, at z 0.5, is 9.5 away.
    const float angle = std::atan2(3.0f, 9.5f);
    point(KsTrackerEvent::MOVE, 0, 0, KbRotation(KbVec3f(0, 1, 0), -angle));
    EXPECT_TRUE(isAt(block.at(), 3, 0));
    point(KsTrackerEvent::RELEASE, 0, 0);
    EXPECT_EQ(block.finishes, 1);
}

TEST_F(ViewerDrag, theMouseAndAPointerInSpaceDoNotDisturbEachOther)
{
    Block block(0, 0, 1), other(3, 0, 1);
    scene->addChild(block.dragger);
    scene->addChild(other.dragger);
    show();
    point(KsTrackerEvent::PRESS, 0, 0);
    press(3, 0);
    move(3, 3);
    release(3, 3);
    EXPECT_EQ(other.starts, 0);
    EXPECT_EQ(block.motions, 0);
    EXPECT_TRUE(block.dragger->isDragging());
    point(KsTrackerEvent::MOVE, 0, 2);
    EXPECT_TRUE(isAt(block.at(), 0, 2));
    point(KsTrackerEvent::RELEASE, 0, 2);

    press(0, 2);
    point(KsTrackerEvent::PRESS, 3, 0);
    point(KsTrackerEvent::MOVE, 3, 3);
    point(KsTrackerEvent::RELEASE, 3, 3);
    EXPECT_TRUE(block.dragger->isDragging());
    EXPECT_TRUE(isAt(block.at(), 0, 2));
    release(0, 2);
    EXPECT_EQ(block.finishes, 2);
    EXPECT_EQ(other.starts, 0);
}
