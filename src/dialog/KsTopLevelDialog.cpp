// The dialog as a tree and as a window.

#include <formweave/KsTopLevelDialog.h>

#include "../auditors/KsAuditorDispatch.h"
#include "../qt/KsRelay.h"
#include "KsElementSearch.h"
#include "KsLayouts.h"

#include <arborium/base/KbPlaneProjector.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/qt/KsQt.h>
#include <formweave/KsDialogComponent.h>
#include <formweave/KsMenuBar.h>

#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>
#include <cstdlib>

KS_KIT_SOURCE(KsTopLevelDialog, KsFormweave)

namespace {

constexpr int largestWidget = 16777215;
constexpr int titleBarRoom = 20; // added to the window's y
constexpr int downward = 1;      // the axis along which the children are stacked

const KsElementListTraits traits{"KsTopLevelDialog", &KsTopComponent::getClassTypeId,
                                 "; Be careful", false};

bool isMenuBar(const KsTopComponent* child) { return child->isOfType(KsMenuBar::getClassTypeId()); }

int presentation() { return KsDBImpl::m_noLocalWidgets ? 0 : 1; }

} // namespace

KsTopLevelDialog::KsTopLevelDialog()
    : KsElementContainer<KsFormweave, KsTopComponent>(traits), m_asked(largestWidget),
      m_defaultAuditor(std::make_unique<KsTopLevelAuditor>())
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("ScrollVisibility", {{"NEVER", NEVER}, {"ALWAYS", ALWAYS}, {"AUTO", AUTO}});
    build.field("width", width, 0);
    build.field("height", height, 0);
    build.field("position", position, KbVec2i32(0, 0));
    build.field("position3D", position3D, KbVec3f(0, 0, 0));
    build.field("resizable", resizable, true);
    build.field("minWidth", minWidth, 0);
    build.field("minHeight", minHeight, 0);
    build.field("maxWidth", maxWidth, largestWidget);
    build.field("maxHeight", maxHeight, largestWidget);
    build.field("margin", margin, 0);
    build.field("rowSpacing", rowSpacing, 0);
    build.field("modalFrame", modalFrame, false);
    build.field("hideChildren", hideChildren, false);
    build.field("minimized", minimized, false);
    build.field("minimized3DPosition", minimized3DPosition, KbVec3f(0, 0, 0));
    build.field("independentMinimizedPosition", independentMinimizedPosition, true);
    build.field("windowResizedByChildren", windowResizedByChildren, false);
    build.enumField("vScrollVisibility", vScrollVisibility, "ScrollVisibility", AUTO);
    build.enumField("hScrollVisibility", hScrollVisibility, "ScrollVisibility", AUTO);
    if (build.isFirst()) {
        const KsType group = KsGroup::getClassTypeId();
        const KsType separator = KsSeparator::getClassTypeId();
        build.part("frameSep", separator, "geomSwitch", KsHiddenPart);
        build.part("frame", group, "frameSep", KsPublicPart);
        build.part("labelSep", separator, "geomSwitch", KsHiddenPart);
        build.part("labelProp", group, "labelSep", KsPublicPart);
        build.part("minSep", separator, "geomSwitch", KsHiddenPart);
        build.part("minSwtch", KsSwitch::getClassTypeId(), "minSep", KsHiddenPart);
        build.part("minReleased", group, "minSwtch", KsPublicPart);
        build.part("minPressed", group, "minSwtch", KsPublicPart);
    }
}

KsTopLevelDialog::~KsTopLevelDialog()
{
    forEachChild([](KsTopComponent* child) {
        if (!isMenuBar(child)) child->destroyWidget();
    });
    // One of them may be what has just been clicked.
    ksDeleteWidget(m_focusedWidget);
    ksDeleteWidget(m_scrolledWidget);
}

void KsTopLevelDialog::addAuditor(KsDialogAuditor* auditor) { KsFormweave::addAuditor(auditor); }

