// Fields by themselves, without a class around them, and classes whose fields are added by hand.

#include "MessageGuard.h"

#include <arborium/fields/KsFieldContainer.h>
#include <arborium/fields/KsMField.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsGroup.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// shows: KsSFieldOf::operator const V&, KsSFieldOf::operator==, KsSFieldOf::initValue
TEST(SingleValue, isReadAndComparedLikeItsValue)
{
    KsSFInt32 a(3), b;
    const int value = a;
    EXPECT_EQ(value, 3);
    EXPECT_TRUE(a == 3);
    EXPECT_TRUE(a != b);
    b = a;
    EXPECT_TRUE(a == b);
    b.initValue(9);
    EXPECT_TRUE(b != 3);
    EXPECT_TRUE(b.isDefault());
}

// shows: KsSFVec2i32::setValue, KsSFVec2f::setValue, KsSFVec3f::setValue, KsSFColor::setValue
TEST(SingleValue, ofSeveralNumbersIsSetByThem)
{
    KsSFVec2i32 size;
    size.setValue(640, 480);
    EXPECT_EQ(size.getValue(), KbVec2i32(640, 480));
    KsSFVec2f corner;
    corner.setValue(0.5f, 1);
    EXPECT_EQ(corner.getValue(), KbVec2f(0.5f, 1));
    KsSFVec3f place;
    place.setValue(1, 2, 3);
    EXPECT_EQ(place.getValue(), KbVec3f(1, 2, 3));
    KsSFColor color;
    color.setValue(1, 0.5f, 0);
    EXPECT_EQ(color.getValue(), KbColor(1, 0.5f, 0));
}

// shows: KsSFNode::setValue, KsSFNode::initValue, KsSFNode::operator KsNode*,
// KsSFNode::operator==
TEST(SingleValue, mayBeANode)
{
    KsNode::initClass();
    KsGroup::initClass();
    const KsRef<KsGroup> group(new KsGroup);
    KsSFNode a, b;
    a.setValue(group);
    const KsNode* node = a;
    EXPECT_EQ(node, group.get());
    EXPECT_TRUE(a != b);
    b.initValue(group);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(b.isDefault());
    EXPECT_FALSE(a.isDefault());
    EXPECT_EQ(group->getRefCount(), 3);
}

// shows: KsMField::getNum, KsMField::setNum, KsMField::deleteValues, KsMField::insertSpace,
// KsMFieldOf::assign, KsMFieldOf::initValue, KsMFieldOf::operator==
TEST(ManyValues, areInsertedAndTakenOut)
{
    KsMFInt32 field;
    KsMField& any = field;
    EXPECT_EQ(any.getNum(), 0);
    field.assign({1, 2, 3});
    any.insertSpace(1, 2);
    EXPECT_EQ(field.values(), (std::vector<int>{1, 0, 0, 2, 3}));
    any.insertSpace(6, 1); // behind the end
    any.insertSpace(0, -1);
    EXPECT_EQ(any.getNum(), 5);
    any.deleteValues(1, 2);
    any.setNum(4);
    EXPECT_EQ(field.values(), (std::vector<int>{1, 2, 3, 0}));
    any.setNum(2);
    KsMFInt32 other;
    EXPECT_TRUE(field != other);
    other.initValue(std::vector<int>{1, 2});
    EXPECT_TRUE(field == other);
    EXPECT_TRUE(other.isDefault());
    any.deleteValues(0);
    EXPECT_EQ(any.getNum(), 0);
    field = 8; // one value instead of all
    EXPECT_EQ(field.values(), std::vector<int>{8});
}

// shows: KsSFEnum::setEnums, KsSFEnum::getEnums, KsEnumData::valueOf, KsEnumData::intern
TEST(EnumValue, hasNamesThatEqualSetsShare)
{
    const int values[] = {1, 4};
    const KbName names[] = {"ONE", "FOUR"};
    KsSFEnum a, b;
    a.setEnums(2, values, names);
    b.setEnums(2, values, names);
    EXPECT_EQ(a.getEnums(), b.getEnums());
    int value = 0;
    EXPECT_TRUE(a.getEnums()->valueOf("FOUR", value));
    EXPECT_EQ(value, 4);
    EXPECT_FALSE(a.getEnums()->valueOf("FIVE", value));
    EXPECT_EQ(KsEnumData::intern(*a.getEnums()), a.getEnums());
    EXPECT_NE(KsEnumData::intern({"", {1}, {"ONE"}}), a.getEnums());
}

// ---- a field of one's own -------------------------------------------------------------------

namespace {

/// A temperature that is never below zero; in files it bears the letter K.
class KsSFKelvin : public KsField {
    KS_FIELD_HEADER(KsSFKelvin);

public:
    void setValue(float kelvin)
    {
        if (!isValid(&kelvin)) return;
        m_kelvin = kelvin > 0 ? kelvin : 0;
        valueChanged();
    }
    float getValue() const { return m_kelvin; }

private:
    float m_kelvin = 293;
};

KsType KsSFKelvin::getClassTypeId()
{
    static const KsType type = KsType::createType(KsField::getClassTypeId(), "SFKelvin");
    return type;
}
void KsSFKelvin::copyFrom(const KsField& other)
{
    if (other.getTypeId() == getTypeId()) setValue(static_cast<const KsSFKelvin&>(other).m_kelvin);
}
bool KsSFKelvin::isSame(const KsField& other) const
{
    return other.getTypeId() == getTypeId() &&
           m_kelvin == static_cast<const KsSFKelvin&>(other).m_kelvin;
}
bool KsSFKelvin::readValue(KsInput* in)
{
    float kelvin = 0;
    if (!in->read(kelvin) || !in->expectChar('K', "'K'")) return false;
    setValue(kelvin);
    return true;
}
void KsSFKelvin::writeValue(KsOutput* out) const
{
    out->write(m_kelvin);
    out->writeWord("K");
}

/// A container that adds its fields by hand.
class Oven : public KsFieldContainer {
public:
    enum Heat { LOW = 1, HIGH = 2 };

