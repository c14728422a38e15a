// What surrounds a program fails: a full device, a folder without permission, a folder that is
// gone. There is a message, and what was there before is as it was.

#include "ChildProcess.h"
#include "IoTest.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/nodes/KsCube.h>

#include <algorithm>
#include <vector>

namespace {

/// What was posted, as a text: of use in a process without the guard of the tests.
class Heard {
public:
    Heard() { KsDebugError::setHandler(&take, this); }
    std::string expect(const std::string& part, int times = 1) const
    {
        int found = 0;
        for (const std::string& each : m_messages) found += each.find(part) != std::string::npos;
        if (found == times && static_cast<int>(m_messages.size()) == times) return "";
        std::string all = "expected \"" + part + "\", heard:";
        for (const std::string& each : m_messages) all += "\n" + each;
        return all;
    }

private:
    static void take(void* data, KsDebugError::Severity, const char* where, const char* text)
    {
        static_cast<Heard*>(data)->m_messages.push_back(std::string(where) + ": " + text);
    }
    std::vector<std::string> m_messages;
};

class Failing : public IoTest {
protected:
    Failing()
    {
        for (int i = 0; i < 200; ++i) {
            auto* cube = new KsCube;
            cube->width = static_cast<float>(i);
            scene->addChild(cube);
        }
    }
    static bool save(KsNode* root, const std::string& path, bool binary = false)
    {
        KsOutput out;
        out.setBinary(binary);
        if (!out.openFile(KbString(path))) return false;
        KsWriteAction action(&out);
        action.apply(root);
        return out.closeFile();
    }
    std::vector<std::string> list()
    {
        std::vector<std::string> names;
        for (const auto& each : std::filesystem::directory_iterator(folder()))
            names.push_back(each.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    static std::string contentOf(const std::string& path)
    {
        std::string bytes;
        KbFileHelper::readWholeFile(KbString(path), 1 << 20, bytes);
        return bytes;
    }
    KsRef<KsSeparator> scene{new KsSeparator};
};

} // namespace

TEST_F(Failing, aFullDeviceLeavesTheOldFileAndSaysWhy)
{
    const std::string path = file("scene.arb", ascii + "Cube { width 3 }\n");
    const std::string before = contentOf(path);
    for (const bool binary : {false, true}) {
        EXPECT_EQ(inAChildProcess([&]() -> std::string {
                      fillTheDevice(1000);
                      const Heard heard;
                      if (save(scene, path, binary)) return "it was written";
                      return heard.expect("KsOutput::closeFile: " + path + ": ");
                  }),
                  "");
        EXPECT_EQ(contentOf(path), before);
        EXPECT_EQ(list(), std::vector<std::string>{"scene.arb"}) << "the temporary file is left";
    }
    // With room again it is written.
    EXPECT_TRUE(save(scene, path));
    EXPECT_EQ(contentOf(path), written(scene));
}

TEST_F(Failing, whatCouldNotBeSavedCanBeSavedElsewhere)
{
    const std::string path = file("scene.arb", "old");
    EXPECT_EQ(inAChildProcess([&]() -> std::string {
                  fillTheDevice(1000);
                  const Heard heard;
                  KsOutput out;
                  out.openFile(KbString(path));
                  KsWriteAction action(&out);
                  action.apply(scene);
                  if (out.closeFile()) return "it was written";
                  return out.getBuffer() == written(scene) ? "" : "the text is lost";
              }),
              "");
}

TEST_F(Failing, theDeviceThatIsAlwaysFullIsNoFile)
{
    ExpectedMessages messages("KsOutput::openFile", "/dev/full: this is a device or a pipe");
    EXPECT_FALSE(save(scene, "/dev/full"));
}

TEST_F(Failing, aFolderWithoutPermissionIsToldBeforeAnythingIsWritten)
{
    const std::string path = file("closed/scene.arb", "old");
    const std::filesystem::path closed = folder() / "closed";
    std::filesystem::permissions(folder(), std::filesystem::perms(0755));
    std::filesystem::permissions(closed, std::filesystem::perms(0555));
    EXPECT_EQ(inAChildProcess([&]() -> std::string {
                  if (!becomeNobody()) return "the rights cannot be given up";
                  const Heard heard;
                  if (save(scene, path)) return "it was written";
                  return heard.expect("KsOutput::openFile: " + path +
                                      ": its directory cannot be written to");
              }),
              "");
    EXPECT_EQ(contentOf(path), "old");
    std::filesystem::permissions(closed, std::filesystem::perms(0755));
}

TEST_F(Failing, aFileWithoutPermissionIsNotReplaced)
{
    const std::string path = file("scene.arb", "old");
    std::filesystem::permissions(folder(), std::filesystem::perms(0777));
    std::filesystem::permissions(path, std::filesystem::perms(0444));
    EXPECT_EQ(inAChildProcess([&]() -> std::string {
                  if (!becomeNobody()) return "the rights cannot be given up";
                  const Heard heard;
                  if (save(scene, path)) return "it was written";
                  return heard.expect(path + ": Permission denied");
              }),
              "");
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(list(), std::vector<std::string>{"scene.arb"});
}

TEST_F(Failing, whatMayNotBeReadIsAnErrorAtOnce)
{
    const std::string path = file("scene.arb", ascii + "Cube { }");
    const std::string outer = file("outer.arb", ascii + "File { name \"scene.arb\" }");
    std::filesystem::permissions(folder(), std::filesystem::perms(0755));
    std::filesystem::permissions(path, std::filesystem::perms(0));
    EXPECT_EQ(inAChildProcess([&]() -> std::string {
                  if (!becomeNobody()) return "the rights cannot be given up";
                  Heard heard;
                  KsInput in;
                  if (in.openFile(KbString(path))) return "it was opened";
                  return heard.expect("KsInput::openFile: " + path + ": the file cannot be read");
              }),
              "");
    EXPECT_EQ(inAChildProcess([&]() -> std::string {
                  if (!becomeNobody()) return "the rights cannot be given up";
                  KsInput in;
                  if (!in.openFile(KbString(outer))) return "it was not opened";
                  const KsRef<KsSeparator> root(KsDB::parse(&in));
                  if (root || in.getErrors().size() != 1) return "there is no error";
                  const std::string error = in.getErrors()[0].toString();
                  return error.find("cannot be read") != std::string::npos ? "" : error;
              }),
              "");
}

TEST_F(Failing, aFolderThatIsGoneByTheEndIsTold)
{
    const std::string path = file("going/scene.arb", "old");
    KsOutput out;
    ASSERT_TRUE(out.openFile(KbString(path)));
    KsWriteAction action(&out);
    action.apply(scene);
    std::filesystem::remove_all(folder() / "going");
    ExpectedMessages messages("KsOutput::closeFile", "No such file or directory");
    EXPECT_FALSE(out.closeFile());
}
