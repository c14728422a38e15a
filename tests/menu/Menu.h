#pragma once

// A dialog with menus on screen, and a person in front of it.

#include <dialog/Stage.h>

#include <QMenu>
#include <QMenuBar>

#include "MessageGuard.h"

/// Writes down what a listener of menus is told, as "kind:auditorID value".
class MenuListener : public KsDialogAuditor {
public:
    void menuPushButton(KsMenuPushButton* e) override { hear("push", e, ""); }
    void menuCheckBox(KsMenuCheckBox* e) override { hear("check", e, e->state ? " on" : " off"); }
    void menuRadioButtons(KsMenuRadioButtons* e) override
    {
        hear("radio", e, " " + std::to_string(e->selectedItem.getValue()));
    }
    void menuFileSelection(KsMenuFileSelection* e) override { hear("file", e, ""); }
    void dialogCheckBox(KsDialogCheckBox* e) override { hear("box", e, ""); }

    /// What was heard since the last call.
    std::vector<std::string> take()
    {
        auto taken = std::move(heard);
        heard.clear();
        return taken;
    }
    std::function<void()> then;

private:
    void hear(const char* kind, KsFormweave* e, const std::string& value)
    {
        heard.push_back(std::string(kind) + ":" + e->auditorID.getValue().toUtf8() + value);
        if (then) then();
    }
    std::vector<std::string> heard;
};

using Heard = std::vector<std::string>;

/// "file" with "new" and "recent", in which is "one"; "view" with "grid".
inline const char* const twoMenus =
    "TopLevelDialog { position3D 100 50 0 width 300 height 100 MenuBar { auditorID \"bar\" "
    "MenuPopup { label \"File\" auditorID \"file\" "
    "MenuPushButton { label \"New\" auditorID \"new\" } "
    "MenuPopup { label \"Recent\" auditorID \"recent\" "
    "MenuPushButton { label \"one\" auditorID \"one\" } } } "
    "MenuPopup { label \"View\" auditorID \"view\" "
    "MenuCheckBox { label \"Grid\" auditorID \"grid\" } } } "
    "DialogCheckBox { auditorID \"box\" onString \"text\" } }";

inline KsMenuPushButton* button(const char* label)
{
    auto* made = new KsMenuPushButton;
    made->label = label;
    made->auditorID = label;
    return made;
}

class MenuStage : public Stage {
public:
    explicit MenuStage(const std::string& text, Road road = Both) : Stage(text, road)
    {
        if (dialog) dialog->addAuditor(&listener);
    }
    ~MenuStage()
    {
        if (dialog) dialog->removeAuditor(&listener);
    }
    Heard heard() { return listener.take(); }

    // The window.

    QMenuBar* bar() const
    {
        QWidget* window = dialog ? dialog->getBaseWidget() : nullptr;
        const auto bars = window ? window->findChildren<QMenuBar*>() : QList<QMenuBar*>();
        EXPECT_LE(bars.size(), 1);
        return bars.isEmpty() ? nullptr : bars[0];
    }
    static QAction* in(const QWidget* menu, const QString& text)
    {
        for (QAction* action : menu ? menu->actions() : QList<QAction*>())
            if (action->text() == text) return action;
        return nullptr;
    }
    /// By the texts on the way: "File", "Recent", "one".
    QAction* action(std::initializer_list<const char*> way) const
    {
        const QWidget* menu = bar();
        QAction* found = nullptr;
        for (const char* text : way) {
            found = in(menu, QString::fromUtf8(text));
            menu = found ? found->menu() : nullptr;
        }
        return found;
    }
    static QStringList texts(const QWidget* menu)
    {
        QStringList all;
        for (const QAction* action : menu ? menu->actions() : QList<QAction*>())
            all << (action->isSeparator() ? "-" : action->text());
        return all;
    }
    QStringList textsOf(std::initializer_list<const char*> way) const
    {
        const QAction* found = way.size() ? action(way) : nullptr;
        const QWidget* menu = found ? found->menu() : nullptr;
        return texts(way.size() ? menu : bar());
    }
    /// Clicks through the menus with the mouse.
    void clickThrough(std::initializer_list<const char*> way)
    {
        QWidget* menu = bar();
        for (const char* text : way) {
            ASSERT_TRUE(menu);
            QAction* next = in(menu, QString::fromUtf8(text));
            ASSERT_TRUE(next) << text;
            auto* asBar = qobject_cast<QMenuBar*>(menu);
            auto* asMenu = qobject_cast<QMenu*>(menu);
            const QRect at = asBar ? asBar->actionGeometry(next) : asMenu->actionGeometry(next);
            QTest::mouseMove(menu, at.center());
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, at.center());
            menu = next->menu();
            if (!menu) break;
            EXPECT_TRUE(QTest::qWaitFor([=] { return menu->isVisible(); }, 2000));
        }
        QApplication::processEvents();
    }

    // The scene.

    bool isDrawn(KsFormweave* element, const char* part = "geomSwitch")
    {
        draw();
        return !boxOf(element, part).isEmpty();
    }
    bool isDrawn(const char* id) { return isDrawn(find<KsFormweave>(id)); }
    /// Clicks on each of them, where it is drawn.
    void clickOn(std::initializer_list<const char*> ids)
    {
        for (const char* id : ids) {
            auto* element = find<KsFormweave>(id);
            ASSERT_TRUE(element) << id;
            clickPart(element, "geomSwitch");
            draw();
        }
    }
    /// A press where nothing is.
    void closeAll()
    {
        click(KbVec2f(viewWidth - 1, 1));
        draw();
    }
    KbBox3f boxOf(const char* id, const char* part = "geomSwitch")
    {
        draw();
        return Stage::boxOf(find<KsFormweave>(id), part);
    }
    using Stage::boxOf;

    MenuListener listener;
};
