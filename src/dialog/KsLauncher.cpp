#include "KsLauncher.h"

#include <arborium/qt/KsQt.h>
#include <formweave/KsTopLevelDialog.h>

void ksBuildLaunched(KsFormweave* launcher, KsTopLevelDialog* dialog)
{
    dialog->setParent(launcher);
    // A dialog that was taken out of a launcher kept its window, which nothing updates since then.
    if (!dialog->getBaseWidget() || !dialog->isBuilt2D())
        dialog->buildDialog(KsQt::getTopLevelWidget(), 0);
}
