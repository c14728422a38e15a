#include "../actions/SceneTest.h"

#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>

#include <string>

namespace {

std::string s_calls;

void append(void* data, KsEventCallback*) { s_calls += static_cast<const char*>(data); }
void handle(void* data, KsEventCallback* node)
{
    append(data, node);
    node->setHandled();
}
void removeOthers(void*, KsEventCallback* node)
{
    s_calls += "r";
    node->removeEventCallback(KsEvent::getClassTypeId(), append, const_cast<char*>("b"));
    node->addEventCallback(KsEvent::getClassTypeId(), append, const_cast<char*>("n"));
}
void removeFromScene(void* data, KsEventCallback* node)
{
    s_calls += "x";
    EXPECT_NE(node->getEvent(), nullptr);
    EXPECT_NE(node->getAction(), nullptr);
    static_cast<KsGroup*>(data)->removeAllChildren();
    EXPECT_NE(node->getEvent(), nullptr);
}

} // namespace

class EventCallback : public SceneTest {
protected:
    EventCallback() { s_calls.clear(); }
    void send(const KsEvent& event)
    {
        KsHandleEventAction action{KbViewportRegion()};
        action.setEvent(&event);
        action.apply(root);
        handled = action.isHandled();
    }
    void add(KsEventCallback* node, KsType type, KsEventCallbackFunction function,
             const char* letter)
    {
        node->addEventCallback(type, function, const_cast<char*>(letter));
    }
    KsRef<KsSeparator> root{new KsSeparator};
    const KsMouseButtonEvent press{KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, {5, 5}};
    const KsKeyboardEvent key{KsKeyboardEvent::RETURN, KsButtonEvent::DOWN};
    const KsLocation2Event motion{KbVec2f(5, 5)};
    bool handled = false;
};

// shows: KsEventCallback::getEvent, KsEventCallback::getAction, KsEventCallback::getPickedPoint,
// KsEventCallback::setHandled, KsEventCallback::isHandled
TEST_F(EventCallback, isToldWhatHappensAndWhere)
{
    struct Seen {
        const KsEvent* event = nullptr;
        const KsNode* node = nullptr;
        int calls = 0;
        static void look(void* data, KsEventCallback* callback)
        {
            auto& seen = *static_cast<Seen*>(data);
            ++seen.calls;
            seen.event = callback->getEvent();
            ASSERT_NE(callback->getAction(), nullptr);
            EXPECT_EQ(callback->getAction()->getCurPathTail(), callback);
            if (callback->getPickedPoint())
                seen.node = callback->getPickedPoint()->getPath()->getTail();
            EXPECT_FALSE(callback->isHandled());
            callback->setHandled();
            EXPECT_TRUE(callback->isHandled());
        }
    } seen;
    addTo<KsOrthographicCamera>(root)->position = KbVec3f(0, 0, 5);
    addTo<KsEventCallback>(root)->addEventCallback(press.getTypeId(), Seen::look, &seen);
    add(addTo<KsEventCallback>(root), press.getTypeId(), append, "2");
    const auto* cube = addTo<KsCube>(root); // fills the window
    send(press);
    EXPECT_EQ(seen.event, &press);
    EXPECT_EQ(seen.node, cube);
    EXPECT_EQ(seen.calls, 1);
    EXPECT_EQ(s_calls, "") << "the first one has handled it";
    EXPECT_TRUE(handled);
}

// shows: KsEventCallback::addEventCallback
TEST_F(EventCallback, isCalledForItsTypeAndDerivedOnes)
{
    auto* node = addTo<KsEventCallback>(root);
    add(node, KsEvent::getClassTypeId(), append, "a");
    add(node, KsButtonEvent::getClassTypeId(), append, "b");
    add(node, KsKeyboardEvent::getClassTypeId(), append, "k");
    send(motion);
    EXPECT_EQ(s_calls, "a");
    s_calls.clear();
    send(press);
    EXPECT_EQ(s_calls, "ab");
    s_calls.clear();
    send(key);
    EXPECT_EQ(s_calls, "abk");
    EXPECT_FALSE(handled);
    EXPECT_EQ(node->getEvent(), nullptr);
    EXPECT_EQ(node->getAction(), nullptr);
    EXPECT_EQ(node->getPickedPoint(), nullptr);
    node->setHandled(); // outside of an event: nothing
    EXPECT_FALSE(node->isHandled());
}

TEST_F(EventCallback, ofAnEventThatWasHandledIsNotCalled)
{
    add(addTo<KsEventCallback>(root), KsEvent::getClassTypeId(), handle, "1");
    add(addTo<KsEventCallback>(root), KsEvent::getClassTypeId(), append, "2");
    send(press);
    EXPECT_EQ(s_calls, "1");
    EXPECT_TRUE(handled);
}

TEST_F(EventCallback, ofAKeyIsCalledThoughItWasHandled)
{
    add(addTo<KsEventCallback>(root), KsKeyboardEvent::getClassTypeId(), handle, "1");
    add(addTo<KsEventCallback>(addTo<KsSeparator>(root)), KsEvent::getClassTypeId(), append, "2");
    send(key);
    EXPECT_EQ(s_calls, "12");
    EXPECT_TRUE(handled);
}

// shows: KsEventCallback::addEventCallback, KsEventCallback::removeEventCallback
TEST_F(EventCallback, followsChangesOfItsListAtOnce)
{
    auto* node = addTo<KsEventCallback>(root);
    add(node, KsEvent::getClassTypeId(), append, "a");
    node->addEventCallback(KsEvent::getClassTypeId(), removeOthers);
    add(node, KsEvent::getClassTypeId(), append, "b");
    node->addEventCallback(KsEvent::getClassTypeId(), nullptr); // ignored
    send(press);
    EXPECT_EQ(s_calls, "ar"); // b is gone, n waits for the next event
    s_calls.clear();
    node->removeEventCallback(KsEvent::getClassTypeId(), removeOthers);
    node->removeEventCallback(KsEvent::getClassTypeId(), removeOthers); // not there: nothing
    send(press);
    EXPECT_EQ(s_calls, "an");
}

TEST_F(EventCallback, mayTakeItsNodeOutOfTheScene)
{
    auto* node = addTo<KsEventCallback>(root);
    node->addEventCallback(KsEvent::getClassTypeId(), removeFromScene, root.get());
    add(addTo<KsEventCallback>(root), KsEvent::getClassTypeId(), append, "2");
    send(press);
    EXPECT_EQ(s_calls, "x");
    EXPECT_EQ(root->getNumChildren(), 0);
}

TEST_F(EventCallback, behindAClosedSwitchHearsNothing)
{
    auto* choice = addTo<KsSwitch>(root);
    add(addTo<KsEventCallback>(choice), KsEvent::getClassTypeId(), append, "1");
    send(press);
    EXPECT_EQ(s_calls, "");
    choice->whichChild = 0;
    send(press);
    EXPECT_EQ(s_calls, "1");
}

TEST_F(EventCallback, isNotCopiedWithItsNode)
{
    auto* node = addTo<KsEventCallback>(root);
    add(node, KsEvent::getClassTypeId(), append, "1");
    root->addChild(node->copy());
    send(press);
    EXPECT_EQ(s_calls, "1");
}
