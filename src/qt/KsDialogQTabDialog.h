#pragma once

#include "KsRelay.h"

#include <QTabWidget>

class KsTabDialog;
class QBoxLayout;

/// Relay of a tab dialog. What the node does to the pages does not come back as a choice of the
/// user.
class KsDialogQTabDialog : public KsRelayFrame {
    Q_OBJECT

public:
    KsDialogQTabDialog(QWidget* parent, KsTabDialog* tabDialog);

    void updateTabWidget(int x, int y, int w, int h);
    /// Makes an empty page before the one at `index` and returns it.
    QWidget* addPage(int index, const QString& title);
    /// Deletes the page with what is in it; null is allowed.
    void removePage(QWidget* page);
    void changePageLabel(QWidget* page, const QString& title);
    /// Null if there is no such page.
    QBoxLayout* getPageLayout(int index) const;
    QTabWidget* getTabWidget() const { return m_tabWidget; }
    void changeSelectedPage(int index);

public slots:
    /// The user selected a page.
    void eventNotify(int index);

private:
    QPointer<QTabWidget> m_tabWidget;
    int m_quiet = 0;
};
