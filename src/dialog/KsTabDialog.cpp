// The tab dialog as a list of pages and in a window.

#include <formweave/KsTabDialog.h>

#include "../auditors/KsAuditorDispatch.h"
#include "../qt/KsDialogQTabDialog.h"
#include "KsControlParts.h"
#include "KsLayouts.h"

#include <arborium/base/KsDBImpl.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/sensors/KsSensor.h>
#include <formweave/KsTabDialogAuditor.h>

#include <QBoxLayout>
#include <algorithm>
#include <unordered_set>

KS_KIT_SOURCE(KsTabDialog, KsDialogGroup)

namespace {

constexpr int open = KsSizeDB::openLimit;
constexpr int frameInset = 3; // of the tab widget in its frame
constexpr int layoutsInWindow = 2;
const KbVec2i32 tabsRoom(10, 33); // of the tabs and of the frame around a page

// Those of an index behind the last are told in the name of the group.
const KsElementListTraits traits{"KsTabDialog", &KsDialogComponent::getClassTypeId, "", true,
                                 "KsDialogGroup"};

} // namespace

KsTabDialog::KsTabDialog() : KsDialogGroup(traits)
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("TabsLocation",
                {{"TOP", TOP}, {"BOTTOM", BOTTOM}, {"LEFT", LEFT}, {"RIGHT", RIGHT}});
    build.field("selectedPage", selectedPage, 0);
    build.enumField("tabsLocation", tabsLocation, "TabsLocation", TOP);
    ksAddParts(build, {{"pagesSep", KsPartKind::Separator, "geomSwitch"},
                       {"pageSwitch", KsPartKind::Switch, "pagesSep"},
                       {"pageSep", KsPartKind::Separator, "pageSwitch"},
                       {"labelSep", KsPartKind::Separator, "pageSep"},
                       {"labelSwitch", KsPartKind::Switch, "labelSep"},
                       {"unselected", KsPartKind::Look, "labelSwitch"},
                       {"selected", KsPartKind::Look, "labelSwitch"},
                       {"textSep", KsPartKind::Separator, "pageSep"},
                       {"textProp", KsPartKind::Look, "textSep"},
                       {"buttonsSep", KsPartKind::Separator, "geomSwitch"},
                       {"lButtonSep", KsPartKind::Separator, "buttonsSep"},
                       {"lButtonSwtch", KsPartKind::Switch, "lButtonSep"},
                       {"lButtonReleased", KsPartKind::Look, "lButtonSwtch"},
                       {"lButtonPressed", KsPartKind::Look, "lButtonSwtch"},
                       {"rButtonSep", KsPartKind::Separator, "buttonsSep"},
                       {"rButtonSwtch", KsPartKind::Switch, "rButtonSep"},
                       {"rButtonReleased", KsPartKind::Look, "rButtonSwtch"},
                       {"rButtonPressed", KsPartKind::Look, "rButtonSwtch"},
                       {"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frame", KsPartKind::Look, "frameSep"}});
    m_childrenSensor = std::make_unique<KsNodeSensor>(childrenSensor, this);
    m_childrenSensor->setPriority(0);
    m_childrenSensor->attach(this);
}

KsTabDialog::~KsTabDialog() { m_childrenSensor->detach(); }

// Auditors.

void KsTabDialog::addAuditor(KsTabDialogAuditor* auditor) { KsFormweave::addAuditor(auditor); }

