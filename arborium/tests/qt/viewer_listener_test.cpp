// What hears of an event, or of a camera that moves, does what it likes: runs an event loop, hides
// the viewer, lets it go.

#include "ViewerScene.h"

#include <arborium/kits/KsDragger.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsEventCallback.h>
#include <arborium/sensors/KsSensor.h>

#include <functional>
#include <string>
#include <vector>

namespace {

class ViewerListener : public ViewerScene {
protected:
    /// The camera is the viewer's own, and whoever watches it may do anything.
    void watchOwnCamera(std::function<void()> then)
    {
        scene->removeAllChildren();
        add("Cube { }");
        show();
        viewer->setViewing(true);
        react = std::move(then);
        camera = static_cast<KsOrthographicCamera*>(viewer->getCamera());
        for (KsField* field :
             std::vector<KsField*>{&camera->position, &camera->orientation, &camera->height}) {
            sensors.push_back(std::make_unique<KsFieldSensor>(
                [](void* data, KsSensor*) {
                    auto* self = static_cast<ViewerListener*>(data);
                    const auto once = std::exchange(self->react, nullptr);
                    if (once) once();
                },
                this));
            sensors.back()->setPriority(0);
            sensors.back()->attach(field);
        }
        camera.reset();
    }
    std::function<void()> react;
    std::vector<std::unique_ptr<KsFieldSensor>> sensors;
};

} // namespace

TEST_F(ViewerListener, anEventLoopInACallbackLeavesTheOuterEventToThoseBehindIt)
{
    struct Heard {
        QWidget* viewer = nullptr;
        std::vector<std::string> types;
    } heard;
    auto* loop = new KsEventCallback;
    loop->addEventCallback(
        KsMouseButtonEvent::getClassTypeId(),
        [](void* data, KsEventCallback*) {
            // What an event loop of its own would do.
            QMouseEvent event(QEvent::MouseMove, QPoint(3, 3), Qt::NoButton, Qt::NoButton,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(static_cast<Heard*>(data)->viewer, &event);
        },
        &heard);
    const auto note = [](void* data, KsEventCallback* node) {
        const KsEvent* event = node->getEvent();
        static_cast<Heard*>(data)->types.emplace_back(
            event ? event->getTypeId().getName().getString() : "none");
    };
    loop->addEventCallback(KsEvent::getClassTypeId(), note, &heard);
    auto* behind = new KsEventCallback;
    behind->addEventCallback(KsEvent::getClassTypeId(), note, &heard);
    scene->addChild(loop);
    scene->addChild(behind);
    show();
    heard.viewer = viewer.get();
    press(0, 0);
    EXPECT_EQ(heard.types, (std::vector<std::string>{"Location2Event", "Location2Event",
                                                     "MouseButtonEvent", "MouseButtonEvent"}));
    EXPECT_EQ(viewer->getHandleEventAction()->getEvent(), nullptr);
}

TEST_F(ViewerListener, hidingTheViewerEndsWhatTheMouseWasDragging)
{
    const KsRef<KsDragger> dragger(new KsDragger);
    ksCast<KsSeparator>(dragger->getAnyPart("geomSeparator", true))->addChild(new KsCube);
    static int motions;
    motions = 0;
    dragger->addMotionCallback([](void*, KsDragger*) { ++motions; });
    scene->addChild(dragger);
    show();
    press(0, 0);
    move(1, 0);
    EXPECT_EQ(motions, 1);
    viewer->hide();
    EXPECT_FALSE(dragger->isDragging());
    viewer->show();
    move(2, 0, Qt::NoButton);
    EXPECT_EQ(motions, 1);

    viewer->setViewing(true);
    press(0, 0);
    viewer->hide();
    viewer->show();
    const KbRotation before = camera->orientation;
    move(2, 0, Qt::NoButton);
    EXPECT_EQ(camera->orientation, before);
    // Nor does the camera follow a mouse whose button was let go elsewhere.
    press(0, 0);
    move(3, 0, Qt::NoButton);
    EXPECT_EQ(camera->orientation, before);
    move(4, 0);
    EXPECT_EQ(camera->orientation, before);
}

TEST_F(ViewerListener, theViewerMayBeDeletedByWhoWatchesItsCamera)
{
    const std::vector<std::function<void()>> roads = {
        [this] {
            press(0, 0);
            move(1, 1);
        },
        [this] {
            press(0, 0, Qt::MiddleButton);
            move(1, 1, Qt::MiddleButton);
        },
        [this] {
            press(0, 0, Qt::RightButton);
            move(1, 1, Qt::RightButton);
        },
        [this] { turnWheel(120, 1, 1); },
        [this] {
            viewer->setSeeking(true);
            QMouseEvent event(QEvent::MouseButtonPress, pixel(0.2, 0.1), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(viewer.get(), &event);
        },
        [this] {
            viewer->saveHomePosition();
            viewer->home();
        },
        [this] { viewer->viewAll(); },
        [this] {
            // The next event meets the scene as the next frame shows it.
            viewer->setViewing(false);
            viewer->resize(150, 150);
            move(0, 0, Qt::NoButton);
        },
    };
    for (std::size_t i = 0; i < roads.size(); ++i) {
        SCOPED_TRACE(i);
        watchOwnCamera([this] { viewer.reset(); });
        roads[i]();
        EXPECT_FALSE(viewer);
        sensors.clear();
        TearDown();
        SetUp();
    }
}
