#include <formweave/KsDialogPushButton.h>

#include "../qt/KsDialogQPushButton.h"
#include "KsControlParts.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsDialogPushButtonAuditor.h>

KS_KIT_SOURCE(KsDialogPushButton, KsDialogComponent)

KS_SKIN_SOURCE(KsDialogPushButton, DialogPushButton, "DialogPushButton.arb",
               "DialogPushButtonReleased", "DialogPushButtonPressed")

// The released button floats one unit above the plane.
char* KsDialogPushButton::DialogPushButton = const_cast<char*>(
    KS_SKIN_PART("DialogPushButtonReleased",
                 KS_SKIN_COLOR("0.7 0.7 0.7") "  Translation { translation 0 0 1 }\n"
                                              "  Cube { width 1 height 1 depth 1 }\n"
                                              "  Translation { translation 0 0 1 }\n")
        KS_SKIN_PART("DialogPushButtonPressed", KS_SKIN_CLOSED_BOX("1 0.6 0.6")));

namespace {

constexpr int textRoom = 12; // about the text, in both directions

} // namespace

KsDialogPushButton::KsDialogPushButton()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("buttonLabel", buttonLabel, "");
    ksAddLabelParts(build);
    ksAddParts(build, {{"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frameSwitch", KsPartKind::Switch, "frameSep"},
                       {"released", KsPartKind::Look, "frameSwitch"},
                       {"pressed", KsPartKind::Look, "frameSwitch"},
                       {"buttonLabelSep", KsPartKind::Separator, "geomSwitch"},
                       {"buttonLabelProp", KsPartKind::Look, "buttonLabelSep"}});
}

KsDialogPushButton::~KsDialogPushButton() = default;

