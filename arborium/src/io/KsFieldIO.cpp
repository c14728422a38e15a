// The values of fields in files.

#include "io/KsInputImpl.h"
#include "io/KsOutputImpl.h"

#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsNode.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

namespace {

using Impl = KsInput::Impl;

// ---- single values ----------------------------------------------------------------------------

/// How a value stands in a file; `minBytes` is the least that it takes in a binary one.
template <class Value> struct Codec;

template <class Value, std::size_t Bytes> struct PlainCodec {
    static constexpr std::size_t minBytes = Bytes;
    static bool read(KsInput& in, Value& value) { return in.read(value); }
    static void write(KsOutput& out, const Value& value) { out.write(value); }
};
template <> struct Codec<float> : PlainCodec<float, 4> {};
template <> struct Codec<std::int32_t> : PlainCodec<std::int32_t, 4> {};
template <> struct Codec<KbString> : PlainCodec<KbString, 4> {};
template <> struct Codec<KbName> {
    static bool read(KsInput& in, KbName& value) { return in.read(value); }
    static void write(KsOutput& out, const KbName& value)
    {
        out.write(KbString(value.getString()));
    }
};
template <> struct Codec<bool> {
    static bool read(KsInput& in, bool& value) { return in.read(value); }
    static void write(KsOutput& out, bool value)
    {
        if (out.isBinary())
            out.write(std::int32_t(value));
        else
            out.writeWord(value ? "TRUE" : "FALSE");
    }
};

template <class Value, class Number, int N> struct VectorCodec {
    static constexpr std::size_t minBytes = 4 * N;
    static bool read(KsInput& in, Value& value)
    {
        for (int i = 0; i < N; ++i)
            if (!in.read(value[i])) return false;
        return true;
    }
    static void write(KsOutput& out, const Value& value)
    {
        for (int i = 0; i < N; ++i) out.write(Number(value[i]));
    }
};
template <> struct Codec<KbVec2i32> : VectorCodec<KbVec2i32, std::int32_t, 2> {};
template <> struct Codec<KbVec2f> : VectorCodec<KbVec2f, float, 2> {};
template <> struct Codec<KbVec3f> : VectorCodec<KbVec3f, float, 3> {};
template <> struct Codec<KbColor> : VectorCodec<KbColor, float, 3> {};

using FourNumbers = std::array<float, 4>;

bool readFour(KsInput& in, FourNumbers& numbers)
{
    for (float& each : numbers)
        if (!in.read(each)) return false;
    return true;
}

/// The float `steps` away from a number.
float neighbour(float number, int steps)
{
    const float towards =
        steps > 0 ? std::numeric_limits<float>::max() : std::numeric_limits<float>::lowest();
    for (int i = std::abs(steps); i > 0; --i) number = std::nextafter(number, towards);
    return number;
}

/// Numbers from which exactly this value is made: the shortest ones, else some near `numbers`, whose
/// first three are a direction of any length. FALSE if there are none near.
template <class Value, class Make>
bool findNumbers(const Value& value, FourNumbers& numbers, Make make)
{
    FourNumbers found;
    for (int digits = 1; digits <= 9; ++digits) {
        for (std::size_t i = 0; i < 4; ++i) {
            char text[32];
            const auto printed = std::to_chars(text, text + sizeof text, numbers[i],
                                               std::chars_format::general, digits);
            std::from_chars(text, printed.ptr, found[i]);
            found[i] += 0.0f; // no minus before a zero
        }
        if (make(found) == value) {
            numbers = found;
            return true;
        }
    }
    static const int steps[] = {0, 1, -1, 2, -2, 3, -3};
    const float largest =
        std::max({std::fabs(numbers[0]), std::fabs(numbers[1]), std::fabs(numbers[2])});
    for (const float length : {1.0f, largest}) {
        for (const int last : steps) {
            found[3] = neighbour(numbers[3], last);
            for (int i = 0; i < 125; ++i) {
                const int each[] = {steps[i % 5], steps[i / 5 % 5], steps[i / 25]};
                for (std::size_t j = 0; j < 3; ++j)
                    found[j] = neighbour(numbers[j] / length, each[j]);
                if (!(make(found) == value)) continue;
                numbers = found;
                return true;
            }
        }
    }
    return false;
}

/// A value that is kept in another way than files write it (a rotation as a quaternion, a plane
/// with a normal of length 1) is written as numbers that read back to exactly this value, so that
/// what was read is written again, and writing it again changes nothing. A value that no numbers
/// give is written as the nearest one that some do.
template <class Value, class Split, class Make>
FourNumbers readableNumbers(Value value, Split split, Make make)
{
    FourNumbers numbers = split(value);
    for (int i = 0; i < 20 && !findNumbers(value, numbers, make); ++i) {
        value = make(numbers);
        numbers = split(value);
    }
    return numbers;
}

/// Four numbers from which `Form` makes a value, and into which it splits one.
template <class Value, class Form> struct FourNumbersCodec {
    static constexpr std::size_t minBytes = 16;
    static bool read(KsInput& in, Value& value)
    {
        FourNumbers numbers;
        if (!readFour(in, numbers)) return false;
        value = Form::make(numbers);
        return true;
    }
    static void write(KsOutput& out, const Value& value)
    {
        for (float each : readableNumbers(value, Form::split, Form::make)) out.write(each);
    }
};

/// Axis and angle.
struct RotationForm {
    static KbRotation make(const FourNumbers& n)
    {
        return KbRotation(KbVec3f(n[0], n[1], n[2]), n[3]);
    }
    static FourNumbers split(const KbRotation& rotation)
    {
        KbVec3f axis;
        float radians;
        rotation.getValue(axis, radians);
        return {axis[0], axis[1], axis[2], radians};
    }
};
template <> struct Codec<KbRotation> : FourNumbersCodec<KbRotation, RotationForm> {};

/// Normal and distance.
struct PlaneForm {
    static KbPlane make(const FourNumbers& n) { return KbPlane(KbVec3f(n[0], n[1], n[2]), n[3]); }
    static FourNumbers split(const KbPlane& plane)
    {
        const KbVec3f& normal = plane.getNormal();
        return {normal[0], normal[1], normal[2], plane.getDistanceFromOrigin()};
    }
};
template <> struct Codec<KbPlane> : FourNumbersCodec<KbPlane, PlaneForm> {};

template <> struct Codec<KbMatrix> {
    static bool read(KsInput& in, KbMatrix& value)
    {
        float numbers[16];
        for (float& each : numbers)
            if (!in.read(each)) return false;
        value.setValue(numbers);
        return true;
    }
    static void write(KsOutput& out, const KbMatrix& value)
    {
        for (int i = 0; i < 16; ++i) out.write(value.getValue()[i]);
    }
};

template <class Field> bool readSingle(Field& field, KsInput* in)
{
    typename Field::Value value{};
    if (!in || !Codec<typename Field::Value>::read(*in, value)) return false;
    field.setValue(value);
    return true;
}

template <class Field> void writeSingle(const Field& field, KsOutput* out)
{
    if (out) Codec<typename Field::Value>::write(*out, field.getValue());
}

// ---- several values ---------------------------------------------------------------------------

/// Goes on behind a list of which the rest would only be more of the same.
void leaveList(KsInput* in, std::string_view ends)
{
    Impl& im = in->impl();
    while (!im.stopped && !im.atEnd() && ends.find(*im.cur) == ends.npos) {
        if (*im.cur == '"')
            im.skipQuoted();
        else
            ++im.cur;
        im.skipBlanks();
    }
    in->takeChar(']');
}

template <class Field> bool readSeveral(Field& field, KsInput* in)
{
    using Value = typename Field::Value;
    if (!in) return false;
    Impl& im = in->impl();
    const std::int64_t limit = KsLimits::current().valuesPerField;
    std::vector<Value> values;
    if (im.binary) {
        std::int32_t count;
        if (!in->readCount(count, Codec<Value>::minBytes, limit)) return false;
        // Values of no fixed size are not made before their bytes are seen.
        for (std::int32_t i = 0; i < count; ++i) {
            values.emplace_back();
            if (!Codec<Value>::read(*in, values.back())) return false;
        }
    } else if (in->takeChar('[')) {
        while (!in->takeChar(']')) {
            if (static_cast<std::int64_t>(values.size()) >= limit) {
                im.skipBlanks();
                im.errorAt(im.cur, "more than the limit of " + std::to_string(limit) +
                                       " values for the field " + im.quote(im.fieldName.view()));
                leaveList(in, "]}");
                return false;
            }
            Value value{};
            if (!Codec<Value>::read(*in, value)) {
                leaveList(in, "]}{");
                return false;
            }
            values.push_back(std::move(value));
            in->takeChar(',');
        }
    } else {
        values.emplace_back();
        if (!Codec<Value>::read(*in, values.back())) return false;
    }
    field.assign(std::move(values));
    return true;
}

template <class Field> void writeSeveral(const Field& field, KsOutput* out)
{
    using Value = typename Field::Value;
    if (!out) return;
    KsOutput::Impl& im = out->impl();
    const std::vector<Value>& values = field.values();
    if (im.binary) {
        out->write(static_cast<std::int32_t>(values.size()));
        for (const Value& each : values) Codec<Value>::write(*out, each);
        return;
    }
    if (values.size() == 1) {
        Codec<Value>::write(*out, values.front());
        return;
    }
    im.append(values.empty() ? "[]" : "[");
    if (values.empty()) return;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i > 0) out->writeChar(',');
        im.wrap();
        Codec<Value>::write(*out, values[i]);
    }
    im.append("]");
}

