#include "TestShape.h"

#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsDirectionalLight.h>
#include <arborium/nodes/KsLightModel.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPointLight.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsShapeHints.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTranslation.h>

#include <limits>

class DrawList : public ShapeTest {
protected:
    KsRef<KsSeparator> root{new KsSeparator};
    KsRenderAction render{KbViewportRegion(200, 100)};
    const KsDrawList& list() const { return render.getDrawList(); }
    const KsMaterialState& material(std::size_t i) const
    {
        return list().materials[list().draws[i].material];
    }
};

// shows: KsDraw, KsRenderAction::getNumVisits
TEST_F(DrawList, isKeptWhileNothingChanges)
{
    auto* inner = addTo<KsSeparator>(root);
    auto* shape = addTo<TestShape>(inner);
    render.apply(root);
    ASSERT_EQ(list().draws.size(), 1u);
    const KsDraw& draw = list().draws[0];
    EXPECT_TRUE(draw.mesh);
    EXPECT_EQ(draw.matrix[0][0], 2) << "the size of the shape";
    const long visits = render.getNumVisits();
    EXPECT_EQ(visits, 3);
    const auto version = list().version;
    render.apply(root);
    render.setViewportRegion(KbViewportRegion(200, 100));
    render.apply(root);
    EXPECT_EQ(render.getNumVisits(), visits);
    EXPECT_EQ(list().version, version);
    shape->size = KbVec3f(4, 4, 4);
    render.apply(root);
    EXPECT_EQ(render.getNumVisits(), 2 * visits);
    EXPECT_GT(list().version, version);
    EXPECT_EQ(list().draws.size(), 1u);
}

// shows: KsDrawList::clear
TEST_F(DrawList, isEmptiedOnDemand)
{
    addTo<TestShape>(root);
    render.apply(root);
    KsDrawList copy = list();
    EXPECT_FALSE(copy.draws.empty());
    copy.clear();
    EXPECT_TRUE(copy.draws.empty());
    EXPECT_TRUE(copy.materials.empty());
    EXPECT_FALSE(copy.hasCamera);
}

// shows: KsRenderAction::invalidate, KsRenderAction::setViewportRegion,
// KsRenderAction::getViewportRegion
TEST_F(DrawList, isRebuiltForAnotherRootAnotherWindowAndOnDemand)
{
    addTo<TestShape>(root);
    render.apply(root);
    KsRef<KsSeparator> other(new KsSeparator);
    render.apply(other);
    EXPECT_TRUE(list().draws.empty());
    render.apply(root);
    EXPECT_EQ(list().draws.size(), 1u);
    auto version = list().version;
    render.setViewportRegion(KbViewportRegion(300, 100));
    EXPECT_TRUE(render.getViewportRegion() == KbViewportRegion(300, 100));
    render.apply(root);
    EXPECT_GT(list().version, version);
    version = list().version;
    render.invalidate();
    render.apply(root);
    EXPECT_GT(list().version, version);
    render.apply(static_cast<KsNode*>(nullptr));
    EXPECT_TRUE(list().draws.empty());
}

// shows: KsRenderAction, KsRenderAction::getDrawList
TEST_F(DrawList, ofTwoActionsShowsEachChange)
{
    auto* inner = addTo<KsSeparator>(root);
    auto* shape = addTo<TestShape>(inner);
    KsRenderAction second{KbViewportRegion(50, 50)};
    KsRenderAction third{KbViewportRegion(50, 50)};
    render.apply(root);
    second.apply(root);
    third.apply(inner);
    shape->size = KbVec3f(8, 8, 8);
    render.apply(root); // clears the marks on the way
    second.apply(root);
    third.apply(inner);
    for (const KsRenderAction* each : {&render, &second, &third})
        EXPECT_EQ(each->getDrawList().draws.at(0).matrix[0][0], 8);
    const long visits = second.getNumVisits();
    render.apply(root);
    second.apply(root);
    third.apply(inner);
    EXPECT_EQ(second.getNumVisits(), visits);
}

