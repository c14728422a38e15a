#pragma once

// A person who closes message boxes.

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <functional>

/// What a person saw of a box, who then pressed a button of it.
struct Seen {
    bool shown = false;
    QString caption, text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool hasPixmap = false;
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;
    Qt::TextFormat format = Qt::AutoText;
    QWidget* parent = nullptr;
};

class Person {
public:
    explicit Person(QMessageBox::StandardButton answer) : m_answer(answer)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { look(); });
        m_timer.start(1);
    }
    std::function<void()> meanwhile;
    Seen seen;

private:
    void look()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || seen.shown) return;
        seen = {true,
                box->windowTitle(),
                box->text(),
                box->icon(),
                !box->iconPixmap().isNull(),
                box->standardButtons(),
                box->textFormat(),
                box->parentWidget()};
        m_timer.stop();
        if (meanwhile) meanwhile();
        if (QAbstractButton* button = box->button(m_answer))
            QTest::mouseClick(button, Qt::LeftButton);
        else
            ADD_FAILURE() << "there is no such button";
    }
    QMessageBox::StandardButton m_answer;
    QTimer m_timer;
};
