// A viewer where there is no OpenGL, and one whose context goes away while it is shown.

#include "MessageGuard.h"

#include <arborium/base/KsPreferences.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/qt/KsQtViewer.h>
#include <arborium/render/KsGLContext.h>

#include <gtest/gtest.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <memory>

namespace {

class ViewerAndContext : public testing::Test {
protected:
    void SetUp() override
    {
        KsDB::init();
        scene = new KsSeparator;
        auto* callback = new KsEventCallback;
        callback->addEventCallback(
            KsMouseButtonEvent::getClassTypeId(),
            [](void* data, KsEventCallback*) { ++*static_cast<int*>(data); }, &heard);
        scene->addChild(callback);
        material = new KsMaterial;
        material->diffuseColor.setValue(KbColor(1, 0, 0));
        scene->addChild(material);
        scene->addChild(new KsCube);
    }
    void TearDown() override
    {
        viewer.reset();
        scene.reset();
        KsDB::finish();
    }
    void show()
    {
        viewer = std::make_unique<KsQtViewer>();
        viewer->resize(200, 100);
        viewer->setSceneGraph(scene);
        viewer->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(viewer.get()));
        QCoreApplication::processEvents();
    }
    QImage picture() const { return viewer->grab().toImage(); }

    int heard = 0;
    KsRef<KsSeparator> scene;
    KsMaterial* material = nullptr;
    std::unique_ptr<KsQtViewer> viewer;
};

bool isPlain(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 1; x < image.width(); ++x)
            if (image.pixel(x, y) != image.pixel(0, y)) return false;
    return true;
}

/// Whether the words on the background are all that is shown: nothing has the cube's colour.
bool isANote(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qRed(image.pixel(x, y)) > qBlue(image.pixel(x, y)) + 40) return false;
    return !isPlain(image);
}

} // namespace

TEST_F(ViewerAndContext, withoutOpenGLANoteIsShownAndTheSceneStillHears)
{
    KsPreferences::setString("ARBORIUM_NO_GL", "1");
    ExpectedMessages messages("KsGLContext::isAvailable", "not drawn");
    show();
    EXPECT_TRUE(isANote(picture()));
    QTest::mouseClick(viewer.get(), Qt::LeftButton, {}, QPoint(100, 50));
    EXPECT_EQ(heard, 2);
    material->diffuseColor.setValue(KbColor(0, 1, 0));
    QCoreApplication::processEvents();
    viewer->resize(120, 80);
    QCoreApplication::processEvents();
    EXPECT_TRUE(isANote(picture()));
}

TEST_F(ViewerAndContext, whatIsShownIsShownAgainInANewContext)
{
    if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    show();
    const QImage before = picture();
    ASSERT_FALSE(isPlain(before));
    ASSERT_FALSE(isANote(before));
    ASSERT_TRUE(KsGLContext::release());
    // Nothing changed: the picture that there is stays.
    EXPECT_EQ(picture(), before);
    scene->touch();
    QCoreApplication::processEvents();
    EXPECT_EQ(picture(), before);
    QTest::mouseClick(viewer.get(), Qt::LeftButton, {}, QPoint(100, 50));
    EXPECT_EQ(heard, 2);
}
