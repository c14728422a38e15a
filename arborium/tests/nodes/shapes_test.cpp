#include "MessageGuard.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/nodes/KsCone.h>
#include <arborium/nodes/KsCoordinate3.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsCylinder.h>
#include <arborium/nodes/KsFaceSet.h>
#include <arborium/nodes/KsIndexedFaceSet.h>
#include <arborium/nodes/KsIndexedLineSet.h>
#include <arborium/nodes/KsNormal.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsShapeHints.h>
#include <arborium/nodes/KsSphere.h>
#include <arborium/nodes/KsTexture2.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/nodes/KsVertexProperty.h>
#include <arborium/render/KsDrawList.h>

#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace {
const float s_nan = std::numeric_limits<float>::quiet_NaN();
const float s_infinite = std::numeric_limits<float>::infinity();

class Shapes : public testing::Test {
protected:
    void SetUp() override
    {
        KsNode::initClasses();
        root = new KsSeparator;
    }
    template <class T> T* add()
    {
        auto* node = new T;
        root->addChild(node);
        return node;
    }
    KbBox3f box()
    {
        KsGetBoundingBoxAction action(KbViewportRegion(100, 100));
        action.apply(root.get());
        return action.getBoundingBox();
    }
    /// A copy of what is drawn, with the meshes.
    std::vector<KsDraw> draws()
    {
        renderer.apply(root.get());
        return renderer.getDrawList().draws;
    }
    KsMeshPtr onlyMesh()
    {
        const std::vector<KsDraw> all = draws();
        return all.size() == 1 ? all[0].mesh : nullptr;
    }
    /// A ray downward; the number of hits.
    int pick(float x, float y, float z = 10)
    {
        picker.setPickAll(true);
        picker.setRay(KbVec3f(x, y, z), KbVec3f(0, 0, -1));
        picker.apply(root.get());
        return picker.getPickedPointsListLength();
    }

    KsRef<KsSeparator> root;
    KsRenderAction renderer{KbViewportRegion(100, 100)};
    KsRayPickAction picker{KbViewportRegion(100, 100)};
};

double area(const KsMesh& mesh)
{
    double sum = 0;
    for (std::size_t i = 0; i + 2 < mesh.indices.size(); i += 3) {
        const KbVec3f& a = mesh.positions[mesh.indices[i]];
        const KbVec3f n = (mesh.positions[mesh.indices[i + 1]] - a)
                              .cross(mesh.positions[mesh.indices[i + 2]] - a);
        sum += static_cast<double>(n.length()) / 2;
    }
    return sum;
}

// An arrow head: concave at its last corner.
const KbVec3f s_arrow[] = {{0, 0, 0}, {4, 2, 0}, {0, 4, 0}, {1, 2, 0}};
constexpr double s_arrowArea = 6;
} // namespace

// ---- boxes -------------------------------------------------------------------------------------

// shows: KsShape::getBox, KsCube, KsSphere, KsCone, KsCylinder
TEST_F(Shapes, haveTheBoxesThatTheirFieldsSay)
{
    auto* cube = add<KsCube>();
    EXPECT_EQ(box(), KbBox3f(-1, -1, -1, 1, 1, 1));
    cube->width = 6.0f;
    cube->height = 4.0f;
    cube->depth = 0.0f;
    EXPECT_EQ(box(), KbBox3f(-3, -2, 0, 3, 2, 0));
    const KsState state;
    EXPECT_EQ(cube->getBox(&state), box());
    cube->width = s_nan;
    EXPECT_TRUE(cube->getBox(&state).isEmpty());
    root->removeAllChildren();

    add<KsSphere>()->radius = 3.0f;
    EXPECT_EQ(box(), KbBox3f(-3, -3, -3, 3, 3, 3));
    root->removeAllChildren();

    auto* cone = add<KsCone>();
    cone->bottomRadius = 0.5f;
    cone->height = 1.0f;
    EXPECT_EQ(box(), KbBox3f(-0.5f, -0.5f, -0.5f, 0.5f, 0.5f, 0.5f));
    root->removeAllChildren();

    auto* cylinder = add<KsCylinder>();
    cylinder->radius = 2.0f;
    cylinder->height = 6.0f;
    EXPECT_EQ(box(), KbBox3f(-2, -3, -2, 2, 3, 2));
}