void KsDialogPushButton::addAuditor(KsDialogPushButtonAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsDialogPushButton::removeAuditor(KsDialogPushButtonAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsDialogPushButton::applyDlgCptAuditor()
{
    reportAction(this, &KsDialogPushButtonAuditor::dialogPushButton);
}

void KsDialogPushButton::armSensors() { m_buttonLabelSensor.arm(this, buttonLabel); }

void KsDialogPushButton::updateFromSensor(KsSensor* sensor)
{
    const KsKeepAlive keep(this);
    if (m_buttonLabelSensor.is(sensor) && m_build2D) changeButtonLabel();
    if (is3DLive())
        change3DButtonLabel(); // whatever changed, and no more than this
    else
        KsDialogComponent::updateFromSensor(sensor);
}

// Sizes.

KbVec2i32 KsDialogPushButton::getComponentInitSize()
{
    return initSizeOnce([this] {
        m_buttonLabelSize = getLabelPixelSize(buttonLabel, this) + KbVec2i32(textRoom, textRoom);
        return m_buttonLabelSize;
    });
}

void KsDialogPushButton::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    getZonesSize(size, min, max, m_buttonLabelSize[1]);
}

// The window.

void KsDialogPushButton::createLabelWidget()
{
    installRelay(new KsDialogQPushButton(relayParent(), this), [this] {
        changeLabel();
        changeLabelAlignment();
        changeButtonLabel();
        changeEnable();
        changeLabelVisibility();
        KsDialogComponent::changeEdgeStyle();
        m_widget->setSizePolicy(fixedWidth ? QSizePolicy::Fixed : QSizePolicy::Preferred,
                                fixedHeight ? QSizePolicy::Fixed : QSizePolicy::Preferred);
        ksLimitWidget(m_widget, KbVec2i32(minWidth, minHeight), KbVec2i32(maxWidth, maxHeight));
    });
}

void KsDialogPushButton::updateControlWidget()
{
    if (auto* relay = relayAs<KsDialogQPushButton>()) {
        const WindowZone zone = controlZone2D(2);
        relay->updateButtonWidget(zone.x, zone.y, zone.width, zone.height);
    }
}

void KsDialogPushButton::eventNotify(unsigned int, unsigned long long)
{
    const KsKeepAlive keep(this);
    if (isBuilt3D()) change3DButtonState(0);
    applyDlgCptAuditor();
}

void KsDialogPushButton::changeButtonLabel()
{
    if (auto* relay = relayAs<KsDialogQPushButton>())
        relay->changeButtonLabel(ksShownQString(convertToCString(buttonLabel, this)));
}

// The scene.

void KsDialogPushButton::create3DControl()
{
    dress3D(&skinFamily(), {{"labelProp", "DialogTextProperties"},
                            {"released", "DialogPushButtonReleased"},
                            {"pressed", "DialogPushButtonPressed"},
                            {"buttonLabelProp", "DialogTextProperties"}});
    create3DFrame(m_frame);
    putBefore(m_stateTransform, "buttonLabelSep");
    create3DLabel();
    create3DText(m_buttonText, "buttonLabelSep");
    change3DButtonLabel();
    change3DButtonState(0);
    addStartCallback(startCB3D);
    addFinishCallback(finishCB3D);
    setBuilt3D(1);
}

void KsDialogPushButton::update3DControl()
{
    KbVec2i32 size, centre;
    get3DComponentSize(size, centre);
    place3DFrame(m_frame, static_cast<float>(centre[0]), static_cast<float>(centre[1]),
                 static_cast<float>(size[0]), static_cast<float>(size[1]));
    centreButtonLabel();
    undoTransformMatrix(getAnyPart("frameSep", false), m_stateTransform.get());
}

void KsDialogPushButton::centreButtonLabel()
{
    const KbBox3f& box = textBox3D(m_buttonText, "buttonLabelProp");
    m_buttonText.translation->translation =
        KbVec3f(-(box.getMax()[0] - box.getMin()[0]) / 2, centreY(box), 0);
}

void KsDialogPushButton::change3DButtonLabel()
{
    if (!m_buttonText.text) return;
    show3DText(m_buttonText, convertToCString(buttonLabel, this));
    if (isBuilt3D()) centreButtonLabel();
}

void KsDialogPushButton::change3DButtonState(int pressed)
{
    setSwitchValue(getAnyPart("frameSwitch", false), pressed ? 1 : 0);
    undoTransformMatrix(getAnyPart("frameSep", false), m_stateTransform.get());
}

void KsDialogPushButton::set3DPressedGeometry(KsNode* node) { set3DGeometry("released", node); }

void KsDialogPushButton::set3DReleasedGeometry(KsNode* node) { set3DGeometry("pressed", node); }

void KsDialogPushButton::set3DGeometry(const char* part, KsNode* node)
{
    if (!node) return;
    KsRef<KsGroup> group(ksCast<KsGroup>(node));
    if (!group) {
        group = new KsGroup;
        group->addChild(node);
    }
    setAnyPart(part, group.get());
    if (isBuilt3D()) undoTransformMatrix(getAnyPart("frameSep", false), m_stateTransform.get());
}

void KsDialogPushButton::refresh3DSkin()
{
    m_buttonText.box = staleBox();
    KsDialogComponent::refresh3DSkin();
}

bool KsDialogPushButton::isButtonPicked() { return isPicked({"frameSep", "buttonLabelSep"}); }

void KsDialogPushButton::startCB3D(void*, KsDragger* dragger)
{
    auto* button = static_cast<KsDialogPushButton*>(dragger);
    if (button->isButtonPicked()) button->draggerStartCallback3D();
}

void KsDialogPushButton::finishCB3D(void*, KsDragger* dragger)
{
    auto* button = static_cast<KsDialogPushButton*>(dragger);
    if (button->isButtonPicked()) button->draggerFinishCallback3D();
}

void KsDialogPushButton::draggerStartCallback3D()
{
    const KsKeepAlive keep(this);
    set3DCurrentActive(this);
    change3DButtonState(1);
    if (m_build2D) changeButtonState(1);
}

void KsDialogPushButton::abandonDrag3D()
{
    set3DInactive();
    change3DButtonState(0);
    if (m_build2D) changeButtonState(0);
}

void KsDialogPushButton::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    abandonDrag3D(); // what a press shows ends in either case
    applyDlgCptAuditor();
}
