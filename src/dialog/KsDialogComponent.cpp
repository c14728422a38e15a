#include <formweave/KsDialogComponent.h>

#include "../qt/KsRelay.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsColumnDialog.h>
#include <formweave/KsDialogChoice.h>
#include <formweave/KsDialogSlider.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTabDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QApplication>
#include <QBoxLayout>
#include <QFrame>
#include <algorithm>

KS_KIT_SOURCE(KsDialogComponent, KsTopComponent)

KS_SKIN_SOURCE(KsDialogComponent, DialogComponent, "DialogComponent.arb",
               "DialogComponentEdgeStyleNone", "DialogComponentEdgeStyleShadowIn",
               "DialogComponentEdgeStyleShadowOut")

char* KsDialogComponent::DialogComponent = const_cast<char*>(
    KS_SKIN_PART("DialogComponentEdgeStyleNone", KS_SKIN_CLOSED_BOX("0.75 0.75 0.75"))
        KS_SKIN_PART("DialogComponentEdgeStyleShadowIn", KS_SKIN_CLOSED_BOX("0.5 0.5 0.5"))
            KS_SKIN_PART("DialogComponentEdgeStyleShadowOut", KS_SKIN_CLOSED_BOX("0.8 0.8 0.8")));

namespace {

constexpr int openLimit = KsSizeDB::openLimit;

bool isStack(const KsFormweave* node)
{
    return node->isOfType(KsColumnDialog::getClassTypeId()) ||
           node->isOfType(KsRowDialog::getClassTypeId());
}

// Classes of which only others derive; a file may hold them all the same.
bool isBaseOfControls(KsType type)
{
    return type == KsDialogComponent::getClassTypeId() ||
           type == KsDialogChoice::getClassTypeId() || type == KsDialogSlider::getClassTypeId();
}

// A class that only others derive from, met in a file, shows nothing in a scene.
bool hasForm3D(const KsDialogComponent* node)
{
    const KsType type = node->getTypeId();
    return !isBaseOfControls(type) && type != KsDialogGroup::getClassTypeId();
}

} // namespace

KsDialogComponent::KsDialogComponent()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("EdgeStyle",
                {{"NONE", NONE}, {"SHADOW_IN", SHADOW_IN}, {"SHADOW_OUT", SHADOW_OUT}});
    build.field("width", width, 0);
    build.field("height", height, 0);
    build.field("fixedWidth", fixedWidth, false);
    build.field("fixedHeight", fixedHeight, false);
    build.field("minWidth", minWidth, 0);
    build.field("minHeight", minHeight, 0);
    build.field("maxWidth", maxWidth, 0);
    build.field("maxHeight", maxHeight, 0);
    build.field("labelVisibility", labelVisibility, true);
    build.enumField("edgeStyle", edgeStyle, "EdgeStyle", NONE);
    if (build.isFirst()) {
        const KsType group = KsGroup::getClassTypeId();
        build.part("mainCptSeparator", KsSeparator::getClassTypeId(), "geomSwitch", KsHiddenPart);
        build.part("edgeStyleSwitch", KsSwitch::getClassTypeId(), "mainCptSeparator", KsHiddenPart);
        // In the order of the enum's values: the value is the switch's.
        build.part("edgeStyleNone", group, "edgeStyleSwitch", KsPublicPart);
        build.part("edgeStyleShadowIn", group, "edgeStyleSwitch", KsPublicPart);
        build.part("edgeStyleShadowOut", group, "edgeStyleSwitch", KsPublicPart);
    }
}

KsDialogComponent::~KsDialogComponent() { KsDialogComponent::destroyWidget(); }

QWidget* KsDialogComponent::getWidget() const { return m_widget; }

void* KsDialogComponent::getLayout() const { return m_layout.data(); }

QWidget* KsDialogComponent::getLabelWidget() { return nullptr; }

void KsDialogComponent::eventNotify(unsigned int, unsigned long long) {}

void KsDialogComponent::setLabelSize(KbVec2i32& size) { m_labelSize = size; }

void KsDialogComponent::setComponentSize(KbVec2i32& size) { m_componentSize = size; }

