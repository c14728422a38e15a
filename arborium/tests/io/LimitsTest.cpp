#include "IoTest.h"

#include <arborium/base/KbName.h>
#include <arborium/nodes/KsGroup.h>

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

// ---- what is written ---------------------------------------------------------------------------

class WriteLimits : public IoTest {
protected:
    /// So many groups in each other, as calls make them.
    static KsRef<KsGroup> chain(int depth)
    {
        KsRef<KsGroup> top(new KsGroup);
        for (int i = 1; i < depth; ++i) {
            const KsRef<KsGroup> outer(new KsGroup);
            outer->addChild(top);
            top = outer;
        }
        return top;
    }
    /// Written with a message, or without one if that is empty; then refused, or read.
    void expectWritten(KsNode* root, const std::string& message)
    {
        for (const bool binary : {false, true}) {
            ExpectedMessages messages;
            if (!message.empty()) messages.expect("KsOutput::write", message.c_str());
            const std::string text = written(root, binary);
            EXPECT_EQ(parse(text) != nullptr, message.empty()) << errors;
            const KsLimits limits = KsLimits::current();
            KsLimits::current() = KsLimits();
            KsLimits::current().nesting = 2000;
            EXPECT_TRUE(parse(text)) << "nothing of it is lost: " << errors;
            KsLimits::current() = limits;
        }
    }
};

TEST_F(WriteLimits, nesting)
{
    expectWritten(chain(511), "");
    expectWritten(chain(512), "");
    expectWritten(chain(513), "stand inside each other more than the limit of 512 levels");
}

TEST_F(WriteLimits, strings)
{
    const KsRef<KsSeparator> root = parse("Font { name \"0123456789\" } Text3 { string \"0123\" }");
    for (const int limit : {11, 10}) {
        KsLimits::current().stringBytes = limit;
        expectWritten(root, "");
    }
    KsLimits::current().stringBytes = 9;
    expectWritten(root, "a string has more than the limit of 9 bytes");
}

TEST_F(WriteLimits, names)
{
    const KsRef<KsSeparator> root = parse("DEF Abcdefghijkl Group { }");
    for (const int limit : {13, 12}) {
        KsLimits::current().nameBytes = limit;
        expectWritten(root, "");
    }
    KsLimits::current().nameBytes = 11;
    expectWritten(root, "a name has more than the limit of 11 bytes");
}

TEST_F(WriteLimits, nodes)
{
    const KsRef<KsSeparator> root = parse("DEF A Group { Cube { } } USE A Cube { }");
    for (const int limit : {4, 3}) {
        KsLimits::current().nodesPerFile = limit;
        expectWritten(root, "");
    }
    KsLimits::current().nodesPerFile = 2;
    expectWritten(root, "the file has more than the limit of 2 nodes");
}

TEST_F(WriteLimits, files)
{
    const KsRef<KsSeparator> root = parse("Cube { width 3 }");
    const auto size = static_cast<std::int64_t>(written(root).size());
    const std::string path = (folder() / "large.arb").string();
    const auto save = [&] {
        KsOutput out;
        EXPECT_TRUE(out.openFile(KbString(path)));
        KsWriteAction action(&out);
        action.apply(root);
        EXPECT_TRUE(out.closeFile());
    };
    for (const std::int64_t limit : {size + 1, size}) {
        KsLimits::current().fileBytes = limit;
        save();
    }
    KsLimits::current().fileBytes = size - 1;
    ExpectedMessages messages("KsOutput::write", "the file has more than the limit of");
    save();
    EXPECT_EQ(std::filesystem::file_size(path), static_cast<std::uintmax_t>(size));
}

TEST_F(WriteLimits, aSceneThatCannotBeReachedAsAWholeLeavesTheOldFile)
{
    KsLimits::current().nesting = 100;
    const std::string path = file("deep.arb", "old");
    const auto save = [&](KsNode* root) {
        KsOutput out;
        EXPECT_TRUE(out.openFile(KbString(path)));
        KsWriteAction action(&out);
        action.apply(root);
        return out.closeFile();
    };
    {
        ExpectedMessages messages("KsOutput::write", "more than the limit of 100 levels");
        EXPECT_TRUE(save(chain(300)));
    }
    file("deep.arb", "old");
    ExpectedMessages messages("KsOutput::write", "more than the limit of 100 levels");
    messages.expect("KsAction::traverse", "is deeper than 300 levels");
    messages.expect("KsOutput::closeFile", "deep.arb: not all of the scene could be reached");
    EXPECT_FALSE(save(chain(301)));
    EXPECT_EQ(std::filesystem::file_size(path), 3u);

    KsLimits::current().nesting = 512;
    KsLimits::current().visits = 10;
    messages.expect("KsAction::traverse", "has more than 10 nodes");
    messages.expect("KsOutput::closeFile", "deep.arb: not all of the scene could be reached");
    EXPECT_FALSE(save(chain(11)));
    EXPECT_EQ(std::filesystem::file_size(path), 3u);
    EXPECT_TRUE(save(chain(10)));
}
