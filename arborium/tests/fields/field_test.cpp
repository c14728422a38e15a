#include "MessageGuard.h"

#include <arborium/base/KsLimits.h>
#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/sensors/KsSensor.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

/// A node with a field of each sort.
class KsTestLamp : public KsNode {
    KS_NODE_HEADER(KsTestLamp);

public:
    enum Color { RED = 1, GREEN = 2, BLUE = 4 };
    KsTestLamp();
    KsSFBool isOn;
    KsSFFloat power;
    KsSFInt32 count;
    KsSFString label;
    KsSFEnum color;
    KsSFBitMask colors;
    KsSFNode shade;
    KsMFString notes;
    KsMFFloat levels;

    std::vector<KsField*> changed;
    std::function<bool(KsField*, const void*)> validate;
    using KsFieldContainer::setValidatesFields;
    void fieldHasChanged(KsField* field) override { changed.push_back(field); }
    bool validateNewFieldValue(KsField* field, const void* value) override
    {
        return !validate || validate(field, value);
    }
};

KS_NODE_SOURCE(KsTestLamp, KsNode)

KsTestLamp::KsTestLamp()
{
    KsInstanceBuilder build(classRecord, this);
    const KsEnumValue red{"RED", RED};
    build.enums("Color", {red, {"GREEN", GREEN}, {"BLUE", BLUE}});
    build.field("isOn", isOn, false);
    build.field("power", power, 40.0f);
    build.field("count", count, 1);
    build.field("label", label, "");
    build.enumField("color", color, "Color", GREEN);
    build.enumField("colors", colors, "Color", RED | BLUE);
    build.field("shade", shade, nullptr);
    build.emptyField("notes", notes);
    build.field("levels", levels, std::vector<float>{1, 2});
}

namespace {
class Fields : public testing::Test {
protected:
    void SetUp() override
    {
        KsNode::initClass();
        KsGroup::initClass();
        KsTestLamp::initClass();
        lamp = new KsTestLamp;
        other = new KsTestLamp;
    }
    KsRef<KsTestLamp> lamp;
    KsRef<KsTestLamp> other;
};

/// A sensor of priority 0 that runs a function of the test.
class Probe {
public:
    explicit Probe(KsField& field, std::function<void()> action = {}) : m_action(std::move(action))
    {
        sensor.setPriority(0);
        sensor.attach(&field);
    }
    KsFieldSensor sensor{&Probe::run, this};
    int calls = 0;

private:
    static void run(void* data, KsSensor*)
    {
        auto* probe = static_cast<Probe*>(data);
        ++probe->calls;
        if (probe->m_action) probe->m_action();
    }
    std::function<void()> m_action;
};
} // namespace

// shows: KsField::getContainer, KsField::getFieldType, KsFieldContainer::hasDefaultValues,
// KsInstanceBuilder::field, KsInstanceBuilder::enumField
TEST_F(Fields, haveTheDefaultsOfTheirClass)
{
    EXPECT_FALSE(lamp->isOn.getValue());
    EXPECT_EQ(lamp->power.getValue(), 40.0f);
    EXPECT_EQ(lamp->color.getValue(), KsTestLamp::GREEN);
    EXPECT_EQ(lamp->colors.getValue(), KsTestLamp::RED | KsTestLamp::BLUE);
    EXPECT_EQ(lamp->levels.values(), (std::vector<float>{1, 2}));
    EXPECT_TRUE(lamp->hasDefaultValues());
    EXPECT_EQ(lamp->isOn.getContainer(), lamp.get());
    EXPECT_EQ(lamp->isOn.getFieldType(), 5);
}

// shows: KsFieldEntry, KsFieldContainer::getField, KsFieldContainer::getFields,
// KsFieldContainer::getAllFields, KsInstanceBuilder::emptyField
TEST_F(Fields, areListedInTheOrderOfTheirDeclaration)
{
    KsFieldList list;
    EXPECT_EQ(lamp->getFields(list), 9);
    std::string names;
    for (const KsFieldEntry& entry : list) names += std::string(entry.name.getString()) + " ";
    EXPECT_EQ(names, "isOn power count label color colors shade notes levels ");
    EXPECT_EQ(lamp->getField("label"), &lamp->label);
    EXPECT_EQ(lamp->getField("lable"), nullptr);
    EXPECT_EQ(list[2].field, &lamp->count);
    EXPECT_EQ(lamp->getAllFields(list), 9) << "the same where there are no parts";
    EXPECT_EQ(list.size(), 18u);
    EXPECT_EQ(list[17].field, &lamp->levels);
}

