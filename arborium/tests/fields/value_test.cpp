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

// shows: KsSFInt32, KsSFieldOf::getValue, KsSFieldOf::setValue, KsSFieldOf::operator const V&,
// KsSFieldOf::operator==, KsSFieldOf::initValue
TEST(SingleValue, isReadAndComparedLikeItsValue)
{
    KsSFInt32 a(3), b;
    EXPECT_EQ(b.getValue(), 0);
    const int value = a;
    EXPECT_EQ(value, 3);
    EXPECT_TRUE(a == 3);
    EXPECT_FALSE(a == 4);
    EXPECT_TRUE(a != b);
    EXPECT_FALSE(a == b);
    b = a;
    EXPECT_TRUE(a == b);
    b.setValue(5);
    EXPECT_EQ(b.getValue(), 5);
    EXPECT_FALSE(b.isDefault());
    b.initValue(9);
    EXPECT_EQ(b.getValue(), 9);
    EXPECT_TRUE(b != 3);
    EXPECT_TRUE(b.isDefault());
}

namespace {
/// Each way in which a field of one value is set: by a value, by assignment of one, by assignment of
/// a field, at its construction.
template <class Field> void expectSetInEachWay(const typename Field::Value& value)
{
    SCOPED_TRACE(Field::getClassTypeId().getName().getString());
    Field set, assigned, copied;
    EXPECT_FALSE(set.getValue() == value);
    set.setValue(value);
    assigned = value;
    copied = set;
    const Field made(value);
    for (const Field* each : {&static_cast<const Field&>(set), &static_cast<const Field&>(assigned),
                              &static_cast<const Field&>(copied), &made})
        EXPECT_TRUE(each->getValue() == value);
    EXPECT_FALSE(copied.isDefault());
}
} // namespace

// shows: KsSFBool, KsSFFloat, KsSFInt32, KsSFString, KsSFFilePathString, KsSFName, KsSFRotation,
// KsSFMatrix, KsSFPlane
TEST(SingleValue, ofEachTypeIsSetInEachWay)
{
    expectSetInEachWay<KsSFBool>(true);
    expectSetInEachWay<KsSFFloat>(1.5f);
    expectSetInEachWay<KsSFInt32>(-7);
    expectSetInEachWay<KsSFString>("text");
    expectSetInEachWay<KsSFFilePathString>("~/file");
    expectSetInEachWay<KsSFName>("Name");
    expectSetInEachWay<KsSFVec2i32>(KbVec2i32(1, 2));
    expectSetInEachWay<KsSFVec2f>(KbVec2f(1, 2));
    expectSetInEachWay<KsSFVec3f>(KbVec3f(1, 2, 3));
    expectSetInEachWay<KsSFColor>(KbColor(1, 0, 0.5f));
    expectSetInEachWay<KsSFRotation>(KbRotation(KbVec3f(0, 0, 1), 1));
    KbMatrix matrix;
    matrix.setScale(2);
    expectSetInEachWay<KsSFMatrix>(matrix);
    expectSetInEachWay<KsSFPlane>(KbPlane(KbVec3f(0, 1, 0), 2));
    expectSetInEachWay<KsSFEnum>(3);
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

// shows: KsMFColor::setValue, KsMFVec2f::setValue, KsMFVec3f::setValue
TEST(ManyValues, ofSeveralNumbersAreReplacedByOneSetByThem)
{
    KsMFColor colors;
    colors.assign({KbColor(1, 1, 1), KbColor(0, 0, 0)});
    colors.setValue(1, 0.5f, 0);
    EXPECT_EQ(colors.values(), std::vector<KbColor>{KbColor(1, 0.5f, 0)});
    colors.setValue(KbColor(0, 1, 0));
    EXPECT_EQ(colors[0], KbColor(0, 1, 0));
    KsMFVec2f corners;
    corners.setValue(0.5f, 1);
    EXPECT_EQ(corners.values(), std::vector<KbVec2f>{KbVec2f(0.5f, 1)});
    KsMFVec3f points;
    points.setValue(1, 2, 3);
    EXPECT_EQ(points.values(), std::vector<KbVec3f>{KbVec3f(1, 2, 3)});
}

// shows: KsSFNode::getValue, KsSFNode::setValue, KsSFNode::initValue,
// KsSFNode::operator KsNode*, KsSFNode::operator==
TEST(SingleValue, mayBeANode)
{
    KsNode::initClass();
    KsGroup::initClass();
    const KsRef<KsGroup> group(new KsGroup);
    KsSFNode a, b;
    a.setValue(group);
    const KsNode* node = a;
    EXPECT_EQ(node, group.get());
    EXPECT_EQ(a.getValue(), group.get());
    EXPECT_TRUE(a != b);
    EXPECT_FALSE(a == b);
    b.initValue(group);
    EXPECT_EQ(b.getValue(), group.get());
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
    EXPECT_EQ(any.getNum(), 3);
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
    other.initValue(7);
    EXPECT_EQ(other.values(), std::vector<int>{7});
    EXPECT_TRUE(other.isDefault());
}

// shows: KsMFieldOf::setValue, KsMFieldOf::set1Value, KsMFieldOf::setValues
TEST(ManyValues, areSetOneByOneAndTogether)
{
    KsMFInt32 field;
    field.set1Value(2, 5);
    EXPECT_EQ(field.values(), (std::vector<int>{0, 0, 5}));
    const int more[] = {7, 8};
    field.setValues(2, 2, more);
    EXPECT_EQ(field.values(), (std::vector<int>{0, 0, 7, 8}));
    field.setValues(0, 2, field.getValues(2)); // its own
    EXPECT_EQ(field.values(), (std::vector<int>{7, 8, 7, 8}));
    field.setDefault(true);
    field.setValues(0, 2, nullptr);
    field.setValues(0, 0, more);
    EXPECT_TRUE(field.isDefault()) << "nothing happened";
    field.setValue(9); // instead of all
    EXPECT_EQ(field.values(), std::vector<int>{9});
    EXPECT_FALSE(field.isDefault());
}

namespace {
/// A field takes all values of another, or one instead of all.
template <class Field>
void expectAssigned(const typename Field::Value& a, const typename Field::Value& b)
{
    SCOPED_TRACE(Field::getClassTypeId().getName().getString());
    Field field, other;
    EXPECT_EQ(field.getNum(), 0);
    field.set1Value(1, a);
    other = field;
    EXPECT_TRUE(other == field);
    EXPECT_TRUE(other[1] == a);
    EXPECT_FALSE(other.isDefault());
    other = b;
    EXPECT_EQ(other.getNum(), 1);
    EXPECT_TRUE(other[0] == b);
    EXPECT_EQ(field.getNum(), 2);
}
} // namespace

// shows: KsMFString, KsMFFloat, KsMFInt32
TEST(ManyValues, ofEachTypeAreAssigned)
{
    expectAssigned<KsMFString>("a", KbString(u"\u03b1"));
    expectAssigned<KsMFFloat>(1.5f, 2);
    expectAssigned<KsMFInt32>(1, -2);
    expectAssigned<KsMFColor>(KbColor(1, 0, 0), KbColor(0, 1, 0));
    expectAssigned<KsMFVec2f>(KbVec2f(1, 2), KbVec2f(3, 4));
    expectAssigned<KsMFVec3f>(KbVec3f(1, 2, 3), KbVec3f(4, 5, 6));
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
    KsSFEnum c;
    EXPECT_EQ(c.getEnums(), nullptr);
    c.setEnums(a.getEnums());
    EXPECT_EQ(c.getEnums(), a.getEnums());
    c.setEnums(2, nullptr, names);
    EXPECT_EQ(c.getEnums(), nullptr);
    c = 77; // any number, as it has no names
    EXPECT_EQ(c.getValue(), 77);
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
        setValidatesFields();
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
    /// What is too hot is refused.
    bool validateNewFieldValue(KsField* field, const void* value) override
    {
        return field != &inside || *static_cast<const float*>(value) < 600;
    }

    static KsFieldData* s_data;
    KsSFKelvin inside;
    KsSFEnum heat;
};
KsFieldData* Oven::s_data = nullptr;

} // namespace

