#include <formweave/KsDialogCheckBox.h>

#include "../qt/KsDialogQCheckBox.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"
#include "KsTextLimits.h"

#include <arborium/actions/KsPath.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsDialogCheckBoxAuditor.h>

#include <algorithm>

KS_KIT_SOURCE(KsDialogCheckBox, KsDialogComponent)

char* KsDialogCheckBox::DialogCheckBox = const_cast<char*>(
    KS_SKIN_PART("DialogCheckBoxFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 0.7"))
        KS_SKIN_PART("DialogCheckBoxStateOff", KS_SKIN_OPEN_BOX("1 1 1"))
            KS_SKIN_PART("DialogCheckBoxStateOn", KS_SKIN_OPEN_BOX("0 0 0")));

namespace {

constexpr int frameMargin = 3;
constexpr int zoneGap = 2;
constexpr int toggleWidth = 26; // the toggle and the room about it, beside the text
constexpr int textHeight = 8;   // the room above and below the text
constexpr float toggleSize = 14;

KsSkinFamily& skinFamily()
{
    static auto& family = *new KsSkinFamily{
        "DialogCheckBox.arb",
        &KsDialogCheckBox::DialogCheckBox,
        {"DialogCheckBoxFrame", "DialogCheckBoxStateOff", "DialogCheckBoxStateOn"}};
    return family;
}

QString toQString(const KbString& text)
{
    return QString::fromStdU16String(ksShownText(text).toUtf16());
}

} // namespace

KsDialogCheckBox::KsDialogCheckBox()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("state", state, false);
    build.field("onString", onString, "");
    build.field("offString", offString, "");
    if (build.isFirst()) {
        const KsType group = KsGroup::getClassTypeId();
        const KsType separator = KsSeparator::getClassTypeId();
        const KsType switchType = KsSwitch::getClassTypeId();
        build.part("labelSep", separator, "geomSwitch", KsHiddenPart);
        build.part("labelSwitch", switchType, "labelSep", KsHiddenPart);
        build.part("labelProp", group, "labelSwitch", KsPublicPart);
        build.part("frameSep", separator, "geomSwitch", KsHiddenPart);
        build.part("frame", group, "frameSep", KsPublicPart);
        build.part("stateSep", separator, "geomSwitch", KsHiddenPart);
        build.part("stateSwitch", switchType, "stateSep", KsHiddenPart);
        build.part("stateOff", group, "stateSwitch", KsPublicPart);
        build.part("stateOn", group, "stateSwitch", KsPublicPart);
        build.part("onOffStringSep", separator, "geomSwitch", KsHiddenPart);
        build.part("onOffStringProp", group, "onOffStringSep", KsPublicPart);
    }
    m_onOffBBox = staleBox();
}

KsDialogCheckBox::~KsDialogCheckBox()
{
    KsDialogCheckBox::destroyWidget();
}

int KsDialogCheckBox::isSkinLoaded()
{
    return skinFamily().loaded;
}

void KsDialogCheckBox::setSkinLoaded(int loaded)
{
    skinFamily().loaded = loaded;
}

void KsDialogCheckBox::change3DSkin()
{
    skinFamily().change();
}

