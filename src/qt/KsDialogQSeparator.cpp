#include "KsDialogQSeparator.h"

#include <formweave/KsDialogSeparator.h>

KsDialogQSeparator::KsDialogQSeparator(QWidget* parent, KsDialogSeparator* separator)
    : KsRelayFrame(parent, separator, "KsDialogQSeparator")
{
    m_line = new QFrame(this);
    adopt(m_line, "FrameWidget");
}

void KsDialogQSeparator::updateSeparatorWidget(int x, int y, int w, int h, bool horizontal)
{
    const int style = (horizontal ? QFrame::HLine : QFrame::VLine) | QFrame::Sunken;
    if (m_line && m_line->frameStyle() != style) m_line->setFrameStyle(style);
    place(m_line, x, y, w, h);
}
