// How the viewer moves its camera, and what a window of another size or a finer screen changes.

#include "ViewerScene.h"

#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QProcess>

namespace {

class ViewerCamera : public ViewerScene {
protected:
    /// A cube at a place.
    void addCube(float x, float y, float z)
    {
        auto* place = new KsSeparator;
        auto* shift = new KsTranslation;
        shift->translation = KbVec3f(x, y, z);
        place->addChild(shift);
        place->addChild(new KsCube);
        scene->addChild(place);
    }
    /// Takes the place of the camera with parallel rays.
    KsPerspectiveCamera* usePerspective()
    {
        auto* deep = new KsPerspectiveCamera;
        deep->position = KbVec3f(0, 0, 20);
        deep->heightAngle = 2 * std::atan(5.0f / 20);
        deep->nearDistance = 10.0f;
        deep->farDistance = 40.0f;
        deep->focalDistance = 20.0f;
        scene->replaceChild(camera, deep);
        return deep;
    }
    static bool isNear(const KbVec3f& a, const KbVec3f& b, float tolerance = 0.15f)
    {
        return (a - b).length() < tolerance;
    }
};

} // namespace

TEST_F(ViewerCamera, seekingPutsWhatIsClickedInTheMiddleAndTwiceAsLarge)
{
    addCube(3, 2, 0);
    show();
    viewer->setViewing(true);
    QTest::keyClick(viewer.get(), Qt::Key_S);
    EXPECT_TRUE(viewer->isSeeking());
    EXPECT_EQ(viewer->cursor().shape(), Qt::CrossCursor);
    press(3.5, 2.5);
    release(3.5, 2.5);
    EXPECT_FALSE(viewer->isSeeking());
    EXPECT_EQ(viewer->cursor().shape(), Qt::OpenHandCursor);
    EXPECT_FLOAT_EQ(camera->height.getValue(), 5);
    const KbVec3f at = camera->position;
    EXPECT_NEAR(at[0], 3.5f, 0.06f);
    EXPECT_NEAR(at[1], 2.5f, 0.06f);
    EXPECT_FLOAT_EQ(at[2], 20) << "as far off as before";
    // The next press turns as before.
    press(0, 0);
    move(1, 0);
    release(1, 0);
    EXPECT_NE(camera->orientation.getValue(), KbRotation());
    // And back again.
    QTest::keyClick(viewer.get(), Qt::Key_Home);
    EXPECT_FLOAT_EQ(camera->height.getValue(), 10);
    EXPECT_EQ(camera->position.getValue(), KbVec3f(0, 0, 20));
    EXPECT_EQ(camera->orientation.getValue(), KbRotation());
}

// shows: KsQtViewer::seek
TEST_F(ViewerCamera, seekingTurnsAPerspectiveAndGoesHalfTheWay)
{
    KsPerspectiveCamera* deep = usePerspective();
    addCube(3, 0, -1); // its front is at z 0
    show();
    ASSERT_TRUE(viewer->seek(pixel(3, 0.05)));
    EXPECT_TRUE(isNear(deep->position, KbVec3f(1.5f, 0, 10)));
    KbVec3f ahead;
    deep->orientation.getValue().multVec(KbVec3f(0, 0, -1), ahead);
    EXPECT_TRUE(isNear(deep->position.getValue() + ahead * deep->focalDistance.getValue(),
                       KbVec3f(3, 0, 0)));
    EXPECT_LT(deep->nearDistance.getValue(), 0.5f * deep->focalDistance.getValue())
        << "what it came to see is not cut off";
    // What was sought is in the middle now: a second time goes straight on.
    ASSERT_TRUE(viewer->seek(QPoint(100, 100)));
    EXPECT_TRUE(isNear(deep->position, KbVec3f(2.25f, 0, 5)));
}

TEST_F(ViewerCamera, seekingFollowsTheSpaceInWhichTheCameraStands)
{
    auto* place = new KsTransform;
    place->translation = KbVec3f(1, 0, 0);
    place->rotation = KbRotation(KbVec3f(0, 0, 1), 1.5707963f);
    scene->insertChild(place, 0);
    auto* back = new KsTransform; // the rest stands where it stood
    back->rotation = KbRotation(KbVec3f(0, 0, 1), -1.5707963f);
    back->center = KbVec3f(0, 0, 0);
    back->translation = KbVec3f(0, 1, 0);
    scene->addChild(back);
    addCube(3, 0, 0);
    show();
    // The camera stands over 1 0, a quarter turned: 3 0 lies below the middle of the window.
    ASSERT_TRUE(viewer->seek(QPoint(100, 140)));
    EXPECT_TRUE(isNear(camera->position, KbVec3f(0, -2, 20)));
    EXPECT_FLOAT_EQ(camera->height.getValue(), 5);
}

// shows: KsQtViewer::setSeeking, KsQtViewer::isSeeking
TEST_F(ViewerCamera, seekingWhereNothingIsMovesNothing)
{
    addCube(3, 2, 0);
    show();
    viewer->setViewing(true);
    viewer->setSeeking(true);
    EXPECT_TRUE(viewer->isSeeking());
    press(-3, -3);
    release(-3, -3);
    EXPECT_FALSE(viewer->isSeeking());
    EXPECT_EQ(camera->position.getValue(), KbVec3f(0, 0, 20));
    EXPECT_FLOAT_EQ(camera->height.getValue(), 10);
    EXPECT_FALSE(viewer->seek(pixel(-3, -3)));
    // Leaving the view mode ends the search.
    viewer->setSeeking(true);
    QTest::keyClick(viewer.get(), Qt::Key_Escape);
    EXPECT_FALSE(viewer->isViewing());
    EXPECT_FALSE(viewer->isSeeking());
}

