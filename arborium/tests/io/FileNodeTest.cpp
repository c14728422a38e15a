#include "IoTest.h"

#include <arborium/base/KsPreferences.h>
#include <arborium/nodes/KsFile.h>
#include <arborium/nodes/KsTexture2.h>
#include <arborium/render/KsDrawList.h>

#include <QImage>

class FileNode : public IoTest {
protected:
    KsRef<KsSeparator> readFile(const std::string& path)
    {
        KsInput in;
        EXPECT_TRUE(in.openFile(KbString(path)));
        KsRef<KsSeparator> root(KsDB::parse(&in));
        errors.clear();
        for (const KsReadError& each : in.getErrors()) errors += each.toString() + "\n";
        return root;
    }
    static int numNodesBelow(KsNode* node)
    {
        const KsChildList* children = node->getChildren();
        int count = 0;
        for (int i = 0; children && i < children->getLength(); ++i)
            count += 1 + numNodesBelow(children->get(i));
        return count;
    }
};

TEST_F(FileNode, readsASceneInPlaceAndWritesItsNameOnly)
{
    file("parts/part.arb", ascii + "Cube { } File { name \"more.arb\" }");
    file("parts/more.arb", ascii + "Sphere { }");
    const std::string text = ascii + "\nFile {\n    name \"parts/part.arb\"\n}\n";
    const KsRef<KsSeparator> root = readFile(file("main.arb", text));
    ASSERT_TRUE(root) << errors;
    // The file, its root, the cube, the inner file, its root and the sphere.
    EXPECT_EQ(numNodesBelow(root), 6);
    EXPECT_EQ(written(root), text);
    const KsRef<KsNode> copy(root->copy());
    EXPECT_EQ(numNodesBelow(copy), 6);
}

TEST_F(FileNode, mayOnlyReadBelowTheFolderOfItsFile)
{
    file("secret.arb", ascii + "Cube { }");
    for (const std::string& name :
         {std::string("../secret.arb"), (folder() / "secret.arb").string()}) {
        const std::string path =
            file("inner/main.arb", ascii + "Group { File { name \"" + name + "\" } }");
        EXPECT_FALSE(readFile(path));
        EXPECT_EQ(errors, path + ":2:21: the file \"" + name +
                              "\" lies outside of the folders that may be read\n");
    }
    // A link out of the folder leads out of it.
    std::filesystem::create_symlink(folder() / "secret.arb", folder() / "inner/link.arb");
    EXPECT_FALSE(readFile(file("inner/main.arb", ascii + "File { name \"link.arb\" }")));
    EXPECT_NE(errors.find("lies outside"), std::string::npos) << errors;
    // A directory of the list may be read.
    KsInput::addDirectoryLast(KbString(folder().string()));
    EXPECT_TRUE(readFile(file("inner/main.arb", ascii + "File { name \"secret.arb\" }"))) << errors;
    KsInput::removeDirectory(KbString(folder().string()));
}

TEST_F(FileNode, cyclesAreRefused)
{
    const std::string a = file("a.arb", ascii + "Group { File { name \"b.arb\" } }");
    file("b.arb", ascii + "File { name \"a.arb\" }");
    EXPECT_FALSE(readFile(a));
    EXPECT_NE(errors.find("b.arb:2:13: the file \"" + a + "\" cannot stand in itself"),
              std::string::npos)
        << errors;
    const std::string self = file("self.arb", ascii + "File { name \"self.arb\" }");
    EXPECT_FALSE(readFile(self));
    EXPECT_EQ(errors, self + ":2:13: the file \"" + self + "\" cannot stand in itself\n");
}

TEST_F(FileNode, errorsBearThePlaceInTheirOwnFile)
{
    const std::string part = file("part.arb", ascii + "\n  Cubb { }");
    const std::string path =
        file("main.arb", ascii + "File { name \"part.arb\" } Cube { width x } File { name "
                                 "\"none.arb\" }");
    EXPECT_FALSE(readFile(path));
    EXPECT_EQ(errors, part + ":3:3: unknown node type \"Cubb\"; the nearest is \"Cube\"\n" + path +
                          ":2:39: expected a number for the field \"width\" of Cube, met \"x\"\n" +
                          path + ":2:55: the file \"none.arb\" is not found\n");
}

