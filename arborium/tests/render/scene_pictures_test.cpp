// What several nodes do together, as pictures. What can be said of single pixels is said in
// pixels_test.cpp.

#include "PictureTest.h"

#include <cmath>

namespace {

class ScenePictures : public PictureTest {
protected:
    void SetUp() override
    {
        PictureTest::SetUp();
        if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    }
    testing::AssertionResult looks(const char* name, const std::string& content,
                                   const QSize& size = QSize(width, height))
    {
        const KsRef<KsSeparator> scene = read(content);
        if (!scene) return testing::AssertionFailure() << "the scene is not read";
        return references.match(name, pictureOf(scene, size));
    }
};

std::string at(const char* place, const std::string& content)
{
    return std::string("Separator { Translation { translation ") + place + " }\n" + content + "}\n";
}

/// A straight view of x from -4 to 4 and y from -3 to 3.
const std::string flat = "OrthographicCamera { position 0 0 20 height 6 farDistance 50 }\n";

} // namespace

// Three panes one behind the other, a solid behind and one between.
const std::string pane = "Cube { width 2.4 height 2.4 depth 0.05 }\n";
const std::string panes[] = {
    at("-0.8 0.3 1", "Material { diffuseColor 0.9 0.2 0.2 transparency 0.5 }\n" + pane),
    at("0 0 0", "Material { diffuseColor 0.2 0.8 0.3 transparency 0.5 }\n" + pane),
    at("0.8 -0.3 -1", "Material { diffuseColor 0.2 0.4 0.9 transparency 0.5 }\n" + pane)};
const std::string solids = at("0 0 -1.8", "Cylinder { radius 0.25 height 4 }\n") +
                           at("0 0 0.5", "Sphere { radius 0.35 }\n");

TEST_F(ScenePictures, transparentPanesMixFromBackToFront)
{
    EXPECT_TRUE(looks("transparency", solids + panes[0] + panes[1] + panes[2]));
}

TEST_F(ScenePictures, transparentPanesLookTheSameInAnyOrder)
{
    EXPECT_TRUE(looks("transparency", panes[2] + panes[0] + solids + panes[1]));
    EXPECT_TRUE(looks("transparency", panes[1] + panes[2] + panes[0] + solids));
}

TEST_F(ScenePictures, bothSidesOfAnOpenBodyAreLitUnlessItIsSolid)
{
    // An open box from two sides: as it is, and with the hint that it is closed.
    const std::string box =
        "Coordinate3 { point [ -0.9 -0.9 -0.9, 0.9 -0.9 -0.9, 0.9 0.9 -0.9, "
        "-0.9 0.9 -0.9, -0.9 -0.9 0.9, 0.9 -0.9 0.9, 0.9 0.9 0.9, -0.9 0.9 0.9 ] "
        "}\nMaterial { diffuseColor 0.85 0.6 0.3 }\nIndexedFaceSet { coordIndex [ "
        "0, 3, 2, 1, -1, 0, 4, 7, 3, -1, 1, 2, 6, 5, -1, 0, 1, 5, 4, -1, "
        "4, 5, 6, 7, -1 ] }\n"; // all but the top
    const std::string tilt = "Rotation { rotation 1 0 0 0.5 }\nRotation { rotation 0 1 0 -0.6 }\n";
    EXPECT_TRUE(
        looks("two-sided", at("-1.6 0 0", tilt + box) +
                               at("1.6 0 0", tilt +
                                                 "ShapeHints { vertexOrdering COUNTERCLOCKWISE "
                                                 "shapeType SOLID }\n" +
                                                 box)));
}

TEST_F(ScenePictures, edgesLookSmoothUpToTheCreaseAngle)
{
    std::string points, faces;
    for (int i = 0; i < 12; ++i) {
        const double angle = 2 * 3.14159265358979 * i / 12;
        const std::string place =
            std::to_string(std::cos(angle)) + " Y " + std::to_string(std::sin(angle)) + ", ";
        for (const char* y : {"-1", "1"})
            points += std::string(place).replace(place.find('Y'), 1, y);
        const auto index = [i](int k) { return std::to_string((2 * i + k) % 24) + ", "; };
        faces += index(0) + index(1) + index(3) + index(2) + "-1, ";
    }
    const std::string drum = "Material { diffuseColor 0.5 0.6 0.85 }\nCoordinate3 { point [ " +
                             points + " ] }\nIndexedFaceSet { coordIndex [ " + faces + " ] }\n";
    EXPECT_TRUE(looks("crease", at("-1.5 0 0", "ShapeHints { creaseAngle 0.4 }\n" + drum) +
                                    at("1.5 0 0", "ShapeHints { creaseAngle 0.8 }\n" + drum)));
}

