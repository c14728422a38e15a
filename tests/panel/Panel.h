#pragma once

// A scene with a camera and panels in it, and a person who points at what is drawn there.

#include <MessageGuard.h>
#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Inside.h>
#include <dialog/Listeners.h>
#include <formweave/formweave.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

/// A field sensor that runs a function.
struct Watch {
    explicit Watch(KsField* field, std::function<void()> f = {})
        : then(std::move(f)), sensor(&call, this)
    {
        sensor.setPriority(0);
        sensor.attach(field);
    }
    static void call(void* data, KsSensor*)
    {
        auto* self = static_cast<Watch*>(data);
        ++self->calls;
        if (self->then) self->then();
    }
    int calls = 0;
    std::function<void()> then;
    KsFieldSensor sensor;
};

class PanelTest : public testing::Test {
protected:
    static constexpr int windowWidth = 800;
    static constexpr int windowHeight = 600;

    void SetUp() override
    {
        KsFormweave::init();
        scene = new KsSeparator;
        // A pixel is a unit; the origin is at the upper left corner.
        auto* flat = new KsOrthographicCamera;
        flat->position = KbVec3f(windowWidth / 2, -windowHeight / 2, 500);
        flat->height = windowHeight;
        flat->nearDistance = 1;
        flat->farDistance = 1000;
        camera = flat;
        scene->addChild(flat);
    }
    void TearDown() override
    {
        Active::set3DCurrentActive(nullptr);
        scene.reset();
        KsFormweave::finish();
    }

    // The scene.

    template <class T = KsTopLevelDialog> static KsRef<T> read(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        return KsRef<T>(root && root->getNumChildren() ? ksCast<T>(root->getChild(0)) : nullptr);
    }
    /// Puts the dialog of a text into the scene and draws it.
    KsTopLevelDialog* add(const std::string& text, KsGroup* where = nullptr)
    {
        const auto dialog = read<>(text);
        if (!dialog) return nullptr;
        (where ? where : static_cast<KsGroup*>(scene.get()))->addChild(dialog.get());
        frame();
        return dialog.get();
    }
    /// What a viewer does before it draws.
    KbBox3f frame()
    {
        KsGetBoundingBoxAction action(viewport);
        action.apply(scene.get());
        return action.getBoundingBox();
    }
    KsPath* pathTo(KsNode* node)
    {
        search.reset();
        search.setSearchingAll(true);
        search.setNode(node);
        search.apply(scene.get());
        return search.getPath();
    }
    /// As it is drawn; empty if it is not.
    KbBox3f boxOf(KsNode* node)
    {
        KsGetBoundingBoxAction action(viewport);
        if (KsPath* path = node ? pathTo(node) : nullptr) action.apply(path);
        search.reset(); // holds nothing that is to die
        return action.getBoundingBox();
    }
    KbBox3f boxOf(KsFormweave* element, const char* part)
    {
        return boxOf(element->getAnyPart(part, false));
    }
    bool isVisible(KsNode* node) { return !boxOf(node).isEmpty(); }
    template <class T = KsDialogCheckBox> static T* child(KsTopLevelDialog* dialog, const char* id)
    {
        return ksCast<T>(dialog->searchForAuditorId(id));
    }
    template <class T> static T* firstIn(KsFormweave* element, const char* part)
    {
        auto* group = ksCast<KsGroup>(element->getAnyPart(part, false));
        for (int i = 0; group && i < group->getNumChildren(); ++i)
            if (T* found = ksCast<T>(group->getChild(i))) return found;
        return nullptr;
    }
    static int shown(KsFormweave* element, const char* part)
    {
        auto* node = ksCast<KsSwitch>(element->getAnyPart(part, false));
        return node ? static_cast<int>(node->whichChild) : -99;
    }

    // The person.

    KbVec2f pixel(const KbVec3f& world) const
    {
        KbVec3f place;
        camera->getViewVolume(static_cast<float>(windowWidth) / windowHeight)
            .projectToScreen(world, place);
        return KbVec2f(place[0] * windowWidth, place[1] * windowHeight);
    }
    /// Where the middle of a part is drawn, on the side that looks at the viewer.
    KbVec2f middleOf(KsFormweave* element, const char* part)
    {
        const KbBox3f box = boxOf(element, part);
        EXPECT_FALSE(box.isEmpty()) << part << " is not drawn";
        return box.isEmpty() ? KbVec2f(-1, -1) : pixel(box.getCenter());
    }
    /// Where a point of the space in which an element stands is drawn.
    KbVec2f placeOf(KsFormweave* element, const KbVec3f& local)
    {
        KsGetMatrixAction action(viewport);
        if (KsPath* path = pathTo(element)) action.apply(path);
        search.reset();
        KbVec3f world;
        action.getMatrix().multVecMatrix(local, world);
        return pixel(world);
    }
    /// A free place of the title bar, of the open panel and of the strip.
    KbVec2f titleOf(KsTopLevelDialog* dialog)
    {
        const KbVec3f size = dialog->getTopLevelSize();
        const bool strip = dialog->minimized && size[1] == 20;
        const KbVec3f place = strip ? dialog->minimized3DPosition : dialog->position3D;
        return placeOf(dialog,
                       KbVec3f(place[0] + size[0] - 30, -place[1] - (strip ? 10 : 12), place[2]));
    }
    bool send(const KsEvent& event)
    {
        events.setEvent(&event);
        events.apply(scene.get());
        return events.isHandled();
    }
    bool press(const KbVec2f& p)
    {
        return send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, p));
    }
    bool release(const KbVec2f& p)
    {
        return send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP, p));
    }
    bool move(const KbVec2f& p) { return send(KsLocation2Event(p)); }
    bool click(const KbVec2f& p)
    {
        const bool handled = press(p);
        release(p);
        return handled;
    }
    void clickButton(KsTopLevelDialog* dialog) { click(middleOf(dialog, "minSep")); }
    void drag(const KbVec2f& from, float right, float up)
    {
        press(from);
        for (int i = 1; i <= 4; ++i) {
            const float share = static_cast<float>(i) / 4;
            move(KbVec2f(from[0] + share * right, from[1] + share * up));
            frame();
        }
        release(KbVec2f(from[0] + right, from[1] + up));
    }

    KbViewportRegion viewport{windowWidth, windowHeight};
    KsHandleEventAction events{viewport};
    KsSearchAction search;
    KsRef<KsSeparator> scene;
    KsCamera* camera = nullptr;
};

inline testing::AssertionResult isNear(const KbVec3f& a, const KbVec3f& b, float tolerance = 1e-2f)
{
    if (a.equals(b, tolerance)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << a[0] << ' ' << a[1] << ' ' << a[2] << " is not " << b[0]
                                       << ' ' << b[1] << ' ' << b[2];
}