// ---- enums ------------------------------------------------------------------------------------

bool hasNames(const KsEnumData* enums) { return enums && !enums->names.empty(); }

std::string listNames(const KsEnumData& enums)
{
    std::string list;
    for (std::size_t i = 0; i < enums.names.size() && i < 8; ++i)
        list += (i > 0 ? ", " : "") + std::string(enums.names[i].view());
    return list + (enums.names.size() > 8 ? ", ..." : "");
}

/// One name of an enum, or a number where the enum has no names.
bool readEnumValue(KsInput* in, const KsEnumData* enums, int& value)
{
    Impl& im = in->impl();
    if (!hasNames(enums)) {
        std::int32_t number;
        if (!in->read(number)) return false;
        value = number;
        return true;
    }
    std::string_view word;
    if (im.binary) {
        if (!im.readBinaryText(word, KsLimits::current().nameBytes, "a word")) return false;
    } else {
        word = im.peekWord();
        if (word.empty() || !Impl::is(word[0], Impl::Letter))
            return im.expected("one of " + listNames(*enums));
    }
    const KbName name = im.knownName(word);
    if (!name.isEmpty() && enums->valueOf(name, value)) {
        if (!im.binary) im.take(word);
        return true;
    }
    KsNearestName nearest(im, word);
    for (const KbName& each : enums->names) nearest.offer(each.view());
    const std::string message =
        "unknown value " + im.quote(word) +
        (im.fieldName.isEmpty() ? std::string()
                                : " for the field " + im.quote(im.fieldName.view())) +
        nearest.hint();
    if (im.binary) return im.binaryError(message);
    im.error(message);
    return false;
}

