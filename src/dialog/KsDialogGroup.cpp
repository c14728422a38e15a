#include <formweave/KsDialogGroup.h>

#include "../auditors/KsAuditorDispatch.h"
#include "KsElementSearch.h"
#include "KsLayouts.h"

#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsTopLevelDialog.h>

#include <QBoxLayout>
#include <QFrame>
#include <algorithm>

KS_KIT_SOURCE(KsDialogGroup, KsDialogComponent)

namespace {

const KsElementListTraits traits{"KsDialogGroup", &KsDialogComponent::getClassTypeId, "", true};

} // namespace

KsDialogGroup::KsDialogGroup() : KsDialogGroup(traits) {}

KsDialogGroup::KsDialogGroup(const KsElementListTraits& listTraits)
    : KsElementContainer<KsDialogComponent, KsDialogComponent>(listTraits)
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("ScrollVisibility", {{"NEVER", NEVER}, {"ALWAYS", ALWAYS}, {"AUTO", AUTO}});
    build.field("windowResizedByChildren", windowResizedByChildren, true);
    build.field("margin", margin, 0);
    build.enumField("vScrollVisibility", vScrollVisibility, "ScrollVisibility", AUTO);
    build.enumField("hScrollVisibility", hScrollVisibility, "ScrollVisibility", AUTO);
}

KsDialogGroup::~KsDialogGroup()
{
    forEachChild([](KsDialogComponent* child) { child->destroyWidget(); });
}

void KsDialogGroup::addAuditor(KsDialogAuditor* auditor) { KsFormweave::addAuditor(auditor); }

void KsDialogGroup::removeAuditor(KsDialogAuditor* auditor) { KsFormweave::removeAuditor(auditor); }

void KsDialogGroup::applyAuditors() { ksApplyAuditors(this, m_elements); }

void KsDialogGroup::applyAuditor(KsFormweave* node)
{
    const KsKeepAlive keep(this);
    bool heard = false;
    // A tab dialog has auditors that listen to it alone.
    forEachAuditor([&](KsAuditor* auditor) {
        auto* listener = dynamic_cast<KsDialogAuditor*>(auditor);
        if (!listener) return;
        heard = true;
        ksTellComponent(listener, node);
    });
    if (heard) return;
    if (m_parent) {
        m_parent->applyAuditor(node);
    } else if (m_defaultAuditor) {
        ksTellComponent(m_defaultAuditor.get(), node);
    }
}

KsFormweave* KsDialogGroup::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

void KsDialogGroup::childrenChanged()
{
    if (!isChangeSuspended()) updateAfterSceneGraphChange();
}

void KsDialogGroup::updateAfterSceneGraphChange()
{
    if (windowResizedByChildren)
        KsAskedSizes::assign(sizeFields(), m_defaultSize, m_defaultMin, m_defaultMax);
    m_sizeDB.clear();
    m_componentInitSize.setValue(-1, -1);
    m_labelInitSize.setValue(0, 0);
    m_labelSize.setValue(0, 0);
    m_spareSize.setValue(0, 0);
    if (!m_parent || !m_parent->canBeTraversed()) return;
    if (auto* top = ksCast<KsTopLevelDialog>(m_parent))
        top->updateAfterSceneGraphChange();
    else if (auto* group = ksCast<KsDialogGroup>(m_parent))
        group->updateAfterSceneGraphChange();
}

void KsDialogGroup::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D)
{
    KsDialogComponent::buildWidget(parent, size, position, build2D);
    if (!build2D && !m_parent && !m_defaultAuditor)
        m_defaultAuditor = std::make_unique<KsDialogGroupAuditor>();
    m_changeSuspended = 0;
    if (build2D && !m_groupWidget) createGroupWidget();
    setScrollProperties();
}

void KsDialogGroup::createGroupWidget()
{
    m_groupWidget = new QFrame(m_widget);
    m_widget = m_groupWidget.data();
    m_groupWidget->setObjectName("LMNKsDialogGroupGroupWidget");
    limitGroupWidget();
    if (m_layout) m_layout->addWidget(m_groupWidget, 0);
    placeSpacer();
    if (m_groupWidget->parentWidget() && m_groupWidget->parentWidget()->isVisible())
        m_groupWidget->show();
}

