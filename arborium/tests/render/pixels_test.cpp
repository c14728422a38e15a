#include "MessageGuard.h"

#include <arborium/actions/KsRenderAction.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>

#include <cstring>
#include <string>

namespace {

constexpr int size = 100;

// Shows x and y from -5 to 5: a unit of the scene is ten pixels.
const std::string camera = "OrthographicCamera { position 0 0 50 height 10 nearDistance 1 "
                           "farDistance 100 }\n";

// A face of 2 by 2 units about the origin, towards the viewer.
const std::string face = "Coordinate3 { point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0 ] }\n"
                         "FaceSet { numVertices 4 }\n";

std::string color(const char* rgb)
{
    return std::string("Material { diffuseColor ") + rgb + " }\n";
}
std::string move(const char* xyz)
{
    return std::string("Translation { translation ") + xyz + " }\n";
}
std::string group(const std::string& content) { return "Separator {\n" + content + "}\n"; }

struct Pixel {
    int red = -1, green = -1, blue = -1, opacity = -1;
};

std::ostream& operator<<(std::ostream& out, const Pixel& p)
{
    return out << p.red << ' ' << p.green << ' ' << p.blue << " (" << p.opacity << ')';
}

testing::AssertionResult isAbout(const Pixel& p, int red, int green, int blue, int tolerance = 3)
{
    if (std::abs(p.red - red) <= tolerance && std::abs(p.green - green) <= tolerance &&
        std::abs(p.blue - blue) <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "the pixel is " << p << ", not about " << red << ' ' << green << ' ' << blue;
}

class Pixels : public testing::Test {
protected:
    void SetUp() override
    {
        KsDB::init();
        if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    }
    void TearDown() override
    {
        renderer.releaseScene();
        scene.reset();
        KsDB::finish();
    }

    bool show(const std::string& content)
    {
        text = "#Arborium V2.1 ascii\n" + content;
        KsInput in;
        in.setBuffer(text.data(), text.size());
        scene = KsDB::readAll(&in);
        return scene && renderer.render(scene);
    }

    // In the units of the camera above.
    Pixel at(double x, double y) const
    {
        const int column = static_cast<int>((x + 5) * renderer.getWidth() / 10);
        const int row = static_cast<int>((5 - y) * renderer.getHeight() / 10);
        const std::uint8_t* p =
            &renderer
                 .getImage()[static_cast<std::size_t>((row * renderer.getWidth() + column) * 4)];
        return {p[0], p[1], p[2], p[3]};
    }

    std::string text;
    KsRef<KsSeparator> scene;
    KsOffscreenRenderer renderer{KbViewportRegion(size, size)};
};

} // namespace

TEST_F(Pixels, aFaceTowardsTheViewerHasItsOwnColourWhereThereIsNoLight)
{
    ASSERT_TRUE(show(camera + color("0.8 0.6 0.4") + face));
    EXPECT_TRUE(isAbout(at(0, 0), 204, 153, 102));
    EXPECT_TRUE(isAbout(at(0.9, -0.9), 204, 153, 102));
    EXPECT_TRUE(isAbout(at(1.2, 0), 0, 0, 0));
}

TEST_F(Pixels, bothSidesOfAFaceAreLitAlike)
{
    ASSERT_TRUE(
        show(camera + color("0.8 0.6 0.4") + "Rotation { rotation 0 1 0 3.14159265 }\n" + face));
    EXPECT_TRUE(isAbout(at(0, 0), 204, 153, 102));
}

TEST_F(Pixels, theUpperSideOfACubeIsBrighterThanTheLowerOne)
{
    const std::string cube = color("0.6 0.6 0.6") + "Cube { }\n";
    ASSERT_TRUE(show(camera + group(move("-2 0 0") + "Rotation { rotation 1 0 0 0.8 }\n" + cube) +
                     group(move("2 0 0") + "Rotation { rotation 1 0 0 -0.8 }\n" + cube)));
    // Turned towards the viewer, the upper side shows above and the lower side below.
    EXPECT_GT(at(-2, 0.8).red, at(-2, -0.8).red + 30);
    EXPECT_GT(at(2, 0.8).red, at(2, -0.8).red + 30);
    EXPECT_GT(at(-2, -0.8).red, 40);
}

TEST_F(Pixels, aLightOfTheSceneTakesThePlaceOfTheViewersOwn)
{
    // The light comes from the right: a face towards the viewer gets none of it.
    ASSERT_TRUE(show(camera + "DirectionalLight { direction -1 0 0 }\n" + color("1 1 1") +
                     group(move("-2 0 0") + face) +
                     group(move("2 0 0") + "Rotation { rotation 0 1 0 0.785398 }\n" + face)));
    EXPECT_LT(at(-2, 0).red, 60);
    EXPECT_NEAR(at(2, 0).red, 255 * 0.7071 + 0.4 * 0.2 * 255, 6);
}

TEST_F(Pixels, theFirstEightLightsShine)
{
    const std::string dark = "DirectionalLight { intensity 0 }\n";
    std::string lights;
    for (int i = 0; i < 7; ++i) lights += dark;
    ASSERT_TRUE(show(camera + lights + "DirectionalLight { }\n" + color("1 0 0") + face));
    EXPECT_GT(at(0, 0).red, 240);
    ASSERT_TRUE(show(camera + lights + dark + "DirectionalLight { }\n" + color("1 0 0") + face));
    EXPECT_LT(at(0, 0).red, 60);
}

TEST_F(Pixels, anUnlitColourIsShownAsItIsFromAnySide)
{
    ASSERT_TRUE(show(camera + "LightModel { model BASE_COLOR }\n" + color("0.2 0.9 0.5") +
                     "Rotation { rotation 0 1 0 1.2 }\n" + face));
    EXPECT_TRUE(isAbout(at(0, 0), 51, 230, 128));
}

TEST_F(Pixels, whatIsEmittedIsAddedToTheLight)
{
    ASSERT_TRUE(show(camera + "Material { diffuseColor 0 0 0 emissiveColor 0.5 0 0.25 }\n" + face));
    EXPECT_TRUE(isAbout(at(0, 0), 128, 0, 64));
}

TEST_F(Pixels, textShowsItsOwnColourAndWhatItsMaterialEmits)
{
    // The stem of the letter covers the origin.
    const std::string letter = "Font { size 8 }\nText3 { string \"I\" justification CENTER }\n";
    const std::string glowing = "Material { diffuseColor 0.2 0 0 emissiveColor 0.5 0.5 0.5 }\n";
    ASSERT_TRUE(show(camera + glowing + move("0 -3 0") + letter));
    EXPECT_TRUE(isAbout(at(0, 0), 179, 128, 128));
    ASSERT_TRUE(
        show(camera + "LightModel { model BASE_COLOR }\n" + glowing + move("0 -3 0") + letter));
    EXPECT_TRUE(isAbout(at(0, 0), 51, 0, 0)) << "without light nothing is emitted";
}

TEST_F(Pixels, aClipPlaneCutsWhatStandsBehindIt)
{
    ASSERT_TRUE(show(camera + color("1 1 1") + group("ClipPlane { plane 1 0 0 0 }\n" + face) +
                     group(move("0 3 0") + face)));
    EXPECT_TRUE(isAbout(at(0.5, 0), 255, 255, 255));
    EXPECT_TRUE(isAbout(at(-0.5, 0), 0, 0, 0));
    EXPECT_TRUE(isAbout(at(-0.5, 3), 255, 255, 255)) << "outside of its separator";
}

TEST_F(Pixels, clipPlanesAreMovedByTransformsAndWorkTogether)
{
    ASSERT_TRUE(show(camera + color("1 1 1") + move("2 0 0") +
                     "ClipPlane { plane 1 0 0 -0.5 }\nClipPlane { plane 0 -1 0 0 }\n" + face));
    EXPECT_TRUE(isAbout(at(2, -0.5), 255, 255, 255));
    EXPECT_TRUE(isAbout(at(1.7, -0.5), 255, 255, 255));
    EXPECT_TRUE(isAbout(at(1.3, -0.5), 0, 0, 0));
    EXPECT_TRUE(isAbout(at(2, 0.5), 0, 0, 0));
}

TEST_F(Pixels, aTransparentFaceLetsTheOneBehindItThroughWhicheverComesFirst)
{
    const std::string glass =
        group(move("0 0 2") + "Material { diffuseColor 1 0 0 transparency 0.5 }\n" + face);
    const std::string wall = group(color("0 0 1") + face);
    for (const std::string& order : {glass + wall, wall + glass}) {
        ASSERT_TRUE(show(camera + order));
        EXPECT_TRUE(isAbout(at(0, 0), 128, 0, 128));
    }
}

TEST_F(Pixels, transparentFacesAreMixedFromBackToFront)
{
    const auto glass = [](const char* rgb, const char* place) {
        return group(move(place) + "Material { diffuseColor " + rgb + " transparency 0.5 }\n" +
                     face);
    };
    ASSERT_TRUE(show(camera + glass("0 1 0", "0 0 3") + glass("1 0 0", "0 0 1")));
    EXPECT_TRUE(isAbout(at(0, 0), 64, 128, 0));
}

TEST_F(Pixels, theNearerOfTwoFacesIsSeen)
{
    ASSERT_TRUE(
        show(camera + group(move("0 0 1") + color("1 0 0") + face) + group(color("0 1 0") + face)));
    EXPECT_TRUE(isAbout(at(0, 0), 255, 0, 0));
}

// shows: KsOffscreenRenderer::setViewportRegion
TEST_F(Pixels, facesATenthOfAUnitApartDoNotFightFarAwayInPerspective)
{
    const std::string far = "PerspectiveCamera { position 0 0 2000 heightAngle 0.2 nearDistance 1 "
                            "farDistance 100000 }\n";
    const std::string wide = "Scale { scaleFactor 250 180 1 }\n" + face;
    renderer.setViewportRegion(KbViewportRegion(300, 200));
    // Tilted, and with something nearer, so that depth runs over hundreds of units.
    ASSERT_TRUE(show(far + group(move("300 0 400") + "Cube { }\n") +
                     "Rotation { rotation 0 1 0 0.5 }\n" + group(color("0 1 0") + wide) +
                     group(move("0 0 0.1") + color("1 0 0") + wide)));
    int red = 0;
    for (std::size_t i = 0; i < renderer.getImage().size(); i += 4) {
        const std::uint8_t* p = &renderer.getImage()[i];
        EXPECT_FALSE(p[1] > 60 && p[1] > p[0]) << "green shows through at pixel " << i / 4;
        red += p[0] > 150 && p[1] < 20;
    }
    EXPECT_GT(red, 20000);
}

TEST_F(Pixels, linesAreSeenOnTheFaceInWhichTheyLie)
{
    ASSERT_TRUE(show(camera +
                     group("LightModel { model BASE_COLOR }\n" + color("0 0 0") +
                           "Coordinate3 { point [ -1 0 0, 1 0 0 ] }\n"
                           "IndexedLineSet { coordIndex [ 0, 1, -1 ] }\n") +
                     color("1 1 1") + face));
    int dark = 0;
    for (int y = -2; y <= 2; ++y) dark += at(0, 0.1 * y + 0.05).red < 200;
    EXPECT_GE(dark, 1);
    EXPECT_LE(dark, 2);
}

// shows: KsOffscreenRenderer::setSamples, KsOffscreenRenderer::setSupersampling,
// KsOffscreenRenderer::copyLookOf
TEST_F(Pixels, edgesAreSmoothUnlessOneSampleIsEnough)
{
    ASSERT_TRUE(show(camera + "LightModel { model BASE_COLOR }\n" + color("1 1 1") +
                     "Rotation { rotation 0 0 1 0.3 }\n" + face));
    const auto between = [this](KsOffscreenRenderer& by) {
        EXPECT_TRUE(by.render(scene));
        int count = 0;
        for (std::size_t i = 0; i < by.getImage().size(); i += 4)
            count += by.getImage()[i] > 20 && by.getImage()[i] < 235;
        return count;
    };
    EXPECT_GT(between(renderer), 30);
    renderer.setSamples(1);
    EXPECT_EQ(between(renderer), 0);
    KsOffscreenRenderer other(KbViewportRegion(size, size));
    EXPECT_GT(between(other), 30);
    other.copyLookOf(renderer);
    EXPECT_EQ(between(other), 0);
    renderer.setSupersampling(4);
    EXPECT_GT(between(renderer), 30);
    other.copyLookOf(renderer);
    EXPECT_GT(between(other), 30);
}

TEST_F(Pixels, aSceneWithoutACameraIsSeenFromTheFrontAsAWhole)
{
    renderer.setViewportRegion(KbViewportRegion(200, 100));
    ASSERT_TRUE(show(color("1 0 0") + group(move("1000 500 0") + face) + color("0 0 1") +
                     group(move("1004 502 -3") + face)));
    const QImage picture(renderer.getImage().data(), 200, 100, QImage::Format_RGBA8888);
    int red = 0, blue = 0, leftmostRed = 200, rightmostBlue = -1;
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 200; ++x) {
            const QRgb p = picture.pixel(x, y);
            if (qRed(p) > 200) ++red, leftmostRed = std::min(leftmostRed, x);
            if (qBlue(p) > 200) ++blue, rightmostBlue = std::max(rightmostBlue, x);
        }
    EXPECT_GT(red, 1000);
    EXPECT_NEAR(red, blue, 50);
    EXPECT_GT(leftmostRed, 0);
    EXPECT_LT(rightmostBlue, 199);
    EXPECT_LT(leftmostRed, rightmostBlue);
}

