#include "Pad.h"

#include <arborium/actions/KsState.h>
#include <arborium/base/KbLine.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsEventCallback.h>

#include <functional>
#include <string>

namespace {

/// Notes the calls of one dragger's callbacks.
struct Log {
    std::string name;
    std::vector<std::string>* lines;
    std::function<void(const char* what, KsDragger*)> also;

    void call(const char* what, KsDragger* dragger)
    {
        lines->push_back(name + what);
        if (also) also(what, dragger);
    }
};

void onStart(void* data, KsDragger* dragger) { static_cast<Log*>(data)->call("start", dragger); }
void onMotion(void* data, KsDragger* dragger) { static_cast<Log*>(data)->call("motion", dragger); }
void onFinish(void* data, KsDragger* dragger) { static_cast<Log*>(data)->call("finish", dragger); }

void listen(KsDragger* dragger, Log* log)
{
    dragger->addStartCallback(onStart, log);
    dragger->addMotionCallback(onMotion, log);
    dragger->addFinishCallback(onFinish, log);
}

using Lines = std::vector<std::string>;

class Drag : public DragTest {
protected:
    Lines lines;
};

} // namespace

// shows: KsDragger, KsDragger::addStartCallback, KsDragger::addMotionCallback,
// KsDragger::addFinishCallback, KsHandleEventAction::getGrabber
TEST_F(Drag, runsStartMotionFinishInThisOrder)
{
    KsPanel* panel = makePanel(1, 2);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    root->addChild(panel);
    EXPECT_TRUE(press(1, 2));
    EXPECT_EQ(action.getGrabber(), panel);
    EXPECT_TRUE(move(3, 2));
    EXPECT_TRUE(move(4, 4));
    EXPECT_TRUE(release(-4, -4));
    EXPECT_EQ(lines, (Lines{"start", "motion", "motion", "finish"}));
    EXPECT_EQ(action.getGrabber(), nullptr);
    EXPECT_FALSE(move(1, 2));
    EXPECT_FALSE(release(1, 2));
    EXPECT_EQ(lines.size(), 4u);
}

TEST_F(Drag, beginsOnTheGeometryWithButtonOneOnly)
{
    KsPanel* panel = makePanel(0, 0);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    root->addChild(panel);
    EXPECT_FALSE(press(3, 0));
    EXPECT_FALSE(press(0, 0, KsMouseButtonEvent::BUTTON2));
    EXPECT_FALSE(release(0, 0));
    EXPECT_TRUE(lines.empty());
}

TEST_F(Drag, otherPressesDuringItAreSwallowed)
{
    KsPanel* panel = makePanel(0, 0);
    KsPanel* other = makePanel(3, 0);
    Log log{"", &lines, nullptr};
    Log otherLog{"other ", &lines, nullptr};
    listen(panel, &log);
    listen(other, &otherLog);
    root->addChild(panel);
    root->addChild(other);
    press(0, 0);
    EXPECT_TRUE(press(3, 0));
    EXPECT_TRUE(press(3, 0, KsMouseButtonEvent::BUTTON3));
    release(3, 0);
    EXPECT_EQ(lines, (Lines{"start", "finish"}));
}

TEST_F(Drag, pressGoesToTheInnermostDraggerThatHasACallback)
{
    KsPanel* outer = makePanel(-3, 0);
    KsPanel* middle = makePanel(0, 0);
    KsPanel* inner = makePanel(3, 0);
    outer->getChildren()->insert(middle, 0);
    middle->getChildren()->insert(inner, 0);
    root->addChild(outer);
    Log outerLog{"outer ", &lines, nullptr};
    Log innerLog{"inner ", &lines, nullptr};
    outer->addStartCallback(onStart, &outerLog);
    inner->addFinishCallback(onFinish, &innerLog);

    press(3, 0);
    EXPECT_EQ(action.getGrabber(), inner);
    release(3, 0);
    press(0, 0); // the middle one has no callback
    EXPECT_EQ(action.getGrabber(), outer);
    release(0, 0);
    press(-3, 0);
    release(-3, 0);
    EXPECT_EQ(lines, (Lines{"inner finish", "outer start", "outer start"}));
}