TEST_F(FileNode, directoriesAndPipesAreRefused)
{
    std::filesystem::create_directories(folder() / "sub");
    EXPECT_FALSE(readFile(file("main.arb", ascii + "File { name \"sub\" }")));
    EXPECT_NE(errors.find("is no regular file"), std::string::npos) << errors;
}

TEST_F(FileNode, theLimitsHoldForAllFilesTogether)
{
    for (int i = 0; i < 600; ++i) {
        file("f" + std::to_string(i) + ".arb",
             ascii + "Group { File { name \"f" + std::to_string(i + 1) + ".arb\" } }");
    }
    EXPECT_FALSE(readFile((folder() / "f0.arb").string()));
    EXPECT_NE(errors.find("the limit of 512 levels of nesting"), std::string::npos) << errors;
}

TEST_F(FileNode, theNumberOfFilesAndTheirBytesAreLimited)
{
    // Each one reads the next one twice: a billion files in the end.
    for (int i = 0; i < 30; ++i) {
        const std::string next = "File { name \"f" + std::to_string(i + 1) + ".arb\" } ";
        file("f" + std::to_string(i) + ".arb", ascii + next + next);
    }
    file("f30.arb", ascii);
    KsLimits::current().filesPerFile = 100;
    EXPECT_FALSE(readFile((folder() / "f0.arb").string()));
    EXPECT_NE(errors.find("the file includes more than the limit of 100 files"), std::string::npos)
        << errors;

    file("long.arb", ascii + std::string(1000, '\n'));
    const std::string part = "File { name \"long.arb\" }\n";
    const std::string two = file("two.arb", ascii + part + part);
    const std::string three = file("three.arb", ascii + part + part + part);
    KsLimits::current().fileBytes = 2500;
    EXPECT_TRUE(readFile(two)) << errors;
    EXPECT_FALSE(readFile(three));
    EXPECT_EQ(errors, three +
                          ":4:13: the file has, with those that it includes, more than the limit "
                          "of 2500 bytes\n");
}

// shows: KsFile, KsFile::load, KsFile::getFullName
TEST_F(FileNode, aNameSetByHandIsReadWhenAsked)
{
    const std::string path = file("part.arb", ascii + "Cube { }");
    const KsRef<KsFile> node(new KsFile);
    EXPECT_TRUE(node->load());
    node->name = KbString(path);
    EXPECT_EQ(numNodesBelow(node), 0);
    EXPECT_TRUE(node->load()) << "a program may name any file";
    EXPECT_EQ(numNodesBelow(node), 2);
    EXPECT_EQ(node->getFullName(), KbString(std::filesystem::canonical(path).string()));
    node->name = KbString("part.arb");
    {
        ExpectedMessages messages("KsFile::load", "part.arb: the file \"part.arb\" is not found");
        EXPECT_FALSE(node->load());
    }
    EXPECT_EQ(numNodesBelow(node), 0);
    KsInput::addDirectoryLast(KbString(folder().string()));
    EXPECT_TRUE(node->load());
    EXPECT_EQ(numNodesBelow(node), 2);
    node->name = KbString();
    EXPECT_TRUE(node->load());
    EXPECT_EQ(numNodesBelow(node), 0);
    KsInput::removeDirectory(KbString(folder().string()));
    EXPECT_TRUE(node->set(("name \"" + path + "\"").c_str()));
    EXPECT_TRUE(node->load()) << "the text of a program is its own";
}