KbVec2i32 KsDialogComponent::getComponentInitSize() { return {0, 0}; }

KbVec2i32 KsDialogComponent::getLabelInitSize()
{
    m_labelInitSize = getLabelPixelSize(label, nullptr);
    return m_labelInitSize;
}

void KsDialogComponent::setFocus() {}
void KsDialogComponent::setAcrossStack(bool) {}
void KsDialogComponent::changeWidgetEnable(int) {}
void KsDialogComponent::updateComponentWidget() {}

void KsDialogComponent::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    size.setValue(200, 28);
    min.setValue(25, 25);
    max.setValue(openLimit, openLimit);
}

void KsDialogComponent::changeEnable()
{
    if (m_widget) m_widget->setEnabled(enable);
}

void KsDialogComponent::changeEdgeStyle()
{
    auto* frame = qobject_cast<QFrame*>(m_widget.data());
    if (!frame) return;
    const int shape = edgeStyle != NONE ? QFrame::StyledPanel : QFrame::NoFrame;
    const int shadow = edgeStyle == SHADOW_OUT ? QFrame::Raised : QFrame::Sunken;
    frame->setFrameStyle(shape | shadow); // at once: each of the two measures the frame anew
}

void KsDialogComponent::changeWidth()
{
    m_defaultSize[0] = width;
    m_asked.update(sizeFields(), 0, 0);
}

void KsDialogComponent::changeHeight()
{
    m_defaultSize[1] = height;
    m_asked.update(sizeFields(), 1, 1);
}

void KsDialogComponent::changeMinMaxSize()
{
    m_defaultMin.setValue(minWidth, minHeight);
    m_defaultMax.setValue(maxWidth, maxHeight);
    m_asked.update(sizeFields(), 2, 5);
}

void KsDialogComponent::change3DEdgeStyle()
{
    setSwitchValue(getAnyPart("edgeStyleSwitch", false), edgeStyle);
}

void KsDialogComponent::getDefaultState(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) const
{
    size = m_defaultSize;
    min = m_defaultMin;
    max = m_defaultMax;
}

void KsDialogComponent::resolveSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max,
                                    const KsSizeDefaults& defaults)
{
    min.setValue(ksBounded(minWidth), ksBounded(minHeight));
    max.setValue(ksBounded(maxWidth), ksBounded(maxHeight));
    size.setValue(ksBounded(width), ksBounded(height));
    ksFillSizes(size, min, max, defaults);
    for (int axis = 0; axis < 2; ++axis) {
        size[axis] = std::min(std::max(size[axis], min[axis]), max[axis]);
        if (axis == 0 ? fixedWidth : fixedHeight) min[axis] = max[axis] = size[axis];
    }
}

void KsDialogComponent::getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    resolveSize(size, min, max,
                [this](KbVec2i32& s, KbVec2i32& mn, KbVec2i32& mx) { getDefaultSize(s, mn, mx); });
}

void KsDialogComponent::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position,
                                    int build2D)
{
    KsTopComponent::buildWidget(parent, size, position, build2D);
    if (!m_parent) {
        // No container aligns this element: it lays out its own zones.
        KbVec2i32 labelZone = getLabelInitSize();
        setLabelSize(labelZone);
        const KbVec2i32 control = getComponentInitSize();
        const int labelHeight = labelVisibility ? getLabelInitSize()[1] : 0;
        KbVec2i32 controlZone(std::max(control[0], 0), std::max(control[1], labelHeight));
        setComponentSize(controlZone);
    }
    KbVec2i32 s, mn, mx;
    getSize(s, mn, mx);
    for (int axis = 0; axis < 2; ++axis) {
        if (size[axis]) s[axis] = std::min(std::max(size[axis], mn[axis]), mx[axis]);
        if (axis == 0 ? fixedWidth : fixedHeight) mn[axis] = mx[axis] = s[axis];
    }
    if (m_firstBuild) {
        m_defaultSize.setValue(width, height);
        m_defaultMin.setValue(minWidth, minHeight);
        m_defaultMax.setValue(maxWidth, maxHeight);
        m_asked.record(sizeFields());
    }
    setSize(s[0], s[1], mn[0], mn[1], mx[0], mx[1]);
    setDefaultState();
    m_position = position;
    if (build2D) {
        m_size2D = s;
        if (!existWidget(m_widget)) {
            createComponentWidget(parent);
            m_firstBuild = 0;
            // A class that only others derive from, met in a file, shows an empty frame.
            if (isBaseOfControls(getTypeId())) adoptFrame(new QFrame(parent));
        }
        updateComponentWidget();
    } else if (hasForm3D(this)) {
        m_size3D = s;
        if (!isBuilt3D()) {
            create3DDialogComponent();
            m_firstBuild = 0;
        }
        update3DDialogComponent();
    }
    m_labelVisibilitySensor.arm(this, labelVisibility);
    m_edgeStyleSensor.arm(this, edgeStyle);
    m_widthSensor.arm(this, width);
    m_heightSensor.arm(this, height);
    m_minWidthSensor.arm(this, minWidth);
    m_minHeightSensor.arm(this, minHeight);
    m_maxWidthSensor.arm(this, maxWidth);
    m_maxHeightSensor.arm(this, maxHeight);

    if (build2D) {
        createLabelWidget();
        updateLabelWidget();
        updateControlWidget();
    } else {
        if (!isBuilt3D()) create3DControl();
        update3DControl();
        update3DLabel();
    }
    armSensors();
}

