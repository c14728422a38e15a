// The OpenGL context goes away: given up by the program, or lost by the driver. What was shown is
// shown again.

#include "MessageGuard.h"

#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <string>

#include <dlfcn.h>

namespace {

/// A driver that says so many times that it has lost the context, where it can be asked at all.
class LosingDriver {
public:
    LosingDriver()
    {
        for (const char* name :
             {"epoxy_glGetGraphicsResetStatus", "epoxy_glGetGraphicsResetStatusARB"}) {
            auto* slot = static_cast<void**>(dlsym(RTLD_DEFAULT, name));
            if (!slot) continue;
            m_slots.emplace_back(slot, *slot);
            *slot = reinterpret_cast<void*>(&ask);
        }
    }
    ~LosingDriver()
    {
        for (const auto& each : m_slots) *each.first = each.second;
    }
    static bool canBeAsked()
    {
        const KsGLContext::Current current;
        const auto version = reinterpret_cast<int (*)()>(dlsym(RTLD_DEFAULT, "epoxy_gl_version"));
        const auto has =
            reinterpret_cast<bool (*)(const char*)>(dlsym(RTLD_DEFAULT, "epoxy_has_gl_extension"));
        return version() >= 45 || has("GL_KHR_robustness") || has("GL_ARB_robustness");
    }
    static int losses;
    static int questions;

private:
    static unsigned ask()
    {
        constexpr unsigned guilty = 0x8253;
        ++questions;
        if (losses == 0) return 0;
        --losses;
        return guilty;
    }
    std::vector<std::pair<void**, void*>> m_slots;
};
int LosingDriver::losses = 0;
int LosingDriver::questions = 0;

class LostContext : public testing::Test {
protected:
    void SetUp() override
    {
        KsDB::init();
        if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
        // Of each kind something: small and large meshes, an image, text, lines.
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(qRgb(0, 200, 0));
        ASSERT_TRUE(image.save(folder.filePath("image.png")));
        KsInput::addDirectoryFirst(KbString(folder.path().toStdString()));
        const std::string text = "#Arborium V2.1 ascii\n"
                                 "OrthographicCamera { position 0 0 10 height 8 }\n"
                                 "Cube { }\n"
                                 "Translation { translation 2 0 0 }\n"
                                 "Material { diffuseColor 1 0 0 transparency 0.5 } Sphere { }\n"
                                 "Translation { translation -4 2 0 } Text3 { string \"text\" }\n"
                                 "Translation { translation 0 -3 0 }\n"
                                 "Texture2 { filename \"image.png\" }\n"
                                 "Coordinate3 { point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0 ] }\n"
                                 "FaceSet { numVertices 4 }\n"
                                 "IndexedLineSet { coordIndex [ 0, 2, -1 ] }\n";
        KsInput in;
        in.setBuffer(text.data(), text.size());
        scene = KsDB::readAll(&in);
        ASSERT_TRUE(scene);
        ASSERT_TRUE(renderer.render(scene));
        picture = renderer.getImage();
    }
    void TearDown() override
    {
        renderer.releaseScene();
        scene.reset();
        KsInput::removeDirectory(KbString(folder.path().toStdString()));
        KsDB::finish();
    }
    bool drawAgain()
    {
        scene->touch();
        return renderer.render(scene);
    }
    static std::vector<std::uint32_t> slider()
    {
        const KbColor grey(0.5f, 0.5f, 0.5f);
        KsGL::setRoad(KsGL::OPENGL);
        KsGL::Target target(20, 10, 1, &grey);
        KsGL::setRoad(KsGL::BEST);
        KsGL::color3f(1, 0, 0);
        KsGL::rects(2, 2, 8, 8);
        KsGL::color3f(0, 0, 1);
        KsGL::rects(10, 2, 14, 6);
        std::vector<std::uint32_t> argb;
        target.finish(argb);
        return argb;
    }

    const QTemporaryDir folder;
    KsRef<KsSeparator> scene;
    KsOffscreenRenderer renderer{KbViewportRegion(64, 64)};
    std::vector<std::uint8_t> picture;
};

} // namespace

// shows: KsGLContext::release, KsGLContext::getNumber
TEST_F(LostContext, picturesAreTheSameInANewOne)
{
    const std::uint64_t number = KsGLContext::getNumber();
    EXPECT_GT(number, 0u);
    const std::vector<std::uint32_t> bar = slider();
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(KsGLContext::release());
        EXPECT_TRUE(drawAgain());
        EXPECT_EQ(renderer.getImage(), picture);
        EXPECT_EQ(slider(), bar);
    }
    EXPECT_EQ(KsGLContext::getNumber(), number + 3);
    KsOffscreenRenderer other(KbViewportRegion(64, 64));
    EXPECT_TRUE(other.render(scene));
    EXPECT_EQ(other.getImage(), picture);
}

TEST_F(LostContext, isKeptWhileItIsInUse)
{
    const KsGLContext::Current current;
    EXPECT_TRUE(current);
    EXPECT_FALSE(KsGLContext::release());
    EXPECT_FALSE(KsGLContext::isLost());
}

TEST_F(LostContext, aRendererMayDieAfterItsContext)
{
    auto other = std::make_unique<KsOffscreenRenderer>(KbViewportRegion(8, 8));
    EXPECT_TRUE(other->render(scene));
    EXPECT_TRUE(KsGLContext::release());
    other.reset();
    EXPECT_TRUE(drawAgain());
    EXPECT_EQ(renderer.getImage(), picture);
}

// shows: KsGLContext::isLost, KsGLContext::releaseLost
TEST_F(LostContext, duringAFrameTheFrameIsDrawnOnceMore)
{
    const LosingDriver driver;
    if (!LosingDriver::canBeAsked()) GTEST_SKIP() << "the driver cannot be asked";
    EXPECT_TRUE(drawAgain());
    EXPECT_GT(LosingDriver::questions, 0);
    LosingDriver::losses = 1;
    {
        const KsGLContext::Current current;
        EXPECT_TRUE(KsGLContext::isLost());
        EXPECT_FALSE(KsGLContext::isLost());
    }
    LosingDriver::losses = 1;
    {
        ExpectedMessages messages("KsGLContext::releaseLost", "was lost");
        EXPECT_TRUE(drawAgain());
        EXPECT_EQ(renderer.getImage(), picture);
    }
    // A driver that loses it each time gives the background.
    LosingDriver::losses = 2;
    {
        ExpectedMessages messages("KsGLContext::releaseLost", "was lost", 2);
        EXPECT_FALSE(drawAgain());
        EXPECT_EQ(renderer.getImage(), std::vector<std::uint8_t>([] {
                      std::vector<std::uint8_t> black(64 * 64 * 4, 0);
                      for (std::size_t i = 3; i < black.size(); i += 4) black[i] = 255;
                      return black;
                  }()));
    }
    EXPECT_TRUE(drawAgain());
    EXPECT_EQ(renderer.getImage(), picture);
}

TEST_F(LostContext, duringABarItIsDrawnWithoutOpenGL)
{
    const LosingDriver driver;
    if (!LosingDriver::canBeAsked()) GTEST_SKIP() << "the driver cannot be asked";
    const std::vector<std::uint32_t> bar = slider();
    EXPECT_GT(LosingDriver::questions, 0);
    LosingDriver::losses = 1;
    ExpectedMessages messages("KsGLContext::releaseLost", "was lost");
    EXPECT_EQ(slider(), bar);
    EXPECT_EQ(slider(), bar);
    EXPECT_TRUE(drawAgain());
    EXPECT_EQ(renderer.getImage(), picture);
}
