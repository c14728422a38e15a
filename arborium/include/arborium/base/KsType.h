#pragma once

#include <arborium/base/KbName.h>
#include <arborium/base/KsApi.h>

#include <cstdint>
#include <functional>

class KsType;
class KsTypedObject;

/// Makes an instance of a class; null when that fails. The argument is the type asked for.
using KsCreateFunction = KsTypedObject* (*)(KsType*);

/// A run-time type: a small index into one table. Index 0 is the bad type.
class ARBORIUM_API KsType {
public:
    constexpr KsType() = default;

    /// Registers a type. A name that is registered already yields the existing type unchanged.
    /// `create` null makes the type abstract. The empty name yields the bad type.
    static KsType createType(KsType parent, const KbName& name, KsCreateFunction create = nullptr,
                             std::uint16_t actionIndex = 0);
    /// The type with this name, with or without the prefix "Ks"; the bad type if there is none.
    static KsType fromName(const KbName& name);
    /// No type: what a search yields that finds none.
    static constexpr KsType badType() { return {}; }
    /// Forgets a type. Returns 0 if no type has this name. Its index is used again only for a type
    /// of the same name.
    static int removeType(const KbName& name);
    /// Calls `visit` with each registered type, in the order of registration.
    static void forEach(const std::function<void(KsType)>& visit);

    /// A type that was removed is not bad, but derives from nothing and has no name.
    constexpr bool isBad() const { return m_index == 0; }
    /// As it was registered; empty for the bad type.
    KbName getName() const;
    /// The bad type at the root.
    KsType getParent() const;
    /// TRUE if this type is `ancestor` or derives from it. FALSE if either is bad.
    bool isDerivedFrom(KsType ancestor) const;
    /// FALSE for an abstract or bad type.
    bool canCreateInstance() const;
    /// A new instance, with no reference; null for an abstract or bad type.
    KsTypedObject* createInstance() const;
    /// The number given at the registration; 0 for the bad type.
    std::uint16_t getActionIndex() const;

    /// The place in the table; 0 for the bad type.
    constexpr std::uint16_t getIndex() const { return m_index; }
    /// Two bad types are equal.
    constexpr bool operator==(KsType other) const { return m_index == other.m_index; }
    constexpr bool operator!=(KsType other) const { return m_index != other.m_index; }

private:
    constexpr explicit KsType(std::uint16_t index) : m_index(index) {}
    std::uint16_t m_index = 0;
};