KsAskedSizes::Fields KsDialogComponent::sizeFields()
{
    return {&width, &height, &minWidth, &minHeight, &maxWidth, &maxHeight};
}

void KsDialogComponent::setSize(int w, int h, int minW, int minH, int maxW, int maxH)
{
    ksWriteSilently(m_widthSensor, width, w);
    ksWriteSilently(m_heightSensor, height, h);
    ksWriteSilently(m_minWidthSensor, minWidth, minW);
    ksWriteSilently(m_minHeightSensor, minHeight, minH);
    ksWriteSilently(m_maxWidthSensor, maxWidth, maxW);
    ksWriteSilently(m_maxHeightSensor, maxHeight, maxH);
}

void KsDialogComponent::setDefaultState()
{
    ksMarkDefault(width, m_defaultSize[0] == 0);
    ksMarkDefault(height, m_defaultSize[1] == 0);
    ksMarkDefault(minWidth, m_defaultMin[0] == 0 || fixedWidth);
    ksMarkDefault(minHeight, m_defaultMin[1] == 0 || fixedHeight);
    ksMarkDefault(maxWidth, m_defaultMax[0] == 0 || maxWidth == openLimit || fixedWidth);
    ksMarkDefault(maxHeight, m_defaultMax[1] == 0 || maxHeight == openLimit || fixedHeight);
}

void KsDialogComponent::writeFields(KsWriteAction* action)
{
    const KsAskedSizes::Written asked(m_asked, sizeFields(), m_build2D);
    KsTopComponent::writeFields(action);
}

void KsDialogComponent::copyContents(const KsNode* from, Copier& copier)
{
    KsTopComponent::copyContents(from, copier);
    // A copy asks for what the original was asked for, not for what a layout found.
    static_cast<const KsDialogComponent*>(from)->m_asked.restore(sizeFields());
}

void KsDialogComponent::resetSize()
{
    m_componentInitSize.setValue(-1, -1);
    m_spareSize.setValue(0, 0);
    m_labelSize.setValue(0, 0);
    m_labelInitSize.setValue(0, 0);
    m_componentSize.setValue(0, 0);
    height = 0;
    width = 0;
    // The zeros ask for nothing.
    height.setDefault(true);
    width.setDefault(true);
}

void KsDialogComponent::updateFromSensor(KsSensor* sensor)
{
    if (m_labelVisibilitySensor.is(sensor)) {
        updateBoth(this, &KsDialogComponent::changeLabelVisibility,
                   &KsDialogComponent::change3DLabelVisibility);
    } else if (m_edgeStyleSensor.is(sensor)) {
        updateBoth(this, &KsDialogComponent::changeEdgeStyle,
                   &KsDialogComponent::change3DEdgeStyle);
    } else if (m_widthSensor.is(sensor)) {
        changeWidth();
    } else if (m_heightSensor.is(sensor)) {
        changeHeight();
    } else if (m_minWidthSensor.is(sensor) || m_minHeightSensor.is(sensor) ||
               m_maxWidthSensor.is(sensor) || m_maxHeightSensor.is(sensor)) {
        changeMinMaxSize();
    } else {
        KsTopComponent::updateFromSensor(sensor);
    }
}