TEST_F(ScenePictures, clipPlanesCutTogetherUntilTheirSeparatorEnds)
{
    const std::string ball = "Sphere { radius 1.1 }\n";
    EXPECT_TRUE(
        looks("clip-planes",
              at("-1.4 0 0", "Material { diffuseColor 0.9 0.5 0.4 }\nClipPlane { plane 1 0 0 0 }\n"
                             "ClipPlane { plane 0 -1 0 -0.3 }\n" +
                                 ball) +
                  at("1.4 0 0",
                     "Material { diffuseColor 0.4 0.6 0.9 }\nRotation { rotation 0 0 1 0.6 }\n"
                     "ClipPlane { plane 0 -1 0 -0.2 }\nClipPlane { on FALSE plane 1 0 0 0 }\n" +
                         ball) +
                  at("0 -1.8 0", "Material { diffuseColor 0.5 0.5 0.5 }\n"
                                 "Cube { width 5 height 0.2 depth 1 }\n")));
}

TEST_F(ScenePictures, texturesBeginAgainOrGoOnWithTheirEdge)
{
    const auto sheet = [](const char* wraps) {
        return std::string("Texture2 { filename \"tile.png\" ") + wraps +
               " }\nFaceSet { vertexProperty VertexProperty { vertex [ -1.4 -1.1 0, 1.4 -1.1 0, "
               "1.4 1.1 0, -1.4 1.1 0 ] texCoord [ -0.75 -0.75, 1.75 -0.75, 1.75 1.75, "
               "-0.75 1.75 ] } }\n";
    };
    EXPECT_TRUE(looks("texture-wrap",
                      flat +
                          "LightModel { model BASE_COLOR }\n"
                          "Material { diffuseColor 1 1 1 }\n" +
                          at("-1.6 1.3 0", sheet("")) + at("1.6 1.3 0", sheet("wrapS CLAMP")) +
                          at("-1.6 -1.3 0", sheet("wrapT CLAMP")) +
                          at("1.6 -1.3 0", sheet("wrapS CLAMP wrapT CLAMP")),
                      QSize(192, 144)));
}

TEST_F(ScenePictures, aTextureIsTintedLitAndWornByEachBody)
{
    EXPECT_TRUE(looks("texture-bodies",
                      "Texture2 { filename \"tile.png\" }\nMaterial { diffuseColor 1 1 1 }\n" +
                          at("-2.1 1 0", "Cube { width 1.4 height 1.4 depth 1.4 }\n") +
                          at("0 1 0", "Sphere { radius 0.8 }\n") +
                          at("2.1 1 0", "Cone { bottomRadius 0.8 height 1.5 }\n") +
                          at("-2.1 -1 0", "Cylinder { radius 0.7 height 1.5 }\n") +
                          at("0 -1 0", "Material { diffuseColor 0.5 0.7 1 }\n"
                                       "Cube { width 1.4 height 1.4 depth 1.4 }\n") +
                          at("2.1 -1 0", "Material { transparency 0.5 }\n"
                                         "Cube { width 1.4 height 1.4 depth 1.4 }\n"),
                      QSize(192, 144)));
}

TEST_F(ScenePictures, lightsShineOnWhatStandsBehindThemInTheirSeparator)
{
    const std::string ball = "Sphere { radius 0.85 }\n";
    EXPECT_TRUE(looks(
        "lights", at("-2.1 0 0", ball) // by the head light
                      + at("0 0 0", "DirectionalLight { direction 1 0 -0.2 color 1 0.3 0.2 }\n"
                                    "DirectionalLight { direction -1 0 -0.2 color 0.2 0.4 1 }\n" +
                                        ball) +
                      at("2.1 0 0", "DirectionalLight { on FALSE direction 0 1 0 }\n" + ball)));
}

