#include "MessageGuard.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/nodes/KsLightModel.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/qt/KsQt.h>
#include <arborium/qt/KsQtViewer.h>
#include <arborium/render/KsGLContext.h>
#include <arborium/render/KsOffscreenRenderer.h>
#include <arborium/sensors/KsSensor.h>

#include <gtest/gtest.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

// What a callback in the scene heard, one line for each event.
struct Ear {
    std::vector<std::string> heard;
    bool handles = false;
    std::function<void()> then;

    static void hear(void* data, KsEventCallback* node)
    {
        auto* ear = static_cast<Ear*>(data);
        const KsEvent* event = node->getEvent();
        std::string line;
        if (const auto* button = ksCast<KsMouseButtonEvent>(event))
            line = "button" + std::to_string(button->getButton()) +
                   (button->getState() == KsButtonEvent::DOWN ? " down" : " up");
        else if (const auto* key = ksCast<KsKeyboardEvent>(event))
            line = "key " + std::to_string(key->getKey()) + " types " +
                   std::to_string(static_cast<int>(key->getPrintableCharacter())) +
                   (key->getState() == KsButtonEvent::DOWN ? " down" : " up");
        else
            line = "move";
        if (!ksCast<KsKeyboardEvent>(event))
            line += " at " + std::to_string(static_cast<int>(event->getPosition()[0])) + " " +
                    std::to_string(static_cast<int>(event->getPosition()[1]));
        if (event->wasShiftDown()) line += " shift";
        if (event->wasCtrlDown()) line += " ctrl";
        if (event->wasAltDown()) line += " alt";
        ear->heard.push_back(line);
        if (ear->handles) node->setHandled();
        if (ear->then) ear->then();
    }
};

using Lines = std::vector<std::string>;

class Viewer : public testing::Test {
protected:
    void SetUp() override
    {
        KsDB::init();
        scene = new KsSeparator;
        auto* callback = new KsEventCallback;
        callback->addEventCallback(KsEvent::getClassTypeId(), &Ear::hear, &ear);
        material = new KsMaterial;
        material->diffuseColor.setValue(KbColor(1, 0, 0));
        scene->addChild(callback);
        scene->addChild(material);
        scene->addChild(new KsCube);
        viewer = std::make_unique<KsQtViewer>();
        viewer->resize(200, 100);
    }
    void TearDown() override
    {
        viewer.reset();
        scene.reset();
        KsDB::finish();
    }
    void show()
    {
        viewer->setSceneGraph(scene);
        viewer->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(viewer.get()));
        QCoreApplication::processEvents();
    }
    KsOrthographicCamera* camera() const
    {
        return ksCast<KsOrthographicCamera>(viewer->getCamera());
    }

    Ear ear;
    KsRef<KsSeparator> scene;
    KsMaterial* material = nullptr;
    std::unique_ptr<KsQtViewer> viewer;
};

} // namespace

// shows: KsQtViewer::hasOwnCamera
TEST_F(Viewer, showsASceneWithoutACameraFromTheFrontAsAWhole)
{
    show();
    EXPECT_TRUE(viewer->hasOwnCamera());
    ASSERT_TRUE(camera());
    EXPECT_GT(camera()->height.getValue(), 2.0f);
    EXPECT_LT(camera()->height.getValue(), 2.3f);
    EXPECT_EQ(camera()->orientation.getValue(), KbRotation());
    if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    const QImage picture = viewer->grab().toImage();
    EXPECT_EQ(QColor(picture.pixel(100, 50)), QColor(255, 0, 0));
    EXPECT_EQ(QColor(picture.pixel(100, 6)), QColor(255, 0, 0));
    EXPECT_LT(QColor(picture.pixel(40, 50)).red(), 150);
}

// shows: KsQtViewer::getCamera, KsQtViewer::hasOwnCamera, KsQtViewer::viewAll, KsQtViewer::home
TEST_F(Viewer, usesTheCameraOfTheScene)
{
    auto* own = new KsPerspectiveCamera;
    own->position.setValue(1, 2, 30);
    scene->insertChild(own, 0);
    show();
    EXPECT_FALSE(viewer->hasOwnCamera());
    EXPECT_EQ(viewer->getCamera(), own);
    EXPECT_EQ(own->position.getValue(), KbVec3f(1, 2, 30)) << "stands where its author put it";
    viewer->viewAll();
    EXPECT_NE(own->position.getValue(), KbVec3f(1, 2, 30));
    viewer->home();
    EXPECT_EQ(own->position.getValue(), KbVec3f(1, 2, 30));
}

