// Values that are no numbers, infinite or as large as a float can be, in every field of every class
// of nodes: each traversal and each frame ends, and what it yields can be used.

#include "MessageGuard.h"
#include "RandomScene.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsShape.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const KbViewportRegion viewport(32, 32);

/// What nodes need to have something to act on: a camera, points for faces and lines, a shape
/// behind them that is still to be seen.
const char* const stage = R"(#Arborium V2.1 ascii
Separator {
  OrthographicCamera { position 0 0 10 height 8 }
  Separator {
    Coordinate3 { point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0, 0 0 1 ] }
    DEF Stage Group { }
    Cone { }
    FaceSet { numVertices 4 }
    IndexedFaceSet { coordIndex [ 0, 1, 2, 3, -1, 0, 1, 4, -1 ] }
    IndexedLineSet { coordIndex [ 0, 2, -1, 1, 3, -1 ] }
    Text3 { string [ "a", "b" ] }
  }
  Separator { Translation { translation 2 2 0 } Cube { } }
}
)";

/// Sets all the numbers of a field; FALSE where it holds none.
bool setNumbers(KsField* field, float n)
{
    using namespace RandomScene;
    KbMatrix matrix;
    for (int i = 0; i < 16; ++i) matrix[i / 4][i % 4] = n;
    const auto several = [](auto value) { return std::vector<decltype(value)>(5, value); };
    return setAs<KsSFFloat>(field, [&](auto& f) { f = n; }) ||
           setAs<KsSFVec2f>(field, [&](auto& f) { f = KbVec2f(n, n); }) ||
           setAs<KsSFVec3f>(field, [&](auto& f) { f = KbVec3f(n, n, n); }) ||
           setAs<KsSFColor>(field, [&](auto& f) { f = KbColor(n, n, n); }) ||
           setAs<KsSFRotation>(field, [&](auto& f) { f = KbRotation(KbVec3f(n, n, 1), n); }) ||
           setAs<KsSFMatrix>(field, [&](auto& f) { f = matrix; }) ||
           setAs<KsSFPlane>(field, [&](auto& f) { f = KbPlane(KbVec3f(n, 0, 1), n); }) ||
           setAs<KsMFFloat>(field, [&](auto& f) { f.assign(several(n)); }) ||
           setAs<KsMFColor>(field, [&](auto& f) { f.assign(several(KbColor(n, n, n))); }) ||
           setAs<KsMFVec2f>(field, [&](auto& f) { f.assign(several(KbVec2f(n, 0))); }) ||
           setAs<KsMFVec3f>(field, [&](auto& f) { f.assign(several(KbVec3f(n, 1, 0))); }) ||
           setAs<KsSFInt32>(field, [&](auto& f) { f = n > 0 ? 0x7fffffff : -0x7fffffff - 1; }) ||
           setAs<KsMFInt32>(field, [&](auto& f) { f.assign(several(n > 0 ? 0x7fffffff : -2)); });
}

class Extremes : public testing::TestWithParam<float> {
protected:
    void SetUp() override { KsDB::init(); }
    void TearDown() override
    {
        renderer.releaseScene();
        scene.reset();
        KsDB::finish();
    }

    void show()
    {
        const std::string text = stage;
        KsInput in;
        in.setBuffer(text.data(), text.size());
        scene = KsDB::readAll(&in);
        ASSERT_TRUE(scene);
        place = static_cast<KsGroup*>(KsNode::getByName(KbName("Stage")));
        ASSERT_TRUE(place);
        renderer.render(scene);
        picture = renderer.getImage();
        if (KsGLContext::isAvailable()) {
            EXPECT_NE(std::count(picture.begin(), picture.end(), 0), 32 * 32 * 3) << "all is black";
        }
    }

    void lookEverywhere()
    {
        KsGetBoundingBoxAction box(viewport);
        box.apply(scene);
        for (int i = 0; i < 3; ++i) {
            EXPECT_FALSE(std::isnan(box.getBoundingBox().getMin()[i]));
            EXPECT_FALSE(std::isnan(box.getBoundingBox().getMax()[i]));
        }
        KsSearchAction search;
        search.setType(KsShape::getClassTypeId());
        search.setInterest(KsSearchAction::ALL);
        search.apply(scene);
        EXPECT_GE(search.getPaths().getLength(), 5);
        KsGetMatrixAction matrix(viewport);
        for (int i = 0; i < search.getPaths().getLength(); ++i) matrix.apply(search.getPaths()[i]);

        KsRayPickAction pick(viewport);
        const auto look = [&] {
            pick.apply(scene);
            for (int i = 0; i < pick.getPickedPointsListLength(); ++i) {
                const KsPickedPoint* hit = pick.getPickedPoint(i);
                EXPECT_TRUE(hit->getPoint().isFinite());
                EXPECT_TRUE(std::isfinite(hit->getDistance()));
                EXPECT_NEAR(hit->getNormal().length(), 1, 1e-3);
            }
        };
        for (const float x : {4.0f, 16.0f, 24.0f}) {
            pick.setPoint(KbVec2f(x, x));
            look();
        }
        pick.setPickAll(true);
        for (const float far : {9.0f, 1e30f, 3e38f}) {
            pick.setRay(KbVec3f(0.3f, 0.2f, far), KbVec3f(0, 0, -1));
            look();
        }
        KsHandleEventAction handle(viewport);
        const KsMouseButtonEvent press(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, {16, 16});
        handle.setEvent(&press);
        handle.apply(scene);

        KsRenderAction draws(viewport);
        draws.apply(scene);
        for (const KsDraw& draw : draws.getDrawList().draws) EXPECT_TRUE(draw.matrix.isFinite());
        renderer.render(scene);
    }

