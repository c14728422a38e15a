#include <formweave/KsMenuBar.h>

#include "../auditors/KsAuditorDispatch.h"
#include "../qt/KsRelay.h"
#include "KsControlParts.h"
#include "KsElementSearch.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsTopLevelDialog.h>

#include <QLayout>
#include <QMenuBar>
#include <algorithm>

KS_KIT_SOURCE(KsMenuBar, KsTopComponent)

KS_SKIN_SOURCE(KsMenuBar, MenuBar, "MenuBar.arb", "MenuBarFrame")

char* KsMenuBar::MenuBar =
    const_cast<char*>(KS_SKIN_PART("MenuBarFrame", KS_SKIN_BASE_BOX("0.6 0.6 0.6")));

namespace {

const KsElementListTraits traits{"KsMenuBar", &KsMenuPopup::getClassTypeId, "", false};

// In a window.
constexpr int sideRoom = 10;
constexpr int titleRoom = 9;
constexpr int barHeight = 19;
constexpr int openLimit = 32767;
// In a scene.
constexpr float stripHeight = 20;
constexpr int panelRoom = 6;     // that the strip leaves of the panel's inner width
constexpr float panelBorder = 8; // the panel's, on both sides together
constexpr float emptyRoom = 18;  // that an empty bar gives back to what is below it

} // namespace

KsMenuBar::KsMenuBar() : KsElementContainer<KsTopComponent, KsMenuPopup>(traits)
{
    KsInstanceBuilder build(classRecord, this);
    ksAddParts(build, {{"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frame", KsPartKind::Look, "frameSep"}});
}

KsMenuBar::~KsMenuBar() = default;

void KsMenuBar::addAuditor(KsDialogAuditor* auditor) { KsFormweave::addAuditor(auditor); }

void KsMenuBar::removeAuditor(KsDialogAuditor* auditor) { KsFormweave::removeAuditor(auditor); }

void KsMenuBar::applyAuditor(KsFormweave* node)
{
    if (getAuditorListLength()) {
        forEachAuditor([node](KsAuditor* auditor) {
            ksTellMenu(static_cast<KsDialogAuditor*>(auditor), node);
        });
    } else if (const KsRef<KsFormweave> parent = m_parent) {
        parent->applyAuditor(node);
    }
}

KsFormweave* KsMenuBar::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

// Children.

void KsMenuBar::childrenChanged()
{
    if (m_changeSuspended) return;
    const KsKeepAlive keep(this);
    if (m_menuBar) {
        forEachChild([this](KsMenuPopup* child) {
            if (!child->isBuilt2D()) child->buildMenu(m_menuBar.data(), m_build2D, -1);
        });
    }
    updateAfterSceneGraphChange();
}

void KsMenuBar::updateAfterSceneGraphChange()
{
    if (!isBuilt3D()) return;
    const KsKeepAlive keep(this);
    auto* dialog = ksCast<KsTopLevelDialog>(m_parent);
    if (dialog && dialog->canBeTraversed()) dialog->updateAfterSceneGraphChange();
    entriesChanged3D();
}

void KsMenuBar::entriesChanged3D()
{
    if (!is3DLive()) return;
    update3DChildrenSize();
    update3DBar();
    update3DChildren();
}

void KsMenuBar::getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    size.setValue(sideRoom, barHeight);
    forEachChild([&](KsMenuPopup* child) {
        size[0] += getLabelPixelSize(child->label, nullptr)[0] + titleRoom;
    });
    min.setValue(0, 0);
    max.setValue(openLimit, openLimit);
}

void KsMenuBar::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D)
{
    const KsKeepAlive keep(this);
    KsTopComponent::buildWidget(parent, size, position, build2D);
    if (build2D) {
        createMenuBar(parent);
    } else {
        if (!isBuilt3D()) create3DBar();
        update3DBar();
        update3DChildren();
    }
    m_changeSuspended = 0;
}

// The window.

void* KsMenuBar::getMenu(void* parent)
{
    // A popup that is being built asks for the bar in which it shall stand.
    if (!m_menuBar && !m_isBuilding2D) {
        KbVec2i32 size(0, 0), place(0, 0);
        buildWidget(static_cast<QWidget*>(parent), size, place, 1);
    }
    return m_menuBar.data();
}

void KsMenuBar::createMenuBar(QWidget* parent)
{
    const auto* dialog = ksCast<KsTopLevelDialog>(m_parent);
    QWidget* window = dialog ? dialog->getBaseWidget() : nullptr;
    if (!window || !window->layout() || m_isBuilding2D) return;
    m_isBuilding2D = true;
    const QPointer<QMenuBar> earlier = m_menuBar;
    m_menuBar = new QMenuBar(parent ? parent : window);
    setWidgetFont(m_menuBar);
    window->layout()->setMenuBar(m_menuBar);
    changeEnable();
    int index = 0;
    forEachChild(
        [&](KsMenuPopup* child) { child->buildMenu(m_menuBar.data(), m_build2D, index++); });
    if (m_menuBar) m_menuBar->setVisible(true);
    // A menu of it may be what has just been used.
    ksDeleteWidget(earlier);
    m_isBuilding2D = false;
}