// shows: KsField::isDefault, KsField::setDefault, KsField::touch,
// KsFieldContainer::hasDefaultValues
TEST_F(Fields, areDefaultUntilTheyAreSet)
{
    lamp->power = 40.0f;
    EXPECT_FALSE(lamp->power.isDefault());
    lamp->power.setDefault(true);
    EXPECT_TRUE(lamp->power.isDefault());
    Probe probe(lamp->power);
    lamp->power.touch();
    EXPECT_EQ(probe.calls, 1);
    EXPECT_TRUE(lamp->power.isDefault());
    lamp->power = other->power;
    EXPECT_FALSE(lamp->power.isDefault());
    EXPECT_FALSE(lamp->hasDefaultValues());
}

// shows: KsFieldContainer::isNotifyEnabled, KsFieldContainer::fieldHasChanged
TEST_F(Fields, tellTheirContainerOfEachChangeAlsoToAnEqualValue)
{
    lamp->count = 1;
    lamp->count = 1;
    EXPECT_EQ(lamp->changed, (std::vector<KsField*>{&lamp->count, &lamp->count}));
    EXPECT_TRUE(lamp->isNotifyEnabled());
    EXPECT_TRUE(lamp->enableNotify(false));
    EXPECT_FALSE(lamp->isNotifyEnabled());
    lamp->count = 2;
    EXPECT_EQ(lamp->changed.size(), 3u);
}

// shows: KsFieldContainer::validateNewFieldValue, KsFieldContainer::setValidatesFields
TEST_F(Fields, askTheContainerWhetherAValueIsWanted)
{
    lamp->validate = [this](KsField* field, const void* value) {
        return field != &lamp->count || *static_cast<const int*>(value) < 10;
    };
    lamp->count = 11;
    EXPECT_EQ(lamp->count.getValue(), 11); // the class has to ask for it
    lamp->setValidatesFields();
    lamp->count = 12;
    EXPECT_EQ(lamp->count.getValue(), 11);
    lamp->count = 9;
    EXPECT_EQ(lamp->count.getValue(), 9);
    other->count = 50;
    lamp->copyFieldValues(other);
    EXPECT_EQ(lamp->count.getValue(), 9);

    lamp->validate = [this](KsField* field, const void* value) {
        return field != &lamp->levels || static_cast<const std::vector<float>*>(value)->size() != 3;
    };
    lamp->levels.assign({7, 8, 9});
    EXPECT_EQ(lamp->levels.getNum(), 2);
    lamp->levels.assign({7, 8});
    EXPECT_EQ(lamp->levels[1], 8);
}

// shows: KsFieldContainer::fieldsAreEqual, KsFieldContainer::copyFieldValues
TEST_F(Fields, copyValuesAndDefaultMarks)
{
    other->power = 60.0f;
    other->notes.setValue("warm");
    lamp->label = "mine";
    lamp->copyFieldValues(other);
    EXPECT_EQ(lamp->power.getValue(), 60.0f);
    EXPECT_FALSE(lamp->power.isDefault());
    EXPECT_EQ(lamp->notes[0], "warm");
    EXPECT_TRUE(lamp->label.getValue().isEmpty());
    EXPECT_TRUE(lamp->label.isDefault());
    EXPECT_TRUE(lamp->fieldsAreEqual(other));
    lamp->levels.set1Value(0, 3);
    EXPECT_FALSE(lamp->fieldsAreEqual(other));
    KsRef<KsGroup> group(new KsGroup);
    EXPECT_FALSE(lamp->fieldsAreEqual(group));
    EXPECT_FALSE(lamp->fieldsAreEqual(nullptr));
    lamp->copyFieldValues(group); // of another type
    lamp->copyFieldValues(nullptr);
    EXPECT_EQ(lamp->levels[0], 3);
}

