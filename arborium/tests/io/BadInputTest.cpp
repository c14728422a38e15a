#include "IoTest.h"

#include <algorithm>

#include <sys/stat.h>

class BadInput : public IoTest {};

TEST_F(BadInput, unknownNodeTypeNamesTheNearestAndThePlace)
{
    EXPECT_EQ(errorsOf("Group {\n    Cubb { width 1 }\n}\n"),
              "2:5: unknown node type \"Cubb\"; the nearest is \"Cube\"\n");
    EXPECT_EQ(errorsOf("DEF Name Separatr { }"),
              "1:10: unknown node type \"Separatr\"; the nearest is \"Separator\"\n");
}

TEST_F(BadInput, unknownFieldNamesTheNearestAndTheClass)
{
    EXPECT_EQ(errorsOf("Sphere { raduis 5 }"),
              "1:10: unknown field \"raduis\" of Sphere; the nearest is \"radius\"\n");
    EXPECT_EQ(errorsOf("Sphere { RADIUS 5 }"),
              "1:10: unknown field \"RADIUS\" of Sphere; the nearest is \"radius\"\n");
}

TEST_F(BadInput, theValueOfAnUnknownFieldIsSkippedWhateverItIs)
{
    for (const char* value :
         {"1", "-1 2 3.5e4", "\"a } b\"", "TRUE", "[ 1, 2, \"]\" ]", "(A | B)", "NULL", "USE Other",
          "Cube { width 2 }", "DEF A Cube { }", "1 = Other.radius", ""}) {
        const std::string text = std::string("Sphere { foo ") + value + " radius 7 }";
        EXPECT_EQ(errorsOf(text),
                  "1:10: unknown field \"foo\" of Sphere; the nearest is \"radius\"\n")
            << text;
    }
}

TEST_F(BadInput, aValueOfTheWrongKindSaysWhatCameAndWhatWasExpected)
{
    EXPECT_EQ(errorsOf("Cube {\n width abc }"),
              "2:8: expected a number for the field \"width\" of Cube, met \"abc\"\n");
    EXPECT_EQ(errorsOf("Cube { width \"2\" }"),
              "1:14: expected a number for the field \"width\" of Cube, met the string \"2\"\n");
    EXPECT_EQ(errorsOf("Cube { width }"),
              "1:14: expected a number for the field \"width\" of Cube, met '}'\n");
    EXPECT_EQ(errorsOf("Cube { width 12px }"),
              "1:14: expected a number for the field \"width\" of Cube, met \"12px\"\n");
    EXPECT_EQ(errorsOf("Translation { translation 1 2 }"),
              "1:31: expected a number for the field \"translation\" of Translation, met '}'\n");
    EXPECT_EQ(
        errorsOf("Switch { whichChild 1.5 }"),
        "1:21: expected a whole number for the field \"whichChild\" of Switch, met \"1.5\"\n");
    EXPECT_EQ(
        errorsOf("Font { name 5 }"),
        "1:13: expected a string in double quotes for the field \"name\" of Font, met \"5\"\n");
    EXPECT_EQ(errorsOf("ClipPlane { on MAYBE }"),
              "1:16: expected TRUE or FALSE for the field \"on\" of ClipPlane, met \"MAYBE\"\n");
    EXPECT_EQ(errorsOf("Cube { width 1 2 }"), "1:16: met \"2\", expected a field of Cube or '}'\n");
}

TEST_F(BadInput, aWrongNameOfAnEnumNamesTheNearest)
{
    EXPECT_EQ(errorsOf("PickStyle { style SHAPES }"),
              "1:19: unknown value \"SHAPES\" for the field \"style\"; the nearest is \"SHAPE\"\n");
    EXPECT_EQ(errorsOf("PickStyle { style 2 }"),
              "1:19: expected one of SHAPE, BOUNDING_BOX, UNPICKABLE for the field \"style\" of "
              "PickStyle, met \"2\"\n");
    EXPECT_EQ(errorsOf("Text3 { parts (FRONT | BAK) string \"a\" }"),
              "1:24: unknown value \"BAK\" for the field \"parts\"; the nearest is \"BACK\"\n");
    EXPECT_EQ(errorsOf("Text3 { parts (FRONT BACK) string \"a\" }"),
              "1:22: expected '|' or ')' for the field \"parts\" of Text3, met \"BACK\"\n");
}

