#include <formweave/KsMenuCheckBox.h>

#include "../qt/KsMenuQCheckBox.h"
#include "KsControlParts.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsMenuCheckBoxAuditor.h>

#include <algorithm>

KS_KIT_SOURCE(KsMenuCheckBox, KsMenuItem)

KS_SKIN_SOURCE(KsMenuCheckBox, MenuCheckBox, "MenuCheckBox.arb", "MenuCheckBoxStateOn",
               "MenuCheckBoxStateOff")

char* KsMenuCheckBox::MenuCheckBox =
    const_cast<char*>(KS_SKIN_PART("MenuCheckBoxStateOn", KS_SKIN_OPEN_BOX("0 0 0"))
                          KS_SKIN_PART("MenuCheckBoxStateOff", KS_SKIN_OPEN_BOX("1 1 1")));

KsMenuCheckBox::KsMenuCheckBox()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("state", state, false);
    build.field("onString", onString, "");
    build.field("accelerator", accelerator, "");
    ksAddParts(build, {{"chkSep", KsPartKind::Separator, "geomSwitch"},
                       {"chkSwtch", KsPartKind::Switch, "chkSep"},
                       {"stateOff", KsPartKind::Look, "chkSwtch"},
                       {"stateOn", KsPartKind::Look, "chkSwtch"}});
}

KsMenuCheckBox::~KsMenuCheckBox() = default;

void KsMenuCheckBox::addAuditor(KsMenuCheckBoxAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsMenuCheckBox::removeAuditor(KsMenuCheckBoxAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsMenuCheckBox::applyDlgCptAuditor()
{
    reportAction(this, &KsMenuCheckBoxAuditor::menuCheckBox);
}

void KsMenuCheckBox::armSensors()
{
    m_stateSensor.arm(this, state);
    m_onStringSensor.arm(this, onString);
    m_acceleratorSensor.arm(this, accelerator);
}

void KsMenuCheckBox::updateFromSensor(KsSensor* sensor)
{
    if (m_stateSensor.is(sensor))
        updateBoth(this, &KsMenuCheckBox::changeState, &KsMenuCheckBox::change3DState);
    else if (m_onStringSensor.is(sensor))
        updateBoth(this, &KsMenuCheckBox::changeOnString, &KsMenuCheckBox::change3DOnString);
    else if (m_acceleratorSensor.is(sensor))
        changeAccelerator();
    else
        KsMenuItem::updateFromSensor(sensor);
}

const KbString& KsMenuCheckBox::shownLabel() const
{
    return state && !onString.getValue().isEmpty() ? onString.getValue() : label.getValue();
}

KbVec2i32 KsMenuCheckBox::getItemInitSize()
{
    const int text =
        std::max(getLabelPixelSize(label, nullptr)[0], getLabelPixelSize(onString, nullptr)[0]);
    return {text + toggleRoom, itemHeight};
}

// The window.

void KsMenuCheckBox::insertMenuItem()
{
    if (getRelayCount()) return;
    addRelay(new KsMenuQCheckBox(parentMenu(), -1, takeIds(1), this));
    changeLabel();
    changeEnable();
    changeAccelerator();
}

void KsMenuCheckBox::changeLabel() { showRelayLabel(0, shownLabel()); }

void KsMenuCheckBox::changeState()
{
    if (auto* relay = relayAs<KsMenuQCheckBox>()) relay->changeState(state);
    changeLabel();
}

void KsMenuCheckBox::changeOnString() { changeLabel(); }

void KsMenuCheckBox::changeAccelerator() { showRelayAccelerator(0, accelerator); }

void KsMenuCheckBox::menuEvent(void*, int)
{
    const KsKeepAlive keep(this);
    // All views are current before the auditors hear of it.
    KsSensorSilencer silencer(m_stateSensor.get());
    state = !state;
    updateBoth(this, &KsMenuCheckBox::changeState, &KsMenuCheckBox::change3DState);
    applyDlgCptAuditor();
}

// The scene.

void KsMenuCheckBox::create3DEntry()
{
    dress3D(&skinFamily(),
            {{"stateOn", "MenuCheckBoxStateOn"}, {"stateOff", "MenuCheckBoxStateOff"}});
    create3DToggle(m_toggle, "chkSep");
    moveLabelToEnd();
    addFinishCallback(finishCB3D);
    setSwitchValue(getAnyPart("chkSwtch", false), state ? 1 : 0);
}

void KsMenuCheckBox::update3DEntry()
{
    KbVec3f min, max;
    get3DLabelCachedBBox(min, max);
    const float left = -static_cast<float>(m_itemSize[0]) / 2;
    m_toggle.translation->translation = KbVec3f(left + 10, 0, 0);
    place3DLabel(left + 20, -(max[1] + min[1]) / 2);
}

void KsMenuCheckBox::change3DState()
{
    setSwitchValue(getAnyPart("chkSwtch", false), state ? 1 : 0);
    change3DLabel();
}

void KsMenuCheckBox::change3DOnString()
{
    if (state) change3DLabel();
}

void KsMenuCheckBox::finishCB3D(void*, KsDragger* dragger)
{
    auto* box = static_cast<KsMenuCheckBox*>(dragger);
    if (box->takesPick()) box->draggerFinishCallback3D();
}

void KsMenuCheckBox::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    const KsRef<KsMenuBar> bar(getMenuBar());
    state = !state;
    applyDlgCptAuditor();
    closeMenus3D(bar);
    updateBoth(this, &KsMenuCheckBox::changeState, &KsMenuCheckBox::change3DState);
}
