#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {
class Text : public testing::Test {
protected:
    void SetUp() override
    {
        KsNode::initClasses();
        root = new KsSeparator;
        font = new KsFont;
        font->name = KbName("Tahoma");
        font->size = 11.0f;
        text = new KsText3;
        root->addChild(font);
        root->addChild(text);
        fontState.name = KbString("Tahoma");
        fontState.size = 11;
    }
    KbBox3f box()
    {
        KsGetBoundingBoxAction action(KbViewportRegion(100, 100));
        action.apply(root.get());
        return action.getBoundingBox();
    }
    KbBox3f boxOf(const KbString& line)
    {
        text->string = line;
        return box();
    }
    KsMeshPtr mesh()
    {
        KsRenderAction action{KbViewportRegion(100, 100)};
        action.apply(root.get());
        const auto& draws = action.getDrawList().draws;
        EXPECT_LE(draws.size(), 1u) << "a text is one draw";
        return draws.empty() ? nullptr : draws[0].mesh;
    }
    int pick(float x, float y)
    {
        KsRayPickAction action(KbViewportRegion(100, 100));
        action.setRay(KbVec3f(x, y, 10), KbVec3f(0, 0, -1));
        action.apply(root.get());
        return action.getPickedPointsListLength();
    }

    KsRef<KsSeparator> root;
    KsFont* font = nullptr;
    KsText3* text = nullptr;
    KsFontState fontState;
};

KbString hebrew()
{
    return KbString::fromUtf8("\u05e9\u05dc\u05d5\u05dd \u05e2\u05d5\u05dc\u05dd");
}
} // namespace

TEST_F(Text, ofNothingHasNoWidthAndTheHeightOfALine)
{
    const KbBox3f full = boxOf("Mg");
    const KbBox3f empty = boxOf("");
    EXPECT_FALSE(empty.isEmpty());
    EXPECT_EQ(empty.getSize()[0], 0);
    EXPECT_EQ(empty.getMin()[1], full.getMin()[1]);
    EXPECT_EQ(empty.getMax()[1], full.getMax()[1]);
    EXPECT_EQ(empty.getSize()[2], 0);
    text->string.setNum(0);
    EXPECT_EQ(box(), empty) << "no value counts as one empty line";
    EXPECT_FALSE(mesh());
}

// shows: KsText3::getExtents
TEST_F(Text, isAsHighAsTheFontWhateverItsLettersAre)
{
    const KsText3::Extents extents = KsText3::getExtents(fontState);
    EXPECT_GT(extents.ascent, extents.descent);
    EXPECT_GT(extents.descent, 0);
    EXPECT_GE(extents.lineHeight, extents.ascent + extents.descent);
    for (const char* line : {"x", "g", "|", "_", " ", "\xc4"}) {
        EXPECT_FLOAT_EQ(boxOf(line).getMax()[1], extents.ascent) << line;
        EXPECT_FLOAT_EQ(boxOf(line).getMin()[1], -extents.descent) << line;
    }
}

TEST_F(Text, isAsWideAsItsAdvanceNotItsInk)
{
    EXPECT_EQ(boxOf("1111").getSize()[0], boxOf("0000").getSize()[0]) << "digits are equally wide";
    const float one = boxOf("0").getSize()[0];
    EXPECT_NEAR(boxOf("00000000").getSize()[0], 8 * one, 1e-3f);
    EXPECT_EQ(box().getMin()[0], 0) << "the side bearing counts";
    const float blank = boxOf(" ").getSize()[0];
    EXPECT_GT(blank, 0);
    EXPECT_NEAR(boxOf("0   ").getSize()[0], one + 3 * blank, 1e-3f);
    EXPECT_NEAR(boxOf("   0").getSize()[0], one + 3 * blank, 1e-3f);
    EXPECT_NEAR(boxOf("0\t").getSize()[0], one + 8 * blank, 1e-3f);
}

