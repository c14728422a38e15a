#pragma once

#include "KsRelay.h"

#include <QPushButton>

class KsDialogPushButton;

/// Relay of a push button.
class KsDialogQPushButton : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQPushButton(QWidget* parent, KsDialogPushButton* button);

    void updateButtonWidget(int x, int y, int w, int h);
    void changeButtonLabel(const QString& text);

public slots:
    void eventNotify();

private:
    QPointer<QPushButton> m_button;
};
