#pragma once

#include "KsMenuRelay.h"

class KsMenuRadioButtons;

/// Relay of one row of radio buttons in a menu.
class KsMenuQRadioButtons : public KsMenuRelay {
    Q_OBJECT

public:
    /// `index` is not used: the action stands behind those that are there.
    KsMenuQRadioButtons(QWidget* menu, int index, int id, KsMenuRadioButtons* node);

    /// Checks or unchecks without an event.
    void changeSelectedItem(bool selected) { setChecked(selected); }
};
