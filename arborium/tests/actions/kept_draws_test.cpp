#include "TestShape.h"

#include <MessageGuard.h>
#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsCoordinate3.h>
#include <arborium/nodes/KsDirectionalLight.h>
#include <arborium/nodes/KsFaceSet.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsIndexedFaceSet.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>

#include <iostream>
#include <random>

namespace {

class KeptDraws : public ShapeTest {
protected:
    static testing::AssertionResult same(const KsDrawList& a, const KsDrawList& b)
    {
        if (a.draws.size() != b.draws.size())
            return testing::AssertionFailure()
                   << a.draws.size() << " draws, not " << b.draws.size();
        if (a.hasCamera != b.hasCamera) return testing::AssertionFailure() << "the camera";
        for (std::size_t i = 0; i < a.draws.size(); ++i) {
            const KsDraw &x = a.draws[i], &y = b.draws[i];
            const KsMaterialState &m = a.materials[x.material], &n = b.materials[y.material];
            const auto& lightsA = a.lightSets[x.lights];
            const auto& lightsB = b.lightSets[y.lights];
            bool equal = x.matrix == y.matrix && m.diffuse == n.diffuse &&
                         m.emissive == n.emissive && x.mesh->positions == y.mesh->positions &&
                         a.clips[x.clip] == b.clips[y.clip] && lightsA.size() == lightsB.size();
            for (std::size_t k = 0; equal && k < lightsA.size(); ++k)
                equal = lightsA[k].vector == lightsB[k].vector;
            if (!equal) return testing::AssertionFailure() << "draw " << i << " differs";
        }
        return testing::AssertionSuccess();
    }
    /// What an action that knows nothing makes of the scene.
    static testing::AssertionResult isFresh(const KsRenderAction& action, KsNode* scene)
    {
        KsRenderAction fresh(action.getViewportRegion());
        fresh.apply(scene);
        return same(action.getDrawList(), fresh.getDrawList());
    }

    KsRef<KsSeparator> root{new KsSeparator};
    KsRenderAction render{KbViewportRegion(200, 100)};
};

TEST_F(KeptDraws, whatAShapeRefersToMayBeAChildAsWell)
{
    // Not what the field is for, but it can be written into a file.
    auto* shape = addTo<KsIndexedFaceSet>(root);
    auto* group = addTo<KsSeparator>(root);
    addTo<TestShape>(group);
    shape->vertexProperty = group;
    root->removeChild(group);
    KsGetBoundingBoxAction box(KbViewportRegion(200, 100));
    ExpectedMessages messages;
    messages.allow("KsVertexShape::getForm", "");
    render.apply(root);
    box.apply(root);
    addTo<TestShape>(group);
    render.apply(root);
    box.apply(root);
    root->addChild(group);
    addTo<TestShape>(group);
    for (int i = 0; i < 2; ++i) {
        render.apply(root);
        box.apply(root);
        EXPECT_EQ(render.getDrawList().draws.size(), static_cast<std::size_t>(3 + i));
        EXPECT_TRUE(isFresh(render, root));
        addTo<TestShape>(group);
    }
}

TEST_F(KeptDraws, onlyTheWayToAChangeIsVisitedAgain)
{
    constexpr int branches = 100, leaves = 10;
    KsTranslation* moved = nullptr;
    for (int i = 0; i < branches; ++i) {
        auto* branch = addTo<KsSeparator>(root);
        for (int k = 0; k < leaves; ++k) {
            auto* leaf = addTo<KsSeparator>(branch);
            moved = addTo<KsTranslation>(leaf);
            addTo<TestShape>(leaf);
        }
    }
    render.apply(root);
    const long all = render.getNumVisits();
    EXPECT_EQ(all, 1 + branches * (1 + leaves * 3));
    moved->translation = KbVec3f(1, 2, 3);
    render.apply(root);
    EXPECT_EQ(render.getNumVisits() - all, 1 + branches + leaves + 2);
    EXPECT_TRUE(isFresh(render, root));
}

TEST_F(KeptDraws, aStateInFrontOfASeparatorReachesIt)
{
    auto* material = addTo<KsMaterial>(root);
    auto* inner = addTo<KsSeparator>(root);
    addTo<TestShape>(inner);
    auto* last = addTo<KsSeparator>(root);
    addTo<TestShape>(last);
    render.apply(root);
    material->diffuseColor = KbColor(1, 0, 0);
    render.apply(root);
    EXPECT_TRUE(isFresh(render, root));
    // What a node without a separator around it sets goes on to the next one.
    auto* group = new KsGroup;
    auto* color = addTo<KsBaseColor>(group);
    root->insertChild(group, 2);
    render.apply(root);
    color->rgb = KbColor(0, 0, 1);
    render.apply(root);
    EXPECT_TRUE(isFresh(render, root));
}

TEST_F(KeptDraws, coordinatesInFrontOfASeparatorReachIt)
{
    auto* points = addTo<KsCoordinate3>(root);
    points->point.set1Value(0, KbVec3f(0, 0, 0));
    points->point.set1Value(1, KbVec3f(1, 0, 0));
    points->point.set1Value(2, KbVec3f(0, 1, 0));
    auto* inner = addTo<KsSeparator>(root);
    addTo<KsFaceSet>(inner)->numVertices = 3;
    render.apply(root);
    points->point.set1Value(1, KbVec3f(5, 0, 0));
    render.apply(root);
    EXPECT_TRUE(isFresh(render, root));
}

TEST_F(KeptDraws, aCameraInsideASeparatorKeepsSpeaking)
{
    auto* inner = addTo<KsSeparator>(root);
    auto* camera = addTo<KsOrthographicCamera>(inner);
    camera->height = 7;
    auto* shape = addTo<TestShape>(root);
    render.apply(root);
    shape->size = KbVec3f(3, 3, 3);
    render.apply(root);
    EXPECT_TRUE(render.getDrawList().hasCamera);
    EXPECT_NEAR(render.getDrawList().viewVolume.getHeight(), 7, 1e-4f);
}

TEST_F(KeptDraws, whatWasHiddenComesBackInItsPlace)
{
    auto* branch = addTo<KsSeparator>(root);
    auto* choice = addTo<KsSwitch>(branch);
    choice->whichChild = KsSwitch::ALL;
    auto* first = addTo<KsSeparator>(choice);
    addTo<TestShape>(first);
    auto* second = addTo<KsSeparator>(choice);
    addTo<KsTranslation>(second)->translation = KbVec3f(9, 0, 0);
    addTo<TestShape>(second);
    render.apply(root);
    for (const int shown : {1, -1, 0, -3, 1, -1, -3}) {
        choice->whichChild = shown;
        render.apply(root);
        EXPECT_TRUE(isFresh(render, root)) << shown;
    }
}

// Random trees, with parts used in several places, change at random; two actions look at them in
// turn, and each must see what an action sees that was never there before.
TEST_F(KeptDraws, areAlwaysWhatAFreshTraversalWouldDraw)
{
    constexpr unsigned seed = 20240717;
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t n) { return static_cast<int>(random() % n); };
    const auto number = [&] { return static_cast<float>(below(5)) / 4; };

