#include "MessageGuard.h"

#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/sensors/KsSensor.h>
#include <arborium/sensors/KsSensorManager.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

class KsTestCounter : public KsNode {
    KS_NODE_HEADER(KsTestCounter);

public:
    KsTestCounter();
    KsSFInt32 count;
    KsSFInt32 other;
};
KS_NODE_SOURCE(KsTestCounter, KsNode)
KsTestCounter::KsTestCounter()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("count", count, 0);
    build.field("other", other, 0);
}

namespace {
/// A sensor that runs a function of the test.
template <class Sensor> class Probe : public Sensor {
public:
    explicit Probe(std::function<void(Probe&)> probeAction = {}, std::uint32_t priority = 0)
        : Sensor(&Probe::run, nullptr), action(std::move(probeAction))
    {
        this->setData(this);
        this->setPriority(priority);
    }
    std::function<void(Probe&)> action;
    int calls = 0;

private:
    static void run(void* data, KsSensor*)
    {
        auto* probe = static_cast<Probe*>(data);
        ++probe->calls;
        const auto action = probe->action; // the probe may be gone behind the call
        if (action) action(*probe);
    }
};
using FieldProbe = Probe<KsFieldSensor>;
using NodeProbe = Probe<KsNodeSensor>;
using QueueProbe = Probe<KsDelayQueueSensor>;

class Sensors : public testing::Test {
protected:
    void SetUp() override
    {
        KsNode::initClass();
        KsGroup::initClass();
        KsTestCounter::initClass();
        node = new KsTestCounter;
    }
    KsRef<KsTestCounter> node;
};
} // namespace

// shows: KsDataSensor::getTriggerField, KsDataSensor::getTriggerNode, KsFieldSensor,
// KsFieldSensor::attach, KsFieldSensor::getAttachedField
TEST_F(Sensors, ofPriority0FireInsideTheChange)
{
    EXPECT_EQ(FieldProbe().getAttachedField(), nullptr);
    FieldProbe probe([&](FieldProbe& self) {
        EXPECT_EQ(node->count.getValue(), 7);
        EXPECT_EQ(self.getTriggerField(), &node->count);
        EXPECT_EQ(self.getTriggerNode(), node.get());
    });
    probe.attach(&node->count);
    EXPECT_EQ(probe.getAttachedField(), &node->count);
    node->count = 7;
    EXPECT_EQ(probe.calls, 1);
    EXPECT_EQ(probe.getTriggerField(), nullptr);
    node->other = 7;
    EXPECT_EQ(probe.calls, 1);
    EXPECT_FALSE(probe.isScheduled());
    probe.action = {};
    probe.attach(&node->other); // instead
    node->count = 8;
    EXPECT_EQ(probe.calls, 1);
    node->other = 8;
    EXPECT_EQ(probe.calls, 2);
    probe.attach(nullptr);
    EXPECT_EQ(probe.getAttachedField(), nullptr);
}

// shows: KsSensor::isScheduled, KsFieldSensor::detach, KsSensorManager::isDelayQueueEmpty
TEST_F(Sensors, ofOtherPrioritiesWaitInTheQueue)
{
    FieldProbe probe({}, 100);
    probe.attach(&node->count);
    node->count = 1;
    node->count = 2;
    EXPECT_EQ(probe.calls, 0);
    EXPECT_TRUE(probe.isScheduled());
    EXPECT_FALSE(KsSensorManager::isDelayQueueEmpty());
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(probe.calls, 1);
    EXPECT_FALSE(probe.isScheduled());
    EXPECT_TRUE(KsSensorManager::isDelayQueueEmpty());
    node->count = 3;
    probe.detach();
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 0);
    {
        QueueProbe shortLived({}, 5);
        shortLived.schedule();
    }
    EXPECT_TRUE(KsSensorManager::isDelayQueueEmpty()) << "a sensor that is deleted waits no more";
}

