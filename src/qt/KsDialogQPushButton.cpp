#include "KsDialogQPushButton.h"

#include <formweave/KsDialogPushButton.h>

KsDialogQPushButton::KsDialogQPushButton(QWidget* parent, KsDialogPushButton* button)
    : KsRelayFrame(parent, button, "KsDialogQPushButton")
{
    m_button = new QPushButton(this);
    adoptControl(m_button, "ButtonWidget");
    createLabel();
    // The press, not the click: the node hears it before the button is released.
    connect(m_button, "2pressed()", this, "1eventNotify()");
}

void KsDialogQPushButton::updateButtonWidget(int x, int y, int w, int h)
{
    place(m_button, x, y, w, h);
}

void KsDialogQPushButton::changeButtonLabel(const QString& text)
{
    if (m_button) m_button->setText(text);
}

void KsDialogQPushButton::eventNotify() { notify(0); }
