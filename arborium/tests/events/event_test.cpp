#include "../kits/Pad.h"

#include <MessageGuard.h>
#include <arborium/nodes/KsEventCallback.h>

#include <cmath>

KS_NODE_SOURCE(KsPad, KsNode)
KS_KIT_SOURCE(KsPanel, KsDragger)

namespace {

using Names = std::vector<std::string>;

/// An event callback that notes its calls and may handle the event.
struct Ear {
    Ear(Names* list, const char* text, bool isTaker = false)
        : node(new KsEventCallback), heard(list), name(text), handles(isTaker)
    {
        node->addEventCallback(KsEvent::getClassTypeId(), call, this);
    }
    static void call(void* data, KsEventCallback* callback)
    {
        auto& self = *static_cast<Ear*>(data);
        self.heard->push_back(self.name);
        EXPECT_NE(callback->getEvent(), nullptr);
        if (self.handles) callback->setHandled();
    }
    KsRef<KsEventCallback> node;
    Names* heard;
    std::string name;
    bool handles;
};

class Events : public DragTest {
protected:
    Names heard;
};

/// A node that grabs what it hears, and notes it.
class Catcher {
public:
    explicit Catcher(KsHandleEventAction& action) : node(new KsEventCallback), m_action(action)
    {
        node->addEventCallback(KsEvent::getClassTypeId(), call, this);
    }
    static void call(void* data, KsEventCallback* callback)
    {
        auto& self = *static_cast<Catcher*>(data);
        ++self.count;
        if (self.count == 1) self.m_action.setGrabber(callback);
        callback->setHandled();
    }
    KsRef<KsEventCallback> node;
    int count = 0;

private:
    KsHandleEventAction& m_action;
};

} // namespace

// shows: KsMouseButtonEvent, KsMouseButtonEvent::isButtonPress,
// KsMouseButtonEvent::isButtonRelease, KsKeyboardEvent::getPrintableCharacter,
// KsKeyboardEvent::isKeyPressEvent, KsKeyboardEvent::isKeyReleaseEvent
TEST_F(Events, haveTheirTypes)
{
    const KsMouseButtonEvent mouse(KsMouseButtonEvent::BUTTON2, KsButtonEvent::DOWN, {3, 4});
    EXPECT_TRUE(mouse.isOfType(KsEvent::getClassTypeId()));
    EXPECT_TRUE(mouse.isOfType(KsButtonEvent::getClassTypeId()));
    EXPECT_FALSE(mouse.isOfType(KsKeyboardEvent::getClassTypeId()));
    EXPECT_TRUE(KsMouseButtonEvent::isButtonPress(&mouse, KsMouseButtonEvent::BUTTON2));
    EXPECT_FALSE(KsMouseButtonEvent::isButtonPress(&mouse, KsMouseButtonEvent::BUTTON1));
    EXPECT_FALSE(KsMouseButtonEvent::isButtonRelease(&mouse, KsMouseButtonEvent::BUTTON2));
    EXPECT_FALSE(KsMouseButtonEvent::isButtonPress(nullptr, KsMouseButtonEvent::BUTTON1));
    const KsMouseButtonEvent up(KsMouseButtonEvent::BUTTON2, KsButtonEvent::UP, {3, 4});
    EXPECT_EQ(up.getPosition(), KbVec2f(3, 4));
    EXPECT_TRUE(KsMouseButtonEvent::isButtonRelease(&up, KsMouseButtonEvent::BUTTON2));
    EXPECT_FALSE(KsMouseButtonEvent::isButtonRelease(&up, KsMouseButtonEvent::BUTTON3));
    EXPECT_FALSE(KsMouseButtonEvent::isButtonPress(&up, KsMouseButtonEvent::BUTTON2));
    EXPECT_FALSE(KsMouseButtonEvent::isButtonRelease(nullptr, KsMouseButtonEvent::BUTTON2));

    const KsKeyboardEvent key(KsKeyboardEvent::RETURN, KsButtonEvent::DOWN, u'\r');
    EXPECT_TRUE(KsKeyboardEvent::isKeyPressEvent(&key, 65293));
    EXPECT_FALSE(KsKeyboardEvent::isKeyPressEvent(&key, KsKeyboardEvent::BACKSPACE));
    EXPECT_FALSE(KsKeyboardEvent::isKeyReleaseEvent(&key, 65293));
    EXPECT_FALSE(KsKeyboardEvent::isKeyPressEvent(&mouse, 65293));
    EXPECT_FALSE(KsKeyboardEvent::isKeyPressEvent(nullptr, 65293));
    const KsKeyboardEvent released('a', KsButtonEvent::UP);
    EXPECT_TRUE(KsKeyboardEvent::isKeyReleaseEvent(&released, 'a'));
    EXPECT_FALSE(KsKeyboardEvent::isKeyReleaseEvent(&released, 'b'));
    EXPECT_FALSE(KsKeyboardEvent::isKeyReleaseEvent(nullptr, 'a'));
    EXPECT_EQ(released.getPrintableCharacter(), 0) << "a key that types nothing";
    EXPECT_EQ(key.getPrintableCharacter(), u'\r');
}

