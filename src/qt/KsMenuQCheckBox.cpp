#include "KsMenuQCheckBox.h"

#include <formweave/KsMenuCheckBox.h>

KsMenuQCheckBox::KsMenuQCheckBox(QWidget* menu, int, int id, KsMenuCheckBox* node)
    : KsMenuRelay(menu, id, node, 0, true)
{}
