// The list that a combo box opens in a scene: where it stands, that it is picked where it is seen,
// and what closes it.

#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/render/KsOffscreenRenderer.h>
#include <dialog/Stage.h>

#include <array>

namespace {

constexpr const char* form =
    "TopLevelDialog { auditorID \"dialog\" label \"Form\" margin 4 rowSpacing 2 "
    "RowDialog { edgeStyle SHADOW_OUT "
    "DialogComboBox { auditorID \"box\" label \"Box\" "
    "items [ \"a\", \"b\", \"c\", \"d\", \"e\" ] } "
    "DialogCheckBox { auditorID \"check\" label \"Check\" state TRUE } "
    "DialogCheckBox { label \"Another\" onString \"with text\" } } "
    "RowDialog { edgeStyle SHADOW_IN "
    "DialogComboBox { auditorID \"other\" label \"Other\" items [ \"x\", \"y\" ] } "
    "DialogCheckBox { auditorID \"last\" label \"Last\" } } }";

class Listener : public KsDialogAuditor {
public:
    void dialogComboBox(KsDialogComboBox* box) override
    {
        told.push_back(box->auditorID.getValue().toUtf8() + std::to_string(box->selectedItem));
    }
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        told.push_back(box->auditorID.getValue().toUtf8());
    }
    std::vector<std::string> told;
};

/// A scene with a camera, a placement, and the dialog behind it.
class DropDown : public testing::Test {
protected:
    static constexpr int width = 800;
    static constexpr int height = 600;

    void SetUp() override
    {
        KsFormweave::init();
        scene = new KsSeparator;
    }
    void TearDown() override
    {
        Active::set3DCurrentActive(nullptr);
        if (dialog) dialog->removeAuditor(&listener);
        search.reset();
        dialog.reset();
        scene.reset();
        KsFormweave::finish();
    }
    static KsRef<KsFormweave> read(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        return KsRef<KsFormweave>(ksCast<KsFormweave>(root->getChild(0)));
    }
    /// Shows the dialog behind `placement`, which may be null, and looks at it from a direction.
    void show(KsCamera* eye, const std::vector<KsNode*>& placement,
              const KbVec3f& from = KbVec3f(0, 0, 1))
    {
        camera = eye;
        scene->addChild(camera);
        for (KsNode* node : placement) scene->addChild(node);
        const KsRef<KsFormweave> element = read(form);
        dialog = ksCast<KsTopLevelDialog>(element.get());
        dialog->addAuditor(&listener);
        scene->addChild(dialog.get());
        measure();
        const KbBox3f all = boxOf(dialog.get());
        camera->position = all.getCenter() + from;
        camera->pointAt(all.getCenter());
        // With room for the open list.
        const KbVec3f half = all.getMax() - all.getCenter();
        camera->viewAll(KbBox3f(all.getCenter() - 2.0f * half, all.getCenter() + 2.0f * half),
                        viewport);
        box = ksCast<KsDialogComboBox>(dialog->searchForAuditorId("box"));
        other = ksCast<KsDialogComboBox>(dialog->searchForAuditorId("other"));
        check = ksCast<KsDialogCheckBox>(dialog->searchForAuditorId("check"));
        ASSERT_TRUE(box && other && check);
    }
    void measure() { KsGetBoundingBoxAction(viewport).apply(scene.get()); }
    KsPath* pathTo(KsNode* node)
    {
        search.reset();
        search.setSearchingAll(true);
        search.setNode(node);
        search.apply(scene.get());
        return search.getPath();
    }
    KbBox3f boxOf(KsNode* node)
    {
        measure();
        KsGetBoundingBoxAction action(viewport);
        if (KsPath* path = pathTo(node)) action.apply(path);
        return action.getBoundingBox();
    }
    /// Where a point of the dialog's own space is seen.
    KbVec2f seen(const KbVec3f& local)
    {
        KsGetMatrixAction action(viewport);
        action.apply(pathTo(dialog.get()));
        KbVec3f world, place;
        action.getMatrix().multVecMatrix(local, world);
        camera->getViewVolume(static_cast<float>(width) / height).projectToScreen(world, place);
        return {place[0] * width, place[1] * height};
    }
    /// A part in the dialog's own space.
    KbBox3f localBox(KsFormweave* element, const char* part)
    {
        KsGetBoundingBoxAction action(viewport);
        KsSearchAction inDialog;
        inDialog.setSearchingAll(true);
        inDialog.setNode(element->getAnyPart(part, false));
        inDialog.apply(dialog.get());
        if (KsPath* path = inDialog.getPath()) action.apply(path);
        return action.getBoundingBox();
    }
    /// The middle of the upper side of a row.
    KbVec3f rowTop(KsDialogComboBox* combo, int index)
    {
        const KbBox3f first = localBox(combo, "itemSep");
        const KbVec3f middle = first.getCenter();
        return {middle[0], middle[1] - 22.0f * static_cast<float>(index), first.getMax()[2]};
    }
    KbVec3f top(KsFormweave* element, const char* part)
    {
        const KbBox3f box3 = localBox(element, part);
        const KbVec3f middle = box3.getCenter();
        return {middle[0], middle[1], box3.getMax()[2]};
    }
    bool press(const KbVec2f& at, KsMouseButtonEvent::Button button = KsMouseButtonEvent::BUTTON1)
    {
        measure();
        const KsMouseButtonEvent down(button, KsButtonEvent::DOWN, at);
        events.setEvent(&down);
        events.apply(scene.get());
        const bool handled = events.isHandled();
        const KsMouseButtonEvent up(button, KsButtonEvent::UP, at);
        events.setEvent(&up);
        events.apply(scene.get());
        events.setEvent(nullptr);
        return handled;
    }
    bool pressPart(KsFormweave* element, const char* part)
    {
        return press(seen(top(element, part)));
    }
    static bool isOpen(KsDialogComboBox* combo)
    {
        return Stage::shown(combo, "itemsSwitch") == KsSwitch::ALL;
    }
    bool open(KsDialogComboBox* combo)
    {
        pressPart(combo, "frameSep");
        return isOpen(combo);
    }