TEST_F(Shapes, ofNegativeSizeAreNotTurnedInsideOut)
{
    add<KsCube>()->width = -6.0f;
    EXPECT_EQ(box(), KbBox3f(-3, -1, -1, 3, 1, 1));
    ASSERT_EQ(draws().size(), 1u);
    EXPECT_GT(draws()[0].matrix.det3(), 0);
}

TEST_F(Shapes, ofNoFiniteSizeOrWithoutPartsShowNothing)
{
    add<KsCube>()->width = s_nan;
    add<KsSphere>()->radius = s_infinite;
    add<KsCone>()->height = s_nan;
    add<KsCylinder>()->radius = s_infinite;
    add<KsCone>()->parts = 0;
    add<KsCylinder>()->parts = 0;
    EXPECT_TRUE(box().isEmpty());
    EXPECT_TRUE(draws().empty());
    EXPECT_EQ(pick(0, 0), 0);
}

// ---- faces -------------------------------------------------------------------------------------

// shows: KsFaceSet
TEST_F(Shapes, faceSetTakesConsecutivePoints)
{
    auto* coordinates = add<KsCoordinate3>();
    const KbVec3f quads[] = {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {0, 1, 0},
                             {5, 0, 1}, {6, 0, 1}, {6, 3, 1}};
    coordinates->point.setValues(0, 7, quads);
    auto* faces = add<KsFaceSet>();
    const std::int32_t counts[] = {4, 3};
    faces->numVertices.setValues(0, 2, counts);
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 6, 3, 1));
    const KsMeshPtr mesh = onlyMesh();
    ASSERT_TRUE(mesh);
    EXPECT_EQ(mesh->indices.size() / 3, 3u);
    EXPECT_NEAR(area(*mesh), 2 + 1.5, 1e-6);
    for (const KbVec3f& normal : mesh->normals) EXPECT_EQ(normal, KbVec3f(0, 0, 1));

    faces->startIndex = 4;
    faces->numVertices = -1;
    EXPECT_EQ(box(), KbBox3f(5, 0, 1, 6, 3, 1));
}

// shows: KsShapeHints
TEST_F(Shapes, aFaceThatIsSeenClockwiseLooksAwayUnlessHintsSaySo)
{
    auto* hints = add<KsShapeHints>();
    auto* coordinates = add<KsCoordinate3>();
    const KbVec3f quad[] = {{0, 1, 0}, {2, 1, 0}, {2, 0, 0}, {0, 0, 0}};
    coordinates->point.setValues(0, 4, quad);
    add<KsFaceSet>();
    ASSERT_TRUE(onlyMesh());
    EXPECT_EQ(onlyMesh()->normals[0], KbVec3f(0, 0, -1));
    hints->vertexOrdering = KsShapeHints::CLOCKWISE;
    EXPECT_EQ(onlyMesh()->normals[0], KbVec3f(0, 0, 1));
}

// shows: KsFaceSet, KsCoordinate3
TEST_F(Shapes, concaveFaceCoversExactlyItsArea)
{
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    add<KsFaceSet>();
    const KsMeshPtr mesh = onlyMesh();
    ASSERT_TRUE(mesh);
    EXPECT_NEAR(area(*mesh), s_arrowArea, 1e-5);
    for (std::size_t i = 0; i < mesh->indices.size(); i += 3) {
        const KbVec3f& a = mesh->positions[mesh->indices[i]];
        const KbVec3f n = (mesh->positions[mesh->indices[i + 1]] - a)
                              .cross(mesh->positions[mesh->indices[i + 2]] - a);
        EXPECT_GT(n[2], 0) << "the triangles keep the direction of the face";
    }
    EXPECT_EQ(pick(2, 2), 1);
    EXPECT_EQ(pick(0.5f, 2), 0) << "the notch is no part of it";
}

