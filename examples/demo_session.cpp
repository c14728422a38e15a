// A session without a display: one dialog, shown as a window and as a panel in a scene at once, and
// clicks in both. Prints what each click did, and leaves demo-2d.png and demo-3d.png in the
// current directory. The exit status is 0 if each click was heard and seen in both presentations.

#include <arborium/arborium.h>
#include <formweave/formweave.h>

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QMouseEvent>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

const char* const clickedIn[] = {"window", "scene"};
enum Presentation { Window, Scene };

std::string onOff(bool state) { return state ? "on" : "off"; }

// What was heard since the last click.
struct Heard {
    Presentation clicked = Window;
    int auditorCalls = 0;
    int fieldChanges = 0;
};

class Auditor : public KsDialogAuditor {
public:
    explicit Auditor(Heard& heard) : m_heard(heard) {}
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        ++m_heard.auditorCalls;
        std::cout << clickedIn[m_heard.clicked]
                  << ": the auditor is told: " << box->auditorID.getValue() << " is "
                  << onOff(box->state) << '\n';
    }

private:
    Heard& m_heard;
};

// Listens to the field of one check box, as an application that is not interested in who changed it.
struct FieldListener {
    FieldListener(Heard& h, KsDialogCheckBox* b) : heard(h), box(b), sensor(&changed, this)
    {
        sensor.setPriority(0);
        sensor.attach(&box->state);
    }
    static void changed(void* data, KsSensor*)
    {
        auto* self = static_cast<FieldListener*>(data);
        ++self->heard.fieldChanges;
        std::cout << clickedIn[self->heard.clicked] << ": the field "
                  << self->box->auditorID.getValue() << ".state becomes "
                  << (self->box->state ? "TRUE" : "FALSE") << '\n';
    }
    Heard& heard;
    KsDialogCheckBox* box;
    KsFieldSensor sensor;
};

class Session {
public:
    explicit Session(KsTopLevelDialog* dialog)
        : m_dialog(dialog), m_auditor(m_heard), m_scene(new KsSeparator),
          m_events(KbViewportRegion(1, 1))
    {
        m_dialog->addAuditor(&m_auditor);
        listen(m_dialog->getElements());
        m_dialog->buildDialog();
        m_dialog->show();
        QApplication::processEvents();

        // A pixel of the picture is a unit of the panel.
        m_scene->addChild(m_dialog);
        const KbBox3f box = boxOf(m_dialog);
        const KbVec3f size = box.getSize();
        m_camera = new KsOrthographicCamera;
        m_camera->height = std::ceil(size[1]) + 24;
        m_camera->position =
            KbVec3f(box.getCenter()[0], box.getCenter()[1], box.getMax()[2] + size[2] + 10);
        m_camera->farDistance = 3 * size[2] + 20;
        m_scene->insertChild(m_camera, 0);
        m_viewport.setWindowSize(static_cast<int>(std::ceil(size[0])) + 24,
                                 static_cast<int>(std::ceil(size[1])) + 24);
        m_events.setViewportRegion(m_viewport);
    }
    ~Session()
    {
        m_dialog->removeAuditor(&m_auditor);
        delete m_dialog->getBaseWidget();
    }

    void clickInWindow(const char* id)
    {
        m_heard = {Window};
        std::cout << "window: a click on " << id << '\n';
        if (QCheckBox* widget = widgetOf(find(id))) {
            const QPointF place(10, widget->height() / 2.0); // on the box itself
            for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
                QMouseEvent event(type, place, widget->mapToGlobal(place.toPoint()), Qt::LeftButton,
                                  type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                  Qt::NoModifier);
                QApplication::sendEvent(widget, &event);
            }
        }
        report(id);
    }

    void clickInScene(const char* id)
    {
        m_heard = {Scene};
        std::cout << "scene: a click on " << id << '\n';
        if (KsDialogCheckBox* box = find(id)) {
            KbVec2i32 size, place;
            box->get3DComponentSize(size, place);
            const KbVec3f centre = boxOf(box).getCenter();
            const float toggle =
                centre[0] + static_cast<float>(place[0]) - static_cast<float>(size[0]) / 2 + 10;
            const KbVec3f camera = m_camera->position;
            const KbVec2i32 window = m_viewport.getWindowSize();
            const KbVec2f pointer(toggle - camera[0] + static_cast<float>(window[0]) / 2,
                                  centre[1] - camera[1] + static_cast<float>(window[1]) / 2);
            for (const auto state : {KsButtonEvent::DOWN, KsButtonEvent::UP}) {
                KsMouseButtonEvent event(KsMouseButtonEvent::BUTTON1, state, pointer);
                m_events.setEvent(&event);
                m_events.apply(m_scene.get());
            }
        }
        report(id);
    }

    bool leavePictures()
    {
        QWidget* window = m_dialog->getBaseWidget();
        QApplication::processEvents();
        QImage image(window->size() * 2, QImage::Format_RGB32);
        image.setDevicePixelRatio(2);
        window->render(&image);
        const bool window2d = image.save("demo-2d.png");

        KsOffscreenRenderer renderer(
            KbViewportRegion(m_viewport.getWindowSize()[0] * 2, m_viewport.getWindowSize()[1] * 2));
        renderer.setBackgroundGradient(KbColor(0.24f, 0.27f, 0.31f), KbColor(0.42f, 0.47f, 0.53f));
        renderer.setSupersampling(2);
        const bool panel = renderer.render(m_scene.get()) && renderer.writeToFile("demo-3d.png");
        if (window2d) std::cout << "demo-2d.png shows the window\n";
        if (panel) std::cout << "demo-3d.png shows the panel\n";
        return window2d && panel;
    }

    bool isGood() const { return m_good; }

