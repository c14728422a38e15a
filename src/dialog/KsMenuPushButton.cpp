#include <formweave/KsMenuPushButton.h>

#include "../qt/KsMenuQPushButton.h"
#include "KsControlParts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsTransform.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsMenuPushButtonAuditor.h>

KS_KIT_SOURCE(KsMenuPushButton, KsMenuItem)

KS_SKIN_SOURCE(KsMenuPushButton, MenuPushButton, "MenuPushButton.arb", "MenuPushButtonReleased",
               "MenuPushButtonPressed")

char* KsMenuPushButton::MenuPushButton =
    const_cast<char*>(KS_SKIN_PART("MenuPushButtonReleased", KS_SKIN_CLOSED_BOX("0.8 0.8 0.8"))
                          KS_SKIN_PART("MenuPushButtonPressed", KS_SKIN_LOW_BOX("1 0.6 0.6")));

namespace {

constexpr int border = 2;   // of the item's frame around the button
constexpr float indent = 4; // of the text

} // namespace

KsMenuPushButton::KsMenuPushButton()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("accelerator", accelerator, "");
    ksAddParts(build, {{"btnSep", KsPartKind::Separator, "geomSwitch"},
                       {"btnSwtch", KsPartKind::Switch, "btnSep"},
                       {"released", KsPartKind::Look, "btnSwtch"},
                       {"pressed", KsPartKind::Look, "btnSwtch"}});
}

KsMenuPushButton::~KsMenuPushButton() = default;

void KsMenuPushButton::addAuditor(KsMenuPushButtonAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsMenuPushButton::removeAuditor(KsMenuPushButtonAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsMenuPushButton::applyDlgCptAuditor()
{
    reportAction(this, &KsMenuPushButtonAuditor::menuPushButton);
}

void KsMenuPushButton::armSensors() { m_acceleratorSensor.arm(this, accelerator); }

void KsMenuPushButton::updateFromSensor(KsSensor* sensor)
{
    if (m_acceleratorSensor.is(sensor))
        changeAccelerator();
    else
        KsMenuItem::updateFromSensor(sensor);
}

// The window.

void KsMenuPushButton::insertMenuItem()
{
    if (getRelayCount()) return;
    addRelay(new KsMenuQPushButton(parentMenu(), -1, takeIds(1), this));
    changeLabel();
    changeEnable();
    changeAccelerator();
}

void KsMenuPushButton::changeLabel() { showRelayLabel(0, label); }

void KsMenuPushButton::changeAccelerator() { showRelayAccelerator(0, accelerator); }

void KsMenuPushButton::menuEvent(void*, int) { applyDlgCptAuditor(); }

// The scene.

void KsMenuPushButton::create3DEntry()
{
    dress3D(&skinFamily(),
            {{"released", "MenuPushButtonReleased"}, {"pressed", "MenuPushButtonPressed"}});
    putFirst(m_buttonScale, "btnSep");
    putBehind(m_buttonTransform, "btnSep");
    moveLabelToEnd();
    add3DCallbackMethods();
    setSwitchValue(getAnyPart("btnSwtch", false), 0);
}

void KsMenuPushButton::add3DCallbackMethods()
{
    addStartCallback(startCB3D);
    addFinishCallback(finishCB3D);
}

void KsMenuPushButton::update3DEntry()
{
    const float w = static_cast<float>(m_itemSize[0]);
    const float h = static_cast<float>(m_itemSize[1]);
    m_buttonScale->scaleFactor = KbVec3f(w - 2 * border, h - 2 * border, 1);
    KbVec3f min, max;
    get3DLabelCachedBBox(min, max);
    place3DLabel(-w / 2 + indent, -(max[1] + min[1]) / 2);
    undoTransformMatrix(getAnyPart("btnSep", false), m_buttonTransform.get());
}

void KsMenuPushButton::show3DPressed(bool pressed)
{
    setSwitchValue(getAnyPart("btnSwtch", false), pressed ? 1 : 0);
    undoTransformMatrix(getAnyPart("btnSep", false), m_buttonTransform.get());
}

void KsMenuPushButton::startCB3D(void*, KsDragger* dragger)
{
    auto* button = static_cast<KsMenuPushButton*>(dragger);
    if (button->takesPick()) button->draggerStartCallback3D();
}

void KsMenuPushButton::finishCB3D(void*, KsDragger* dragger)
{
    auto* button = static_cast<KsMenuPushButton*>(dragger);
    if (button->takesPick()) button->draggerFinishCallback3D();
}

void KsMenuPushButton::change3DEnable()
{
    KsMenuItem::change3DEnable();
    // Also in the middle of a press.
    if (!takesInput()) show3DPressed(false);
}

void KsMenuPushButton::draggerStartCallback3D() { show3DPressed(true); }

void KsMenuPushButton::abandonDrag3D() { show3DPressed(false); }

void KsMenuPushButton::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    const KsRef<KsMenuBar> bar(getMenuBar());
    show3DPressed(false);
    applyDlgCptAuditor();
    closeMenus3D(bar);
}
