#pragma once

#include "KsMenuRelay.h"

class KsMenuCheckBox;

/// Relay of a check box in a menu.
class KsMenuQCheckBox : public KsMenuRelay {
    Q_OBJECT

public:
    /// `index` is not used: the action stands behind those that are there.
    KsMenuQCheckBox(QWidget* menu, int index, int id, KsMenuCheckBox* node);

    /// Checks or unchecks without an event.
    void changeState(bool state) { setChecked(state); }
};