TEST_F(ViewerCamera, zoomingInAndOutOfAPerspectiveCutsNothingOff)
{
    KsPerspectiveCamera* deep = usePerspective();
    addCube(0, 0, 0);
    show();
    for (int i = 0; i < 12; ++i) turnWheel(120, 0, 0);
    EXPECT_LT(deep->focalDistance.getValue(), 7);
    EXPECT_LT(deep->nearDistance.getValue(), deep->focalDistance.getValue() - 1);
    for (int i = 0; i < 24; ++i) turnWheel(-120, 0, 0);
    EXPECT_GT(deep->focalDistance.getValue(), 60);
    EXPECT_GT(deep->farDistance.getValue(), deep->focalDistance.getValue() + 1);
}

TEST_F(ViewerCamera, homeGoesToThePlaceThatWasRemembered)
{
    addCube(0, 0, 0);
    show();
    camera->position = KbVec3f(1, 2, 20);
    camera->height = 4.0f;
    viewer->saveHomePosition();
    viewer->setViewing(true);
    press(0, 0);
    move(2, 2);
    release(2, 2);
    turnWheel(-120, 1, 1);
    EXPECT_NE(camera->height.getValue(), 4);
    QTest::keyClick(viewer.get(), Qt::Key_Home);
    EXPECT_EQ(camera->position.getValue(), KbVec3f(1, 2, 20));
    EXPECT_EQ(camera->orientation.getValue(), KbRotation());
    EXPECT_FLOAT_EQ(camera->height.getValue(), 4);
}

namespace {
void noteHit(void* data, KsEventCallback* node)
{
    if (KsMouseButtonEvent::isButtonPress(node->getEvent(), KsMouseButtonEvent::BUTTON1))
        *static_cast<int*>(data) = node->getPickedPoint() ? 1 : 0;
}
} // namespace

TEST_F(ViewerCamera, clicksMeetWhatIsSeenAfterTheWindowWasResized)
{
    int hit = -1;
    auto* ear = new KsEventCallback;
    ear->addEventCallback(KsEvent::getClassTypeId(), &noteHit, &hit);
    scene->addChild(ear);
    addCube(0, 0, 0);
    show();
    viewer->resize(400, 100); // a unit is 10 pixels now
    QTest::mouseClick(viewer.get(), Qt::LeftButton, Qt::NoModifier, QPoint(200 + 8, 50 - 8));
    EXPECT_EQ(hit, 1);
    QTest::mouseClick(viewer.get(), Qt::LeftButton, Qt::NoModifier, QPoint(200 + 12, 50));
    EXPECT_EQ(hit, 0);
    EXPECT_EQ(viewer->getHandleEventAction()->getViewportRegion().getWindowSize(),
              KbVec2i32(400, 100));
    viewer->repaint();
    EXPECT_EQ(viewer->getRenderer()->getWidth(), 400);
    EXPECT_EQ(viewer->getRenderer()->getHeight(), 100);
}

/// Runs in a process of its own, for which the screen has two pixels for each of a widget.
class OnAFineScreen : public ViewerCamera {
protected:
    static bool isFine() { return qFuzzyCompare(qApp->devicePixelRatio(), 2.0); }
    /// What this test says on such a screen.
    static void runAgain()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("FORMWEAVE_TEST_SCREEN_SCALE", "2");
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QCoreApplication::applicationFilePath(),
                      {QString("--gtest_filter=%1.%2").arg(test->test_suite_name(), test->name())});
        ASSERT_TRUE(process.waitForFinished(50000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
    }
};

TEST_F(OnAFineScreen, thePictureHasEachPixelAndTheMouseMeetsWhatIsSeen)
{
    if (!isFine()) return runAgain();
    int hit = -1;
    auto* ear = new KsEventCallback;
    ear->addEventCallback(KsEvent::getClassTypeId(), &noteHit, &hit);
    scene->addChild(ear);
    auto* red = new KsMaterial;
    red->diffuseColor.setValue(KbColor(1, 0, 0));
    scene->addChild(red);
    addCube(0, 0, 0);
    camera->height = 10.25f; // edges of the cube between pixels of the widget
    viewer->setSamples(1);
    show();
    viewer->repaint();
    EXPECT_EQ(viewer->getRenderer()->getWidth(), 400);
    EXPECT_EQ(viewer->getRenderer()->getHeight(), 400);
    const QImage picture = viewer->grab().toImage();
    ASSERT_EQ(picture.size(), QSize(400, 400));
    ASSERT_TRUE(KsGLContext::isAvailable());
    // Each pixel of the widget, along a line through the cube: red exactly where a click meets it.
    int inside = 0;
    for (int x = 70; x < 130; ++x) {
        QTest::mouseClick(viewer.get(), Qt::LeftButton, Qt::NoModifier, QPoint(x, 100));
        const bool isRed = QColor(picture.pixel(2 * x, 200)).red() > 200;
        EXPECT_EQ(hit == 1, isRed) << x;
        inside += hit;
    }
    EXPECT_NEAR(inside, 2 * 200 / 10.25, 1);
}
