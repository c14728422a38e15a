#include <arborium/base/KsTypedObject.h>

#include <arborium/base/KsDebugError.h>

KsTypedObject::~KsTypedObject() = default;

KsType KsTypedObject::getClassTypeId()
{
    static const KsType type = KsType::createType(KsType::badType(), "TypedObject");
    return type;
}

void KsTypedObject::initClass() { getClassTypeId(); }

bool KsTypedObject::checkDatabase(const char* className, const void* instance, KsType type,
                                  KsType member)
{
    const char* name = className ? className : "";
    const KsType known = KsType::fromName(name);
    if (!known.isBad() && known == type && type == member) return true;
    KsDebugError::post("KsTypedObject::checkDatabase",
                       "The type of class \"%s\" (instance %p) is not the one in the type table",
                       name, instance);
    return false;
}
