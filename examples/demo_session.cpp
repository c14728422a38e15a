// A session without a display: the preferences of a program, shown as a window and as a panel in a
// scene at once, and clicks in both. Prints what each click did, and leaves demo-2d.png and
// demo-3d.png in the current directory. The exit status is 0 if each click was heard and seen in
// both presentations.

#include <arborium/arborium.h>
#include <formweave/formweave.h>

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

const char* const file = FORMWEAVE_SOURCE_DIR "/examples/preferences.arb";

const char* const clickedIn[] = {"window", "scene"};
enum Presentation { Window, Scene };

std::string onOff(bool state) { return state ? "on" : "off"; }

// What was heard since the last click.
struct Heard {
    Presentation clicked = Window;
    int auditorCalls = 0;
    int fieldChanges = 0;

    std::ostream& tell() const { return std::cout << clickedIn[clicked] << ": "; }
};

void click(QWidget* widget, const QPoint& at)
{
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, widget->mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                          Qt::NoModifier);
        QApplication::sendEvent(widget, &event);
    }
}

// Reads a message box, and answers it with its last button.
class Reader {
public:
    Reader()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) return;
            m_timer.stop();
            QAbstractButton* answer = box->buttons().constLast();
            std::cout << "a box asks: " << box->text().section('\n', -1).toStdString() << ' '
                      << answer->text().remove('&').toStdString() << '\n';
            hasRead = true;
            click(answer, answer->rect().center());
        });
        m_timer.start(1);
    }
    bool hasRead = false;

private:
    QTimer m_timer;
};

std::ostream& told(Heard& heard, const KsFormweave* element)
{
    ++heard.auditorCalls;
    return heard.tell() << "the auditor is told: " << element->auditorID.getValue() << " is ";
}

class Auditor : public KsDialogAuditor {
public:
    explicit Auditor(Heard& heard) : m_heard(heard) {}
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        told(m_heard, box) << onOff(box->state) << '\n';
    }
    void dialogPushButton(KsDialogPushButton* button) override
    {
        told(m_heard, button) << "pressed\n";
        // The box that the file has for this button.
        KsFormweave* element = KsFormweave::loadFromFile(file, button->auditorID.getValue());
        if (auto* box = ksCast<KsMessageDialog>(element)) {
            const Reader reader;
            box->show();
            if (!reader.hasRead) ++m_heard.auditorCalls;
        }
        if (element) element->unref();
    }

private:
    Heard& m_heard;
};

class PageAuditor : public KsTabDialogAuditor {
public:
    explicit PageAuditor(Heard& heard) : m_heard(heard) {}
    void tabDialog(KsTabDialog* tabs) override
    {
        told(m_heard, tabs) << "at page " << tabs->selectedPage << '\n';
    }

private:
    Heard& m_heard;
};

// Listens to a field of one element, as an application that is not interested in who changed it.
struct FieldListener {
    FieldListener(Heard& h, const KsFormweave* e, const char* n, KsField* f)
        : heard(h), element(e), name(n), field(f), sensor(&changed, this)
    {
        sensor.setPriority(0);
        sensor.attach(field);
    }
    static void changed(void* data, KsSensor*)
    {
        auto* self = static_cast<FieldListener*>(data);
        ++self->heard.fieldChanges;
        KsOutput value;
        self->field->writeValue(&value);
        self->heard.tell() << "the field " << self->element->auditorID.getValue() << '.'
                           << self->name << " becomes " << value.getBuffer() << '\n';
    }
    Heard& heard;
    const KsFormweave* element;
    const char* name;
    KsField* field;
    KsFieldSensor sensor;
};

