#pragma once

#include "KsRelay.h"

class KsDialogSeparator;

/// Relay of a separator: a line.
class KsDialogQSeparator : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQSeparator(QWidget* parent, KsDialogSeparator* separator);

    void updateSeparatorWidget(int x, int y, int w, int h, bool horizontal);

private:
    QPointer<QFrame> m_line;
};