void KsDialogCheckBox::addAuditor(KsDialogCheckBoxAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsDialogCheckBox::removeAuditor(KsDialogCheckBoxAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsDialogCheckBox::applyDlgCptAuditor()
{
    if (getAuditorListLength()) {
        forEachAuditor([this](KsAuditor* auditor) {
            static_cast<KsDialogCheckBoxAuditor*>(auditor)->dialogCheckBox(this);
        });
    } else if (const KsRef<KsFormweave> parent = m_parent) {
        parent->applyAuditor(this);
    }
}

void KsDialogCheckBox::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position,
                                   int build2D)
{
    KsDialogComponent::buildWidget(parent, size, position, build2D);
    if (build2D) {
        if (!m_labelWidget) createLabelWidget();
        updateLabelWidget();
        if (!m_checkBoxRelay) createCheckBoxWidget();
        updateCheckBoxWidget();
    } else {
        if (!isBuilt3D()) create3DDialogCheckBox();
        update3DCheckBox();
        update3DLabel();
    }
    m_stateSensor.arm(this, state);
    m_onStringSensor.arm(this, onString);
    m_offStringSensor.arm(this, offString);
}

void KsDialogCheckBox::destroyWidget()
{
    if (m_build2D) {
        ksDeleteWidget(m_checkBoxRelay);
        ksDeleteWidget(m_labelWidget);
        m_checkBoxRelay = nullptr;
    }
    KsDialogComponent::destroyWidget();
}

void KsDialogCheckBox::updateFromSensor(KsSensor* sensor)
{
    if (m_onStringSensor.is(sensor) || m_offStringSensor.is(sensor)) {
        updateBoth(this, &KsDialogCheckBox::changeOnOffString,
                   &KsDialogCheckBox::change3DOnOffString);
    } else if (m_stateSensor.is(sensor)) {
        updateBoth(this, &KsDialogCheckBox::changeState, &KsDialogCheckBox::change3DState);
        updateBoth(this, &KsDialogCheckBox::changeOnOffString,
                   &KsDialogCheckBox::change3DOnOffString);
    } else {
        KsDialogComponent::updateFromSensor(sensor);
    }
}

QWidget* KsDialogCheckBox::getLabelWidget()
{
    return m_labelWidget;
}

// Sizes.

KbVec2i32 KsDialogCheckBox::getComponentInitSize()
{
    if (m_componentInitSize[0] != -1) return m_componentInitSize;
    const KbVec2i32 room(toggleWidth, textHeight);
    const KbVec2i32 on = getLabelPixelSize(onString, nullptr);
    const KbVec2i32 off = getLabelPixelSize(offString, nullptr);
    m_componentInitSize =
        KbVec2i32(std::max(on[0], off[0]), std::max(on[1], off[1])) + room;
    m_onStringSize = on + room;
    m_offStringSize = off + room;
    // Narrower without its label, though the label takes no room then: forms rely on it.
    if (!labelVisibility) m_componentInitSize[0] -= m_labelSize[0];
    return m_componentInitSize;
}

void KsDialogCheckBox::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    KsDialogComponent::getDefaultSize(size, min, max);
    size = m_componentSize;
    if (labelVisibility) size[0] += m_labelSize[0] + zoneGap;
    size[1] = std::max({size[1], m_onStringSize[1], m_offStringSize[1]});
}

// The window.

void KsDialogCheckBox::createLabelWidget()
{
    KsDialogQCheckBox* earlier = m_checkBoxRelay;
    QWidget* parent = earlier ? m_parentWidget : m_widget.data();
    auto* relay = new KsDialogQCheckBox(parent, this);
    m_checkBoxRelay = relay;
    m_widget = relay;
    changeLabel();
    changeState();
    changeLabelAlignment();
    changeOnOffString();
    changeEnable();
    changeLabelVisibility();
    KsDialogComponent::changeEdgeStyle();
    limitFrame(relay);
    adoptFrame(relay);
    if (earlier) earlier->handOverTo(relay);
}

void KsDialogCheckBox::updateLabelWidget()
{
    if (!m_checkBoxRelay) return;
    const int h = getLabelPixelSize(label, nullptr)[1];
    m_checkBoxRelay->updateLabelWidget(
        frameMargin, frameMargin + (size2D()[1] - frameMargin - h) / 2, m_labelSize[0], h);
}

void KsDialogCheckBox::updateCheckBoxWidget()
{
    if (!m_checkBoxRelay) return;
    const KbVec2i32 frame = size2D();
    const int w = frame[0] - 2 * frameMargin;
    const int h = frame[1] - 2 * frameMargin;
    const int labelZone = m_labelSize[0] + zoneGap;
    if (labelVisibility) m_checkBoxRelay->updateCheckBoxWidget(labelZone + 2, 3, w - labelZone, h);
    else m_checkBoxRelay->updateCheckBoxWidget(2, 3, w, h);
}

