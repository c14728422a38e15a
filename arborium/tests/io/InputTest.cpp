#include "IoTest.h"

#include <CommaLocale.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>

#include <QLocale>

class Input : public IoTest {
protected:
    template <class T> static T* child(const KsSeparator* root, int index)
    {
        T* node = ksCast<T>(root->getChild(index));
        EXPECT_TRUE(node);
        return node;
    }
};

TEST_F(Input, readsNodesFieldsAndChildren)
{
    const KsRef<KsSeparator> root = parse("#Arborium V2.1 ascii\n"
                                          "# a comment { }\n"
                                          "Switch { whichChild -3 # all\n"
                                          "  Cube { width 2 height 3.5 } Group{Cube{}}\n"
                                          "}\n"
                                          "Translation{translation 1 -2 .5e1}");
    ASSERT_TRUE(root) << errors;
    ASSERT_EQ(root->getNumChildren(), 2);
    auto* all = child<KsSwitch>(root, 0);
    EXPECT_EQ(all->whichChild.getValue(), -3);
    ASSERT_EQ(all->getNumChildren(), 2);
    auto* cube = ksCast<KsCube>(all->getChild(0));
    ASSERT_TRUE(cube);
    EXPECT_EQ(cube->width.getValue(), 2);
    EXPECT_EQ(cube->height.getValue(), 3.5f);
    EXPECT_TRUE(cube->depth.isDefault());
    EXPECT_EQ(child<KsTranslation>(root, 1)->translation.getValue(), KbVec3f(1, -2, 5));
}

TEST_F(Input, takesTypeNamesWithAndWithoutPrefix)
{
    const KsRef<KsSeparator> root = parse("KsGroup { KsCube { } Cube { } }");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(ksCast<KsGroup>(root->getChild(0))->getNumChildren(), 2);
}

TEST_F(Input, takesNumbersInAllTheirForms)
{
    const KsRef<KsSeparator> root =
        parse("Switch { whichChild +5 } Switch { whichChild 0x1F } Cube { width +1.5 height 1e-3 "
              "depth -0 } Cube { width 1e-60 height .5 depth 5. }");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(child<KsSwitch>(root, 0)->whichChild.getValue(), 5);
    EXPECT_EQ(child<KsSwitch>(root, 1)->whichChild.getValue(), 31);
    EXPECT_EQ(child<KsCube>(root, 2)->width.getValue(), 1.5f);
    EXPECT_EQ(child<KsCube>(root, 2)->height.getValue(), 0.001f);
    EXPECT_EQ(child<KsCube>(root, 3)->width.getValue(), 0);
    EXPECT_EQ(child<KsCube>(root, 3)->depth.getValue(), 5);
}

TEST_F(Input, theLocaleOfTheProgramChangesNothing)
{
    const CommaLocale locale;
    if (!locale.isSet()) GTEST_SKIP() << "no locale with a decimal comma can be had here";
    expectKept(ascii + "\nCube {\n    width 1.5\n}\n");
}

TEST_F(Input, theLocaleOfQtChangesNothing)
{
    QLocale::setDefault(QLocale(QLocale::German));
    ASSERT_EQ(QLocale().toString(1.5), "1,5");
    expectKept(ascii + "\nCube {\n    width 1.5\n}\n");
}

TEST_F(Input, readsStringsWithTheirEscapesAlone)
{
    const KsRef<KsSeparator> root = parse("Text3 { string [ \"a\\\"b\", \"a\\\\b\", \"a\\nb\", "
                                          "\"two\nlines # no comment\", word, \"\" ] }");
    ASSERT_TRUE(root) << errors;
    const auto& string = child<KsText3>(root, 0)->string;
    ASSERT_EQ(string.getNum(), 6);
    EXPECT_EQ(string[0], "a\"b");
    EXPECT_EQ(string[1], "a\\b");
    EXPECT_EQ(string[2], "a\\nb");
    EXPECT_EQ(string[3], "two\nlines # no comment");
    EXPECT_EQ(string[4], "word");
    EXPECT_EQ(string[5], "");
}