// shows: KsInstanceBuilder::enums, KsSFEnum::setValue
TEST_F(Fields, ofAnEnumKnowTheNamesOfTheirValues)
{
    EXPECT_TRUE(lamp->color.setValue(KbName("BLUE")));
    EXPECT_EQ(lamp->color.getValue(), KsTestLamp::BLUE);
    {
        ExpectedMessages messages("KsSFEnum::setValue", "\"PINK\" is no value of Color");
        EXPECT_FALSE(lamp->color.setValue(KbName("PINK")));
    }
    {
        ExpectedMessages messages("KsSFEnum::setValue", "3 is no value of Color");
        lamp->color = 3;
    }
    EXPECT_EQ(lamp->color.getValue(), KsTestLamp::BLUE);
    EXPECT_EQ(lamp->color.getEnums(), other->colors.getEnums());
    KsSFEnum free;
    free.setValue(77);
    EXPECT_EQ(free.getValue(), 77);
}

// shows: KsSFBitMask
TEST_F(Fields, ofABitMaskTakeAnyNamedBits)
{
    lamp->colors = KsTestLamp::RED | KsTestLamp::GREEN;
    EXPECT_EQ(lamp->colors.getValue(), 3);
    other->colors = lamp->colors;
    EXPECT_EQ(other->colors.getValue(), 3);
    lamp->colors = 0;
    EXPECT_EQ(lamp->colors.getValue(), 0);
    ExpectedMessages messages("KsSFBitMask::setValue", "9 holds a bit");
    lamp->colors = 9;
    EXPECT_EQ(lamp->colors.getValue(), 0);
}

// shows: KsMField::setNum, KsMField::deleteValues, KsMFieldOf::operator[], KsMFieldOf::getValues,
// KsMFieldOf::values
TEST_F(Fields, ofManyValuesGrowAndClip)
{
    lamp->levels.set1Value(4, 9);
    EXPECT_EQ(lamp->levels.values(), (std::vector<float>{1, 2, 0, 0, 9}));
    EXPECT_EQ(lamp->levels[-1], 0.0f);
    EXPECT_EQ(lamp->levels[5], 0.0f);
    EXPECT_EQ(lamp->levels.getValues(5), nullptr);
    EXPECT_EQ(lamp->levels.getValues(-1), nullptr);
    EXPECT_EQ(lamp->levels.getValues(1), &lamp->levels[1]);
    lamp->levels.deleteValues(5);
    lamp->levels.deleteValues(-1, 2);
    EXPECT_EQ(lamp->levels.getNum(), 5) << "nothing begins there";
    lamp->levels.deleteValues(1, 2);
    EXPECT_EQ(lamp->levels.values(), (std::vector<float>{1, 0, 9}));
    lamp->levels.deleteValues(2, 100);
    EXPECT_EQ(lamp->levels.getNum(), 2);
    lamp->levels.set1Value(10, lamp->levels[0]); // grows under its own value
    EXPECT_EQ(lamp->levels[10], 1.0f);
    lamp->levels.setNum(-3);
    EXPECT_EQ(lamp->levels.getNum(), 0);
}

// shows: KsMFieldOf::set1Value
TEST_F(Fields, ofManyValuesRefuseAnIndexBeyondTheLimit)
{
    KsLimits::current().valuesPerField = 10;
    lamp->levels.set1Value(9, 1);
    EXPECT_EQ(lamp->levels.getNum(), 10);
    ExpectedMessages messages;
    messages.expect("KsMField::setValues", "Index 10 is out of range 0 - 9", 4);
    messages.expect("KsMField::setValues", "Index -1 is out of range 0 - 9");
    messages.expect("KsMField::setValues", "Index 2147483647 is out of range 0 - 9");
    lamp->levels.set1Value(10, 1);
    lamp->levels.setNum(11);
    lamp->levels.set1Value(-1, 1);
    const float value = 1;
    lamp->levels.setValues(std::numeric_limits<int>::max(), 1, &value);
    const float two[] = {1, 2};
    lamp->levels.setValues(9, 2, two);
    lamp->levels.insertSpace(0, 1);
    EXPECT_EQ(lamp->levels.getNum(), 10);
}