// shows: KsOffscreenRenderer::setBackgroundColor, KsOffscreenRenderer::setBackgroundGradient,
// KsOffscreenRenderer::render
TEST_F(Pixels, theBackgroundCanBeAGradientOrClear)
{
    renderer.setBackgroundGradient(KbColor(1, 0, 0), KbColor(0, 0, 1));
    ASSERT_TRUE(renderer.render(nullptr));
    EXPECT_TRUE(isAbout(at(0, 4.9), 2, 0, 253));
    EXPECT_TRUE(isAbout(at(0, -4.9), 253, 0, 2));
    EXPECT_TRUE(isAbout(at(4, 0), 128, 0, 128));
    EXPECT_EQ(at(0, 0).opacity, 255);

    renderer.setBackgroundColor(KbColor(1, 1, 1), 1);
    ASSERT_TRUE(show(camera + color("1 0 0") + face));
    EXPECT_EQ(at(0, 0).opacity, 255);
    EXPECT_EQ(at(3, 3).opacity, 0);
    EXPECT_TRUE(isAbout(at(3, 3), 0, 0, 0, 0));
}

TEST_F(Pixels, aPictureLargerThanATileIsOnePicture)
{
    renderer.setViewportRegion(KbViewportRegion(1500, 1500));
    renderer.setSupersampling(2);
    ASSERT_TRUE(show(camera + "LightModel { model BASE_COLOR }\n" + color("1 1 1") +
                     "Scale { scaleFactor 4 4 1 }\n" + face));
    long white = 0;
    for (std::size_t i = 0; i < renderer.getImage().size(); i += 4)
        white += renderer.getImage()[i] > 127;
    EXPECT_NEAR(static_cast<double>(white), 1200.0 * 1200.0, 2500.0);
    EXPECT_TRUE(isAbout(at(-3.9, 3.9), 255, 255, 255));
    EXPECT_TRUE(isAbout(at(3.9, -3.9), 255, 255, 255));
    EXPECT_TRUE(isAbout(at(4.1, 4.1), 0, 0, 0));
}

