// The dialog as a panel in a scene.

#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KbLine.h>
#include <arborium/base/KbPlaneProjector.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsTopLevelDialog.h>

char* KsTopLevelDialog::TopLevelDialog = const_cast<char*>(
    KS_SKIN_PART("TopLevelDialogFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 1")) KS_SKIN_PART(
        "TopLevelDialogMinReleased",
        KS_SKIN_BEVEL("0.7 0.7 1", "0.2 0.2 1", "1 1 1", "0.5 0.5 1", "0.7 0.7 1"))
        KS_SKIN_PART("TopLevelDialogMinPressed",
                     KS_SKIN_BEVEL("0.5 0.5 1", "1 1 1", "0.2 0.2 1", "0.7 0.7 1", "0.7 0.7 1")));

namespace {

// The room around the children, in pixels.
constexpr int sideRoom = 4;
constexpr int titleRoom = 23;
constexpr int menuBarRoom = 18;
constexpr float stripHeight = 20;
constexpr float buttonSize = 14;
constexpr float buttonInset = 12; // of the button's centre, and of the title's
constexpr float titleGap = 3;     // between the title's room and what is around it

} // namespace

KS_SKIN_SOURCE(KsTopLevelDialog, TopLevelDialog, "TopLevelDialog.arb", "TopLevelDialogFrame",
               "TopLevelDialogMinReleased", "TopLevelDialogMinPressed")

KbVec3f KsTopLevelDialog::getTopLevelSize() const
{
    return m_frameScale ? m_frameScale->scaleFactor.getValue() : KbVec3f(0, 0, 0);
}

KbVec2f KsTopLevelDialog::panelSize() const
{
    // A menu bar draws its own room.
    const int around = widgetHasMenuBar() ? 2 * sideRoom + sideRoom : titleRoom + sideRoom;
    return KbVec2f(static_cast<float>(m_size3D[0] + 2 * sideRoom),
                   static_cast<float>(m_size3D[1] + around));
}

void KsTopLevelDialog::create3DTopLevelDialog()
{
    dress3D(&skinFamily(), {{"frame", "TopLevelDialogFrame"},
                            {"labelProp", "DialogTextProperties"},
                            {"minReleased", "TopLevelDialogMinReleased"},
                            {"minPressed", "TopLevelDialogMinPressed"}});

    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    auto* frameSep = static_cast<KsGroup*>(getAnyPart("frameSep", true));
    auto* labelSep = static_cast<KsGroup*>(getAnyPart("labelSep", true));
    auto* minSep = static_cast<KsGroup*>(getAnyPart("minSep", true));
    m_frameScale = new KsScale;
    frameSep->insertChild(m_frameScale.get(), 0);
    m_panelTranslation = new KsTranslation;
    geometry->insertChild(m_panelTranslation.get(), 0);
    m_undoTransform = new KsTransform;
    geometry->insertChild(m_undoTransform.get(), geometry->findChild(labelSep));
    m_labelTranslation = new KsTranslation;
    labelSep->insertChild(m_labelTranslation.get(), 0);
    m_titleText = new KsText3;
    m_titleText->parts = KsText3::FRONT;
    labelSep->addChild(m_titleText.get());
    for (auto& edge : m_titleEdges) {
        edge = new KsClipPlane;
        labelSep->insertChild(edge.get(), 1);
    }
    // A press on the title meets the frame behind it, by which the panel is dragged.
    auto* throughTitle = new KsPickStyle;
    throughTitle->style = KsPickStyle::UNPICKABLE;
    labelSep->insertChild(throughTitle, 1);
    change3DLabel();
    auto* buttonScale = new KsScale;
    buttonScale->scaleFactor = KbVec3f(buttonSize, buttonSize, 1);
    minSep->insertChild(buttonScale, 0);
    m_buttonTranslation = new KsTranslation;
    minSep->insertChild(m_buttonTranslation.get(), 0);
    setSwitchValue(getAnyPart("minSwtch", true), 0);

    addStartCallback(startCB3D);
    addMotionCallback(motionCB3D);
    addFinishCallback(finishCB3D);
    m_projector = std::make_unique<KbPlaneProjector>(false);
    setBuilt3D(1);
    m_3DDepth = -1;
    m_firstMinimize = 1;
    m_changeSuspended = 0;
    show3D(1);
}