TEST_F(ScenePictures, linesAreSeenOnTheFacesInWhichTheyLie)
{
    const std::string grid =
        "Coordinate3 { point [ -1.5 -1.5 0, 1.5 -1.5 0, 1.5 1.5 0, -1.5 1.5 0, "
        "-1.5 0 0, 1.5 0 0, 0 -1.5 0, 0 1.5 0 ] }\n";
    EXPECT_TRUE(
        looks("lines",
              "Rotation { rotation 0 1 0 0.4 }\n" + grid +
                  "Material { diffuseColor 0.75 0.7 0.6 }\nFaceSet { numVertices 4 }\n"
                  "Material { diffuseColor 0.1 0.2 0.5 }\nIndexedLineSet { coordIndex [ 0, 1, 2, "
                  "3, 0, -1, 4, 5, -1, 6, 7, -1 ] }\n" +
                  at("0 0 0.6", "Material { diffuseColor 0.9 0.3 0.1 }\n"
                                "IndexedLineSet { coordIndex [ 0, 2, -1 ] }\n")));
}

namespace {
/// An axis that shows where x is 0.
const std::string axis =
    "Separator { Material { diffuseColor 0.5 0.2 0.2 } Coordinate3 { point [ 0 "
    "-2 0, 0 2 0 ] } IndexedLineSet { coordIndex [ 0, 1, -1 ] } }\n";
const std::string lettering =
    "Font { name \"DejaVu Sans\" size 0.7 }\nMaterial { diffuseColor 0.9 0.9 0.8 }\n";
} // namespace

TEST_F(ScenePictures, textStandsLeftRightOrCentredLineByLine)
{
    const auto lines = [](const char* fields) {
        return axis + "Text3 { string [ \"one\", \"more\", \"I\" ] " + fields + " }\n";
    };
    EXPECT_TRUE(looks("text-justification",
                      flat + lettering + at("-3.7 0.5 0", lines("justification LEFT")) +
                          at("0 0.5 0", lines("justification CENTER")) +
                          at("3.7 0.5 0", lines("justification RIGHT spacing 1.4")),
                      QSize(192, 144)));
}

TEST_F(ScenePictures, textOfManyScriptsIsShapedAndOrdered)
{
    // Accents that are joined to their letters, Greek, Cyrillic, Hebrew in a line of Latin, Arabic,
    // and a sign outside of the first 65536.
    EXPECT_TRUE(looks("text-scripts",
                      flat + lettering + at("-3.8 1.8 0", R"(Text3 { string [ "naïve été ß",
                          "λόγος слово",
                          "one שלום two",
                          "سلام",
                          "𝔸 → ∞" ] })"),
                      QSize(192, 144)));
}

TEST_F(ScenePictures, charactersThatTheFontLacksAreTakenFromAnother)
{
    // The first family has no Hebrew; no font of the tests has the last sign.
    EXPECT_TRUE(looks("text-lacking",
                      flat +
                          "Font { name \"DejaVu Serif\" size 0.9 }\n"
                          "Material { diffuseColor 0.9 0.9 0.8 }\n" +
                          at("-3.6 0.6 0", R"(Text3 { string [ "Serif אב", "中 end" ] })")));
}

TEST_F(ScenePictures, textHasAFrontSidesAndABack)
{
    const auto word = [](const char* parts) {
        return std::string("Rotation { rotation 0 1 0 PLACE }\nText3 { string \"Ag\" justification "
                           "CENTER parts ") +
               parts + " }\n";
    };
    const auto turned = [&](const char* parts, const char* angle) {
        std::string text = word(parts);
        return text.replace(text.find("PLACE"), 5, angle);
    };
    EXPECT_TRUE(
        looks("text-parts",
              "Font { name \"DejaVu Sans\" size 1.2 }\nMaterial { diffuseColor 0.9 0.7 0.4 }\n" +
                  at("-2.2 0.6 0", turned("FRONT", "0.5")) + at("0 0.6 0", turned("SIDES", "0.5")) +
                  at("2.4 0.6 0", turned("ALL", "0.5")) + at("-2.2 -1.4 0", turned("BACK", "0.5")) +
                  at("0 -1.4 0", turned("ALL", "3.6")) +
                  at("2.3 -1.4 0", turned("(FRONT | BACK)", "1.1")),
              QSize(192, 144)));
}