void KsTopLevelDialog::removeAuditor(KsDialogAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsTopLevelDialog::applyAuditors() { ksApplyAuditors(this, m_elements); }

void KsTopLevelDialog::applyAuditor(KsFormweave* node)
{
    if (!getAuditorListLength()) {
        ksTellTopLevel(m_defaultAuditor.get(), node);
        return;
    }
    forEachAuditor([node](KsAuditor* auditor) {
        ksTellTopLevel(static_cast<KsDialogAuditor*>(auditor), node);
    });
}

KsFormweave* KsTopLevelDialog::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

// The window.

void KsTopLevelDialog::buildDialog(QWidget* parent, int buildInsideParent)
{
    if (!hasApplication("KsTopLevelDialog::buildDialog")) return;
    const KsKeepAlive keep(this);
    m_buildInsideParent = buildInsideParent;
    setChildrenLabelSize();
    setChildrenComponentSize();
    KbVec2i32 size(0, 0), place(0, 0);
    buildWidget(parent, size, place, presentation());
    m_changeSuspended = 0;
}

void KsTopLevelDialog::show()
{
    if (!m_buildInsideParent && m_baseWidget) KsQt::show(m_baseWidget);
}

void KsTopLevelDialog::hide()
{
    if (!m_buildInsideParent && m_baseWidget) KsQt::hide(m_baseWidget);
}

void KsTopLevelDialog::close()
{
    hide();
    unref();
}

int KsTopLevelDialog::destroyDialog()
{
    hide();
    if (m_buildInsideParent) std::exit(0);
    return 0;
}

QWidget* KsTopLevelDialog::getBaseWidget() const { return m_baseWidget; }

QWidget* KsTopLevelDialog::getCurrentFocusedWidget() const { return m_focusedWidget; }

void KsTopLevelDialog::setCurrentFocusedWidget(QWidget* widget) { m_focusedWidget = widget; }

QWidget* KsTopLevelDialog::getCurrentScrolledWidget() const { return m_scrolledWidget; }

void KsTopLevelDialog::setCurrentScrolledWidget(QWidget* widget) { m_scrolledWidget = widget; }

void* KsTopLevelDialog::getLayout() const { return static_cast<QBoxLayout*>(m_layout.data()); }

KsMenuBar* KsTopLevelDialog::widgetHasMenuBar() const
{
    for (int i = 0; i < m_elements.count(); ++i) {
        if (isMenuBar(childAt(i))) return static_cast<KsMenuBar*>(childAt(i));
    }
    return nullptr;
}

void KsTopLevelDialog::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& place, int build2D)
{
    KsFormweave::buildWidget(parent, size, place, build2D);
    if (build2D && !m_baseWidget) {
        createBaseWidget(parent);
        m_firstBuild = 0;
    }
    m_asked.record(sizeFields());
    m_sizeDB.setCount(m_elements.count());
    KbVec2i32 current, min, max;
    getSize(current, min, max);
    for (int axis = 0; axis < 2; ++axis) {
        if (size[axis])
            current[axis] = size[axis] < min[axis] ? min[axis] : std::min(size[axis], max[axis]);
    }
    if (!resizable) min = max = current;
    if (m_firstBuild) {
        m_defaultSize.setValue(width, height);
        m_defaultMin.setValue(minWidth, minHeight);
        m_defaultMax.setValue(maxWidth, maxHeight);
    }
    setSize(current[0], current[1], min[0], min[1], max[0], max[1]);
    setDefaultState();
    if (build2D) {
        // A program that hears of the sizes may have taken the window away.
        if (m_baseWidget) ksLimitWidget(m_baseWidget, min, max);
        if (m_baseWidget) updateBaseWidget();
    } else {
        m_size3D = current;
        if (!isBuilt3D()) {
            create3DTopLevelDialog();
            m_firstBuild = 0;
        }
        update3DTopLevelDialog();
        update3DChildren();
    }
    m_marginSensor.arm(this, margin);
    m_modalFrameSensor.arm(this, modalFrame);
    m_rowSpacingSensor.arm(this, rowSpacing);
    m_resizableSensor.arm(this, resizable);
    m_positionSensor.arm(this, position);
    m_position3DSensor.arm(this, position3D);
    m_minimizedSensor.arm(this, minimized);
    m_independentMinimizedPositionSensor.arm(this, independentMinimizedPosition);
    m_minimized3DPositionSensor.arm(this, minimized3DPosition);
    m_minWidthSensor.arm(this, minWidth);
    m_minHeightSensor.arm(this, minHeight);
    m_maxWidthSensor.arm(this, maxWidth);
    m_maxHeightSensor.arm(this, maxHeight);
    m_widthSensor.arm(this, width);
    m_heightSensor.arm(this, height);
}

void KsTopLevelDialog::createBaseWidget(QWidget* parent)
{
    if (m_buildInsideParent && parent) {
        m_baseWidget = parent;
        delete parent->layout();
        parent->setBackgroundRole(QPalette::Window);
    } else {
        m_baseWidget = new QWidget;
        m_baseWidget->setObjectName("KsTopLevelDialog");
    }
    m_layout = new QVBoxLayout(m_baseWidget);
    m_layout->setObjectName("LMNKsTopLevelDialogLayout");
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    changeLabel();
    changePosition();
    changeEnable();
    ksLimitWidget(m_baseWidget, KbVec2i32(minWidth, minHeight), KbVec2i32(maxWidth, maxHeight));
    updateChildren();
}

