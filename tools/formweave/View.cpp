#include "Commands.h"

#include "ActionPrinter.h"
#include "Arguments.h"
#include "Banner.h"
#include "DialogFile.h"
#include "Presentation.h"
#include "Session.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/qt/KsQt.h>
#include <arborium/qt/KsQtViewer.h>
#include <formweave/KsMessageDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int windowGap = 40;     // between windows on the desktop
constexpr float panelGap = 30;    // between panels in the scene
constexpr int settlingTime = 100; // ms: a file is often written in several steps

QByteArray contentsOf(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One file on screen: the last good tree of it.
class ShownFile {
public:
    ShownFile(std::string path, const Arguments& arguments, KsDialogAuditor* auditor)
        : m_path(std::move(path)), m_arguments(arguments), m_auditor(auditor),
          m_panel(new KsSeparator), m_place(new KsTranslation)
    {
        m_panel->addChild(m_place);
    }
    ~ShownFile() { hearNothing(); }
    ShownFile(const ShownFile&) = delete;
    ShownFile& operator=(const ShownFile&) = delete;

    /// Shows what the file holds now. If it is broken, the former tree stays, what is wrong stands
    /// in `error`, and FALSE is returned.
    bool read()
    {
        m_contents = contentsOf(m_path);
        auto file = std::make_unique<DialogFile>(m_path);
        file->printErrors(stderr);
        KsFormweave* element = file->element(m_arguments.id);
        error.clear();
        for (const std::string& each : file->errors) error += (error.empty() ? "" : "\n") + each;
        if (file->root && !element) {
            error = file->noElement(m_arguments.id);
            std::fprintf(stderr, "%s\n", error.c_str());
        }
        if (element) show(std::move(file), element);
        if (m_banner) m_banner->setMessage(error);
        return element != nullptr;
    }
    /// The message box of the file with this `auditorID`; null if there is none.
    KsRef<KsMessageDialog> messageBox(const std::string& id) const
    {
        const KbString wanted = KbString::fromUtf8(id);
        for (KsFormweave* each : m_file->elements()) {
            auto* box = ksCast<KsMessageDialog>(each);
            if (box && box->auditorID == wanted) return KsRef<KsMessageDialog>(box);
        }
        return {};
    }
    bool hasChanged() const { return contentsOf(m_path) != m_contents; }

    const std::string& path() const { return m_path; }
    QWidget* window() const { return m_window ? m_window->widget() : nullptr; }
    KsNode* panel() const { return m_panel.get(); }
    void moveWindow(const QPoint& point)
    {
        if (QWidget* widget = window()) widget->move(point);
        m_windowPosition = point;
    }
    /// Puts the panel to the right of `x`, and returns where the next one may stand.
    float placePanel(float x)
    {
        m_place->translation = KbVec3f(0, 0, 0);
        const KbBox3f box = measuredPanel();
        if (box.isEmpty()) return x;
        m_place->translation = KbVec3f(x - box.getMin()[0], 0, 0);
        return x + box.getSize()[0] + panelGap;
    }

    std::string error;

private:
    KbBox3f measuredPanel()
    {
        KsGetBoundingBoxAction measure{KbViewportRegion(100, 100)};
        measure.apply(m_panel.get());
        return measure.getBoundingBox();
    }

    void hearNothing()
    {
        if (auto* dialog = ksCast<KsTopLevelDialog>(m_element)) dialog->removeAuditor(m_auditor);
    }

    void show(std::unique_ptr<DialogFile> file, KsFormweave* element)
    {
        if (m_arguments.presentation & Arguments::Scene) {
            if (m_panel->getNumChildren() > 1)
                m_panel->replaceChild(1, element);
            else
                m_panel->addChild(element);
            // Before the window, whose layout writes sizes that a panel would take for wishes.
            measuredPanel();
        }
        std::unique_ptr<ElementWindow> window;
        if (m_arguments.presentation & Arguments::Window) {
            window = std::make_unique<ElementWindow>(element);
            if (QWidget* widget = window->widget()) {
                if (widget->windowTitle().isEmpty())
                    widget->setWindowTitle(QString::fromStdString(m_path));
                if (QWidget* former = this->window()) m_windowPosition = former->pos();
                if (!m_windowPosition.isNull()) widget->move(m_windowPosition);
                m_banner = new Banner(widget);
            }
            // Before the former one goes: a program without windows would end.
            window->show();
        }
        hearNothing();
        m_window = std::move(window);
        m_element = element;
        m_file = std::move(file);
        if (auto* dialog = ksCast<KsTopLevelDialog>(m_element)) dialog->addAuditor(m_auditor);
    }

    std::string m_path;
    const Arguments& m_arguments;
    KsDialogAuditor* m_auditor;
    QByteArray m_contents;
    std::unique_ptr<DialogFile> m_file; // keeps the element alive
    KsFormweave* m_element = nullptr;
    KsRef<KsSeparator> m_panel;
    KsTranslation* m_place; // the first child of the panel
    std::unique_ptr<ElementWindow> m_window;
    QPointer<Banner> m_banner;
    QPoint m_windowPosition;
};

class View {
public:
    explicit View(const Arguments& arguments) : m_arguments(arguments), m_scene(new KsSeparator)
    {
        m_printer.pressed = [this](const std::string& id) { showMessageBox(id); };
    }

    /// FALSE if a file cannot be shown.
    bool open()
    {
        for (const std::string& path : m_arguments.files) {
            m_files.push_back(std::make_unique<ShownFile>(path, m_arguments, &m_printer));
            if (!m_files.back()->read()) return false;
        }
        placeWindows();
        if (m_arguments.presentation & Arguments::Scene) openScene();
        if (m_arguments.watch) watch();
        return true;
    }

private:
    // Stands for what a program does that hears of the button.
    void showMessageBox(const std::string& id)
    {
        if (id.empty()) return;
        for (const auto& file : m_files) {
            if (const KsRef<KsMessageDialog> box = file->messageBox(id)) return box->show();
        }
    }

    void placeWindows()
    {
        QPoint place(windowGap, windowGap);
        for (const auto& file : m_files) {
            const QWidget* window = file->window();
            if (!window) continue;
            file->moveWindow(place);
            m_right = std::max(m_right, place.x() + window->frameSize().width());
            place.ry() += window->frameSize().height() + windowGap;
        }
    }

    void openScene()
    {
        float x = 0;
        for (const auto& file : m_files) {
            m_scene->addChild(file->panel());
            x = file->placePanel(x);
        }
        m_viewer = std::make_unique<KsQtViewer>();
        m_viewer->setWindowTitle(QString::fromStdString("formweave: " + m_files.front()->path()));
        // Beside the windows, as large as the screen allows.
        const QRect screen = QApplication::primaryScreen()->availableGeometry();
        const QPoint place(m_right + windowGap, windowGap);
        const QPoint room = screen.bottomRight() - QPoint(windowGap, windowGap) - place;
        m_viewer->resize(std::clamp(room.x(), 300, 900), std::clamp(room.y(), 300, 700));
        m_viewer->move(place);
        m_viewer->setBackgroundGradient(KbColor(0.24f, 0.27f, 0.31f), KbColor(0.42f, 0.47f, 0.53f));
        m_viewer->setSceneGraph(m_scene.get());
        m_banner = new Banner(m_viewer.get());
        KsQt::setTopLevelWidget(m_viewer.get());
        m_viewer->show();
    }

    void watch()
    {
        m_settling.setSingleShot(true);
        m_settling.setInterval(settlingTime);
        const auto changed = [this] { m_settling.start(); };
        QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_settling, changed);
        QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_settling, changed);
        QObject::connect(&m_settling, &QTimer::timeout, &m_settling, [this] { readChanged(); });
        watchFiles();
    }

    // A file that was replaced by another one of its name is a new file to the watcher; its
    // directory tells when it is there.
    void watchFiles()
    {
        for (const auto& file : m_files) {
            const QFileInfo info(QString::fromStdString(file->path()));
            if (info.exists()) m_watcher.addPath(info.filePath());
            m_watcher.addPath(info.absolutePath());
        }
    }

    void readChanged()
    {
        watchFiles();
        std::string errors;
        for (const auto& file : m_files) {
            if (file->hasChanged()) {
                const bool good = file->read();
                std::printf("%s: %s\n", file->path().c_str(),
                            good ? "read again" : "is broken; its last good contents stay");
                std::fflush(stdout);
            }
            if (!file->error.empty()) errors += (errors.empty() ? "" : "\n") + file->error;
        }
        if (m_banner) m_banner->setMessage(errors);
    }

    const Arguments& m_arguments;
    ActionPrinter m_printer;
    KsRef<KsSeparator> m_scene;
    std::vector<std::unique_ptr<ShownFile>> m_files;
    std::unique_ptr<KsQtViewer> m_viewer;
    QPointer<Banner> m_banner;
    QFileSystemWatcher m_watcher;
    QTimer m_settling;
    int m_right = 0; // where the windows of the dialogs end
};

} // namespace

int runView(const Arguments& given)
{
    Arguments arguments = given;
    if (arguments.presentation == Arguments::Unset) arguments.presentation = Arguments::Both;
    Session session(Session::Desktop);
    if (!session.isReady() || !session.chooseSkin(arguments.skin)) return Failed;
    View view(arguments);
    return view.open() ? QApplication::exec() : Failed;
}
