#include <formweave/KsDialogSlider.h>

#include "../qt/KsDialogQSlider.h"
#include "KsControlParts.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KbLineProjector.h>
#include <arborium/base/KbNumber.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsDialogCheckBox.h>
#include <formweave/KsDialogCustomSlider.h>
#include <formweave/KsDialogEditText.h>

#include <algorithm>
#include <cmath>

KS_KIT_SOURCE(KsDialogSlider, KsDialogComponent)

KS_SKIN_SOURCE(KsDialogSlider, DialogSlider, "DialogSlider.arb", "DialogSliderFrame",
               "DialogSliderCursor")

char* KsDialogSlider::DialogSlider = const_cast<char*>(
    KS_SKIN_PART("DialogSliderFrame", KS_SKIN_OPEN_BOX("0.6 0.6 0.6")) KS_SKIN_PART(
        "DialogSliderCursor", KS_SKIN_COLOR("0.6 1 0.6") "  Translation { translation 0 0 0.5 }\n"
                                                         "  Scale { scaleFactor 1 1 1 }\n"
                                                         "  Cone { bottomRadius 0.5 height 1 }\n"));

namespace {

constexpr int defaultWidth = 150, defaultHeight = 30;
constexpr int toggleWidth = 16;
constexpr int toggleRoom = 18; // with the gap behind it
constexpr unsigned toggleChanged = 1;
constexpr float toggleSize3D = 14;
constexpr float cursorSize3D = 10;
constexpr float barHeight3D = 20;
constexpr float furthest3D = 1e6f; // a position may be any number; a place in a scene may not

// A look that belongs to another family.
template <class Family> void loadLooksOf()
{
    if (!Family::isSkinLoaded()) Family::change3DSkin();
}

void setX(KsTranslation* translation, float x) { translation->translation = KbVec3f(x, 0, 0); }

} // namespace

KsDialogSlider::KsDialogSlider()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("valueVisible", valueVisible, true);
    build.field("format", format, "%3f");
    build.field("continuousTrigger", continuousTrigger, false);
    build.field("toggleVisible", toggleVisible, true);
    build.field("fixedLimits", fixedLimits, false);
    build.field("colors", colors, KbColor(0.66f, 0.66f, 0.66f));
    build.field("shadedColors", shadedColors, true);
    ksAddLabelParts(build);
    ksAddParts(build, {{"checkSep", KsPartKind::Separator, "geomSwitch"},
                       {"checkSwtch", KsPartKind::Switch, "checkSep"},
                       {"checkStateOff", KsPartKind::Look, "checkSwtch"},
                       {"checkStateOn", KsPartKind::Look, "checkSwtch"},
                       {"sliderSep", KsPartKind::Separator, "geomSwitch"},
                       {"frameSep", KsPartKind::Separator, "sliderSep"},
                       {"frame", KsPartKind::Look, "frameSep"},
                       {"cursorSep", KsPartKind::Separator, "sliderSep"},
                       {"cursor", KsPartKind::Look, "cursorSep"},
                       {"edtSwtch", KsPartKind::Switch, "geomSwitch"},
                       {"edtFrmSep", KsPartKind::Separator, "edtSwtch"},
                       {"edtFrmSwtch", KsPartKind::Switch, "edtFrmSep"},
                       {"valueFrame", KsPartKind::Look, "edtFrmSwtch"},
                       {"editValueFrame", KsPartKind::Look, "edtFrmSwtch"},
                       {"editTextSep", KsPartKind::Separator, "edtSwtch"},
                       {"editTextProp", KsPartKind::Look, "editTextSep"}});
    setValidatesFields();
}

KsDialogSlider::~KsDialogSlider()
{
    releaseBar();
    if (m_keyCallback)
        m_keyCallback->removeEventCallback(KsKeyboardEvent::getClassTypeId(), processKeyEvents,
                                           this);
}

bool KsDialogSlider::isBare() const { return getTypeId() == getClassTypeId(); }