void writeEnumValue(KsOutput* out, const KsEnumData* enums, int value)
{
    const KbName name = hasNames(enums) ? enums->nameOf(value) : KbName();
    if (hasNames(enums))
        out->writeWord(name.isEmpty() ? enums->names.front().getString() : name.getString());
    else
        out->write(static_cast<std::int32_t>(value));
}

/// The names that make up a set of bits: one that says it all, else those that are part of it.
std::vector<KbName> namesOf(const KsEnumData& enums, int bits)
{
    const KbName whole = enums.nameOf(bits);
    if (!whole.isEmpty()) return {whole};
    std::vector<KbName> names;
    int left = bits;
    for (std::size_t i = 0; i < enums.values.size() && left != 0; ++i) {
        const int value = enums.values[i];
        if (value == 0 || (bits & value) != value || (left & value) == 0) continue;
        names.push_back(enums.names[i]);
        left &= ~value;
    }
    return names;
}

} // namespace

bool KsSFEnum::readValue(KsInput* in)
{
    int value;
    if (!in || !readEnumValue(in, m_enums, value)) return false;
    setValue(value);
    return true;
}

void KsSFEnum::writeValue(KsOutput* out) const
{
    if (out) writeEnumValue(out, m_enums, m_value);
}

bool KsSFBitMask::readValue(KsInput* in)
{
    if (!in) return false;
    int bits = 0;
    int value;
    if (in->isBinary()) {
        std::int32_t count;
        if (!in->readCount(count, 4, 32)) return false;
        for (int i = 0; i < count; ++i) {
            if (!readEnumValue(in, m_enums, value)) return false;
            bits |= value;
        }
    } else if (in->takeChar('(')) {
        if (!in->takeChar(')')) {
            do {
                if (!readEnumValue(in, m_enums, value)) {
                    in->impl().skipBrackets();
                    return false;
                }
                bits |= value;
            } while (in->takeChar('|'));
            if (!in->expectChar(')', "'|' or ')'")) {
                in->impl().skipBrackets();
                return false;
            }
        }
    } else {
        if (!readEnumValue(in, m_enums, value)) return false;
        bits = value;
    }
    setValue(bits);
    return true;
}