    KbViewportRegion viewport{width, height};
    KsHandleEventAction events{viewport};
    KsSearchAction search;
    KsRef<KsSeparator> scene;
    KsCamera* camera = nullptr;
    KsRef<KsTopLevelDialog> dialog;
    KsDialogComboBox* box = nullptr;
    KsDialogComboBox* other = nullptr;
    KsDialogCheckBox* check = nullptr;
    Listener listener;
};

KsNode* turned(const KbVec3f& axis, float angle)
{
    auto* node = new KsRotation;
    node->rotation = KbRotation(axis, angle);
    return node;
}

KsNode* scaled(float x, float y, float z)
{
    auto* node = new KsScale;
    node->scaleFactor = KbVec3f(x, y, z);
    return node;
}

KsNode* moved(float x, float y, float z)
{
    auto* node = new KsTranslation;
    node->translation = KbVec3f(x, y, z);
    return node;
}

/// How a dialog may stand in a scene, and from where it is looked at.
struct Placement {
    const char* name;
    bool perspective;
    std::function<std::vector<KsNode*>()> nodes;
    KbVec3f from;
};

const Placement placements[] = {
    {"AsItIs", false, [] { return std::vector<KsNode*>{}; }, {0, 0, 1}},
    {"InPerspective", true, [] { return std::vector<KsNode*>{}; }, {0, 0, 1}},
    {"Moved", true, [] { return std::vector<KsNode*>{moved(300, -1000, 70)}; }, {0, 0, 1}},
    {"ScaledDown",
     true,
     [] { return std::vector<KsNode*>{scaled(0.001f, 0.001f, 0.001f)}; },
     {0, 0, 1}},
    {"ScaledUp", true, [] { return std::vector<KsNode*>{scaled(100, 100, 100)}; }, {0, 0, 1}},
    {"ScaledUnevenly", false, [] { return std::vector<KsNode*>{scaled(3, 1, 0.05f)}; }, {0, 0, 1}},
    {"TurnedOnItsPlane",
     true,
     [] {
         return std::vector<KsNode*>{turned({0, 0, 1}, 0.8f)};
     },
     {0, 0, 1}},
    {"UpsideDown",
     false,
     [] {
         return std::vector<KsNode*>{turned({0, 0, 1}, 3.1f)};
     },
     {0, 0, 1}},
    {"TurnedAway",
     true,
     [] {
         return std::vector<KsNode*>{turned({0, 1, 0}, 0.9f)};
     },
     {0, 0, 1}},
    {"SeenFromTheSide", true, [] { return std::vector<KsNode*>{}; }, {1, 0.1f, 0.5f}},
    {"SeenFromBelow", true, [] { return std::vector<KsNode*>{}; }, {0.1f, -1, 0.6f}},
    {"AllAtOnce",
     true,
     [] {
         return std::vector<KsNode*>{moved(5, 6, 7), turned({1, 1, 0}, 0.5f),
                                     scaled(0.1f, 0.1f, 0.1f), moved(40, 30, 20)};
     },
     {0.3f, 0.2f, 1}},
};