bool KsDialogSlider::validateNewFieldValue(KsField* field, const void* newValue)
{
    if (field == &format) {
        // Taken all the same: a file is written as it was read.
        const auto& text = *static_cast<const KbString*>(newValue);
        KbNumberFormat parsed;
        if (!parsed.parse(text.toUtf8())) {
            const std::string place = m_input ? m_input->getPlace() + ": " : std::string();
            KsDebugError::post("KsDialogSlider::format",
                               "%s\"%s\" is no format of one number; the default is used",
                               place.c_str(), text.toUtf8().c_str());
        }
    }
    return KsDialogComponent::validateNewFieldValue(field, newValue);
}

bool KsDialogSlider::readInstance(KsInput* in, unsigned short flags)
{
    m_input = in;
    const bool read = KsDialogComponent::readInstance(in, flags);
    m_input = nullptr;
    return read;
}

void KsDialogSlider::armSensors()
{
    m_colorsSensor.arm(this, colors);
    m_shadedColorsSensor.arm(this, shadedColors);
    m_valueVisibleSensor.arm(this, valueVisible);
    m_continuousTriggerSensor.arm(this, continuousTrigger);
    m_toggleVisibleSensor.arm(this, toggleVisible);
    m_fixedLimitsSensor.arm(this, fixedLimits);
    m_formatSensor.arm(this, format);
}

void KsDialogSlider::updateFromSensor(KsSensor* sensor)
{
    if (m_valueVisibleSensor.is(sensor)) {
        updateBoth(this, &KsDialogSlider::changeValueVisible,
                   &KsDialogSlider::change3DValueVisible);
    } else if (m_continuousTriggerSensor.is(sensor)) {
        updateBoth(this, &KsDialogSlider::changeContinuousTrigger,
                   &KsDialogSlider::change3DContinuousTrigger);
    } else if (m_toggleVisibleSensor.is(sensor)) {
        updateBoth(this, &KsDialogSlider::changeToggleVisible,
                   &KsDialogSlider::change3DToggleVisible);
    } else if (m_colorsSensor.is(sensor) || m_shadedColorsSensor.is(sensor)) {
        changeColors();
    } else if (m_formatSensor.is(sensor)) {
        changeFormat();
    } else {
        KsDialogComponent::updateFromSensor(sensor);
    }
}

// The position and the values that follow it.

void KsDialogSlider::setValueFromEdit(int) {}
void KsDialogSlider::setValue() {}
void KsDialogSlider::changeEditValue() {}
void KsDialogSlider::changeFormat() {}
void KsDialogSlider::computeNewSliderEditValue(const KsEvent*) {}
void KsDialogSlider::finish3DEditing() {}
int KsDialogSlider::computeEditZoneWidth() { return 0; }

void KsDialogSlider::setValueFromSlider(float position) { m_position = position; }

float KsDialogSlider::getValue() const { return m_bar ? m_bar->getValue() : m_position; }

void KsDialogSlider::refreshViews()
{
    updateBoth(this, &KsDialogSlider::changeEditValue, &KsDialogSlider::change3DEditValue);
    updateBoth(this, &KsDialogSlider::changeSliderValue, &KsDialogSlider::change3DSliderValue);
}

void KsDialogSlider::updateWidget()
{
    m_editZoneWidth = computeEditZoneWidth();
    if (isBuilt2D()) {
        updateSliderWidget();
        updateEditWidget();
    }
    if (isBuilt3D()) {
        m_valueText.box = staleBox();
        update3DSlider();
    }
}

void KsDialogSlider::valueChangeCallback(void* slider, float position)
{
    static_cast<KsDialogSlider*>(slider)->changeValueFromSlider(position);
}

void KsDialogSlider::finishCallback(void* slider, float position)
{
    static_cast<KsDialogSlider*>(slider)->changeValueAfterFinish(position);
}

void KsDialogSlider::changeValueFromSlider(float position)
{
    const KsRelayCall call(this);
    setValueFromSlider(position);
    if (continuousTrigger) setValue();
    updateBoth(this, &KsDialogSlider::changeEditValue, &KsDialogSlider::change3DEditValue);
    if (isBuilt3D()) change3DCursor();
}