// shows: KsDragger::removeStartCallback
TEST_F(Drag, withoutAnyCallbackThereIsNone)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    EXPECT_FALSE(press(0, 0));
    EXPECT_EQ(action.getGrabber(), nullptr);
    Log log{"", &lines, nullptr};
    panel->addStartCallback(onStart, &log);
    EXPECT_TRUE(panel->hasCallbacks());
    panel->removeStartCallback(onStart, nullptr); // another data pointer
    EXPECT_TRUE(panel->hasCallbacks());
    panel->removeStartCallback(onStart, &log);
    EXPECT_FALSE(panel->hasCallbacks());
    EXPECT_FALSE(press(0, 0));
    panel->addStartCallback(nullptr, &log);
    EXPECT_FALSE(panel->hasCallbacks());
}

TEST_F(Drag, frontmostGeometryGetsThePress)
{
    KsPanel* back = makePanel(0, 0);
    KsPanel* front = makePanel(0, 0);
    auto* lift = new KsSeparator;
    auto* up = new KsTranslation;
    up->translation = KbVec3f(0, 0, 1);
    lift->addChild(up);
    lift->addChild(front);
    root->addChild(lift);
    root->addChild(back);
    Log frontLog{"front ", &lines, nullptr};
    Log backLog{"back ", &lines, nullptr};
    listen(front, &frontLog);
    listen(back, &backLog);
    press(0, 0);
    release(0, 0);
    EXPECT_EQ(lines, (Lines{"front start", "front finish"}));
}

// shows: KsDragger::getPickPath, KsDragger::getViewVolume, KsDragger::getHandleEventAction,
// KsDragger::isDragging
TEST_F(Drag, keepsThePickPathOfThePress)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    int checks = 0;
    Log log{"", &lines, [&](const char*, KsDragger* dragger) {
                ASSERT_NE(dragger->getPickPath(), nullptr);
                EXPECT_TRUE(dragger->getPickPath()->containsNode(panel->getPart("first", false)));
                EXPECT_EQ(dragger->getPickPath()->getTail(), panel) << "shown up to the kit";
                EXPECT_NE(dragger->getEvent(), nullptr);
                EXPECT_EQ(dragger->getHandleEventAction(), &action);
                EXPECT_TRUE(KsViewVolumeElement::isSet(action.getState()));
                EXPECT_TRUE(dragger->getViewVolume().isSet());
                ++checks;
            }};
    listen(panel, &log);
    press(0, 0);
    EXPECT_NE(panel->getPickPath(), nullptr);
    EXPECT_EQ(panel->getEvent(), nullptr);
    EXPECT_TRUE(panel->isDragging());
    move(3, 0);
    release(3, 0);
    EXPECT_EQ(checks, 3);
    EXPECT_EQ(panel->getPickPath(), nullptr);
    EXPECT_FALSE(panel->isDragging());
}