private:
    void listen(const KsElementList* elements)
    {
        for (int i = 0; elements && i < elements->count(); ++i) {
            if (auto* box = ksCast<KsDialogCheckBox>(elements->at(i)))
                m_listeners.push_back(std::make_unique<FieldListener>(m_heard, box));
            listen(elements->at(i)->getElements());
        }
    }

    KsDialogCheckBox* find(const char* id) const
    {
        return ksCast<KsDialogCheckBox>(m_dialog->searchForAuditorId(id));
    }

    static QCheckBox* widgetOf(const KsDialogCheckBox* box)
    {
        return box && box->getWidget() ? box->getWidget()->findChild<QCheckBox*>() : nullptr;
    }

    // As it stands in the scene. The first call builds the panel.
    KbBox3f boxOf(KsNode* node)
    {
        KsSearchAction search;
        search.setNode(node);
        search.apply(m_scene.get());
        KsGetBoundingBoxAction measure(m_viewport);
        if (search.getPath()) measure.apply(search.getPath());
        return measure.getBoundingBox();
    }

    void report(const char* id)
    {
        const KsDialogCheckBox* box = find(id);
        const QCheckBox* widget = widgetOf(box);
        const auto* part = box ? ksCast<KsSFNode>(box->getField("stateSwitch")) : nullptr;
        const auto* shape = part ? ksCast<KsSwitch>(part->getValue()) : nullptr;
        if (!widget || !shape) {
            std::cout << id << " is not in both presentations\n";
            m_good = false;
            return;
        }
        const bool enabled = box->enable;
        const bool inWindow = widget->isChecked();
        const bool inScene = shape->whichChild == 1;
        std::cout << clickedIn[m_heard.clicked] << ": ";
        if (!enabled) std::cout << id << " is disabled and stays; ";
        std::cout << "the window shows " << onOff(inWindow) << ", the panel shows "
                  << onOff(inScene) << "\n\n";
        const int wanted = enabled ? 1 : 0;
        if (inWindow != inScene || inWindow != box->state || m_heard.auditorCalls != wanted ||
            m_heard.fieldChanges != wanted) {
            std::cout << "this is not what was to happen\n\n";
            m_good = false;
        }
    }

    KsTopLevelDialog* m_dialog;
    Heard m_heard;
    Auditor m_auditor;
    std::vector<std::unique_ptr<FieldListener>> m_listeners;
    KsRef<KsSeparator> m_scene;
    KsOrthographicCamera* m_camera;
    KbViewportRegion m_viewport;
    KsHandleEventAction m_events;
    bool m_good = true;
};

bool play()
{
    KsFormweave* element =
        KsFormweave::loadFromFile(FORMWEAVE_SOURCE_DIR "/examples/render-settings.arb");
    auto* dialog = ksCast<KsTopLevelDialog>(element);
    if (!dialog) {
        if (element) element->unref();
        return false;
    }
    bool good = false;
    {
        Session session(dialog);
        session.clickInWindow("shadows");
        session.clickInScene("reflections");
        session.clickInWindow("depthOfField");
        session.clickInScene("shadows");
        session.clickInScene("statistics");
        session.clickInWindow("antialiasing");
        session.clickInWindow("rayTracing");
        session.clickInScene("rayTracing");
        good = session.leavePictures() && session.isGood();
    }
    dialog->unref();
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication application(argc, argv);
    KsQt::init();
    KsFormweave::init();
    if (!std::getenv("ARBHOME")) KsFormweave::setSkinsDirectories(FORMWEAVE_SKIN_DIR);
    const bool good = play();
    KsFormweave::finish();
    KsQt::finish();
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