void KsTopLevelDialog::update3DTopLevelDialog()
{
    if (isStrip()) {
        minimize3DDialog();
        return;
    }
    const KbVec2f panel = panelSize();
    const KbVec3f place = position3D;
    m_frameScale->scaleFactor = KbVec3f(panel[0], panel[1], 1);
    m_panelTranslation->translation =
        KbVec3f(place[0] + panel[0] / 2, -place[1] - panel[1] / 2, place[2]);
    m_buttonTranslation->translation =
        KbVec3f(panel[0] / 2 - buttonInset, panel[1] / 2 - buttonInset, 0);
    undoTransformMatrix(getAnyPart("frameSep", false), m_undoTransform.get());
    update3DLabel();
}

void KsTopLevelDialog::update3DLabel()
{
    if (!isLabelCachedBBox())
        setLabelCacheBBox(measure3DText(getAnyPart("labelProp", false), m_titleText.get()));
    const KbBox3f box = getLabelCachedBBox();
    const KbVec2f panel = panelSize();
    const float middle = -(box.getMax()[1] + box.getMin()[1]) / 2;
    m_labelTranslation->translation = KbVec3f(
        -panel[0] / 2 + buttonInset, isStrip() ? middle : panel[1] / 2 + middle - buttonInset, 0);
    // A title that has no room ends before the button, and within the strip.
    const float right = panel[0] - 2 * buttonInset - buttonSize / 2 - titleGap;
    const float half = stripHeight / 2;
    m_titleEdges[0]->plane = KbPlane(KbVec3f(-1, 0, 0), -right);
    m_titleEdges[1]->plane = KbPlane(KbVec3f(0, -1, 0), middle - half);
    m_titleEdges[2]->plane = KbPlane(KbVec3f(0, 1, 0), -middle - half);
}

void KsTopLevelDialog::change3DLabel()
{
    if (!m_titleText) return;
    showText3D(m_titleText.get(), convertToCString(label, this));
    KsFormweave::change3DLabel();
    if (isBuilt3D()) update3DLabel();
}

KbVec3f KsTopLevelDialog::childrenOrigin()
{
    const int bar = widgetHasMenuBar() ? menuBarRoom : 0;
    const KbVec3f place = position3D;
    KbVec3f origin(place[0] + sideRoom, -place[1] - titleRoom - bar, place[2]);
    apply3DTranslation(getAnyPart("frameSep", false), m_3DDepth, origin);
    return origin;
}

void KsTopLevelDialog::update3DChildren()
{
    computeNewChildrenHeight(m_size3D);
    KbVec3f origin = childrenOrigin();
    KsMenuBar* menuBar = widgetHasMenuBar();
    const int room = ksBounded(margin);
    KbVec2i32 place(room, room);
    KbVec2i32 childSize(ksBounded(std::int64_t(m_size3D[0]) - 2 * room), 0);
    int index = 0;
    forEachChild([&](KsTopComponent* child) {
        if (index >= m_sizeDB.count()) return;
        const int initHeight = m_sizeDB[index++].init[1];
        child->set3DParentTranslation(origin);
        if (child == menuBar) {
            child->buildWidget(nullptr, childSize, place, 0);
            return;
        }
        childSize[1] = initHeight;
        child->buildWidget(nullptr, childSize, place, 0);
        if (const auto* built = ksCast<KsSFInt32>(child->getField("height")))
            place[1] = ksBounded(std::int64_t(place[1]) + built->getValue() + rowSpacing);
    });
    if (menuBar) menuBar->change3DPosition();
}

