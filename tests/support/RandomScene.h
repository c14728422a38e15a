#pragma once

// Nodes, values and trees made by chance: for tests with a printed seed, and for fuzz targets whose
// input decides.

#include <arborium/base/KsType.h>
#include <arborium/fields/KsMField.h>
#include <arborium/fields/KsSField.h>
#include <arborium/nodes/KsFile.h>
#include <arborium/nodes/KsNode.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

/// Where chance comes from.
class Choices {
public:
    virtual ~Choices() = default;
    /// Any number.
    virtual std::uint32_t next() = 0;
    /// FALSE where nothing more is to be decided.
    virtual bool hasMore() const { return true; }

    /// From 0 to below `n`; 0 if there is nothing to choose from.
    int upTo(int n) { return n > 0 ? static_cast<int>(next() % static_cast<unsigned>(n)) : 0; }
    bool chance(int percent) { return upTo(100) < percent; }
    template <class T> const T& oneOf(const std::vector<T>& from)
    {
        return from[static_cast<std::size_t>(upTo(static_cast<int>(from.size())))];
    }
};

class RandomChoices final : public Choices {
public:
    explicit RandomChoices(std::uint32_t seed) : m_random(seed) {}
    std::uint32_t next() override { return static_cast<std::uint32_t>(m_random()); }

private:
    std::mt19937 m_random;
};

/// A byte decides what is small; what may be large takes as many as it needs.
class ByteChoices final : public Choices {
public:
    ByteChoices(const std::uint8_t* data, std::size_t size) : m_at(data), m_end(data + size) {}
    std::uint32_t next() override { return m_at < m_end ? *m_at++ : 0u; }
    bool hasMore() const override { return m_at < m_end; }

private:
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
};