void KsDialogSlider::changeValueAfterFinish(float position)
{
    const KsRelayCall call(this);
    setValueFromSlider(position);
    setValue();
    updateBoth(this, &KsDialogSlider::changeEditValue, &KsDialogSlider::change3DEditValue);
}

void KsDialogSlider::changeSliderFromEdit()
{
    const KsKeepAlive keep(this);
    setValueFromEdit(1);
    updateBoth(this, &KsDialogSlider::changeSliderValue, &KsDialogSlider::change3DSliderValue);
    setValue();
}

void KsDialogSlider::changeSliderFromSlider(float delta)
{
    setValueFromSlider(getValue() + delta);
    updateBoth(this, &KsDialogSlider::changeSliderValue, &KsDialogSlider::change3DSliderValue);
}

// Sizes.

KbVec2i32 KsDialogSlider::getComponentInitSize() { return {defaultWidth, defaultHeight}; }

void KsDialogSlider::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    getZonesSize(size, min, max, 0);
}

// The window.

void KsDialogSlider::createLabelWidget()
{
    if (isBare()) return;
    m_editZoneWidth = computeEditZoneWidth();
    const QPointer<KsDialogCustomSlider> earlierBar = m_bar;
    releaseBar();
    const QPointer<KsDialogQSlider> earlier = relayAs<KsDialogQSlider>();
    auto* relay = new KsDialogQSlider(relayParent(), this);
    m_bar = relay->getSlider();
    installRelay(relay, [this, relay, earlier] {
        fillRelay();
        relay->goOnFrom(earlier);
    });
    // It stands in its window now.
    if (earlierBar && m_bar) m_bar->takeDragFrom(*earlierBar);
}

void KsDialogSlider::fillRelay()
{
    m_bar->addValueChangedCallback(valueChangeCallback, this);
    updateFinishCallback();
    changeColors();
    changeLabel();
    changeLabelAlignment();
    changeLabelVisibility();
    changeContinuousTrigger();
    changeToggleVisible();
    changeSliderValue();
    changeEditValue();
    changeEdgeStyle();
    changeValueVisible();
    changeEnable();
    limitFrame(m_widget, FROM_SIZE);
}

void KsDialogSlider::releaseBar()
{
    if (m_bar) {
        m_bar->removeValueChangedCallback(valueChangeCallback, this);
        m_bar->removeFinishCallback(finishCallback, this);
    }
    m_bar = nullptr;
}

void KsDialogSlider::destroyWidget()
{
    releaseBar();
    KsDialogComponent::destroyWidget();
}

void KsDialogSlider::updateFinishCallback()
{
    if (!m_bar) return;
    if (continuousTrigger)
        m_bar->removeFinishCallback(finishCallback, this);
    else
        m_bar->addFinishCallback(finishCallback, this);
}

void KsDialogSlider::changeColors()
{
    if (m_bar) m_bar->setColors(colors.getValues(0), colors.getNum(), shadedColors);
}

KsDialogSlider::WindowPlaces KsDialogSlider::places2D() const
{
    return {controlZone2D(frameMargin), toggleVisible ? toggleRoom : 0,
            valueVisible ? m_editZoneWidth + zoneGap : 0};
}

void KsDialogSlider::updateToggleWidget()
{
    auto* relay = relayAs<KsDialogQSlider>();
    if (!relay || !toggleVisible) return;
    const WindowPlaces places = places2D();
    relay->updateToggleWidget(places.zone.x, places.zone.y, toggleWidth, places.zone.height);
}

void KsDialogSlider::updateSliderWidget()
{
    auto* relay = relayAs<KsDialogQSlider>();
    if (!relay) return;
    const WindowPlaces places = places2D();
    m_barWidth = std::max(places.zone.width - places.toggle - places.edit, 0);
    relay->updateSliderWidget(places.zone.x + places.toggle, places.zone.y, m_barWidth,
                              places.zone.height);
}