TEST_F(FileNode, aNameThatWasReadStaysConfinedWhenTheProgramLoadsItAgain)
{
    file("part.arb", ascii + "Cube { }");
    file("inner/part.arb", ascii + "Cube { } Cube { }");
    const KsRef<KsSeparator> root =
        readFile(file("inner/main.arb", ascii + "File { name \"part.arb\" }"));
    ASSERT_TRUE(root) << errors;
    auto* node = static_cast<KsFile*>(root->getChild(0));
    EXPECT_TRUE(node->load()) << "it is still found in the folder of its file";
    EXPECT_EQ(numNodesBelow(node), 3);
    std::filesystem::remove(folder() / "inner/part.arb");
    std::filesystem::create_symlink(folder() / "part.arb", folder() / "inner/part.arb");
    {
        ExpectedMessages messages("KsFile::load", "lies outside of the folders that may be read");
        EXPECT_FALSE(node->load());
    }
    node->name = KbString((folder() / "part.arb").string());
    EXPECT_TRUE(node->load());
    EXPECT_EQ(numNodesBelow(node), 2);
}

// shows: KsSFFilePathString, KsSFFilePathString::setValue, KsSFFilePathString::isFromFile,
// KsSFFilePathString::findFile, KsSFFilePathString::operator=
TEST_F(FileNode, aNameIsAsTrustedAsWhoGaveItWhateverRoadItTakes)
{
    const std::string path = file("outer.arb", ascii);
    const std::string inner = file("inner/near.arb", ascii);
    const auto leadsTo = [](const KsSFFilePathString& name) {
        std::string problem;
        const KbString found = name.findFile(problem);
        EXPECT_EQ(found.isEmpty(), !problem.empty());
        return found.toUtf8();
    };
    const KsRef<KsSeparator> root = readFile(
        file("inner/main.arb", ascii + "DEF A Texture2 { filename \"" + path +
                                   "\" } Texture2 { filename \"near.arb\" = A.filename }"));
    ASSERT_TRUE(root) << errors;
    auto* first = static_cast<KsTexture2*>(root->getChild(0));
    auto* connected = static_cast<KsTexture2*>(root->getChild(1));
    const KsRef<KsSeparator> copy(static_cast<KsSeparator*>(root->copy()));
    const KsRef<KsTexture2> own(new KsTexture2);
    own->filename = first->filename;
    for (KsTexture2* each :
         {first, connected, static_cast<KsTexture2*>(copy->getChild(1)), own.get()}) {
        EXPECT_EQ(each->filename, KbString(path));
        EXPECT_TRUE(each->filename.isFromFile());
        EXPECT_EQ(leadsTo(each->filename), "");
        each->filename.touch();
        EXPECT_EQ(leadsTo(each->filename), "") << "a touch is no change";
    }
    own->filename = KbString(path);
    EXPECT_FALSE(own->filename.isFromFile());
    EXPECT_EQ(leadsTo(own->filename), path);
    connected->filename.disconnect();
    connected->filename.connectFrom(&own->filename);
    EXPECT_EQ(leadsTo(connected->filename), path) << "the program lets it";

    // What was read goes on being looked for where it was read.
    ASSERT_TRUE(first->filename.isFromFile());
    const KsRef<KsSeparator> near =
        readFile(file("inner/more.arb", ascii + "Texture2 { filename \"near.arb\" }"));
    EXPECT_EQ(leadsTo(static_cast<KsTexture2*>(near->getChild(0))->filename), inner);
    own->filename.setValue("near.arb");
    EXPECT_EQ(leadsTo(own->filename), "") << "the program means a file of its own directories";
}

// shows: KsInput::setConfined, KsInput::isConfined
TEST_F(FileNode, mayReadAnywhereWhereTheProgramTrustsItsFiles)
{
    const std::string path = file("secret.arb", ascii + "Cube { }");
    const std::string far = file("inner/main.arb", ascii + "File { name \"../secret.arb\" }");
    EXPECT_TRUE(KsInput::isConfined());
    EXPECT_FALSE(readFile(far));
    KsInput::setConfined(false);
    EXPECT_FALSE(KsInput::isConfined());
    EXPECT_TRUE(readFile(far)) << errors;
    EXPECT_TRUE(readFile(file("inner/other.arb", ascii + "File { name \"" + path + "\" }")))
        << errors;
    KsInput::setConfined(true);
    EXPECT_FALSE(readFile(far));
}

