#include <formweave/KsDialogPushButtonLauncher.h>

#include "KsElementSearch.h"
#include "KsLauncher.h"

#include <arborium/qt/KsQt.h>

KS_KIT_SOURCE(KsDialogPushButtonLauncher, KsDialogPushButton)

namespace {

const KsElementListTraits traits{"KsDialogPushButtonLauncher", &KsTopLevelDialog::getClassTypeId,
                                 "; Be careful", false};

} // namespace

KsDialogPushButtonLauncher::KsDialogPushButtonLauncher()
    : KsElementContainer<KsDialogPushButton, KsTopLevelDialog>(traits)
{
    KsInstanceBuilder build(classRecord, this);
}

KsDialogPushButtonLauncher::~KsDialogPushButtonLauncher() = default;

void KsDialogPushButtonLauncher::applyAuditors() { ksApplyAuditors(this, m_elements); }

KsFormweave* KsDialogPushButtonLauncher::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

void KsDialogPushButtonLauncher::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position,
                                             int build2D)
{
    KsDialogPushButton::buildWidget(parent, size, position, build2D);
    forEachChild([this](KsTopLevelDialog* child) {
        if (isBuilt2D()) ksBuildLaunched(this, child);
        if (!isBuilt3D()) return;
        child->buildDialog(KsQt::getTopLevelWidget(), 0);
        child->setParent(this);
        child->show3D(0);
    });
}

void KsDialogPushButtonLauncher::eventNotify(unsigned int value, unsigned long long data)
{
    const KsKeepAlive keep(this);
    KsDialogPushButton::eventNotify(value, data);
    forEachChild([this](KsTopLevelDialog* child) {
        ksBuildLaunched(this, child);
        child->show();
    });
}