TEST_F(Text, growsWithTheSizeOfTheFont)
{
    const KbBox3f small = boxOf("Label");
    const KsMeshPtr before = mesh();
    font->size = 22.0f;
    const KbBox3f large = box();
    EXPECT_NEAR(large.getSize()[0], 2 * small.getSize()[0], 1e-4f);
    EXPECT_NEAR(large.getSize()[1], 2 * small.getSize()[1], 1e-4f);
    EXPECT_EQ(mesh(), before) << "the same outlines, drawn larger";
}

TEST_F(Text, followsTheFontOutsideOfItsSeparator)
{
    root->removeChild(text);
    auto* inner = new KsSeparator;
    text = new KsText3;
    inner->addChild(text);
    root->addChild(inner);
    const KbBox3f small = boxOf("Label");
    font->size = 22.0f;
    EXPECT_NEAR(box().getSize()[0], 2 * small.getSize()[0], 1e-4f);
}

TEST_F(Text, linesFollowDownwardByTheSpacing)
{
    const float height = KsText3::getExtents(fontState).lineHeight;
    const KbBox3f one = boxOf("first");
    text->string.set1Value(1, "second, longer");
    text->string.set1Value(2, "3");
    EXPECT_FLOAT_EQ(box().getMax()[1], one.getMax()[1]);
    EXPECT_NEAR(box().getMin()[1], one.getMin()[1] - 2 * height, 1e-3f);
    EXPECT_FLOAT_EQ(box().getSize()[0], KsText3::getLineWidth("second, longer", fontState));
    text->spacing = 2.0f;
    EXPECT_NEAR(box().getMin()[1], one.getMin()[1] - 4 * height, 1e-3f);
    text->spacing = std::numeric_limits<float>::quiet_NaN();
    EXPECT_NEAR(box().getMin()[1], one.getMin()[1] - 2 * height, 1e-3f);
    text->spacing = -1.0f;
    EXPECT_NEAR(box().getMax()[1], one.getMax()[1] + 2 * height, 1e-3f) << "upward";
}

TEST_F(Text, standsLeftRightOrCentred)
{
    const float width = boxOf("Label").getSize()[0];
    text->justification = KsText3::RIGHT;
    EXPECT_FLOAT_EQ(box().getMin()[0], -width);
    EXPECT_FLOAT_EQ(box().getMax()[0], 0);
    text->justification = KsText3::CENTER;
    EXPECT_FLOAT_EQ(box().getMin()[0], -width / 2);
    EXPECT_FLOAT_EQ(box().getMax()[0], width / 2);
}

TEST_F(Text, isDrawnAsFlatTrianglesThatFaceTheReader)
{
    text->string = "Render &@g";
    const KsMeshPtr letters = mesh();
    ASSERT_TRUE(letters);
    EXPECT_GT(letters->indices.size(), 100u);
    double ink = 0;
    for (std::size_t i = 0; i < letters->indices.size(); i += 3) {
        const KbVec3f& a = letters->positions[letters->indices[i]];
        const KbVec3f n = (letters->positions[letters->indices[i + 1]] - a)
                              .cross(letters->positions[letters->indices[i + 2]] - a);
        EXPECT_GE(n[2], 0);
        ink += static_cast<double>(n[2]) / 2;
    }
    // The mesh is that of size 1: ten letters, each of which covers a tenth of its square or two.
    EXPECT_GT(ink, 0.5);
    EXPECT_LT(ink, 3);
    EXPECT_EQ(letters->box.getSize()[2], 0);
}

TEST_F(Text, holesOfLettersStayOpen)
{
    // The ink of a zero against that of its outline: a filled one would cover far more.
    text->string = "o";
    const KsMeshPtr letter = mesh();
    ASSERT_TRUE(letter);
    const KbVec3f middle = letter->box.getCenter();
    for (std::size_t i = 0; i < letter->indices.size(); i += 3) {
        int left = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const KbVec3f& a = letter->positions[letter->indices[i + k]];
            const KbVec3f& b = letter->positions[letter->indices[i + (k + 1) % 3]];
            left += (b - a).cross(middle - a)[2] > 0;
        }
        EXPECT_LT(left, 3) << "a triangle covers the middle";
    }
}