void KsDialogSlider::updateEditWidget()
{
    auto* relay = relayAs<KsDialogQSlider>();
    if (!relay) return;
    const WindowPlaces places = places2D();
    KbString text(relay->getEditText());
    // An editor that was emptied keeps its height.
    if (text.isEmpty()) text = "0";
    const int h = getLabelPixelSize(text, nullptr)[1];
    relay->updateEditWidget(places.zone.x + places.toggle + m_barWidth + zoneGap,
                            places.zone.y + (places.zone.height - h) / 2, m_editZoneWidth, h);
}

void KsDialogSlider::updateControlWidget()
{
    updateToggleWidget();
    updateSliderWidget();
    updateEditWidget();
}

void KsDialogSlider::eventNotify(unsigned int value, unsigned long long)
{
    auto* relay = relayAs<KsDialogQSlider>();
    if (value != toggleChanged || !relay || isFillingRelay()) return;
    const KsKeepAlive keep(this);
    ksWriteSilently(m_continuousTriggerSensor, continuousTrigger, relay->getToggleState());
    updateFinishCallback();
    if (isBuilt3D()) change3DContinuousTrigger();
}

void KsDialogSlider::changeEnable()
{
    KsDialogComponent::changeEnable();
    if (m_bar) m_bar->setEnable(enable);
}

void KsDialogSlider::changeSliderValue()
{
    if (m_bar) m_bar->setValue(m_position);
}

void KsDialogSlider::changeContinuousTrigger()
{
    if (auto* relay = relayAs<KsDialogQSlider>()) relay->changeContinuousTrigger(continuousTrigger);
}

void KsDialogSlider::changeToggleVisible()
{
    if (auto* relay = relayAs<KsDialogQSlider>()) relay->changeToggleVisible(toggleVisible);
    if (!isFillingRelay()) updateControlWidget();
}

void KsDialogSlider::changeValueVisible()
{
    if (auto* relay = relayAs<KsDialogQSlider>()) relay->changeValueVisible(valueVisible);
    if (!isFillingRelay()) updateControlWidget();
}

void KsDialogSlider::showEditText(const KbString& text)
{
    if (auto* relay = relayAs<KsDialogQSlider>())
        relay->setEditText(QString::fromStdU16String(text.toUtf16()));
}

KbString KsDialogSlider::getValueFromEdit() const
{
    const auto* relay = relayAs<KsDialogQSlider>();
    return relay ? KbString(relay->getEditText()) : KbString("0");
}

// The scene.

void KsDialogSlider::create3DControl()
{
    if (isBare()) return;
    loadFontProperties();
    loadLooksOf<KsDialogCheckBox>();
    loadLooksOf<KsDialogEditText>();
    dress3D(&skinFamily(), {{"labelProp", "DialogTextProperties"},
                            {"checkStateOff", "DialogCheckBoxStateOff"},
                            {"checkStateOn", "DialogCheckBoxStateOn"},
                            {"frame", "DialogSliderFrame"},
                            {"cursor", "DialogSliderCursor"},
                            {"valueFrame", "DialogEditTextFrame"},
                            {"editValueFrame", "DialogEditTextEditingFrame"},
                            {"editTextProp", "DialogTextProperties"}});
    setSwitchValue(getAnyPart("edtFrmSwtch", false), 0);
    create3DLabel();
    KsRef<KsScale> scale;
    putFirst(scale, "checkSep");
    scale->scaleFactor = KbVec3f(toggleSize3D, toggleSize3D, 1);
    putFirst(m_checkTranslation, "checkSep");
    create3DFrame(m_frame);
    putBefore(m_sliderUndo, "cursorSep");
    putFirst(m_editTranslation, "edtSwtch");
    putFirst(m_valueFrameScale, "edtFrmSep");
    putBefore(m_editUndo, "editTextSep");
    create3DText(m_valueText, "editTextSep");
    change3DEditValue();
    putFirst(scale, "cursorSep");
    scale->scaleFactor = KbVec3f(cursorSize3D, cursorSize3D, 1);
    putFirst(m_cursorRest, "cursorSep");
    putFirst(m_cursorPosition, "cursorSep");
    show3DToggle();
    show3DValue();
    addStartCallback(startCB3D);
    addMotionCallback(motionCB3D);
    addFinishCallback(finishCB3D);
    m_editMode = 0;
    m_lineProjector = std::make_unique<KbLineProjector>();
    putFirst(m_keyCallback, "edtSwtch");
    m_keyCallback->addEventCallback(KsKeyboardEvent::getClassTypeId(), processKeyEvents, this);
    setBuilt3D(1);
    m_valueText.box = staleBox();
}

