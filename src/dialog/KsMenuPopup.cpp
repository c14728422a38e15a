#include <formweave/KsMenuPopup.h>

#include "../auditors/KsAuditorDispatch.h"
#include "../qt/KsRelay.h"
#include "KsControlParts.h"
#include "KsElementSearch.h"
#include "KsSkinFamily.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsMenuBar.h>

#include <QMenu>
#include <QMenuBar>
#include <algorithm>

KS_KIT_SOURCE(KsMenuPopup, KsMenuItem)

KS_SKIN_SOURCE(KsMenuPopup, MenuPopup, "MenuPopup.arb", "MenuPopupPressedFrame",
               "MenuPopupReleasedFrame", "MenuPopupReleasedShape", "MenuPopupPressedShape")

#define PRISM                                                                                      \
    "  Separator { Separator {\n"                                                                  \
    "    ShapeHints { faceType UNKNOWN_FACE_TYPE }\n"                                              \
    "    MatrixTransform { matrix 0.2 0 0 0 0 0.2 0 0 0 0 1.0 0 -0.5 -0.5 0 1.0 }\n"               \
    "    IndexedFaceSet {\n"                                                                       \
    "      vertexProperty VertexProperty {\n"                                                      \
    "        vertex [ 0 0 0, 5 2.5 0, 0 5 0, 0 0 1, 5 2.5 1, 0 5 1 ] }\n"                          \
    "      coordIndex [ 2, 1, 0, -1, 3, 4, 5, -1, 0, 1, 4, 3, -1, 2, 0, 3, 5, -1,\n"               \
    "                   1, 2, 5, 4, -1 ] }\n"                                                      \
    "  } }\n"

char* KsMenuPopup::MenuPopup = const_cast<char*>(
    KS_SKIN_PART("MenuPopupPressedFrame", KS_SKIN_LOW_BOX("1 0.6 0.6"))
        KS_SKIN_PART("MenuPopupReleasedFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 0.7"))
            KS_SKIN_PART("MenuPopupReleasedShape", "  BaseColor { rgb 0.6 0.6 0.6 }\n" PRISM)
                KS_SKIN_PART("MenuPopupPressedShape",
                             "  BaseColor { rgb 1 0.6 0.6 }\n"
                             "  Translation { translation 0 0 -0.2 }\n" PRISM));

#undef PRISM

namespace {

const KsElementListTraits traits{"KsMenuPopup", &KsMenuItem::getClassTypeId, "", false};

constexpr int arrowRoom = 20; // of a menu within a menu
constexpr float arrowSize = 14;
constexpr int arrowInset = 10;    // of the arrow's middle from the right
constexpr float titleMiddle = 10; // above the bar's lower edge

KsMenuPopup* asPopup(KsFormweave* node) { return ksCast<KsMenuPopup>(node); }

bool isBar(const KsFormweave* node) { return node->isOfType(KsMenuBar::getClassTypeId()); }

} // namespace

KsMenuPopup::KsMenuPopup() : KsElementContainer<KsMenuItem, KsMenuItem>(traits)
{
    KsInstanceBuilder build(classRecord, this);
    ksAddParts(build, {{"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frameSwitch", KsPartKind::Switch, "frameSep"},
                       {"released", KsPartKind::Look, "frameSwitch"},
                       {"pressed", KsPartKind::Look, "frameSwitch"},
                       {"shapeReleased", KsPartKind::Look, "frameSwitch"},
                       {"shapePressed", KsPartKind::Look, "frameSwitch"}});
}

KsMenuPopup::~KsMenuPopup() { removeMenu(); }

bool KsMenuPopup::isNested() const
{
    return m_parent && !isBar(m_parent) && m_parent->canBeTraversed();
}

void KsMenuPopup::addAuditor(KsDialogAuditor* auditor) { KsFormweave::addAuditor(auditor); }

void KsMenuPopup::removeAuditor(KsDialogAuditor* auditor) { KsFormweave::removeAuditor(auditor); }

