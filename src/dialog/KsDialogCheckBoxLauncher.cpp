#include <formweave/KsDialogCheckBoxLauncher.h>

#include "KsElementSearch.h"
#include "KsLauncher.h"

KS_KIT_SOURCE(KsDialogCheckBoxLauncher, KsDialogCheckBox)

namespace {

const KsElementListTraits traits{"KsDialogCheckBoxLauncher", &KsTopLevelDialog::getClassTypeId,
                                 "; Be careful", false};

} // namespace

KsDialogCheckBoxLauncher::KsDialogCheckBoxLauncher()
    : KsElementContainer<KsDialogCheckBox, KsTopLevelDialog>(traits)
{
    KsInstanceBuilder build(classRecord, this);
}

KsDialogCheckBoxLauncher::~KsDialogCheckBoxLauncher() = default;

void KsDialogCheckBoxLauncher::applyAuditors() { ksApplyAuditors(this, m_elements); }

KsFormweave* KsDialogCheckBoxLauncher::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

void KsDialogCheckBoxLauncher::showInWindow(KsTopLevelDialog* child)
{
    if (state)
        child->show();
    else
        child->hide();
}

void KsDialogCheckBoxLauncher::showDialogs()
{
    forEachChild([this](KsTopLevelDialog* child) {
        if (isBuilt2D()) {
            ksBuildLaunched(this, child);
            showInWindow(child);
        }
        if (isBuilt3D()) child->show3D(state);
    });
}

void KsDialogCheckBoxLauncher::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position,
                                           int build2D)
{
    KsDialogCheckBox::buildWidget(parent, size, position, build2D);
    showDialogs();
}

void KsDialogCheckBoxLauncher::eventNotify(unsigned int value, unsigned long long data)
{
    const KsKeepAlive keep(this);
    KsDialogCheckBox::eventNotify(value, data);
    showDialogs();
}

void KsDialogCheckBoxLauncher::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    {
        const KsSensorSilencer silencer(m_stateSensor.get());
        state = !state;
        if (isBuilt2D()) changeOnOffString();
        if (is3DLive()) change3DOnOffString();
        applyDlgCptAuditor();
    }
    forEachChild([this](KsTopLevelDialog* child) {
        child->show3D(state);
        if (isBuilt2D()) showInWindow(child);
    });
    // The box in the window had no sensor to follow.
    if (isBuilt2D()) changeState();
    change3DState();
}
