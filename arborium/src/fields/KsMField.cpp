#include <arborium/fields/KsMField.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>

#include "FieldValues.h"

KS_FIELD_TYPE(KsMField, KsField, "MField")

bool KsMField::canHold(int index)
{
    const auto limit = KsLimits::current().valuesPerField;
    if (index >= 0 && index < limit) return true;
    KsDebugError::post("KsMField::setValues", "Index %d is out of range %d - %lld", index, 0,
                       static_cast<long long>(limit - 1));
    return false;
}

#define KS_MFIELD_SOURCE(Class, Name)                                                              \
    KS_FIELD_TYPE(Class, KsMField, Name)                                                           \
    KS_FIELD_COPY(Class, m_values)                                                                 \
    KS_FIELD_SAME(Class, m_values)

KS_MFIELD_SOURCE(KsMFString, "MFString")
KS_MFIELD_SOURCE(KsMFFloat, "MFFloat")
KS_MFIELD_SOURCE(KsMFInt32, "MFInt32")
KS_MFIELD_SOURCE(KsMFColor, "MFColor")
KS_MFIELD_SOURCE(KsMFVec2f, "MFVec2f")
KS_MFIELD_SOURCE(KsMFVec3f, "MFVec3f")