// shows: KsSFNode, KsSFNode::operator=
TEST_F(Fields, ofANodeHoldAReferenceAndAParent)
{
    KsRef<KsGroup> shade(new KsGroup);
    lamp->shade = shade.get();
    EXPECT_EQ(shade->getRefCount(), 2);
    EXPECT_EQ(shade->getParent(0), lamp.get());
    lamp->shade = shade.get();
    EXPECT_EQ(shade->getRefCount(), 2);
    lamp->shade = nullptr;
    EXPECT_EQ(shade->getRefCount(), 1);
    EXPECT_EQ(shade->getNumParents(), 0);
    lamp->shade = shade.get();
    other->shade = lamp->shade;
    EXPECT_EQ(shade->getNumParents(), 2);
    lamp->shade = nullptr;
    other.reset();
    EXPECT_EQ(shade->getNumParents(), 0);
}

// shows: KsSFNode::setValue
TEST_F(Fields, ofANodeRefuseWhatHoldsThem)
{
    ExpectedMessages messages("KsSFNode::setValue", "cannot refer to a node that holds it", 3);
    lamp->shade = lamp.get();
    lamp->shade.initValue(lamp.get());
    EXPECT_EQ(lamp->shade.getValue(), nullptr);
    KsRef<KsGroup> group(new KsGroup);
    group->addChild(lamp);
    other->shade = group.get();
    lamp->shade = other.get();
    EXPECT_EQ(lamp->shade.getValue(), nullptr);
}

// shows: KsField::connectFrom, KsField::disconnect, KsField::getConnectedField
TEST_F(Fields, thatAreConnectedFollowTheirMaster)
{
    lamp->power = 75.0f;
    EXPECT_TRUE(other->power.connectFrom(&lamp->power));
    EXPECT_EQ(other->power.getValue(), 75.0f);
    lamp->power = 25.0f;
    EXPECT_EQ(other->power.getValue(), 25.0f);
    EXPECT_FALSE(other->power.isDefault());
    EXPECT_EQ(other->power.getConnectedField(), &lamp->power);
    other->power.disconnect();
    lamp->power = 10.0f;
    EXPECT_EQ(other->power.getValue(), 25.0f);
    EXPECT_FALSE(lamp->power.hasListeners());
    EXPECT_FALSE(other->power.hasListeners());
}

TEST_F(Fields, thatAreConnectedAreNotDefault)
{
    other->power.connectFrom(&lamp->power);
    EXPECT_FALSE(other->power.isDefault());
    KsRef<KsTestLamp> third(new KsTestLamp);
    lamp->copyFieldValues(third); // the master is default again
    EXPECT_TRUE(lamp->power.isDefault());
    EXPECT_FALSE(other->power.isDefault());
}

TEST_F(Fields, refuseAConnectionThatMakesNoSense)
{
    ExpectedMessages messages;
    messages.expect("KsField::connectFrom", "NULL field");
    messages.expect("KsField::connectFrom", "cannot be connected from itself");
    messages.expect("KsField::connectFrom", "TestLamp.power is a SFFloat and cannot be connected "
                                            "from TestLamp.count, a SFInt32");
    EXPECT_FALSE(lamp->power.connectFrom(nullptr));
    EXPECT_FALSE(lamp->power.connectFrom(&lamp->power));
    EXPECT_FALSE(lamp->power.connectFrom(&lamp->count));
}

TEST_F(Fields, connectedBothWaysSettleAtOnce)
{
    Probe probe(lamp->count), otherProbe(other->count);
    lamp->count.connectFrom(&other->count);
    other->count.connectFrom(&lamp->count);
    probe.calls = otherProbe.calls = 0;
    lamp->count = 5;
    EXPECT_EQ(other->count.getValue(), 5);
    other->count = 6;
    EXPECT_EQ(lamp->count.getValue(), 6);
    EXPECT_EQ(probe.calls, 2);
    EXPECT_EQ(otherProbe.calls, 2);
    lamp->power.connectFrom(&other->power);
    other->power.connectFrom(&lamp->power);
    other->power = std::nanf("");
    EXPECT_TRUE(std::isnan(lamp->power.getValue()));
}

