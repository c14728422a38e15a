#include "KsDialogQSeparator.h"

#include <formweave/KsDialogSeparator.h>

KsDialogQSeparator::KsDialogQSeparator(QWidget* parent, KsDialogSeparator* separator)
    : KsRelayFrame(parent, separator, "KsDialogQSeparator")
{
    m_line = new QFrame(this);
    adopt(m_line, "FrameWidget");
    m_line->setFrameShadow(QFrame::Sunken);
}

void KsDialogQSeparator::updateSeparatorWidget(int x, int y, int w, int h, bool horizontal)
{
    if (m_line) m_line->setFrameShape(horizontal ? QFrame::HLine : QFrame::VLine);
    place(m_line, x, y, w, h);
}
