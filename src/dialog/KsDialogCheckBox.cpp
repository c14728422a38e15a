#include <formweave/KsDialogCheckBox.h>

#include "../qt/KsDialogQCheckBox.h"
#include "KsControlParts.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsDialogCheckBoxAuditor.h>

#include <algorithm>

KS_KIT_SOURCE(KsDialogCheckBox, KsDialogComponent)

KS_SKIN_SOURCE(KsDialogCheckBox, DialogCheckBox, "DialogCheckBox.arb", "DialogCheckBoxFrame",
               "DialogCheckBoxStateOff", "DialogCheckBoxStateOn")

char* KsDialogCheckBox::DialogCheckBox =
    const_cast<char*>(KS_SKIN_PART("DialogCheckBoxFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 0.7"))
                          KS_SKIN_PART("DialogCheckBoxStateOff", KS_SKIN_OPEN_BOX("1 1 1"))
                              KS_SKIN_PART("DialogCheckBoxStateOn", KS_SKIN_OPEN_BOX("0 0 0")));

namespace {

constexpr int toggleWidth = 26; // the toggle and the room about it, beside the text
constexpr int textHeight = 8;   // the room above and below the text
constexpr float toggleSize = 14;

} // namespace

KsDialogCheckBox::KsDialogCheckBox()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("state", state, false);
    build.field("onString", onString, "");
    build.field("offString", offString, "");
    ksAddLabelParts(build);
    ksAddParts(build, {{"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frame", KsPartKind::Look, "frameSep"},
                       {"stateSep", KsPartKind::Separator, "geomSwitch"},
                       {"stateSwitch", KsPartKind::Switch, "stateSep"},
                       {"stateOff", KsPartKind::Look, "stateSwitch"},
                       {"stateOn", KsPartKind::Look, "stateSwitch"},
                       {"onOffStringSep", KsPartKind::Separator, "geomSwitch"},
                       {"onOffStringProp", KsPartKind::Look, "onOffStringSep"}});
}

KsDialogCheckBox::~KsDialogCheckBox() = default;

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
    reportAction(this, &KsDialogCheckBoxAuditor::dialogCheckBox);
}

void KsDialogCheckBox::armSensors()
{
    m_stateSensor.arm(this, state);
    m_onStringSensor.arm(this, onString);
    m_offStringSensor.arm(this, offString);
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

// Sizes.

KbVec2i32 KsDialogCheckBox::getComponentInitSize()
{
    return initSizeOnce([this] {
        const KbVec2i32 room(toggleWidth, textHeight);
        m_onStringSize = getLabelPixelSize(onString, nullptr) + room;
        m_offStringSize = getLabelPixelSize(offString, nullptr) + room;
        return KbVec2i32(std::max(m_onStringSize[0], m_offStringSize[0]),
                         std::max(m_onStringSize[1], m_offStringSize[1]));
    });
}

void KsDialogCheckBox::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    getZonesSize(size, min, max, std::max(m_onStringSize[1], m_offStringSize[1]));
}

// The window.

void KsDialogCheckBox::createLabelWidget()
{
    installRelay(new KsDialogQCheckBox(relayParent(), this), [this] {
        changeLabel();
        changeState();
        changeLabelAlignment();
        changeOnOffString();
        changeEnable();
        changeLabelVisibility();
        KsDialogComponent::changeEdgeStyle();
        limitFrame(m_widget);
    });
}

void KsDialogCheckBox::updateControlWidget()
{
    if (auto* relay = relayAs<KsDialogQCheckBox>()) {
        const WindowZone zone = controlZone2D(2);
        relay->updateCheckBoxWidget(zone.x, zone.y, zone.width, zone.height);
    }
}

void KsDialogCheckBox::eventNotify(unsigned int value, unsigned long long)
{
    const KsKeepAlive keep(this);
    ksWriteSilently(m_stateSensor, state, value != 0);
    // The auditors see the new value; the widget's text follows behind them.
    applyDlgCptAuditor();
    updateBoth(this, &KsDialogCheckBox::changeState, &KsDialogCheckBox::change3DState);
}

void KsDialogCheckBox::changeState()
{
    if (auto* relay = relayAs<KsDialogQCheckBox>()) relay->changeState(state);
    updateBoth(this, &KsDialogCheckBox::changeOnOffString, &KsDialogCheckBox::change3DOnOffString);
}

const KbString& KsDialogCheckBox::shownString() const
{
    return !state && !offString.getValue().isEmpty() ? offString.getValue() : onString.getValue();
}

void KsDialogCheckBox::changeOnOffString()
{
    if (auto* relay = relayAs<KsDialogQCheckBox>())
        relay->changeOnOffString(ksShownQString(convertToCString(shownString(), this)));
}

// The scene.

void KsDialogCheckBox::create3DControl()
{
    dress3D(&skinFamily(), {{"frame", "DialogCheckBoxFrame"},
                            {"labelProp", "DialogTextProperties"},
                            {"stateOff", "DialogCheckBoxStateOff"},
                            {"stateOn", "DialogCheckBoxStateOn"},
                            {"onOffStringProp", "DialogTextProperties"}});
    create3DFrame(m_frame);
    putBefore(m_stateTransform, "stateSep");
    KsRef<KsScale> toggleScale;
    putFirst(toggleScale, "stateSep");
    toggleScale->scaleFactor = KbVec3f(toggleSize, toggleSize, 1);
    putFirst(m_stateTranslation, "stateSep");
    create3DLabel();
    create3DText(m_onOffText, "onOffStringSep");
    change3DState();
    addFinishCallback(finishCB3D);
    setBuilt3D(1);
}

void KsDialogCheckBox::update3DControl()
{
    const SceneZone zone = controlZone3D();
    place3DFrame(m_frame, zone.x, 0, zone.width, zone.height);
    undoTransformMatrix(getAnyPart("frameSep", false), m_stateTransform.get());
    const float left = -zone.width / 2;
    m_stateTranslation->translation = KbVec3f(left + 10, 0, 0);
    m_onOffText.translation->translation =
        KbVec3f(left + 20, centreY(textBox3D(m_onOffText, "onOffStringProp")), 0);
}

void KsDialogCheckBox::change3DState()
{
    setSwitchValue(getAnyPart("stateSwitch", false), state ? 1 : 0);
    change3DOnOffString();
}

void KsDialogCheckBox::change3DOnOffString()
{
    show3DText(m_onOffText, convertToCString(shownString(), this));
}

void KsDialogCheckBox::refresh3DSkin()
{
    m_onOffText.box = staleBox();
    KsDialogComponent::refresh3DSkin();
}

void KsDialogCheckBox::finishCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogCheckBox*>(dragger)->draggerFinishCallback3D();
}

void KsDialogCheckBox::draggerFinishCallback3D()
{
    if (!isPicked({"frameSep", "stateSep", "onOffStringSep"})) return;
    const KsKeepAlive keep(this);
    closeOther3D();
    state = !state;
    updateBoth(this, &KsDialogCheckBox::changeOnOffString, &KsDialogCheckBox::change3DOnOffString);
    applyDlgCptAuditor();
}
