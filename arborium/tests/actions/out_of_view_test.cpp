// Separators whose box is known and out of view are left out of the draw list, and come back when
// they or the view move.

#include "TestShape.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>

#include <random>

namespace {

class OutOfView : public ShapeTest {
protected:
    /// A camera that sees 200 by 100 units about a place.
    static KsOrthographicCamera* addCamera(KsGroup* group, float x)
    {
        auto* camera = addTo<KsOrthographicCamera>(group);
        camera->position = KbVec3f(x, 0, 50);
        camera->height = 100;
        camera->nearDistance = 1;
        camera->farDistance = 100;
        return camera;
    }
    /// Shapes in a row, one every 100 units from 0 on.
    KsSeparator* addRow(int count)
    {
        auto* row = addTo<KsSeparator>(root);
        for (int i = 0; i < count; ++i) {
            auto* each = addTo<KsSeparator>(row);
            auto* place = addTo<KsTranslation>(each);
            place->translation = KbVec3f(100.0f * static_cast<float>(i), 0, 0);
            places.push_back(place);
            addTo<TestShape>(each);
        }
        return row;
    }
    /// As a viewer does it.
    std::size_t frame()
    {
        KsGetBoundingBoxAction(viewport).apply(root.get());
        render.apply(root.get());
        return render.getDrawList().draws.size();
    }
    /// Every draw that a look at everything has in view is in the list, in the same order, and
    /// nothing else than that look found.
    testing::AssertionResult showsAllInView()
    {
        KsRenderAction whole(viewport);
        for (KsTranslation* place : places) place->touch(); // no box is known any more
        whole.apply(root.get());
        frame();
        const KsDrawList& all = whole.getDrawList();
        const KsDrawList& list = render.getDrawList();
        std::size_t at = 0;
        for (const KsDraw& draw : all.draws) {
            const bool isThere = at < list.draws.size() && list.draws[at].matrix == draw.matrix;
            KbBox3f box = draw.mesh->box;
            box.transform(draw.matrix);
            if (!isThere && list.viewVolume.intersect(box))
                return testing::AssertionFailure() << "draw " << at << " is missing";
            if (isThere) ++at;
        }
        if (at == list.draws.size()) return testing::AssertionSuccess();
        return testing::AssertionFailure() << list.draws.size() - at << " draws too many";
    }

    KbViewportRegion viewport{200, 100};
    KsRef<KsSeparator> root{new KsSeparator};
    std::vector<KsTranslation*> places;
    KsRenderAction render{viewport};
};

} // namespace

TEST_F(OutOfView, onlyWhatIsInViewIsDrawn)
{
    auto* camera = addCamera(root.get(), 0);
    addRow(1000);
    EXPECT_LE(frame(), 3u);
    camera->position = KbVec3f(50000, 0, 50);
    // Those that were in view may stay: nothing in them changed.
    EXPECT_LE(frame(), 6u);
    EXPECT_GE(render.getDrawList().draws.size(), 3u);
    camera->height = 1e6f;
    EXPECT_EQ(frame(), 1000u);
    camera->height = 100;
    frame();
    EXPECT_TRUE(showsAllInView());
}

TEST_F(OutOfView, withoutAKnownBoxOrACameraAllIsDrawn)
{
    addRow(100);
    EXPECT_EQ(frame(), 100u);
    KsRenderAction unmeasured(viewport);
    auto* camera = new KsOrthographicCamera;
    root->insertChild(camera, 0);
    for (KsTranslation* place : places) place->touch();
    unmeasured.apply(root.get());
    EXPECT_EQ(unmeasured.getDrawList().draws.size(), 100u);
}

TEST_F(OutOfView, whatMovesIntoTheViewIsDrawn)
{
    addCamera(root.get(), 0);
    addRow(20);
    const std::size_t before = frame();
    for (int i = 10; i < 20; ++i) {
        const KbVec3f far = places[static_cast<std::size_t>(i)]->translation;
        places[static_cast<std::size_t>(i)]->translation = KbVec3f(10, 10, 0);
        EXPECT_EQ(frame(), before + 1) << i;
        places[static_cast<std::size_t>(i)]->translation = far;
        EXPECT_EQ(frame(), before) << i;
    }
}

TEST_F(OutOfView, aWholeGroupOutOfViewComesBack)
{
    auto* camera = addCamera(root.get(), 0);
    auto* place = addTo<KsTranslation>(root.get());
    place->translation = KbVec3f(0, 1000, 0);
    addRow(3);
    EXPECT_EQ(frame(), 0u);
    const long visits = render.getNumVisits();
    camera->position = KbVec3f(10, 0, 50);
    EXPECT_EQ(frame(), 0u);
    EXPECT_LE(render.getNumVisits() - visits, 4) << "nothing in the group is visited";
    place->translation = KbVec3f(0, 0, 0);
    EXPECT_GT(frame(), 0u);
    places[0]->translation = KbVec3f(0, 2000, 0);
    places[1]->translation = KbVec3f(0, 2000, 0);
    EXPECT_EQ(frame(), 0u);
    places[0]->translation = KbVec3f(0, 0, 0);
    EXPECT_EQ(frame(), 1u);
}