void KsTabDialog::removeAuditor(KsTabDialogAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsTabDialog::applyDlgCptAuditor()
{
    const KsKeepAlive keep(this);
    bool hasOwn = false;
    // As a group it may have been given auditors that listen to what stands in it.
    for (int i = 0; i < getAuditorListLength(); ++i)
        hasOwn = hasOwn || dynamic_cast<KsTabDialogAuditor*>(getAuditor(i));
    if (hasOwn) {
        forEachAuditor([this](KsAuditor* auditor) {
            if (auto* own = dynamic_cast<KsTabDialogAuditor*>(auditor)) own->tabDialog(this);
        });
    } else if (const KsRef<KsFormweave> parent = m_parent) {
        parent->applyAuditor(this);
    }
}

// Children.

void KsTabDialog::addChild(KsDialogComponent* child)
{
    if (m_elements.add(child)) pagesChanged(false);
}

void KsTabDialog::insertChild(KsDialogComponent* child, int index)
{
    const int before = m_elements.count();
    if (!m_elements.insert(child, index)) return;
    // The page on show stays the same one.
    if ((m_build2D || isBuilt3D()) && before > 0) {
        if (m_previousSelectedPage >= index) ++m_previousSelectedPage;
        if (selectedPage >= index && selectedPage < before)
            ksWriteSilently(m_selectedPageSensor, selectedPage, selectedPage + 1);
    }
    pagesChanged(false);
}

void KsTabDialog::removeChild(KsDialogComponent* child) { removeChild(findChild(child)); }

void KsTabDialog::removeChild(int index)
{
    if (m_elements.remove(index)) pagesChanged(true);
}

void KsTabDialog::removeAllChildren()
{
    if (!m_elements.removeAll()) return;
    const KsKeepAlive keep(this);
    if (m_build2D) syncWindowPages();
    if (!isBuilt3D()) return;
    change3DPages();
    updateAfterSceneGraphChange();
}

void KsTabDialog::replaceChild(KsDialogComponent* oldChild, KsDialogComponent* newChild)
{
    replaceChild(findChild(oldChild), newChild);
}

void KsTabDialog::replaceChild(int index, KsDialogComponent* newChild)
{
    if (m_elements.replace(index, newChild)) pagesChanged(false);
}

void KsTabDialog::pagesChanged(bool gone)
{
    if (!m_build2D && !isBuilt3D()) return;
    const KsKeepAlive keep(this);
    if (m_build2D) {
        if (gone) repairSelection();
        syncWindowPages();
    }
    // The layout of all comes by here, unless this dialog stands alone.
    const int built = m_scenePagesBuilt;
    updateAfterSceneGraphChange();
    if (isBuilt3D() && built == m_scenePagesBuilt) change3DPages();
}

void KsTabDialog::repairSelection()
{
    if (!isPage(selectedPage)) {
        if (!isPage(m_previousSelectedPage)) m_previousSelectedPage = 0;
        if (selectedPage != m_previousSelectedPage)
            ksWriteSilently(m_selectedPageSensor, selectedPage, m_previousSelectedPage);
    }
    m_previousSelectedPage = selectedPage;
}

void KsTabDialog::updateAfterSceneGraphChange()
{
    m_3DDepth = -1;
    KsDialogGroup::updateAfterSceneGraphChange();
}

void KsTabDialog::childrenSensor(void* data, KsSensor* sensor)
{
    auto* dialog = static_cast<KsTabDialog*>(data);
    const auto* trigger = static_cast<KsNodeSensor*>(sensor);
    auto* child = ksCast<KsDialogComponent>(trigger->getTriggerNode());
    if (!child || child->getParentElement() != dialog ||
        trigger->getTriggerField() != &child->label)
        return;
    dialog->changePageLabel(dialog->m_elements.indexOf(child));
    dialog->changeTitle(child);
}

void KsTabDialog::changePageLabel(int) {}
void KsTabDialog::changeEnableChild(int) {}
void KsTabDialog::changeFirstPageLeft() {}
void KsTabDialog::changeFirstPageRight() {}

// Sizes.

void KsTabDialog::fixSizeWithBorder(KbVec2i32& size, int factor)
{
    for (int axis = 0; axis < 2; ++axis) {
        const int around = tabsRoom[axis];
        if (factor != 1)
            size[axis] += factor * around;
        else
            size[axis] = size[axis] <= open - around ? size[axis] + around : open;
    }
}

void KsTabDialog::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    size.setValue(0, 0);
    min.setValue(0, 0);
    max.setValue(open, open);
    if (m_elements.count() == 0) return;
    max.setValue(0, 0);
    forEachChild([&](KsDialogComponent* child) {
        KsSizeTriple each;
        child->getSize(each.init, each.min, each.max);
        for (int axis = 0; axis < 2; ++axis) {
            size[axis] = std::max(size[axis], each.init[axis]);
            min[axis] = std::max(min[axis], each.min[axis]);
            max[axis] = std::max(max[axis], each.max[axis]);
        }
    });
    const std::int64_t around = 2 * std::int64_t(ksBounded(margin));
    for (int axis = 0; axis < 2; ++axis) {
        size[axis] = ksBounded(size[axis] + around);
        min[axis] = ksBounded(min[axis] + around);
        const std::int64_t largest = max[axis] + around;
        max[axis] = largest <= open - around ? ksBounded(largest) : open;
    }
}