TEST_F(DrawList, showsNodesAddedInSilence)
{
    render.apply(root);
    root->enableNotify(false);
    addTo<TestShape>(root);
    root->enableNotify(true);
    render.apply(root);
    EXPECT_EQ(list().draws.size(), 1u);
}

TEST_F(DrawList, showsAChangeOfAChildThatWasHidden)
{
    auto* choice = addTo<KsSwitch>(root);
    auto* shape = addTo<TestShape>(choice);
    render.apply(root);
    EXPECT_TRUE(list().draws.empty());
    shape->size = KbVec3f(4, 4, 4);
    choice->whichChild = 0;
    render.apply(root);
    ASSERT_EQ(list().draws.size(), 1u);
    shape->size = KbVec3f(6, 6, 6);
    render.apply(root);
    EXPECT_EQ(list().draws[0].matrix[0][0], 6);
}

TEST_F(DrawList, placesMeshesInTheWorld)
{
    addTo<KsTranslation>(root)->translation = KbVec3f(1, 2, 3);
    addTo<KsScale>(root)->scaleFactor = KbVec3f(2, 2, 2);
    addTo<TestShape>(root)->size = KbVec3f(5, 5, 5);
    render.apply(root);
    ASSERT_EQ(list().draws.size(), 1u);
    KbVec3f point;
    list().draws[0].matrix.multVecMatrix({1, 0, 0}, point);
    EXPECT_TRUE(near(point, {11, 2, 3}));
}

TEST_F(DrawList, leavesOutWhatHasNoPlace)
{
    auto* move = addTo<KsTranslation>(root);
    move->translation = KbVec3f(std::numeric_limits<float>::quiet_NaN(), 0, 0);
    addTo<TestShape>(root);
    render.apply(root);
    EXPECT_TRUE(list().draws.empty());
    move->translation = KbVec3f(1, 0, 0);
    render.apply(root);
    EXPECT_EQ(list().draws.size(), 1u);
}

TEST_F(DrawList, sharesEqualMaterials)
{
    for (int i = 0; i < 3; ++i) {
        for (const float grey : {0.25f, 0.75f}) {
            auto* own = addTo<KsSeparator>(root);
            addTo<KsMaterial>(own)->diffuseColor = KbColor(grey, grey, grey);
            addTo<TestShape>(own);
        }
    }
    render.apply(root);
    ASSERT_EQ(list().draws.size(), 6u);
    EXPECT_EQ(list().materials.size(), 2u);
    EXPECT_EQ(material(0).diffuse, KbColor(0.25f, 0.25f, 0.25f));
    EXPECT_EQ(material(5).diffuse, KbColor(0.75f, 0.75f, 0.75f));
}

// shows: KsLightModel
TEST_F(DrawList, takesOfMaterialsOnlyWhatWasSet)
{
    auto* outer = addTo<KsMaterial>(root);
    outer->diffuseColor = KbColor(1, 0, 0);
    outer->transparency = 0.5f;
    auto* inner = addTo<KsMaterial>(root);
    inner->emissiveColor = KbColor(0, 0, 1);
    inner->shininess = 7; // held to 1
    addTo<TestShape>(root);
    addTo<KsBaseColor>(root)->rgb = KbColor(0, 1, 0);
    addTo<KsLightModel>(root)->model = KsLightModel::BASE_COLOR;
    addTo<TestShape>(root);
    render.apply(root);
    EXPECT_EQ(material(0).diffuse, KbColor(1, 0, 0));
    EXPECT_EQ(material(0).emissive, KbColor(0, 0, 1));
    EXPECT_EQ(material(0).shininess, 1);
    EXPECT_EQ(material(0).transparency, 0.5f);
    EXPECT_TRUE(material(0).lit);
    EXPECT_EQ(material(1).diffuse, KbColor(0, 1, 0));
    EXPECT_EQ(material(1).transparency, 0.5f);
    EXPECT_FALSE(material(1).lit);
}