void KsDialogSlider::update3DControl()
{
    if (!m_lineProjector) return;
    const SceneZone zone = controlZone3D();
    const float left = zone.x - zone.width / 2;
    m_editZoneWidth = computeEditZoneWidth();
    const auto edit = static_cast<float>(m_editZoneWidth);
    setX(m_checkTranslation.get(), left + 10);
    const float before = 2 + (toggleVisible ? static_cast<float>(toggleRoom) : 0.0f);
    const float bar = std::max(
        zone.width - before - (valueVisible ? edit + static_cast<float>(zoneGap) : 0.0f), 0.0f);
    m_barWidth3D = static_cast<int>(bar);
    place3DFrame(m_frame, left + before + bar / 2, 0, bar, barHeight3D);
    undoTransformMatrix(getAnyPart("frameSep", false), m_sliderUndo.get());
    m_cursorRest->translation = KbVec3f(-bar / 2 + cursorSize3D / 2, -cursorSize3D / 2, 0);
    change3DCursor();
    if (!valueVisible) return;
    m_valueText.translation->translation =
        KbVec3f(-edit / 2 + frameMargin, centreY(textBox3D(m_valueText, "editTextProp")), 0);
    setX(m_editTranslation.get(), (static_cast<float>(size3D()[0] - 2 * frameMargin) - edit) / 2);
    m_valueFrameScale->scaleFactor = KbVec3f(edit, barHeight3D, 1);
    undoTransformMatrix(getAnyPart("edtFrmSep", false), m_editUndo.get());
}

float KsDialogSlider::travel3D() const
{
    return std::max(static_cast<float>(m_barWidth3D) - cursorSize3D, 0.0f);
}

void KsDialogSlider::change3DCursor()
{
    if (!m_cursorPosition) return;
    const float x = travel3D() * m_position;
    setX(m_cursorPosition.get(), std::isfinite(x) ? std::clamp(x, -furthest3D, furthest3D) : 0.0f);
}

void KsDialogSlider::change3DSliderValue() { change3DCursor(); }

void KsDialogSlider::change3DEditValue() { m_valueText.box = staleBox(); }

void KsDialogSlider::set3DText(const KbString& text)
{
    if (!m_valueText.text) return;
    m_valueText.text->string.setValue(text);
    m_valueText.box = staleBox();
}

KbString KsDialogSlider::get3DValueFromEdit() const
{
    return m_valueText.text ? m_valueText.text->string[0] : KbString();
}

void KsDialogSlider::change3DContinuousTrigger()
{
    setSwitchValue(getAnyPart("checkSwtch", false), continuousTrigger ? 1 : 0);
}

void KsDialogSlider::show3DToggle()
{
    setSwitchValue(getAnyPart("checkSwtch", false), !toggleVisible      ? KsSwitch::NONE
                                                    : continuousTrigger ? 1
                                                                        : 0);
}

void KsDialogSlider::show3DValue()
{
    setSwitchValue(getAnyPart("edtSwtch", false), valueVisible ? KsSwitch::ALL : KsSwitch::NONE);
}

void KsDialogSlider::change3DValueVisible()
{
    show3DValue();
    update3DSlider();
}

void KsDialogSlider::change3DToggleVisible()
{
    show3DToggle();
    update3DSlider();
}

void KsDialogSlider::change3DEnable()
{
    change3DSliderValue();
    KsDialogComponent::change3DEnable();
}

void KsDialogSlider::refresh3DSkin()
{
    m_valueText.box = staleBox();
    KsDialogComponent::refresh3DSkin();
}

void KsDialogSlider::end3DEditing()
{
    m_editMode = 0;
    setSwitchValue(getAnyPart("edtFrmSwtch", false), 0);
}

void KsDialogSlider::set3DInactive()
{
    end3DEditing();
    KsDialogComponent::set3DInactive();
}