TEST_F(BadInput, aNumberOutOfRangeSaysTheRange)
{
    EXPECT_EQ(errorsOf("Switch { whichChild 2147483648 }"),
              "1:21: \"2147483648\" is out of range: expected a whole number from -2147483648 to "
              "2147483647\n");
    EXPECT_EQ(errorsOf("Cube { width 1e39 }"),
              "1:14: \"1e39\" is out of range: expected a number of at most 3.4028235e+38 in "
              "absolute value\n");
    EXPECT_TRUE(parse("Switch { whichChild 2147483647 } Switch { whichChild -2147483648 }"));
    EXPECT_TRUE(parse("Cube { width 3.4028235e+38 }"));
}

TEST_F(BadInput, numbersThatAreNotFiniteAreRefused)
{
    for (const char* number : {"nan", "inf", "-inf", "NaN", "infinity", "-nan"}) {
        EXPECT_EQ(errorsOf(std::string("Cube { width ") + number + " }"),
                  std::string("1:14: \"") + number +
                      "\" is not a finite number: expected a number\n");
    }
}

TEST_F(BadInput, aChildThatItsParentDoesNotHoldIsRefused)
{
    EXPECT_EQ(errorsOf("Cube {\n  Sphere { } }"),
              "2:3: \"Sphere\" cannot stand here: Cube holds no children\n");
    EXPECT_EQ(errorsOf("BaseKit { geomSeparator Cube { } }"),
              "1:25: \"Cube\" cannot stand here; expected a Separator\n");
}

TEST_F(BadInput, aTypeForOthersToDeriveFromCannotBeMade)
{
    const std::string problems = errorsOf("Node { }");
    EXPECT_EQ(
        problems.rfind("1:1: the node type \"Node\" is only there for others to derive from", 0),
        0u)
        << problems;
}

TEST_F(BadInput, useOfAnUnknownNameNamesTheNearest)
{
    EXPECT_EQ(errorsOf("DEF Left Cube { }\nUSE Lift\n"),
              "2:5: no node before this one is called \"Lift\"; the nearest is \"Left\"\n");
    // What stands behind the place of use is not known there.
    EXPECT_EQ(errorsOf("USE Later DEF Later Cube { }"),
              "1:5: no node before this one is called \"Later\"\n");
}

TEST_F(BadInput, aNodeCannotBeUsedWithinItself)
{
    EXPECT_EQ(errorsOf("DEF A Group {\n Group { USE A } }"),
              "2:14: the node \"A\" is not complete here: a node cannot stand below itself\n");
}

TEST_F(BadInput, aNodeOfAnotherTypeCannotBeUsed)
{
    EXPECT_EQ(errorsOf("DEF A Cube { } BaseKit { geomSeparator USE A }"),
              "1:44: the node \"A\" is a Cube and cannot stand here; expected a Separator\n");
}

TEST_F(BadInput, aMissingBraceIsOneErrorAtTheEndThatNamesTheOpeningLine)
{
    EXPECT_EQ(errorsOf("Group {\n  Separator {\n    Cube { }\n"),
              "4:1: the end of the file: the \"{\" of \"Separator\" in line 2 has no \"}\", nor "
              "have 1 around it\n");
    EXPECT_EQ(errorsOf("Cube { width"),
              "1:13: expected a number for the field \"width\" of Cube, met the end of the file; "
              "the \"{\" of \"Cube\" in line 1 has no \"}\"\n");
    EXPECT_EQ(errorsOf("Cubb {\n {"), "1:1: unknown node type \"Cubb\"; the nearest is \"Cube\"\n"
                                      "2:3: the end of the file: the \"{\" in line 1 has no "
                                      "\"}\"\n");
    EXPECT_EQ(errorsOf("Cube"), "1:5: expected \"{\" behind \"Cube\", met the end of the file\n");
}

