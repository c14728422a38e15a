// Labels: escapes, sizes, the one font, and texts in the scene.

#include "Elements.h"

#include <arborium/fields/KsClassRecord.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsText3.h>
#include <formweave/KsDialogComponent.h>

#include <QLabel>

namespace {

constexpr int margin = 3;

class Text : public DialogBase {
protected:
    static KbString converted(const char* text, KsFormweave* node = nullptr)
    {
        return Services::convertToCString(text, node);
    }
};

/// An element of a kind whose texts have rules of their own.
class Kind : public KsDialogComponent {
public:
    explicit Kind(const char* typeName)
        : m_type(KsType::createType(KsDialogComponent::getClassTypeId(), typeName))
    {}
    KsType getTypeId() const override { return m_type; }

private:
    KsType m_type;
};

std::vector<std::string> linesOf(const KsText3* text)
{
    std::vector<std::string> lines;
    for (int i = 0; i < text->string.getNum(); ++i) lines.push_back(text->string[i].toLatin1());
    return lines;
}

using Lines = std::vector<std::string>;

/// A 3D text in a font, measured by an element that was built in 3D.
class SceneText : public DialogBase {
protected:
    void SetUp() override
    {
        DialogBase::SetUp();
        element = new ProbeBox;
        element->build(0);
        text = new KsText3;
        properties = new KsGroup;
        auto* font = new KsFont;
        font->size = 11.0f;
        properties->addChild(font);
    }
    void TearDown() override
    {
        element.reset();
        text.reset();
        properties.reset();
        DialogBase::TearDown();
    }
    void setLines(const Lines& lines)
    {
        text->string.setNum(0);
        for (std::size_t i = 0; i < lines.size(); ++i)
            text->string.set1Value(static_cast<int>(i), lines[i].c_str());
    }
    float widthOf(const std::string& line)
    {
        KsRef<KsText3> probe(new KsText3);
        probe->string.set1Value(0, line.c_str());
        return element->measure3DText(properties.get(), probe.get()).getSize()[0];
    }
    int wrap(int line, float maxWidth)
    {
        return Services::wrap3DTextLine(text.get(), line, maxWidth, properties.get(),
                                        element.get());
    }

    KsRef<ProbeBox> element;
    KsRef<KsText3> text;
    KsRef<KsGroup> properties;
};

} // namespace

// Escapes.

TEST_F(Text, escapesOfLabels)
{
    EXPECT_EQ(converted("plain"), "plain");
    EXPECT_EQ(converted(""), "");
    EXPECT_EQ(converted("a\\nb"), "a\nb");
    EXPECT_EQ(converted("a\\tb"), "a\tb");
    EXPECT_EQ(converted("say \\\"x\\\""), "say \"x\"");
    EXPECT_EQ(converted("a\\\\b"), "a\\b");
    EXPECT_EQ(converted("a\\\\nb"), "a\\nb") << "the second backslash is used up";
    EXPECT_EQ(converted("\\q\\0"), "q0");
    EXPECT_EQ(converted("a\r\nb\rc"), "a\nbc") << "returns are dropped";
    EXPECT_EQ(converted("a\nb"), "a\nb");
    EXPECT_EQ(converted("100%s%n"), "100%s%n");
}

TEST_F(Text, aLoneBackslashAtTheEndStays)
{
    EXPECT_EQ(converted("end\\"), "end\\");
    EXPECT_EQ(converted("\\"), "\\");
}

TEST_F(Text, editTextsGetAReturnBeforeEachLineFeed)
{
    KsRef<Kind> edit(new Kind("DialogEditText"));
    EXPECT_EQ(converted("a\\nb", edit.get()), "a\r\nb");
    EXPECT_EQ(converted("a\nb", edit.get()), "a\r\nb");
    EXPECT_EQ(converted("a\r\nb", edit.get()), "a\r\nb");
    EXPECT_EQ(converted("a\\tb", edit.get()), "a\tb");
    KsRef<ProbeBox> box(new ProbeBox);
    EXPECT_EQ(converted("a\\nb", box.get()), "a\nb");
}

TEST_F(Text, comboBoxesKeepTheTextAsTyped)
{
    KsRef<Kind> combo(new Kind("DialogComboBox"));
    EXPECT_EQ(converted("a\\nb\\\\\r\n", combo.get()), "a\\nb\\\\\r\n");
}