void KsTopLevelDialog::updateBaseWidget()
{
    m_baseWidget->resize(ksPaintableSize(KbVec2i32(width, height)));
    createTopLevelWidget();
    changePosition();
    updateTopLevelWidget();
}

void KsTopLevelDialog::updateChildren()
{
    forEachChild([this](KsTopComponent* child) {
        const int build2D = presentation();
        if (build2D && !m_baseWidget) return; // a control is no window of its own
        KbVec2i32 size(0, 0), place(0, 0);
        child->buildWidget(m_baseWidget, size, place, build2D);
    });
}

void KsTopLevelDialog::changePosition()
{
    const KbVec2i32 place = position;
    if (m_baseWidget) m_baseWidget->move(ksBounded(place[0]), ksBounded(place[1]) + titleBarRoom);
}

void KsTopLevelDialog::changeLabel()
{
    if (m_baseWidget)
        m_baseWidget->setWindowTitle(QString::fromStdU16String(label.getValue().toUtf16()));
}

void KsTopLevelDialog::changeEnable()
{
    if (m_baseWidget) m_baseWidget->setEnabled(enable);
}

void KsTopLevelDialog::changeRowSpacing()
{
    if (m_layout) m_layout->setSpacing(std::max(ksBounded(rowSpacing), 0));
}

void KsTopLevelDialog::changeMinMaxSize()
{
    m_defaultMin.setValue(minWidth, minHeight);
    m_defaultMax.setValue(maxWidth, maxHeight);
    m_asked.update(sizeFields(), 2, 5);
    if (m_baseWidget) ksLimitWidget(m_baseWidget, m_defaultMin, m_defaultMax);
}

void KsTopLevelDialog::changeWidth()
{
    m_defaultSize[0] = width;
    m_asked.update(sizeFields(), 0, 0);
}

void KsTopLevelDialog::changeHeight()
{
    m_defaultSize[1] = height;
    m_asked.update(sizeFields(), 1, 1);
}

void KsTopLevelDialog::updateFromSensor(KsSensor* sensor)
{
    if (m_marginSensor.is(sensor)) {
        // Taken up by the next layout.
    } else if (m_widthSensor.is(sensor)) {
        changeWidth();
    } else if (m_heightSensor.is(sensor)) {
        changeHeight();
    } else if (m_rowSpacingSensor.is(sensor)) {
        changeRowSpacing();
    } else if (m_resizableSensor.is(sensor)) {
        changeResizable();
    } else if (m_modalFrameSensor.is(sensor)) {
        changeModalFrame();
    } else if (m_minimizedSensor.is(sensor)) {
        updateMinimizedState();
    } else if (m_positionSensor.is(sensor)) {
        if (m_build2D) changePosition();
        if (is3DLive()) change3DPosition();
    } else if (m_position3DSensor.is(sensor) || m_minimized3DPositionSensor.is(sensor)) {
        change3DPosition();
    } else if (m_independentMinimizedPositionSensor.is(sensor)) {
        connectPositions();
    } else if (m_minWidthSensor.is(sensor) || m_maxWidthSensor.is(sensor) ||
               m_minHeightSensor.is(sensor) || m_maxHeightSensor.is(sensor)) {
        changeMinMaxSize();
    } else {
        KsFormweave::updateFromSensor(sensor);
    }
}

void KsTopLevelDialog::setPosition(KbVec2i32& newPosition)
{
    ksWriteSilently(m_positionSensor, position, newPosition);
    ksMarkDefault(position, newPosition == KbVec2i32(0, 0));
}

void KsTopLevelDialog::setSize(int w, int h, int minW, int minH, int maxW, int maxH)
{
    ksWriteSilently(m_widthSensor, width, w);
    ksWriteSilently(m_heightSensor, height, h);
    ksWriteSilently(m_minWidthSensor, minWidth, minW);
    ksWriteSilently(m_minHeightSensor, minHeight, minH);
    ksWriteSilently(m_maxWidthSensor, maxWidth, maxW);
    ksWriteSilently(m_maxHeightSensor, maxHeight, maxH);
}

KsAskedSizes::Fields KsTopLevelDialog::sizeFields()
{
    return {&width, &height, &minWidth, &minHeight, &maxWidth, &maxHeight};
}