KbVec2i32 KsDialogComponent::size2D() const
{
    return m_size2D[0] < 0 ? KbVec2i32(width, height) : m_size2D;
}

KbVec2i32 KsDialogComponent::size3D() const
{
    return m_size3D[0] < 0 ? KbVec2i32(width, height) : m_size3D;
}

void KsDialogComponent::frameResized(int newWidth, int newHeight)
{
    m_size2D.setValue(newWidth, newHeight);
    width = newWidth;
    height = newHeight;
}

void KsDialogComponent::get2DComponentSize(KbVec2i32& size, KbVec2i32& position)
{
    const KbVec2i32 frame = size2D();
    const int style = edgeStyle;
    const int inset = style == SHADOW_IN ? 2 : style == SHADOW_OUT ? 0 : frameMargin;
    const int labelZone = labelVisibility ? m_labelSize[0] + zoneGap : 0;
    // The zones lose the margin whatever the edge style: only the place changes.
    size.setValue(frame[0] - 2 * frameMargin - labelZone, frame[1] - 2 * frameMargin);
    position.setValue(inset + labelZone, inset);
}

void KsDialogComponent::get3DComponentSize(KbVec2i32& size, KbVec2i32& position)
{
    const KbVec2i32 frame = size3D();
    const int labelZone = labelVisibility ? m_labelSize[0] + zoneGap : 0;
    const int w = frame[0] - 2 * frameMargin - labelZone;
    size.setValue(w, frame[1] - 2 * frameMargin);
    position.setValue(static_cast<int>(frameMargin + labelZone + w / 2.0 - frame[0] / 2.0), 0);
}

void KsDialogComponent::createComponentWidget(QWidget* parent)
{
    m_widget = parent;
    const bool inColumn = m_parent && (m_parent->isOfType(KsColumnDialog::getClassTypeId()) ||
                                       m_parent->isOfType(KsTabDialog::getClassTypeId()));
    KsRoomForLayout room = ksFindLayout(m_parent, this, parent);
    if (inColumn) {
        m_layout = new QVBoxLayout;
        const bool grows = fixedHeight || height == maxHeight;
        m_spacer = new QSpacerItem(20, 0, QSizePolicy::Minimum,
                                   grows ? QSizePolicy::Expanding : QSizePolicy::Fixed);
    } else {
        m_layout = new QHBoxLayout;
        m_spacer = new QSpacerItem(0, 20, fixedWidth ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                                   QSizePolicy::Minimum);
    }
    m_frameLayout = m_layout;
    m_spacerPlaced = false;
    if (room.layout) room.layout->insertLayout(room.index, m_layout);
    m_layout->setObjectName("LMNKsDialogComponentLayout");
    m_layout->setSpacing(0);
    m_layout->setContentsMargins(0, 0, 0, 0);
}

void KsDialogComponent::adoptFrame(QWidget* frame)
{
    QWidget* earlier = m_layoutFrame;
    m_widget = frame;
    m_layoutFrame = frame;
    if (m_frameLayout) {
        const int place = earlier ? m_frameLayout->indexOf(earlier) : -1;
        if (place >= 0) m_frameLayout->removeWidget(earlier);
        m_frameLayout->insertWidget(std::max(place, 0), frame, 0);
    }
    placeSpacer();
    // A frame that is made while its window is on screen does not show by itself.
    const QWidget* parent = frame->parentWidget();
    if (earlier ? !earlier->isHidden() : parent && parent->isVisible()) frame->show();
}

void KsDialogComponent::placeSpacer()
{
    if (!m_frameLayout || m_spacerPlaced) return;
    m_frameLayout->addSpacerItem(m_spacer);
    m_spacerPlaced = true;
}

