// What stands behind entries in a window, and how they are laid out in a scene.

#include "Menu.h"

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>

namespace {

const char* const allKinds =
    "TopLevelDialog { position3D 100 50 0 width 300 height 100 MenuBar { auditorID \"bar\" "
    "MenuPopup { label \"Menu\" auditorID \"menu\" "
    "  MenuPushButton { label \"Push\" auditorID \"push\" accelerator \"Ctrl+P\" } "
    "  MenuCheckBox { label \"Check\" auditorID \"check\" } "
    "  MenuRadioButtons { auditorID \"radio\" items [ \"one\", \"two\" ] } "
    "  MenuFileSelection { label \"File\" auditorID \"file\" } "
    "  MenuPopup { label \"Inner\" auditorID \"inner\" MenuPushButton { } } } } "
    "DialogCheckBox { auditorID \"box\" fixedHeight TRUE } }";

/// The first node of a type among the children of a part.
template <class T> T* firstIn(KsFormweave* element, const char* part)
{
    auto* group = ksCast<KsGroup>(element->getAnyPart(part, false));
    for (int i = 0; group && i < group->getNumChildren(); ++i)
        if (auto* node = ksCast<T>(group->getChild(i))) return node;
    return nullptr;
}

/// Where the label begins, from the middle of its entry.
KbVec3f labelPlace(KsFormweave* entry)
{
    auto* place = firstIn<KsTranslation>(entry, "labelSep");
    EXPECT_TRUE(place);
    return place ? place->translation.getValue() : KbVec3f(0, 0, 0);
}

/// The box of the text by itself.
KbBox3f labelBox(KsFormweave* entry)
{
    KsGetBoundingBoxAction action{KbViewportRegion(100, 100)};
    const KsRef<KsSeparator> alone(new KsSeparator);
    alone->addChild(entry->getAnyPart("labelProp", false));
    alone->addChild(lastIn<KsText3>(entry, "labelSep"));
    action.apply(alone.get());
    return action.getBoundingBox();
}

} // namespace

TEST(MenuRelay, isANamelessWidgetOfItsOwnThatHoldsTheActionAndIsNeverShown)
{
    MenuStage stage(allKinds, Stage::Window);
    const struct {
        const char* text;
        const char* type;
        bool isCheckable;
        const char* told;
    } relays[] = {{"Push", "KsMenuQPushButton", false, "push:push"},
                  {"Check", "KsMenuQCheckBox", true, "check:check on"},
                  {"two", "KsMenuQRadioButtons", true, "radio:radio 1"}};
    for (const auto& each : relays) {
        QAction* action = stage.action({"Menu", each.text});
        ASSERT_TRUE(action) << each.text;
        auto* relay = qobject_cast<QWidget*>(action->parent());
        ASSERT_TRUE(relay) << each.text;
        EXPECT_STREQ(relay->metaObject()->className(), each.type);
        EXPECT_EQ(relay->parent(), nullptr) << each.text;
        EXPECT_EQ(relay->objectName(), "");
        EXPECT_FALSE(relay->isVisible()) << each.text;
        EXPECT_EQ(action->isCheckable(), each.isCheckable) << each.text;
        EXPECT_GE(relay->metaObject()->indexOfSlot("menuEvent()"), 0) << each.text;
        EXPECT_TRUE(QMetaObject::invokeMethod(relay, "menuEvent"));
        EXPECT_EQ(stage.heard(), Heard({each.told}));
        // Behind the node's back.
        QPointer<QWidget> watched = relay;
        const QPointer<QAction> watchedAction = action;
        delete relay;
        EXPECT_FALSE(watchedAction) << "the action goes with it, out of the menu";
        EXPECT_EQ(stage.action({"Menu", each.text}), nullptr);
    }
    stage.find<KsMenuItem>("push")->label = "nobody shows it";
    stage.find<KsMenuRadioButtons>("radio")->selectedItem = 0;
}

