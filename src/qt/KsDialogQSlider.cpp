#include "KsDialogQSlider.h"

#include <formweave/KsDialogSlider.h>

KsDialogQSlider::KsDialogQSlider(QWidget* parent, KsDialogSlider* node)
    : KsRelayFrame(parent, node, "KsDialogQSlider")
{
    m_edit = new QLineEdit(this);
    adopt(m_edit, "LineEditWidget");
    m_slider = new KsDialogCustomSlider(this);
    createLabel();
    m_toggle = new QCheckBox(this);
    adopt(m_toggle, "ToggleWidget");
    // The Tab key goes from left to right. Qt leaves an order alone that is right when the window's
    // last widget leads to its first one: so it begins at the frame.
    setFocusPolicy(Qt::StrongFocus);
    setTabOrder(this, m_toggle);
    setTabOrder(m_toggle, m_slider->getWidget());
    setTabOrder(m_slider->getWidget(), m_edit);
    setFocusPolicy(Qt::NoFocus);
    setFocusProxy(m_edit);
    connect(m_toggle, "2stateChanged(int)", this, "1eventNotify(int)");
    connect(m_edit, "2returnPressed()", this, "1eventNotifyPressed()");
}

KsDialogSlider* KsDialogQSlider::slider() const { return static_cast<KsDialogSlider*>(node()); }

void KsDialogQSlider::updateToggleWidget(int x, int y, int w, int h)
{
    place(m_toggle, x, y, w, h);
}

void KsDialogQSlider::updateSliderWidget(int x, int y, int w, int h)
{
    if (m_slider) place(m_slider->getWidget(), x, y, w, h);
}

void KsDialogQSlider::updateEditWidget(int x, int y, int w, int h) { place(m_edit, x, y, w, h); }

void KsDialogQSlider::changeContinuousTrigger(bool continuous)
{
    if (m_toggle) m_toggle->setChecked(continuous);
}

void KsDialogQSlider::changeValueVisible(bool visible)
{
    if (m_edit) m_edit->setVisible(visible);
}

void KsDialogQSlider::changeToggleVisible(bool visible)
{
    if (m_toggle) m_toggle->setVisible(visible);
}

void KsDialogQSlider::setEditText(const QString& text)
{
    if (m_edit) m_edit->setText(text);
}

std::string KsDialogQSlider::getEditText() const
{
    return m_edit ? m_edit->text().toLatin1().toStdString() : std::string("0");
}

bool KsDialogQSlider::getToggleState() const { return m_toggle && m_toggle->isChecked(); }

void KsDialogQSlider::goOnFrom(const KsDialogQSlider* earlier)
{
    if (!earlier || !earlier->m_edit || !m_edit) return;
    const QLineEdit* edit = earlier->m_edit;
    if (edit->isModified()) {
        m_edit->setText(edit->text());
        m_edit->setModified(true);
    }
    m_edit->setCursorPosition(edit->cursorPosition());
    if (edit->hasSelectedText()) {
        const bool caretInFront = edit->cursorPosition() == edit->selectionStart();
        m_edit->setSelection(caretInFront ? edit->selectionEnd() : edit->selectionStart(),
                             caretInFront ? -edit->selectionLength() : edit->selectionLength());
    }
    // The frame hands its focus on to the widget that had it.
    const QWidget* focus = earlier->window()->focusWidget();
    if (focus && focus == earlier->m_toggle)
        setFocusProxy(m_toggle);
    else if (focus && earlier->m_slider && focus == earlier->m_slider->getWidget())
        setFocusProxy(m_slider->getWidget());
    else
        setFocusProxy(m_edit);
}

void KsDialogQSlider::eventNotify(int) { notify(1); }

void KsDialogQSlider::eventNotifyPressed()
{
    if (!node()) return;
    const KsRelayCall call(node());
    slider()->changeSliderFromEdit();
}

void KsDialogQSlider::layoutChildren()
{
    slider()->updateLabelWidget();
    slider()->updateToggleWidget();
    slider()->updateSliderWidget();
    slider()->updateEditWidget();
}