KbVec2i32 KsTabDialog::getComponentInitSize()
{
    if (m_componentInitSize[0] != -1) return m_componentInitSize;
    const int around = ksBounded(2 * std::int64_t(ksBounded(margin)));
    KbVec2i32 size(around, around);
    forEachChild([&](KsDialogComponent* child) {
        const KbVec2i32 each = child->getComponentInitSize();
        size.setValue(std::max(size[0], each[0]), std::max(size[1], each[1]));
    });
    const int along = tabsLocation == LEFT || tabsLocation == RIGHT ? 1 : 0;
    size[along] += tabsRoom[0];
    size[1 - along] += tabsRoom[1];
    m_componentInitSize = size;
    return m_componentInitSize;
}

void KsTabDialog::setChildrenComponentSize()
{
    forEachChild([this](KsDialogComponent* child) {
        KbVec2i32 zone = child->getComponentInitSize();
        if (labelVisibility) zone[1] = std::max(zone[1], child->getLabelInitSize()[1]);
        child->setComponentSize(zone);
    });
}

void KsTabDialog::setChildrenLabelSize()
{
    // Without a label of its own a page has the label zone of the one before.
    KbVec2i32 zone(0, 0);
    forEachChild([&](KsDialogComponent* child) {
        if (child->labelVisibility) zone = child->getLabelInitSize();
        child->setLabelSize(zone);
    });
}

// The window.

void KsTabDialog::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D)
{
    const KsLayoutDepth depth(build2D ? layoutsInWindow : 0);
    if (depth.isTooDeep("KsTabDialog::buildWidget")) return;
    const KsKeepAlive keep(this);
    const bool existed = build2D && m_groupWidget;
    const bool first3D = !build2D && !isBuilt3D();
    KsDialogGroup::buildWidget(parent, size, position, build2D);
    if (build2D) {
        if (existed) rebuildPages();
        updateTabPageWidget(selectedPage);
        updateTabWidget();
    } else if (first3D || !isEnabledInTree()) {
        change3DWidgetEnable(isEnabledInTree());
    }
}

void KsTabDialog::armSensors() { m_selectedPageSensor.arm(this, selectedPage); }

void KsTabDialog::createGroupWidget()
{
    auto* relay = new KsDialogQTabDialog(relayParent(), this);
    m_groupWidget = relay;
    m_windowPages.clear();
    installRelay(relay, [this] {
        syncWindowPages();
        changeEdgeStyle();
        KsDialogComponent::changeEnable();
        limitFrame(m_widget);
    });
}

void KsTabDialog::rebuildPages()
{
    if (!m_relay) return;
    limitFrame(m_relay);
    m_relay->setWantedSize(QSize(width, height));
    syncWindowPages();
    forEachChild([this](KsDialogComponent* child) {
        const int index = m_elements.indexOf(child);
        if (index >= static_cast<int>(m_windowPages.size())) return;
        KbVec2i32 size(0, 0), position(0, 0);
        child->buildWidget(m_windowPages[static_cast<std::size_t>(index)].widget, size, position,
                           KsDBImpl::m_noLocalWidgets ? 0 : 1);
    });
}

void KsTabDialog::syncWindowPages()
{
    if (!m_relay) return;
    // Who hears of a size while a page is built may change the list.
    m_syncAgain = true;
    if (m_syncing) return;
    m_syncing = true;
    const KsKeepAlive keep(this);
    while (m_syncAgain && m_relay) {
        m_syncAgain = false;
        std::unordered_set<const KsFormweave*> present;
        for (int i = 0; i < m_elements.count(); ++i) present.insert(m_elements.at(i));
        for (std::size_t i = m_windowPages.size(); i-- > 0;) {
            if (present.count(m_windowPages[i].element)) continue;
            const QPointer<QWidget> page = m_windowPages[i].widget;
            m_windowPages.erase(m_windowPages.begin() + static_cast<std::ptrdiff_t>(i));
            relayAs<KsDialogQTabDialog>()->removePage(page);
        }
        forEachChild([this](KsDialogComponent* child) {
            const int index = m_elements.indexOf(child);
            const auto place = static_cast<std::size_t>(index);
            if (place < m_windowPages.size() && m_windowPages[place].element == child) return;
            addWindowPage(child, index);
        });
    }
    m_syncing = false;
    changeSelectedPage();
}

