#pragma once

#include <cstring>
#include <type_traits>
#include <vector>

/// Whether a field that took one value has the other: a value that is not a number is the same as
/// itself here, or fields connected both ways would hand it on without end.
template <class V> bool isSameValue(const V& a, const V& b)
{
    if (a == b) return true;
    if constexpr (std::is_trivially_copyable_v<V> && std::is_standard_layout_v<V>)
        return std::memcmp(static_cast<const void*>(&a), static_cast<const void*>(&b), sizeof(V)) ==
               0;
    return false;
}

template <class V> bool isSameValue(const std::vector<V>& a, const std::vector<V>& b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!isSameValue(a[i], b[i])) return false;
    return true;
}

/// What each field class has in common: its type, and the exchange with a field of the same type.
#define KS_FIELD_TYPE(Class, Parent, Name)                                                         \
    KsType Class::getClassTypeId()                                                                 \
    {                                                                                              \
        static const KsType type = KsType::createType(Parent::getClassTypeId(), Name);             \
        return type;                                                                               \
    }

#define KS_FIELD_SAME(Class, member)                                                               \
    bool Class::isSame(const KsField& other) const                                                 \
    {                                                                                              \
        return other.getTypeId() == getTypeId() &&                                                 \
               isSameValue(member, static_cast<const Class&>(other).member);                       \
    }

#define KS_FIELD_COPY(Class, member)                                                               \
    void Class::copyFrom(const KsField& other)                                                     \
    {                                                                                              \
        if (&other == this || other.getTypeId() != getTypeId()) return;                            \
        const auto& from = static_cast<const Class&>(other);                                       \
        if (!isValid(&from.member)) return;                                                        \
        member = from.member;                                                                      \
        valueChanged(from.isDefault());                                                            \
    }