class Placed : public DropDown, public testing::WithParamInterface<int> {
protected:
    void SetUp() override
    {
        DropDown::SetUp();
        const Placement& placement = placements[static_cast<std::size_t>(GetParam())];
        KbVec3f from = placement.from;
        from.normalize();
        show(placement.perspective ? static_cast<KsCamera*>(new KsPerspectiveCamera)
                                   : new KsOrthographicCamera,
             placement.nodes(), from);
    }
};

} // namespace

TEST_P(Placed, itsRowsAreChosenWhereTheyAreSeen)
{
    for (const int index : {4, 0, 2, 1, 3}) {
        ASSERT_TRUE(open(box));
        press(seen(rowTop(box, index)));
        EXPECT_EQ(box->selectedItem, index);
        EXPECT_FALSE(isOpen(box));
    }
    EXPECT_EQ(listener.told, (std::vector<std::string>{"box4", "box0", "box2", "box1", "box3"}));
    EXPECT_FALSE(other->selectedItem != 0 || !check->state);
}

TEST_P(Placed, theOpenListIsInFrontOfAllOfItsDialog)
{
    KbBox3f before;
    {
        KsGetBoundingBoxAction action(viewport);
        action.apply(dialog.get());
        before = action.getBoundingBox();
    }
    ASSERT_TRUE(open(box));
    const KbBox3f list = localBox(box, "itemsSwitch");
    EXPECT_GT(list.getMin()[2], before.getMax()[2] - 0.11f);
    EXPECT_GT(rowTop(box, 0)[2], before.getMax()[2]);
    // What is seen in the middle of each row is that row, whatever stands behind.
    for (int index = 0; index < 5; ++index) {
        measure();
        KsRayPickAction pick(viewport);
        pick.setPoint(seen(rowTop(box, index)));
        pick.apply(scene.get());
        ASSERT_TRUE(pick.getPickedPoint()) << index;
        EXPECT_TRUE(
            pick.getPickedPoint()->getPath()->containsNode(box->getAnyPart("itemsSwitch", false)))
            << index;
    }
    // Closed, it leaves the room as it was.
    Active::set3DCurrentActive(nullptr);
    KsGetBoundingBoxAction action(viewport);
    action.apply(dialog.get());
    EXPECT_TRUE(action.getBoundingBox() == before);
}

TEST_P(Placed, aPressElsewhereClosesIt)
{
    ASSERT_TRUE(open(box));
    press(KbVec2f(1, 1)); // the sky
    EXPECT_FALSE(isOpen(box));
    EXPECT_TRUE(listener.told.empty());
    EXPECT_EQ(Active::m_lastActive, nullptr);
}

INSTANTIATE_TEST_SUITE_P(DropDown, Placed,
                         testing::Range(0, static_cast<int>(std::size(placements))),
                         [](const testing::TestParamInfo<int>& each) {
                             return std::string(
                                 placements[static_cast<std::size_t>(each.param)].name);
                         });

// What closes the list.

TEST_F(DropDown, aPressOnAnotherControlClosesItAndIsHeard)
{
    show(new KsOrthographicCamera, {});
    ASSERT_TRUE(open(other));
    EXPECT_TRUE(pressPart(check, "stateSep"));
    EXPECT_FALSE(isOpen(other));
    EXPECT_FALSE(check->state);
    EXPECT_EQ(listener.told, std::vector<std::string>{"check"});
}

