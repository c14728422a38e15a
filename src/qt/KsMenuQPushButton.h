#pragma once

#include "KsMenuRelay.h"

class KsMenuPushButton;

/// Relay of a push button in a menu.
class KsMenuQPushButton : public KsMenuRelay {
    Q_OBJECT

public:
    /// `index` is not used: the action stands behind those that are there.
    KsMenuQPushButton(QWidget* menu, int index, int id, KsMenuPushButton* node);
};