// shows: KsSensor::schedule, KsDelayQueueSensor::setPriority
TEST_F(Sensors, ofTheQueueRunByPriorityAndThenInOrder)
{
    std::string order;
    QueueProbe a([&](QueueProbe&) { order += "a"; }, 50);
    QueueProbe b([&](QueueProbe&) { order += "b"; }, 10);
    QueueProbe c([&](QueueProbe&) { order += "c"; }, 50);
    QueueProbe d([&](QueueProbe&) { order += "d"; }, 90);
    a.schedule();
    b.schedule();
    c.schedule();
    d.schedule();
    a.schedule(); // is scheduled already
    d.setPriority(1);
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 4);
    EXPECT_EQ(order, "dbac");
}

// shows: KsSensor::unschedule, KsSensorManager::processDelayQueue
TEST_F(Sensors, scheduledWhileTheQueueRunsWaitForTheNextTime)
{
    int rounds = 0;
    QueueProbe later([](QueueProbe&) {}, 1);
    QueueProbe probe(
        [&](QueueProbe& self) {
            ++rounds;
            self.schedule();
            later.schedule();
        },
        50);
    probe.schedule();
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(rounds, 1);
    EXPECT_EQ(later.calls, 0);
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 2);
    EXPECT_EQ(later.calls, 1);
    probe.unschedule();
    later.unschedule();
    EXPECT_TRUE(KsSensorManager::isDelayQueueEmpty());
}

TEST_F(Sensors, ofTheQueueMayDeleteEachOther)
{
    auto second = std::make_unique<QueueProbe>(nullptr, 20);
    auto first = std::make_unique<QueueProbe>(nullptr, 10);
    first->action = [&](QueueProbe&) {
        second.reset();
        first.reset();
    };
    second->schedule();
    first->schedule();
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(first, nullptr);
}

// shows: KsSensorManager::setChangedCallback
TEST_F(Sensors, tellTheEventLoopWhenTheQueueGetsItsFirst)
{
    static int s_calls = 0;
    KsSensorManager::setChangedCallback([](void* data) { ++*static_cast<int*>(data); }, &s_calls);
    QueueProbe a({}, 1), b({}, 2);
    a.schedule();
    b.schedule();
    EXPECT_EQ(s_calls, 1);
    KsSensorManager::processDelayQueue();
    b.schedule();
    EXPECT_EQ(s_calls, 2);
    KsSensorManager::setChangedCallback(nullptr, nullptr);
}

TEST_F(Sensors, mayDetachThemselves)
{
    FieldProbe once([](FieldProbe& self) { self.detach(); });
    FieldProbe always;
    once.attach(&node->count);
    always.attach(&node->count);
    node->count = 1;
    node->count = 2;
    EXPECT_EQ(once.calls, 1);
    EXPECT_EQ(always.calls, 2);
    always.detach();
    EXPECT_FALSE(node->count.hasListeners());
}

TEST_F(Sensors, mayDetachAndAttachThemselvesInsideTheCallback)
{
    FieldProbe probe([this](FieldProbe& self) {
        self.detach();
        node->count = 9;
        self.attach(&node->count);
    });
    probe.attach(&node->count);
    node->count = 1;
    EXPECT_EQ(probe.calls, 1);
    EXPECT_EQ(node->count.getValue(), 9);
    node->count = 2;
    EXPECT_EQ(probe.calls, 2);
}

TEST_F(Sensors, mayDeleteThemselvesAndEachOther)
{
    auto first = std::make_unique<FieldProbe>();
    auto second = std::make_unique<FieldProbe>();
    first->action = [&](FieldProbe&) {
        second.reset();
        first.reset();
    };
    first->attach(&node->count);
    second->attach(&node->count);
    node->count = 1;
    EXPECT_EQ(first, nullptr);
    EXPECT_FALSE(node->count.hasListeners());
}

TEST_F(Sensors, mayReleaseTheNodeThatTheyWatch)
{
    FieldProbe probe([this](FieldProbe&) { node.reset(); });
    FieldProbe second;
    probe.attach(&node->count);
    second.attach(&node->count);
    node->count = 1;
    EXPECT_EQ(second.calls, 1); // the node lives until all were told
    EXPECT_EQ(probe.getAttachedField(), nullptr);
    EXPECT_EQ(second.getAttachedField(), nullptr);
}