TEST_F(DropDown, aPressOnAnotherComboBoxOpensThatOne)
{
    show(new KsOrthographicCamera, {});
    ASSERT_TRUE(open(other));
    ASSERT_TRUE(open(box));
    EXPECT_FALSE(isOpen(other));
    EXPECT_EQ(Active::m_lastActive, box);
    EXPECT_TRUE(listener.told.empty());
}

TEST_F(DropDown, aPressOnItsOwnBoxButtonOrTextOpensAndCloses)
{
    show(new KsOrthographicCamera, {});
    for (const char* part : {"frameSep", "buttonSep", "textSep"}) {
        pressPart(box, part);
        EXPECT_TRUE(isOpen(box)) << part;
        EXPECT_EQ(Stage::shown(box, "buttonSwitch"), 1);
        pressPart(box, part);
        EXPECT_FALSE(isOpen(box)) << part;
        EXPECT_EQ(Stage::shown(box, "buttonSwitch"), 0);
    }
    EXPECT_TRUE(listener.told.empty());
}

TEST_F(DropDown, aPressOnItsLabelClosesItButDoesNotOpenIt)
{
    show(new KsOrthographicCamera, {});
    pressPart(box, "labelSep");
    EXPECT_FALSE(isOpen(box));
    ASSERT_TRUE(open(box));
    pressPart(box, "labelSep");
    EXPECT_FALSE(isOpen(box));
    EXPECT_TRUE(listener.told.empty());
}

TEST_F(DropDown, aPressOnTheTitleClosesIt)
{
    show(new KsOrthographicCamera, {});
    ASSERT_TRUE(open(box));
    const KbVec3f size = dialog->getTopLevelSize();
    press(seen(KbVec3f(size[0] / 2, -10, 2)));
    EXPECT_FALSE(isOpen(box));
}

TEST_F(DropDown, aPressOnAnotherDialogOrAShapeOfTheSceneClosesIt)
{
    show(new KsOrthographicCamera, {});
    auto* place = new KsTranslation;
    place->translation = KbVec3f(-100, 0, 0);
    auto* cube = new KsCube;
    cube->width = cube->height = cube->depth = 40;
    scene->addChild(place);
    scene->addChild(cube);
    ASSERT_TRUE(open(box));
    press(seen(KbVec3f(-100, 0, 20)));
    EXPECT_FALSE(isOpen(box));

    const KsRef<KsFormweave> second = read(form);
    static_cast<KsTopLevelDialog*>(second.get())->position3D = KbVec3f(100, 200, 0);
    scene->addChild(second.get());
    measure();
    auto* theirs = ksCast<KsDialogComboBox>(
        static_cast<KsTopLevelDialog*>(second.get())->searchForAuditorId("box"));
    ASSERT_TRUE(open(box));
    const KbVec3f middle = boxOf(theirs->getAnyPart("frameSep", false)).getCenter();
    KbVec3f at;
    camera->getViewVolume(static_cast<float>(width) / height).projectToScreen(middle, at);
    press(KbVec2f(at[0] * width, at[1] * height));
    EXPECT_TRUE(isOpen(theirs));
    EXPECT_FALSE(isOpen(box));
    Active::set3DCurrentActive(nullptr);
    EXPECT_FALSE(isOpen(theirs));
}

TEST_F(DropDown, theOtherButtonsLeaveItOpen)
{
    show(new KsOrthographicCamera, {});
    ASSERT_TRUE(open(box));
    press(KbVec2f(1, 1), KsMouseButtonEvent::BUTTON2);
    press(seen(rowTop(box, 1)), KsMouseButtonEvent::BUTTON3);
    EXPECT_TRUE(isOpen(box));
    EXPECT_EQ(box->selectedItem, 0);
}

TEST_F(DropDown, anOpenListThatLeavesTheSceneIsForgotten)
{
    show(new KsOrthographicCamera, {});
    ASSERT_TRUE(open(box));
    search.reset();
    auto* group = static_cast<KsDialogGroup*>(box->getParentElement());
    group->removeChild(box);
    EXPECT_EQ(Active::m_lastActive, nullptr);
    press(KbVec2f(1, 1));
    EXPECT_TRUE(open(other));
}

// Elsewhere than in a dialog.