// shows: KsFieldData, KsFieldData::addField, KsFieldData::addEnumValue, KsFieldData::getEnumData,
// KsFieldData::getNumFields, KsFieldData::getFieldName, KsFieldData::getField,
// KsFieldData::getIndex, KsField::setContainer, KsField::setFieldType
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
    second->heat.setFieldType(255);
    EXPECT_EQ(second->heat.getFieldType(), 255);
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
    ASSERT_NE(derived.getEnumData("Heat"), nullptr);
    derived.addEnumValue("Heat", "LOW", 9); // is there already
    EXPECT_EQ(derived.getEnumData("Heat"), data->getEnumData("Heat"));
    derived.addEnumValue("Heat", "GRILL", 4);
    EXPECT_EQ(derived.getEnumData("Heat")->nameOf(4), "GRILL");
    EXPECT_TRUE(data->getEnumData("Heat")->nameOf(4).isEmpty());
    EXPECT_EQ(data->getEnumData("Colour"), nullptr);
}

namespace {
/// A container of a class without fields of its own, which asks whether its fields may change.
class Cupboard : public KsFieldContainer {
public:
    Cupboard()
    {
        setValidatesFields();
        shelves.setContainer(this);
    }
    KsType getTypeId() const override { return KsFieldContainer::getClassTypeId(); }
    KsSFInt32 shelves;
};
} // namespace

// shows: KsFieldContainer::getFieldData, KsFieldContainer::validateNewFieldValue
TEST(FieldContainer, withoutAnythingOfItsOwnHasNoFieldsAndTakesEachValue)
{
    const KsRef<Cupboard> cupboard(new Cupboard);
    ASSERT_NE(cupboard->getFieldData(), nullptr);
    EXPECT_EQ(cupboard->getFieldData()->getNumFields(), 0);
    EXPECT_EQ(cupboard->getField("shelves"), nullptr);
    EXPECT_TRUE(cupboard->hasDefaultValues());
    cupboard->shelves = 5;
    EXPECT_EQ(cupboard->shelves.getValue(), 5);
}

// shows: KsFieldData::read, KsFieldData::write, KsField::readValue, KsField::writeValue,
// KsField::isValid
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
    oven->inside.setValue(700);
    EXPECT_EQ(oven->inside.getValue(), 450) << "refused";
}

// shows: KsField::copyFrom, KsField::isSame, KsField::valueChanged
TEST(OwnField, isConnectedLikeAnyOther)
{
    KsSFKelvin a, b;
    EXPECT_TRUE(b.connectFrom(&a));
    EXPECT_TRUE(a.isDefault());
    a.setValue(350);
    EXPECT_FALSE(a.isDefault());
    EXPECT_EQ(b.getValue(), 350);
    EXPECT_TRUE(a.isSame(b));
    b.setValue(351);
    EXPECT_FALSE(a.isSame(b));
    KsSFFloat number;
    EXPECT_FALSE(a.isSame(number));
    a.copyFrom(number); // of another type
    EXPECT_EQ(a.getValue(), 350);
    ExpectedMessages messages("KsField::connectFrom", "cannot be connected");
    EXPECT_FALSE(number.connectFrom(&a));
}