void KsTopLevelDialog::setDefaultState()
{
    const bool pinned = !resizable;
    const auto open = [](int wanted, int limit) {
        return wanted == 0 || wanted == largestWidget || limit == KsSizeDB::openLimit;
    };
    ksMarkDefault(width, m_defaultSize[0] == 0);
    ksMarkDefault(height, m_defaultSize[1] == 0);
    ksMarkDefault(minWidth, m_defaultMin[0] == 0 || pinned);
    ksMarkDefault(minHeight, m_defaultMin[1] == 0 || pinned);
    ksMarkDefault(maxWidth, open(m_defaultMax[0], maxWidth) || pinned);
    ksMarkDefault(maxHeight, open(m_defaultMax[1], maxHeight) || pinned);
}

void KsTopLevelDialog::getDefaultState(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) const
{
    size = m_defaultSize;
    min = m_defaultMin;
    max = m_defaultMax;
}

void KsTopLevelDialog::writeFields(KsWriteAction* action)
{
    const KsAskedSizes::Written asked(m_asked, sizeFields(), m_build2D);
    KsFormweave::writeFields(action);
}

void KsTopLevelDialog::copyContents(const KsNode* from, Copier& copier)
{
    KsElementContainer::copyContents(from, copier);
    // A copy asks for what the original was asked for, not for what a layout found.
    static_cast<const KsTopLevelDialog*>(from)->m_asked.restore(sizeFields());
}

// The layout.

void KsTopLevelDialog::getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    min.setValue(ksBounded(minWidth), ksBounded(minHeight));
    max.setValue(ksBounded(maxWidth), ksBounded(maxHeight));
    size.setValue(ksBounded(width), ksBounded(height));
    ksFillSizes(size, min, max, [this](KbVec2i32& s, KbVec2i32& mn, KbVec2i32& mx) {
        getDefaultSize(s, mn, mx);
        fixSizeWithBorder(s, 1);
        fixSizeWithBorder(mn, 1);
        fixSizeWithBorder(mx, 1);
    });
    for (int axis = 0; axis < 2; ++axis)
        size[axis] = std::min(std::max(size[axis], min[axis]), max[axis]);
    if (!resizable && width != 0) min[0] = max[0] = size[0];
    if (!resizable && height != 0) min[1] = max[1] = size[1];
}

void KsTopLevelDialog::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    m_sizeDB.setCount(m_elements.count());
    int index = 0;
    forEachChild([&](KsTopComponent* child) {
        KsSizeTriple& row = m_sizeDB[index++];
        child->getSize(row.init, row.min, row.max);
        if (isMenuBar(child)) row.max[downward] = row.min[downward];
    });
    const int spaced = m_elements.count() - (widgetHasMenuBar() ? 1 : 0);
    const KsSizeTriple sum =
        m_sizeDB.stacked(downward, ksBounded(margin), ksBounded(rowSpacing), spaced - 1, false);
    size = sum.init;
    min = sum.min;
    max = sum.max;
}

void KsTopLevelDialog::setChildrenLabelSize() { ksAlignLabels(m_elements, true, false); }

void KsTopLevelDialog::setChildrenComponentSize() { ksAlignControls(m_elements, true); }

void KsTopLevelDialog::computeNewChildrenHeight(const KbVec2i32& target)
{
    KbVec2i32 init, min, max;
    getDefaultSize(init, min, max);
    m_sizeDB.share(downward, target[downward] - init[downward]);
}

void KsTopLevelDialog::resetSize()
{
    if (windowResizedByChildren)
        KsAskedSizes::assign(sizeFields(), m_defaultSize, m_defaultMin, m_defaultMax);
    forEachChild([](KsTopComponent* child) { child->resetSize(); });
}

void KsTopLevelDialog::updateDialogBuild(int use2D)
{
    const KsKeepAlive keep(this);
    // The widget that the dialog was built inside is gone: there is nothing to lay out.
    if (use2D && m_buildInsideParent && !m_baseWidget) return;
    resetSize();
    m_sizeDB.clear();
    setChildrenLabelSize();
    setChildrenComponentSize();
    KbVec2i32 size(0, 0), place(0, 0);
    buildWidget(m_parentWidget, size, place, use2D);
    if (!use2D) return;
    setScrollProperties();
    updateTopLevelWidgetScrollPosition();
    updateChildren();
}

void KsTopLevelDialog::updateAfterSceneGraphChange()
{
    const KsKeepAlive keep(this);
    if (m_build2D) updateDialogBuild(1);
    if (isBuilt3D()) updateDialogBuild(0);
}

void KsTopLevelDialog::childrenChanged()
{
    if (!m_changeSuspended) updateAfterSceneGraphChange();
}