TEST_F(Shapes, concaveFaceMayStandAnywhereInSpace)
{
    // The arrow in a tilted plane, far from the origin.
    const KbVec3f u(0.6f, 0, 0.8f), v(0, 1, 0), origin(1000, -500, 250);
    auto* coordinates = add<KsCoordinate3>();
    for (int i = 0; i < 4; ++i)
        coordinates->point.set1Value(i, origin + u * s_arrow[i][0] + v * s_arrow[i][1]);
    add<KsFaceSet>();
    ASSERT_TRUE(onlyMesh());
    EXPECT_NEAR(area(*onlyMesh()), s_arrowArea, 1e-2);
}

TEST_F(Shapes, crossingEdgesAreCutAtTheirCrossing)
{
    // A bow tie: two triangles that meet at (1, 1).
    auto* coordinates = add<KsCoordinate3>();
    const KbVec3f bow[] = {{0, 0, 0}, {2, 2, 0}, {2, 0.5f, 0}, {0, 2.5f, 0}};
    coordinates->point.setValues(0, 4, bow);
    add<KsFaceSet>();
    const KsMeshPtr mesh = onlyMesh();
    ASSERT_TRUE(mesh);
    ASSERT_EQ(mesh->normals.size(), mesh->positions.size());
    EXPECT_EQ(pick(1.8f, 1.2f), 1);
    EXPECT_EQ(pick(0.2f, 1.2f), 1);
    EXPECT_EQ(pick(1.2f, 2.2f), 0);
}

TEST_F(Shapes, starIsNotTakenForConvex)
{
    auto* coordinates = add<KsCoordinate3>();
    for (int i = 0; i < 5; ++i) {
        const double angle = 4 * 3.14159265358979 * i / 5;
        coordinates->point.set1Value(i, KbVec3f(static_cast<float>(std::cos(angle)),
                                                static_cast<float>(std::sin(angle)), 0));
    }
    add<KsFaceSet>();
    EXPECT_EQ(pick(0.9f, 0.0f), 1);
    EXPECT_EQ(pick(0.0f, 0.0f), 0) << "the middle lies outside by the rule of odd crossings";
}

// shows: KsIndexedFaceSet
TEST_F(Shapes, indexedFacesOfAPrismFormAClosedBody)
{
    auto* hints = add<KsShapeHints>();
    hints->faceType = KsShapeHints::UNKNOWN_FACE_TYPE;
    auto* property = new KsVertexProperty;
    const KbVec3f prism[] = {{0, 0, 0}, {5, 2.5f, 0}, {0, 5, 0},
                             {0, 0, 1}, {5, 2.5f, 1}, {0, 5, 1}};
    property->vertex.setValues(0, 6, prism);
    auto* faces = add<KsIndexedFaceSet>();
    faces->vertexProperty = property;
    const std::int32_t indices[] = {2,  1, 0, -1, 3, 4,  5, -1, 0, 1, 4, 3,
                                    -1, 2, 0, 3,  5, -1, 1, 2,  5, 4, -1};
    faces->coordIndex.setValues(0, 23, indices);
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 5, 5, 1));
    const KsMeshPtr mesh = onlyMesh();
    ASSERT_TRUE(mesh);
    double volume = 0;
    for (std::size_t i = 0; i < mesh->indices.size(); i += 3) {
        const KbVec3f& a = mesh->positions[mesh->indices[i]];
        const KbVec3f& b = mesh->positions[mesh->indices[i + 1]];
        const KbVec3f& c = mesh->positions[mesh->indices[i + 2]];
        volume += static_cast<double>(b.cross(c).dot(a)) / 6;
    }
    EXPECT_NEAR(volume, 12.5, 1e-4);
    EXPECT_EQ(pick(1, 2.5f), 2) << "its top and its bottom";
}

// shows: KsVertexProperty
TEST_F(Shapes, aChangeInsideTheVertexPropertyIsSeen)
{
    auto* property = new KsVertexProperty;
    const KbVec3f triangle[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    property->vertex.setValues(0, 3, triangle);
    add<KsFaceSet>()->vertexProperty = property;
    for (int i = 2; i < 5; ++i) {
        const auto x = static_cast<float>(i);
        property->vertex.set1Value(1, KbVec3f(x, 0, 0));
        EXPECT_EQ(box(), KbBox3f(0, 0, 0, x, 1, 0));
        ASSERT_TRUE(onlyMesh());
        EXPECT_EQ(onlyMesh()->box, KbBox3f(0, 0, 0, x, 1, 0));
    }
}

// shows: KsVertexProperty
TEST_F(Shapes, pointsOfTheSceneGiveWayToTheirOwn)
{
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    auto* property = new KsVertexProperty;
    const KbVec3f triangle[] = {{0, 0, 7}, {1, 0, 7}, {0, 1, 7}};
    auto* faces = add<KsFaceSet>();
    faces->vertexProperty = property;
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 4, 4, 0)) << "an empty property leaves what is in force";
    property->vertex.setValues(0, 3, triangle);
    EXPECT_EQ(box(), KbBox3f(0, 0, 7, 1, 1, 7));
}