TEST_F(BadInput, anyTruncationOfAFileIsOneOrMoreErrorsOrAWholeFile)
{
    const std::string text =
        "#Arborium V2.1 ascii\nDEF A Group { # c\n  Text3 { string [ \"a\\\"b\", "
        "\"c\" ] parts (FRONT | BACK) }\n  USE A1\n  DEF \"b c\" Translation "
        "{ translation 1 2 3 = B.translation }\n}\nDEF B Translation { }\n";
    for (std::size_t size = 0; size <= text.size(); ++size) {
        parse(text.substr(0, size));
        const KsRef<KsSeparator> root = parse(text.substr(0, size) + "}");
    }
}

TEST_F(BadInput, braceTooMany)
{
    EXPECT_EQ(errorsOf("Cube { } }\nSphere { }"), "1:10: expected a node, met '}'\n");
}

TEST_F(BadInput, aMissingOpeningBraceIsOneError)
{
    EXPECT_EQ(errorsOf("Group { DEF A Cube width 2 } Sphere { }"),
              "1:20: expected \"{\" behind \"Cube\", met \"width\"\n"
              "1:40: the end of the file: the \"{\" of \"Group\" in line 1 has no \"}\"\n");
}

TEST_F(BadInput, aStringWithoutAnEndIsToldWhereItBegins)
{
    EXPECT_EQ(errorsOf("Font {\n  name \"Tahoma }\n}\n"),
              "2:8: the string that begins here has no closing '\"'\n");
}

TEST_F(BadInput, aFieldBehindTheChildrenIsRefusedAndRead)
{
    EXPECT_EQ(errorsOf("Switch { Cube { } whichChild -3 Cube { width x } }"),
              "1:19: the field \"whichChild\" must stand before the children\n"
              "1:46: expected a number for the field \"width\" of Cube, met \"x\"\n");
}

TEST_F(BadInput, strayCharactersAreToldOneByOne)
{
    EXPECT_EQ(errorsOf("Cube { ] width 2 ' }"), "1:8: met ']', expected a field of Cube or '}'\n"
                                                "1:18: met ''', expected a field of Cube or '}'\n");
    EXPECT_EQ(errorsOf("Cube { $\"a\" width 2 }"),
              "1:8: met \"$\", expected a field of Cube or '}'\n"
              "1:9: met the string \"a\", expected a field of Cube or '}'\n");
    EXPECT_EQ(errorsOf("Cube { \x01 }"),
              "1:8: met the character 0x01, expected a field of Cube or '}'\n");
}

// shows: KsInput::getErrors
TEST_F(BadInput, allErrorsOfAFileAreFoundInOneRun)
{
    EXPECT_EQ(errorsOf("Group {\n"
                       "    Cube { width abc height 2 depth \"x\" }\n"
                       "    Cubb { width 1 }\n"
                       "    Material { diffuseColor [ 1 0 0, nan 0 0 ] ambientColor q }\n"
                       "    USE Nope\n"
                       "}\n"
                       "label \"x\"\n"
                       "Sphere { raduis 1 }\n"),
              "2:18: expected a number for the field \"width\" of Cube, met \"abc\"\n"
              "2:37: expected a number for the field \"depth\" of Cube, met the string \"x\"\n"
              "3:5: unknown node type \"Cubb\"; the nearest is \"Cube\"\n"
              "4:38: \"nan\" is not a finite number: expected a number\n"
              "4:61: expected a number for the field \"ambientColor\" of Material, met \"q\"\n"
              "5:9: no node before this one is called \"Nope\"\n"
              "7:1: expected a node, met \"label\"\n"
              "8:10: unknown field \"raduis\" of Sphere; the nearest is \"radius\"\n");
}