TEST_F(Text, labelsBeyondLatin1FollowTheSameRules)
{
    const KbString text = KbString(u"\u4f60\\n\u597d\\\\\r");
    const KbString result = Services::convertToCString(text, nullptr);
    EXPECT_EQ(result, KbString(u"\u4f60\n\u597d\\"));
    EXPECT_TRUE(result.isUnicode());
    EXPECT_EQ(Services::getNumLines(result), 1);
    KsRef<Kind> edit(new Kind("DialogEditText"));
    EXPECT_EQ(Services::convertToCString(KbString(u"\u4f60\\n"), edit.get()),
              KbString(u"\u4f60\r\n"));
}

TEST_F(Text, nothingIsConvertedBack)
{
    EXPECT_EQ(Services::convertFromCString("a\nb", 0), "");
    EXPECT_EQ(Services::convertFromCString("a", 1), "");
}

TEST_F(Text, linesAreCountedByTheirLineFeeds)
{
    EXPECT_EQ(Services::getNumLines(""), 0);
    EXPECT_EQ(Services::getNumLines("one"), 0);
    EXPECT_EQ(Services::getNumLines("one\ntwo"), 1);
    EXPECT_EQ(Services::getNumLines("\n\n"), 2);
    EXPECT_EQ(Services::getNumLines("one\\ntwo"), 0) << "an escape is no line feed";
}

// Sizes in pixels.

TEST_F(Text, anEmptyLabelHasNoSize)
{
    EXPECT_EQ(KsFormweave::getLabelPixelSize("", nullptr), KbVec2i32(0, 0));
}

TEST_F(Text, aLabelOfOneLineIsItsTextAndTheMargin)
{
    const KbVec2i32 size = KsFormweave::getLabelPixelSize("Shadows", nullptr);
    EXPECT_EQ(size[0], metrics().horizontalAdvance("Shadows") + margin);
    EXPECT_EQ(size[1], metrics().height() + margin);
    EXPECT_EQ(KsFormweave::getLabelPixelSize("\\\"a\\\"", nullptr)[0],
              metrics().horizontalAdvance("\"a\"") + margin);
}

TEST_F(Text, aLabelOfSeveralLinesIsItsWidestLineAndAllItsHeights)
{
    const KbVec2i32 size = KsFormweave::getLabelPixelSize("a\\nmuch wider\\nb", nullptr);
    EXPECT_EQ(size[0], metrics().horizontalAdvance("much wider") + margin);
    EXPECT_EQ(size[1], 3 * metrics().height() + margin);
}

TEST_F(Text, aLabelThatIsOnlyALineFeedHasTwoEmptyLines)
{
    const KbVec2i32 size = KsFormweave::getLabelPixelSize("\\n", nullptr);
    EXPECT_EQ(size, KbVec2i32(margin, 2 * metrics().height() + margin));
}

TEST_F(Text, placesOfObjectsHaveNoWidth)
{
    const KbString objects = KbString::fromUtf16(std::u16string(9, u'\ufffc'));
    const KbVec2i32 size = KsFormweave::getLabelPixelSize(objects, nullptr);
    EXPECT_EQ(size, KbVec2i32(margin, metrics().height() + margin));
}

TEST_F(Text, aComboBoxMeasuresTheTextAsTyped)
{
    KsRef<Kind> combo(new Kind("DialogComboBox"));
    const KbVec2i32 size = KsFormweave::getLabelPixelSize("a\\nb", combo.get());
    EXPECT_EQ(size[0], metrics().horizontalAdvance("a\\nb") + margin);
    EXPECT_EQ(size[1], metrics().height() + margin);
}

TEST_F(Text, labelsBeyondLatin1AreMeasuredAsTheyAreShown)
{
    const QString text = QString::fromUtf8("\xce\xb1\xce\xb2\xce\xb3");
    const KbVec2i32 size =
        KsFormweave::getLabelPixelSize(KbString::fromUtf8("\xce\xb1\xce\xb2\xce\xb3"), nullptr);
    EXPECT_EQ(size[0], metrics().horizontalAdvance(text) + margin);
}

// The font.

TEST_F(Text, theFontAtFirst)
{
    const QFont font = KsFormweave::getFormweaveFont();
    EXPECT_EQ(font.family(), "Microsoft Sans Serif");
    EXPECT_EQ(font.pointSize(), 8);
    EXPECT_FALSE(font.italic());
    EXPECT_EQ(font, QFont("Microsoft Sans Serif", 8, -1, false));
}