class Session {
public:
    explicit Session(KsTopLevelDialog* dialog)
        : m_dialog(dialog), m_auditor(m_heard), m_pageAuditor(m_heard), m_scene(new KsSeparator),
          m_camera(new KsOrthographicCamera), m_viewport(1, 1), m_events(m_viewport)
    {
        m_dialog->addAuditor(&m_auditor);
        listen(m_dialog->getElements());
        m_scene->addChild(m_camera);
        m_scene->addChild(m_dialog);
        look();
        m_dialog->buildDialog();
        m_dialog->show();
        QApplication::processEvents();
    }
    ~Session()
    {
        m_dialog->removeAuditor(&m_auditor);
        m_listeners.clear();
        // The windows, also those of the dialogs that were opened, are the program's.
        std::vector<QPointer<QWidget>> windows;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == "KsTopLevelDialog") windows.emplace_back(widget);
        for (const QPointer<QWidget>& window : windows) delete window;
    }

    // Clicks, and whether they are to be heard.

    void clickInWindow(const char* id, bool heard = true)
    {
        begin(Window, id);
        QWidget* frame = find(id) ? find(id)->getWidget() : nullptr;
        auto* button = frame ? frame->findChild<QAbstractButton*>() : nullptr;
        if (button) click(button, QPoint(10, button->height() / 2));
        end(id, heard, heard);
    }

    void clickInScene(const char* id, const char* part, bool heard = true)
    {
        begin(Scene, id);
        if (KsDialogComponent* element = find(id))
            clickAt(boxOf(element->getAnyPart(part, false)).getCenter());
        end(id, heard, heard);
    }

    void openPageInWindow(const char* id, int page)
    {
        begin(Window, id);
        QWidget* frame = find(id) ? find(id)->getWidget() : nullptr;
        auto* tabs = frame ? frame->findChild<QTabBar*>() : nullptr;
        if (tabs) click(tabs, tabs->tabRect(page).center());
        end(id, true, true);
    }

    // Only the window tells of a page.
    void openPageInScene(const char* id, int page)
    {
        begin(Scene, id);
        auto* tabs = find(id) ? ksCast<KsGroup>(find(id)->getAnyPart("pagesSep", false)) : nullptr;
        for (int i = 0; tabs && i < tabs->getNumChildren(); ++i) {
            KsNode* tab = tabs->getChild(i);
            if (!tab->isOfType(KsSwitch::getClassTypeId()) || page-- != 0) continue;
            clickAt(boxOf(tab).getCenter());
            break;
        }
        end(id, true, false);
    }

    bool leavePictures()
    {
        QWidget* window = m_dialog->getBaseWidget();
        QApplication::processEvents();
        QImage image(window->size() * 2, QImage::Format_RGB32);
        image.setDevicePixelRatio(2);
        window->render(&image);
        const bool window2d = image.save("demo-2d.png");

        look();
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
            KsFormweave* element = elements->at(i);
            const auto add = [&](const char* name, KsField* field) {
                m_listeners.push_back(
                    std::make_unique<FieldListener>(m_heard, element, name, field));
            };
            if (auto* box = ksCast<KsDialogCheckBox>(element)) add("state", &box->state);
            if (auto* tabs = ksCast<KsTabDialog>(element)) {
                add("selectedPage", &tabs->selectedPage);
                tabs->addAuditor(&m_pageAuditor);
            }
            listen(element->getElements());
        }
    }

    KsDialogComponent* find(const char* id) const
    {
        return ksCast<KsDialogComponent>(m_dialog->searchForAuditorId(id));
    }

    // As it stands in the scene; empty if it is not drawn. The first call builds the panel.
    KbBox3f boxOf(KsNode* node)
    {
        KsSearchAction search;
        search.setNode(node);
        search.setSearchingAll(true);
        search.apply(m_scene.get());
        KsGetBoundingBoxAction measure(m_viewport);
        if (search.getPath()) measure.apply(search.getPath());
        return measure.getBoundingBox();
    }

    // A pixel of the picture is a unit of the panels, and all of them are in it.
    void look()
    {
        const KbBox3f box = boxOf(m_dialog);
        const KbVec3f size = box.getSize();
        m_camera->height = std::ceil(size[1]) + 24;
        m_camera->position =
            KbVec3f(box.getCenter()[0], box.getCenter()[1], box.getMax()[2] + size[2] + 10);
        m_camera->farDistance = 3 * size[2] + 20;
        m_viewport.setWindowSize(static_cast<int>(std::ceil(size[0])) + 24,
                                 static_cast<int>(std::ceil(size[1])) + 24);
        m_events.setViewportRegion(m_viewport);
    }

    void clickAt(const KbVec3f& place)
    {
        const KbVec3f camera = m_camera->position;
        const KbVec2i32 window = m_viewport.getWindowSize();
        const KbVec2f pointer(place[0] - camera[0] + static_cast<float>(window[0]) / 2,
                              place[1] - camera[1] + static_cast<float>(window[1]) / 2);
        for (const auto state : {KsButtonEvent::DOWN, KsButtonEvent::UP}) {
            KsMouseButtonEvent event(KsMouseButtonEvent::BUTTON1, state, pointer);
            m_events.setEvent(&event);
            m_events.apply(m_scene.get());
            m_events.setEvent(nullptr);
        }
    }

    void begin(Presentation presentation, const char* id)
    {
        m_heard = {presentation};
        m_heard.tell() << "a click on " << id << '\n';
    }

    // What both presentations show of it must agree.
    void end(const char* id, bool changes, bool told)
    {
        KsDialogComponent* element = find(id);
        const QWidget* frame = element ? element->getWidget() : nullptr;
        std::string window, scene;
        if (auto* box = ksCast<KsDialogCheckBox>(element)) {
            const auto* toggle = frame ? frame->findChild<QCheckBox*>() : nullptr;
            const auto* shape = ksCast<KsSwitch>(box->getAnyPart("stateSwitch", false));
            window = toggle ? onOff(toggle->isChecked()) : "nothing";
            scene = shape ? onOff(shape->whichChild == 1) : "nothing";
        } else if (auto* tabs = ksCast<KsTabDialog>(element)) {
            const auto* pages = frame ? frame->findChild<QTabWidget*>() : nullptr;
            if (pages) window = pages->tabText(pages->currentIndex()).toStdString();
            for (int i = 0; i < tabs->getNumChildren(); ++i) {
                KsDialogComponent* page = tabs->getChild(i);
                if (page->isShown3D()) scene += page->label.getValue().toUtf8();
            }
        }
        if (!window.empty()) {
            m_heard.tell() << (element->enable ? "" : "it is disabled and stays; ")
                           << "the window shows " << window << ", the panel shows " << scene
                           << '\n';
        }
        std::cout << '\n';
        const int changesWanted = changes && !window.empty() ? 1 : 0;
        if (!frame || window != scene || m_heard.auditorCalls != (told ? 1 : 0) ||
            m_heard.fieldChanges != changesWanted) {
            std::cout << "this is not what was to happen\n\n";
            m_good = false;
        }
    }

    KsTopLevelDialog* m_dialog;
    Heard m_heard;
    Auditor m_auditor;
    PageAuditor m_pageAuditor;
    std::vector<std::unique_ptr<FieldListener>> m_listeners;
    KsRef<KsSeparator> m_scene;
    KsOrthographicCamera* m_camera;
    KbViewportRegion m_viewport;
    KsHandleEventAction m_events;
    bool m_good = true;
};

bool play()
{
    KsFormweave* element = KsFormweave::loadFromFile(file);
    auto* dialog = ksCast<KsTopLevelDialog>(element);
    if (!dialog) {
        if (element) element->unref();
        return false;
    }
    bool good = false;
    {
        Session session(dialog);
        session.clickInWindow("lastScene");
        session.clickInScene("updates", "stateSep");
        session.openPageInWindow("pages", 2);
        session.clickInScene("reflections", "stateSep");
        session.clickInWindow("caustics");
        session.clickInWindow("rayTracing", false);
        session.clickInScene("rayTracing", "frameSep", false);
        session.openPageInScene("pages", 0);
        session.clickInWindow("restore");  // a message box asks
        session.clickInWindow("autosave"); // opens a second dialog
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
