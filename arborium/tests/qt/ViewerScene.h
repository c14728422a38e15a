#pragma once

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/qt/KsQtViewer.h>

#include <gtest/gtest.h>

#include <QtTest/QtTest>

#include <cmath>
#include <memory>
#include <string>

/// A viewer of 200 by 200 pixels whose camera shows x and y from -5 to 5: a unit is 20 pixels.
class ViewerScene : public testing::Test {
protected:
    void SetUp() override
    {
        KsDB::init();
        scene = new KsSeparator;
        camera = new KsOrthographicCamera;
        camera->position = KbVec3f(0, 0, 20);
        camera->height = 10.0f;
        camera->farDistance = 100.0f;
        scene->addChild(camera.get());
        viewer = std::make_unique<KsQtViewer>();
        viewer->resize(200, 200);
    }
    void TearDown() override
    {
        viewer.reset();
        camera.reset();
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
    /// Adds what a text holds to the scene.
    void add(const std::string& content)
    {
        const std::string text = "#Arborium V2.1 ascii\n" + content;
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> read(KsDB::readAll(&in));
        ASSERT_TRUE(read);
        scene->addChild(read);
    }

    // Real events, at points of the plane z 0 as the first camera sees them. The point lies in the
    // middle of its pixel.
    QPoint pixel(double x, double y) const
    {
        return QPoint(static_cast<int>(std::floor(100 + 20 * x)),
                      static_cast<int>(std::floor(100 - 20 * y)));
    }
    void press(double x, double y, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(viewer.get(), button, Qt::NoModifier, pixel(x, y));
    }
    void release(double x, double y, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(viewer.get(), button, Qt::NoModifier, pixel(x, y));
    }
    void move(double x, double y, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        QMouseEvent event(QEvent::MouseMove, pixel(x, y), Qt::NoButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(viewer.get(), &event);
    }
    void turnWheel(int angle, double x, double y)
    {
        const QPoint at = pixel(x, y);
        QWheelEvent event(at, viewer->mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(viewer.get(), &event);
    }
    /// A pointer in space that looks against the z axis.
    bool point(KsTrackerEvent::Action what, float x, float y,
               const KbRotation& rotation = KbRotation())
    {
        KsTrackerEvent event(what, KbVec3f(x, y, 10), rotation);
        KsHandleEventAction* action = viewer->getHandleEventAction();
        action->setEvent(&event);
        action->apply(viewer->getRoot());
        const bool handled = action->isHandled();
        action->setEvent(nullptr);
        return handled;
    }

    KsRef<KsSeparator> scene;
    KsRef<KsOrthographicCamera> camera;
    std::unique_ptr<KsQtViewer> viewer;
};