// shows: KsSeparator
TEST_F(Shapes, theBoxFollowsPointsOutsideOfASeparator)
{
    auto* coordinates = add<KsCoordinate3>();
    coordinates->point.setValues(0, 4, s_arrow);
    auto* inner = add<KsSeparator>();
    inner->addChild(new KsFaceSet);
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 4, 4, 0));
    coordinates->point.set1Value(1, KbVec3f(9, 2, 0));
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 9, 4, 0));
    auto* other = new KsCoordinate3;
    const KbVec3f triangle[] = {{0, 0, 7}, {1, 0, 7}, {0, 1, 7}};
    other->point.setValues(0, 3, triangle);
    root->insertChild(other, 1);
    EXPECT_EQ(box(), KbBox3f(0, 0, 7, 1, 1, 7));
}

// shows: KsNode::touch
TEST_F(Shapes, theMeshIsKeptUntilSomethingChanges)
{
    auto* coordinates = add<KsCoordinate3>();
    coordinates->point.setValues(0, 4, s_arrow);
    add<KsFaceSet>();
    const KsMeshPtr first = onlyMesh();
    add<KsTranslation>();
    EXPECT_EQ(onlyMesh(), first);
    coordinates->touch();
    EXPECT_NE(onlyMesh(), first);
}

TEST_F(Shapes, normalsAreFlatOrFollowTheCrease)
{
    auto* hints = add<KsShapeHints>();
    auto* coordinates = add<KsCoordinate3>();
    // Two squares that meet at a right angle along the y axis.
    const KbVec3f points[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, -1}, {0, 1, -1}};
    coordinates->point.setValues(0, 6, points);
    auto* faces = add<KsIndexedFaceSet>();
    const std::int32_t indices[] = {0, 1, 2, 3, -1, 4, 0, 3, 5};
    faces->coordIndex.setValues(0, 9, indices);
    for (const KbVec3f& normal : onlyMesh()->normals)
        EXPECT_TRUE(normal == KbVec3f(0, 0, 1) || normal == KbVec3f(-1, 0, 0));

    hints->creaseAngle = 2.0f;
    const KsMeshPtr smooth = onlyMesh();
    for (std::size_t i = 0; i < smooth->positions.size(); ++i) {
        if (smooth->positions[i][0] != 0 || smooth->positions[i][2] != 0) continue;
        EXPECT_TRUE(smooth->normals[i].equals(KbVec3f(-0.7071f, 0, 0.7071f), 1e-3f));
    }
}

// shows: KsNormal
TEST_F(Shapes, givenNormalsAreTakenIfTheyFit)
{
    auto* normals = add<KsNormal>();
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    add<KsFaceSet>();
    normals->vector = KbVec3f(0, 3, 0);
    for (const KbVec3f& normal : onlyMesh()->normals) EXPECT_EQ(normal, KbVec3f(0, 1, 0));
    normals->vector.set1Value(1, KbVec3f(1, 0, 0));
    for (const KbVec3f& normal : onlyMesh()->normals) EXPECT_EQ(normal, KbVec3f(0, 0, 1));
    normals->vector.set1Value(2, KbVec3f(s_nan, 0, 0));
    normals->vector.set1Value(3, KbVec3f());
    // What is no direction is that of the face.
    std::vector<KbVec3f> taken = onlyMesh()->normals;
    ASSERT_EQ(taken.size(), 4u);
    std::sort(taken.begin(), taken.end(),
              [](auto& a, auto& b) { return a[0] + 2 * a[1] < b[0] + 2 * b[1]; });
    EXPECT_EQ(taken, (std::vector<KbVec3f>{{0, 0, 1}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}}));
}