TEST_F(Text, equalTextsShareOneMesh)
{
    text->string = "Apply";
    const KsMeshPtr first = mesh();
    KsRef<KsText3> other(new KsText3);
    other->string = "Apply";
    root->replaceChild(text, other.get());
    EXPECT_EQ(mesh(), first);
    other->string = "Cancel";
    EXPECT_NE(mesh(), first);
}

TEST_F(Text, sidesAndBackGiveItDepth)
{
    const KbBox3f flat = boxOf("Label");
    const std::size_t front = mesh()->indices.size();
    text->parts = KsText3::ALL;
    EXPECT_EQ(box().getMin()[2], -1);
    EXPECT_EQ(box().getMax()[2], 0);
    EXPECT_EQ(box().getSize()[0], flat.getSize()[0]);
    const KsMeshPtr body = mesh();
    ASSERT_TRUE(body);
    EXPECT_GT(body->indices.size(), 2 * front);
    ASSERT_EQ(body->normals.size(), body->positions.size());
    // A closed body whose faces look outward: its volume is the ink of the front, times the depth.
    double volume = 0, ink = 0;
    for (std::size_t i = 0; i < body->indices.size(); i += 3) {
        const KbVec3f& a = body->positions[body->indices[i]];
        const KbVec3f& b = body->positions[body->indices[i + 1]];
        const KbVec3f& c = body->positions[body->indices[i + 2]];
        volume += static_cast<double>(b.cross(c).dot(a)) / 6;
        if (body->normals[body->indices[i]][2] > 0)
            ink += static_cast<double>((b - a).cross(c - a)[2]) / 2;
        EXPECT_GE((b - a).cross(c - a).dot(body->normals[body->indices[i]]), 0);
    }
    EXPECT_NEAR(volume, ink, 1e-3 * ink);
    text->parts = KsText3::BACK;
    EXPECT_EQ(mesh()->indices.size(), front);
}

// shows: KsText3::getLineWidth, KsText3::getPrefixWidths
TEST_F(Text, prefixesNeverShrinkAndEndAtTheWidthOfTheLine)
{
    for (const KbString& line :
         {KbString("AVATAR Toffee, ffl  "),
          KbString("a\tb\x01"
                   "c"),
          hebrew(), KbString::fromUtf8("abc \u05e9\u05dc\u05d5\u05dd def 123"),
          KbString::fromUtf8("\u0645\u0631\u062d\u0628\u0627 e\u0301a\u0308"),
          KbString::fromUtf8("\U0001F600x")}) {
        const std::vector<float> widths = KsText3::getPrefixWidths(line, fontState);
        ASSERT_EQ(widths.size(), static_cast<std::size_t>(line.getLength()) + 1);
        EXPECT_EQ(widths.front(), 0);
        for (std::size_t i = 1; i < widths.size(); ++i) EXPECT_GE(widths[i], widths[i - 1]);
        EXPECT_NEAR(widths.back(), KsText3::getLineWidth(line, fontState), 1e-3f) << line.toUtf8();
    }
    EXPECT_EQ(KsText3::getPrefixWidths("", fontState), std::vector<float>{0});
}

TEST_F(Text, prefixesAreTheWidthsOfTheirOwnTexts)
{
    const KbString line("A label, to be wrapped where it is too wide");
    const std::vector<float> widths = KsText3::getPrefixWidths(line, fontState);
    // A letter moves a little towards the next one, which a text that ends here does not have.
    for (int i = 0; i <= line.getLength(); ++i)
        EXPECT_NEAR(widths[static_cast<std::size_t>(i)],
                    KsText3::getLineWidth(line.getSubString(0, i), fontState), 0.03f * 11);
}