// shows: KsEvent::initClasses
TEST(EventTypes, areThereOnceTheyAreRegistered)
{
    KsEvent::initClasses();
    for (const char* name : {"Event", "ButtonEvent", "MouseButtonEvent", "Location2Event",
                             "TrackerEvent", "KeyboardEvent"}) {
        EXPECT_FALSE(KsType::fromName(name).isBad()) << name;
        EXPECT_TRUE(KsType::fromName(name).isDerivedFrom(KsEvent::getClassTypeId())) << name;
    }
}

// shows: KsEvent::getNormalizedPosition, KsLocation2Event
TEST_F(Events, positionsAreSharesOfTheViewport)
{
    KbViewportRegion viewport(200, 100);
    const KsLocation2Event event(KbVec2f(50, 25));
    EXPECT_TRUE(event.getNormalizedPosition(viewport).equals(KbVec2f(0.25f, 0.25f), 1e-6f));
    viewport.setViewport(0.5f, 0, 0.5f, 1);
    EXPECT_TRUE(event.getNormalizedPosition(viewport).equals(KbVec2f(0.5f, 0.25f), 1e-6f));
}

// shows: KsTrackerEvent, KsTrackerEvent::getDirection
TEST_F(Events, threeDimensionalPointerLooksAlongItsTurnedNegativeZAxis)
{
    const KsTrackerEvent straight(KsTrackerEvent::MOVE, KbVec3f(), KbRotation());
    EXPECT_TRUE(straight.getDirection().equals(KbVec3f(0, 0, -1), 1e-6f));
    const KbRotation turn(KbVec3f(0, 1, 0), static_cast<float>(M_PI) / 2);
    const KsTrackerEvent turned(KsTrackerEvent::MOVE, KbVec3f(), turn);
    EXPECT_TRUE(turned.getDirection().equals(KbVec3f(-1, 0, 0), 1e-6f));
}

TEST_F(Events, passInTraversalOrderUntilOneHandlesThem)
{
    Ear first(&heard, "first");
    Ear second(&heard, "second", true);
    Ear third(&heard, "third");
    for (const Ear* ear : {&first, &second, &third}) root->addChild(ear->node.get());
    EXPECT_TRUE(move(0, 0));
    EXPECT_EQ(heard, (Names{"first", "second"}));
}

TEST_F(Events, keysReachEveryCallbackEvenWhenHandled)
{
    Ear first(&heard, "first", true);
    Ear second(&heard, "second", true);
    Ear inKit(&heard, "kit");
    root->addChild(first.node.get());
    auto* panel = new KsPanel;
    static_cast<KsGroup*>(panel->getPart("first", true))->addChild(inKit.node.get());
    root->addChild(panel);
    root->addChild(second.node.get());
    EXPECT_TRUE(send(KsKeyboardEvent('a', KsButtonEvent::DOWN, u'a')));
    EXPECT_EQ(heard, (Names{"first", "kit", "second"}));
}

// shows: KsHandleEventAction::setGrabber, KsHandleEventAction::getGrabber
TEST_F(Events, keysPassAGrabByThePointer)
{
    Catcher catcher(action);
    Ear ear(&heard, "ear");
    root->addChild(ear.node.get());
    root->addChild(catcher.node.get());
    move(0, 0);
    EXPECT_EQ(action.getGrabber(), catcher.node.get());
    heard.clear();
    send(KsKeyboardEvent('a', KsButtonEvent::DOWN, u'a'));
    EXPECT_EQ(heard, (Names{"ear"}));
    EXPECT_EQ(catcher.count, 2);
}

