#include "KsDialogQTabDialog.h"

#include <formweave/KsTabDialog.h>

#include <QBoxLayout>

namespace {

class Quiet {
public:
    explicit Quiet(int& level) : m_level(level) { ++m_level; }
    ~Quiet() { --m_level; }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    int& m_level;
};

} // namespace

KsDialogQTabDialog::KsDialogQTabDialog(QWidget* parent, KsTabDialog* tabDialog)
    : KsRelayFrame(parent, tabDialog, "KsDialogQTabDialog")
{
    m_tabWidget = new QTabWidget(this);
    adoptControl(m_tabWidget, "TabWidget");
    connect(m_tabWidget, "2currentChanged(int)", this, "1eventNotify(int)");
}

void KsDialogQTabDialog::updateTabWidget(int x, int y, int w, int h)
{
    place(m_tabWidget, x, y, w, h);
}

QWidget* KsDialogQTabDialog::addPage(int index, const QString& title)
{
    auto* page = new QWidget(this);
    page->setObjectName("LMNKsDialogQTabDialogTempWidget");
    auto* layout = new QVBoxLayout(page);
    layout->setObjectName("LMNKsDialogQTabDialogLayout");
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const Quiet quiet(m_quiet);
    if (m_tabWidget) m_tabWidget->insertTab(index, page, title);
    return page;
}

void KsDialogQTabDialog::removePage(QWidget* page)
{
    if (!page) return;
    const Quiet quiet(m_quiet);
    if (m_tabWidget) m_tabWidget->removeTab(m_tabWidget->indexOf(page));
    ksDeleteWidget(page);
}

void KsDialogQTabDialog::changePageLabel(QWidget* page, const QString& title)
{
    if (m_tabWidget) m_tabWidget->setTabText(m_tabWidget->indexOf(page), title);
}

QBoxLayout* KsDialogQTabDialog::getPageLayout(int index) const
{
    const QWidget* page = m_tabWidget ? m_tabWidget->widget(index) : nullptr;
    return page ? qobject_cast<QBoxLayout*>(page->layout()) : nullptr;
}

void KsDialogQTabDialog::changeSelectedPage(int index)
{
    const Quiet quiet(m_quiet);
    if (m_tabWidget) m_tabWidget->setCurrentIndex(index);
}

void KsDialogQTabDialog::eventNotify(int index)
{
    if (!m_quiet) notify(static_cast<unsigned int>(index));
}