// shows: KsDragger::getLocalStartingPoint,
// KsDragger::getWorldStartingPoint, KsDragger::getLocalToWorldMatrix,
// KsDragger::getWorldToLocalMatrix, KsDragger::getNormalizedLocaterPosition
TEST_F(Drag, spaceIsTheOneInWhichTheDraggerStands)
{
    auto* shift = new KsTranslation;
    shift->translation = KbVec3f(2, 0, 0);
    root->addChild(shift);
    KsPanel* panel = makePanel(1, 0); // its own translation does not count
    root->addChild(panel);
    std::vector<KbVec2f> points;
    Log log{"", &lines, [&](const char* what, KsDragger* dragger) {
                points.push_back(dragger->getNormalizedLocaterPosition());
                EXPECT_TRUE(dragger->getWorldStartingPoint().equals(KbVec3f(3.2f, 0.1f, 0), 1e-4f));
                EXPECT_TRUE(dragger->getLocalStartingPoint().equals(KbVec3f(1.2f, 0.1f, 0), 1e-4f));
                const KbMatrix world = dragger->getLocalToWorldMatrix();
                EXPECT_FLOAT_EQ(world[3][0], 2) << what;
                EXPECT_TRUE(world ==
                            dragger->getLocalToWorldMatrix(dragger->getHandleEventAction()));
                EXPECT_FLOAT_EQ(dragger->getWorldToLocalMatrix()[3][0], -2);
                // What a callback moves does not move the space.
                auto* look = static_cast<KsGroup*>(panel->getPart("first", false));
                static_cast<KsTranslation*>(look->getChild(0))->translation = KbVec3f(4, 4, 0);
            }};
    listen(panel, &log);
    press(3.2f, 0.1f);
    move(-5, -5);
    release(5, 5);
    ASSERT_EQ(points.size(), 3u);
    EXPECT_TRUE(points[0].equals(KbVec2f(0.82f, 0.51f), 1e-5f));
    EXPECT_TRUE(points[1].equals(KbVec2f(0, 0), 1e-5f));
    EXPECT_TRUE(points[2].equals(KbVec2f(1, 1), 1e-5f));
}

TEST_F(Drag, siblingsInsertedMeanwhileDoNotEndIt)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    press(0, 0);
    auto* shift = new KsTranslation;
    shift->translation = KbVec3f(1, 0, 0);
    root->insertChild(shift, 0);
    move(1, 1);
    EXPECT_FLOAT_EQ(panel->getLocalToWorldMatrix()[3][0], 1);
    release(1, 1);
    EXPECT_EQ(lines, (Lines{"start", "motion", "finish"}));
}

TEST_F(Drag, grabIsGivenBackBeforeFinish)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, [&](const char* what, KsDragger* dragger) {
                const bool isFinish = std::string(what) == "finish";
                EXPECT_EQ(action.getGrabber(), isFinish ? nullptr : dragger) << what;
            }};
    listen(panel, &log);
    press(0, 0);
    release(0, 0);
    EXPECT_EQ(lines, (Lines{"start", "finish"}));
}

// shows: KsHandleEventAction::getEvent, KsDragger::getEvent
TEST_F(Drag, finishMayOpenAnEventLoopInWhichTheSameDraggerIsDragged)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    int depth = 0;
    Log log{"", &lines, [&](const char* what, KsDragger* dragger) {
                if (std::string(what) != "finish" || depth++ > 0) return;
                const KsPath* path = dragger->getPickPath();
                const KsEvent* event = dragger->getEvent();
                const KsMouseButtonEvent down(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN,
                                              pixel(0, 0));
                const KsMouseButtonEvent up(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP,
                                            pixel(0, 0));
                action.setEvent(&down);
                action.apply(root.get());
                action.setEvent(&up);
                action.apply(root.get());
                EXPECT_EQ(dragger->getPickPath(), path);
                EXPECT_EQ(dragger->getEvent(), event);
                EXPECT_EQ(action.getEvent(), event);
            }};
    listen(panel, &log);
    press(0, 0);
    EXPECT_TRUE(release(0, 0));
    EXPECT_EQ(lines, (Lines{"start", "finish", "start", "finish"}));
}

TEST_F(Drag, motionMayOpenAnEventLoopInWhichTheDragEnds)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, [&](const char* what, KsDragger* dragger) {
                if (std::string(what) != "motion") return;
                const KsEvent* event = dragger->getEvent();
                const KsMouseButtonEvent up(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP,
                                            pixel(0, 0));
                action.setEvent(&up);
                action.apply(root.get());
                EXPECT_EQ(dragger->getEvent(), event);
                EXPECT_NE(dragger->getPickPath(), nullptr);
            }};
    listen(panel, &log);
    press(0, 0);
    move(1, 0);
    EXPECT_EQ(lines, (Lines{"start", "motion", "finish"}));
    EXPECT_EQ(panel->getPickPath(), nullptr);
    EXPECT_FALSE(release(1, 0));
}