// shows: KsText3
TEST_F(Text, prefixesOfALongLineAreThoseOfTheWholeLine)
{
    std::string line;
    while (line.size() < 5000) line += "The AVATAR quickly jumps To and over. ";
    const std::vector<float> widths = KsText3::getPrefixWidths(line, fontState);
    EXPECT_NEAR(widths.back(), KsText3::getLineWidth(line, fontState), 0.05f);
    for (const std::size_t i : {191u, 192u, 193u, 1000u, 2500u, 4999u})
        EXPECT_NEAR(widths[i], KsText3::getLineWidth(line.substr(0, i), fontState), 0.3f) << i;
}

// shows: KsText3::getNumLaidOut
TEST_F(Text, allPrefixesOfALineComeFromOneLayoutOfIt)
{
    const std::string words = "The quick brown fox jumps over the lazy dog, ";
    std::string line = words;
    const std::int64_t before = KsText3::getNumLaidOut();
    KsText3::getPrefixWidths(line, fontState);
    EXPECT_EQ(KsText3::getNumLaidOut() - before, static_cast<std::int64_t>(line.size()));
}

TEST_F(Text, whatIsLaidOutForPrefixesGrowsAsTheLineDoes)
{
    const auto costOf = [this](std::size_t length) {
        const std::int64_t before = KsText3::getNumLaidOut();
        KsText3::getPrefixWidths(std::string(length, 'n'), fontState);
        return KsText3::getNumLaidOut() - before;
    };
    for (const std::size_t length : {100u, 1000u, 10000u, 60000u})
        EXPECT_LE(costOf(length), static_cast<std::int64_t>(3 * length)) << length << " characters";
}

TEST_F(Text, isLaidOutAgainOnlyInTheLinesThatChanged)
{
    text->string.assign({"first line", "second line", "third line"});
    box();
    std::int64_t before = KsText3::getNumLaidOut();
    box();
    EXPECT_EQ(KsText3::getNumLaidOut(), before) << "a text that did not change";
    text->string.set1Value(1, "changed");
    box();
    EXPECT_EQ(KsText3::getNumLaidOut() - before, 7);
}

TEST_F(Text, shownIsNoMoreOfALineThanTheLimit)
{
    KsLimits::current().captionChars = 10;
    const float ten = KsText3::getLineWidth("0123456789", fontState);
    EXPECT_EQ(KsText3::getLineWidth("01234567890123", fontState), ten);
    const std::vector<float> widths = KsText3::getPrefixWidths("01234567890123", fontState);
    ASSERT_EQ(widths.size(), 15u);
    EXPECT_EQ(widths[14], ten);
    EXPECT_EQ(widths[10], ten);
    EXPECT_LT(widths[9], ten);
}

TEST_F(Text, controlCharactersHaveNeitherWidthNorInk)
{
    text->string = "ab";
    const KbBox3f plain = box();
    const KsMeshPtr letters = mesh();
    text->string = "\r\x01"
                   "a\x7f\n"
                   "b\x1b";
    EXPECT_EQ(box(), plain);
    ASSERT_TRUE(mesh());
    EXPECT_EQ(mesh()->positions.size(), letters->positions.size());
    text->string = KbString::fromUtf8("a\u2028"
                                      "b");
    EXPECT_EQ(box(), plain);
}

TEST_F(Text, runsFromRightToLeftWhereItsScriptDoes)
{
    text->string = hebrew();
    const KbBox3f whole = box();
    EXPECT_EQ(whole.getMin()[0], 0);
    EXPECT_GT(whole.getSize()[0], 11);
    ASSERT_TRUE(mesh());
    EXPECT_GT(mesh()->box.getMin()[0], -0.2f) << "within its box, for size 1";
    EXPECT_LT(mesh()->box.getMax()[0] * 11, whole.getMax()[0] + 2);
    // The first letter of a line that is read from the right stands at the right.
    text->string = KbString::fromUtf8("\u05d0 .");
    const float full = box().getSize()[0];
    const KsMeshPtr letters = mesh();
    ASSERT_TRUE(letters);
    text->string = KbString::fromUtf8("\u05d0");
    const float letter = box().getSize()[0];
    EXPECT_GT(letters->box.getMax()[0] * 11, full - letter) << "aleph at the right end";
    float leftmost = 1e9f;
    for (const KbVec3f& p : letters->positions) leftmost = std::min(leftmost, p[0]);
    EXPECT_LT(leftmost * 11, full - letter - 0.5f) << "the full stop at the left end";
}