// ---- what makes no sense -----------------------------------------------------------------------

TEST_F(Shapes, facesWithBadIndicesAreLeftOutWithOneMessage)
{
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    auto* faces = add<KsIndexedFaceSet>();
    const std::int32_t indices[] = {0, 1, 99, -1, 0, 1, 2, -1, -7, 1, 2, -1, 2147483647, 1, 2};
    faces->coordIndex.setValues(0, 15, indices);
    ExpectedMessages messages("KsVertexShape::getForm", "IndexedFaceSet: 3 of 4 faces left out");
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 4, 4, 0));
    ASSERT_TRUE(onlyMesh());
    EXPECT_EQ(onlyMesh()->indices.size(), 3u);
    EXPECT_EQ(pick(1, 2), 1);
}

TEST_F(Shapes, countsBeyondThePointsAreRefusedWithOneMessage)
{
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    auto* faces = add<KsFaceSet>();
    const std::int32_t counts[] = {3, 2147483647, 3};
    faces->numVertices.setValues(0, 3, counts);
    {
        ExpectedMessages messages("KsVertexShape::getForm",
                                  "FaceSet: The fields ask for points that do not exist");
        EXPECT_EQ(box(), KbBox3f(0, 0, 0, 4, 4, 0));
        ASSERT_TRUE(onlyMesh());
        EXPECT_EQ(onlyMesh()->indices.size(), 3u);
    }
    faces->numVertices = -5;
    {
        ExpectedMessages messages("KsVertexShape::getForm",
                                  "FaceSet: The fields ask for points that do not exist");
        EXPECT_TRUE(box().isEmpty());
    }
    faces->numVertices = -1;
    faces->startIndex = -1;
    {
        ExpectedMessages messages("KsVertexShape::getForm",
                                  "FaceSet: The fields ask for points that do not exist");
        EXPECT_TRUE(box().isEmpty());
    }
    faces->startIndex = 2147483647;
    EXPECT_TRUE(box().isEmpty()) << "nothing is left of the points, which is no mistake";
}

TEST_F(Shapes, pointsThatAreNotFiniteSpoilOnlyTheirOwnFaces)
{
    auto* coordinates = add<KsCoordinate3>();
    coordinates->point.setValues(0, 4, s_arrow);
    coordinates->point.set1Value(4, KbVec3f(s_nan, 0, 0));
    coordinates->point.set1Value(5, KbVec3f(0, s_infinite, 0));
    auto* faces = add<KsIndexedFaceSet>();
    const std::int32_t indices[] = {0, 1, 2, -1, 0, 1, 4, -1, 0, 1, 5, -1};
    faces->coordIndex.setValues(0, 12, indices);
    ExpectedMessages messages("KsVertexShape::getForm", "2 of 3 faces left out");
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 4, 4, 0));
}

TEST_F(Shapes, facesWithoutAnAreaShowNothing)
{
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    auto* faces = add<KsIndexedFaceSet>();
    const std::int32_t indices[] = {0, 0, 0, -1, 0, 1, -1, 2, -1, -1, 0, 1, 0, 1, -1};
    faces->coordIndex.setValues(0, 15, indices);
    EXPECT_TRUE(box().isEmpty());
    EXPECT_TRUE(draws().empty());
}

TEST_F(Shapes, facesWithoutPointsAreReported)
{
    auto* faces = add<KsIndexedFaceSet>();
    const std::int32_t indices[] = {0, 1, 2, -1};
    faces->coordIndex.setValues(0, 4, indices);
    ExpectedMessages messages("KsVertexShape::getForm", "1 of 1 faces left out");
    EXPECT_TRUE(box().isEmpty());
}

TEST_F(Shapes, aFaceWithTooManyCrossingsIsRefusedSoon)
{
    // A star of so many corners that each edge crosses nearly every other.
    auto* coordinates = add<KsCoordinate3>();
    constexpr int corners = 20001;
    std::vector<KbVec3f> points(corners);
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * 3.14159265358979 * (static_cast<double>(i) * 10000 / corners);
        points[static_cast<std::size_t>(i)].setValue(static_cast<float>(std::cos(angle)),
                                                     static_cast<float>(std::sin(angle)), 0);
    }
    coordinates->point.setValues(0, corners, points.data());
    add<KsFaceSet>();
    ExpectedMessages messages("KsVertexShape::getForm",
                              "FaceSet: 1 of 1 faces left out: edges cross too often");
    EXPECT_TRUE(box().isEmpty());
}