namespace RandomScene {

/// What sizes, places and matrices must bear.
inline const std::vector<float>& extremes()
{
    using Limits = std::numeric_limits<float>;
    static const std::vector<float> values = {Limits::quiet_NaN(),
                                              Limits::infinity(),
                                              -Limits::infinity(),
                                              1e38f,
                                              -1e38f,
                                              Limits::max(),
                                              Limits::lowest(),
                                              Limits::min(),
                                              Limits::denorm_min(),
                                              0.0f,
                                              -0.0f,
                                              1e-20f,
                                              1e20f};
    return values;
}

inline float number(Choices& choices)
{
    if (choices.chance(20)) return choices.oneOf(extremes());
    return static_cast<float>(choices.upTo(256) - 100) / 8.0f;
}

inline KbString text(Choices& choices)
{
    static const std::vector<std::string> texts = {
        "",    "a",    "two\nlines", "\xc3\xa4\xe2\x82\xac", "\"\\ ", "{ [ # ] }",
        "DEF", "TRUE", "1e9",        "\xd7\xa9\xd7\x9c",     "Sans"};
    return KbString::fromUtf8(choices.oneOf(texts));
}

inline KbVec3f vector(Choices& choices)
{
    const float x = number(choices), y = number(choices), z = number(choices);
    return KbVec3f(x, y, z);
}

inline KbColor color(Choices& choices)
{
    const float r = number(choices), g = number(choices), b = number(choices);
    return KbColor(r, g, b);
}

/// Sets a field if it is one of this class.
template <class Field, class Set> bool setAs(KsField* field, const Set& set)
{
    auto* typed = ksCast<Field>(field);
    if (typed) set(*typed);
    return typed;
}

template <class Field, class Make> bool fillAs(KsField* field, Choices& choices, const Make& make)
{
    return setAs<Field>(field, [&](Field& values) {
        values.setNum(0);
        const int count = choices.upTo(9);
        for (int i = 0; i < count; ++i) values.set1Value(i, make());
    });
}

/// A value for a field of any class of the layer; `node` for a field that refers to one.
inline void setValue(KsField* field, Choices& choices, KsNode* node = nullptr)
{
    const auto pair = [&] {
        const float x = number(choices), y = number(choices);
        return KbVec2f(x, y);
    };
    const auto matrix = [&] {
        KbMatrix result;
        for (int i = 0; i < 16; ++i)
            if (choices.chance(40)) result[i / 4][i % 4] = number(choices);
        return result;
    };
    const auto bits = [&](const KsEnumData* names) {
        int value = 0;
        for (std::size_t i = 0; names && i < names->values.size(); ++i)
            if (choices.chance(50)) value |= names->values[i];
        return value;
    };
    const auto direction = [&] { return vector(choices); };
    static_cast<void>(setAs<KsSFBool>(field, [&](auto& f) { f = choices.chance(50); }) ||
                      setAs<KsSFFloat>(field, [&](auto& f) { f = number(choices); }) ||
                      setAs<KsSFInt32>(field, [&](auto& f) { f = choices.upTo(256) - 8; }) ||
                      setAs<KsSFString>(field, [&](auto& f) { f = text(choices); }) ||
                      setAs<KsSFFilePathString>(field, [&](auto& f) { f = text(choices); }) ||
                      setAs<KsSFVec2f>(field, [&](auto& f) { f = pair(); }) ||
                      setAs<KsSFVec2i32>(field,
                                         [&](auto& f) {
                                             const int x = choices.upTo(256), y = choices.upTo(256);
                                             f.setValue(x, y);
                                         }) ||
                      setAs<KsSFVec3f>(field, [&](auto& f) { f = vector(choices); }) ||
                      setAs<KsSFColor>(field, [&](auto& f) { f = color(choices); }) ||
                      setAs<KsSFRotation>(field,
                                          [&](auto& f) {
                                              const KbVec3f axis = direction();
                                              f = KbRotation(axis, number(choices));
                                          }) ||
                      setAs<KsSFMatrix>(field, [&](auto& f) { f = matrix(); }) ||
                      setAs<KsSFPlane>(field,
                                       [&](auto& f) {
                                           const KbVec3f normal = direction();
                                           f = KbPlane(normal, number(choices));
                                       }) ||
                      setAs<KsSFBitMask>(field, [&](auto& f) { f = bits(f.getEnums()); }) ||
                      setAs<KsSFEnum>(field,
                                      [&](auto& f) {
                                          const KsEnumData* names = f.getEnums();
                                          if (names && !names->values.empty())
                                              f = choices.oneOf(names->values);
                                      }) ||
                      setAs<KsSFNode>(field, [&](auto& f) { f = node; }) ||
                      fillAs<KsMFString>(field, choices, [&] { return text(choices); }) ||
                      fillAs<KsMFFloat>(field, choices, [&] { return number(choices); }) ||
                      fillAs<KsMFInt32>(field, choices, [&] { return choices.upTo(12) - 2; }) ||
                      fillAs<KsMFColor>(field, choices, [&] { return color(choices); }) ||
                      fillAs<KsMFVec2f>(field, choices, pair) ||
                      fillAs<KsMFVec3f>(field, choices, direction));
}

/// The classes of nodes that can be made, in the order of their registration. Without files: what
/// stands in those is read from the disk.
inline const std::vector<KsType>& nodeTypes()
{
    static const std::vector<KsType> types = [] {
        std::vector<KsType> all;
        KsType::forEach([&all](KsType type) {
            if (type.isDerivedFrom(KsNode::getClassTypeId()) && type.canCreateInstance() &&
                type != KsFile::getClassTypeId())
                all.push_back(type);
        });
        return all;
    }();
    return types;
}

inline KsRef<KsNode> makeNode(KsType type)
{
    return KsRef<KsNode>(static_cast<KsNode*>(type.createInstance()));
}

inline KsRef<KsNode> anyNode(Choices& choices) { return makeNode(choices.oneOf(nodeTypes())); }

} // namespace RandomScene