// shows: KsHandleEventAction::releaseGrabber
TEST_F(Events, grabberAloneGetsThemUntilItReleases)
{
    Catcher catcher(action);
    Ear ear(&heard, "ear");
    root->addChild(ear.node.get());
    root->addChild(catcher.node.get());
    move(0, 0);
    EXPECT_EQ(heard, (Names{"ear"}));
    move(1, 0);
    press(1, 0);
    EXPECT_EQ(catcher.count, 3);
    EXPECT_EQ(heard, (Names{"ear"}));
    action.releaseGrabber();
    EXPECT_EQ(action.getGrabber(), nullptr);
    move(0, 0);
    EXPECT_EQ(heard, (Names{"ear", "ear"}));
}

// shows: KsHandleEventAction::releaseAllGrabs
TEST_F(Events, grabEndsBeforeALoopOfItsOwnBegins)
{
    struct Opener {
        static void call(void* data, KsEventCallback* node)
        {
            auto* handler = static_cast<KsHandleEventAction*>(data);
            handler->setGrabber(node);
            EXPECT_EQ(handler->getGrabber(), node);
            KsHandleEventAction::releaseAllGrabs();
            EXPECT_EQ(handler->getGrabber(), nullptr);
        }
    };
    auto* opener = new KsEventCallback;
    opener->addEventCallback(KsEvent::getClassTypeId(), Opener::call, &action);
    root->addChild(opener);
    move(0, 0);
    EXPECT_EQ(action.getGrabber(), nullptr);
    KsHandleEventAction::releaseAllGrabs(); // nothing is being handed on
}

TEST_F(Events, grabEndsWhenTheGrabberIsTakenOutOrDeleted)
{
    const int before = KsBase::getNumInstances();
    {
        Catcher catcher(action);
        root->addChild(catcher.node.get());
        move(0, 0);
        root->removeChild(1);
        move(1, 0);
        EXPECT_EQ(catcher.count, 1);
        EXPECT_EQ(action.getGrabber(), nullptr);
    }
    EXPECT_EQ(KsBase::getNumInstances(), before);
}

// shows: KsHandleEventAction::setGrabber
TEST_F(Events, nodeThatIsNotTraversedCannotGrab)
{
    const KsRef<KsGroup> stranger(new KsGroup);
    ExpectedMessages messages("KsHandleEventAction::setGrabber", "a Group grabs events");
    action.setGrabber(stranger.get());
    EXPECT_EQ(action.getGrabber(), nullptr);
}

// shows: KsHandleEventAction, KsHandleEventAction::getPickedPoint
TEST_F(Events, pickIsMadeOnceAndOnDemand)
{
    struct Context {
        KsHandleEventAction* action;
        const KsPickedPoint* points[2] = {nullptr, nullptr};
        int count = 0;
    } context{&action};
    const auto look = [](void* data, KsEventCallback*) {
        auto& c = *static_cast<Context*>(data);
        if (c.count < 2) c.points[c.count++] = c.action->getPickedPoint();
    };
    for (int i = 0; i < 2; ++i) {
        auto* ear = new KsEventCallback;
        ear->addEventCallback(KsEvent::getClassTypeId(), look, &context);
        root->addChild(ear);
    }
    root->addChild(new KsPad);
    move(0.25f, 0);
    EXPECT_EQ(context.count, 2);
    ASSERT_NE(context.points[0], nullptr);
    EXPECT_EQ(context.points[0], context.points[1]);
    EXPECT_EQ(action.getPickedPoint(), nullptr) << "it is gone with the event";
}

TEST_F(Events, withoutAnEventOrSceneNothingHappens)
{
    Ear ear(&heard, "ear");
    root->addChild(ear.node.get());
    action.setEvent(nullptr);
    action.apply(root.get());
    const KsLocation2Event event(KbVec2f(0, 0));
    action.setEvent(&event);
    action.apply(static_cast<KsNode*>(nullptr));
    action.apply(static_cast<KsPath*>(nullptr));
    EXPECT_TRUE(heard.empty());
    EXPECT_FALSE(action.isHandled());
}

// shows: KsHandleEventAction::setEvent
TEST_F(Events, goToAPathAlone)
{
    Ear on(&heard, "on");
    Ear off(&heard, "off");
    auto* there = new KsSeparator;
    there->addChild(on.node.get());
    auto* elsewhere = new KsSeparator;
    elsewhere->addChild(off.node.get());
    root->addChild(elsewhere);
    root->addChild(there);
    const KsRef<KsPath> path(new KsPath(root.get()));
    ASSERT_TRUE(path->append(there));
    const KsLocation2Event event(KbVec2f(0, 0));
    action.setEvent(&event);
    action.apply(path.get());
    action.setEvent(nullptr);
    EXPECT_EQ(heard, (Names{"on"}));
}