TEST_F(Sensors, maySetTheSameFieldAgain)
{
    FieldProbe probe([this](FieldProbe&) {
        if (node->count.getValue() > 10) node->count = 10;
    });
    probe.attach(&node->count);
    node->count = 99;
    EXPECT_EQ(node->count.getValue(), 10);
    EXPECT_EQ(probe.calls, 2);
}

TEST_F(Sensors, thatComeDuringTheNotificationHearTheNextOne)
{
    FieldProbe late;
    FieldProbe probe([&](FieldProbe&) { late.attach(&node->count); });
    probe.attach(&node->count);
    node->count = 1;
    EXPECT_EQ(late.calls, 0);
    node->count = 2;
    EXPECT_EQ(late.calls, 1);
}

// shows: KsFieldContainer::enableNotify
TEST_F(Sensors, hearNothingWhileTheNotificationIsOff)
{
    FieldProbe probe;
    probe.attach(&node->count);
    EXPECT_TRUE(node->enableNotify(false));
    node->count = 1;
    EXPECT_EQ(probe.calls, 0);
    EXPECT_FALSE(node->enableNotify(true));
    node->count = 2;
    EXPECT_EQ(probe.calls, 1);
}

// shows: KsNodeSensor, KsNodeSensor::attach
TEST_F(Sensors, ofANodeHearWhatChangesBelowIt)
{
    KsRef<KsGroup> root(new KsGroup);
    KsRef<KsGroup> inner(new KsGroup);
    root->addChild(inner);
    inner->addChild(node);
    NodeProbe probe;
    probe.attach(root);
    probe.action = [this](NodeProbe& self) {
        EXPECT_EQ(self.getTriggerField(), &node->count);
        EXPECT_EQ(self.getTriggerNode(), node.get());
    };
    node->count = 1;
    EXPECT_EQ(probe.calls, 1);
    probe.action = [&](NodeProbe& self) {
        EXPECT_EQ(self.getTriggerField(), nullptr) << "no field has changed";
        EXPECT_EQ(self.getTriggerNode(), inner.get());
    };
    inner->removeChild(node.get());
    EXPECT_EQ(probe.calls, 2);
    probe.action = {};
    node->count = 2;
    EXPECT_EQ(probe.calls, 2);
    root->touch();
    EXPECT_EQ(probe.calls, 3);
}

TEST_F(Sensors, ofANodeHearNothingFromBelowASilentOne)
{
    KsRef<KsGroup> root(new KsGroup);
    KsRef<KsGroup> inner(new KsGroup);
    root->addChild(inner);
    inner->addChild(node);
    NodeProbe probe;
    probe.attach(root);
    inner->enableNotify(false);
    node->count = 1;
    inner->addChild(new KsGroup);
    EXPECT_EQ(probe.calls, 0);
    inner->enableNotify(true);
    node->count = 1;
    EXPECT_EQ(probe.calls, 1);
}

TEST_F(Sensors, ofANodeHearAChangeOnceHoweverManyWaysLeadToIt)
{
    KsRef<KsGroup> root(new KsGroup);
    KsNode* below = node;
    KsRef<KsNode> keep(below);
    for (int i = 0; i < 40; ++i) { // 2^40 ways
        auto* left = new KsGroup;
        auto* right = new KsGroup;
        auto* top = i == 39 ? root.get() : new KsGroup;
        left->addChild(below);
        right->addChild(below);
        top->addChild(left);
        top->addChild(right);
        below = top;
    }
    NodeProbe probe;
    probe.attach(root);
    node->count = 1;
    EXPECT_EQ(probe.calls, 1);
}

// shows: KsNodeSensor::getAttachedNode
TEST_F(Sensors, ofANodeLeaveItWhenItDies)
{
    NodeProbe probe;
    probe.attach(node);
    EXPECT_EQ(probe.getAttachedNode(), node.get());
    node.reset();
    EXPECT_EQ(probe.getAttachedNode(), nullptr);
}

