#include <formweave/KsMenuCheckBoxLauncher.h>

#include "KsElementSearch.h"
#include "KsLauncher.h"

KS_KIT_SOURCE(KsMenuCheckBoxLauncher, KsMenuCheckBox)

namespace {

const KsElementListTraits traits{"KsMenuCheckBoxLauncher", &KsTopLevelDialog::getClassTypeId,
                                 "; Be careful", false};

} // namespace

KsMenuCheckBoxLauncher::KsMenuCheckBoxLauncher()
    : KsElementContainer<KsMenuCheckBox, KsTopLevelDialog>(traits)
{
    KsInstanceBuilder build(classRecord, this);
}

KsMenuCheckBoxLauncher::~KsMenuCheckBoxLauncher() = default;

KsFormweave* KsMenuCheckBoxLauncher::searchForAuditorId(KbString id)
{
    return ksSearchForAuditorId(m_elements, id);
}

void KsMenuCheckBoxLauncher::menuEvent(void* data, int id)
{
    const KsKeepAlive keep(this);
    KsMenuCheckBox::menuEvent(data, id);
    forEachChild([this](KsTopLevelDialog* child) {
        ksBuildLaunched(this, child);
        if (state)
            child->show();
        else
            child->hide();
    });
}

void KsMenuCheckBoxLauncher::create3DEntry()
{
    KsMenuCheckBox::create3DEntry();
    forEachChild([this](KsTopLevelDialog* child) { child->show3D(state); });
}