// shows: KsHandleEventAction::isHandled
TEST_F(Events, innerEventLoopLeavesTheOuterEventAsItWas)
{
    struct Context {
        Events* test;
        KsHandleEventAction* action;
        KsNode* root;
        int depth = 0;
    } context{this, &action, root.get()};
    auto* loop = new KsEventCallback;
    loop->addEventCallback(
        KsMouseButtonEvent::getClassTypeId(),
        [](void* data, KsEventCallback* node) {
            auto& c = *static_cast<Context*>(data);
            if (c.depth++ > 0) return;
            const KsEvent* outer = node->getEvent();
            {
                const KsLocation2Event inner(KbVec2f(1, 1));
                c.action->setEvent(&inner);
                c.action->apply(c.root);
                EXPECT_TRUE(c.action->isHandled());
            }
            EXPECT_EQ(node->getEvent(), outer);
        },
        &context);
    Ear ear(&heard, "ear");
    auto* taker = new KsEventCallback;
    taker->addEventCallback(
        KsLocation2Event::getClassTypeId(),
        [](void*, KsEventCallback* node) { node->setHandled(); }, nullptr);
    root->addChild(loop);
    root->addChild(ear.node.get());
    root->addChild(taker);
    EXPECT_FALSE(press(0, 0)) << "only the inner event was handled";
    EXPECT_EQ(heard, (Names{"ear", "ear"}));
}

// shows: KsEvent, KsEvent::setPosition, KsEvent::getPosition, KsEvent::setTime, KsEvent::getTime,
// KsEvent::setShiftDown, KsEvent::setCtrlDown, KsEvent::setAltDown, KsEvent::wasShiftDown,
// KsEvent::wasCtrlDown,
// KsEvent::wasAltDown
TEST_F(Events, knowWhereWhenAndWithWhichKeys)
{
    EXPECT_EQ(KsEvent().getPosition(), KbVec2f());
    EXPECT_EQ(KsEvent().getTime(), 0);
    KsEvent event(KbVec2f(1, 2));
    EXPECT_EQ(event.getPosition(), KbVec2f(1, 2));
    event.setPosition(KbVec2f(3, 4));
    EXPECT_EQ(event.getPosition(), KbVec2f(3, 4));
    event.setTime(12.5);
    EXPECT_EQ(event.getTime(), 12.5);
    event.setCtrlDown(true);
    EXPECT_TRUE(event.wasCtrlDown());
    EXPECT_FALSE(event.wasShiftDown());
    EXPECT_FALSE(event.wasAltDown());
    event.setAltDown(true);
    event.setShiftDown(true);
    event.setCtrlDown(false);
    EXPECT_FALSE(event.wasCtrlDown());
    EXPECT_TRUE(event.wasShiftDown());
    EXPECT_TRUE(event.wasAltDown());
}

// shows: KsButtonEvent::setState, KsButtonEvent::getState, KsMouseButtonEvent::getButton,
// KsKeyboardEvent, KsKeyboardEvent::getKey, KsTrackerEvent::getAction,
// KsTrackerEvent::getOrigin, KsTrackerEvent::getRotation, KsDragger::isPress
TEST_F(Events, knowWhatWasPressed)
{
    KsMouseButtonEvent button(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, KbVec2f());
    EXPECT_EQ(button.getButton(), KsMouseButtonEvent::BUTTON1);
    EXPECT_EQ(button.getState(), KsButtonEvent::DOWN);
    EXPECT_TRUE(KsDragger::isPress(&button));
    button.setState(KsButtonEvent::UP);
    EXPECT_EQ(button.getState(), KsButtonEvent::UP);
    EXPECT_FALSE(KsDragger::isPress(&button));
    const KsKeyboardEvent key(KsKeyboardEvent::PAD_7, KsButtonEvent::DOWN, u'7');
    EXPECT_EQ(key.getKey(), 65429);
    EXPECT_FALSE(KsDragger::isPress(&key));
    EXPECT_FALSE(KsDragger::isPress(nullptr));
    const KbRotation turn(KbVec3f(0, 1, 0), 1);
    const KsTrackerEvent tracker(KsTrackerEvent::PRESS, KbVec3f(1, 2, 3), turn);
    EXPECT_EQ(tracker.getAction(), KsTrackerEvent::PRESS);
    EXPECT_EQ(tracker.getOrigin(), KbVec3f(1, 2, 3));
    EXPECT_TRUE(tracker.getRotation() == turn);
    EXPECT_TRUE(KsDragger::isPress(&tracker));
}
