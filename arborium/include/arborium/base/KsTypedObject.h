#pragma once

#include <arborium/base/KsType.h>

/// Base of everything that has a run-time type.
class ARBORIUM_API KsTypedObject {
public:
    virtual ~KsTypedObject();

    /// The type "TypedObject", from which all others derive; each class has this for itself.
    static KsType getClassTypeId();
    /// The type of the object itself; `getClassTypeId` is that of the class it is called for.
    virtual KsType getTypeId() const = 0;
    /// Whether it is of this type or of one derived from it. FALSE for the bad type.
    bool isOfType(KsType type) const { return getTypeId().isDerivedFrom(type); }

    /// Checks that `type` is registered under the name of `className` (with or without "Ks") and
    /// that `member`, the class's own record of it, agrees. Posts a message if not.
    static bool checkDatabase(const char* className, const void* instance, KsType type,
                              KsType member);
    /// Registers the type, which its first use does as well.
    static void initClass();
};

/// `object` as a `T`, or null if it is null or of another type.
template <class T, class U> T* ksCast(U* object)
{
    return object && object->isOfType(T::getClassTypeId()) ? static_cast<T*>(object) : nullptr;
}
template <class T, class U> const T* ksCast(const U* object)
{
    return object && object->isOfType(T::getClassTypeId()) ? static_cast<const T*>(object)
                                                           : nullptr;
}
