#include <formweave/KsMessageDialog.h>

#include "../qt/KsRelay.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/qt/KsQt.h>

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPointer>
#include <QStyle>

KS_KIT_SOURCE(KsMessageDialog, KsFormweave)

KsMessageDialog::KsMessageDialog()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Type", {{"MD_ERROR", MD_ERROR},
                         {"MD_INFORMATION", MD_INFORMATION},
                         {"MD_MESSAGE", MD_MESSAGE},
                         {"MD_QUESTION", MD_QUESTION},
                         {"MD_WARNING", MD_WARNING},
                         {"MD_WORKING", MD_WORKING}});
    build.field("title", title, "");
    build.enumField("type", type, "Type", MD_MESSAGE);
}

KsMessageDialog::KsMessageDialog(KbString text, KbString caption, Type kind) : KsMessageDialog()
{
    label = text;
    title = caption;
    type = kind;
    KsMessageDialog::show();
}

KsMessageDialog::~KsMessageDialog() = default;

namespace {

/// The program's own icon, as an "about" box shows it.
QPixmap programIcon(const QWidget* parent)
{
    QIcon icon = parent ? parent->windowIcon() : QIcon();
    if (icon.isNull()) icon = QApplication::windowIcon();
    const int size = QApplication::style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    return icon.pixmap(QSize(size, size));
}

} // namespace

void KsMessageDialog::show()
{
    const int kind = type;
    if (kind < MD_ERROR || kind >= MD_WORKING) return;
    if (!hasApplication("KsMessageDialog::show")) return;
    // The release goes to the box: a scene that waits for it would drag ever on.
    KsHandleEventAction::releaseAllGrabs();

    // Made by hand as the static calls of Qt make it, since those guess that a text is markup.
    QWidget* parent = KsQt::getTopLevelWidget();
    const QPointer<QMessageBox> box(new QMessageBox(parent));
    box->setWindowTitle(ksShownQString(title));
    box->setTextFormat(Qt::PlainText);
    box->setText(ksShownQString(label));
    box->setStandardButtons(kind == MD_QUESTION ? QMessageBox::Yes | QMessageBox::No
                                                : QMessageBox::Ok);
    if (kind == MD_MESSAGE)
        box->setIconPixmap(programIcon(parent));
    else
        box->setIcon(kind == MD_ERROR         ? QMessageBox::Critical
                     : kind == MD_QUESTION    ? QMessageBox::Question
                     : kind == MD_INFORMATION ? QMessageBox::Information
                                              : QMessageBox::Warning);
    box->exec();
    // Gone already if its parent is; this node may be gone too.
    delete box.data();
}

void KsMessageDialog::close() {}

// The step of the base that lets go of the file that the node stands in is left out.
void KsMessageDialog::destroy()
{
    close();
    KsBase::destroy();
}

void KsMessageDialog::createWorkingMessageDialog() {}

KbVec2i32 KsMessageDialog::getLabelPixelSize(KbString) { return {0, 0}; }