    std::vector<KsRef<KsGroup>> groups{KsRef<KsGroup>(root.get())};
    KsRenderAction second{KbViewportRegion(50, 50)};
    for (int step = 0; step < 3000; ++step) {
        KsGroup* group = groups[static_cast<std::size_t>(below(groups.size()))].get();
        const int place = below(static_cast<std::size_t>(group->getNumChildren()) + 1);
        KsNode* at = place < group->getNumChildren() ? group->getChild(place) : nullptr;
        switch (below(14)) {
        case 0:
        case 1:
        case 2: {
            if (groups.size() > 40) break;
            KsRef<KsGroup> added(below(4)   ? new KsSeparator
                                 : below(2) ? new KsSwitch
                                            : new KsGroup);
            group->insertChild(added, place);
            groups.push_back(added);
            break;
        }
        case 3:
        case 4: group->insertChild(new TestShape, place); break;
        case 5: group->insertChild(new KsMaterial, place); break;
        case 6: group->insertChild(new KsTranslation, place); break;
        case 7:
            if (below(3) == 0) group->insertChild(new KsDirectionalLight, place);
            break;
        case 8:
            if (at && group->getNumChildren() > 3) group->removeChild(place);
            break;
        case 9: {
            // A part that is used again, not inside itself: groups are made in the order of their
            // numbers, and a later one is put into an earlier one only.
            const std::size_t a = static_cast<std::size_t>(below(groups.size()));
            const std::size_t b = static_cast<std::size_t>(below(groups.size()));
            KsGroup* outer = groups[std::min(a, b)].get();
            if (a != b && below(4) == 0 && groups[std::max(a, b)]->getNumChildren() < 3 &&
                outer->findChild(groups[std::max(a, b)].get()) < 0) {
                bool holdsGroup = false;
                KsGroup* inner = groups[std::max(a, b)].get();
                for (int i = 0; i < inner->getNumChildren(); ++i)
                    holdsGroup =
                        holdsGroup || inner->getChild(i)->isOfType(KsGroup::getClassTypeId());
                if (!holdsGroup) outer->addChild(inner);
            }
            break;
        }
        default:
            if (auto* material = ksCast<KsMaterial>(at))
                material->diffuseColor = KbColor(number(), number(), number());
            else if (auto* move = ksCast<KsTranslation>(at))
                move->translation = KbVec3f(number(), number(), 0);
            else if (auto* shape = ksCast<TestShape>(at))
                shape->size = KbVec3f(1 + number(), 1, 1);
            else if (auto* choice = ksCast<KsSwitch>(at))
                choice->whichChild = below(4) - 2;
            else if (auto* light = ksCast<KsDirectionalLight>(at))
                light->direction = KbVec3f(number(), number(), -1);
            break;
        }
        if (below(3)) {
            render.apply(root);
            ASSERT_TRUE(isFresh(render, root)) << "step " << step;
        }
        if (below(3) == 0) {
            second.apply(root);
            ASSERT_TRUE(isFresh(second, root)) << "step " << step << ", second action";
        }
    }
    EXPECT_GT(render.getDrawList().draws.size(), 20u) << "the scene is not trivial";
}

} // namespace