TEST_F(Input, aFieldOfSeveralValuesTakesBracketsOrOneValue)
{
    const KsRef<KsSeparator> root =
        parse("Material { diffuseColor 1 0 0 } Material { diffuseColor [] } Material { "
              "diffuseColor [ 1 0 0, 0 1 0 0 0 1, ] } Material { diffuseColor[1 0 0] }");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(child<KsMaterial>(root, 0)->diffuseColor.getNum(), 1);
    EXPECT_EQ(child<KsMaterial>(root, 1)->diffuseColor.getNum(), 0);
    EXPECT_EQ(child<KsMaterial>(root, 2)->diffuseColor.getNum(), 3);
    EXPECT_EQ(child<KsMaterial>(root, 2)->diffuseColor[1], KbColor(0, 1, 0));
    EXPECT_EQ(child<KsMaterial>(root, 3)->diffuseColor.getNum(), 1);
}

// shows: KsDB::parse
TEST_F(Input, sharesNodesByName)
{
    const KsRef<KsSeparator> root = parse("DEF A Group { DEF B Cube { } USE B } USE A USE B");
    ASSERT_TRUE(root) << errors;
    auto* a = child<KsGroup>(root, 0);
    EXPECT_EQ(root->getChild(1), a);
    EXPECT_EQ(a->getChild(0), a->getChild(1));
    EXPECT_EQ(root->getChild(2), a->getChild(0));
    EXPECT_EQ(a->getName(), "A");
    EXPECT_EQ(KsNode::getByName("B"), a->getChild(0));
}

TEST_F(Input, aNameMayStandForSeveralNodesInTurn)
{
    const KsRef<KsSeparator> root = parse("DEF A Cube { } USE A DEF A Group { } USE A");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(root->getChild(0), root->getChild(1));
    EXPECT_EQ(root->getChild(2), root->getChild(3));
    EXPECT_NE(root->getChild(0), root->getChild(2));
}

TEST_F(Input, latin1AndUtf8)
{
    KsRef<KsSeparator> root = parse("#Arborium V2.1 ascii\nFont { name \"\xe4\" }");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(child<KsFont>(root, 0)->name.getValue(), "\xe4");
    root = parse("#Arborium V2.1 ascii utf8\nFont { name \"\xc3\xa4\" } Text3 { string "
                 "\"\xce\xbb\xf0\x9f\x8e\x88\" }");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(child<KsFont>(root, 0)->name.getValue(), "\xe4");
    EXPECT_EQ(child<KsText3>(root, 1)->string[0], KbString(u"\u03bb\U0001f388"));
    // Bytes that are no UTF-8 do no harm.
    root = parse("#Arborium V2.1 ascii utf8\nText3 { string \"a\xff\xc3\" }");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(child<KsText3>(root, 0)->string[0], KbString(u"a\ufffd\ufffd"));
    // A byte order mark says that the file is UTF-8.
    root = parse("\xef\xbb\xbf#Arborium V2.1 ascii\nFont { name \"\xc3\xa4\" }");
    ASSERT_TRUE(root) << errors;
    EXPECT_EQ(child<KsFont>(root, 0)->name.getValue(), "\xe4");
}

TEST_F(Input, readsLineEndsOfAllKinds)
{
    for (const char* end : {"\n", "\r\n", "\r"}) {
        const std::string e = end;
        const KsRef<KsSeparator> root = parse("#Arborium V2.1 ascii" + e + "# c" + e + "Cube {" +
                                              e + "width 2 # c" + e + "height 3" + e + "}" + e);
        ASSERT_TRUE(root) << errors;
        EXPECT_EQ(child<KsCube>(root, 0)->width.getValue(), 2);
        EXPECT_EQ(child<KsCube>(root, 0)->height.getValue(), 3);
    }
}