TEST_F(Sensors, ofANodeMayReleaseTheSceneThatTheyWatch)
{
    KsRef<KsGroup> root(new KsGroup);
    root->addChild(node);
    KsTestCounter* counter = node.get();
    node.reset();
    NodeProbe probe([&](NodeProbe&) { root.reset(); });
    probe.attach(root);
    counter->count = 1;
    EXPECT_EQ(probe.calls, 1);
    EXPECT_EQ(probe.getAttachedNode(), nullptr);
}

// shows: KsSensorSilencer, KsSensorSilencer::restore
TEST_F(Sensors, thatAreSilencedHearNothingForTheScope)
{
    FieldProbe probe;
    probe.attach(&node->count);
    {
        const KsSensorSilencer silencer(&probe);
        node->count = 1;
        {
            const KsSensorSilencer inner(&probe);
            node->count = 2;
        }
        node->count = 3;
    }
    EXPECT_EQ(probe.calls, 0);
    KsSensorSilencer silencer(&probe);
    silencer.restore();
    node->count = 4;
    EXPECT_EQ(probe.calls, 1);
    const KsSensorSilencer nothing(nullptr);
    FieldProbe free;
    const KsSensorSilencer idle(&free);
    free.attach(&node->count);
    node->count = 5;
    EXPECT_EQ(free.calls, 1);
}

TEST_F(Sensors, thatAreSilencedMayGoWithTheirNode)
{
    auto probe = std::make_unique<FieldProbe>();
    probe->attach(&node->count);
    {
        const KsSensorSilencer outer(probe.get());
        const KsSensorSilencer silencer(probe.get());
        node.reset();
        EXPECT_EQ(probe->getAttachedField(), nullptr);
        probe.reset();
    }
    node = new KsTestCounter;
    probe = std::make_unique<FieldProbe>();
    probe->attach(&node->count);
    {
        const KsSensorSilencer silencer(probe.get());
        node.reset();
    }
    EXPECT_EQ(probe->getAttachedField(), nullptr);
}

// shows: KsOneShotSensor, KsSensor::setFunction, KsSensor::setData, KsSensor::getData,
// KsSensor::getFunction, KsSensor::trigger
TEST_F(Sensors, areTriggeredByHandWithTheirData)
{
    int heard = 0;
    const auto add = [](void* data, KsSensor*) { ++*static_cast<int*>(data); };
    KsOneShotSensor sensor(nullptr, nullptr);
    sensor.trigger(); // calls nobody
    sensor.setFunction(add);
    sensor.setData(&heard);
    EXPECT_EQ(sensor.getFunction(), static_cast<KsSensorCallback>(add));
    EXPECT_EQ(sensor.getData(), &heard);
    sensor.trigger();
    EXPECT_EQ(heard, 1);
    EXPECT_FALSE(sensor.isScheduled());
    sensor.schedule();
    sensor.trigger(); // also while it waits
    EXPECT_EQ(heard, 2);
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 0) << "once";
    EXPECT_EQ(heard, 3);
}

// shows: KsDelayQueueSensor, KsDelayQueueSensor::setPriority, KsDelayQueueSensor::getPriority
TEST_F(Sensors, haveAPriorityThatMayChangeWhileTheyWait)
{
    std::string order;
    QueueProbe a([&](QueueProbe&) { order += "a"; }, KsDelayQueueSensor::defaultPriority);
    QueueProbe b([&](QueueProbe&) { order += "b"; }, 50);
    EXPECT_EQ(a.getPriority(), 100u);
    EXPECT_EQ(KsDelayQueueSensor(nullptr, nullptr).getPriority(), 100u);
    a.schedule();
    b.schedule();
    a.setPriority(0); // still waits, as the first
    EXPECT_EQ(a.getPriority(), 0u);
    EXPECT_EQ(order, "");
    KsSensorManager::processDelayQueue();
    EXPECT_EQ(order, "ab");
    a.schedule();
    EXPECT_EQ(order, "aba");
}