TEST_F(Fields, connectedBothWaysAgreeWhenASensorCorrectsTheValue)
{
    lamp->count.connectFrom(&other->count);
    other->count.connectFrom(&lamp->count);
    Probe limit(other->count, [this] {
        if (other->count.getValue() > 10) other->count = 10;
    });
    lamp->count = 50;
    EXPECT_EQ(other->count.getValue(), 10);
    EXPECT_EQ(lamp->count.getValue(), 10);
}

// shows: KsField::isConnected
TEST_F(Fields, leaveTheirConnectionsWhenTheyDie)
{
    EXPECT_FALSE(other->count.isConnected());
    other->count.connectFrom(&lamp->count);
    EXPECT_TRUE(other->count.isConnected());
    lamp.reset();
    EXPECT_FALSE(other->count.isConnected());
    other->count = 3;
    lamp = new KsTestLamp;
    other->count.connectFrom(&lamp->count);
    other.reset();
    lamp->count = 4;
    EXPECT_FALSE(lamp->count.hasListeners());
}

TEST_F(Fields, takeValuesBeforeTheirMastersSensorsFire)
{
    std::string order;
    other->count.connectFrom(&lamp->count);
    Probe master(lamp->count, [&] { order += "master "; });
    Probe slave(other->count, [&] { order += "slave "; });
    lamp->count = 3;
    EXPECT_EQ(order, "slave master ");
}

TEST_F(Fields, withoutAContainerMayDieInTheirOwnCallback)
{
    auto* field = new KsSFInt32(1);
    auto* second = new KsSFInt32(2);
    second->connectFrom(field);
    Probe probe(*second, [&] {
        delete field;
        delete second;
    });
    field->setValue(4);
    EXPECT_EQ(probe.calls, 1);
    EXPECT_EQ(probe.sensor.getAttachedField(), nullptr);
}

TEST_F(Fields, thatChangeEachOtherWithoutEndStopWithOneMessage)
{
    ExpectedMessages messages("KsField::valueChanged", "stopped after 64 changes: ");
    int calls = 0;
    Probe first(lamp->count, [&] { ++calls, other->count = lamp->count.getValue() + 1; });
    Probe second(other->count, [&] { ++calls, lamp->count = other->count.getValue() + 1; });
    lamp->count = 0;
    EXPECT_GE(calls, 63);
    EXPECT_LE(calls, 65);
    EXPECT_NE(messages.text().find("TestLamp.count -> TestLamp.count"), std::string::npos);
}

TEST_F(Fields, thatBranchWithoutEndStopToo)
{
    ExpectedMessages messages("KsField::valueChanged", "without end");
    int calls = 0;
    const auto again = [&] { ++calls, lamp->count = 1; };
    Probe first(lamp->count, again), second(lamp->count, again), third(lamp->count, again);
    lamp->count = 0;
    EXPECT_LT(calls, 1000);
    first.sensor.detach();
    second.sensor.detach();
    third.sensor.detach();
    Probe fourth(lamp->count);
    lamp->count = 2;
    EXPECT_EQ(fourth.calls, 1); // nothing stays muted
}

// ---- the record of a class -----------------------------------------------------------------

class KsTestBase : public KsNode {
    KS_NODE_HEADER(KsTestBase);

public:
    KsTestBase();
    KsSFBool first;
};
KS_NODE_SOURCE(KsTestBase, KsNode)
KsTestBase::KsTestBase()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("first", first, true);
}

class KsTestDerived : public KsTestBase {
    KS_NODE_HEADER(KsTestDerived);

public:
    KsTestDerived();
    KsSFBool second;
};
KS_NODE_SOURCE(KsTestDerived, KsTestBase)
KsTestDerived::KsTestDerived()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("second", second, true);
}

class KsTestForgetful : public KsNode {
    KS_NODE_HEADER(KsTestForgetful);

public:
    KsTestForgetful();
    KsSFEnum size;
};
KS_NODE_SOURCE(KsTestForgetful, KsNode)
KsTestForgetful::KsTestForgetful()
{
    KsInstanceBuilder build(classRecord, this);
    build.enumField("size", size, "Size", 3);
}

