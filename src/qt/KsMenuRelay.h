#pragma once

#include <QAction>
#include <QPointer>
#include <QWidget>

class KsMenuItem;

/// The action that stands for an entry in its menu, and the slot that hears of it. It is never
/// shown itself.
class KsMenuRelay : public QWidget {
    Q_OBJECT

public:
    ~KsMenuRelay() override;

    /// The texts are Latin-1.
    void changeLabel(const char* text);
    void changeAccelerator(const char* text);
    void changeEnable(bool enable);
    /// Takes the action out of the menu, and ends: from now on nothing reaches the node.
    void retire();

public slots:
    void menuEvent();

protected:
    /// `menu` may be null; `event` is what the node is told when the action is triggered.
    KsMenuRelay(QWidget* menu, int id, KsMenuItem* node, int event, bool checkable);
    void setChecked(bool checked) { m_action->setChecked(checked); }

private:
    void leaveMenu();

    KsMenuItem* m_node;
    QPointer<QWidget> m_menu;
    int m_id;
    int m_event;
    QAction* m_action;
};