TEST_F(Text, fontThatIsNotThereIsReplacedSilently)
{
    font->name = KbName("No Such Family 4711");
    EXPECT_GT(boxOf("Label").getSize()[0], 11);
    EXPECT_TRUE(mesh());
}

TEST_F(Text, charactersThatTheFontLacksComeFromAnother)
{
    font->name = KbName("DejaVu Sans Mono");
    text->string = hebrew(); // which that font does not have
    EXPECT_TRUE(mesh());
}

TEST_F(Text, isHitInTheBoxesOfItsLines)
{
    text->string = "wide, wide line";
    text->string.set1Value(1, "i");
    const float width = KsText3::getLineWidth("wide, wide line", fontState);
    const float height = KsText3::getExtents(fontState).lineHeight;
    EXPECT_EQ(pick(0.1f, 8), 1) << "above the letters, but in the line";
    EXPECT_EQ(pick(width - 0.1f, 0), 1);
    EXPECT_EQ(pick(width + 0.5f, 0), 0);
    EXPECT_EQ(pick(0.5f, -height), 1);
    EXPECT_EQ(pick(width - 0.1f, -height), 0) << "beside the short line";
    EXPECT_EQ(pick(0.5f, 20), 0);
    text->string = "";
    EXPECT_EQ(pick(0, 0), 0);
}

TEST_F(Text, withDepthIsHitInTheBodiesOfItsLinesFromAnySide)
{
    text->string.assign({"wide, wide line", "i"});
    const float width = KsText3::getLineWidth("wide, wide line", fontState);
    const float height = KsText3::getExtents(fontState).lineHeight;
    const auto hits = [this](const KbVec3f& from, const KbVec3f& along) {
        KsRayPickAction action(KbViewportRegion(100, 100));
        action.setRay(from, along);
        action.apply(root.get());
        return action.getPickedPointsListLength();
    };
    const KbVec3f left(1, 0, 0);
    EXPECT_EQ(hits(KbVec3f(-5, 2, -0.5f), left), 0) << "a flat text has no sides";
    text->parts = KsText3::ALL;
    EXPECT_EQ(hits(KbVec3f(-5, 2, -0.5f), left), 1);
    EXPECT_EQ(hits(KbVec3f(-5, 2, -1.5f), left), 0);
    EXPECT_EQ(hits(KbVec3f(width - 1, 2, -9), KbVec3f(0, 0, 1)), 1) << "from behind";
    EXPECT_EQ(hits(KbVec3f(width - 1, -height, -9), KbVec3f(0, 0, 1)), 0);
    EXPECT_EQ(hits(KbVec3f(1, 30, -0.5f), KbVec3f(0, -1, 0)), 1) << "from above";
}

// shows: KsText3::getLineBox
TEST_F(Text, ofSeveralLinesTellsTheBoxOfEach)
{
    text->string = "wide, wide line";
    text->string.set1Value(1, "i");
    KsState state;
    state.edit(state.font) = fontState;
    const KbBox3f first = text->getLineBox(0, &state), second = text->getLineBox(1, &state);
    EXPECT_FLOAT_EQ(first.getSize()[0], KsText3::getLineWidth("wide, wide line", fontState));
    EXPECT_FLOAT_EQ(second.getSize()[0], KsText3::getLineWidth("i", fontState));
    EXPECT_FLOAT_EQ(first.getMin()[1] - second.getMin()[1],
                    KsText3::getExtents(fontState).lineHeight);
    EXPECT_TRUE(text->getLineBox(2, &state).isEmpty());
    EXPECT_TRUE(text->getLineBox(-1, &state).isEmpty());
}