void KsDialogCheckBox::eventNotify(unsigned int value, unsigned long long)
{
    {
        const KsSensorSilencer silencer(m_stateSensor.get());
        state.setValue(value != 0);
    }
    // The auditors see the new value; the widget's text follows behind them.
    applyDlgCptAuditor();
    updateBoth(this, &KsDialogCheckBox::changeState, &KsDialogCheckBox::change3DState);
}

void KsDialogCheckBox::changeState()
{
    if (m_checkBoxRelay) m_checkBoxRelay->changeState(state);
    updateBoth(this, &KsDialogCheckBox::changeOnOffString, &KsDialogCheckBox::change3DOnOffString);
}

const KbString& KsDialogCheckBox::shownString() const
{
    return !state && !offString.getValue().isEmpty() ? offString.getValue() : onString.getValue();
}

void KsDialogCheckBox::changeOnOffString()
{
    if (m_checkBoxRelay)
        m_checkBoxRelay->changeOnOffString(toQString(convertToCString(shownString(), this)));
}

void KsDialogCheckBox::changeLabel()
{
    if (!m_checkBoxRelay) return;
    m_checkBoxRelay->changeLabel(toQString(convertToCString(label, nullptr)));
    updateLabelWidget();
}

void KsDialogCheckBox::changeLabelAlignment()
{
    if (m_checkBoxRelay) m_checkBoxRelay->changeLabelAlignment(ksQtAlignment(labelAlignment));
}

void KsDialogCheckBox::changeLabelVisibility()
{
    if (!m_checkBoxRelay) return;
    m_checkBoxRelay->changeLabelVisibility(labelVisibility);
    updateCheckBoxWidget();
}

void KsDialogCheckBox::changeEdgeStyle()
{
    KsDialogComponent::changeEdgeStyle();
}

void KsDialogCheckBox::changeEnable()
{
    KsDialogComponent::changeEnable();
}

void KsDialogCheckBox::changeWidgetEnable(int) {}

// The scene.

void KsDialogCheckBox::create3DDialogCheckBox()
{
    loadFontProperties();
    skinFamily().loadOnce();
    setPartAsDefault("frame", "DialogCheckBoxFrame", true);
    setPartAsDefault("labelProp", "DialogTextProperties", true);
    setPartAsDefault("stateOff", "DialogCheckBoxStateOff", true);
    setPartAsDefault("stateOn", "DialogCheckBoxStateOn", true);
    setPartAsDefault("onOffStringProp", "DialogTextProperties", true);

    const auto group = [this](const char* part) {
        return static_cast<KsGroup*>(getAnyPart(part, true));
    };
    KsGroup* geometry = group("geomSwitch");
    KsGroup* frameSep = group("frameSep");
    KsGroup* stateSep = group("stateSep");
    KsGroup* labelSwitch = group("labelSwitch");
    KsGroup* onOffStringSep = group("onOffStringSep");

    m_frameScale = new KsScale;
    frameSep->insertChild(m_frameScale.get(), 0);
    m_frameTranslation = new KsTranslation;
    geometry->insertChild(m_frameTranslation.get(), geometry->findChild(frameSep));
    m_stateTransform = new KsTransform;
    geometry->insertChild(m_stateTransform.get(), geometry->findChild(stateSep));
    auto* toggleScale = new KsScale;
    toggleScale->scaleFactor = KbVec3f(toggleSize, toggleSize, 1);
    stateSep->insertChild(toggleScale, 0);
    m_stateTranslation = new KsTranslation;
    stateSep->insertChild(m_stateTranslation.get(), 0);

    m_labelTranslation = new KsTranslation;
    labelSwitch->insertChild(m_labelTranslation.get(), 0);
    m_labelText = new KsText3;
    m_labelText->parts = KsText3::FRONT;
    labelSwitch->addChild(m_labelText.get());
    change3DLabel();
    m_onOffTranslation = new KsTranslation;
    onOffStringSep->insertChild(m_onOffTranslation.get(), 0);
    m_onOffText = new KsText3;
    m_onOffText->parts = KsText3::FRONT;
    onOffStringSep->addChild(m_onOffText.get());
    change3DOnOffString();

    setSwitchValue(group("stateSwitch"), state ? 1 : 0);
    setSwitchValue(labelSwitch, labelVisibility ? KsSwitch::ALL : KsSwitch::NONE);
    addFinishCallback(finishCB3D);
    setBuilt3D(1);
}