TEST_F(DrawList, holdsTheClipPlanesInTheWorld)
{
    auto* inner = addTo<KsSeparator>(root);
    addTo<KsTranslation>(inner)->translation = KbVec3f(5, 0, 0);
    addTo<KsClipPlane>(inner);
    addTo<TestShape>(inner);
    addTo<TestShape>(inner);
    addTo<TestShape>(root);
    render.apply(root);
    ASSERT_EQ(list().draws.size(), 3u);
    EXPECT_EQ(list().clips.size(), 2u);
    EXPECT_TRUE(list().clips[list().draws[2].clip].empty());
    EXPECT_EQ(list().draws[0].clip, list().draws[1].clip);
    const auto& planes = list().clips[list().draws[0].clip];
    ASSERT_EQ(planes.size(), 1u);
    EXPECT_TRUE(near(planes[0].getNormal(), {1, 0, 0}));
    EXPECT_NEAR(planes[0].getDistanceFromOrigin(), 5, 1e-5);
}

// shows: KsLightState, KsDirectionalLight
TEST_F(DrawList, holdsTheLightsInTheWorld)
{
    addTo<TestShape>(root); // before all light
    addTo<KsTranslation>(root)->translation = KbVec3f(5, 0, 0);
    auto* sun = addTo<KsDirectionalLight>(root);
    sun->direction = KbVec3f(0, -2, 0);
    sun->intensity = 0.5f;
    addTo<KsPointLight>(root)->color = KbColor(1, 0, 0);
    addTo<KsPointLight>(root)->on = false;
    addTo<TestShape>(root);
    render.apply(root);
    EXPECT_TRUE(list().lightSets[list().draws[0].lights].empty());
    const auto& lights = list().lightSets[list().draws[1].lights];
    ASSERT_EQ(lights.size(), 2u);
    EXPECT_EQ(lights[0].kind, KsLightState::Directional);
    EXPECT_TRUE(near(lights[0].vector, {0, -1, 0}));
    EXPECT_TRUE(near(lights[0].color, {0.5f, 0.5f, 0.5f}));
    EXPECT_EQ(lights[1].kind, KsLightState::Point);
    EXPECT_TRUE(near(lights[1].vector, {5, 0, 1}));
    EXPECT_TRUE(near(lights[1].color, {1, 0, 0}));
}

TEST_F(DrawList, hidesTheBacksOfSolidsOnly)
{
    auto* hints = addTo<KsShapeHints>(root);
    addTo<TestShape>(root);
    render.apply(root);
    EXPECT_FALSE(list().draws[0].cullBack);
    EXPECT_TRUE(list().draws[0].twoSided);
    hints->vertexOrdering = KsShapeHints::CLOCKWISE;
    hints->shapeType = KsShapeHints::SOLID;
    render.apply(root);
    EXPECT_TRUE(list().draws[0].cullBack);
    EXPECT_FALSE(list().draws[0].twoSided);
    EXPECT_FALSE(list().draws[0].counterClockwise);
}

TEST_F(DrawList, hasTheViewOfTheCameraForTheWindow)
{
    render.apply(root);
    EXPECT_FALSE(list().hasCamera);
    addTo<KsTranslation>(root)->translation = KbVec3f(0, 0, 10);
    auto* camera = addTo<KsOrthographicCamera>(root);
    camera->height = 4;
    render.apply(root);
    EXPECT_TRUE(list().hasCamera);
    EXPECT_NEAR(list().viewVolume.getWidth(), 8, 1e-4); // twice as wide as high
    EXPECT_TRUE(near(list().viewVolume.getProjectionPoint(), {0, 0, 11}));
}

TEST_F(DrawList, ofAPathHoldsWhatIsBelowItsEnd)
{
    addTo<KsBaseColor>(root)->rgb = KbColor(0, 1, 0);
    addTo<TestShape>(root);
    auto* group = addTo<KsGroup>(root);
    addTo<TestShape>(group);
    KsRef<KsPath> path(new KsPath(root));
    path->append(group);
    render.apply(path.get());
    ASSERT_EQ(list().draws.size(), 1u);
    EXPECT_EQ(material(0).diffuse, KbColor(0, 1, 0));
    render.apply(root); // not taken for the list of the whole
    EXPECT_EQ(list().draws.size(), 2u);
}
