#include <formweave/KsDialogEditText.h>

#include "../qt/KsDialogQEditText.h"
#include "KsControlParts.h"
#include "KsLayouts.h"

#include <arborium/base/KbLineProjector.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsDialogEditTextAuditor.h>

#include <algorithm>

KS_KIT_SOURCE(KsDialogEditText, KsDialogComponent)

namespace {

constexpr unsigned int enterPressed = 1;
constexpr int lineRoom = 10;   // beside the text of one line
constexpr int linesRoom = 34;  // the same of many, with the scroll bar
constexpr int textHeight = 12; // the room above and below the text
constexpr int leastLineHeight = 20;

} // namespace

KsDialogEditText::KsDialogEditText()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("editText", editText, "");
    build.field("editable", editable, true);
    build.field("trigOnEnter", trigOnEnter, true);
    build.field("isNumeric", isNumeric, false);
    build.field("multiLine", multiLine, false);
    build.field("wrapLine", wrapLine, true);
    ksAddLabelParts(build);
    ksAddParts(build, {{"scrollVSwitch", KsPartKind::Switch, "geomSwitch"},
                       {"downSep", KsPartKind::Separator, "scrollVSwitch"},
                       {"downSwitch", KsPartKind::Switch, "downSep"},
                       {"downReleased", KsPartKind::Look, "downSwitch"},
                       {"downPressed", KsPartKind::Look, "downSwitch"},
                       {"upSep", KsPartKind::Separator, "scrollVSwitch"},
                       {"upSwitch", KsPartKind::Switch, "upSep"},
                       {"upReleased", KsPartKind::Look, "upSwitch"},
                       {"upPressed", KsPartKind::Look, "upSwitch"},
                       {"scrollVSep", KsPartKind::Separator, "scrollVSwitch"},
                       {"scrollVBack", KsPartKind::PublicSeparator, "scrollVSep"},
                       {"scrollVFrame", KsPartKind::Look, "scrollVBack"},
                       {"cursorVSep", KsPartKind::Separator, "scrollVSep"},
                       {"cursorVFrame", KsPartKind::Look, "cursorVSep"}});
    ksAddParts(build, {{"scrollHSwitch", KsPartKind::Switch, "geomSwitch"},
                       {"leftSep", KsPartKind::Separator, "scrollHSwitch"},
                       {"leftSwitch", KsPartKind::Switch, "leftSep"},
                       {"leftReleased", KsPartKind::Look, "leftSwitch"},
                       {"leftPressed", KsPartKind::Look, "leftSwitch"},
                       {"rightSep", KsPartKind::Separator, "scrollHSwitch"},
                       {"rightSwitch", KsPartKind::Switch, "rightSep"},
                       {"rightReleased", KsPartKind::Look, "rightSwitch"},
                       {"rightPressed", KsPartKind::Look, "rightSwitch"},
                       {"scrollHSep", KsPartKind::Separator, "scrollHSwitch"},
                       {"scrollHBack", KsPartKind::PublicSeparator, "scrollHSep"},
                       {"scrollHFrame", KsPartKind::Look, "scrollHBack"},
                       {"cursorHSep", KsPartKind::Separator, "scrollHSep"},
                       {"cursorHFrame", KsPartKind::Look, "cursorHSep"}});
    ksAddParts(build, {{"editSep", KsPartKind::Separator, "geomSwitch"},
                       {"frameSep", KsPartKind::Separator, "editSep"},
                       {"frameSwitch", KsPartKind::Switch, "frameSep"},
                       {"frame", KsPartKind::Look, "frameSwitch"},
                       {"editFrame", KsPartKind::Look, "frameSwitch"},
                       {"textSep", KsPartKind::Separator, "editSep"},
                       {"textProp", KsPartKind::Look, "textSep"}});
}

KsDialogEditText::~KsDialogEditText()
{
    // Somebody may hold the part that the keys come through.
    if (m_keyCallback)
        m_keyCallback->removeEventCallback(KsKeyboardEvent::getClassTypeId(), processKeyEvents,
                                           this);
}