void KsMenuBar::destroyWidget()
{
    const KsKeepAlive keep(this);
    forEachChild([](KsMenuPopup* child) { child->destroyWidget(); });
    QMenuBar* bar = m_menuBar;
    m_menuBar = nullptr;
    ksDeleteWidget(bar);
    KsTopComponent::destroyWidget();
}

void KsMenuBar::changeEnable()
{
    if (m_menuBar) m_menuBar->setEnabled(enable);
}

// The scene.

void KsMenuBar::create3DBar()
{
    dress3D(&skinFamily(), {{"frame", "MenuBarFrame"}});
    putFirst(m_strip.scale, "frameSep");
    putBefore(m_strip.translation, "frameSep");
    putBehind(m_stripTransform, "frameSep");
    insertFirst(m_pickStyle.get(), "geomSwitch");
    insertFirst(m_material.get(), "geomSwitch");
    apply3DParentTranslation();
    setBuilt3D(1);
    m_3DDepth = -1;
    update3DChildrenSize();
    show3DChildren(0);
    show3D(!m_parent || m_parent->showsChildren3D());
    if (!enable) KsTopComponent::change3DEnable();
}

void KsMenuBar::update3DChildrenSize()
{
    forEachChild([](KsMenuPopup* child) { child->setItemSize(child->getItemInitSize(), 1); });
}

void KsMenuBar::placeStrip(float width)
{
    m_strip.scale->scaleFactor = KbVec3f(width, stripHeight, 1);
    m_strip.translation->translation =
        KbVec3f(static_cast<float>(static_cast<int>(width) / 2 - 1), stripHeight / 2, 0);
    undoTransformMatrix(getAnyPart("frameSep", false), m_stripTransform.get());
}

void KsMenuBar::update3DBar()
{
    if (const bool isEmpty = !m_elements.count() && (isBuilt2D() || !m_parent);
        isEmpty != m_hiddenAsEmpty) {
        m_hiddenAsEmpty = isEmpty;
        show3D(!m_hiddenAsEmpty && (!m_parent || m_parent->showsChildren3D()));
    }
    if (!m_parent) return;
    KbVec2i32 size, min, max;
    getSize(size, min, max);
    float width = static_cast<float>(size[0]);
    // What the panel's own layout gave: a resized window leaves the strip as it is.
    if (const auto* dialog = ksCast<KsTopLevelDialog>(m_parent); dialog && dialog->isBuilt3D())
        width = dialog->getTopLevelSize()[0] - panelBorder;
    placeStrip(std::max(width - panelRoom, 0.0f));
}

template <class Place> float KsMenuBar::placeRow(Place&& place)
{
    KbVec3f at(0, 0, 0);
    apply3DTranslation(getAnyPart("frameSep", false), m_3DDepth, at);
    const float start = at[0];
    int index = 0;
    forEachChild([&](KsMenuPopup* child) {
        child->set3DParentTranslation(at);
        place(child, index++);
        at[0] += static_cast<float>(child->getItemSize()[0] + 1);
    });
    return at[0] - start;
}

void KsMenuBar::update3DChildren()
{
    const float end =
        placeRow([](KsMenuPopup* child, int index) { child->buildMenu(nullptr, 0, index); });
    if (m_parent) return;
    placeStrip(end + 1);
}

void KsMenuBar::change3DPosition()
{
    if (!isBuilt3D()) return;
    placeRow([](KsMenuPopup* child, int) { child->change3DPosition(); });
}

void KsMenuBar::set3DParentTranslation(KbVec3f& translation)
{
    // What stands below takes the room of a bar that has nothing to show.
    if (isOnlyWindow()) translation[1] += emptyRoom;
    KsTopComponent::set3DParentTranslation(translation);
}

void KsMenuBar::show3D(int show)
{
    forEachChild([=](KsMenuPopup* child) { child->show3D(show); });
    KsTopComponent::show3D(show && !m_hiddenAsEmpty);
}

void KsMenuBar::change3DEnable()
{
    KsTopComponent::change3DEnable();
    forEachChild([](KsMenuPopup* child) {
        if (child->isBuilt3D()) child->change3DEnable();
    });
}

void KsMenuBar::show3DChildren(int show)
{
    forEachChild([=](KsMenuPopup* child) { child->show3DChildren(show); });
}

void KsMenuBar::refresh3DSkin()
{
    KsTopComponent::refresh3DSkin();
    m_3DDepth = -1;
    forEachChild([](KsMenuPopup* child) { child->refresh3DSkin(); });
    if (!is3DLive()) return;
    update3DBar();
    update3DChildren();
}

void KsMenuBar::getBoundingBox(KsGetBoundingBoxAction* action)
{
    buildOn3DTraversal([this] {
        detachFromUnbuiltTop(m_parent);
        KbVec2i32 size(0, 0), place(0, 0);
        buildWidget(nullptr, size, place, 0);
    });
    KsTopComponent::getBoundingBox(action);
}