// shows: KsOffscreenRenderer::getRenderAction, KsOffscreenRenderer::getNumFrames,
// KsOffscreenRenderer::isUpToDate
TEST_F(Pixels, aFrameInWhichNothingChangedVisitsAndDrawsNothing)
{
    ASSERT_TRUE(show(camera + "DEF place " + move("-2 0 0") + face));
    const long visits = renderer.getRenderAction()->getNumVisits();
    const long frames = renderer.getNumFrames();
    EXPECT_TRUE(renderer.isUpToDate());
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(renderer.render(scene));
    EXPECT_EQ(renderer.getRenderAction()->getNumVisits(), visits);
    EXPECT_EQ(renderer.getNumFrames(), frames);

    static_cast<KsTranslation*>(KsNode::getByName("place"))->translation.setValue(2, 0, 0);
    EXPECT_FALSE(renderer.isUpToDate());
    EXPECT_TRUE(renderer.render(scene));
    EXPECT_GT(renderer.getRenderAction()->getNumVisits(), visits);
    EXPECT_EQ(renderer.getNumFrames(), frames + 1);
    EXPECT_GT(at(2, 0).red, 150);
    EXPECT_EQ(at(-2, 0).red, 0);
}

// shows: KsOffscreenRenderer, KsOffscreenRenderer::getImage,
// KsOffscreenRenderer::setChangedCallback
TEST_F(Pixels, aChangeIsSeenByEachOfTwoPicturesOfOneScene)
{
    ASSERT_TRUE(show(camera + "DEF place " + move("-2 0 0") + face));
    KsOffscreenRenderer other(KbViewportRegion(size, size));
    ASSERT_TRUE(other.render(scene));
    int calls = 0;
    other.setChangedCallback([&calls] { ++calls; });
    static_cast<KsTranslation*>(KsNode::getByName("place"))->translation.setValue(2, 0, 0);
    static_cast<KsTranslation*>(KsNode::getByName("place"))->translation.setValue(2, 1, 0);
    EXPECT_EQ(calls, 1) << "told once for each frame";
    EXPECT_TRUE(renderer.render(scene));
    EXPECT_FALSE(other.isUpToDate());
    EXPECT_TRUE(other.render(scene));
    EXPECT_EQ(other.getImage(), renderer.getImage());
    EXPECT_GT(at(2, 1).red, 150);
}