TEST_F(Drag, finishMayDeleteTheDragger)
{
    const int before = KsBase::getNumInstances();
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, [&](const char* what, KsDragger*) {
                if (std::string(what) == "finish") root->removeChild(1);
            }};
    listen(panel, &log);
    Log second{"second ", &lines, nullptr};
    panel->addFinishCallback(onFinish, &second);
    press(0, 0);
    release(0, 0);
    EXPECT_EQ(lines, (Lines{"start", "finish", "second finish"}));
    EXPECT_EQ(KsBase::getNumInstances(), before);
    EXPECT_FALSE(press(0, 0));
}

TEST_F(Drag, draggerThatLeavesTheSceneHearsNoMore)
{
    const int before = KsBase::getNumInstances();
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    press(0, 0);
    move(1, 0);
    root->removeChild(1);
    EXPECT_FALSE(move(2, 0));
    EXPECT_EQ(action.getGrabber(), nullptr);
    release(2, 0);
    EXPECT_EQ(lines, (Lines{"start", "motion"}));
    EXPECT_EQ(KsBase::getNumInstances(), before);
}

TEST_F(Drag, draggerRemovedByItsOwnMotionHearsNoMore)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, [&](const char* what, KsDragger*) {
                if (std::string(what) == "motion") root->removeChild(1);
            }};
    listen(panel, &log);
    press(0, 0);
    move(1, 0);
    move(2, 0);
    release(2, 0);
    EXPECT_EQ(lines, (Lines{"start", "motion"}));
}

TEST_F(Drag, anotherSceneUnderTheSameActionEndsIt)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    press(0, 0);
    const KsRef<KsSeparator> former = root;
    root = new KsSeparator;
    root->addChild(camera.get());
    move(1, 0);
    release(1, 0);
    EXPECT_EQ(lines, (Lines{"start"}));
    EXPECT_FALSE(panel->isDragging());
}

// shows: KsDragger::getViewportRegion
TEST_F(Drag, sceneAndActionMayDieDuringIt)
{
    const int before = KsBase::getNumInstances();
    {
        KsRef<KsSeparator> scene(new KsSeparator);
        scene->addChild(camera.get());
        KsPanel* panel = makePanel(0, 0);
        scene->addChild(panel);
        Log log{"", &lines, nullptr};
        listen(panel, &log);
        KsHandleEventAction own{KbViewportRegion(120, 120)};
        const KsMouseButtonEvent down(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN,
                                      KbVec2f(60, 60));
        own.setEvent(&down);
        own.apply(scene.get());
        EXPECT_EQ(lines, (Lines{"start"}));
        EXPECT_TRUE(panel->getViewportRegion() == own.getViewportRegion());
    }
    EXPECT_EQ(KsBase::getNumInstances(), before);
}

// shows: KsDragger::dragLost
TEST_F(Drag, thatIsLostIsToldOnce)
{
    const auto leaveScene = [&] { root->removeChild(1); };
    const auto giveBack = [&] { action.releaseGrabber(); };
    for (const std::function<void()>& lose : {std::function<void()>(leaveScene), {giveBack}}) {
        const KsRef<KsPanel> panel(makePanel(0, 0));
        Log log{"", &lines, nullptr};
        listen(panel, &log);
        root->addChild(panel);
        press(0, 0);
        move(1, 0);
        EXPECT_EQ(panel->dragsLost, 0);
        lose();
        move(2, 0);
        release(2, 0);
        EXPECT_EQ(panel->dragsLost, 1);
        root->removeAllChildren();
        root->addChild(camera);
    }
    EXPECT_EQ(lines, (Lines{"start", "motion", "start", "motion"}));
}