/// Gives a field the name of one that its base class has.
class KsTestEcho : public KsTestBase {
    KS_NODE_HEADER(KsTestEcho);

public:
    KsTestEcho()
    {
        KsInstanceBuilder build(classRecord, this);
        build.field("first", another, false);
    }
    KsSFBool another;
};
KS_NODE_SOURCE(KsTestEcho, KsTestBase)

TEST(ClassRecord, registersTheParentThatWasForgotten)
{
    KsNode::initClass();
    ExpectedMessages messages("KsTestDerived::initClass",
                              "KsTestDerived initialized before parent class KsTestBase\n");
    KsTestDerived::initClass();
    EXPECT_FALSE(KsTestBase::getClassTypeId().isBad());
    EXPECT_EQ(KsType::fromName("TestDerived"), KsTestDerived::getClassTypeId());
    EXPECT_EQ(KsType::fromName("KsTestDerived"), KsTestDerived::getClassTypeId());
    EXPECT_TRUE(KsTestDerived::getClassTypeId().isDerivedFrom(KsNode::getClassTypeId()));
}

// shows: KsClassRecord, KsClassRecord::fileName, KsClassRecord::initClass,
// KsNode::getNextActionMethodIndex, KsNode::incNextActionMethodIndex
TEST(ClassRecord, isRegisteredOnce)
{
    KsNode::initClass();
    KsTestBase::initClass();
    const KsType type = KsTestBase::getClassTypeId();
    EXPECT_FALSE(type.isBad());
    EXPECT_STREQ(KsTestBase::classRecord.fileName(), "TestBase");
    const int before = KsNode::getNextActionMethodIndex();
    KsNode::incNextActionMethodIndex(); // as some other class does
    const int index = KsNode::getNextActionMethodIndex();
    EXPECT_EQ(index, before + 1);
    KsTestBase::initClass();
    EXPECT_EQ(KsTestBase::getClassTypeId(), type);
    EXPECT_EQ(KsNode::getNextActionMethodIndex(), index);
}

TEST(ClassRecord, repairsItselfWhenAnInstanceComesFirst)
{
    KsNode::initClass();
    ExpectedMessages messages(
        "KS_NODE_CONSTRUCTOR",
        "Can't construct a node of type KsTestBase until initClass() has been called");
    KsRef<KsTestBase> node(new KsTestBase);
    EXPECT_TRUE(node->isOfType(KsNode::getClassTypeId()));
    EXPECT_EQ(node->getField("first"), &node->first);
}

// shows: KsInstanceBuilder, KsInstanceBuilder::field, KsFieldData::getNumFields,
// KsNode::getIsBuiltIn
TEST(ClassRecord, fillsTheFieldsAtTheFirstInstance)
{
    KsNode::initClass();
    KsTestBase::initClass();
    KsTestDerived::initClass();
    EXPECT_EQ(KsTestDerived::classRecord.isBuiltIn, 0);
    KsRef<KsTestDerived> one(new KsTestDerived);
    EXPECT_EQ(KsTestDerived::classRecord.firstInstance, 1);
    EXPECT_EQ(one->getFieldData()->getNumFields(), 2);
    KsRef<KsTestDerived> two(new KsTestDerived);
    EXPECT_EQ(KsTestDerived::classRecord.firstInstance, 0);
    EXPECT_EQ(two->getFieldData()->getNumFields(), 2);
    EXPECT_EQ(two->getField("first"), &two->first);
    EXPECT_EQ(two->getField("second"), &two->second);
    EXPECT_EQ(two->getIsBuiltIn(), 1);
    KsRef<KsTestBase> base(new KsTestBase);
    EXPECT_EQ(base->getField("second"), nullptr);
}

// shows: KsClassRecord::exitClass
TEST(ClassRecord, leavesTwiceWithAMessage)
{
    KsNode::initClass();
    KsTestBase::initClass();
    {
        KsRef<KsTestBase> node(new KsTestBase);
    }
    KsTestBase::exitClass();
    EXPECT_TRUE(KsTestBase::getClassTypeId().isBad());
    EXPECT_EQ(KsTestBase::classRecord.fieldData, nullptr);
    {
        ExpectedMessages messages("KsTestBase::exitClass",
                                  "Unable to remove type (TestBase) for this class. Check "
                                  "exitClass() method is implemented and is called only once.\n");
        KsTestBase::exitClass();
    }
    KsTestBase::initClass();
    KsRef<KsTestBase> node(new KsTestBase);
    EXPECT_EQ(KsTestBase::classRecord.firstInstance, 1);
    EXPECT_EQ(node->getField("first"), &node->first);
}