// shows: KsOffscreenRenderer::getNumDrawCalls
TEST_F(Pixels, manySmallShapesGoOutTogether)
{
    std::string many =
        camera + color("1 1 1") + "Scale { scaleFactor 0.1 0.1 0.1 }\n" + move("-40 0 0");
    for (int i = 0; i < 50; ++i)
        many += move("1.6 0 0") + color(i % 2 ? "1 0 0" : "0 1 0") + "Cube { }\n";
    ASSERT_TRUE(show(many));
    EXPECT_EQ(renderer.getNumDrawCalls(), 1);
    EXPECT_TRUE(renderer.render(nullptr));
    EXPECT_EQ(renderer.getNumDrawCalls(), 0);
    EXPECT_TRUE(renderer.render(scene));
    EXPECT_GT(at(-3.84, 0).green, 200);
    EXPECT_LT(at(-3.84, 0).red, 20);
}

// shows: KsOffscreenRenderer::writeToFile
TEST_F(Pixels, aPictureIsWrittenAsAWholeOrNotAtAll)
{
    ASSERT_TRUE(show(camera + color("1 0 0") + face));
    const QString path = QDir::current().filePath("picture-of-a-face.png");
    QFile::remove(path);
    ASSERT_TRUE(renderer.writeToFile(path.toLatin1().constData()));
    const QImage read(path);
    ASSERT_EQ(read.size(), QSize(size, size));
    EXPECT_EQ(qRed(read.pixel(50, 50)), at(0, 0).red);
    QFile::remove(path);

    ExpectedMessages messages("KsOffscreenRenderer::writeToFile", "cannot be written");
    EXPECT_FALSE(renderer.writeToFile("no/such/folder/picture.png"));
}

