#include "IoTest.h"

#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsGroup.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

class Binary : public IoTest {
protected:
    static std::string number(std::uint32_t value, int bytes = 4)
    {
        std::string text;
        for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> (8 * i) & 0xff);
        return text;
    }
    static std::string word(const std::string& text)
    {
        return number(static_cast<std::uint32_t>(text.size())) + text;
    }
    /// A node without fields; `children` with their count in front.
    static std::string node(const std::string& type, const std::string& children = {})
    {
        return word(type) + number(children.empty() ? 0 : 2, 2) + number(0) + children;
    }
    const std::string header = "#Arborium V2.1 binary\n";
};

// shows: KsOutput::setBinary
TEST_F(Binary, theFormIsFixed)
{
    const KsRef<KsSeparator> root = parse("Group { Cube { width 2 } }");
    const std::string width = word("width") + number(0x40000000) + number(0, 2);
    EXPECT_EQ(written(root, true), header + word("Group") + number(2, 2) + number(0) + number(1) +
                                       word("Cube") + number(0, 2) + number(1) + width);
    KsOutput out;
    out.writeWord("begun");
    ExpectedMessages messages("KsOutput::setBinary", "cannot change within a file");
    out.setBinary(true);
    EXPECT_FALSE(out.isBinary());
    EXPECT_EQ(out.getBuffer(), "begun");
}

TEST_F(Binary, version1EndsTheChildrenWithMinusOne)
{
    const std::string old = "#Arborium V1.0 binary\n";
    const std::string end = number(0xffffffff);
    const KsRef<KsSeparator> root =
        parse(old + node("Group", number(2) + node("Cube") + node("Group", number(0) + end) + end));
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(written(root), ascii + "\nGroup {\n    Cube {\n    }\n    Group {\n    }\n}\n");
    EXPECT_FALSE(parse(old + node("Group", number(1) + node("Cube"))));
    EXPECT_FALSE(parse(old + node("Group", number(1) + node("Cube") + number(0))));
    EXPECT_FALSE(parse(header + node("Group", number(1) + node("Cube") + end)));
}

TEST_F(Binary, childrenAreReadOnlyWhereTheFlagSaysSo)
{
    const KsRef<KsSeparator> root = parse(header + node("Group") + node("Cube"));
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(root->getNumChildren(), 2);
}

TEST_F(Binary, fieldsStandInAnyOrder)
{
    const auto cube = [this](std::initializer_list<std::string> fields) {
        std::string bytes =
            word("Cube") + number(0, 2) + number(static_cast<std::uint32_t>(fields.size()));
        std::uint32_t value = 0x40000000; // 2, and the next ones
        for (const std::string& each : fields) bytes += word(each) + number(value++) + number(0, 2);
        return header + bytes;
    };
    const KsRef<KsSeparator> root = parse(cube({"depth", "width", "height"}));
    ASSERT_TRUE(root) << errors;
    const auto& read = *static_cast<KsCube*>(root->getChild(0));
    EXPECT_EQ(read.depth.getValue(), 2);
    EXPECT_LT(read.width.getValue(), read.height.getValue());
    EXPECT_EQ(static_cast<KsCube*>(parse(cube({"width", "width"}))->getChild(0))->width.getValue(),
              std::nextafter(2.0f, 3.0f));
    for (const auto& wrong :
         {cube({""}), cube({"width", "height", "depth", ""}), cube({"width", "height", ""})})
        EXPECT_FALSE(parse(wrong));
}

TEST_F(Binary, countsAreComparedWithTheBytesThatFollow)
{
    const std::string text3 = word("Text3") + number(0, 2);
    const std::string many = number(0x7fffffff);
    for (const std::string& bytes :
         {text3 + many,                                                        // fields
          text3 + number(0xffffffff),                                          // fewer than none
          text3 + number(1) + word("string") + many,                           // values
          text3 + number(1) + word("string") + number(1) + many + "x",         // a string
          text3 + number(1) + word("string") + number(1) + number(0x80000000), // a wide string
          many + "Cube",                                                       // a word
          node("Group", many), node("Group", number(2) + node("Cube")),
          node("Group", number(1) + word(""))}) {
        const std::string problems = errorsOf(header + bytes);
        EXPECT_EQ(std::count(problems.begin(), problems.end(), '\n'), 1) << problems;
        EXPECT_NE(problems.find("byte "), std::string::npos) << problems;
    }
}

TEST_F(Binary, wrongContentIsToldWithItsByte)
{
    EXPECT_EQ(errorsOf(header + node("Cubb")),
              "byte 22: unknown node type \"Cubb\"; the nearest is \"Cube\"\n");
    EXPECT_NE(errorsOf(header + word("Cube") + number(0, 2) + number(1) + word("wdth") + number(0) +
                       number(0, 2))
                  .find("unknown field \"wdth\" of Cube; the nearest is \"width\""),
              std::string::npos)
        << errors;
    EXPECT_NE(errorsOf(header + word("Cube") + number(0, 2) + number(1) + word("width") +
                       number(0x7f800000) + number(0, 2))
                  .find("expected a finite number"),
              std::string::npos)
        << errors;
    EXPECT_NE(errorsOf(header + word("USE") + word("A") + number(0xffffffff))
                  .find("no node before this one is called \"A\""),
              std::string::npos)
        << errors;
}

TEST_F(Binary, everyTruncationIsAnErrorOrAWholeFile)
{
    const KsRef<KsSeparator> root =
        parse("DEF A Group { Text3 { string [ a, b ] parts (FRONT | BACK) } DEF B Cube { width 1 = "
              "B.height } } USE A");
    ASSERT_TRUE(root) << errors;
    const std::string whole = written(root, true);
    for (std::size_t size = header.size(); size < whole.size(); ++size)
        parse(whole.substr(0, size));
    // And every changed byte.
    for (std::size_t i = header.size(); i < whole.size(); ++i) {
        for (char c : {'\0', '\x01', '\x7f', '\xff'}) {
            std::string changed = whole;
            changed[i] = c;
            parse(changed);
        }
    }
}

TEST_F(Binary, aUnicodeTextStaysOne)
{
    const KsRef<KsSeparator> root =
        parse("#Arborium V2.1 ascii utf8\nText3 { string [ \"\xce\xbb\", \"\xc3\xa4\" ] }");
    ASSERT_TRUE(root) << errors;
    const KsRef<KsSeparator> again = parse(written(root, true));
    ASSERT_TRUE(again) << errors;
    EXPECT_EQ(written(again), written(root));
}
