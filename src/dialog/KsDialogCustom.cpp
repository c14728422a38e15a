#include <formweave/KsDialogCustom.h>

#include "../qt/KsRelay.h"

#include <QFrame>
#include <QHBoxLayout>
#include <algorithm>

KS_KIT_SOURCE(KsDialogCustom, KsDialogComponent)

KsDialogCustom::KsDialogCustom() { KsInstanceBuilder build(classRecord, this); }

KsDialogCustom::~KsDialogCustom()
{
    // A frame that never joined a window has no other owner.
    if (!isBuilt2D()) ksDeleteWidget(m_host);
}

QWidget* KsDialogCustom::getWidget() const { return m_host; }

void KsDialogCustom::makeHost()
{
    if (m_host) return;
    m_host = new QFrame(m_widget);
    auto* layout = new QHBoxLayout(m_host);
    layout->setObjectName("LMNKsDialogQCustomLayout");
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
}

void KsDialogCustom::createLabelWidget()
{
    makeHost();
    if (m_widget != m_host) {
        // The first build for a window: the slot holds the window's widget.
        if (m_host->parentWidget() != m_widget) m_host->setParent(m_widget);
        adoptFrame(m_host);
        m_layout = static_cast<QBoxLayout*>(m_host->layout());
    }
    m_host->setMinimumSize(std::max<int>(width, 0), std::max<int>(height, 0));
    m_host->setMaximumWidth(std::max<int>(fixedWidth ? width : maxWidth, 0));
    m_host->setMaximumHeight(std::max<int>(fixedHeight ? height : maxHeight, 0));
    changeEdgeStyle();
    changeEnable();
}

void KsDialogCustom::create3DControl()
{
    makeHost();
    setBuilt3D(1);
}

void KsDialogCustom::destroyWidget()
{
    const bool inWindow = isBuilt2D();
    KsDialogComponent::destroyWidget();
    // It went with the window, or goes as soon as the signal that is running is over.
    if (inWindow) m_host = nullptr;
}

void KsDialogCustom::changeEdgeStyle() { KsDialogComponent::changeEdgeStyle(); }
