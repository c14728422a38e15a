#include "KsDialogQCheckBox.h"

#include <formweave/KsDialogCheckBox.h>

namespace {

constexpr const char* stateSignal = "2stateChanged(int)";
constexpr const char* stateSlot = "1eventNotify(int)";

} // namespace

KsDialogQCheckBox::KsDialogQCheckBox(QWidget* parent, KsDialogCheckBox* checkBox)
    : KsRelayFrame(parent, checkBox, "KsDialogQCheckBox")
{
    m_checkBox = new QCheckBox(this);
    adoptControl(m_checkBox, "CheckBoxWidget");
    createLabel();
    connect(m_checkBox, stateSignal, this, stateSlot);
}

void KsDialogQCheckBox::updateCheckBoxWidget(int x, int y, int w, int h)
{
    place(m_checkBox, x, y, w, h);
}

void KsDialogQCheckBox::changeOnOffString(const QString& text)
{
    if (m_checkBox) m_checkBox->setText(text);
}

void KsDialogQCheckBox::changeState(bool state)
{
    if (!m_checkBox || !node()) return;
    disconnect(m_checkBox, stateSignal, this, stateSlot);
    m_checkBox->setChecked(state);
    connect(m_checkBox, stateSignal, this, stateSlot);
}

void KsDialogQCheckBox::eventNotify(int state) { notify(state != 0); }
