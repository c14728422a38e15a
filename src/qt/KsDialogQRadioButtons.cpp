#include "KsDialogQRadioButtons.h"

#include <formweave/KsDialogRadioButtons.h>

#include <QButtonGroup>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

KsDialogQRadioButtons::KsDialogQRadioButtons(QWidget* parent, KsDialogRadioButtons* radioButtons)
    : KsRelayFrame(parent, radioButtons, "KsDialogQRadioButtons")
{
    m_group = new QButtonGroup(this);
    m_box = new QGroupBox(this);
    adoptControl(m_box, "ButtonGroupWidget");
    m_column = new QVBoxLayout(m_box);
    // A row is as high as its text needs, as in a scene: what a style adds would cut the buttons.
    const QMargins margins = m_column->contentsMargins();
    m_column->setContentsMargins(margins.left(), 2, margins.right(), 2);
    m_column->setSpacing(0);
    connect(m_group, "2buttonClicked(int )", this, "1eventNotify(int )");
}

KsDialogQRadioButtons::~KsDialogQRadioButtons()
{
    forgetNode();
    delete m_column;
    delete m_box;
    delete m_group;
}

void KsDialogQRadioButtons::updateLabelWidget(int x, int y, int w, int h)
{
    place(m_box, x, y, w, h);
}

void KsDialogQRadioButtons::changeLabel(const QString& text)
{
    if (m_box) m_box->setTitle(text);
}

void KsDialogQRadioButtons::changeLabelAlignment(int flags)
{
    if (m_box) m_box->setAlignment(flags);
}

QRadioButton* KsDialogQRadioButtons::addRadioButton(int index)
{
    if (!m_box || !m_column || !m_group) return nullptr;
    auto* button = new QRadioButton(m_box);
    adopt(button, "RadioButtonWidget");
    button->setSizePolicy(QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    m_column->insertWidget(index, button, 0);
    m_group->addButton(button, index);
    return button;
}

void KsDialogQRadioButtons::removeLastRadioButton()
{
    QLayoutItem* last = m_column ? m_column->itemAt(m_column->count() - 1) : nullptr;
    auto* button = last ? qobject_cast<QRadioButton*>(last->widget()) : nullptr;
    if (!button) return;
    // At once, since it may be deleted later only, and its index may be needed before.
    m_column->removeWidget(button);
    if (m_group) m_group->removeButton(button);
    ksDeleteWidget(button);
}

int KsDialogQRadioButtons::numRadioButtons() const { return m_column ? m_column->count() : 0; }

void KsDialogQRadioButtons::changeItemText(int index, const QString& text)
{
    QLayoutItem* item = m_column ? m_column->itemAt(index) : nullptr;
    if (auto* button = item ? qobject_cast<QRadioButton*>(item->widget()) : nullptr)
        button->setText(text);
}

void KsDialogQRadioButtons::changeSelectedItem(int index)
{
    QAbstractButton* button = m_group ? m_group->button(index) : nullptr;
    if (!button) return;
    button->setChecked(true);
    setFocusProxy(button);
}

void KsDialogQRadioButtons::eventNotify(int index) { notify(static_cast<unsigned int>(index)); }