void KsMenuPopup::applyAuditor(KsFormweave* node)
{
    if (getAuditorListLength()) {
        forEachAuditor([node](KsAuditor* auditor) {
            ksTellMenu(static_cast<KsDialogAuditor*>(auditor), node);
        });
    } else if (const KsRef<KsFormweave> parent = m_parent) {
        parent->applyAuditor(node);
    }
}

KsFormweave* KsMenuPopup::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

// Children.

void KsMenuPopup::childrenChanged()
{
    if (m_changeSuspended) return;
    const KsKeepAlive keep(this);
    if (isBuilt2D()) {
        forEachChild([this](KsMenuItem* child) {
            if (!child->isBuilt2D()) child->buildMenu(m_menu.data(), m_build2D, -1);
        });
    }
    updateAfterSceneGraphChange();
}

void KsMenuPopup::updateAfterSceneGraphChange()
{
    if (!isBuilt3D()) return;
    const KsKeepAlive keep(this);
    if (m_parent && m_parent->canBeTraversed()) {
        if (auto* popup = asPopup(m_parent))
            popup->updateAfterSceneGraphChange();
        else if (auto* bar = ksCast<KsMenuBar>(m_parent))
            bar->updateAfterSceneGraphChange();
    }
    update3DChildrenSize();
    update3D();
    update3DChildren();
    // Also what was never opened as a whole.
    m_childrenShown = 1;
    show3DChildren(0);
}

void KsMenuPopup::entriesChanged3D()
{
    if (!is3DLive()) return;
    update3DChildrenSize();
    update3DChildren();
    change3DPosition();
}

KbVec2i32 KsMenuPopup::getItemInitSize()
{
    KbVec2i32 size = KsMenuItem::getItemInitSize();
    if (asPopup(m_parent)) size[0] += arrowRoom;
    return size;
}

void KsMenuPopup::buildMenu(void* parentMenu, int build2D, int position)
{
    const KsKeepAlive keep(this);
    if (!build2D) renew3DForm();
    KsMenuItem::buildMenu(parentMenu, build2D, position);
    if (!build2D) {
        update3DChildren();
        change3DPosition();
    }
    m_changeSuspended = 0;
}

// The window.

void KsMenuPopup::insertMenuItem()
{
    const bool isNew = !m_menu;
    if (isNew) {
        m_menu = new QMenu;
        setWidgetFont(m_menu);
    }
    joinParentMenu();
    if (!isNew) return;
    changeLabel();
    changeEnable();
    forEachChild([this](KsMenuItem* child) { child->buildMenu(m_menu.data(), 1, -1); });
}

void KsMenuPopup::joinParentMenu()
{
    QWidget* parent = parentMenu();
    if (auto* bar = ksCast<KsMenuBar>(m_parent); bar && !parent)
        parent = static_cast<QWidget*>(bar->getMenu(nullptr));
    if (!parent || parent->actions().contains(m_menu->menuAction())) return;
    if (auto* bar = qobject_cast<QMenuBar*>(parent))
        bar->addMenu(m_menu);
    else if (auto* menu = qobject_cast<QMenu*>(parent))
        menu->addMenu(m_menu);
}

void KsMenuPopup::removeMenu()
{
    if (!m_menu) return;
    QAction* title = m_menu->menuAction();
    for (QWidget* parent : title->associatedWidgets()) parent->removeAction(title);
    QMenu* menu = m_menu;
    m_menu = nullptr;
    ksDeleteWidget(menu);
}

void KsMenuPopup::destroyWidget()
{
    const KsKeepAlive keep(this);
    forEachChild([](KsMenuItem* child) { child->destroyWidget(); });
    removeMenu();
    KsMenuItem::destroyWidget();
}

void KsMenuPopup::changeLabel()
{
    if (m_menu) m_menu->setTitle(ksShownQString(label));
}

void KsMenuPopup::changeEnable()
{
    if (m_menu) m_menu->setEnabled(enable);
}

// The scene.