TEST_F(Text, aNewFontCountsForMeasuresAndForWidgetsFromThenOn)
{
    QLabel before, after;
    KsFormweave::setWidgetFont(&before);
    const KbVec2i32 small = KsFormweave::getLabelPixelSize("Shadows", nullptr);
    QFont font("DejaVu Sans", 24);
    KsFormweave::setFont(font);
    KsFormweave::setWidgetFont(&after);
    KsFormweave::setWidgetFont(nullptr);
    EXPECT_EQ(KsFormweave::getFormweaveFont(), font);
    EXPECT_EQ(before.font().pointSize(), 8) << "made before";
    EXPECT_EQ(after.font().pointSize(), 24);
    const KbVec2i32 large = KsFormweave::getLabelPixelSize("Shadows", nullptr);
    EXPECT_EQ(large[0], QFontMetrics(font).horizontalAdvance("Shadows") + margin);
    EXPECT_GT(large[1], small[1]);
    // What is returned is a copy.
    KsFormweave::getFormweaveFont().setPointSize(99);
    EXPECT_EQ(KsFormweave::getFormweaveFont().pointSize(), 24);
}

// Texts in the scene.

TEST_F(SceneText, eachLineBecomesAValueAndAnOldTailStays)
{
    Services::setStringToText3(text.get(), "a\nb\nc");
    EXPECT_EQ(linesOf(text.get()), Lines({"a", "b", "c"}));
    Services::setStringToText3(text.get(), "d\ne");
    EXPECT_EQ(linesOf(text.get()), Lines({"d", "e", "c"})) << "the field is not cut first";
    Services::setStringToText3(nullptr, "x");
}

TEST_F(SceneText, insertingInALineSplitsItAtThePosition)
{
    setLines({"hello"});
    EXPECT_EQ(Services::insertTextTo3DText("XY", text.get(), 0, 2), 0);
    EXPECT_EQ(linesOf(text.get()), Lines({"heXYllo"}));
    EXPECT_EQ(Services::insertTextTo3DText("!", text.get(), 0, -1), 0) << "-1 is the end";
    EXPECT_EQ(linesOf(text.get()), Lines({"heXYllo!"}));
    EXPECT_EQ(Services::insertTextTo3DText(">", text.get(), 0, 0), 0);
    EXPECT_EQ(linesOf(text.get()), Lines({">heXYllo!"}));
    EXPECT_EQ(Services::insertTextTo3DText("?", text.get(), 0, 99), 0);
    EXPECT_EQ(linesOf(text.get()), Lines({">heXYllo!?"}));
}

TEST_F(SceneText, insertingBehindTheLastLineMakesALine)
{
    setLines({"a"});
    EXPECT_EQ(Services::insertTextTo3DText("b", text.get(), 1, 0), 1);
    EXPECT_EQ(linesOf(text.get()), Lines({"a", "b"}));
    EXPECT_EQ(Services::insertTextTo3DText("d", text.get(), 3, 0), 3);
    EXPECT_EQ(linesOf(text.get()), Lines({"a", "b", "", "d"}));
}

TEST_F(SceneText, insertingALineFeedLeavesAnEmptyLineBehind)
{
    setLines({"a"});
    EXPECT_EQ(Services::insertTextTo3DText("x\ny", text.get(), 0, 1), 1);
    EXPECT_EQ(linesOf(text.get()), Lines({"a", ""})) << "the text itself is not inserted";
}

TEST_F(SceneText, insertingALineFeedMovesTheLinesBehindByTwoPlaces)
{
    setLines({"0", "1", "2", "3", "4"});
    EXPECT_EQ(Services::insertTextTo3DText("\n", text.get(), 0, 0), 1);
    EXPECT_EQ(linesOf(text.get()), Lines({"0", "", "2", "1", "2", "3"}));
}

TEST_F(SceneText, insertingInABadPlaceDoesNothing)
{
    setLines({"a"});
    EXPECT_EQ(Services::insertTextTo3DText("x", text.get(), -1, 0), -1);
    EXPECT_EQ(linesOf(text.get()), Lines({"a"}));
    EXPECT_EQ(Services::insertTextTo3DText("x", nullptr, 0, 0), 0);
}

TEST_F(SceneText, aLineThatFitsIsNotWrapped)
{
    setLines({"fits", "next"});
    EXPECT_EQ(wrap(0, widthOf("fits") + 1), 0);
    EXPECT_EQ(linesOf(text.get()), Lines({"fits", "next"}));
    EXPECT_EQ(wrap(0, widthOf("fits")), 0) << "also where it fits exactly";
    EXPECT_EQ(linesOf(text.get()), Lines({"fits", "next"}));
}

