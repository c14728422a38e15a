#include "IoTest.h"

#include <arborium/base/KbName.h>

/// Each limit one below, at and one above; the message names it.
class ReadLimits : public IoTest {
protected:
    void expectLimit(const std::string& below, const std::string& at, const std::string& above,
                     const std::string& message)
    {
        EXPECT_TRUE(parse(below)) << errors;
        EXPECT_TRUE(parse(at)) << errors;
        EXPECT_EQ(errorsOf(above), message);
    }
    static std::string nested(int depth)
    {
        std::string text;
        for (int i = 0; i < depth; ++i) text += "Group {";
        return text + std::string(static_cast<std::size_t>(depth), '}');
    }
};

TEST_F(ReadLimits, nesting)
{
    expectLimit(nested(511), nested(512), nested(513),
                "1:3585: nodes stand inside each other deeper than the limit of 512 levels of "
                "nesting\n");
    KsLimits::current().nesting = 3;
    expectLimit(nested(2), nested(3), nested(4),
                "1:22: nodes stand inside each other deeper than the limit of 3 levels of "
                "nesting\n");
}

TEST_F(ReadLimits, depthOf100000IsOneErrorAtTheLimit)
{
    const std::string limit =
        "1:3585: nodes stand inside each other deeper than the limit of 512 levels of nesting\n";
    EXPECT_EQ(errorsOf(nested(100000)), limit);
    std::string open;
    for (int i = 0; i < 100000; ++i) open += "Group {";
    EXPECT_EQ(errorsOf(open), limit);
    // Nodes in fields count as well, and what is skipped needs no depth.
    std::string fields, skipped = "Cubb ";
    for (int i = 0; i < 100000; ++i) fields += "BaseKit { topSeparator Separator { ";
    for (int i = 0; i < 100000; ++i) skipped += "{";
    EXPECT_NE(errorsOf(fields).find("the limit of 512 levels of nesting\n"), std::string::npos);
    EXPECT_NE(errorsOf(skipped).find("the end of the file"), std::string::npos);
}

TEST_F(ReadLimits, deepTreesLiveAndDieWithoutHarm)
{
    const KsRef<KsSeparator> root = parse(nested(512));
    ASSERT_TRUE(root);
    const KsRef<KsSeparator> again = parse(written(root));
    ASSERT_TRUE(again) << errors;
    EXPECT_EQ(written(again), written(root));
}

TEST_F(ReadLimits, nodes)
{
    KsLimits::current().nodesPerFile = 3;
    expectLimit("Cube {} Cube {}", "Group { Cube {} Cube {} }", "Group { Cube {} Cube {} Cube {} }",
                "1:25: the file has more than the limit of 3 nodes\n");
}

TEST_F(ReadLimits, visitsOfSharedNodes)
{
    // Thirty lines that stand for 2^30 nodes.
    std::string text = "DEF N0 Cube { }\n";
    for (int i = 1; i <= 30; ++i) {
        const std::string below = std::to_string(i - 1);
        text += "DEF N" + std::to_string(i) + " Group { USE N" + below + " USE N" + below + " }\n";
    }
    const std::string problems = errorsOf(text);
    EXPECT_NE(problems.find("the limit of 2000000 visits"), std::string::npos) << problems;
    KsLimits::current().visits = 5;
    expectLimit("DEF A Cube {} Group { USE A USE A }", "DEF A Cube {} Group { USE A USE A USE A } ",
                "DEF A Cube {} Group { USE A USE A USE A } Cube {}",
                "1:43: the nodes of the file, shared ones counted each time that they are used, "
                "are more than the limit of 5 visits\n");
}

TEST_F(ReadLimits, bytesOfAString)
{
    KsLimits::current().stringBytes = 8;
    const auto text = [](int n) {
        return "Font { name \"" + std::string(static_cast<std::size_t>(n), 'x') + "\" size q }";
    };
    KsLimits::current().nameBytes = 100;
    EXPECT_EQ(errorsOf(text(7)).find("8 bytes"), std::string::npos);
    EXPECT_EQ(errorsOf(text(8)).find("8 bytes"), std::string::npos);
    // The error does not end the read: the wrong number is found too.
    EXPECT_EQ(errorsOf(text(9)),
              "1:13: the string has more than the limit of 8 bytes\n"
              "1:30: expected a number for the field \"size\" of Font, met \"q\"\n");
    // Of a text in UTF-8 the characters count, since they may be written in fewer bytes.
    const std::string utf8 = "#Arborium V2.1 ascii utf8\nText3 { string \"";
    std::string text8;
    for (int i = 0; i < 8; ++i) text8 += "\xe2\x82\xac";
    EXPECT_TRUE(parse(utf8 + text8 + "\" }")) << errors;
    EXPECT_EQ(errorsOf(utf8 + text8 + "x\" }"),
              "2:16: the string has more than the limit of 8 bytes\n");
}

TEST_F(ReadLimits, bytesOfAName)
{
    const auto text = [](int n) {
        return "DEF " + std::string(static_cast<std::size_t>(n), 'x') + " Cube { }";
    };
    KsLimits::current().nameBytes = 5;
    EXPECT_TRUE(parse(text(4)));
    EXPECT_TRUE(parse(text(5)));
    EXPECT_NE(errorsOf(text(6)).find("1:5: the name has more than the limit of 5 bytes"),
              std::string::npos)
        << errors;
    KsLimits::current().nameBytes = 1024;
    EXPECT_TRUE(parse(text(1024)));
    EXPECT_FALSE(parse(text(1025)));
}

TEST_F(ReadLimits, valuesOfAField)
{
    KsLimits::current().valuesPerField = 3;
    expectLimit("Text3 { string [ a, b ] }", "Text3 { string [ a, b, c ] }",
                "Text3 { string [ a, b, c, d, e ] spacing x }",
                "1:27: more than the limit of 3 values for the field \"string\"\n"
                "1:42: expected a number for the field \"spacing\" of Text3, met \"x\"\n");
}

TEST_F(ReadLimits, limitsHoldInBinaryFilesToo)
{
    const KsRef<KsSeparator> root =
        parse("DEF AB Group { Text3 { string [ abc, def, ghi ] } Group { } }");
    ASSERT_TRUE(root);
    const std::string binary = written(root, true);
    const KsLimits limits = KsLimits::current();
    const auto refused = [&](const char* what) {
        const std::string problems = errorsOf(binary);
        EXPECT_NE(problems.find(what), std::string::npos) << problems;
        KsLimits::current() = limits;
        EXPECT_TRUE(parse(binary)) << errors;
    };
    KsLimits::current().nesting = 1;
    refused("the limit of 1 levels of nesting");
    KsLimits::current().nodesPerFile = 2;
    refused("the limit of 2 nodes");
    KsLimits::current().visits = 2;
    refused("the limit of 2 visits");
    KsLimits::current().nameBytes = 4;
    refused("the limit of 4 bytes");
    KsLimits::current().stringBytes = 2;
    refused("the limit of 2 bytes");
    KsLimits::current().valuesPerField = 2;
    refused("the limit of 2 values");
}

TEST_F(ReadLimits, unknownWordsAreNotKeptInTheTableOfNames)
{
    errorsOf("Cube { zzUnknownField 1 } ZzUnknownType { }");
    EXPECT_TRUE(KbName::findExisting("zzUnknownField").isEmpty());
    EXPECT_TRUE(KbName::findExisting("ZzUnknownType").isEmpty());
}
