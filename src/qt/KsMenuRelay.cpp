#include "KsMenuRelay.h"

#include "KsRelay.h"

#include <formweave/KsMenuItem.h>

KsMenuRelay::KsMenuRelay(QWidget* menu, int id, KsMenuItem* node, int event, bool checkable)
    : m_node(node), m_menu(menu), m_id(id), m_event(event), m_action(new QAction(this))
{
    m_action->setCheckable(checkable);
    if (menu) menu->addAction(m_action);
    connect(m_action, "2triggered()", this, "1menuEvent()");
}

KsMenuRelay::~KsMenuRelay()
{
    leaveMenu();
    delete m_action;
}

void KsMenuRelay::leaveMenu()
{
    m_node = nullptr;
    if (m_menu) m_menu->removeAction(m_action);
}

void KsMenuRelay::retire()
{
    leaveMenu();
    ksDeleteWidget(this);
}

void KsMenuRelay::changeLabel(const char* text) { m_action->setText(QString::fromLatin1(text)); }

void KsMenuRelay::changeAccelerator(const char* text)
{
    m_action->setShortcut(QKeySequence(tr(QString::fromLatin1(text).toUtf8().constData())));
}

void KsMenuRelay::changeEnable(bool enable) { m_action->setEnabled(enable); }

void KsMenuRelay::menuEvent()
{
    if (!m_node) return;
    const KsRelayCall call(m_node);
    m_node->menuEvent(nullptr, m_event);
}
