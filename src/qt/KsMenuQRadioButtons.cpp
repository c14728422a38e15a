#include "KsMenuQRadioButtons.h"

#include <formweave/KsMenuRadioButtons.h>

KsMenuQRadioButtons::KsMenuQRadioButtons(QWidget* menu, int, int id, KsMenuRadioButtons* node)
    : KsMenuRelay(menu, id, node, id, true)
{}