void KsSFBitMask::writeValue(KsOutput* out) const
{
    if (!out) return;
    if (!hasNames(m_enums)) {
        if (out->isBinary()) out->write(std::int32_t(1));
        out->write(static_cast<std::int32_t>(m_value));
        return;
    }
    const std::vector<KbName> names = namesOf(*m_enums, m_value);
    if (out->isBinary()) {
        out->write(static_cast<std::int32_t>(names.size()));
        for (const KbName& each : names) out->writeWord(each.getString());
        return;
    }
    if (names.size() == 1) {
        out->writeWord(names.front().getString());
        return;
    }
    std::string text = "(";
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i > 0 ? " | " : "") + std::string(names[i].view());
    out->writeWord((text + ")").c_str());
}

// ---- nodes ------------------------------------------------------------------------------------

bool KsSFNode::readValue(KsInput* in)
{
    if (!in) return false;
    Impl& im = in->impl();
    const KsType type = im.nodeType.isBad() ? KsNode::getClassTypeId() : im.nodeType;
    im.nodeType = KsType();
    if (!im.binary) {
        const std::string_view word = im.peekWord();
        if (word == "NULL" && im.charBehind(im.cur + word.size()) != '{') {
            im.take(word);
            setValue(nullptr);
            return true;
        }
        if (!im.beginsNode(word)) return im.expected("a node, \"USE name\" or NULL");
    }
    KsBase* object = nullptr;
    const std::size_t errors = im.errors.size() + static_cast<std::size_t>(im.furtherErrors);
    if (!KsBase::read(in, object, type)) return false;
    if (errors != im.errors.size() + static_cast<std::size_t>(im.furtherErrors)) return false;
    const KsRef<KsBase> held(object);
    setValue(static_cast<KsNode*>(object));
    return true;
}

void KsSFNode::writeValue(KsOutput* out) const
{
    if (!out) return;
    KsOutput::Impl& im = out->impl();
    const bool tooDeep = m_value && im.depth >= KsLimits::current().nesting;
    im.isPartial = im.isPartial || tooDeep;
    if (tooDeep && out->getStage() == KsOutput::WRITE) {
        KsDebugError::post("KsSFNode::writeValue",
                           "Nodes stand in fields of each other deeper than %d levels; what is "
                           "below is left out",
                           KsLimits::current().nesting);
    }
    if (!m_value || tooDeep) {
        if (out->getStage() == KsOutput::WRITE) out->writeWord(im.binary ? "" : "NULL");
        return;
    }
    ++im.depth;
    const int walked = std::exchange(im.walked, 0); // that is another traversal
    KsWriteAction(out).continueTo(m_value);
    im.walked = walked;
    --im.depth;
}

// ---- the classes ------------------------------------------------------------------------------

#define KS_VALUE_IO(Class, readIt, writeIt)                                                        \
    bool Class::readValue(KsInput* in) { return readIt(*this, in); }                               \
    void Class::writeValue(KsOutput* out) const { writeIt(*this, out); }

KS_VALUE_IO(KsSFBool, readSingle, writeSingle)
KS_VALUE_IO(KsSFFloat, readSingle, writeSingle)
KS_VALUE_IO(KsSFInt32, readSingle, writeSingle)
KS_VALUE_IO(KsSFString, readSingle, writeSingle)
KS_VALUE_IO(KsSFName, readSingle, writeSingle)
KS_VALUE_IO(KsSFVec2i32, readSingle, writeSingle)
KS_VALUE_IO(KsSFVec2f, readSingle, writeSingle)
KS_VALUE_IO(KsSFVec3f, readSingle, writeSingle)
KS_VALUE_IO(KsSFColor, readSingle, writeSingle)
KS_VALUE_IO(KsSFRotation, readSingle, writeSingle)
KS_VALUE_IO(KsSFMatrix, readSingle, writeSingle)
KS_VALUE_IO(KsSFPlane, readSingle, writeSingle)
KS_VALUE_IO(KsMFString, readSeveral, writeSeveral)
KS_VALUE_IO(KsMFFloat, readSeveral, writeSeveral)
KS_VALUE_IO(KsMFInt32, readSeveral, writeSeveral)
KS_VALUE_IO(KsMFColor, readSeveral, writeSeveral)
KS_VALUE_IO(KsMFVec2f, readSeveral, writeSeveral)
KS_VALUE_IO(KsMFVec3f, readSeveral, writeSeveral)