TEST_F(BadInput, columnsCountCharacters)
{
    EXPECT_EQ(errorsOf("#Arborium V2.1 ascii utf8\nFont { name \"\xc3\xa4\xe2\x82\xac\" size x }"),
              "2:23: expected a number for the field \"size\" of Font, met \"x\"\n");
    EXPECT_EQ(errorsOf("#Arborium V2.1 ascii\nFont { name \"\xe4\xf6\" size x }"),
              "2:23: expected a number for the field \"size\" of Font, met \"x\"\n");
    EXPECT_EQ(errorsOf("#Arborium V2.1 ascii\nCube { \xe4 1 }"),
              "2:8: unknown field \"\xc3\xa4\" of Cube; the nearest is \"depth\"\n");
}

TEST_F(BadInput, lineEndsOfAllKindsCount)
{
    for (const char* end : {"\n", "\r\n", "\r"}) {
        const std::string e = end;
        const std::string text = "#Arborium V2.1 ascii" + e + "Group { # comment }" + e + e +
                                 "  Cube { width x }" + e + "}" + e;
        EXPECT_EQ(errorsOf(text),
                  "4:16: expected a number for the field \"width\" of Cube, met \"x\"\n");
    }
}

// shows: KsInput::getNumFurtherErrors
TEST_F(BadInput, onlySoManyErrorsAreKept)
{
    std::string text;
    for (int i = 0; i < 150; ++i) text += "Cubb { }\n";
    const std::string all = errorsOf(text);
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 100);
    EXPECT_EQ(further, 50);
    KsLimits::current().errorsPerFile = 2;
    errorsOf(text);
    EXPECT_EQ(further, 148);

    ExpectedMessages messages("KsDB::readAll", "Cubb", 2);
    messages.expect("KsDB::readAll", "<buffer>: 148 further errors are not shown");
    KsInput in;
    in.setBuffer(text.data(), text.size());
    EXPECT_EQ(KsDB::readAll(&in), nullptr);
}

// shows: KsDB::readAll
TEST_F(BadInput, readAllPostsEachErrorWithItsPlace)
{
    ExpectedMessages messages;
    messages.expect("KsDB::readAll", "<buffer>:1:8: unknown field \"a\" of Cube");
    messages.expect("KsDB::readAll", "<buffer>:1:12: unknown field \"b\" of Cube");
    KsInput in;
    in.setBuffer("Cube { a 1 b 2 }", 16);
    EXPECT_EQ(KsDB::readAll(&in), nullptr);
}

// ---- whole files ------------------------------------------------------------------------------

namespace {
const std::string firstLines = "\"#Arborium V2.1 ascii\", \"#Arborium V2.1 ascii utf8\" or "
                               "\"#Arborium V2.1 binary\"";
} // namespace

class BadFile : public BadInput {
protected:
    std::string errorOfFile(const std::string& content)
    {
        const std::string path = file("bad.arb", content);
        KsInput in;
        EXPECT_TRUE(in.openFile(KbString(path)));
        EXPECT_EQ(KsDB::parse(&in), nullptr);
        EXPECT_EQ(in.getErrors().size(), 1u);
        std::string text = in.hasErrors() ? in.getErrors().front().toString() : "";
        EXPECT_EQ(text.rfind(path + ":", 0), 0u) << text;
        return text.substr(path.size() + 1);
    }
    void expectNotOpened(const std::string& path, const char* why)
    {
        ExpectedMessages messages("KsInput::openFile", why);
        KsInput in;
        EXPECT_FALSE(in.openFile(KbString(path)));
        EXPECT_FALSE(in.isOpen());
        EXPECT_EQ(in.getErrors().size(), 1u);
        EXPECT_EQ(KsDB::parse(&in), nullptr);
    }
};

TEST_F(BadFile, missing)
{
    expectNotOpened((folder() / "no.arb").string(), "no.arb: the file is not found");
    expectNotOpened("no-such-file.arb", "no-such-file.arb: the file is not found in .");
    expectNotOpened("", "the file is not found");
}