void KsTabDialog::addWindowPage(KsDialogComponent* child, int index)
{
    auto* relay = relayAs<KsDialogQTabDialog>();
    const int place = std::min(index, static_cast<int>(m_windowPages.size()));
    if (!relay) return;
    const QPointer<QWidget> page = relay->addPage(place, ksShownQString(child->label));
    m_windowPages.insert(m_windowPages.begin() + place, WindowPage{child, page});
    KbVec2i32 size(0, 0), position(0, 0);
    child->buildWidget(page, size, position, KsDBImpl::m_noLocalWidgets ? 0 : 1);
}

void KsTabDialog::destroyWidget()
{
    KsDialogGroup::destroyWidget();
    m_windowPages.clear();
}

void* KsTabDialog::getLayout(int page)
{
    auto* relay = relayAs<KsDialogQTabDialog>();
    return relay ? relay->getPageLayout(page) : nullptr;
}

void KsTabDialog::updateTabWidget()
{
    auto* relay = relayAs<KsDialogQTabDialog>();
    if (!relay) return;
    // Where the window's layout has been at work the frame has its size.
    const KbVec2i32 wanted = size2D();
    const QSize frame =
        relay->testAttribute(Qt::WA_Resized) ? relay->size() : QSize(wanted[0], wanted[1]);
    relay->updateTabWidget(frameInset, frameInset, frame.width() - 2 * frameInset,
                           frame.height() - 2 * frameInset);
}

void KsTabDialog::updateTabPageWidget(int)
{
    if (!m_relay) return;
    const int selected = selectedPage;
    forEachChild([&](KsDialogComponent* child) {
        QWidget* widget = child->getWidget();
        const int index = m_elements.indexOf(child);
        // A page that stands in no page of the tab widget yet is not shown by itself.
        if (widget && index < static_cast<int>(m_windowPages.size()))
            widget->setVisible(index == selected);
    });
}

void KsTabDialog::changeSelectedPage()
{
    const KsKeepAlive keep(this);
    const int page = std::max(std::min<int>(selectedPage, m_elements.count() - 1), 0);
    if (page != selectedPage) ksWriteSilently(m_selectedPageSensor, selectedPage, page);
    if (auto* relay = relayAs<KsDialogQTabDialog>()) relay->changeSelectedPage(selectedPage);
    updateTabPageWidget(selectedPage);
}

void KsTabDialog::changeTitle(KsDialogComponent* child)
{
    const auto index = static_cast<std::size_t>(m_elements.indexOf(child));
    auto* relay = relayAs<KsDialogQTabDialog>();
    if (relay && index < m_windowPages.size())
        relay->changePageLabel(m_windowPages[index].widget, ksShownQString(child->label));
    if (!is3DLive() || index >= m_scenePages.size()) return;
    update3DTabDialogPage(static_cast<int>(index));
    if (index + 1 < m_scenePages.size()) place3DTab(static_cast<int>(index) + 1);
    change3DSelectedPage();
}

void KsTabDialog::updateFromSensor(KsSensor* sensor)
{
    if (m_selectedPageSensor.is(sensor))
        updateBoth(this, &KsTabDialog::changeSelectedPage, &KsTabDialog::change3DSelectedPage);
    else
        KsDialogGroup::updateFromSensor(sensor);
}

// Its pages keep their own states; Qt disables what stands in a disabled frame.
void KsTabDialog::changeWidgetEnable(int) {}

void KsTabDialog::eventNotify(unsigned int page, unsigned long long)
{
    if (static_cast<int>(page) == selectedPage) return;
    const KsKeepAlive keep(this);
    ksWriteSilently(m_selectedPageSensor, selectedPage, static_cast<int>(page));
    updateBoth(this, &KsTabDialog::changeSelectedPage, &KsTabDialog::change3DSelectedPage);
    // An auditor may choose otherwise: its word stands, and is not told again.
    applyDlgCptAuditor();
}