TEST(MenuLook, labelsStandWhereTheirKindOfEntryPutsThem)
{
    MenuStage stage(allKinds, Stage::Scene);
    stage.clickOn({"menu"});
    const auto half = [&](const char* id) {
        return static_cast<float>(stage.find<KsMenuItem>(id)->getItemSize()[0]) / 2;
    };
    for (const char* id : {"push", "file"}) {
        const KbBox3f box = labelBox(stage.find<KsMenuItem>(id));
        const KbVec3f place = labelPlace(stage.find<KsMenuItem>(id));
        EXPECT_NEAR(place[0], -half(id) + 4, 1e-3) << id << ": four from the left";
        EXPECT_NEAR(place[1], -(box.getMax()[1] + box.getMin()[1]) / 2, 1e-3) << id;
    }
    EXPECT_NEAR(labelPlace(stage.find<KsMenuItem>("check"))[0], -half("check") + 20, 1e-3);
    EXPECT_NEAR(labelPlace(stage.find<KsMenuItem>("radio"))[0], -half("radio") + 20, 1e-3);
    auto* inner = stage.find<KsMenuItem>("inner");
    const float innerText = labelBox(inner).getSize()[0];
    EXPECT_NEAR(labelPlace(inner)[0], -innerText / 2 - 10, 1e-3) << "centred left of its arrow";
    auto* title = stage.find<KsMenuItem>("menu");
    EXPECT_NEAR(labelPlace(title)[0], -labelBox(title).getSize()[0] / 2, 1e-3) << "centred";
    EXPECT_EQ(lastIn<KsText3>(stage.find<KsMenuItem>("push"), "labelSep")->string[0], "Push")
        << "an accelerator is not shown in a scene";
}

TEST(MenuLook, shapesHaveTheirSizes)
{
    MenuStage stage(allKinds, Stage::Scene);
    stage.clickOn({"menu"});
    const int w = stage.find<KsMenuItem>("push")->getItemSize()[0];
    const auto sizeOf = [&](const char* id, const char* part) {
        return firstIn<KsScale>(stage.find<KsFormweave>(id), part)->scaleFactor.getValue();
    };
    const float width = static_cast<float>(w);
    EXPECT_EQ(sizeOf("push", "itemFrameSep"), KbVec3f(width, 18, 1));
    EXPECT_EQ(sizeOf("push", "btnSep"), KbVec3f(width - 4, 14, 1)) << "two around it";
    EXPECT_EQ(sizeOf("check", "chkSep"), KbVec3f(14, 14, 1));
    EXPECT_EQ(sizeOf("radio", "itemsSep"), KbVec3f(14, 14, 1));
    EXPECT_EQ(sizeOf("inner", "frameSep"), KbVec3f(14, 14, 1)) << "the arrow";
    const int title = stage.find<KsMenuItem>("menu")->getItemSize()[0];
    EXPECT_EQ(sizeOf("menu", "frameSep"), KbVec3f(static_cast<float>(title), 18, 1));
    EXPECT_EQ(sizeOf("bar", "frameSep"), KbVec3f(294, 20, 1)) << "six less than the dialog";
    EXPECT_EQ(firstIn<KsScale>(stage.find<KsFormweave>("menu"), "itemFrameSep"), nullptr)
        << "a bar draws what stands on it";
}

TEST(MenuLook, theDefaultSizeOfATitleIsThatOfItsTextAndARim)
{
    MenuStage stage(allKinds, Stage::Scene);
    stage.clickOn({"menu"});
    for (const auto& [id, rim] : {std::pair<const char*, float>("menu", 8), {"inner", 28}}) {
        auto* popup = stage.find<KsMenuPopup>(id);
        KbVec3f size;
        popup->get3DDefaultSize(size);
        EXPECT_NEAR(size[0], labelBox(popup).getSize()[0] + rim, 1e-3) << id;
        EXPECT_EQ(size[1], 18);
        EXPECT_EQ(size[2], 0);
    }
}

TEST(MenuLook, anEmptyBarThatHidesInASceneGivesItsRoomBack)
{
    const char* const text = "TopLevelDialog { position3D 100 50 0 width 200 height 100 MenuBar { "
                             "auditorID \"bar\" } DialogCheckBox { auditorID \"box\" } }";
    float below = 0;
    {
        MenuStage stage(text, Stage::Scene);
        below = stage.boxOf("box", "mainCptSeparator").getMax()[1];
    }
    MenuStage stage(text);
    stage.dialog->updateDialogBuild(0);
    EXPECT_FALSE(stage.isDrawn("bar"));
    EXPECT_NEAR(stage.boxOf("box", "mainCptSeparator").getMax()[1], below + 18, 1e-3);
}
