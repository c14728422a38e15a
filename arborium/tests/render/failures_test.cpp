// What a picture needs fails: an image that cannot be read, a file that cannot be written. There is
// a message and a sensible picture.

#include "ChildProcess.h"
#include "MessageGuard.h"

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsTexture2.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <string>

#include <sys/stat.h>

namespace {

void hear(void* data, KsDebugError::Severity, const char* where, const char* text)
{
    *static_cast<std::string*>(data) += std::string(where) + ": " + text + "\n";
}

class FailingPictures : public testing::Test {
protected:
    void SetUp() override { KsDB::init(); }
    void TearDown() override
    {
        renderer.releaseScene();
        scene.reset();
        KsInput::removeDirectory(path(""));
        KsDB::finish();
    }
    KbString path(const QString& name) const
    {
        return KbString(folder.filePath(name).toStdString());
    }
    void make(const QString& name, const QByteArray& bytes)
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    /// A red face, with an image on it if one is named.
    void show(const std::string& image)
    {
        const std::string text =
            "#Arborium V2.1 ascii\n"
            "OrthographicCamera { position 0 0 10 height 2 }\n"
            "LightModel { model BASE_COLOR }\n"
            "BaseColor { rgb 1 0 0 }\n" +
            (image.empty() ? "" : "Texture2 { filename \"" + image + "\" }\n") +
            "Coordinate3 { point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0 ] }\nFaceSet { numVertices 4 }\n";
        KsInput in;
        in.setBuffer(text.data(), text.size());
        scene = KsDB::readAll(&in);
        ASSERT_TRUE(scene);
        renderer.render(scene);
    }
    bool isRed() const
    {
        const auto& image = renderer.getImage();
        const std::size_t middle = (16 * 32 + 16) * 4;
        return image[middle] == 255 && image[middle + 1] == 0 && image[middle + 2] == 0;
    }

    const QTemporaryDir folder;
    KsRef<KsSeparator> scene;
    KsOffscreenRenderer renderer{KbViewportRegion(32, 32)};
};

} // namespace

TEST_F(FailingPictures, anImageThatCannotBeReadLeavesTheColourAndOneMessage)
{
    if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    KsInput::addDirectoryFirst(path(""));
    make("broken.png", "\x89PNG\r\n\x1a\n");
    make("text.png", "not an image at all");
    make("empty.png", "");
    ASSERT_TRUE(QDir(folder.path()).mkdir("folder.png"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder.filePath("pipe.png")).constData(), 0600), 0);
    for (const char* name :
         {"missing.png", "broken.png", "text.png", "empty.png", "folder.png", "pipe.png"}) {
        ExpectedMessages messages("KsTexture2::getImage", name);
        show(name);
        EXPECT_TRUE(isRed()) << name;
        scene->touch();
        renderer.render(scene);
        EXPECT_TRUE(isRed()) << name;
    }
    KsLimits::current().fileBytes = 3;
    ExpectedMessages messages("KsTexture2::getImage", "too large");
    show("text.png");
    EXPECT_TRUE(isRed());
    KsLimits::current() = KsLimits();
}

TEST_F(FailingPictures, anImageWithoutPermissionIsNoneAndOneMessage)
{
    make("secret.png", "any");
    ASSERT_EQ(::chmod(QFile::encodeName(folder.filePath("secret.png")).constData(), 0), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
    // Nothing is drawn in the other process: what draws does not outlive a fork.
    EXPECT_EQ(inAChildProcess([&]() -> std::string {
                  if (!becomeNobody()) return "the rights cannot be given up";
                  std::string heard;
                  KsDebugError::setHandler(&hear, &heard);
                  const KsRef<KsTexture2> texture(new KsTexture2);
                  texture->filename = path("secret.png");
                  if (texture->getImage() || texture->getImage()) return "there is an image";
                  const std::string name = path("secret.png").toUtf8();
                  const std::string wanted = "KsTexture2::getImage: No texture from \"" + name +
                                             "\": the file cannot be read\n";
                  return heard == wanted ? "" : "heard: " + heard;
              }),
              "");
}

TEST_F(FailingPictures, aPictureOnAFullDeviceLeavesTheOldOne)
{
    show("");
    make("picture.png", "old");
    EXPECT_EQ(inAChildProcess([&]() -> std::string {
                  fillTheDevice(16);
                  std::string heard;
                  KsDebugError::setHandler(&hear, &heard);
                  if (renderer.writeToFile(path("picture.png"))) return "it was written";
                  return heard.find("KsOffscreenRenderer::writeToFile: ") == 0 ? ""
                                                                               : "heard: " + heard;
              }),
              "");
    QFile file(folder.filePath("picture.png"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList{"picture.png"});
}