TEST_F(DropDown, aComboBoxThatStandsAloneOpensAbovePlateAndBox)
{
    auto* eye = new KsOrthographicCamera;
    scene->addChild(eye);
    const KsRef<KsFormweave> alone =
        read("DialogComboBox { label \"Alone\" items [ \"a\", \"b\", \"c\" ] }");
    auto* combo = ksCast<KsDialogComboBox>(alone.get());
    scene->addChild(combo);
    camera = eye;
    KbBox3f all = boxOf(combo);
    eye->viewAll(scene.get(), viewport, 0.2f);
    const auto at = [&](const KbVec3f& world) {
        KbVec3f place;
        eye->getViewVolume(static_cast<float>(width) / height).projectToScreen(world, place);
        return KbVec2f(place[0] * width, place[1] * height);
    };
    press(at(boxOf(combo->getAnyPart("frameSep", false)).getCenter()));
    ASSERT_TRUE(isOpen(combo));
    const KbBox3f list = boxOf(combo->getAnyPart("itemsSwitch", false));
    EXPECT_GT(list.getMax()[2], all.getMax()[2]);
    const KbVec3f first = boxOf(combo->getAnyPart("itemStrucSep", false)).getCenter();
    press(at(KbVec3f(first[0], first[1] - 44, first[2])));
    EXPECT_EQ(combo->selectedItem, 2);
    EXPECT_FALSE(isOpen(combo));
}

TEST_F(DropDown, aGroupWithoutDialogIsClearedToo)
{
    scene->addChild(camera = new KsOrthographicCamera);
    const KsRef<KsFormweave> group = read("RowDialog { DialogComboBox { items [ \"a\", \"b\" ] } "
                                          "DialogCheckBox { label \"Below\" onString \"On\" } }");
    scene->addChild(group.get());
    const KbBox3f all = boxOf(group.get());
    camera->viewAll(scene.get(), viewport, 0.4f);
    auto* combo =
        static_cast<KsDialogComboBox*>(static_cast<KsRowDialog*>(group.get())->getChild(0));
    KbVec3f place;
    camera->getViewVolume(static_cast<float>(width) / height)
        .projectToScreen(boxOf(combo->getAnyPart("frameSep", false)).getCenter(), place);
    press(KbVec2f(place[0] * width, place[1] * height));
    ASSERT_TRUE(isOpen(combo));
    EXPECT_GE(boxOf(combo->getAnyPart("itemsSwitch", false)).getMin()[2], all.getMax()[2] - 0.11f);
}

TEST_F(DropDown, aSwapOfSkinsClosesItAndTheNextListStandsOnTheNewLook)
{
    show(new KsOrthographicCamera, {});
    ASSERT_TRUE(open(box));
    KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/dark");
    EXPECT_FALSE(isOpen(box));
    ASSERT_TRUE(open(box));
    press(seen(rowTop(box, 3)));
    EXPECT_EQ(box->selectedItem, 3);
    KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/default");
}

TEST_F(DropDown, thePictureOfTheOpenListHasItsRowsInFront)
{
    show(new KsPerspectiveCamera, {});
    KsOffscreenRenderer renderer(viewport);
    const auto colourAt = [&](const KbVec2f& at) {
        EXPECT_TRUE(renderer.render(scene.get()));
        const auto i = static_cast<std::size_t>(
            4 * ((height - 1 - static_cast<int>(at[1])) * width + static_cast<int>(at[0])));
        return std::array<int, 3>{renderer.getImage()[i], renderer.getImage()[i + 1],
                                  renderer.getImage()[i + 2]};
    };
    ASSERT_TRUE(open(box));
    // The second row lies over the check box behind it, which is black.
    const KbBox3f row = localBox(box, "itemSep");
    const float right = row.getMax()[0] - 6;
    std::vector<std::array<int, 3>> colours;
    for (int i = 0; i < 5; ++i) {
        const float y = row.getCenter()[1] - 22.0f * static_cast<float>(i);
        colours.push_back(colourAt(seen(KbVec3f(right, y, row.getMax()[2]))));
    }
    for (const auto& colour : colours) EXPECT_EQ(colour, colours[0]) << "all rows look alike";
    EXPECT_GT(colours[0][0], 150);
}