// shows: KsInput::openFile
TEST_F(BadFile, missingIsNoErrorWhereItIsAllowed)
{
    KsInput in;
    EXPECT_FALSE(in.openFile("no-such-file.arb", true));
    EXPECT_FALSE(in.hasErrors());
    EXPECT_FALSE(in.isOpen());
    ASSERT_TRUE(in.openFile(KbString(file("there.arb", ascii)), true));
    EXPECT_TRUE(in.isOpen());
}

TEST_F(BadFile, empty)
{
    EXPECT_EQ(errorOfFile(""), "1:1: the file is empty; its first line must be " + firstLines);
}

TEST_F(BadFile, wronglyHeaded)
{
    EXPECT_EQ(errorOfFile("Cube { }\n"),
              "1:1: this is not an Arborium file: the first line must be " + firstLines);
    EXPECT_EQ(errorOfFile("#Arborium V2.1 asci\nCube { }\n"),
              "1:1: the first line \"#Arborium V2.1 asci\" is not known; it must be " + firstLines);
    EXPECT_EQ(errorOfFile("#Arborium V3.0 ascii\nCube { }\n"),
              "1:1: version \"3.0\" of the file format is not known; known are 1.0, 2.0 and 2.1");
    EXPECT_EQ(errorOfFile("#Arborium\n").substr(0, 20), "1:1: the first line ");
}

TEST_F(BadFile, binaryGarbage)
{
    EXPECT_EQ(errorOfFile(std::string("\x7f"
                                      "ELF\0\1\2",
                                      7)),
              "1:1: this is binary data and not an Arborium file: the first line must be " +
                  firstLines);
    EXPECT_EQ(errorOfFile(ascii + std::string("Cube {\n \0 }", 11)),
              "3:2: a zero byte: this is binary data, which an ASCII file cannot hold");
}

TEST_F(BadFile, directoriesDevicesAndPipesAreRefusedAtOnce)
{
    expectNotOpened(folder().string(), "this is a directory, expected a file");
    expectNotOpened("/dev/null", "this is a device or a pipe, expected a file");
    const std::string pipe = (folder() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    expectNotOpened(pipe, "this is a device or a pipe, expected a file");
}

TEST_F(BadFile, theLimitOfTheSize)
{
    KsLimits::current().fileBytes = 40;
    const std::string head = ascii + "Cube { }";
    for (std::size_t size : {39u, 40u}) {
        KsInput in;
        ASSERT_TRUE(
            in.openFile(KbString(file("size.arb", head + std::string(size - head.size(), ' ')))));
        const KsRef<KsSeparator> root(KsDB::parse(&in));
        EXPECT_TRUE(root);
    }
    expectNotOpened(file("size.arb", head + std::string(41 - head.size(), ' ')),
                    "the file has more than the limit of 40 bytes");
}

TEST_F(BadFile, treesReadBeforeAreUntouched)
{
    const KsRef<KsSeparator> good = parse("DEF Kept Group { Cube { width 3 } }");
    ASSERT_TRUE(good);
    const std::string before = written(good);
    errorsOf("DEF Kept Group { Sphere { radius x } }");
    errorsOf("USE Kept");
    EXPECT_EQ(written(good), before);
    EXPECT_EQ(KsNode::getByName("Kept"), good->getChild(0));
}

// shows: KsFieldContainer::set
TEST_F(BadInput, setTellsItsErrors)
{
    const KsRef<KsSeparator> root = parse("Cube { }");
    ExpectedMessages messages("KsFieldContainer::set", "<buffer>:1:7: expected a number");
    EXPECT_FALSE(root->getChild(0)->set("width x height 3"));
    EXPECT_TRUE(root->getChild(0)->set("width 2"));
    EXPECT_EQ(body(written(root)), "\nCube {\n    width 2\n    height 3\n}\n")
        << "also what stood behind the error";
    messages.expect("KsFieldContainer::set", "expected a field of Cube");
    EXPECT_FALSE(root->getChild(0)->set("width 2 }"));
    EXPECT_TRUE(root->getChild(0)->set(nullptr));
}