void KsDialogSlider::processKeyEvents(void* data, KsEventCallback* callback)
{
    auto* slider = static_cast<KsDialogSlider*>(data);
    if (slider->m_editMode != 1) return;
    if (slider->m_pickStyle->style.getValue() == KsPickStyle::UNPICKABLE) return; // disabled
    const KsKeepAlive keep(slider);
    slider->computeNewSliderEditValue(callback->getEvent());
}

void KsDialogSlider::startCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogSlider*>(dragger)->draggerStartCallback3D();
}

void KsDialogSlider::motionCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogSlider*>(dragger)->draggerMotionCallback3D();
}

void KsDialogSlider::finishCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogSlider*>(dragger)->draggerFinishCallback3D();
}

void KsDialogSlider::draggerStartCallback3D()
{
    const KsKeepAlive keep(this);
    set3DCurrentActive(this);
    if (isPicked({"cursorSep"})) {
        const KbVec3f start = getLocalStartingPoint();
        m_lineProjector->setLine(KbLine(start, start + KbVec3f(1, 0, 0)));
        const KsHandleEventAction* action = getHandleEventAction();
        if (action && KsViewVolumeElement::isSet(action->getState()))
            m_lineProjector->setViewVolume(getViewVolume());
        m_cursorStart = m_cursorPosition->translation;
    } else if (isPicked({"edtSwtch"})) {
        m_editMode = 1;
        setSwitchValue(getAnyPart("edtFrmSwtch", false), 1);
    } else if (isPicked({"frameSep"})) {
        jumpToPicked();
    }
}

void KsDialogSlider::jumpToPicked()
{
    // In the bar's own space, so that it holds in a panel that was turned too.
    const KsPath* picked = getPickPath();
    const KsRef<KsPath> path(picked->copy());
    path->setNumPublic(-1);
    path->truncate(path->findNode(getAnyPart("frameSep", false)) + 1);
    m_matrixAction->apply(path.get());
    KbVec3f at;
    m_matrixAction->getInverse().multVecMatrix(getWorldStartingPoint(), at);
    const float travel = travel3D();
    const float x = at[0] + (static_cast<float>(m_barWidth3D) - cursorSize3D) / 2;
    setValueFromSlider(travel > 0 ? std::clamp(x, 0.0f, travel) / travel : 0.0f);
    change3DCursor();
    setValue();
    if (isBuilt2D()) {
        changeSliderValue();
        changeEditValue();
    }
    if (is3DLive()) change3DEditValue();
}

void KsDialogSlider::draggerMotionCallback3D()
{
    if (!isPicked({"cursorSep"})) return;
    const KsKeepAlive keep(this);
    closeOther3D();
    m_lineProjector->setWorkingSpace(getLocalToWorldMatrix());
    const KbVec3f start = getLocalStartingPoint();
    KbVec3f point = start;
    if (ksCast<KsTrackerEvent>(getEvent())) {
        KbVec3f onRay;
        if (!m_lineProjector->getLine().getClosestPoints(getTrackerRay(), point, onRay))
            point = start;
    } else if (!m_lineProjector->tryProject(getNormalizedLocaterPosition(), point)) {
        point = start;
    }
    const float travel = travel3D();
    const float x = std::clamp(m_cursorStart[0] + point[0] - start[0], 0.0f, travel);
    setValueFromSlider(travel > 0 ? x / travel : 0.0f);
    change3DCursor();
    if (continuousTrigger) setValue();
    if (isBuilt2D()) {
        changeSliderValue();
        changeEditValue();
    }
    if (is3DLive()) change3DEditValue();
}

void KsDialogSlider::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    if (isPicked({"checkSep"})) {
        ksWriteSilently(m_continuousTriggerSensor, continuousTrigger, !continuousTrigger);
        change3DContinuousTrigger();
        if (isBuilt2D()) {
            updateFinishCallback();
            changeContinuousTrigger();
        }
    } else if (isPicked({"cursorSep"})) {
        setValue();
        updateBoth(this, &KsDialogSlider::changeEditValue, &KsDialogSlider::change3DEditValue);
    }
}
