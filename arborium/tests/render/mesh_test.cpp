#include <MessageGuard.h>
#include <arborium/actions/KsState.h>
#include <arborium/nodes/KsCone.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsCylinder.h>
#include <arborium/nodes/KsSphere.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {
KbVec3f corner(const KsMesh& mesh, std::size_t index)
{
    return mesh.positions[mesh.indices[index]];
}

/// Twice the area of a triangle, as a vector towards the side from which it runs counter-clockwise.
KbVec3f across(const KsMesh& mesh, std::size_t first)
{
    const KbVec3f a = corner(mesh, first);
    return (corner(mesh, first + 1) - a).cross(corner(mesh, first + 2) - a);
}

/// Of a closed mesh; positive if its faces look outward.
double volume(const KsMesh& mesh)
{
    double sum = 0;
    for (std::size_t i = 0; i + 2 < mesh.indices.size(); i += 3)
        sum += static_cast<double>(across(mesh, i).dot(corner(mesh, i))) / 6;
    return sum;
}

class Mesh : public testing::Test {
protected:
    void SetUp() override { KsNode::initClasses(); }
    KsState state;
};

void expectOutward(const KsMesh& mesh)
{
    ASSERT_EQ(mesh.normals.size(), mesh.positions.size());
    ASSERT_EQ(mesh.texCoords.size(), mesh.positions.size());
    ASSERT_EQ(mesh.indices.size() % 3, 0u);
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3) {
        const KbVec3f out = across(mesh, i);
        const KbVec3f center = (corner(mesh, i) + corner(mesh, i + 1) + corner(mesh, i + 2)) / 3.0f;
        ASSERT_GT(out.length(), 1e-4f) << "triangle " << i / 3 << " has no area";
        EXPECT_GT(out.dot(center), 0) << "triangle " << i / 3 << " is turned inward";
        for (std::size_t k = 0; k < 3; ++k) {
            const KbVec3f& normal = mesh.normals[mesh.indices[i + k]];
            EXPECT_NEAR(normal.length(), 1, 1e-5f);
            EXPECT_GT(normal.dot(out), 0.5f * out.length());
        }
    }
}

// A circle of 32 corners.
const double s_disk = 16 * std::sin(2 * 3.14159265358979 / 32);
} // namespace

// shows: KsMesh
TEST_F(Mesh, cubeIsClosedAndFacesOutward)
{
    const KsRef<KsCube> cube(new KsCube);
    const KsMeshPtr mesh = cube->getForm(&state).mesh;
    ASSERT_TRUE(mesh);
    EXPECT_EQ(mesh->indices.size(), 36u);
    EXPECT_EQ(mesh->positions.size(), 24u);
    EXPECT_NEAR(volume(*mesh), 8, 1e-6);
    expectOutward(*mesh);
}

TEST_F(Mesh, sphereIsClosedAndFacesOutward)
{
    const KsRef<KsSphere> sphere(new KsSphere);
    const KsMeshPtr mesh = sphere->getForm(&state).mesh;
    ASSERT_TRUE(mesh);
    EXPECT_NEAR(volume(*mesh), 4.18879, 0.07); // its faces lie inside of the ball
    EXPECT_EQ(mesh->box, KbBox3f(-1, -1, -1, 1, 1, 1));
    expectOutward(*mesh);
}

TEST_F(Mesh, coneIsClosedAndFacesOutward)
{
    const KsRef<KsCone> cone(new KsCone);
    const KsMeshPtr mesh = cone->getForm(&state).mesh;
    ASSERT_TRUE(mesh);
    EXPECT_NEAR(volume(*mesh), s_disk * 2 / 3, 1e-4);
    EXPECT_EQ(mesh->box, KbBox3f(-1, -1, -1, 1, 1, 1));
    expectOutward(*mesh);
}

TEST_F(Mesh, cylinderIsClosedAndFacesOutward)
{
    const KsRef<KsCylinder> cylinder(new KsCylinder);
    const KsMeshPtr mesh = cylinder->getForm(&state).mesh;
    ASSERT_TRUE(mesh);
    EXPECT_NEAR(volume(*mesh), s_disk * 2, 1e-4);
    expectOutward(*mesh);
}

// shows: KsMesh::isSound
TEST_F(Mesh, isSoundIfItsListsFitEachOther)
{
    const KsRef<KsCube> cube(new KsCube);
    EXPECT_TRUE(cube->getForm(&state).mesh->isSound());
    EXPECT_TRUE(KsMesh().isSound());
    KsMesh beyond;
    beyond.positions = {{0, 0, 0}, {1, 0, 0}};
    beyond.indices = {0, 1, 2};
    KsMesh lacking;
    lacking.positions = {{0, 0, 0}, {1, 0, 0}};
    lacking.normals = {{0, 0, 1}};
    ExpectedMessages messages("KsMesh", "an index is beyond the positions: the mesh is not shown");
    messages.expect("KsMesh", "there are not as many normals, coordinates or colours as positions");
    EXPECT_FALSE(beyond.isSound());
    EXPECT_FALSE(lacking.isSound());
    EXPECT_FALSE(beyond.isSound()) << "said once";
}

// shows: KsShape::getBox
TEST_F(Mesh, partsAreLeftOut)
{
    const KsRef<KsCylinder> cylinder(new KsCylinder);
    const std::size_t all = cylinder->getForm(&state).mesh->indices.size() / 3;
    EXPECT_EQ(all, 32u * 4);
    cylinder->parts = KsCylinder::SIDES;
    EXPECT_EQ(cylinder->getForm(&state).mesh->indices.size() / 3, 64u);
    cylinder->parts = KsCylinder::TOP;
    EXPECT_EQ(cylinder->getForm(&state).mesh->box, KbBox3f(-1, 1, -1, 1, 1, 1));
    cylinder->parts = KsCylinder::BOTTOM;
    EXPECT_EQ(cylinder->getForm(&state).mesh->box, KbBox3f(-1, -1, -1, 1, -1, 1));

    const KsRef<KsCone> cone(new KsCone);
    EXPECT_EQ(cone->getForm(&state).mesh->indices.size() / 3, 64u);
    cone->parts = KsCone::BOTTOM;
    EXPECT_EQ(cone->getForm(&state).mesh->indices.size() / 3, 32u);
    cone->parts = 0;
    EXPECT_FALSE(cone->getForm(&state).mesh);
    EXPECT_TRUE(cone->getBox(&state).isEmpty());
}

// shows: KsShape::getForm
TEST_F(Mesh, isSharedByShapesOfAllSizes)
{
    const KsRef<KsCube> a(new KsCube), b(new KsCube);
    b->width = 5.0f;
    EXPECT_EQ(a->getForm(&state).mesh, b->getForm(&state).mesh);
    const KsRef<KsSphere> s(new KsSphere), t(new KsSphere);
    t->radius = 0.2f;
    EXPECT_EQ(s->getForm(&state).mesh, t->getForm(&state).mesh);
    EXPECT_NE(s->getForm(&state).mesh->id, a->getForm(&state).mesh->id);
}