// shows: KsInput::setBuffer
TEST_F(Input, aBufferNeedsNoFirstLine)
{
    KsRef<KsSeparator> root = parse("Cube { }");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->getNumChildren(), 1);
    root = parse("");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->getNumChildren(), 0);
    KsInput in;
    in.setBuffer(nullptr, 5);
    root = KsDB::readAll(&in);
    EXPECT_TRUE(root);
}

// shows: KsDB::read, KsNodeList::get
TEST_F(Input, readsNodesOneByOne)
{
    KsInput in;
    const std::string text = "DEF A Cube { } Group { USE A }";
    in.setBuffer(text.data(), text.size());
    KsNode* node = nullptr;
    ASSERT_TRUE(KsDB::read(&in, node));
    const KsRef<KsNode> first(node);
    ASSERT_TRUE(first);
    ASSERT_TRUE(KsDB::read(&in, node));
    const KsRef<KsNode> second(node);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->getChildren()->get(0), first);
    ASSERT_TRUE(KsDB::read(&in, node));
    EXPECT_EQ(node, nullptr);
}

TEST_F(Input, aNodeReadAloneOutlivesItsInput)
{
    KsNode* node = nullptr;
    {
        KsInput in;
        in.setBuffer("DEF A Cube { }", 14);
        ASSERT_TRUE(KsDB::read(&in, node));
    }
    EXPECT_EQ(node->getRefCount(), 0);
    const KsRef<KsNode> held(node);
    EXPECT_EQ(held->getName(), "A");
}

TEST_F(Input, theRootComesWithoutAReference)
{
    KsInput in;
    in.setBuffer("DEF A Cube { } USE A", 20);
    KsSeparator* root = KsDB::readAll(&in);
    ASSERT_TRUE(root);
    EXPECT_EQ(root->getRefCount(), 0);
    EXPECT_EQ(root->getChild(0)->getRefCount(), 2); // a child twice
    root->ref();
    root->unref();
}

// shows: KsInput, KsInput::openFile, KsInput::addDirectoryFirst, KsInput::addDirectoryLast, KsInput::removeDirectory,
// KsInput::clearDirectories, KsInput::getDirectories, KsInput::getFileName
TEST_F(Input, findsFilesInItsDirectoriesInOrder)
{
    const std::string here = file("a/x.arb", ascii + "Cube { }");
    file("b/x.arb", ascii + "Sphere { }");
    file("b/y.arb", ascii + "Cone { }");
    const KbStringList before = KsInput::getDirectories();
    EXPECT_EQ(before.getLength(), 1);
    EXPECT_EQ(before[0], ".");
    KsInput::clearDirectories();
    EXPECT_EQ(KsInput::getDirectories().getLength(), 0);
    KsInput in;
    EXPECT_FALSE(in.isOpen());
    EXPECT_FALSE(in.openFile("x.arb", true));
    KsInput::addDirectoryLast(KbString((folder() / "a").string()));
    KsInput::addDirectoryLast(KbString((folder() / "b").string()));
    ASSERT_TRUE(in.openFile("x.arb"));
    EXPECT_EQ(in.getFileName(), here);
    ASSERT_TRUE(in.openFile("y.arb"));
    KsInput::addDirectoryFirst(KbString((folder() / "b").string()));
    ASSERT_TRUE(in.openFile("x.arb"));
    EXPECT_EQ(in.getFileName(), (folder() / "b/x.arb").string());
    // A full name needs no directory.
    ASSERT_TRUE(in.openFile(KbString(here)));
    EXPECT_EQ(in.getFileName(), here);
    KsInput::removeDirectory(KbString((folder() / "b").string()));
    KsInput::removeDirectory("no such directory");
    ASSERT_EQ(KsInput::getDirectories().getLength(), 2) << "one of the two of the same name";
    EXPECT_EQ(KsInput::getDirectories()[0], KbString((folder() / "a").string()));
    KsInput::addDirectoryFirst("");
    KsInput::addDirectoryLast("");
    EXPECT_EQ(KsInput::getDirectories().getLength(), 2);
    KsInput::clearDirectories();
    for (const KbString& each : before) KsInput::addDirectoryLast(each);
    EXPECT_EQ(KsInput::getDirectories(), before);
}