    Oven()
    {
        if (!s_data) {
            s_data = new KsFieldData(KsFieldContainer::getFieldData());
            s_data->addField(this, "inside", &inside);
            s_data->addField(this, "inside", &heat); // a name that is taken
            s_data->addEnumValue("Heat", "LOW", LOW);
            s_data->addEnumValue("Heat", "HIGH", HIGH);
            s_data->addField(this, "heat", &heat);
        }
        inside.setContainer(this);
        inside.setFieldType(5);
        inside.setDefault(true);
        int count = 0;
        const int* values = nullptr;
        const KbName* names = nullptr;
        EXPECT_TRUE(s_data->getEnumData("Heat", count, values, names));
        heat.setEnums(count, values, names);
        heat.initValue(LOW);
        heat.setContainer(this);
        heat.setFieldType(5);
    }
    KsType getTypeId() const override
    {
        static const KsType type = KsType::createType(KsFieldContainer::getClassTypeId(), "Oven");
        return type;
    }
    const KsFieldData* getFieldData() const override { return s_data; }

    static KsFieldData* s_data;
    KsSFKelvin inside;
    KsSFEnum heat;
};
KsFieldData* Oven::s_data = nullptr;

} // namespace

// shows: KsFieldData, KsFieldData::addField, KsFieldData::addEnumValue, KsFieldData::getEnumData,
// KsFieldData::getFieldName, KsFieldData::getField, KsFieldData::getIndex,
// KsField::setContainer, KsField::setFieldType
TEST(FieldData, isFilledByHand)
{
    const KsRef<Oven> oven(new Oven), second(new Oven);
    const KsFieldData* data = oven->getFieldData();
    ASSERT_EQ(data->getNumFields(), 2);
    EXPECT_EQ(data->getFieldName(0), "inside");
    EXPECT_EQ(data->getFieldName(1), "heat");
    EXPECT_TRUE(data->getFieldName(2).isEmpty());
    EXPECT_EQ(data->getIndex("heat"), 1);
    EXPECT_EQ(data->getIndex("cold"), -1);
    EXPECT_EQ(data->getField(second, 1), &second->heat);
    EXPECT_EQ(data->getField(second, -1), nullptr);
    EXPECT_EQ(second->heat.getContainer(), second.get());
    EXPECT_EQ(second->heat.getFieldType(), 5);
    int count = 0;
    const int* values = nullptr;
    const KbName* names = nullptr;
    EXPECT_FALSE(data->getEnumData("Colour", count, values, names));
    ASSERT_TRUE(data->getEnumData("Heat", count, values, names));
    ASSERT_EQ(count, 2);
    EXPECT_EQ(values[1], Oven::HIGH);
    EXPECT_EQ(names[1], "HIGH");

    KsFieldData derived(data);
    derived.addField(oven, "again", &oven->heat);
    EXPECT_EQ(derived.getNumFields(), 3) << "behind those of the class above";
    EXPECT_EQ(data->getNumFields(), 2);
    EXPECT_NE(derived.getEnumData("Heat"), nullptr);
}

// shows: KsFieldData::read, KsFieldData::write, KsField::readValue, KsField::writeValue
TEST(FieldData, readsAndWritesTheFieldsThatWereSet)
{
    const KsRef<Oven> oven(new Oven);
    const std::string text = "heat HIGH inside 450 K";
    KsInput in;
    in.setBuffer(text.data(), text.size());
    EXPECT_TRUE(oven->getFieldData()->read(&in, oven));
    EXPECT_FALSE(in.hasErrors());
    EXPECT_EQ(oven->inside.getValue(), 450);
    EXPECT_EQ(oven->heat.getValue(), Oven::HIGH);

    oven->heat.setDefault(true);
    KsOutput out;
    out.setStage(KsOutput::WRITE);
    oven->getFieldData()->write(&out, oven);
    EXPECT_NE(out.getBuffer().find("inside 450 K"), std::string::npos) << out.getBuffer();
    EXPECT_EQ(out.getBuffer().find("heat"), std::string::npos);

    ExpectedMessages messages("KsFieldContainer::set", "'K'");
    EXPECT_FALSE(oven->set("inside 451 C"));
    EXPECT_EQ(oven->inside.getValue(), 450);
}

// shows: KsField::copyFrom, KsField::isSame, KsField::valueChanged, KsField::isValid
TEST(OwnField, isConnectedLikeAnyOther)
{
    KsSFKelvin a, b;
    EXPECT_TRUE(b.connectFrom(&a));
    a.setValue(350);
    EXPECT_EQ(b.getValue(), 350);
    EXPECT_TRUE(a.isSame(b));
    KsSFFloat number;
    EXPECT_FALSE(a.isSame(number));
    a.copyFrom(number); // of another type
    EXPECT_EQ(a.getValue(), 350);
    ExpectedMessages messages("KsField::connectFrom", "cannot be connected");
    EXPECT_FALSE(number.connectFrom(&a));
}