TEST_F(Drag, thatIsReleasedIsNotLost)
{
    const KsRef<KsPanel> panel(makePanel(0, 0));
    // Not even if the release takes the dragger or the grab away.
    Log log{"", &lines, [&](const char* what, KsDragger*) {
                if (std::string(what) != "finish") return;
                KsHandleEventAction::releaseAllGrabs();
                root->removeChild(1);
            }};
    listen(panel, &log);
    root->addChild(panel);
    press(0, 0);
    move(1, 0);
    release(1, 0);
    EXPECT_EQ(lines, (Lines{"start", "motion", "finish"}));
    EXPECT_EQ(panel->dragsLost, 0);
}

TEST_F(Drag, thatIsLostInACallbackIsToldBehindIt)
{
    for (const std::string when : {"start", "motion"}) {
        lines.clear();
        const KsRef<KsPanel> panel(makePanel(0, 0));
        Log log{"", &lines, [&](const char* what, KsDragger*) {
                    if (what != when) return;
                    KsHandleEventAction::releaseAllGrabs();
                    EXPECT_NE(panel->getPickPath(), nullptr) << "the callback goes on";
                    EXPECT_EQ(panel->dragsLost, 0);
                }};
        listen(panel, &log);
        root->addChild(panel);
        press(0, 0);
        EXPECT_EQ(panel->dragsLost, when == "start" ? 1 : 0);
        move(1, 0);
        EXPECT_EQ(panel->dragsLost, 1);
        move(2, 0);
        release(2, 0);
        EXPECT_EQ(lines.back(), when);
        EXPECT_EQ(panel->dragsLost, 1);
        root->removeChild(1);
    }
}

TEST_F(Drag, isLostWithTheActionAndWithTheScene)
{
    const KsRef<KsPanel> panel(makePanel(0, 0));
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    root->addChild(panel);
    {
        KsHandleEventAction own{KbViewportRegion(100, 100)};
        const KsMouseButtonEvent down(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN,
                                      pixel(0, 0));
        own.setEvent(&down);
        own.apply(root.get());
        EXPECT_EQ(panel->dragsLost, 0);
    }
    EXPECT_EQ(panel->dragsLost, 1);
    press(0, 0);
    const KsRef<KsSeparator> former = root;
    root = new KsSeparator;
    root->addChild(camera.get());
    move(1, 0);
    EXPECT_EQ(panel->dragsLost, 2);
}

TEST_F(Drag, ofADraggerUnderTwoActionsIsLostWithTheLastOne)
{
    const KsRef<KsPanel> panel(makePanel(0, 0));
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    root->addChild(panel);
    KsHandleEventAction second{KbViewportRegion(100, 100)};
    const KsMouseButtonEvent down(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, pixel(0, 0));
    press(0, 0);
    second.setEvent(&down);
    second.apply(root.get());
    action.releaseGrabber();
    EXPECT_EQ(panel->dragsLost, 0) << "it is dragged still";
    second.releaseGrabber();
    EXPECT_EQ(panel->dragsLost, 1);
}

// shows: KsDragger::addMotionCallback, KsDragger::removeMotionCallback
TEST_F(Drag, callbacksMayBeAddedAndRemovedByCallbacks)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log first{"first ", &lines, nullptr};
    Log second{"second ", &lines, nullptr};
    Log third{"third ", &lines, nullptr};
    first.also = [&](const char*, KsDragger* dragger) {
        dragger->removeMotionCallback(onMotion, &first);
        dragger->removeMotionCallback(onMotion, &second);
        dragger->addMotionCallback(onMotion, &third);
    };
    panel->addMotionCallback(onMotion, &first);
    panel->addMotionCallback(onMotion, &second);
    press(0, 0);
    move(1, 0);
    EXPECT_EQ(lines, (Lines{"first motion"}));
    move(2, 0);
    EXPECT_EQ(lines, (Lines{"first motion", "third motion"}));
    release(2, 0);
}