// shows: KsClassRecord::getFieldData
TEST(ClassRecord, missesItsFieldDataWithAMessage)
{
    KsNode::initClass();
    KsTestBase::initClass();
    KsRef<KsTestBase> node(new KsTestBase);
    KsTestBase::exitClass();
    ExpectedMessages messages("KsTestBase", "Instance not properly constructed.\nDid you forget to "
                                            "put KS_NODE_CONSTRUCTOR() in the constructor?");
    EXPECT_EQ(node->getFieldData()->getNumFields(), 0);
}

// shows: KsClassRecord::initClass
TEST(ClassRecord, isWholeAgainThoughANodeOfBeforeAskedForItsFieldsMeanwhile)
{
    KsNode::initClass();
    KsTestBase::initClass();
    KsTestDerived::initClass();
    const KsRef<KsTestDerived> old(new KsTestDerived);
    for (const bool isLate : {false, true}) {
        KsTestDerived::exitClass();
        KsTestBase::exitClass();
        ExpectedMessages messages("KsTestDerived", "Instance not properly constructed");
        if (!isLate) {
            EXPECT_EQ(old->getFieldData()->getNumFields(), 0);
        }
        KsTestBase::initClass();
        KsTestDerived::initClass();
        if (isLate) {
            EXPECT_LT(old->getFieldData()->getNumFields(), 2);
        }
        const KsRef<KsTestDerived> first(new KsTestDerived), second(new KsTestDerived);
        for (const KsTestDerived* node : {first.get(), second.get(), old.get()}) {
            KsFieldList fields;
            ASSERT_EQ(node->getFields(fields), 2);
            EXPECT_EQ(fields[0].name, "first");
            EXPECT_EQ(fields[1].field, &node->second);
        }
    }
}

// shows: KsInstanceBuilder::enumField
TEST(ClassRecord, missesAnEnumThatWasNotDeclared)
{
    KsNode::initClass();
    KsTestForgetful::initClass();
    KsRef<KsTestForgetful> node;
    {
        ExpectedMessages messages("KS_SET_SF_ENUM_TYPE", "Field size (");
        messages.allow("KS_SET_SF_ENUM_TYPE", "");
        node = new KsTestForgetful;
        EXPECT_NE(
            messages.text().find("Did you forget to use KS_NODE_DEFINE_ENUM_VALUE(Size, ...)?"),
            std::string::npos);
    }
    EXPECT_EQ(node->size.getValue(), 3);
    node = new KsTestForgetful; // said once
}

// shows: KsInstanceBuilder::field
TEST(ClassRecord, tellsOfANameThatTheBaseClassHas)
{
    KsNode::initClass();
    KsTestBase::initClass();
    KsTestEcho::initClass();
    KsRef<KsTestEcho> node;
    {
        ExpectedMessages messages("KsInstanceBuilder::field",
                                  "TestEcho has a field \"first\" already");
        node = new KsTestEcho;
    }
    EXPECT_EQ(node->getField("first"), &node->first);
    node = new KsTestEcho; // said once
}

// shows: KsEnumValue, KsEnumData::nameOf
TEST(ClassRecord, isOutlivedByTheNamesOfAnEnum)
{
    KsNode::initClass();
    KsTestLamp::initClass();
    KsRef<KsTestLamp> lamp(new KsTestLamp);
    const KsEnumData* names = lamp->color.getEnums();
    KsTestLamp::exitClass();
    EXPECT_EQ(names->nameOf(KsTestLamp::BLUE), "BLUE");
    EXPECT_TRUE(names->nameOf(3).isEmpty());
    KsTestLamp::initClass();
    KsRef<KsTestLamp> later(new KsTestLamp);
    EXPECT_EQ(later->color.getEnums(), names);
    EXPECT_EQ(later->colors.getEnums(), names);
    KsRef<KsTestLamp> second(new KsTestLamp);
    EXPECT_EQ(second->color.getEnums(), names);
}