void KsDialogCheckBox::update3DCheckBox()
{
    const KbVec2i32 frame = size3D();
    const float labelZone =
        labelVisibility ? static_cast<float>(m_labelSize[0] + zoneGap) : 0.0f;
    const float w = static_cast<float>(frame[0] - 2 * frameMargin) - labelZone;
    const float h = static_cast<float>(frame[1] - 2 * frameMargin);
    const float x = frameMargin + labelZone;
    m_frameTranslation->translation = KbVec3f(x + w / 2 - static_cast<float>(frame[0]) / 2, 0, 0);
    m_frameScale->scaleFactor = KbVec3f(w, h, 1);
    undoTransformMatrix(getAnyPart("frameSep", false), m_stateTransform.get());
    m_stateTranslation->translation = KbVec3f(-w / 2 + 10, 0, 0);
    if (m_onOffBBox == staleBox())
        m_onOffBBox = measure3DText(getAnyPart("onOffStringProp", false), m_onOffText.get());
    m_onOffTranslation->translation =
        KbVec3f(-w / 2 + 20, -(m_onOffBBox.getMax()[1] + m_onOffBBox.getMin()[1]) / 2, 0);
}

void KsDialogCheckBox::update3DLabel()
{
    if (!isLabelCachedBBox())
        setLabelCacheBBox(measure3DText(getAnyPart("labelProp", false), m_labelText.get()));
    const KbBox3f box = getLabelCachedBBox();
    const int free =
        static_cast<int>(static_cast<float>(m_labelSize[0]) - (box.getMax()[0] - box.getMin()[0]));
    const int alignment = labelAlignment;
    const int x = frameMargin + (alignment == CENTER ? free / 2 : alignment == RIGHT ? free : 0);
    m_labelTranslation->translation =
        KbVec3f(static_cast<float>(x) - static_cast<float>(size3D()[0]) / 2,
                -(box.getMax()[1] + box.getMin()[1]) / 2, 0);
}

void KsDialogCheckBox::change3DState()
{
    setSwitchValue(getAnyPart("stateSwitch", false), state ? 1 : 0);
    change3DOnOffString();
}

void KsDialogCheckBox::change3DOnOffString()
{
    showText3D(m_onOffText.get(), convertToCString(shownString(), this));
    m_onOffBBox = staleBox();
}

void KsDialogCheckBox::change3DLabel()
{
    showText3D(m_labelText.get(), convertToCString(label, nullptr));
    KsFormweave::change3DLabel();
    if (isBuilt3D()) update3DLabel();
}

void KsDialogCheckBox::change3DLabelAlignment()
{
    update3DLabel();
}

void KsDialogCheckBox::change3DLabelVisibility()
{
    setSwitchValue(getAnyPart("labelSwitch", false),
                   labelVisibility ? KsSwitch::ALL : KsSwitch::NONE);
    update3DCheckBox();
}

void KsDialogCheckBox::refresh3DSkin()
{
    m_onOffBBox = staleBox();
    KsDialogComponent::refresh3DSkin();
}

void KsDialogCheckBox::finishCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogCheckBox*>(dragger)->draggerFinishCallback3D();
}

void KsDialogCheckBox::draggerFinishCallback3D()
{
    const KsPath* path = getPickPath();
    const auto hit = [&](const char* part) {
        const KsNode* node = getAnyPart(part, false);
        return node && path->containsNode(node);
    };
    if (!path || !(hit("frameSep") || hit("stateSep") || hit("onOffStringSep"))) return;
    const KsKeepAlive keep(this);
    set3DCurrentActive(this);
    set3DInactive();
    state = !state;
    updateBoth(this, &KsDialogCheckBox::changeOnOffString, &KsDialogCheckBox::change3DOnOffString);
    applyDlgCptAuditor();
}
