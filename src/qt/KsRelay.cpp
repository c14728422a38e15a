#include "KsRelay.h"

#include "../dialog/KsTextLimits.h"

#include <QResizeEvent>

int KsRelayCall::s_depth = 0;

namespace {

// Out of its window now, so that nobody finds it there any more.
void deleteSoon(QWidget* widget)
{
    widget->hide();
    widget->setParent(nullptr);
    widget->deleteLater();
}

} // namespace

QString ksShownQString(const KbString& text)
{
    return QString::fromStdU16String(ksShownText(text).toUtf16());
}

void ksDeleteWidget(QWidget* widget)
{
    if (!widget) return;
    if (!KsRelayCall::isRunning()) {
        delete widget;
        return;
    }
    if (auto* relay = qobject_cast<KsRelayFrame*>(widget)) relay->forgetNode();
    for (KsRelayFrame* relay : widget->findChildren<KsRelayFrame*>()) relay->forgetNode();
    deleteSoon(widget);
}

KsRelayFrame::KsRelayFrame(QWidget* parent, KsDialogComponent* node, const char* className)
    : QFrame(parent), m_node(node), m_className(className)
{
    setObjectName(QLatin1String("LMN") + QLatin1String(className) + QLatin1String("Frame"));
}

// What the children say while they go must not reach half a frame.
KsRelayFrame::~KsRelayFrame() { forgetNode(); }

void KsRelayFrame::adopt(QWidget* child, const char* role)
{
    child->setObjectName(QLatin1String("LMN") + QLatin1String(m_className) + QLatin1String(role));
    KsFormweave::setWidgetFont(child);
}

void KsRelayFrame::adoptControl(QWidget* child, const char* role)
{
    adopt(child, role);
    setFocusProxy(child);
}

void KsRelayFrame::createLabel()
{
    m_label = new QLabel(this);
    adopt(m_label, "LabelWidget");
    // A text from a file must not become markup.
    m_label->setTextFormat(Qt::PlainText);
}

void KsRelayFrame::place(QWidget* child, int x, int y, int w, int h)
{
    if (!child) return;
    child->resize(w, h);
    child->move(x, y);
}

void KsRelayFrame::updateLabelWidget(int x, int y, int w, int h) { place(m_label, x, y, w, h); }

void KsRelayFrame::changeLabel(const QString& text)
{
    if (m_label) m_label->setText(text);
}

void KsRelayFrame::changeLabelAlignment(int flags)
{
    if (m_label) m_label->setAlignment(static_cast<Qt::Alignment>(flags));
}

void KsRelayFrame::changeLabelVisibility(bool visible)
{
    if (m_label) m_label->setVisible(visible);
}

void KsRelayFrame::setWantedSize(const QSize& size)
{
    if (size == m_wantedSize) return;
    m_wantedSize = size;
    updateGeometry();
}

void KsRelayFrame::forgetNode()
{
    m_node = nullptr;
    for (QObject* child : children()) child->disconnect(this);
}

void KsRelayFrame::handOverTo(QWidget* successor)
{
    forgetNode();
    const QWidget* focus = window()->focusWidget();
    // Before this one is hidden, which would send the focus elsewhere.
    if (successor && focus && isAncestorOf(focus)) successor->setFocus();
    deleteSoon(this);
}

void KsRelayFrame::notify(unsigned int value)
{
    if (!m_node) return;
    const KsRelayCall call(m_node);
    m_node->eventNotify(value, 0);
}

void KsRelayFrame::layoutChildren()
{
    m_node->updateControlWidget();
    m_node->updateLabelWidget();
}

void KsRelayFrame::resizeEvent(QResizeEvent* event)
{
    if (!m_node) return;
    const KsRelayCall call(m_node);
    m_node->frameResized(event->size().width(), event->size().height());
    // Who hears of the new size may have taken this frame out of service.
    if (m_node) layoutChildren();
}