TEST_F(FileNode, namesBeginAtHomeOrAtASettingAndReachNoShell)
{
    file("parts/part.arb", ascii + "Cube { }");
    KsPreferences::setString("FILE_NODE_PARTS", KbString((folder() / "parts").string()));
    KsPreferences::setString("HOME", KbString(folder().string()));
    for (const char* name : {"$FILE_NODE_PARTS/part.arb", "~/parts/part.arb"})
        EXPECT_TRUE(
            readFile(file("main.arb", ascii + "File { name \"" + std::string(name) + "\" }")))
            << errors;
    for (const char* name : {"`echo parts/part.arb`", "$(echo parts/part.arb)", "parts/*.arb"})
        EXPECT_FALSE(
            readFile(file("main.arb", ascii + "File { name \"" + std::string(name) + "\" }")))
            << name;
    // What a setting says is confined like anything else.
    KsPreferences::setString("FILE_NODE_PARTS", "/etc");
    EXPECT_FALSE(readFile(file("main.arb", ascii + "File { name \"$FILE_NODE_PARTS/passwd\" }")));
    EXPECT_NE(errors.find("lies outside"), std::string::npos) << errors;
    KsPreferences::unset("FILE_NODE_PARTS");
    KsPreferences::unset("HOME");
}

// shows: KsTexture2::getImage, KsTextureImage
TEST_F(FileNode, imagesThatAFileNamesAreConfinedToo)
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    file("inner/readme", "");
    ASSERT_TRUE(image.save(QString::fromStdString((folder() / "inner/red.png").string())));
    ASSERT_TRUE(image.save(QString::fromStdString((folder() / "outer.png").string())));
    const auto imageOf = [this](const std::string& name) {
        const KsRef<KsSeparator> root =
            readFile(file("inner/main.arb", ascii + "Texture2 { filename \"" + name + "\" }"));
        return static_cast<KsTexture2*>(root->getChild(0))->getImage();
    };
    const std::shared_ptr<const KsTextureImage> red = imageOf("red.png");
    ASSERT_TRUE(red);
    EXPECT_EQ(red->width, 3);
    EXPECT_EQ(red->height, 2);
    KsPreferences::setString("FILE_NODE_FOLDER", KbString((folder() / "inner").string()));
    EXPECT_TRUE(imageOf("$FILE_NODE_FOLDER/red.png"));
    KsPreferences::unset("FILE_NODE_FOLDER");
    for (const std::string& name :
         {std::string("../outer.png"), (folder() / "outer.png").string()}) {
        {
            ExpectedMessages messages("KsTexture2::getImage", "lies outside of the folders");
            EXPECT_FALSE(imageOf(name));
        }
        KsInput::setConfined(false);
        EXPECT_TRUE(imageOf(name));
        KsInput::setConfined(true);
    }
    EXPECT_EQ(imageOf("red.png"), red) << "an image that is there is not read again";
    image.fill(Qt::blue);
    ASSERT_TRUE(
        image.scaled(5, 5).save(QString::fromStdString((folder() / "inner/red.png").string())));
    const std::shared_ptr<const KsTextureImage> changed = imageOf("red.png");
    ASSERT_TRUE(changed);
    EXPECT_EQ(changed->width, 5);
    EXPECT_EQ(red->width, 3);
    // A program may name any image.
    KsPreferences::setString("FILE_NODE_FOLDER", KbString(folder().string()));
    for (const std::string& name :
         {(folder() / "outer.png").string(), std::string("$FILE_NODE_FOLDER/outer.png")}) {
        const KsRef<KsTexture2> own(new KsTexture2);
        own->filename = KbString(name);
        EXPECT_TRUE(own->getImage()) << name;
    }
    KsPreferences::unset("FILE_NODE_FOLDER");
    {
        ExpectedMessages messages("KsTexture2::getImage", "is not found");
        EXPECT_FALSE(imageOf("blue.png"));
    }
    KsInput::addDirectoryLast(KbString(folder().string()));
    EXPECT_TRUE(imageOf("outer.png"));
    KsInput::removeDirectory(KbString(folder().string()));
}
