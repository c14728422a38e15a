#include <formweave/KsMenuPushButtonLauncher.h>

#include "KsElementSearch.h"
#include "KsLauncher.h"

KS_KIT_SOURCE(KsMenuPushButtonLauncher, KsMenuPushButton)

namespace {

const KsElementListTraits traits{"KsMenuPushButtonLauncher", &KsTopLevelDialog::getClassTypeId,
                                 "; Be careful", false};

} // namespace

KsMenuPushButtonLauncher::KsMenuPushButtonLauncher()
    : KsElementContainer<KsMenuPushButton, KsTopLevelDialog>(traits)
{
    KsInstanceBuilder build(classRecord, this);
}

KsMenuPushButtonLauncher::~KsMenuPushButtonLauncher() = default;

KsFormweave* KsMenuPushButtonLauncher::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

void KsMenuPushButtonLauncher::buildMenu(void* parentMenu, int build2D, int position)
{
    const bool isFirst = !build2D && !isBuilt3D();
    KsMenuPushButton::buildMenu(parentMenu, build2D, position);
    if (isFirst) forEachChild([](KsTopLevelDialog* child) { child->show3D(0); });
}

void KsMenuPushButtonLauncher::menuEvent(void* data, int id)
{
    const KsKeepAlive keep(this);
    KsMenuPushButton::menuEvent(data, id);
    forEachChild([this](KsTopLevelDialog* child) {
        ksBuildLaunched(this, child);
        child->show();
    });
}

void KsMenuPushButtonLauncher::draggerStartCallback3D()
{
    forEachChild([this](KsTopLevelDialog* child) {
        child->setParent(this);
        child->updateDialogBuild(0);
        child->show3D(1);
    });
}

void KsMenuPushButtonLauncher::draggerFinishCallback3D() {}