// shows: KsDragger::removeFinishCallback, KsDragger::hasCallbacks
TEST_F(Drag, finishIsNotHeardByWhoHasLeft)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, nullptr};
    panel->addFinishCallback(onFinish, &log);
    EXPECT_TRUE(panel->hasCallbacks());
    press(0, 0);
    panel->removeFinishCallback(onFinish, &log);
    panel->removeFinishCallback(onFinish, &log); // is gone already
    release(0, 0);
    EXPECT_TRUE(lines.empty());
    EXPECT_FALSE(panel->hasCallbacks());
}

// shows: KsDragger::getTrackerRay
TEST_F(Drag, threeDimensionalPointerDragsByItsRay)
{
    auto* shift = new KsTranslation;
    shift->translation = KbVec3f(1, 0, 0);
    root->addChild(shift);
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, [&](const char*, KsDragger* dragger) {
                EXPECT_TRUE(dragger->getEvent()->isOfType(KsTrackerEvent::getClassTypeId()));
                const KbLine ray = dragger->getTrackerRay();
                EXPECT_FLOAT_EQ(ray.getPosition()[0], 0.25f);
                EXPECT_FLOAT_EQ(ray.getDirection()[2], -1);
            }};
    listen(panel, &log);
    const auto tracker = [&](KsTrackerEvent::Action what) {
        return send(KsTrackerEvent(what, KbVec3f(1.25f, 0, 8), KbRotation()));
    };
    EXPECT_TRUE(tracker(KsTrackerEvent::PRESS));
    EXPECT_TRUE(panel->getWorldStartingPoint().equals(KbVec3f(1.25f, 0, 0), 1e-4f));
    EXPECT_TRUE(tracker(KsTrackerEvent::MOVE));
    EXPECT_TRUE(release(0, 0)) << "the mouse does not end it";
    EXPECT_TRUE(tracker(KsTrackerEvent::RELEASE));
    EXPECT_EQ(lines, (Lines{"start", "motion", "finish"}));
}

TEST_F(Drag, pressReachesEventCallbacksBehindTheDraggerFirst)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    auto* ear = new KsEventCallback;
    root->addChild(ear);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    bool isTaken = false;
    struct Context {
        Lines* lines;
        bool* isTaken;
    } context{&lines, &isTaken};
    ear->addEventCallback(
        KsMouseButtonEvent::getClassTypeId(),
        [](void* data, KsEventCallback* node) {
            auto& c = *static_cast<Context*>(data);
            c.lines->push_back("ear");
            if (*c.isTaken) node->setHandled();
        },
        &context);
    press(0, 0);
    EXPECT_EQ(lines, (Lines{"ear", "start"}));
    release(0, 0);
    EXPECT_EQ(lines, (Lines{"ear", "start", "finish"})) << "a grabber alone gets its events";
    lines.clear();
    isTaken = true;
    EXPECT_TRUE(press(0, 0));
    EXPECT_EQ(lines, (Lines{"ear"})) << "a press that is handled grabs nothing";
}

TEST_F(Drag, hiddenDraggerLosesItsGrab)
{
    auto* choice = new KsSwitch;
    choice->whichChild = 0;
    KsPanel* panel = makePanel(0, 0);
    choice->addChild(panel);
    root->addChild(choice);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    press(0, 0);
    choice->whichChild = -1;
    move(1, 0);
    EXPECT_EQ(action.getGrabber(), nullptr);
    EXPECT_EQ(lines, (Lines{"start"}));
}

TEST_F(Drag, draggerThatStandsTwiceIsDraggedWhereItWasHit)
{
    KsPanel* panel = makePanel(0, 0);
    for (const float x : {-2.0f, 2.0f}) {
        auto* place = new KsSeparator;
        auto* shift = new KsTranslation;
        shift->translation = KbVec3f(x, 0, 0);
        place->addChild(shift);
        place->addChild(panel);
        root->addChild(place);
    }
    float at = 0;
    Log log{"", &lines,
            [&](const char*, KsDragger* dragger) { at = dragger->getLocalToWorldMatrix()[3][0]; }};
    listen(panel, &log);
    press(-2, 0);
    EXPECT_FLOAT_EQ(at, -2);
    release(-2, 0);
    press(2, 0);
    EXPECT_FLOAT_EQ(at, 2);
    release(2, 0);
    EXPECT_EQ(lines, (Lines{"start", "finish", "start", "finish"}));
}

