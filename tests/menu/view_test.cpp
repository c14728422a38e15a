// Open menus as a person sees them: from all sides that show the panel's front, in front of it, and
// picked where they are drawn.

#include "Menu.h"

#include <arborium/actions/KsRayPickAction.h>
#include <arborium/nodes/KsTransform.h>

#include <map>

namespace {

const char* const fourLevels =
    "TopLevelDialog { position3D 100 50 0 width 340 height 220 MenuBar { auditorID \"bar\" "
    "MenuPopup { label \"File\" auditorID \"file\" "
    "  MenuPushButton { label \"New\" auditorID \"new\" } "
    "  MenuPopup { label \"Recent\" auditorID \"recent\" "
    "    MenuCheckBox { label \"check\" auditorID \"check\" } "
    "    MenuPopup { label \"Older\" auditorID \"older\" "
    "      MenuRadioButtons { auditorID \"radio\" items [ \"one\", \"two\" ] } "
    "      MenuPopup { label \"Oldest\" auditorID \"oldest\" "
    "        MenuPushButton { label \"last\" auditorID \"last\" } "
    "        MenuSeparator { auditorID \"rule\" } "
    "        MenuPushButton { label \"grey\" auditorID \"grey\" enable FALSE } } } } "
    "  MenuFileSelection { label \"Open\" auditorID \"open\" } } "
    "MenuPopup { label \"View\" auditorID \"view\" } } "
    "DialogEditText { label \"Text\" editText \"text\" } "
    "DialogComboBox { label \"Combo\" items \"x\" } "
    "DialogIntegerSlider { label \"Slider\" max 9 value 4 } "
    "DialogPushButton { label \"Button\" buttonLabel \"press\" } }";

const std::initializer_list<const char*> opened = {"file", "recent", "older", "oldest"};
const char* const entries[] = {"new",   "recent", "open", "check", "older",
                               "radio", "oldest", "last", "rule",  "grey"};

class View : public MenuStage {
public:
    explicit View(const char* text) : MenuStage(text, Scene)
    {
        camera = ksCast<KsOrthographicCamera>(scene()->getChild(0));
    }
    /// Turns the camera around the panel: to its right side and over its upper edge, in degrees.
    void lookFrom(float right, float above)
    {
        const float degree = static_cast<float>(M_PI) / 180;
        const KbRotation turn = KbRotation(KbVec3f(1, 0, 0), -above * degree) *
                                KbRotation(KbVec3f(0, 1, 0), right * degree);
        KbVec3f back;
        turn.multVec(KbVec3f(0, 0, 1), back);
        camera->orientation = turn;
        camera->position = KbVec3f(300, -200, 0) + back * 500;
        camera->height = 900;
    }
    /// From where a unit of the panel is a pixel, as it was at first.
    void lookStraight()
    {
        camera->orientation = KbRotation::identity();
        camera->position = KbVec3f(viewWidth / 2, -viewHeight / 2, 500);
        camera->height = viewHeight;
    }
    /// Where a point of the world is seen.
    KbVec2f seen(const KbVec3f& world) const
    {
        const float aspect = static_cast<float>(viewWidth) / viewHeight;
        KbVec3f screen;
        camera->getViewVolume(aspect).projectToScreen(world, screen);
        return KbVec2f(screen[0] * viewWidth, screen[1] * viewHeight);
    }
    /// The middle of the front of an entry's box.
    KbVec2f frontOf(const char* id)
    {
        const KbBox3f box = boxOf(id, "itemFrameSep");
        EXPECT_FALSE(box.isEmpty()) << id;
        const KbVec3f middle = box.getCenter();
        return seen(KbVec3f(middle[0], middle[1], box.getMax()[2]));
    }
    /// The element that is met first there; null if nothing is.
    KsFormweave* met(const KbVec2f& place)
    {
        KsRayPickAction pick{KbViewportRegion(viewWidth, viewHeight)};
        pick.setPoint(place);
        pick.apply(scene());
        const KsPickedPoint* point = pick.getPickedPoint();
        const KsPath* path = point ? point->getPath() : nullptr;
        for (int i = 0; path && i < path->getLength(); ++i)
            if (auto* element = ksCast<KsFormweave>(path->getNodeFromTail(i))) return element;
        return nullptr;
    }
    KsOrthographicCamera* camera = nullptr;
};

} // namespace

TEST(MenuView, eachEntryIsSeenAndPickedFromEverySideThatShowsThePanelsFront)
{
    View stage(fourLevels);
    for (const float right : {-65.0f, -30.0f, 0.0f, 30.0f, 65.0f}) {
        for (const float above : {-55.0f, 0.0f, 55.0f}) {
            stage.lookStraight();
            stage.clickOn(opened);
            stage.lookFrom(right, above);
            for (const char* id : entries)
                EXPECT_EQ(stage.met(stage.frontOf(id)), stage.find<KsFormweave>(id))
                    << id << " from " << right << ' ' << above;
            stage.click(stage.frontOf("last"));
            EXPECT_EQ(stage.heard(), Heard({"push:last"})) << right << ' ' << above;
            EXPECT_FALSE(stage.isDrawn("new"));
        }
    }
}

