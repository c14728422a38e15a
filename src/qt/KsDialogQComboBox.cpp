#include "KsDialogQComboBox.h"

#include <formweave/KsDialogComboBox.h>

KsDialogQComboBox::KsDialogQComboBox(QWidget* parent, KsDialogComboBox* comboBox)
    : KsRelayFrame(parent, comboBox, "KsDialogQComboBox")
{
    m_comboBox = new QComboBox(this);
    adoptControl(m_comboBox, "ComboBoxWidget");
    createLabel();
    connect(m_comboBox, "2activated(int)", this, "1eventNotify(int)");
}

void KsDialogQComboBox::updateComboBoxWidget(int x, int y, int w, int h)
{
    place(m_comboBox, x, y, w, h);
}

void KsDialogQComboBox::changeItems(const QString& text, int index)
{
    if (!m_comboBox) return;
    if (index >= 0)
        m_comboBox->insertItem(index, text);
    else
        m_comboBox->addItem(text);
}

void KsDialogQComboBox::clear()
{
    if (m_comboBox) m_comboBox->clear();
}

int KsDialogQComboBox::count() const { return m_comboBox ? m_comboBox->count() : 0; }

void KsDialogQComboBox::changeSelectedItem(int index)
{
    if (m_comboBox) m_comboBox->setCurrentIndex(index);
}

void KsDialogQComboBox::eventNotify(int selectedItem)
{
    notify(static_cast<unsigned int>(selectedItem));
}