void KsDialogGroup::limitGroupWidget()
{
    // What the fields hold is resolved anew: a rebuild has reset some of them to "default".
    KbVec2i32 size, min, max;
    getSize(size, min, max);
    ksLimitWidget(m_groupWidget, min, max);
}

void KsDialogGroup::destroyWidget()
{
    forEachChild([](KsDialogComponent* child) { child->destroyWidget(); });
    KsDialogComponent::destroyWidget();
    m_groupWidget = nullptr; // its deletion may have to wait
}

void KsDialogGroup::updateFromSensor(KsSensor* sensor)
{
    KsDialogComponent::updateFromSensor(sensor);
}

void KsDialogGroup::resetSize()
{
    KsDialogComponent::resetSize();
    forEachChild([](KsDialogComponent* child) { child->resetSize(); });
}

void KsDialogGroup::changeEnable()
{
    KsDialogComponent::changeEnable();
    changeWidgetEnable(enable);
}

void KsDialogGroup::changeWidgetEnable(int enabled)
{
    const int effective = enabled ? static_cast<int>(enable.getValue()) : 0;
    forEachChild([=](KsDialogComponent* child) { child->changeWidgetEnable(effective); });
}

void KsDialogGroup::change3DEnable()
{
    KsDialogComponent::change3DEnable();
    change3DWidgetEnable(enable);
}

void KsDialogGroup::change3DWidgetEnable(int enabled)
{
    const int effective = enabled ? static_cast<int>(enable.getValue()) : 0;
    forEachChild([=](KsDialogComponent* child) { child->change3DWidgetEnable(effective); });
}

bool KsDialogGroup::isEnabledInTree() const
{
    for (const KsFormweave* group = this; ksCast<KsDialogGroup>(group);
         group = group->getParentElement()) {
        if (!group->enable) return false;
    }
    return true;
}

void KsDialogGroup::show3D(int show)
{
    KsDialogComponent::show3D(show);
    forEachChild([=](KsDialogComponent* child) { child->show3D(show); });
}

KbVec3f KsDialogGroup::place3DChildren()
{
    KbVec3f place(0, 0, 0);
    apply3DTranslation(getAnyPart("mainCptSeparator", false), m_3DDepth, place);
    return place;
}

void KsDialogGroup::change3DPosition()
{
    KbVec3f place = place3DChildren();
    forEachChild([&](KsDialogComponent* child) {
        child->set3DParentTranslation(place);
        child->change3DPosition();
    });
}

void KsDialogGroup::getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    resolveSize(size, min, max, [this](KbVec2i32& s, KbVec2i32& mn, KbVec2i32& mx) {
        getDefaultSize(s, mn, mx);
        fixSizeWithBorder(s, 1);
        fixSizeWithBorder(mn, 1);
        fixSizeWithBorder(mx, 1);
    });
}

void KsDialogGroup::setLabelSize(KbVec2i32& size)
{
    KsDialogComponent::setLabelSize(size);
    setChildrenLabelSize();
}

void KsDialogGroup::setComponentSize(KbVec2i32& size)
{
    KsDialogComponent::setComponentSize(size);
    setChildrenComponentSize();
}

KbVec2i32 KsDialogGroup::getComponentInitSize() { return {0, 0}; }

KbVec2i32 KsDialogGroup::getLabelInitSize() { return {0, 0}; }

void KsDialogGroup::fixSizeWithBorder(KbVec2i32&, int) {}
void KsDialogGroup::setChildrenComponentSize() {}
void KsDialogGroup::setChildrenLabelSize() {}

void KsDialogGroup::getBoundingBox(KsGetBoundingBoxAction* action)
{
    // A group of no concrete kind places nobody: nothing of it is in the scene.
    if (getTypeId() == getClassTypeId()) return;
    buildOn3DTraversal([this] {
        KsFormweave* top = getFirstTopParent(0, 1);
        if (top && !top->isBuilt3D()) {
            setChildrenLabelSize();
            setChildrenComponentSize();
            detachFromUnbuiltTop(top);
        }
        KbVec2i32 size(0, 0), place(0, 0);
        buildWidget(nullptr, size, place, 0);
    });
    KsDragger::getBoundingBox(action);
}

void KsDialogGroup::refresh3DSkin()
{
    forEachChild([](KsDialogComponent* child) { child->refresh3DSkin(); });
    KsDialogComponent::refresh3DSkin();
}
