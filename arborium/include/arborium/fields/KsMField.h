#pragma once

#include <arborium/fields/KsSField.h>

#include <algorithm>
#include <vector>

/// A field of any number of values.
class ARBORIUM_API KsMField : public KsField {
public:
    static KsType getClassTypeId();
    /// The number of values.
    virtual int getNum() const = 0;
    /// Sets the number of values; new ones are the value type's zero. A negative number is 0, one
    /// beyond the limit of values is refused with a message.
    virtual void setNum(int count) = 0;
    /// Removes `count` values from `start` on; -1 means all the rest. Too large a count is clipped;
    /// a start out of range does nothing.
    virtual void deleteValues(int start, int count = -1) = 0;
    /// Inserts `count` values, the value type's zero, before the one at `start`, or behind the
    /// last. Out of range, or beyond the limit of values (with a message), does nothing.
    virtual void insertSpace(int start, int count) = 0;

protected:
    // Plumbing.
    /// FALSE, with a message, for an index that no field may have.
    static bool canHold(int index);
};

/// A field of any number of values of type `V`. Each change runs the notification once.
template <class V> class KsMFieldOf : public KsMField {
public:
    using Value = V;

    int getNum() const override { return static_cast<int>(m_values.size()); }
    /// The value at `index`; the value type's zero if the index is out of range.
    const V& operator[](int index) const
    {
        static const V zero{};
        return index >= 0 && index < getNum() ? m_values[static_cast<std::size_t>(index)] : zero;
    }
    /// The values from `start` on, in order; `start` out of range gives null. What is yielded lives
    /// until the field changes.
    const V* getValues(int start) const
    {
        return start >= 0 && start < getNum() ? m_values.data() + start : nullptr;
    }
    /// All values; they live until the field changes.
    const std::vector<V>& values() const { return m_values; }
    /// Replaces all values by one.
    void setValue(const V& value) { assign(std::vector<V>{value}); }
    /// Sets the value at `index`, growing the field with zeros as needed. A negative index, or one
    /// beyond the limit of values, is refused with a message.
    void set1Value(int index, const V& value)
    {
        if (!canHold(index)) return;
        V copy = value; // may be one of our own
        if (index >= getNum()) m_values.resize(static_cast<std::size_t>(index) + 1);
        m_values[static_cast<std::size_t>(index)] = std::move(copy);
        valueChanged();
    }
    /// Sets `count` values from `start` on, growing the field as needed. Null, or a count below 1,
    /// does nothing; a place that no value may have is refused with a message.
    void setValues(int start, int count, const V* values)
    {
        if (count <= 0 || !values || !canHold(count) || !canHold(start)) return;
        if (!canHold(start + count - 1)) return;
        const std::vector<V> copy(values, values + count); // may be our own
        if (start + count > getNum()) m_values.resize(static_cast<std::size_t>(start + count));
        std::copy(copy.begin(), copy.end(), m_values.begin() + start);
        valueChanged();
    }
    /// Replaces all values, if the container has nothing against it.
    void assign(std::vector<V> values)
    {
        if (!isValid(&values)) return;
        m_values = std::move(values);
        valueChanged();
    }
    /// Sets what the class declares; the field counts as default, nobody is told.
    void initValue(std::vector<V> values)
    {
        m_values = std::move(values);
        setDefault(true);
    }
    void initValue(const V& value) { initValue(std::vector<V>{value}); }
    void setNum(int count) override
    {
        if (count > 0 && !canHold(count - 1)) return;
        m_values.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        valueChanged();
    }
    void deleteValues(int start, int count = -1) override
    {
        if (start < 0 || start >= getNum()) return;
        const int end = count < 0 || count > getNum() - start ? getNum() : start + count;
        m_values.erase(m_values.begin() + start, m_values.begin() + end);
        valueChanged();
    }
    void insertSpace(int start, int count) override
    {
        if (count <= 0 || start < 0 || start > getNum() || !canHold(count)) return;
        if (!canHold(getNum() + count - 1)) return;
        m_values.insert(m_values.begin() + start, static_cast<std::size_t>(count), V{});
        valueChanged();
    }
    /// By the values alone.
    bool operator==(const KsMFieldOf& other) const { return m_values == other.m_values; }
    bool operator!=(const KsMFieldOf& other) const { return !(*this == other); }

protected:
    std::vector<V> m_values;
};

/// What each class of such fields declares: a field without a value, and assignment of all values
/// of another field of its class, or of one value instead of all.
#define KS_MFIELD(Class, ValueType)                                                                \
    KS_FIELD_HEADER(Class);                                                                        \
    Class() = default;                                                                             \
    Class(const Class&) = delete;                                                                  \
    Class& operator=(const Class& other)                                                           \
    {                                                                                              \
        assign(other.m_values);                                                                    \
        return *this;                                                                              \
    }                                                                                              \
    Class& operator=(const ValueType& value)                                                       \
    {                                                                                              \
        setValue(value);                                                                           \
        return *this;                                                                              \
    }

/// Texts: in files as `KsSFString`'s. Lists stand in brackets.
class ARBORIUM_API KsMFString : public KsMFieldOf<KbString> {
    KS_MFIELD(KsMFString, KbString)
};
/// Numbers with a fraction.
class ARBORIUM_API KsMFFloat : public KsMFieldOf<float> {
    KS_MFIELD(KsMFFloat, float)
};
/// Whole numbers.
class ARBORIUM_API KsMFInt32 : public KsMFieldOf<std::int32_t> {
    KS_MFIELD(KsMFInt32, std::int32_t)
};
/// Colours, three numbers each.
class ARBORIUM_API KsMFColor : public KsMFieldOf<KbColor> {
    KS_MFIELD(KsMFColor, KbColor)
public:
    using KsMFieldOf::setValue;
    void setValue(float r, float g, float b) { setValue(KbColor(r, g, b)); }
};
/// Pairs of numbers.
class ARBORIUM_API KsMFVec2f : public KsMFieldOf<KbVec2f> {
    KS_MFIELD(KsMFVec2f, KbVec2f)
public:
    using KsMFieldOf::setValue;
    void setValue(float x, float y) { setValue(KbVec2f(x, y)); }
};
/// Points or directions, three numbers each.
class ARBORIUM_API KsMFVec3f : public KsMFieldOf<KbVec3f> {
    KS_MFIELD(KsMFVec3f, KbVec3f)
public:
    using KsMFieldOf::setValue;
    void setValue(float x, float y, float z) { setValue(KbVec3f(x, y, z)); }
};