TEST_F(OutOfView, ofTwoCamerasTheLastOneSpeaks)
{
    auto* first = addCamera(root.get(), 0);
    addRow(100);
    addCamera(root.get(), 5000);
    frame();
    EXPECT_TRUE(showsAllInView());
    first->position = KbVec3f(-300, 0, 50);
    frame();
    EXPECT_TRUE(showsAllInView());
}

TEST_F(OutOfView, aCameraInAGroupOutOfViewIsMet)
{
    addCamera(root.get(), 0);
    addRow(10);
    auto* group = addTo<KsSeparator>(root.get());
    auto* inner = addTo<KsSeparator>(group);
    addCamera(inner, 500);
    addTo<KsTranslation>(group)->translation = KbVec3f(0, 5000, 0);
    addTo<TestShape>(group);
    for (int i = 0; i < 3; ++i) {
        frame();
        EXPECT_EQ(render.getDrawList().viewVolume.getProjectionPoint()[0], 500);
        EXPECT_TRUE(showsAllInView());
    }
}

TEST_F(OutOfView, aCameraInALongRowOutOfViewIsMet)
{
    addCamera(root.get(), -5000);
    auto* row = addRow(100);
    addCamera(static_cast<KsSeparator*>(row->getChild(70)), 0);
    for (int i = 0; i < 3; ++i) {
        places[static_cast<std::size_t>(i)]->touch();
        frame();
        EXPECT_EQ(render.getDrawList().viewVolume.getProjectionPoint()[0], 7000);
    }
}

TEST_F(OutOfView, ofALongRowMostAreNotVisited)
{
    auto* camera = addCamera(root.get(), 0);
    addRow(10000);
    const auto visits = [this] {
        const long before = render.getNumVisits();
        frame();
        return render.getNumVisits() - before;
    };
    visits();
    std::mt19937 random(11);
    for (int i = 0; i < 20; ++i) {
        const auto at = random() % places.size();
        camera->position = KbVec3f(100.0f * static_cast<float>(at), 0, 50);
        EXPECT_LE(visits(), 500);
        EXPECT_GE(render.getDrawList().draws.size(), 1u);
        const KbVec3f far = places[at]->translation;
        places[at]->translation = KbVec3f(0, 5000, 0);
        EXPECT_LE(visits(), 500);
        places[at]->translation = far;
        frame();
        if (i % 5 == 0) {
            ASSERT_TRUE(showsAllInView()) << i;
        }
    }
}

TEST_F(OutOfView, whateverMovesTheListShowsAllThatIsInView)
{
    std::mt19937 random(7);
    const auto number = [&](int n) {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    };
    auto* camera = addTo<KsPerspectiveCamera>(root.get());
    camera->position = KbVec3f(0, 0, 300);
    camera->nearDistance = 1;
    camera->farDistance = 2000;
    std::vector<KsSeparator*> groups{root.get()};
    std::vector<KsSwitch*> switches;
    for (int i = 0; i < 150; ++i) {
        KsGroup* parent = groups[static_cast<std::size_t>(number(static_cast<int>(groups.size())))];
        if (number(5) == 0) {
            auto* each = addTo<KsSwitch>(parent);
            each->whichChild = KsSwitch::ALL;
            switches.push_back(each);
            parent = each;
        }
        auto* group = addTo<KsSeparator>(parent);
        auto* place = addTo<KsTranslation>(group);
        places.push_back(place);
        groups.push_back(group);
        addTo<TestShape>(group);
    }
    const auto anywhere = [&](int reach) {
        // One after the other: arguments have no order.
        const int x = number(2 * reach) - reach;
        const int y = number(2 * reach) - reach;
        const int z = number(reach) - reach / 2;
        return KbVec3f(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    };
    for (int step = 0; step < 300; ++step) {
        const auto at = static_cast<std::size_t>(number(static_cast<int>(places.size())));
        switch (number(4)) {
        case 0: camera->position = anywhere(400); break;
        case 1: places[at]->translation = anywhere(300); break;
        case 2:
            switches[static_cast<std::size_t>(number(static_cast<int>(switches.size())))]
                ->whichChild = number(2) ? KsSwitch::ALL : KsSwitch::NONE;
            break;
        default: places[at]->translation = KbVec3f(0, 0, 0); break;
        }
        frame();
        // What was in view once may stay in the list while nothing in it changes.
        KsRenderAction other(viewport);
        other.apply(root.get());
        EXPECT_LE(other.getDrawList().draws.size(), render.getDrawList().draws.size()) << step;
        if (step % 10 == 0) {
            ASSERT_TRUE(showsAllInView()) << step;
        }
    }
}
