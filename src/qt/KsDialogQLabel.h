#pragma once

#include "KsRelay.h"

class KsDialogLabel;

/// Relay of a label: the text alone.
class KsDialogQLabel : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQLabel(QWidget* parent, KsDialogLabel* label);
};