// shows: KsInteractionKit::setPartAsPath
TEST_F(Drag, geometryElsewhereCanStandForAPart)
{
    KsPanel* panel = makePanel(-3, 0);
    auto* outside = new KsSeparator;
    auto* shift = new KsTranslation;
    shift->translation = KbVec3f(3, 0, 0);
    auto* pad = new KsPad;
    outside->addChild(shift);
    outside->addChild(pad);
    root->addChild(outside);
    root->addChild(panel);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    EXPECT_FALSE(press(3, 0));
    const KsRef<KsPath> path(new KsPath(outside));
    ASSERT_TRUE(path->append(pad));
    ASSERT_TRUE(panel->setPartAsPath("first", path));
    EXPECT_TRUE(press(3, 0));
    EXPECT_TRUE(release(3, 0));
    EXPECT_EQ(lines, (Lines{"start", "finish"}));
    EXPECT_TRUE(panel->setPartAsPath("first", nullptr));
    EXPECT_FALSE(press(3, 0));
}

TEST_F(Drag, pickTellsTheKitAndItsPublicPart)
{
    KsPanel* outer = makePanel(-3, 0);
    KsPanel* inner = makePanel(0, 0);
    outer->getChildren()->insert(inner, 0);
    root->addChild(outer);
    KsRayPickAction pick(KbViewportRegion(100, 100));
    pick.setPoint(pixel(0, 0));
    pick.apply(root.get());
    ASSERT_NE(pick.getPickedPoint(), nullptr);
    EXPECT_EQ(pick.getPickedPoint()->getPath()->getTail(), inner);
    const auto* detail = ksCast<KsNodeKitDetail>(pick.getPickedPoint()->getDetail(inner));
    ASSERT_NE(detail, nullptr);
    EXPECT_EQ(detail->getNodeKit(), inner);
    EXPECT_EQ(detail->getPart(), inner->getPart("first", false));
    EXPECT_EQ(detail->getPartName(), "first");
    EXPECT_EQ(pick.getPickedPoint()->getDetail(outer), nullptr);
}

TEST_F(Drag, pickedPartIsTheOneOfWhichTheParentWasPassed)
{
    // One node stands for two parts.
    KsPanel* panel = makePanel(0, 0);
    auto* look = static_cast<KsGroup*>(panel->getPart("first", false));
    const KsRef<KsGroup> shared(look);
    panel->setPart("lookA", shared);
    panel->setPart("first", nullptr);
    panel->setPart("zeroth", new KsGroup);
    KsInteractionKit::setSwitchValue(panel->getAnyPart("choice", false), 0);
    root->addChild(panel);
    KsRayPickAction pick(KbViewportRegion(100, 100));
    pick.setPickAll(true);
    pick.setPoint(pixel(0, 0));
    pick.apply(root.get());
    ASSERT_EQ(pick.getPickedPointsListLength(), 1);
    const auto* detail = ksCast<KsNodeKitDetail>(pick.getPickedPoint()->getDetail(panel));
    ASSERT_NE(detail, nullptr);
    EXPECT_EQ(detail->getPartName(), "lookA");
}

TEST_F(Drag, copyHasNoCallbacks)
{
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    const KsRef<KsNode> copy(panel->copy());
    EXPECT_FALSE(static_cast<KsPanel*>(copy.get())->hasCallbacks());
}

TEST_F(Drag, withoutACameraNothingIsHit)
{
    root->removeAllChildren();
    KsPanel* panel = makePanel(0, 0);
    root->addChild(panel);
    Log log{"", &lines, nullptr};
    listen(panel, &log);
    EXPECT_FALSE(press(0, 0));
    EXPECT_TRUE(lines.empty());
}