void KsMenuPopup::create3DEntry()
{
    if (m_parent && !isBar(m_parent)) {
        dress3D(&skinFamily(), {{"shapeReleased", "MenuPopupReleasedShape"},
                                {"shapePressed", "MenuPopupPressedShape"}});
    } else {
        dress3D(&skinFamily(),
                {{"released", "MenuPopupReleasedFrame"}, {"pressed", "MenuPopupPressedFrame"}});
    }
    putFirst(m_title.scale, "frameSep");
    putFirst(m_title.translation, "frameSep");
    if (isNested())
        m_title.scale->scaleFactor = KbVec3f(arrowSize, arrowSize, 1);
    else
        putBehind(m_titleTransform, "frameSep");
    setSwitchValue(getAnyPart("frameSwitch", false), 0);
    moveLabelToEnd();
    addStartCallback(startCB3D);
    m_3DDepth = -1;
    update3DChildrenSize();
}

void KsMenuPopup::renew3DForm()
{
    if (!isBuilt3D() || (hasItemFrame() != isDrawnByBar() && !m_titleTransform == isNested()))
        return;
    show3DChildren(0);
    removeStartCallback(startCB3D);
    takeDown3D();
    m_title = SceneFrame();
    m_titleTransform.reset();
}

bool KsMenuPopup::takesInput() const
{
    return enable && !(m_parent && isBar(m_parent) && !m_parent->enable);
}

void KsMenuPopup::change3DEnable()
{
    if (takesInput()) {
        KsMenuItem::change3DEnable();
        return;
    }
    change3DWidgetEnable(0);
    show3DChildren(0);
}

void KsMenuPopup::get3DDefaultSize(KbVec3f& size)
{
    KbVec3f min, max;
    get3DLabelCachedBBox(min, max);
    size.setValue(max[0] - min[0] + static_cast<float>(isNested() ? toggleRoom : 8), itemHeight, 0);
}

void KsMenuPopup::update3DChildrenSize()
{
    int widest = 0;
    forEachChild(
        [&](KsMenuItem* child) { widest = std::max(widest, child->getItemInitSize()[0]); });
    forEachChild([=](KsMenuItem* child) { child->setItemSize(KbVec2i32(widest, 0), 1); });
}

void KsMenuPopup::update3DEntry()
{
    const float w = static_cast<float>(m_itemSize[0]);
    const float h = static_cast<float>(m_itemSize[1]);
    KbVec3f min, max;
    get3DLabelCachedBBox(min, max);
    const float x = -(max[0] - min[0]) / 2;
    const float y = -(max[1] + min[1]) / 2;
    if (!m_titleTransform) {
        m_title.translation->translation =
            KbVec3f(static_cast<float>(m_itemSize[0] / 2 - arrowInset), 0, 0);
        place3DLabel(x - arrowInset, y);
        return;
    }
    if (!hasItemFrame()) {
        m_title.scale->scaleFactor = KbVec3f(w, h, 1);
        m_title.translation->translation = KbVec3f(w / 2, titleMiddle, 0);
    } else {
        // Alone: on a frame of its own, which begins where the menu stands.
        place3DItemFrame(m_itemSize, m_itemSize[1] / 2);
        undoTransformMatrix(getAnyPart("itemFrameSep", false), m_itemTransform.get());
        m_title.scale->scaleFactor = KbVec3f(w - 2, h - 2, 1);
        m_title.translation->translation = KbVec3f(0, 0, 0);
    }
    undoTransformMatrix(getAnyPart("frameSep", false), m_titleTransform.get());
    place3DLabel(x, y);
}

template <class Place> void KsMenuPopup::placeColumn(Place&& place)
{
    KbVec3f at(0, 0, 0);
    apply3DTranslation(getAnyPart("frameSep", false), m_3DDepth, at);
    if (isNested())
        at += KbVec3f(static_cast<float>(m_itemSize[0]), static_cast<float>(m_itemSize[1] / 2), 0);
    else if (m_childrenShown)
        at[2] = std::max(at[2], m_columnZ);
    int index = 0;
    forEachChild([&](KsMenuItem* child) {
        const float half = static_cast<float>(child->getItemSize()[1]) / 2;
        at[1] -= half;
        child->set3DParentTranslation(at);
        place(child, index++);
        at[1] -= half;
    });
}

