#include "KsMenuQPushButton.h"

#include <formweave/KsMenuPushButton.h>

KsMenuQPushButton::KsMenuQPushButton(QWidget* menu, int, int id, KsMenuPushButton* node)
    : KsMenuRelay(menu, id, node, 0, false)
{}
