#include <arborium/qt/KsQtComponent.h>

#include <QEvent>
#include <QWidget>

KsQtComponent::KsQtComponent(QWidget* parent, const char* name)
    : QObject(parent), m_parent(parent), m_name(name ? QString::fromLatin1(name) : QString())
{}

KsQtComponent::~KsQtComponent() { delete m_widget.data(); }

QWidget* KsQtComponent::getWidget() const { return m_widget; }

QWidget* KsQtComponent::getParentWidget() const { return m_parent; }

void KsQtComponent::show()
{
    if (!m_widget) return;
    if (m_fullScreen && m_widget->isWindow())
        m_widget->showFullScreen();
    else
        m_widget->show();
}

void KsQtComponent::hide()
{
    if (m_widget) m_widget->hide();
}

bool KsQtComponent::isVisible() const { return m_widget && m_widget->isVisible(); }

void KsQtComponent::setTitle(const QString& title)
{
    m_title = title;
    applyTitles();
}

QString KsQtComponent::getTitle() const
{
    return m_title.isEmpty() ? QString::fromLatin1(getDefaultTitle()) : m_title;
}

void KsQtComponent::setIconTitle(const QString& title)
{
    m_iconTitle = title;
    applyTitles();
}

QString KsQtComponent::getIconTitle() const
{
    return m_iconTitle.isEmpty() ? QString::fromLatin1(getDefaultIconTitle()) : m_iconTitle;
}

void KsQtComponent::applyTitles()
{
    if (!m_widget || !m_widget->isWindow()) return;
    m_widget->setWindowTitle(getTitle());
    m_widget->setWindowIconText(getIconTitle());
}

void KsQtComponent::setFullScreen(bool fullScreen)
{
    m_fullScreen = fullScreen;
    if (!m_widget || !m_widget->isWindow()) return;
    m_widget->setWindowState(fullScreen ? m_widget->windowState() | Qt::WindowFullScreen
                                        : m_widget->windowState() & ~Qt::WindowFullScreen);
}

void KsQtComponent::setBaseWidget(QWidget* widget)
{
    if (widget == m_widget.data()) return;
    if (m_widget) {
        m_widget->removeEventFilter(this);
        // It may be the one whose event is being handled.
        if (widget) m_widget->deleteLater();
    }
    m_widget = widget;
    m_realized = false;
    if (!widget) return;
    widget->setObjectName(m_name.isEmpty() ? QString::fromLatin1(getDefaultWidgetName()) : m_name);
    widget->installEventFilter(this);
    applyTitles();
}

bool KsQtComponent::eventFilter(QObject* watched, QEvent* event)
{
    const bool shown = event->type() == QEvent::Show && watched == m_widget.data() && !m_realized;
    if (!shown) return QObject::eventFilter(watched, event);
    m_realized = true;
    const QPointer<KsQtComponent> alive(this);
    afterRealizeHook();
    return alive ? QObject::eventFilter(watched, event) : true;
}

void KsQtComponent::afterRealizeHook() {}

const char* KsQtComponent::getDefaultWidgetName() const { return "KsQtComponent"; }

const char* KsQtComponent::getDefaultTitle() const { return "Component"; }

const char* KsQtComponent::getDefaultIconTitle() const { return getDefaultTitle(); }
