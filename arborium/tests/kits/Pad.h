#pragma once

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/kits/KsDragger.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>

#include <gtest/gtest.h>

#include <cmath>

/// A square from (-0.5, -0.5) to (0.5, 0.5) at z 0 that can be hit.
class KsPad : public KsNode {
    KS_NODE_HEADER(KsPad);

public:
    KsPad() { KsInstanceBuilder build(classRecord, this); }
    bool affectsState() const override { return false; }
    void rayPick(KsRayPickAction* action) override
    {
        if (!action->hasRay()) return;
        const KbLine& line = action->getObjectLine();
        const float along = line.getDirection()[2];
        if (along == 0) return;
        const KbVec3f hit =
            line.getPosition() + line.getDirection() * (-line.getPosition()[2] / along);
        if (std::fabs(hit[0]) <= 0.5f && std::fabs(hit[1]) <= 0.5f)
            action->addIntersection(hit, {0, 0, 1});
    }

protected:
    ~KsPad() override = default;
};

/// A kit with two separators, a switch with two looks below one of them, and a list.
///
///     geomSeparator: first, second ( choice ( lookA, lookB ) ), items
class KsPanel : public KsDragger {
    KS_KIT_HEADER(KsPanel);

public:
    KsPanel()
    {
        KsInstanceBuilder build(classRecord, this);
        build.field("size", size, 3);
        const KsType group = KsGroup::getClassTypeId();
        const KsType separator = KsSeparator::getClassTypeId();
        build.part("first", group, "geomSeparator", KsPublicPart);
        build.part("second", separator, "geomSeparator", KsHiddenPart);
        build.part("choice", KsSwitch::getClassTypeId(), "second", KsHiddenPart);
        build.part("lookA", group, "choice", KsPublicPart);
        build.part("lookB", group, "choice", KsPublicPart);
        build.part("items", group, group, true, "geomSeparator", "", true, group,
                   KsSeparator::getClassTypeId(), KsPublicPart);
        build.part("zeroth", group, "geomSeparator", KsPublicPart, true, "first");
        build.part("inner", KsBaseKit::getClassTypeId(), KsDragger::getClassTypeId(), true,
                   "geomSeparator", "", false, KsType::badType(), KsType::badType(), KsPublicPart);
    }
    KsSFInt32 size;
    int dragsLost = 0;

    using KsBaseKit::restoreTopSeparator;

protected:
    ~KsPanel() override = default;
    void dragLost() override { ++dragsLost; }
};

/// What every test of a kit begins with.
class KitTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        KsDB::init();
        KsPad::initClass();
        KsPanel::initClass();
    }
    void TearDown() override
    {
        KsPanel::exitClass();
        KsPad::exitClass();
        KsDB::finish();
    }
    /// The first child of the group at the part, and so on: what stands where.
    static std::vector<KsNode*> childrenOf(const KsNode* node)
    {
        std::vector<KsNode*> result;
        const KsChildList* list = node ? node->getChildren() : nullptr;
        for (int i = 0; list && i < list->getLength(); ++i) result.push_back((*list)[i]);
        return result;
    }
};

/// A scene of 10 by 10 units under an orthographic camera, on 100 by 100 pixels: the point (x, y)
/// of the scene is the pixel (50 + 10 x, 50 + 10 y).
class DragTest : public KitTest {
protected:
    void SetUp() override
    {
        KitTest::SetUp();
        root = new KsSeparator;
        camera = new KsOrthographicCamera;
        camera->height = 10;
        camera->position = KbVec3f(0, 0, 5);
        root->addChild(camera.get());
    }
    void TearDown() override
    {
        action.releaseGrabber();
        camera.reset();
        root.reset();
        KitTest::TearDown();
    }
    static KbVec2f pixel(float x, float y) { return {50 + 10 * x, 50 + 10 * y}; }
    bool send(const KsEvent& event)
    {
        action.setEvent(&event);
        action.apply(root.get());
        action.setEvent(nullptr);
        return action.isHandled();
    }
    bool press(float x, float y, KsMouseButtonEvent::Button button = KsMouseButtonEvent::BUTTON1)
    {
        return send(KsMouseButtonEvent(button, KsButtonEvent::DOWN, pixel(x, y)));
    }
    bool release(float x, float y)
    {
        return send(
            KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP, pixel(x, y)));
    }
    bool move(float x, float y) { return send(KsLocation2Event(pixel(x, y))); }
    /// A panel whose look is a pad at (x, y).
    KsPanel* makePanel(float x, float y)
    {
        auto* panel = new KsPanel;
        auto* look = static_cast<KsGroup*>(panel->getPart("first", true));
        auto* place = new KsTranslation;
        place->translation = KbVec3f(x, y, 0);
        look->addChild(place);
        look->addChild(new KsPad);
        return panel;
    }

    KsHandleEventAction action{KbViewportRegion(100, 100)};
    KsRef<KsSeparator> root;
    KsRef<KsOrthographicCamera> camera;
};