void KsDialogEditText::addAuditor(KsDialogEditTextAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsDialogEditText::removeAuditor(KsDialogEditTextAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsDialogEditText::applyDlgCptAuditor()
{
    reportAction(this, &KsDialogEditTextAuditor::dialogEditText);
}

void KsDialogEditText::armSensors()
{
    m_editableSensor.arm(this, editable);
    m_editTextSensor.arm(this, editText);
    m_multiLineSensor.arm(this, multiLine);
    m_wrapLineSensor.arm(this, wrapLine);
}

void KsDialogEditText::updateFromSensor(KsSensor* sensor)
{
    if (m_editTextSensor.is(sensor)) {
        updateBoth(this, &KsDialogEditText::changeEditText, &KsDialogEditText::change3DEditText);
    } else if (m_editableSensor.is(sensor)) {
        updateBoth(this, &KsDialogEditText::changeEditable, &KsDialogEditText::change3DEditable);
    } else if (m_multiLineSensor.is(sensor)) {
        updateBoth(this, &KsDialogEditText::changeMultiLine, &KsDialogEditText::change3DLayout);
    } else if (m_wrapLineSensor.is(sensor)) {
        m_wrapLineHeard = true;
        updateBoth(this, &KsDialogEditText::changeWrapLine, &KsDialogEditText::change3DLayout);
    } else {
        KsDialogComponent::updateFromSensor(sensor);
    }
}

// Sizes.

KbVec2i32 KsDialogEditText::getComponentInitSize()
{
    return initSizeOnce([this] {
        m_textSize = getLabelPixelSize(editText, this) +
                     KbVec2i32(multiLine ? linesRoom : lineRoom, textHeight);
        return m_textSize;
    });
}

void KsDialogEditText::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    getZonesSize(size, min, max, m_textSize[1]);
}

// The window.

void KsDialogEditText::createLabelWidget() { makeRelay(true); }

void KsDialogEditText::makeRelay(bool keepsText)
{
    const QPointer<KsDialogQEditText> earlier = relayAs<KsDialogQEditText>();
    auto* relay = new KsDialogQEditText(relayParent(), this, multiLine);
    const KsDialogQEditText::Silence silence(relay);
    installRelay(relay, [&] {
        if (earlier) relay->resize(earlier->size());
        // A widget's own text is the user's: its backslashes are no escapes.
        if (earlier && keepsText)
            relay->takeOver(*earlier);
        else
            changeEditText();
        changeEditable();
        changeLabel();
        changeLabelAlignment();
        changeEnable();
        changeLabelVisibility();
        changeEdgeStyle();
        if (m_wrapLineHeard) changeWrapLine();
        limitFrame(relay);
    });
}

void KsDialogEditText::updateEditTextWidget()
{
    auto* relay = relayAs<KsDialogQEditText>();
    if (!relay) return;
    WindowZone zone = controlZone2D(frameMargin);
    if (!multiLine) {
        const int h = std::max(getLabelPixelSize(editText, nullptr)[1], leastLineHeight);
        zone.y += (zone.height - h) / 2;
        zone.height = h;
    }
    relay->updateEditTextWidget(zone.x, zone.y, zone.width, zone.height);
}

void KsDialogEditText::eventNotify(unsigned int value, unsigned long long)
{
    auto* relay = relayAs<KsDialogQEditText>();
    if (!relay) return;
    const KsKeepAlive keep(this);
    ksWriteSilently(m_editTextSensor, editText,
                    KbString(relay->getEditText().toLatin1().toStdString()));
    if (!trigOnEnter || value == enterPressed) applyDlgCptAuditor();
    if (isBuilt3D()) showWindowText3D();
}

void KsDialogEditText::changeEditable()
{
    if (auto* relay = relayAs<KsDialogQEditText>()) relay->changeEditable(!editable);
}

void KsDialogEditText::changeMultiLine()
{
    if (!m_relay) return;
    makeRelay(false);
    updateLabelWidget();
    updateEditTextWidget();
}

void KsDialogEditText::changeWrapLine()
{
    if (auto* relay = relayAs<KsDialogQEditText>()) relay->changeWrapLine(wrapLine);
}

void KsDialogEditText::changeEditText()
{
    auto* relay = relayAs<KsDialogQEditText>();
    if (!relay) return;
    const KbString text = multiLine ? convertToCString(editText, this) : editText.getValue();
    relay->changeEditText(QString::fromStdU16String(text.toUtf16()));
}

void KsDialogEditText::showTypedText2D()
{
    // The user is heard once, where the key was typed.
    const KsDialogQEditText::Silence silence(relayAs<KsDialogQEditText>());
    changeEditText();
}
