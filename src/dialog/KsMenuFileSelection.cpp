#include <formweave/KsMenuFileSelection.h>

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/base/KbFileHelper.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsMenuFileSelectionAuditor.h>

#include <QFileDialog>

KS_KIT_SOURCE(KsMenuFileSelection, KsMenuPushButton)

namespace {

QString toQString(const KbString& text) { return QString::fromStdU16String(text.toUtf16()); }

// As Qt gave it: Latin-1 where its characters allow, else Unicode.
KbString fromQString(const QString& text) { return KbString::fromUtf8(text.toStdString()); }

} // namespace

KsMenuFileSelection::KsMenuFileSelection()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Mode", {{"OPEN", OPEN}, {"SAVE", SAVE}});
    build.field("title", title, "");
    build.field("filter", filter, std::vector<KbString>{"*.arb", "Arborium file"});
    build.field("defaultFilter", defaultFilter, 0);
    build.field("fileDirectory", fileDirectory, KbString("."));
    build.field("filename", filename, KbString());
    build.enumField("mode", mode, "Mode", OPEN);
}

KsMenuFileSelection::~KsMenuFileSelection() = default;

void KsMenuFileSelection::addAuditor(KsMenuFileSelectionAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsMenuFileSelection::removeAuditor(KsMenuFileSelectionAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsMenuFileSelection::applyDlgCptAuditor()
{
    reportAction(this, &KsMenuFileSelectionAuditor::menuFileSelection);
}

void KsMenuFileSelection::validateFilename() { applyDlgCptAuditor(); }

void KsMenuFileSelection::setIsOpened(int opened) { m_isOpened = opened; }

void KsMenuFileSelection::menuEvent(void*, int) { openDialogBox(); }

void KsMenuFileSelection::openDialogBox()
{
    const KsKeepAlive keep(this);
    QString filters;
    for (int i = 0; i < filter.getNum() / 2; ++i)
        filters += toQString(filter[2 * i + 1]) + " (" + toQString(filter[2 * i]) + ");;";
    // The release goes to the dialog: a scene that waits for it would drag ever on.
    KsHandleEventAction::releaseAllGrabs();
    const auto ask = mode == OPEN ? &QFileDialog::getOpenFileName : &QFileDialog::getSaveFileName;
    const QString directory = toQString(KbFileHelper::expandString(fileDirectory.getValue()));
    const QString chosen =
        ask(nullptr, toQString(title), directory, filters, nullptr, QFileDialog::Options());
    const int slash = chosen.lastIndexOf('/');
    if (slash >= 0) fileDirectory = fromQString(chosen.left(slash));
    filename = fromQString(chosen.mid(slash + 1));
    validateFilename();
}

void KsMenuFileSelection::add3DCallbackMethods()
{
    addStartCallback(startCB3D);
    addFinishCallback(finishCB3D);
}

void KsMenuFileSelection::finishCB3D(void*, KsDragger* dragger)
{
    auto* selection = static_cast<KsMenuFileSelection*>(dragger);
    if (selection->takesPick()) selection->draggerFinishCallback3D();
}

void KsMenuFileSelection::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    const KsRef<KsMenuBar> bar(getMenuBar());
    openDialogBox();
    KsMenuPushButton::draggerFinishCallback3D();
    closeMenus3D(bar);
}