// ---- lines -------------------------------------------------------------------------------------

// shows: KsIndexedLineSet
TEST_F(Shapes, linesRunThroughTheirPoints)
{
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    auto* lines = add<KsIndexedLineSet>();
    const std::int32_t indices[] = {0, 1, 2, -1, 3, -1, 2, 77, -1};
    lines->coordIndex.setValues(0, 9, indices);
    ExpectedMessages messages("KsVertexShape::getForm", "1 of 3 lines left out");
    const KsMeshPtr mesh = onlyMesh();
    ASSERT_TRUE(mesh);
    EXPECT_EQ(mesh->primitive, KsMesh::Lines);
    EXPECT_EQ(mesh->indices.size(), 4u);
    EXPECT_EQ(mesh->positions.size(), 3u);
    EXPECT_EQ(box(), KbBox3f(0, 0, 0, 4, 4, 0));
}

// ---- picks -------------------------------------------------------------------------------------

// shows: KsCube, KsSphere, KsCone, KsCylinder
TEST_F(Shapes, areHitWhereTheyAre)
{
    add<KsCube>();
    EXPECT_EQ(pick(0.9f, 0.9f), 2);
    EXPECT_TRUE(picker.getPickedPoint()->getPoint().equals(KbVec3f(0.9f, 0.9f, 1), 1e-4f));
    EXPECT_TRUE(picker.getPickedPoint()->getNormal().equals(KbVec3f(0, 0, 1), 1e-4f));
    EXPECT_EQ(pick(0, 0), 2) << "the edge between two triangles is hit once";
    EXPECT_EQ(pick(1.1f, 0), 0);
    root->removeAllChildren();

    add<KsSphere>()->radius = 2.0f;
    EXPECT_EQ(pick(1, 1), 2);
    EXPECT_NEAR(picker.getPickedPoint()->getPoint()[2], std::sqrt(2.0f), 0.03f);
    EXPECT_EQ(pick(1.9f, 1.9f), 0) << "the corner of its box is empty";
    root->removeAllChildren();

    add<KsCone>();
    EXPECT_EQ(pick(0, -0.5f), 2);
    EXPECT_EQ(pick(0.9f, 0.5f), 0);
    root->removeAllChildren();

    add<KsCylinder>();
    EXPECT_EQ(pick(0.9f, 0.9f), 2);
    EXPECT_EQ(pick(0.9f, 1.1f), 0);
}

TEST_F(Shapes, theNearestHitIsReportedUnlessAllAreWanted)
{
    add<KsCube>();
    auto* away = add<KsTranslation>();
    away->translation = KbVec3f(0, 0, -5);
    add<KsCube>();
    picker.setPickAll(false);
    picker.setRay(KbVec3f(0.2f, 0.1f, 10), KbVec3f(0, 0, -1));
    picker.apply(root.get());
    ASSERT_EQ(picker.getPickedPointsListLength(), 1);
    EXPECT_TRUE(picker.getPickedPoint()->getPoint().equals(KbVec3f(0.2f, 0.1f, 1), 1e-4f));
    EXPECT_EQ(pick(0.2f, 0.1f), 4);
    picker.setRay(KbVec3f(0.2f, 0.1f, 0), KbVec3f(0, 0, -1));
    picker.setPickAll(false);
    picker.apply(root.get());
    ASSERT_EQ(picker.getPickedPointsListLength(), 1);
    EXPECT_TRUE(picker.getPickedPoint()->getPoint().equals(KbVec3f(0.2f, 0.1f, -1), 1e-4f))
        << "what lies behind the ray's start does not hide what is before it";
}

// shows: KsPickStyle
TEST_F(Shapes, pickStyleChoosesBoxesOrNothing)
{
    auto* style = add<KsPickStyle>();
    add<KsSphere>();
    EXPECT_EQ(pick(0.95f, 0.95f), 0);
    style->style = KsPickStyle::BOUNDING_BOX;
    ASSERT_EQ(pick(0.95f, 0.95f), 1);
    EXPECT_TRUE(picker.getPickedPoint()->getPoint().equals(KbVec3f(0.95f, 0.95f, 1), 1e-4f));
    style->style = KsPickStyle::UNPICKABLE;
    EXPECT_EQ(pick(0, 0), 0);
}

