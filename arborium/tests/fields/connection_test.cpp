#include "MessageGuard.h"

#include <arborium/base/KsLimits.h>
#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/sensors/KsSensor.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

/// A sensor of priority 0 that runs a function of the test.
class Watch {
public:
    Watch(KsField& field, std::function<void()> action) : m_action(std::move(action))
    {
        m_sensor.setPriority(0);
        m_sensor.attach(&field);
    }

private:
    static void run(void* data, KsSensor*) { static_cast<Watch*>(data)->m_action(); }
    std::function<void()> m_action;
    KsFieldSensor m_sensor{&Watch::run, this};
};

} // namespace

// shows: KsField::connectFrom, KsField::disconnect
TEST(Connection, passesValuesDownAChain)
{
    KsSFInt32 fields[5];
    for (int i = 1; i < 5; ++i) ASSERT_TRUE(fields[i].connectFrom(&fields[i - 1]));
    fields[0] = 7;
    for (const KsSFInt32& each : fields) EXPECT_EQ(each.getValue(), 7);
    fields[2] = 3; // until its master speaks again
    EXPECT_EQ(fields[1].getValue(), 7);
    EXPECT_EQ(fields[4].getValue(), 3);
    fields[0] = 7;
    EXPECT_EQ(fields[4].getValue(), 7);
    fields[3].disconnect();
    fields[0] = 1;
    EXPECT_EQ(fields[2].getValue(), 1);
    EXPECT_EQ(fields[3].getValue(), 7);
}

TEST(Connection, ofAVeryLongChainStopsAtTheLimitWithAMessage)
{
    const int limit = KsLimits::current().notificationDepth;
    const std::unique_ptr<KsSFInt32[]> fields(new KsSFInt32[static_cast<std::size_t>(limit) * 4]);
    {
        ExpectedMessages messages;
        messages.allow("KsField::valueChanged", "without end");
        for (int i = 4 * limit - 1; i > 0; --i) fields[i].connectFrom(&fields[i - 1]);
    }
    ExpectedMessages messages("KsField::valueChanged", "without end");
    fields[0] = 5;
    EXPECT_EQ(fields[limit - 1].getValue(), 5);
}

TEST(Connection, inACircleOfThreeSettlesAtOnce)
{
    KsSFInt32 a, b, c;
    ASSERT_TRUE(b.connectFrom(&a));
    ASSERT_TRUE(c.connectFrom(&b));
    ASSERT_TRUE(a.connectFrom(&c));
    int calls = 0;
    Watch watch(b, [&] { ++calls; });
    a = 1;
    EXPECT_EQ(b.getValue(), 1);
    EXPECT_EQ(c.getValue(), 1);
    EXPECT_EQ(calls, 1);
    c = 2;
    EXPECT_EQ(a.getValue(), 2);
    EXPECT_EQ(b.getValue(), 2);
    EXPECT_EQ(calls, 2);
}

TEST(Connection, mayEndInsideACallback)
{
    KsSFInt32 master, first, second, third;
    for (KsSFInt32* each : {&first, &second, &third}) each->connectFrom(&master);
    Watch watch(first, [&] {
        first.disconnect();  // the one that is being told
        second.disconnect(); // one that comes later
    });
    master = 4;
    EXPECT_EQ(first.getValue(), 4);
    EXPECT_EQ(second.getValue(), 0);
    EXPECT_EQ(third.getValue(), 4);
    EXPECT_FALSE(first.isConnected());
    master = 5;
    EXPECT_EQ(first.getValue(), 4);
    EXPECT_EQ(third.getValue(), 5);
}

TEST(Connection, mayBeMadeAndMovedInsideACallback)
{
    KsSFInt32 master, other(9), slave, late;
    slave.connectFrom(&master);
    Watch watch(slave, [&] {
        if (slave.getConnectedField() != &master) return;
        slave.connectFrom(&other);
        late.connectFrom(&master);
    });
    master = 4;
    EXPECT_EQ(slave.getValue(), 9);
    EXPECT_EQ(late.getValue(), 4);
    master = 5;
    EXPECT_EQ(slave.getValue(), 9);
    EXPECT_EQ(late.getValue(), 5);
    other = 6;
    EXPECT_EQ(slave.getValue(), 6);
}

TEST(Connection, survivesTheDeathOfItsMasterInsideACallback)
{
    auto master = std::make_unique<KsSFInt32>(1);
    KsSFInt32 first, second;
    first.connectFrom(master.get());
    second.connectFrom(master.get());
    Watch watch(first, [&] { master.reset(); });
    KsSFInt32* dying = master.get();
    dying->setValue(8);
    EXPECT_EQ(first.getValue(), 8);
    EXPECT_EQ(second.getValue(), 1);
    EXPECT_FALSE(first.isConnected());
    EXPECT_FALSE(second.isConnected());
}

TEST(Connection, carriesAllValuesOfALongField)
{
    KsMFString master, slave;
    slave.connectFrom(&master);
    master.set1Value(2, "c");
    EXPECT_EQ(slave.getNum(), 3);
    EXPECT_EQ(slave[2], "c");
    master.deleteValues(0);
    EXPECT_EQ(slave.getNum(), 0);
    master.connectFrom(&slave);
    slave.setValue("back");
    EXPECT_EQ(master[0], "back");
}

TEST(Connection, ofAnEnumTakesOnlyValuesThatItsNamesHold)
{
    const int values[] = {1, 2};
    const KbName names[] = {"ONE", "TWO"};
    KsSFEnum master, slave;
    slave.setEnums(2, values, names);
    master = 1;
    slave.connectFrom(&master);
    {
        ExpectedMessages messages("KsSFEnum::setValue", "7 is no value");
        master = 7;
    }
    EXPECT_EQ(slave.getValue(), 1);
    master = 2;
    EXPECT_EQ(slave.getValue(), 2);
}

TEST(Connection, ofANodeHoldsItInBothPlaces)
{
    KsNode::initClass();
    KsGroup::initClass();
    KsSFNode master, slave;
    slave.connectFrom(&master);
    const KsRef<KsGroup> group(new KsGroup);
    master = group.get();
    EXPECT_EQ(slave.getValue(), group.get());
    EXPECT_EQ(group->getRefCount(), 3);
    master = nullptr;
    EXPECT_EQ(group->getRefCount(), 1);
}