void KsTopLevelDialog::update3DChildrenPosition()
{
    KbVec3f origin = childrenOrigin();
    KsMenuBar* menuBar = widgetHasMenuBar();
    forEachChild([&](KsTopComponent* child) {
        child->set3DParentTranslation(origin);
        if (child != menuBar) child->change3DPosition();
    });
    // Open menus stand in front of all others: where these are now.
    if (menuBar) menuBar->change3DPosition();
}

void KsTopLevelDialog::change3DPosition()
{
    if (!isBuilt3D()) return;
    if (isStrip()) {
        placeStrip();
        return;
    }
    const KbVec2f panel = panelSize();
    const KbVec3f place = position3D;
    m_panelTranslation->translation =
        KbVec3f(place[0] + panel[0] / 2, -place[1] - panel[1] / 2, place[2]);
    if (!hideChildren) update3DChildrenPosition();
}

void KsTopLevelDialog::placeStrip()
{
    const KbVec3f place = minimized3DPosition;
    m_panelTranslation->translation =
        KbVec3f(place[0] + panelSize()[0] / 2, -place[1] - stripHeight / 2, place[2]);
}

void KsTopLevelDialog::connectPositions()
{
    if (!isBuilt3D()) return;
    KsSFVec3f& driven = isStrip() ? position3D : minimized3DPosition;
    KsSFVec3f& live = isStrip() ? minimized3DPosition : position3D;
    // What the application connected them from stays.
    if (live.getConnectedField() == &driven) live.disconnect();
    if (independentMinimizedPosition && driven.getConnectedField() == &live) driven.disconnect();
    if (independentMinimizedPosition) return;
    driven.connectFrom(&live);
    // The dialog makes this connection itself: no file needs it.
    driven.setConnectionPrivate(true);
}

void KsTopLevelDialog::updateMinimizedState()
{
    // The places of a panel that is not there stay as the application wrote them.
    if (!isBuilt3D()) return;
    const KsKeepAlive keep(this);
    // A panel that was never a strip shrinks in place.
    if (m_firstMinimize) minimized3DPosition = position3D;
    m_firstMinimize = 0;
    if (!independentMinimizedPosition) connectPositions();
    if (minimized)
        minimize3DDialog();
    else
        restore3DDialog();
    show3DChildren(m_show3D && !minimized);
}

void KsTopLevelDialog::minimize3DDialog()
{
    const KbVec2f panel = panelSize();
    m_frameScale->scaleFactor = KbVec3f(panel[0], stripHeight, 1);
    placeStrip();
    undoTransformMatrix(getAnyPart("frameSep", false), m_undoTransform.get());
    m_buttonTranslation->translation = KbVec3f(panel[0] / 2 - buttonInset, 0, 0);
    update3DLabel();
    if (KsMenuBar* bar = widgetHasMenuBar()) bar->show3DChildren(0);
}

void KsTopLevelDialog::restore3DDialog()
{
    update3DTopLevelDialog();
    // Where a strip was dragged the panel opens as a whole.
    if (!hideChildren || m_draggedAsStrip) update3DChildrenPosition();
    m_draggedAsStrip = false;
}

void KsTopLevelDialog::show3D(int show)
{
    // A strip shows no children, nor does a frame that is dragged without them.
    show3DChildren(show && !isStrip() && !m_childrenHiddenByDrag);
    KsFormweave::show3D(show);
}

void KsTopLevelDialog::show3DChildren(int show)
{
    m_showsChildren3D = show ? 1 : 0;
    forEachChild([=](KsTopComponent* child) { child->show3D(show); });
}

void KsTopLevelDialog::refresh3DSkin()
{
    KsFormweave::refresh3DSkin();
    m_3DDepth = -1;
    forEachChild([](KsTopComponent* child) { child->refresh3DSkin(); });
    if (!is3DLive()) return;
    update3DTopLevelDialog();
    update3DChildren();
}