TEST_F(Viewer, framesContentThatComesLater)
{
    const KsRef<KsSeparator> late(new KsSeparator);
    viewer->setSceneGraph(late);
    viewer->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(viewer.get()));
    QCoreApplication::processEvents();
    auto* cube = new KsCube;
    cube->height = 50.0f;
    late->addChild(cube);
    QCoreApplication::processEvents();
    QTRY_VERIFY(camera()->height.getValue() > 50);
}

TEST_F(Viewer, handsTheMouseToTheSceneInPixelsFromTheLowerLeftCorner)
{
    show();
    ear.heard.clear();
    QTest::mousePress(viewer.get(), Qt::LeftButton, Qt::ShiftModifier, QPoint(30, 10));
    QMouseEvent move(QEvent::MouseMove, QPointF(31, 12), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(viewer.get(), &move);
    QTest::mouseRelease(viewer.get(), Qt::LeftButton, Qt::ControlModifier, QPoint(31, 12));
    QTest::mousePress(viewer.get(), Qt::MiddleButton, Qt::NoModifier, QPoint(0, 99));
    QTest::mousePress(viewer.get(), Qt::RightButton, Qt::AltModifier, QPoint(199, 0));
    EXPECT_EQ(ear.heard,
              (Lines{"button1 down at 30 89 shift", "move at 31 87", "button1 up at 31 87 ctrl",
                     "button2 down at 0 0", "button3 down at 199 99 alt"}));
}

TEST_F(Viewer, aDoubleClickIsTwoPresses)
{
    show();
    ear.heard.clear();
    QTest::mouseClick(viewer.get(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QTest::mouseDClick(viewer.get(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QTest::mouseRelease(viewer.get(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_EQ(ear.heard, (Lines{"button1 down at 5 94", "button1 up at 5 94",
                                "button1 down at 5 94", "button1 up at 5 94"}));
}

TEST_F(Viewer, aDragGoesOnOutsideOfTheWindow)
{
    show();
    ear.heard.clear();
    QTest::mousePress(viewer.get(), Qt::LeftButton, Qt::NoModifier, QPoint(30, 10));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(viewer.get(), &leave);
    QMouseEvent move(QEvent::MouseMove, QPointF(-20, 150), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(viewer.get(), &move);
    EXPECT_EQ(ear.heard, (Lines{"button1 down at 30 89", "move at -20 -51"}));
}

TEST_F(Viewer, handsKeysToTheSceneWithTheirCodesAndCharacters)
{
    show();
    ear.heard.clear();
    const auto press = [this](int key, const QString& text, Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(viewer.get(), &event);
    };
    press(Qt::Key_A, "a");
    press(Qt::Key_A, "A", Qt::ShiftModifier);
    press(Qt::Key_A, QString(QChar(1)), Qt::ControlModifier);
    press(Qt::Key_Return, "\r");
    press(Qt::Key_Backspace, "\b");
    press(Qt::Key_Delete, "\x7f");
    press(Qt::Key_Left, "");
    press(Qt::Key_Shift, "", Qt::ShiftModifier);
    press(Qt::Key_F2, "");
    press(Qt::Key_Adiaeresis, QString(QChar(0xe4)));
    press(0, QString(QChar(0x20ac)));
    EXPECT_EQ(
        ear.heard,
        (Lines{"key 97 types 97 down", "key 65 types 65 down shift", "key 97 types 0 down ctrl",
               "key 65293 types 0 down", "key 65288 types 0 down", "key 65535 types 0 down",
               "key 65361 types 0 down", "key 65505 types 0 down shift", "key 65471 types 0 down",
               "key 228 types 228 down", "key 16785580 types 8364 down"}));
}

TEST_F(Viewer, theNumericPadGivesItsOwnCodesWithAndWithoutNumLock)
{
    show();
    const int digits[] = {Qt::Key_7, Qt::Key_4, Qt::Key_8, Qt::Key_6, Qt::Key_2,
                          Qt::Key_9, Qt::Key_3, Qt::Key_1, Qt::Key_5, Qt::Key_0};
    const int arrows[] = {Qt::Key_Home,  Qt::Key_Left,   Qt::Key_Up,       Qt::Key_Right,
                          Qt::Key_Down,  Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_End,
                          Qt::Key_Clear, Qt::Key_Insert};
    Lines expected;
    ear.heard.clear();
    for (int i = 0; i < 10; ++i) {
        const QString text = QString(QChar(digits[i]));
        QKeyEvent locked(QEvent::KeyPress, digits[i], Qt::KeypadModifier, text);
        QCoreApplication::sendEvent(viewer.get(), &locked);
        QKeyEvent free(QEvent::KeyPress, arrows[i], Qt::KeypadModifier);
        QCoreApplication::sendEvent(viewer.get(), &free);
        const std::string code = "key " + std::to_string(65429 + i) + " types ";
        expected.push_back(code + std::to_string(digits[i]) + " down");
        expected.push_back(code + "0 down");
    }
    QKeyEvent remove(QEvent::KeyPress, Qt::Key_Delete, Qt::KeypadModifier);
    QCoreApplication::sendEvent(viewer.get(), &remove);
    expected.push_back("key 65439 types 0 down");
    EXPECT_EQ(ear.heard, expected);
}

TEST_F(Viewer, aHeldKeyIsPressedAgainAndReleasedOnce)
{
    show();
    ear.heard.clear();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x");
    QKeyEvent again(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, "x", true);
    QKeyEvent between(QEvent::KeyRelease, Qt::Key_X, Qt::NoModifier, "x", true);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_X, Qt::NoModifier, "x");
    for (QKeyEvent* event : {&press, &between, &again, &release})
        QCoreApplication::sendEvent(viewer.get(), event);
    EXPECT_EQ(ear.heard,
              (Lines{"key 120 types 120 down", "key 120 types 120 down", "key 120 types 120 up"}));
}

TEST_F(Viewer, textOfAnInputMethodArrivesAsKeys)
{
    show();
    ear.heard.clear();
    QInputMethodEvent event;
    event.setCommitString(QString(QChar(0x4e2d)));
    QCoreApplication::sendEvent(viewer.get(), &event);
    EXPECT_EQ(ear.heard, (Lines{"key 16797229 types 20013 down", "key 16797229 types 20013 up"}));
}

// shows: KsQtViewer::isViewing, KsQtViewer::viewingChanged
TEST_F(Viewer, escapeSwitchesTheModeUnlessTheSceneHandlesIt)
{
    show();
    QSignalSpy spy(viewer.get(), &KsQtViewer::viewingChanged);
    QTest::keyClick(viewer.get(), Qt::Key_Escape);
    EXPECT_TRUE(viewer->isViewing());
    EXPECT_EQ(viewer->cursor().shape(), Qt::OpenHandCursor);
    QTest::keyClick(viewer.get(), Qt::Key_Escape);
    EXPECT_FALSE(viewer->isViewing());
    EXPECT_EQ(viewer->cursor().shape(), Qt::ArrowCursor);
    ear.handles = true;
    QTest::keyClick(viewer.get(), Qt::Key_Escape);
    EXPECT_FALSE(viewer->isViewing());
    EXPECT_EQ(spy.count(), 2);
}

TEST_F(Viewer, inViewModeTheMouseMovesTheCameraAndTheSceneHearsNothing)
{
    show();
    viewer->setViewing(true);
    ear.heard.clear();
    const auto drag = [this](Qt::MouseButton button, QPoint from, QPoint to) {
        QTest::mousePress(viewer.get(), button, Qt::NoModifier, from);
        QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, button, Qt::NoModifier);
        QCoreApplication::sendEvent(viewer.get(), &move);
        QTest::mouseRelease(viewer.get(), button, Qt::NoModifier, to);
    };
    const KbVec3f start = camera()->position.getValue();
    const float height = camera()->height.getValue();

    drag(Qt::MiddleButton, QPoint(50, 50), QPoint(60, 50));
    EXPECT_NEAR(camera()->position.getValue()[0], start[0] - 10 * height / 100, 1e-4);
    drag(Qt::MiddleButton, QPoint(60, 50), QPoint(50, 50));
    EXPECT_NEAR(camera()->position.getValue()[0], start[0], 1e-4);

    drag(Qt::RightButton, QPoint(50, 50), QPoint(50, 70));
    EXPECT_NE(camera()->height.getValue(), height);

    const float focal = camera()->focalDistance.getValue();
    drag(Qt::LeftButton, QPoint(50, 50), QPoint(80, 50));
    EXPECT_NE(camera()->orientation.getValue(), KbRotation());
    EXPECT_LT(camera()->position.getValue()[0], start[0]) << "the scene turns with the pointer";
    EXPECT_NEAR(camera()->position.getValue().length(), focal, 1e-3) << "about its centre";

    QTest::keyClick(viewer.get(), Qt::Key_Home);
    EXPECT_EQ(camera()->orientation.getValue(), KbRotation());
    EXPECT_NEAR(camera()->height.getValue(), height, 1e-5);
    EXPECT_TRUE(ear.heard.empty());
}

TEST_F(Viewer, theWheelZoomsAboutThePointerUnlessTheSceneHandlesIt)
{
    show();
    const auto turn = [this](int angle, QPointF at) {
        QWheelEvent event(at, viewer->mapToGlobal(at.toPoint()), QPoint(), QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(viewer.get(), &event);
    };
    const float height = camera()->height.getValue();
    turn(120, QPointF(100, 49));
    EXPECT_NEAR(camera()->height.getValue(), 0.9f * height, 1e-5);
    turn(-120, QPointF(100, 49));
    EXPECT_NEAR(camera()->height.getValue(), height, 1e-5);

    const float x = camera()->position.getValue()[0] + 50 * height / 100;
    turn(240, QPointF(150, 49));
    EXPECT_NEAR(camera()->position.getValue()[0] + 50 * camera()->height.getValue() / 100, x, 1e-4);

    ear.handles = true;
    ear.heard.clear();
    const float now = camera()->height.getValue();
    turn(120, QPointF(100, 50));
    EXPECT_EQ(camera()->height.getValue(), now);
    EXPECT_EQ(ear.heard.size(), 2u);
    EXPECT_EQ(ear.heard[0].substr(0, 12), "button4 down");
}

TEST_F(Viewer, aFingerIsTheLeftButtonAndTwoZoom)
{
    show();
    ear.heard.clear();
    auto* device = QTest::createTouchDevice();
    QTest::touchEvent(viewer.get(), device).press(1, QPoint(30, 10), viewer.get());
    QTest::touchEvent(viewer.get(), device).move(1, QPoint(40, 20), viewer.get());
    QTest::touchEvent(viewer.get(), device).release(1, QPoint(40, 20), viewer.get());
    EXPECT_EQ(ear.heard, (Lines{"button1 down at 30 89", "move at 40 79", "button1 up at 40 79"}));

    ear.heard.clear();
    const float height = camera()->height.getValue();
    QTest::touchEvent(viewer.get(), device)
        .press(1, QPoint(90, 50), viewer.get())
        .press(2, QPoint(110, 50), viewer.get());
    QTest::touchEvent(viewer.get(), device)
        .move(1, QPoint(80, 50), viewer.get())
        .move(2, QPoint(120, 50), viewer.get());
    QTest::touchEvent(viewer.get(), device)
        .release(1, QPoint(80, 50), viewer.get())
        .release(2, QPoint(120, 50), viewer.get());
    EXPECT_NEAR(camera()->height.getValue(), height / 2, 0.01 * height);
    EXPECT_TRUE(ear.heard.empty());
}

// shows: KsQtViewer::getRenderer
TEST_F(Viewer, paintsAgainWhenTheSceneChangedAndOnlyThen)
{
    show();
    const KsOffscreenRenderer* renderer = viewer->getRenderer();
    QCoreApplication::processEvents();
    long frames = renderer->getNumFrames();
    ASSERT_GT(frames, 0);
    viewer->repaint();
    QTest::qWait(20);
    EXPECT_EQ(renderer->getNumFrames(), frames) << "the picture is kept";

    material->diffuseColor.setValue(KbColor(0, 1, 0));
    QTRY_COMPARE(renderer->getNumFrames(), frames + 1);
    if (KsGLContext::isAvailable()) {
        EXPECT_EQ(QColor(viewer->grab().toImage().pixel(100, 50)), QColor(0, 255, 0));
    }
    const long visits = viewer->getRenderer()->getRenderAction()->getNumVisits();
    frames = renderer->getNumFrames();
    QTest::qWait(20);
    EXPECT_EQ(renderer->getNumFrames(), frames);
    EXPECT_EQ(viewer->getRenderer()->getRenderAction()->getNumVisits(), visits);
}

// shows: KsQtViewer::setViewing
TEST_F(Viewer, aResizedWindowStillShowsAllUnlessThePersonMovedTheCamera)
{
    show();
    const float height = camera()->height.getValue();
    viewer->resize(50, 100);
    viewer->repaint();
    EXPECT_NEAR(camera()->height.getValue(), 2 * height, 0.01 * height);
    viewer->setViewing(true);
    QTest::mousePress(viewer.get(), Qt::MiddleButton, Qt::NoModifier, QPoint(5, 5));
    QMouseEvent move(QEvent::MouseMove, QPointF(6, 6), Qt::NoButton, Qt::MiddleButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(viewer.get(), &move);
    viewer->resize(200, 100);
    viewer->repaint();
    EXPECT_NEAR(camera()->height.getValue(), 2 * height, 0.01 * height);
}

// shows: KsQtViewer::renderToImage, KsGLContext::isAvailable
TEST_F(Viewer, printsTheSceneInAnySize)
{
    viewer->setSceneGraph(scene);
    const QImage picture = viewer->renderToImage(QSize(60, 120), 2);
    ASSERT_EQ(picture.size(), QSize(120, 240));
    EXPECT_TRUE(viewer->renderToImage(QSize(0, 10)).isNull());
    if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    EXPECT_EQ(QColor(picture.pixel(60, 120)), QColor(255, 0, 0));
    EXPECT_EQ(QColor(picture.pixel(8, 120)), QColor(255, 0, 0)) << "the width fits too";
    EXPECT_LT(QColor(picture.pixel(60, 20)).red(), 200);
}

// shows: KsQtViewer
TEST_F(Viewer, mayBeDeletedByAListenerInTheScene)
{
    show();
    ear.then = [this] { viewer.reset(); };
    KsQtViewer* raw = viewer.get();
    const QPointer<KsQtViewer> alive(raw);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    QCoreApplication::sendEvent(raw, &key);
    EXPECT_FALSE(alive);
    EXPECT_EQ(ear.heard.size(), 1u);
}

// shows: KsQtViewer::setSceneGraph, KsQtViewer::getSceneGraph
TEST_F(Viewer, letsGoOfAnEarlierScene)
{
    show();
    const KsRef<KsSeparator> other(new KsSeparator);
    EXPECT_EQ(viewer->getSceneGraph(), scene.get());
    viewer->setSceneGraph(other);
    EXPECT_EQ(viewer->getSceneGraph(), other.get());
    viewer->repaint();
    EXPECT_EQ(scene->getRefCount(), 1);
    viewer->setSceneGraph(nullptr);
    viewer->repaint();
    EXPECT_EQ(other->getRefCount(), 1);
    QTest::mouseClick(viewer.get(), Qt::LeftButton);
    EXPECT_EQ(viewer->getSceneGraph(), nullptr);
}

TEST_F(Viewer, theTabulatorGoesToTheSceneFirst)
{
    QWidget window;
    auto* first = new KsQtViewer(&window);
    auto* second = new QLineEdit(&window);
    first->resize(50, 50);
    second->move(60, 0);
    first->setSceneGraph(scene);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    first->setFocus();
    ear.handles = true;
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), first);
    ear.handles = false;
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_EQ(ear.heard.size(), 4u);
    EXPECT_EQ(window.focusWidget(), second);
}

// shows: KsQtViewer::setBackgroundColor, KsQtViewer::setBackgroundGradient
TEST_F(Viewer, showsItsBackgroundBesideTheScene)
{
    show();
    const auto corners = [this] {
        const QImage image = viewer->grab().toImage();
        return std::make_pair(image.pixelColor(1, 1), image.pixelColor(1, 98));
    };
    viewer->setBackgroundColor(KbColor(0, 0, 1));
    EXPECT_EQ(corners(), std::make_pair(QColor(0, 0, 255), QColor(0, 0, 255)));
    viewer->setBackgroundGradient(KbColor(0, 0, 0), KbColor(0, 1, 0));
    EXPECT_GT(corners().first.green(), 240);
    EXPECT_LT(corners().second.green(), 15);
}

// shows: KsQtViewer::setSamples
TEST_F(Viewer, hasSmoothEdgesUnlessOneSampleIsEnough)
{
    if (!KsGLContext::isAvailable()) GTEST_SKIP() << "there is no OpenGL here";
    auto* slant = new KsRotation;
    slant->rotation = KbRotation(KbVec3f(0, 0, 1), 0.3f);
    scene->insertChild(slant, 0);
    auto* plain = new KsLightModel;
    plain->model = KsLightModel::BASE_COLOR;
    scene->insertChild(plain, 0);
    show();
    viewer->setBackgroundColor(KbColor(0, 0, 0));
    const auto between = [this] {
        const QImage image = viewer->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const int red = image.pixelColor(x, y).red();
                count += red > 20 && red < 235;
            }
        return count;
    };
    EXPECT_GT(between(), 30);
    viewer->setSamples(1);
    EXPECT_EQ(between(), 0);
    viewer->setSamples(4);
    EXPECT_GT(between(), 30);
}

// shows: KsQtViewer::saveHomePosition, KsQtViewer::home
TEST_F(Viewer, goesBackToThePlaceThatItWasToldToRemember)
{
    show();
    const KbVec3f first = viewer->getCamera()->position.getValue();
    viewer->getCamera()->position = first + KbVec3f(1, 0, 0);
    viewer->saveHomePosition();
    viewer->getCamera()->position = first + KbVec3f(0, 5, 0);
    viewer->home();
    EXPECT_EQ(viewer->getCamera()->position.getValue(), first + KbVec3f(1, 0, 0));
}

// shows: KsQtViewer::getHandleEventAction, KsQtViewer::getRoot
TEST_F(Viewer, leavesTheRoadOfItsEventsToPrograms)
{
    show();
    const KsMouseButtonEvent press(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, {100, 50});
    KsHandleEventAction* action = viewer->getHandleEventAction();
    action->setEvent(&press);
    action->apply(viewer->getRoot());
    action->setEvent(nullptr);
    EXPECT_EQ(ear.heard, Lines{"button1 down at 100 50"});
    KsSearchAction search;
    search.setNode(viewer->getCamera());
    search.apply(viewer->getRoot());
    EXPECT_TRUE(search.isFound()) << "the scene behind the viewer's camera";
}

// shows: KsQt::init, KsQt::finish
TEST(QtBinding, runsWaitingSensorsFromTheEventLoop)
{
    ASSERT_TRUE(KsQt::init());
    int runs = 0;
    KsOneShotSensor sensor([](void* data, KsSensor*) { ++*static_cast<int*>(data); }, &runs);
    sensor.schedule();
    EXPECT_EQ(runs, 0);
    QTRY_COMPARE(runs, 1);
    QTest::qWait(10);
    EXPECT_EQ(runs, 1);
    sensor.schedule();
    QTRY_COMPARE(runs, 2);
    KsQt::finish();
    EXPECT_FALSE(KsQt::isInitialized());
}

TEST(QtBinding, aSensorThatSchedulesItselfLeavesRoomForOtherEvents)
{
    ASSERT_TRUE(KsQt::init());
    int runs = 0;
    KsOneShotSensor sensor(nullptr, &runs);
    sensor.setFunction([](void* data, KsSensor* self) {
        ++*static_cast<int*>(data);
        self->schedule();
    });
    sensor.schedule();
    bool posted = false;
    QTimer::singleShot(5, qApp, [&posted] { posted = true; });
    QTRY_VERIFY(posted);
    QTRY_VERIFY(runs > 3);
    sensor.unschedule();
    KsQt::finish();
}

// shows: KsQt::getTopLevelWidget, KsQt::setTopLevelWidget, KsQt::show, KsQt::hide
TEST(QtBinding, theTopLevelWidgetIsForgottenWhenItDies)
{
    EXPECT_EQ(KsQt::getTopLevelWidget(), nullptr);
    auto widget = std::make_unique<QWidget>();
    KsQt::setTopLevelWidget(widget.get());
    EXPECT_EQ(KsQt::getTopLevelWidget(), widget.get());
    KsQt::show(widget.get());
    EXPECT_TRUE(widget->isVisible());
    KsQt::hide(widget.get());
    EXPECT_FALSE(widget->isVisible());
    KsQt::show(nullptr);
    KsQt::hide(nullptr);
    widget.reset();
    EXPECT_EQ(KsQt::getTopLevelWidget(), nullptr);
}