// shows: KsOffscreenRenderer::getViewportRegion, KsOffscreenRenderer::getWidth,
// KsOffscreenRenderer::getHeight
TEST_F(Pixels, aPictureThatIsTooLargeIsCutToTheLimitWithAMessage)
{
    ExpectedMessages messages("KsOffscreenRenderer::setViewportRegion", "16384");
    EXPECT_EQ(renderer.getWidth(), 0) << "there is no picture yet";
    renderer.setViewportRegion(KbViewportRegion(2, 20000));
    EXPECT_EQ(renderer.getViewportRegion().getWindowSize(), KbVec2i32(2, 16384));
    EXPECT_TRUE(renderer.render(nullptr));
    EXPECT_EQ(renderer.getWidth(), 2);
    EXPECT_EQ(renderer.getHeight(), 16384);
}

// shows: KsOffscreenRenderer::copyLookOf, KsOffscreenRenderer::releaseScene
TEST_F(Pixels, aPictureTakesTheLookOfAnotherOne)
{
    KsOffscreenRenderer model(KbViewportRegion(20, 20)), other(KbViewportRegion(20, 20));
    model.setBackgroundColor(KbColor(0, 0, 1));
    other.copyLookOf(model);
    const KsRef<KsSeparator> root(new KsSeparator);
    ASSERT_TRUE(other.render(root));
    EXPECT_EQ(other.getImage()[2], 255);
    const int held = root->getRefCount();
    other.releaseScene();
    EXPECT_EQ(root->getRefCount(), held - 1);
    EXPECT_EQ(other.getImage()[2], 255) << "the picture stays";
}

// shows: KsGLContext::getRendererName, KsGLContext::Current
TEST_F(Pixels, theContextIsGivenBackAfterEachUse)
{
    {
        KsGLContext::Current outer;
        EXPECT_TRUE(outer);
        KsGLContext::Current inner;
        EXPECT_TRUE(inner);
    }
    EXPECT_NE(std::strlen(KsGLContext::getRendererName()), 0u);
    KsGLContext::Current again;
    EXPECT_TRUE(again);
}

TEST(WithoutOpenGL, aPictureIsTheBackgroundAndOneMessageSaysWhy)
{
    KsPreferences::setString("ARBORIUM_NO_GL", "1");
    KsDB::init();
    {
        ExpectedMessages messages("KsGLContext::isAvailable", "not drawn");
        KsOffscreenRenderer renderer(KbViewportRegion(4, 4));
        renderer.setBackgroundColor(KbColor(1, 0, 0));
        const KsRef<KsSeparator> scene(new KsSeparator);
        scene->addChild(new KsCube);
        EXPECT_FALSE(renderer.render(scene));
        EXPECT_FALSE(renderer.render(scene));
        ASSERT_EQ(renderer.getImage().size(), 64u);
        EXPECT_EQ(renderer.getImage()[0], 255);
        EXPECT_EQ(renderer.getImage()[1], 0);
        EXPECT_EQ(renderer.getImage()[3], 255);
        EXPECT_STREQ(KsGLContext::getRendererName(), "");
    }
    KsDB::finish();
}