void KsTopLevelDialog::getBoundingBox(KsGetBoundingBoxAction* action)
{
    buildOn3DTraversal([this] {
        setChildrenLabelSize();
        setChildrenComponentSize();
        const int shown = m_show3D;
        KbVec2i32 size(0, 0), place(0, 0);
        buildWidget(nullptr, size, place, 0);
        show3D(shown);
    });
    KsDragger::getBoundingBox(action);
}

void KsTopLevelDialog::startCB3D(void*, KsDragger* dragger)
{
    static_cast<KsTopLevelDialog*>(dragger)->draggerStartCallback3D();
}

void KsTopLevelDialog::motionCB3D(void*, KsDragger* dragger)
{
    static_cast<KsTopLevelDialog*>(dragger)->draggerMotionCallback3D();
}

void KsTopLevelDialog::finishCB3D(void*, KsDragger* dragger)
{
    static_cast<KsTopLevelDialog*>(dragger)->draggerFinishCallback3D();
}

void KsTopLevelDialog::draggerStartCallback3D()
{
    const KsPath* path = getPickPath();
    if (!path) return;
    // First, since auditors that hear of it may show a box, which takes the release.
    set3DCurrentActive(this);
    if (path->containsNode(getAnyPart("minSep", false))) {
        setSwitchValue(getAnyPart("minSwtch", false), 1);
    } else if (path->containsNode(getAnyPart("frameSep", false))) {
        m_dragWorldPoint = getWorldStartingPoint();
        m_projector->setPlane(KbPlane(KbVec3f(0, 0, 1), getLocalStartingPoint()));
        if (KsHandleEventAction* action = getHandleEventAction();
            action && KsViewVolumeElement::isSet(action->getState()))
            m_projector->setViewVolume(getViewVolume());
        m_dragStart = isStrip() ? minimized3DPosition : position3D;
        if (!isStrip() && hideChildren) {
            show3DChildren(0);
            m_childrenHiddenByDrag = true;
        }
    }
}

void KsTopLevelDialog::draggerMotionCallback3D()
{
    const KsPath* path = getPickPath();
    if (!path || !path->containsNode(getAnyPart("frameSep", false))) return;
    const KbMatrix toWorld = getLocalToWorldMatrix(getHandleEventAction());
    m_projector->setWorkingSpace(toWorld);
    const bool in3D = getEvent() && getEvent()->isOfType(KsTrackerEvent::getClassTypeId());
    KbVec3f point = getLocalStartingPoint();
    // A pointer that meets the panel's plane nowhere leaves the panel where it is.
    if (in3D ? !m_projector->intersect(getTrackerRay(), point)
             : !m_projector->tryProject(getNormalizedLocaterPosition(), point))
        return;
    toWorld.multVecMatrix(point, m_dragWorldPoint);
    const KbVec3f delta = point - getLocalStartingPoint();
    m_draggedAsStrip = isStrip();
    KsSFVec3f& place = isStrip() ? minimized3DPosition : position3D;
    place =
        KbVec3f(m_dragStart[0] + delta[0], m_dragStart[1] - delta[1], m_dragStart[2] + delta[2]);
    change3DPosition();
}

void KsTopLevelDialog::bringBackHiddenChildren()
{
    if (!m_childrenHiddenByDrag) return;
    m_childrenHiddenByDrag = false;
    update3DChildrenPosition();
    show3DChildren(m_show3D && !isStrip());
}

void KsTopLevelDialog::abandonDrag3D()
{
    bringBackHiddenChildren();
    release3DParts({"minSwtch"});
}

void KsTopLevelDialog::draggerFinishCallback3D()
{
    const KsPath* path = getPickPath();
    bringBackHiddenChildren();
    if (!path || !path->containsNode(getAnyPart("minSep", false))) return;
    setSwitchValue(getAnyPart("minSwtch", false), 0);
    const bool wasMinimized = minimized;
    show3DChildren(m_show3D && wasMinimized);
    if (hideChildren && !wasMinimized) update3DChildrenPosition();
    minimized = !wasMinimized;
}