TEST_F(Text, thousandsOfLinesMakeFewVertices)
{
    text->string = "Enable shadows and more";
    ASSERT_TRUE(mesh());
    EXPECT_LT(mesh()->positions.size(), 60u * 23);
    EXPECT_TRUE(mesh()->normals.empty());
}

TEST_F(Text, isMeasuredRightAfterLinesChangedMovedAndWent)
{
    const auto widest = [&] { return box().getSize()[0]; };
    const auto widthOf = [&](const char* line) { return KsText3::getLineWidth(line, fontState); };
    text->string.assign({"one", "the longest of them", "three"});
    EXPECT_FLOAT_EQ(widest(), widthOf("the longest of them"));
    text->string.set1Value(2, "one that is even longer now than that one was");
    EXPECT_FLOAT_EQ(widest(), widthOf("one that is even longer now than that one was"));
    text->string.deleteValues(2, 1);
    EXPECT_FLOAT_EQ(widest(), widthOf("the longest of them"));
    text->string.deleteValues(1, 1);
    EXPECT_FLOAT_EQ(widest(), widthOf("one"));
    text->string.assign({"the longest of them", "one"});
    EXPECT_FLOAT_EQ(widest(), widthOf("the longest of them"));
    font->name = KbName("DejaVu Sans Mono");
    fontState.name = KbString("DejaVu Sans Mono");
    EXPECT_FLOAT_EQ(widest(), widthOf("the longest of them")) << "another font, other widths";
}

TEST_F(Text, ofALongTextBehindClipPlanesOnlyLinesNearThoseThatAreSeenAreMade)
{
    constexpr int count = 1000;
    std::vector<KbString> lines;
    for (int i = 0; i < count; ++i) lines.push_back(KbString("line ") + KbString(i));
    text->string.assign(lines);
    const KsMeshPtr whole = mesh();
    const float step = KsText3::getExtents(fontState).lineHeight;
    auto* top = new KsClipPlane;
    auto* bottom = new KsClipPlane;
    auto* scroll = new KsTranslation;
    root->insertChild(top, 0);
    root->insertChild(bottom, 1);
    root->insertChild(scroll, 2);
    const auto show = [&](float from, float to) {
        top->plane = KbPlane(KbVec3f(0, -1, 0), -to);
        bottom->plane = KbPlane(KbVec3f(0, 1, 0), from);
    };
    const auto covers = [&](const KsMeshPtr& made, float from, float to) {
        const KbBox3f& box = made->box;
        return box.getMin()[1] * 11 <= from && box.getMax()[1] * 11 >= to;
    };
    show(-20 * step, 0);
    text->string.assign(lines); // what was made of it is let go
    const KsMeshPtr first = mesh();
    ASSERT_TRUE(first);
    EXPECT_LT(first->indices.size(), whole->indices.size() / 10);
    EXPECT_TRUE(covers(first, -20 * step, 0));
    // A little way down there is nothing to make.
    scroll->translation = KbVec3f(0, 3 * step, 0);
    EXPECT_EQ(mesh(), first);
    scroll->translation = KbVec3f(0, 500 * step, 0);
    const KsMeshPtr middle = mesh();
    ASSERT_TRUE(middle);
    EXPECT_NE(middle, first);
    EXPECT_LT(middle->indices.size(), whole->indices.size() / 10);
    EXPECT_TRUE(covers(middle, -520 * step, -500 * step));
    scroll->translation = KbVec3f(0, 2000 * step, 0);
    EXPECT_EQ(mesh(), middle) << "nothing is seen, and nothing is made for it";
    // Without a plane in front of it the text is whole again.
    top->on = false;
    bottom->on = false;
    EXPECT_EQ(mesh()->indices.size(), whole->indices.size());
}