// shows: KsIndexedLineSet
TEST_F(Shapes, linesAreHitFromBeside)
{
    auto* coordinates = add<KsCoordinate3>();
    const KbVec3f points[] = {{-5, 0, 0}, {5, 0, 0}};
    coordinates->point.setValues(0, 2, points);
    auto* lines = add<KsIndexedLineSet>();
    const std::int32_t indices[] = {0, 1};
    lines->coordIndex.setValues(0, 2, indices);
    picker.setRadius(5);
    ASSERT_EQ(pick(2, 0.1f), 1);
    EXPECT_TRUE(picker.getPickedPoint()->getPoint().equals(KbVec3f(2, 0, 0), 1e-4f));
    EXPECT_EQ(pick(2, 3), 0);
    EXPECT_EQ(pick(7, 0), 0);
    picker.setRadius(0);
    EXPECT_EQ(pick(2, 0.1f), 0);
}

// ---- textures ----------------------------------------------------------------------------------

// shows: KsTexture2, KsTexture2::getImage, KsTextureImage
TEST_F(Shapes, wearTheImageBeforeThem)
{
    QTemporaryDir directory;
    const std::string path = directory.filePath("two.png").toStdString();
    QImage image(1, 2, QImage::Format_ARGB32);
    image.setPixelColor(0, 0, QColor(1, 2, 3));
    image.setPixelColor(0, 1, QColor(4, 5, 6, 128));
    ASSERT_TRUE(image.save(QString::fromStdString(path)));

    auto* texture = add<KsTexture2>();
    add<KsCoordinate3>()->point.setValues(0, 4, s_arrow);
    add<KsFaceSet>();
    ASSERT_TRUE(onlyMesh());
    EXPECT_TRUE(onlyMesh()->texCoords.empty());
    texture->filename = KbString(path);
    ASSERT_EQ(draws().size(), 1u);
    ASSERT_TRUE(draws()[0].texture);
    const KsTexturePtr worn = draws()[0].texture;
    EXPECT_EQ(worn, texture->getImage());
    EXPECT_EQ(worn->width, 1);
    EXPECT_EQ(worn->height, 2);
    const std::vector<std::uint8_t> fromBelow{4, 5, 6, 128, 1, 2, 3, 255};
    EXPECT_EQ(worn->rgba, fromBelow);
    EXPECT_NE(worn->id, KsTextureImage().id);
    const KsMesh& mesh = *draws()[0].mesh;
    ASSERT_EQ(mesh.texCoords.size(), mesh.positions.size());
    for (std::size_t i = 0; i < mesh.positions.size(); ++i)
        EXPECT_EQ(mesh.texCoords[i], KbVec2f(mesh.positions[i][0] / 4, mesh.positions[i][1] / 4))
            << "as wide as the longest side";
}

TEST_F(Shapes, aMissingImageIsReportedOnce)
{
    auto* texture = add<KsTexture2>();
    texture->filename = KbString("/nowhere/at/all.png");
    add<KsCube>();
    {
        ExpectedMessages messages("KsTexture2::getImage", "all.png\" is not found");
        ASSERT_EQ(draws().size(), 1u);
        EXPECT_FALSE(draws()[0].texture);
        root->touch();
        draws();
    }
    texture->filename = KbString("/");
    ExpectedMessages messages("KsTexture2::getImage", "no regular file");
    draws();
}

TEST_F(Shapes, brokenImageIsReported)
{
    QTemporaryDir directory;
    const std::string path = directory.filePath("broken.png").toStdString();
    QFile file(QString::fromStdString(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x89PNG\r\n\x1a\n and then nothing");
    file.close();
    add<KsTexture2>()->filename = KbString(path);
    add<KsCube>();
    ExpectedMessages messages("KsTexture2::getImage", "No texture from");
    ASSERT_EQ(draws().size(), 1u);
    EXPECT_FALSE(draws()[0].texture);
}
