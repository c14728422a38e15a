#pragma once

#include <arborium/base/KsTypedObject.h>
#include <formweave/KsFormweaveApi.h>

/// Declares the run-time type of an auditor class. It is the bad type until `initClass` ran.
#define KS_AUDITOR_HEADER(Class)                                                                   \
public:                                                                                            \
    static KsType getClassTypeId();                                                                \
    KsType getTypeId() const override;                                                             \
    static void initClass();                                                                       \
    static void exitClass()

/// An application's listener. An application derives from one of the subclasses, and adds its
/// auditor to an element or to a container; the list does not own it. An auditor is removed before
/// it is deleted. It is told after the new value is in the element's field, and may then change or
/// delete the element, its dialog, or itself.
class FORMWEAVE_API KsAuditor : public KsTypedObject {
    KS_AUDITOR_HEADER(KsAuditor);

public:
    /// Registers the types of all auditor classes but `KsTabDialogAuditor`; `KsFormweave::init`
    /// calls it.
    static void initClasses();
    /// Takes them out again, in the reverse order.
    static void exitClasses();
};
