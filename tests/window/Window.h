#pragma once

// What the tests of windows share: dialogs whose windows go with the test, check boxes in them, and
// a person's mouse.

#include "base/Elements.h"

#include <formweave/KsColumnDialog.h>
#include <formweave/KsDialogAuditor.h>
#include <formweave/KsDialogCheckBoxAuditor.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>
#include <QWindow>
#include <functional>

inline void PrintTo(const QSize& s, std::ostream* out) { *out << s.width() << " " << s.height(); }
inline void PrintTo(const QPoint& p, std::ostream* out) { *out << p.x() << " " << p.y(); }

/// Hears every check box below the container that it is added to.
class DialogListener : public KsDialogAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        told.push_back(box->label.getValue().toUtf8() + (box->state ? "+" : "-"));
        if (then) then(box);
    }
    Calls told;
    std::function<void(KsDialogCheckBox*)> then;
};

/// A dialog that tells which of its changes ran.
class ProbeDialog : public KsTopLevelDialog {
public:
    void changeWidth() override
    {
        calls.emplace_back("changeWidth");
        KsTopLevelDialog::changeWidth();
    }
    void changeHeight() override
    {
        calls.emplace_back("changeHeight");
        KsTopLevelDialog::changeHeight();
    }
    Calls calls;
};

class WindowBase : public DialogBase {
protected:
    void TearDown() override
    {
        QList<QPointer<QWidget>> windows;
        for (const auto& dialog : m_dialogs) windows << QPointer<QWidget>(dialog->getBaseWidget());
        m_dialogs.clear();
        for (const auto& window : windows) delete window;
        settle();
        DialogBase::TearDown();
    }

    /// A dialog that goes with the test, and its window with it.
    template <class T = KsTopLevelDialog> T* make()
    {
        auto* dialog = new T;
        m_dialogs.emplace_back(dialog);
        return dialog;
    }
    KsTopLevelDialog* read(const std::string& text)
    {
        const auto dialog = readNode<KsTopLevelDialog>(text);
        EXPECT_TRUE(dialog) << text;
        m_dialogs.emplace_back(dialog.get());
        return dialog.get();
    }
    /// Lets go of a dialog, whose window stays.
    void letGo(KsTopLevelDialog* dialog)
    {
        m_dialogs.erase(std::remove_if(m_dialogs.begin(), m_dialogs.end(),
                                       [=](const auto& each) { return each.get() == dialog; }),
                        m_dialogs.end());
    }
    static KsDialogCheckBox* box(const char* label = "")
    {
        auto* made = new KsDialogCheckBox;
        made->label = label;
        return made;
    }
    static QWidget* open(KsTopLevelDialog* dialog)
    {
        dialog->buildDialog();
        dialog->show();
        settle();
        return dialog->getBaseWidget();
    }
    /// All that Qt has put off.
    static void settle()
    {
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
    }
    static QCheckBox* toggle(const KsDialogComponent* element)
    {
        return element->getWidget() ? element->getWidget()->findChild<QCheckBox*>() : nullptr;
    }
    static void click(const KsDialogComponent* element)
    {
        QCheckBox* widget = toggle(element);
        ASSERT_TRUE(widget);
        ASSERT_TRUE(widget->isVisible());
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget->height() / 2));
    }
    /// What the person does who clicks the cross in the window's frame.
    static void closeByFrame(QWidget* window)
    {
        ASSERT_TRUE(window->windowHandle());
        QCloseEvent event;
        QApplication::sendEvent(window->windowHandle(), &event);
    }
    static int numToggles(const QWidget* window)
    {
        return window->findChildren<QCheckBox*>().size();
    }

private:
    std::vector<KsRef<KsTopLevelDialog>> m_dialogs;
};

/// What a dialog's fields say of its size.
class Window : public WindowBase {
protected:
    static KbVec2i32 sizeOf(const KsDialogComponent* c) { return {c->width, c->height}; }
    static QSize sizeOf(const KsTopLevelDialog* d) { return {d->width, d->height}; }
    static QSize minOf(const KsTopLevelDialog* d) { return {d->minWidth, d->minHeight}; }
    static QSize maxOf(const KsTopLevelDialog* d) { return {d->maxWidth, d->maxHeight}; }
};

inline const QSize unlimited(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
