#include "KsAuditorDispatch.h"

#include <formweave/KsFormweave.h>

namespace {

// An element as its own class, whose header need not be known here: each element class derives from
// `KsFormweave` first and alone, so the address is the same. `node` must be of that class.
template <class Element> Element* asElement(KsFormweave* node)
{
    return reinterpret_cast<Element*>(node);
}

struct Operation {
    const char* typeName;
    void (*call)(KsDialogAuditor*, KsFormweave*);
};
template <class Element, void (KsDialogAuditor::*operation)(Element*)>
void call(KsDialogAuditor* auditor, KsFormweave* node)
{
    (auditor->*operation)(asElement<Element>(node));
}
#define OPERATION(Element, operation)                                                              \
    {                                                                                              \
#Element, &call < Element, &KsDialogAuditor::operation>                                    \
    }

// An element is of one of these types at most, but for the file selection, which is a menu push
// button as well, stands in front of it, and shall be told of once. So the first match is the only
// one; and an auditor that died in its call is not touched again.
constexpr Operation operations[] = {
    OPERATION(KsDialogPushButton, dialogPushButton),
    OPERATION(KsDialogCheckBox, dialogCheckBox),
    OPERATION(KsDialogComboBox, dialogComboBox),
    OPERATION(KsDialogEditText, dialogEditText),
    OPERATION(KsDialogRadioButtons, dialogRadioButtons),
    OPERATION(KsDialogIntegerSlider, dialogIntegerSlider),
    OPERATION(KsDialogRealSlider, dialogRealSlider),
    OPERATION(KsMenuCheckBox, menuCheckBox),
    OPERATION(KsMenuRadioButtons, menuRadioButtons),
    OPERATION(KsMenuFileSelection, menuFileSelection),
    OPERATION(KsMenuPushButton, menuPushButton),
};
constexpr const Operation* components = operations;
constexpr const Operation* menuItems = operations + 7;
constexpr const Operation* end = operations + 11;
static_assert(end == std::end(operations));

void tell(const Operation* first, const Operation* last, KsDialogAuditor* auditor,
          KsFormweave* node)
{
    if (!auditor || !node) return;
    const KsKeepAlive keep(node);
    for (const Operation* operation = first; operation != last; ++operation) {
        // A class that is not registered has the bad type, of which no element is.
        if (!node->isOfType(KsType::fromName(operation->typeName))) continue;
        operation->call(auditor, node);
        return;
    }
}

} // namespace

void ksTellComponent(KsDialogAuditor* auditor, KsFormweave* node)
{
    tell(components, menuItems, auditor, node);
}

void ksTellTopLevel(KsDialogAuditor* auditor, KsFormweave* node)
{
    tell(components, end, auditor, node);
}

void ksTellMenu(KsDialogAuditor* auditor, KsFormweave* node)
{
    tell(menuItems, end, auditor, node);
}