    KsRef<KsSeparator> scene;
    KsGroup* place = nullptr;
    KsOffscreenRenderer renderer{viewport};
    std::vector<std::uint8_t> picture;
};

std::string nameOf(const testing::TestParamInfo<float>& each)
{
    const float n = each.param;
    if (std::isnan(n)) return "notANumber";
    return std::string(n > 0 ? "positive" : "negative") + (std::isinf(n) ? "Infinity" : "1e38");
}

INSTANTIATE_TEST_SUITE_P(, Extremes,
                         testing::Values(std::numeric_limits<float>::quiet_NaN(),
                                         std::numeric_limits<float>::infinity(),
                                         -std::numeric_limits<float>::infinity(), 1e38f, -1e38f),
                         nameOf);

} // namespace

TEST_P(Extremes, inAnyFieldOfAnyNodeEndEachTraversalAndFrame)
{
    // Some classes say what they leave out.
    ExpectedMessages messages;
    messages.allow("", "");
    show();
    int tried = 0;
    for (const KsType type : RandomScene::nodeTypes()) {
        KsFieldList fields;
        const KsRef<KsNode> sample = RandomScene::makeNode(type);
        ASSERT_TRUE(sample) << type.getName().getString();
        const int count = sample->getFields(fields);
        for (int i = 0; i < count; ++i) {
            SCOPED_TRACE(std::string(type.getName().getString()) + "." +
                         fields[static_cast<std::size_t>(i)].name.getString());
            const KsRef<KsNode> node = RandomScene::makeNode(type);
            KsField* field = node->getField(fields[static_cast<std::size_t>(i)].name);
            if (!setNumbers(field, GetParam())) continue;
            ++tried;
            place->addChild(node);
            lookEverywhere();
            place->removeAllChildren();
            // Nothing of it stays.
            renderer.render(scene);
            ASSERT_EQ(renderer.getImage(), picture);
            if (HasFailure()) return;
        }
    }
    EXPECT_GE(tried, 50);
}

TEST_P(Extremes, inAllFieldsOfAllNodesAtOnceEndEachTraversalAndFrame)
{
    ExpectedMessages messages;
    messages.allow("", "");
    show();
    for (const KsType type : RandomScene::nodeTypes()) {
        const KsRef<KsNode> node = RandomScene::makeNode(type);
        KsFieldList fields;
        node->getFields(fields);
        for (const KsFieldEntry& each : fields) setNumbers(each.field, GetParam());
        place->addChild(node);
        lookEverywhere();
        if (HasFailure()) FAIL() << type.getName().getString();
    }
    place->removeAllChildren();
    renderer.render(scene);
    EXPECT_EQ(renderer.getImage(), picture);
}

TEST_P(Extremes, inThePlaceOfACameraOrARayEndAPick)
{
    ExpectedMessages messages;
    messages.allow("", "");
    show();
    const float n = GetParam();
    KsRayPickAction pick(viewport);
    for (int axis = 0; axis < 3; ++axis) {
        KbVec3f start(0, 0, 9), along(0, 0, -1);
        start[axis] = n;
        along[axis] = n;
        pick.setRay(start, {0, 0, -1});
        pick.apply(scene);
        pick.setRay({0, 0, 9}, along);
        pick.apply(scene);
        if (const KsPickedPoint* hit = pick.getPickedPoint()) {
            EXPECT_TRUE(hit->getPoint().isFinite());
        }
    }
    pick.setRay({0, 0, 9}, {0, 0, -1}, n, n);
    pick.apply(scene);
    pick.setRadius(n);
    for (const float x : {n, 16.0f}) {
        pick.setPoint(KbVec2f(x, 16));
        pick.apply(scene);
        const KsPickedPoint* hit = pick.getPickedPoint();
        EXPECT_TRUE(!hit || hit->getPoint().isFinite());
    }
}