TEST(MenuView, anEntryIsMetWhereItIsDrawnAndNowhereElse)
{
    View stage(fourLevels);
    stage.clickOn(opened);
    std::map<KsFormweave*, KbBox3f> boxes;
    for (const char* id : entries)
        boxes[stage.find<KsFormweave>(id)] = stage.boxOf(id, "itemFrameSep");
    // All rows of the radio buttons.
    boxes[stage.find<KsFormweave>("radio")] = stage.boxOf("radio");
    constexpr float edge = 6; // a pick is this far off at most
    std::map<KsFormweave*, int> hits;
    for (float x = 2.5f; x < Stage::viewWidth; x += 7) {
        for (float y = 2.5f; y < Stage::viewHeight; y += 5) {
            const KbVec3f world(x, y - Stage::viewHeight, 0);
            KsFormweave* element = stage.met(KbVec2f(x, y));
            const auto met = boxes.find(element);
            for (const auto& [entry, box] : boxes) {
                const KbVec3f& min = box.getMin();
                const KbVec3f& max = box.getMax();
                const bool isOn = world[0] > min[0] && world[0] < max[0] && world[1] > min[1] &&
                                  world[1] < max[1];
                if (isOn) {
                    EXPECT_EQ(element, entry) << x << ' ' << y;
                    ++hits[entry];
                }
            }
            if (met == boxes.end()) continue;
            const KbBox3f& box = met->second;
            EXPECT_GE(world[0], box.getMin()[0] - edge) << x << ' ' << y;
            EXPECT_LE(world[0], box.getMax()[0] + edge) << x << ' ' << y;
            EXPECT_GE(world[1], box.getMin()[1] - edge) << x << ' ' << y;
            EXPECT_LE(world[1], box.getMax()[1] + edge) << x << ' ' << y;
        }
    }
    EXPECT_EQ(hits.size(), boxes.size()) << "each of them was tried";
}

TEST(MenuView, nothingOfAClosedMenuIsMetAnywhere)
{
    View stage(fourLevels);
    stage.clickOn(opened);
    stage.closeAll();
    int onTitles = 0;
    for (float x = 2.5f; x < Stage::viewWidth; x += 7) {
        for (float y = 2.5f; y < Stage::viewHeight; y += 7) {
            KsFormweave* element = stage.met(KbVec2f(x, y));
            const bool isTitle = element == stage.find<KsFormweave>("file") ||
                                 element == stage.find<KsFormweave>("view");
            if (isTitle)
                ++onTitles;
            else
                EXPECT_FALSE(element && element->isOfType(KsMenuItem::getClassTypeId()))
                    << element->auditorID.getValue() << " at " << x << ' ' << y;
        }
    }
    EXPECT_GT(onTitles, 0);
}

TEST(MenuView, aPanelTakesItsOpenMenusAlongWhenItIsScaledTurnedAndMoved)
{
    View stage(fourLevels);
    auto* group = new KsSeparator;
    auto* transform = new KsTransform;
    group->addChild(transform);
    stage.scene()->addChild(group);
    const KsRef<KsTopLevelDialog> dialog(stage.dialog);
    stage.scene()->removeChild(1);
    group->addChild(dialog.get());
    const struct {
        KbVec3f move;
        float scale;
        KbRotation turn;
    } changes[] = {{{40, -30, 50}, 1, KbRotation::identity()},
                   {{0, 0, 0}, 0.6f, KbRotation::identity()},
                   {{50, -40, 0}, 1.2f, KbRotation(KbVec3f(0, 0, 1), 0.3f)},
                   {{150, -80, 20}, 0.9f, KbRotation(KbVec3f(0.3f, 1, 0.2f), 0.9f)}};
    for (const auto& change : changes) {
        stage.draw();
        stage.clickOn(opened);
        transform->translation = change.move;
        transform->scaleFactor = KbVec3f(change.scale, change.scale, change.scale);
        transform->rotation = change.turn;
        stage.draw();
        for (const char* id : entries)
            EXPECT_EQ(stage.met(stage.placeOf(stage.find<KsFormweave>(id), "itemFrameSep")),
                      stage.find<KsFormweave>(id))
                << id;
        stage.clickPart(stage.find<KsFormweave>("last"), "itemFrameSep");
        EXPECT_EQ(stage.heard(), Heard({"push:last"}));
    }
    group->removeChild(1);
}

TEST(MenuView, aPanelThatIsDraggedAwayComesWithAMenuThatOpensAtItsNewPlace)
{
    View stage(fourLevels);
    const KbBox3f before = stage.boxOf("file");
    const KbVec2f title = stage.placeOf(stage.dialog, "labelSep");
    stage.clickOn({"file", "recent"});
    stage.press(title);
    EXPECT_FALSE(stage.isDrawn("new")) << "the press on the panel closes it";
    stage.move(title + KbVec2f(60, -40));
    stage.release(title + KbVec2f(60, -40));
    EXPECT_TRUE(stage.boxOf("file").getMin().equals(before.getMin() + KbVec3f(60, -40, 0), 0.1f));
    stage.clickOn({"file", "recent", "older", "oldest", "last"});
    EXPECT_EQ(stage.heard(), Heard({"push:last"}));
}