void KsDialogComponent::limitFrame(QWidget* frame, FrameMinimum minimum)
{
    const bool fields = minimum == FROM_MINIMUM;
    frame->setMinimumSize(std::max<int>(fields ? minWidth : width, 0),
                          std::max<int>(fields ? minHeight : height, 0));
    if (fixedWidth) frame->setMaximumWidth(std::max<int>(width, 0));
    if (fixedHeight) frame->setMaximumHeight(std::max<int>(height, 0));
}

void KsDialogComponent::destroyWidget()
{
    if (m_build2D) {
        // Until a class has made its own frame the slot holds the parent's; a class may hold its
        // frame in the label's slot too.
        QWidget* frame = m_widget != m_parentWidget ? m_widget.data() : nullptr;
        if (m_labelWidget != frame) ksDeleteWidget(m_labelWidget);
        ksDeleteWidget(frame);
        m_labelWidget = nullptr;
        m_widget = nullptr;
        m_relay = nullptr;
        if (m_frameLayout && !m_spacerPlaced) delete m_spacer;
        delete m_frameLayout.data();
        m_layout = nullptr;
        m_layoutFrame = nullptr;
        m_spacer = nullptr;
        m_spacerPlaced = false;
        m_size2D.setValue(-1, -1);
    }
    KsTopComponent::destroyWidget();
}

void KsDialogComponent::getBoundingBox(KsGetBoundingBoxAction* action)
{
    buildOn3DTraversal([this] {
        detachFromUnbuiltTop(getFirstTopParent(0, 1));
        KbVec2i32 size(0, 0), place(0, 0);
        buildWidget(nullptr, size, place, 0);
    });
    KsTopComponent::getBoundingBox(action);
}

void KsDialogComponent::create3DDialogComponent()
{
    dress3D(&skinFamily(), {{"edgeStyleNone", "DialogComponentEdgeStyleNone"},
                            {"edgeStyleShadowIn", "DialogComponentEdgeStyleShadowIn"},
                            {"edgeStyleShadowOut", "DialogComponentEdgeStyleShadowOut"}});
    auto* content = static_cast<KsGroup*>(getAnyPart("mainCptSeparator", true));
    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    m_mainScale = new KsScale;
    content->insertChild(m_mainScale.get(), 0);
    m_mainTranslation = new KsTranslation;
    geometry->insertChild(m_mainTranslation.get(), 0);
    geometry->insertChild(m_pickStyle.get(), 0);
    geometry->insertChild(m_material.get(), 0);
    if (!isStack(this)) {
        m_undoTransform = new KsTransform;
        geometry->addChild(m_undoTransform.get());
    }
    change3DEdgeStyle();
    apply3DParentTranslation();
    m_3DDepth = -1;
    show3D(!m_parent || m_parent->showsChildren3D());
    if (!enable.getValue()) change3DEnable();
}

void KsDialogComponent::update3DDialogComponent()
{
    KbVec3f offset(0, 0, 0);
    auto* container = ksCast<KsDialogGroup>(m_parent);
    if (container && container->canBeTraversed()) {
        // From the container's centre to its upper left corner.
        const KbVec2i32 frame = container->size3D();
        if (container->m_mainTranslation) offset = container->m_mainTranslation->translation;
        offset += KbVec3f(-frame[0] / 2.0f, frame[1] / 2.0f, 0);
    }
    const KbVec2i32 frame = size3D();
    const float w = static_cast<float>(frame[0]);
    const float h = static_cast<float>(frame[1]);
    m_mainTranslation->translation =
        offset + KbVec3f(static_cast<float>(m_position[0]) + w / 2,
                         -static_cast<float>(m_position[1]) - h / 2, 0);
    m_mainScale->scaleFactor = KbVec3f(w, h, 1);
    if (m_undoTransform)
        undoTransformMatrix(getAnyPart("mainCptSeparator", false), m_undoTransform.get());
}

void KsDialogComponent::refresh3DSkin()
{
    KsTopComponent::refresh3DSkin();
    m_3DDepth = -1;
    if (is3DLive() && !(m_parent && m_parent->is3DLive())) {
        // The outermost element lays out what is below it anew.
        KbVec2i32 size = size3D();
        KbVec2i32 place = m_position;
        buildWidget(nullptr, size, place, 0);
    }
}
