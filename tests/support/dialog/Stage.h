#pragma once

// A dialog on screen, as a window, as a panel in a scene, or both, and a person in front of it.

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <dialog/Inside.h>
#include <formweave/formweave.h>

#include <QPointer>
#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Starts the library and ends it. A pixel of the scene's view is a unit.
class Stage {
public:
    enum Road { Window = 1, Scene = 2, Both = 3 };
    static constexpr int viewWidth = 800;
    static constexpr int viewHeight = 600;

    /// `text`: a file's text without its header; its first node is the dialog.
    explicit Stage(const std::string& text, Road road = Both)
    {
        KsFormweave::init();
        {
            KsInput in;
            in.setBuffer(text.data(), text.size());
            const KsRef<KsSeparator> root(KsDB::readAll(&in));
            if (root && root->getNumChildren())
                dialog = ksCast<KsTopLevelDialog>(root->getChild(0));
        }
        EXPECT_TRUE(dialog);
        m_scene = new KsSeparator;
        m_camera = new KsOrthographicCamera;
        m_camera->position = KbVec3f(viewWidth / 2, -viewHeight / 2, 500);
        m_camera->height = viewHeight;
        m_camera->nearDistance = 1;
        m_camera->farDistance = 1000;
        m_scene->addChild(m_camera);
        if (!dialog) return;
        if (road & Scene) {
            m_scene->addChild(dialog.get());
            draw();
        }
        if (road & Window) {
            dialog->buildDialog();
            dialog->show();
            QApplication::setActiveWindow(dialog->getBaseWidget());
            QApplication::processEvents();
        }
    }
    ~Stage()
    {
        dropDialog();
        // A window outlives its dialog; so do those of dialogs that a launcher opened.
        // One may hold another.
        std::vector<QPointer<QWidget>> windows;
        for (QWidget* window : QApplication::topLevelWidgets()) windows.emplace_back(window);
        for (const QPointer<QWidget>& window : windows) {
            if (window && window->objectName() == "KsTopLevelDialog") delete window;
        }
        settle();
        m_scene.reset();
        KsFormweave::finish();
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// Lets go of the dialog, which dies unless somebody else holds it.
    void dropDialog()
    {
        m_search.reset();
        if (m_scene->getNumChildren() > 1) m_scene->removeChild(1);
        dialog.reset();
    }
    /// What is to be deleted later is deleted now.
    static void settle()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
    }
    template <class T> T* find(const char* id) const
    {
        return dialog ? ksCast<T>(dialog->searchForAuditorId(id)) : nullptr;
    }

    // The window.

    /// The widget of a kind in an element's frame; null if there is none.
    template <class Widget> static Widget* widgetOf(const KsDialogComponent* element)
    {
        return element && element->getWidget() ? element->getWidget()->findChild<Widget*>()
                                               : nullptr;
    }
    static void clickWidget(QWidget* widget, const QPoint& place)
    {
        ASSERT_TRUE(widget);
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, place);
    }

    // The scene.

    KsSeparator* scene() const { return m_scene; }
    /// What a viewer does before it draws.
    KbBox3f draw()
    {
        KsGetBoundingBoxAction action(m_view);
        action.apply(m_scene.get());
        return action.getBoundingBox();
    }
    /// Where a part is drawn; empty if it is not.
    KbBox3f boxOf(KsFormweave* element, const char* part)
    {
        return boxOf(element ? element->getAnyPart(part, false) : nullptr);
    }
    KbBox3f boxOf(KsNode* node)
    {
        KsGetBoundingBoxAction action(m_view);
        m_search.reset();
        m_search.setSearchingAll(true);
        m_search.setNode(node);
        if (node) m_search.apply(m_scene.get());
        if (KsPath* path = m_search.getPath()) action.apply(path);
        m_search.reset();
        return action.getBoundingBox();
    }
    static int shown(KsFormweave* element, const char* part)
    {
        auto* node = ksCast<KsSwitch>(element->getAnyPart(part, false));
        return node ? static_cast<int>(node->whichChild) : -99;
    }
    bool press(const KbVec2f& at) { return send(KsButtonEvent::DOWN, at); }
    bool release(const KbVec2f& at) { return send(KsButtonEvent::UP, at); }
    /// FALSE if nobody wanted the press.
    bool click(const KbVec2f& at)
    {
        const bool handled = press(at);
        release(at);
        return handled;
    }
    /// In the middle of where the part is drawn.
    KbVec2f placeOf(KsFormweave* element, const char* part)
    {
        draw();
        const KbBox3f box = boxOf(element, part);
        EXPECT_FALSE(box.isEmpty()) << part << " is not drawn";
        const KbVec3f middle = box.isEmpty() ? KbVec3f(-9, 9, 0) : box.getCenter();
        return KbVec2f(middle[0], middle[1] + viewHeight);
    }
    bool clickPart(KsFormweave* element, const char* part) { return click(placeOf(element, part)); }

    /// A key of the keyboard goes down and up. `printable` is what it types.
    void key(int code, char16_t printable = 0, bool shift = false)
    {
        for (const auto state : {KsButtonEvent::DOWN, KsButtonEvent::UP}) {
            KsKeyboardEvent event(code, state, printable);
            event.setShiftDown(shift);
            m_events.setEvent(&event);
            m_events.apply(m_scene.get());
            m_events.setEvent(nullptr);
        }
    }
    /// Types Latin-1 characters, each with its own key; a line feed is Shift and Return.
    void type(const char* text)
    {
        for (; *text; ++text) {
            const int c = static_cast<unsigned char>(*text);
            if (c == '\n')
                key(KsKeyboardEvent::RETURN, 0, true);
            else
                key(c, static_cast<char16_t>(c));
        }
    }
    bool move(const KbVec2f& at)
    {
        const KsLocation2Event event(at);
        m_events.setEvent(&event);
        m_events.apply(m_scene.get());
        m_events.setEvent(nullptr);
        return m_events.isHandled();
    }

    KsRef<KsTopLevelDialog> dialog;

private:
    bool send(KsButtonEvent::State state, const KbVec2f& at)
    {
        const KsMouseButtonEvent event(KsMouseButtonEvent::BUTTON1, state, at);
        m_events.setEvent(&event);
        m_events.apply(m_scene.get());
        m_events.setEvent(nullptr);
        return m_events.isHandled();
    }

    KbViewportRegion m_view{viewWidth, viewHeight};
    KsHandleEventAction m_events{m_view};
    KsSearchAction m_search;
    KsRef<KsSeparator> m_scene;
    KsOrthographicCamera* m_camera = nullptr;
};