TEST_F(SceneText, aLineThatOverflowsAtItsLastCharacterSplitsOffThatCharacter)
{
    setLines({"wwwx", "next"});
    const float room = (widthOf("www") + widthOf("wwwx")) / 2;
    EXPECT_EQ(wrap(0, room), 1);
    EXPECT_EQ(linesOf(text.get()), Lines({"www", "x", "next"}));
}

TEST_F(SceneText, aLongLineIsWrappedIntoSeveral)
{
    setLines({"before", "wwwwwwww", "next"});
    const float room = (widthOf("www") + widthOf("wwww")) / 2;
    EXPECT_EQ(wrap(1, room), 3);
    EXPECT_EQ(linesOf(text.get()), Lines({"before", "www", "www", "ww", "next"}));
}

TEST_F(SceneText, aLineThatWasBrokenHoldsEachCharacterOnceAndNoLineIsWiderThanTheRoom)
{
    const std::string whole = "The quick brown fox, which jumps over the lazy dogs; 1,234 times.";
    for (const float room : {7.5f, 20.0f, 33.3f, 100.0f}) {
        setLines({whole});
        const int last = wrap(0, room);
        const Lines lines = linesOf(text.get());
        EXPECT_EQ(last, static_cast<int>(lines.size()) - 1);
        EXPECT_GT(lines.size(), 1u);
        std::string joined;
        for (const std::string& line : lines) {
            EXPECT_TRUE(line.size() == 1 || widthOf(line) <= room + 0.01f) << line;
            joined += line;
        }
        EXPECT_EQ(joined, whole);
    }
}

TEST_F(SceneText, aBreakSplitsNoCharacter)
{
    // Each a pair of halves, or a letter with a mark on it.
    const std::u16string smile = u"\U0001F600", accented = u"e\u0301";
    std::u16string whole;
    for (int i = 0; i < 5; ++i) whole += smile + accented;
    text->string.setNum(0);
    text->string.set1Value(0, KbString::fromUtf16(whole));
    EXPECT_EQ(wrap(0, 1), 9) << "a character a line";
    for (int i = 0; i < 10; ++i) EXPECT_EQ(text->string[i].toUtf16(), i % 2 ? accented : smile);
}

TEST_F(SceneText, aLongTextIsWrappedInProportionToItsLength)
{
    const std::string whole(60000, 'w');
    setLines({whole});
    const std::int64_t before = KsText3::getNumLaidOut();
    EXPECT_EQ(wrap(0, 1), 59999);
    EXPECT_EQ(text->string.getNum(), 60000);
    EXPECT_LE(KsText3::getNumLaidOut() - before, 3 * 60000) << "no line is measured by itself";
}

TEST_F(SceneText, aBreakAtAnExactFitRepeatsNothing)
{
    setLines({"wwwx"});
    EXPECT_EQ(wrap(0, widthOf("www")), 1);
    EXPECT_EQ(linesOf(text.get()), Lines({"www", "x"}));
}

TEST_F(SceneText, roomForLessThanACharacterGivesOneCharacterALine)
{
    setLines({"abc"});
    EXPECT_EQ(wrap(0, widthOf("a") / 2), 2);
    EXPECT_EQ(linesOf(text.get()), Lines({"a", "b", "c"}));
    for (const float none : {0.0f, -5.0f}) {
        setLines({"abc"});
        EXPECT_EQ(wrap(0, none), 2);
        EXPECT_EQ(linesOf(text.get()), Lines({"a", "b", "c"}));
    }
}

TEST_F(SceneText, wrappingAnEmptyLineOrNoLineDoesNothing)
{
    setLines({""});
    EXPECT_EQ(wrap(0, 10), 0);
    EXPECT_EQ(linesOf(text.get()), Lines({""}));
    EXPECT_EQ(wrap(7, 10), 7);
    EXPECT_EQ(wrap(-1, 10), -1);
    EXPECT_EQ(linesOf(text.get()), Lines({""}));
    EXPECT_EQ(Services::wrap3DTextLine(nullptr, 0, 10, properties.get(), element.get()), 0);
}

TEST_F(SceneText, wrappingLeavesTheFontGroupAsItWas)
{
    setLines({"wwwwww"});
    const int references = properties->getRefCount();
    wrap(0, widthOf("ww"));
    EXPECT_EQ(properties->getRefCount(), references);
    EXPECT_EQ(properties->getNumChildren(), 1);
}