// shows: KsInput::getPlace
TEST_F(Input, nodesOfAFileCanBeSetFromTextAndTellTheirPlace)
{
    KsInput in;
    const std::string text = "Cube {\n  width 2";
    in.setBuffer(text.data(), text.size());
    KbName word;
    EXPECT_TRUE(in.peekWord(word));
    EXPECT_EQ(word, "Cube");
    EXPECT_TRUE(in.readWord(word));
    EXPECT_EQ(in.peekChar(), '{');
    EXPECT_TRUE(in.takeChar('{'));
    EXPECT_FALSE(in.takeChar('}'));
    EXPECT_TRUE(in.readWord(word));
    EXPECT_EQ(in.getPlace(), "<buffer>:2:3");
    float width = 0;
    EXPECT_TRUE(in.read(width));
    EXPECT_EQ(width, 2);
    EXPECT_TRUE(in.eof());
}

TEST_F(Input, connectsFieldsAlsoToNodesThatFollow)
{
    const KsRef<KsSeparator> root =
        parse("Cube { width 1 = Source.height } DEF Source Cube { height 7 }");
    ASSERT_TRUE(root) << errors;
    auto* slave = child<KsCube>(root, 0);
    auto* source = child<KsCube>(root, 1);
    EXPECT_EQ(slave->width.getConnectedField(), &source->height);
    EXPECT_EQ(slave->width.getValue(), 7);
    source->height = 8;
    EXPECT_EQ(slave->width.getValue(), 8);
}

TEST_F(Input, refusesWrongConnections)
{
    EXPECT_EQ(errorsOf("Cube { width 1 = Nobody.height }"), "1:18: no node is called \"Nobody\"\n");
    EXPECT_EQ(errorsOf("DEF A Cube { width 1 = A.hight }"), "1:24: Cube has no field \"hight\"\n");
    EXPECT_EQ(errorsOf("DEF A Switch { } Cube { width 1 = A.whichChild }"),
              "1:35: the field \"whichChild\" of \"A\" cannot be the source of this one: expected "
              "a field of the same kind\n");
    EXPECT_EQ(errorsOf("DEF A Cube { width 1 = A.width }"),
              "1:24: the field \"width\" of \"A\" cannot be the source of this one: expected a "
              "field of the same kind\n");
    EXPECT_EQ(errorsOf("DEF A Cube { width 1 = A height 2 }"),
              "1:24: expected a node's name and a field, as in \"Name.field\", met \"A\"\n");
}

// shows: KsDB::init, KsDB::finish, KsDB::isInitialized, KsDB::getInitCount, KsDB::readAll
TEST(Database, initNests)
{
    EXPECT_FALSE(KsDB::isInitialized());
    KsDB::finish(); // does nothing
    KsDB::init();
    KsDB::init();
    EXPECT_EQ(KsDB::getInitCount(), 2);
    KsDB::finish();
    EXPECT_TRUE(KsDB::isInitialized());
    EXPECT_FALSE(KsType::fromName("Cube").isBad());
    KsDB::finish();
    EXPECT_FALSE(KsDB::isInitialized());
    EXPECT_TRUE(KsType::fromName("Cube").isBad());
    KsDB::init();
    KsInput in;
    in.setBuffer("Cube { width 2 }", 16);
    const KsRef<KsSeparator> root(KsDB::readAll(&in));
    ASSERT_TRUE(root);
    EXPECT_EQ(root->getNumChildren(), 1);
}

TEST_F(Input, withoutAFileThereIsAMessage)
{
    KsInput in;
    ExpectedMessages messages("KsDB::readAll", "no file is open");
    messages.expect("KsDB::readAll", "There is no input");
    EXPECT_EQ(KsDB::readAll(&in), nullptr);
    EXPECT_EQ(KsDB::readAll(nullptr), nullptr);
}
