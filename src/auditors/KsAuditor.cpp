// The types of the auditor classes.

#include "KsAuditorRecord.h"

#include <arborium/base/KsDebugError.h>
#include <formweave/KsDialogAuditor.h>
#include <formweave/KsDialogCheckBoxAuditor.h>
#include <formweave/KsDialogChoiceAuditor.h>
#include <formweave/KsDialogEditTextAuditor.h>
#include <formweave/KsDialogIntegerSliderAuditor.h>
#include <formweave/KsDialogPushButtonAuditor.h>
#include <formweave/KsDialogRealSliderAuditor.h>
#include <formweave/KsMenuCheckBoxAuditor.h>
#include <formweave/KsMenuFileSelectionAuditor.h>
#include <formweave/KsMenuPushButtonAuditor.h>
#include <formweave/KsMenuRadioButtonsAuditor.h>
#include <formweave/KsTabDialogAuditor.h>

#include <iterator>
#include <string>

KS_AUDITOR_SOURCE_NAMED(KsAuditor, "Auditor", true)
KS_AUDITOR_SOURCE(KsDialogAuditor)
KS_AUDITOR_SOURCE(KsDialogPushButtonAuditor)
KS_AUDITOR_SOURCE(KsDialogCheckBoxAuditor)
KS_AUDITOR_SOURCE(KsDialogChoiceAuditor)
KS_AUDITOR_SOURCE(KsDialogEditTextAuditor)
KS_AUDITOR_SOURCE(KsDialogIntegerSliderAuditor)
KS_AUDITOR_SOURCE(KsDialogRealSliderAuditor)
KS_AUDITOR_SOURCE(KsMenuCheckBoxAuditor)
KS_AUDITOR_SOURCE(KsMenuFileSelectionAuditor)
KS_AUDITOR_SOURCE(KsMenuPushButtonAuditor)
KS_AUDITOR_SOURCE(KsMenuRadioButtonsAuditor)
KS_AUDITOR_SOURCE(KsTabDialogAuditor)

void KsAuditorRecord::init()
{
    KsType parent;
    if (!isRoot) {
        if (KsAuditor::getClassTypeId().isBad()) {
            const std::string where = std::string(className) + "::initClass";
            KsDebugError::post(where.c_str(), "%s initialized before parent class KsAuditor\n",
                               className);
            KsAuditor::initClass();
        }
        parent = KsAuditor::getClassTypeId();
    }
    type = KsType::createType(parent, typeName);
}

void KsAuditorRecord::exit()
{
    if (!type.isBad() && KsType::removeType(typeName)) {
        type = KsType::badType();
        return;
    }
    const std::string where = std::string(className) + "::exitClass";
    KsDebugError::post(where.c_str(),
                       "Unable to remove type (%s) for this class. Check exitClass() method is "
                       "implemented and is called only once.\n",
                       typeName);
}

namespace {

// Registered in this order, taken out in the reverse one. `KsTabDialogAuditor` is left out: an
// application that wants its type registers it.
constexpr KsAuditorRecord* records[] = {
    &s_KsAuditorRecord,
    &s_KsDialogAuditorRecord,
    &s_KsDialogPushButtonAuditorRecord,
    &s_KsDialogCheckBoxAuditorRecord,
    &s_KsDialogChoiceAuditorRecord,
    &s_KsDialogEditTextAuditorRecord,
    &s_KsDialogIntegerSliderAuditorRecord,
    &s_KsDialogRealSliderAuditorRecord,
    &s_KsMenuCheckBoxAuditorRecord,
    &s_KsMenuFileSelectionAuditorRecord,
    &s_KsMenuPushButtonAuditorRecord,
    &s_KsMenuRadioButtonsAuditorRecord,
};

} // namespace

void KsAuditor::initClasses()
{
    for (KsAuditorRecord* record : records) record->init();
}

void KsAuditor::exitClasses()
{
    for (auto record = std::rbegin(records); record != std::rend(records); ++record)
        (*record)->exit();
}