void KsMenuPopup::update3DChildren()
{
    if (!isBuilt3D()) return;
    placeColumn([](KsMenuItem* child, int index) { child->buildMenu(nullptr, 0, index); });
}

void KsMenuPopup::change3DPosition()
{
    if (!m_childrenShown) return;
    KsFormweave* top = isNested() ? nullptr : getFirstTopParent(0, 0);
    if (top && top != this) {
        // In front of all that the panel shows but the menu itself.
        setColumnVisible(false);
        m_bboxAction->apply(top);
        const KbBox3f box = m_bboxAction->getBoundingBox();
        if (!box.isEmpty()) m_columnZ = box.getMax()[2];
        setColumnVisible(true);
    }
    placeColumn([](KsMenuItem* child, int) { child->change3DPosition(); });
}

void KsMenuPopup::setColumnVisible(bool visible)
{
    forEachChild([=](KsMenuItem* child) {
        auto* popup = asPopup(child);
        if (popup && popup->m_childrenShown) popup->setColumnVisible(visible);
        child->KsFormweave::show3D(visible);
    });
}

void KsMenuPopup::show3D(int show)
{
    // No column without its title.
    if (!show) show3DChildren(0);
    KsMenuItem::show3D(show);
}

void KsMenuPopup::show3DChildren(int show)
{
    show = show ? 1 : 0;
    if (m_childrenShown == show) return;
    const KsKeepAlive keep(this);
    forEachChild([=](KsMenuItem* child) {
        if (auto* popup = asPopup(child); popup && !show) popup->show3DChildren(0);
        child->show3D(show);
    });
    m_childrenShown = show;
    setSwitchValue(getAnyPart("frameSwitch", false), show);
    if (m_titleTransform)
        undoTransformMatrix(getAnyPart("frameSep", false), m_titleTransform.get());
}

void KsMenuPopup::closeSiblings3D()
{
    auto* popup = asPopup(m_parent);
    if (!popup) return;
    popup->forEachChild([this](KsMenuItem* child) {
        auto* sibling = asPopup(child);
        if (sibling && sibling != this) sibling->show3DChildren(0);
    });
}

void KsMenuPopup::startCB3D(void*, KsDragger* dragger)
{
    auto* popup = static_cast<KsMenuPopup*>(dragger);
    if (popup->takesPick()) popup->draggerStartCallback3D();
}

void KsMenuPopup::draggerStartCallback3D()
{
    const KsKeepAlive keep(this);
    const bool isOutermost = !asPopup(m_parent);
    if (m_childrenShown) {
        if (isOutermost)
            set3DInactive();
        else
            show3DChildren(0);
        return;
    }
    if (isOutermost) {
        set3DCurrentActive(this);
        closeOnPressElsewhere();
    } else {
        closeSiblings3D();
    }
    show3DChildren(1);
    change3DPosition();
}

void KsMenuPopup::set3DInactive()
{
    show3DChildren(0);
    KsFormweave::set3DInactive();
}

void KsMenuPopup::refresh3DSkin()
{
    KsMenuItem::refresh3DSkin();
    forEachChild([](KsMenuItem* child) { child->refresh3DSkin(); });
    if (!is3DLive()) return;
    // The column stands on the title as it is closed.
    KsNode* look = getAnyPart("frameSwitch", false);
    setSwitchValue(look, 0);
    m_3DDepth = compute3DDepth(getAnyPart("frameSep", false));
    setSwitchValue(look, m_childrenShown);
    update3DChildren();
    change3DPosition();
}

void KsMenuPopup::getBoundingBox(KsGetBoundingBoxAction* action)
{
    buildOn3DTraversal([this] {
        detachFromUnbuiltTop(getFirstTopParent(0, 1));
        buildMenu(nullptr, 0, -1);
    });
    KsDragger::getBoundingBox(action);
}