// shows: KsNodeSensor::detach
TEST_F(Sensors, ofANodeHearNothingOnceTheyAreDetached)
{
    NodeProbe probe;
    probe.attach(node.get());
    node->count = 1;
    probe.detach();
    EXPECT_EQ(probe.getAttachedNode(), nullptr);
    node->count = 2;
    probe.detach();
    EXPECT_EQ(probe.calls, 1);
    KsRef<KsTestCounter> second(new KsTestCounter);
    probe.attach(node.get());
    probe.attach(second.get()); // instead
    node->count = 3;
    EXPECT_EQ(probe.calls, 1);
    second->count = 3;
    EXPECT_EQ(probe.calls, 2);
}

namespace {
/// A sensor that wants to know when what it watches goes.
class Mourner : public KsFieldSensor {
public:
    using KsFieldSensor::KsFieldSensor;
    void dyingReference() override
    {
        field = getAttachedField();
        KsFieldSensor::dyingReference();
    }
    KsField* field = nullptr;
};
} // namespace

// shows: KsDataSensor::dyingReference
TEST_F(Sensors, areToldWhenWhatTheyWatchGoes)
{
    Mourner mourner(nullptr, nullptr);
    mourner.attach(&node->count);
    const KsField* count = &node->count;
    node.reset();
    EXPECT_EQ(mourner.field, count);
    EXPECT_EQ(mourner.getAttachedField(), nullptr);
}

// shows: KsFieldSensor::isSilenced
TEST_F(Sensors, tellWhetherTheyAreSilenced)
{
    FieldProbe probe;
    probe.attach(&node->count);
    EXPECT_FALSE(probe.isSilenced());
    {
        const KsSensorSilencer silencer(&probe);
        EXPECT_TRUE(probe.isSilenced());
        const KsSensorSilencer again(&probe);
    }
    EXPECT_FALSE(probe.isSilenced());
}

TEST_F(Sensors, thatWaitMayDeleteTheNodeThatTheyWatch)
{
    FieldProbe probe([&](FieldProbe&) { node.reset(); }, 10);
    FieldProbe other({}, 20);
    probe.attach(&node->count);
    other.attach(&node->count);
    node->count = 1;
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(probe.getAttachedField(), nullptr);
    EXPECT_EQ(other.calls, 0) << "what it waited for is gone";
    EXPECT_FALSE(other.isScheduled());
}

TEST_F(Sensors, thatWaitMaySetTheirFieldAgainAndAreCalledAgainNextTime)
{
    FieldProbe probe(
        [&](FieldProbe& self) {
            if (self.calls < 3) node->count = self.calls;
        },
        10);
    probe.attach(&node->count);
    node->count = 9;
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 1);
    EXPECT_EQ(KsSensorManager::processDelayQueue(), 0);
    EXPECT_EQ(node->count.getValue(), 2);
}

// shows: KsNode::touch, KsNodeSensor
TEST_F(Sensors, thatCauseTheirOwnCallWithoutEndStopWithAMessage)
{
    const KsRef<KsGroup> group(new KsGroup), other(new KsGroup);
    group->addChild(node);
    const int limit = KsLimits::current().notificationDepth;
    NodeProbe branching([&](NodeProbe&) {
        group->touch();
        group->touch();
    });
    NodeProbe there([&](NodeProbe&) { group->touch(); });
    NodeProbe back([&](NodeProbe&) { other->touch(); });
    const auto expectStop = [limit](NodeProbe& probe, KsNode* start) {
        ExpectedMessages messages("KsDataSensor::notify",
                                  ("stopped after " + std::to_string(limit) + " calls").c_str());
        probe.calls = 0;
        start->touch();
        EXPECT_EQ(probe.calls, limit);
    };
    branching.attach(group);
    expectStop(branching, group);
    expectStop(branching, group); // it hears again
    branching.detach();
    there.attach(other);
    back.attach(group);
    expectStop(there, other);
    there.detach();
    NodeProbe growing([&](NodeProbe&) { other->addChild(new KsGroup); });
    growing.attach(other);
    expectStop(growing, other);
    EXPECT_EQ(other->getNumChildren(), limit);
}
