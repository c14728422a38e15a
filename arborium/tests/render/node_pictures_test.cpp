#include "PictureTest.h"
#include "node_scenes.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsOutput.h>
#include <arborium/kits/KsBaseKit.h>

#include <QPainter>

#include <ostream>
#include <set>

namespace {

std::string written(KsNode* node, bool binary)
{
    KsOutput out;
    out.setBinary(binary);
    KsWriteAction action(&out);
    action.apply(node);
    return out.getBuffer();
}

/// The one separator that stands in a file.
KsRef<KsSeparator> onlyChild(const KsRef<KsSeparator>& file)
{
    return KsRef<KsSeparator>(file ? ksCast<KsSeparator>(file->getChild(0)) : nullptr);
}

KsRef<KsSeparator> readWritten(const std::string& bytes)
{
    KsInput in;
    in.setBuffer(bytes.data(), bytes.size());
    return onlyChild(KsRef<KsSeparator>(KsDB::readAll(&in)));
}

class NodePictures : public PictureTest, public testing::WithParamInterface<NodeScene> {
protected:
    void SetUp() override
    {
        PictureTest::SetUp();
        scene = onlyChild(read(std::string("Separator {\n") + GetParam().content + "}\n"));
        ASSERT_TRUE(scene);
        ASSERT_NE(written(scene, false).find(std::string(GetParam().type) + " {"),
                  std::string::npos)
            << "the scene of a class holds a node of it";
    }
    void TearDown() override
    {
        scene.reset();
        PictureTest::TearDown();
    }
    KsRef<KsSeparator> scene;
};

} // namespace

void PrintTo(const NodeScene& scene, std::ostream* out) { *out << scene.type; }

// shows: KsGroup, KsSeparator, KsSwitch, KsFile, KsTranslation, KsRotation, KsScale, KsTransform,
// KsMatrixTransform, KsMaterial, KsBaseColor, KsLightModel, KsTexture2, KsFont, KsShapeHints,
// KsPickStyle, KsClipPlane, KsDirectionalLight, KsPointLight, KsOrthographicCamera,
// KsPerspectiveCamera, KsEventCallback, KsCoordinate3, KsNormal, KsVertexProperty, KsFaceSet,
// KsIndexedFaceSet, KsIndexedLineSet, KsCube, KsSphere, KsCone, KsCylinder, KsText3
TEST_P(NodePictures, looksAsItsReference)
{
    if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    EXPECT_TRUE(references.match(GetParam().type, pictureOf(scene)));
}

TEST_P(NodePictures, hasTheBoxThatItsFieldsSay)
{
    KsGetBoundingBoxAction action(KbViewportRegion(width, height));
    const KbBox3f expected = GetParam().box();
    // Twice: the second time separators know their boxes.
    for (int i = 0; i < 2; ++i) {
        action.apply(scene);
        const KbBox3f box = action.getBoundingBox();
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(box.getMin()[k], expected.getMin()[k], 0.005) << "lower end of axis " << k;
            EXPECT_NEAR(box.getMax()[k], expected.getMax()[k], 0.005) << "upper end of axis " << k;
        }
    }
}

TEST_P(NodePictures, isPickedWhereItIsAndNowhereElse)
{
    for (const NodeScene::Ray& ray : GetParam().rays) {
        KsRayPickAction action(KbViewportRegion(width, height));
        action.setRadius(1);
        action.setRay(KbVec3f(ray.x, ray.y, 10), KbVec3f(0, 0, -1));
        action.apply(scene);
        const KsPickedPoint* hit = action.getPickedPoint();
        if (!ray.meets) {
            EXPECT_FALSE(hit) << "the ray at " << ray.x << ' ' << ray.y << " meets nothing";
            continue;
        }
        ASSERT_TRUE(hit) << "the ray at " << ray.x << ' ' << ray.y << " meets " << ray.meets;
        EXPECT_EQ(hit->getPath()->getTail()->getName(), KbName(ray.meets));
        EXPECT_NEAR(hit->getPoint()[0], ray.x, 0.2) << "lines are hit from beside";
        EXPECT_NEAR(hit->getPoint()[1], ray.y, 0.2);
    }
}

TEST_P(NodePictures, isReadAndWrittenAndCopiedWithoutLoss)
{
    const std::string ascii = written(scene, false);
    const std::string binary = written(scene, true);
    const KsRef<KsSeparator> copies[] = {
        readWritten(ascii), readWritten(binary),
        KsRef<KsSeparator>(static_cast<KsSeparator*>(scene->copy()))};
    const bool canDraw = KsGLContext::isAvailable();
    const QImage picture = canDraw ? pictureOf(scene) : QImage();
    for (const KsRef<KsSeparator>& copy : copies) {
        ASSERT_TRUE(copy);
        EXPECT_EQ(written(copy, false), ascii);
        EXPECT_EQ(written(copy, true), binary);
        EXPECT_EQ(canDraw ? pictureOf(copy) : QImage(), picture);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, NodePictures, testing::ValuesIn(nodeScenes()),
                         [](const auto& each) { return std::string(each.param.type); });

class NodeScenes : public PictureTest {};

TEST_F(NodeScenes, coverEachClassOfNodesThatIsNoKit)
{
    std::set<std::string> classes, shown;
    KsType::forEach([&classes](KsType type) {
        if (type.isDerivedFrom(KsNode::getClassTypeId()) && type.canCreateInstance() &&
            !type.isDerivedFrom(KsBaseKit::getClassTypeId()))
            classes.insert(type.getName().getString());
    });
    for (const NodeScene& each : nodeScenes()) shown.insert(each.type);
    EXPECT_EQ(shown, classes);
    EXPECT_EQ(shown.size(), nodeScenes().size()) << "each once";
}

class References : public PictureTest {};

TEST_F(References, noticeAShapeThatIsMovedByAPixelOrTintedALittle)
{
    QImage reference(128, 96, QImage::Format_RGB32);
    reference.fill(QColor(40, 46, 56));
    QImage moved = reference, tinted = reference, speck = reference;
    const auto draw = [](QImage& image, int x, const QColor& color) {
        QPainter(&image).fillRect(x, 30, 20, 20, color);
    };
    draw(reference, 50, QColor(150, 90, 60));
    draw(moved, 51, QColor(150, 90, 60));
    draw(tinted, 50, QColor(159, 90, 60));
    draw(speck, 50, QColor(150, 90, 60));
    speck.setPixel(3, 3, qRgb(90, 46, 56));
    EXPECT_TRUE(ReferencePictures::compare(reference, reference));
    EXPECT_TRUE(ReferencePictures::compare(speck, reference)) << "as another rasteriser might";
    QImage difference;
    EXPECT_FALSE(ReferencePictures::compare(moved, reference, &difference));
    EXPECT_GT(qRed(difference.pixel(50, 40)), qGreen(difference.pixel(50, 40)));
    EXPECT_EQ(qRed(difference.pixel(60, 40)), qGreen(difference.pixel(60, 40)));
    EXPECT_FALSE(ReferencePictures::compare(tinted, reference));
    EXPECT_FALSE(ReferencePictures::compare(reference.copy(0, 0, 127, 96), reference));
}
