// The whole of examples/preferences.arb: read, built and painted, beside the same dialog written by
// hand with Qt.

#include "forms.h"

#include <arborium/actions/KsRenderAction.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabWidget>
#include <QTextEdit>
#include <QVBoxLayout>
#include <fstream>
#include <iterator>

namespace {

std::string fileText()
{
    std::ifstream in(FORMWEAVE_SOURCE_DIR "/examples/preferences.arb");
    return {std::istreambuf_iterator<char>(in), {}};
}

int countElements(const KsElementList* elements)
{
    int count = 0;
    for (int i = 0; elements && i < elements->count(); ++i)
        count += 1 + countElements(elements->at(i)->getElements());
    return count;
}

// By hand: what a person writes who has the same dialog in mind. A form grows downward; its groups
// and columns are forms again.

class Form {
public:
    Form(QWidget* parent, QBoxLayout::Direction direction, bool framed = false)
        : m_frame(new QFrame(parent)), m_layout(new QBoxLayout(direction, m_frame))
    {
        if (framed) m_frame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        m_layout->setContentsMargins(3, 3, 3, 3);
    }

    QWidget* widget() const { return m_frame; }
    Form rows(bool framed = false) { return inner(QBoxLayout::TopToBottom, framed); }
    Form columns() { return inner(QBoxLayout::LeftToRight, false); }
    void text(const char* text) { m_layout->addWidget(named(new QLabel(text, m_frame))); }
    void line(QFrame::Shape shape)
    {
        auto* line = new QFrame(m_frame);
        line->setFrameShape(shape);
        m_layout->addWidget(line);
    }
    void box(const char* label, const char* text, bool on = false)
    {
        auto* box = new QCheckBox(text);
        box->setChecked(on);
        row(label, box);
    }
    void combo(const char* label, const QStringList& items, int selected = 0)
    {
        auto* combo = new QComboBox;
        combo->addItems(items);
        combo->setCurrentIndex(selected);
        row(label, combo);
    }
    void edit(const char* label, const char* text) { row(label, new QLineEdit(text)); }
    void button(const char* label, const char* text) { row(label, new QPushButton(text)); }
    void button(const char* text) { m_layout->addWidget(named(new QPushButton(text, m_frame))); }
    void notes(const char* label, const char* text)
    {
        auto* edit = new QTextEdit;
        edit->setPlainText(text);
        row(label, edit);
    }
    void slider(const char* label, double min, double max, double value, bool toggle = false)
    {
        auto* cell = new QFrame(m_frame);
        auto* layout = new QHBoxLayout(cell);
        layout->addWidget(named(new QLabel(label, cell)));
        if (toggle) layout->addWidget(named(new QCheckBox(cell)));
        auto* bar = new QSlider(Qt::Horizontal, cell);
        bar->setRange(0, 1000);
        bar->setValue(static_cast<int>(1000 * (value - min) / (max - min)));
        layout->addWidget(bar);
        auto* edit = named(new QLineEdit(QString::number(value), cell));
        edit->setFixedWidth(40);
        layout->addWidget(edit);
        m_layout->addWidget(cell);
    }
    void radio(const char* label, const QStringList& items, int selected)
    {
        auto* group = named(new QGroupBox(label, m_frame));
        auto* layout = new QVBoxLayout(group);
        auto* buttons = new QButtonGroup(group);
        for (const QString& item : items) {
            auto* button = named(new QRadioButton(item, group));
            buttons->addButton(button);
            button->setChecked(buttons->buttons().size() == selected + 1);
            layout->addWidget(button);
        }
        m_layout->addWidget(group);
    }
    QTabWidget* tabs()
    {
        auto* tabs = named(new QTabWidget(m_frame));
        m_layout->addWidget(tabs);
        return tabs;
    }

private:
    template <class Widget> static Widget* named(Widget* widget)
    {
        widget->setFont(KsFormweave::getFormweaveFont());
        return widget;
    }
    Form inner(QBoxLayout::Direction direction, bool framed)
    {
        Form form(m_frame, direction, framed);
        m_layout->addWidget(form.m_frame);
        return form;
    }
    void row(const char* label, QWidget* control)
    {
        auto* cell = new QFrame(m_frame);
        auto* layout = new QHBoxLayout(cell);
        layout->setContentsMargins(3, 3, 3, 3);
        layout->addWidget(named(new QLabel(label, cell)));
        layout->addWidget(named(control));
        m_layout->addWidget(cell);
    }

    QFrame* m_frame;
    QBoxLayout* m_layout;
};

Form addPage(QTabWidget* tabs, const char* title)
{
    Form page(tabs, QBoxLayout::TopToBottom);
    tabs->addTab(page.widget(), title);
    return page;
}

void addMenus(QMenuBar* bar)
{
    QMenu* file = bar->addMenu("File");
    file->addAction("Import settings...")->setShortcut(QKeySequence("Ctrl+O"));
    file->addAction("Export settings...")->setShortcut(QKeySequence("Ctrl+S"));
    file->addSeparator();
    QMenu* profiles = file->addMenu("Profiles");
    for (const char* name : {"Modelling", "Lighting", "Review"})
        profiles->addAction(name)->setCheckable(true);
    profiles->addSeparator();
    profiles->addAction("New profile");
    file->addSeparator();
    file->addAction("Close")->setShortcut(QKeySequence("Ctrl+W"));
    QMenu* edit = bar->addMenu("Edit");
    edit->addAction("Undo")->setEnabled(false);
    edit->addAction("Restore all defaults")->setShortcut(QKeySequence("Ctrl+R"));
    edit->addSeparator();
    edit->addAction("Shortcuts...");
    edit->addAction("Licence...");
    QMenu* view = bar->addMenu("View");
    view->addAction("Show hints")->setCheckable(true);
    view->addAction("Show expert settings")->setCheckable(true);
    view->addSeparator();
    view->addAction("Small texts")->setCheckable(true);
    view->addAction("Large texts")->setCheckable(true);
    view->addSeparator();
    view->addAction("Statistics")->setCheckable(true);
    view->addAction("Messages")->setCheckable(true);
    bar->addMenu("Help")->addAction("About");
}

void addGeneral(Form page)
{
    Form columns = page.columns();
    Form look = columns.rows(true);
    look.text("Appearance");
    look.combo("Language", {"English", "Deutsch", "Español", "Français"});
    look.combo("Units", {"Millimetres", "Metres", "Inches"}, 1);
    look.radio("Theme", {"Light", "Dark", "As the desktop"}, 2);
    Form start = columns.rows(true);
    start.text("At the start");
    start.box("Last scene", "opened again", true);
    start.box("Updates", "not looked for");
    start.box("Splash screen", "shown", true);
    start.box("Autosave", "off");
    page.edit("Author", "Ines Okafor");
}

void addViewport(Form page)
{
    Form columns = page.columns();
    Form camera = columns.rows(true);
    camera.text("Camera");
    camera.slider("Field of view", 10, 120, 45);
    camera.slider("Walking speed", 0.1, 10, 1.4);
    camera.slider("Steps of turn", 1, 90, 15);
    Form how = camera.columns();
    how.box("Orbit", "", true);
    how.box("Zoom to pointer", "", true);
    columns.line(QFrame::VLine);
    Form ground = columns.rows(true);
    ground.text("Ground");
    ground.box("Grid", "shown", true);
    ground.combo("Spacing", {"1 cm", "10 cm", "1 m"}, 2);
    ground.combo("Colour", {"Light", "Dark", "By axis"});
    Form what = ground.columns();
    what.box("Snap", "");
    what.box("Axes", "", true);
    page.line(QFrame::HLine);
    page.slider("Sky", 0, 1, 0.4);
}

void addRendering(Form page)
{
    Form columns = page.columns();
    Form quality = columns.rows(true);
    quality.text("Quality");
    quality.slider("Samples", 1, 256, 64, true);
    quality.slider("Bounces", 0, 16, 4, true);
    quality.combo("Filter", {"Box", "Triangle", "Gaussian"}, 2);
    quality.combo("Tiles", {"16", "32", "64"}, 1);
    Form light = columns.rows(true);
    light.text("Light");
    light.box("Shadows", "soft", true);
    light.box("Reflections", "none");
    light.box("Caustics", "none");
    light.box("Ray tracing card", "not found");
    page.line(QFrame::HLine);
    Form output = page.columns();
    output.button("Output", "Size and format...");
    output.button("Preview", "Show...");
}

void addInput(Form page)
{
    QTabWidget* devices = page.tabs();
    Form mouse = addPage(devices, "Mouse");
    mouse.slider("Speed", 0, 4, 1);
    mouse.radio("Turn with", {"Left button", "Middle button", "Right button"}, 1);
    mouse.slider("Double click", 100, 1000, 400);
    mouse.box("Wheel", "as it is");
    Form keyboard = addPage(devices, "Keyboard");
    keyboard.slider("Repeat after", 100, 1000, 250);
    keyboard.slider("Repeats a second", 1, 60, 25);
    keyboard.combo("Layout", {"As the desktop", "Left-handed", "Numeric pad"});
    keyboard.box("Numbers", "turn the view", true);
    Form tracker = addPage(devices, "Tracker");
    tracker.edit("Address", "tracker.local:3883");
    tracker.box("Head tracking", "off");
    tracker.slider("Smoothing", 0, 1, 0.25);
    tracker.text("Eye positions arrive 120 times a second.");
}

void addFiles(Form page)
{
    Form places = page.rows(true);
    Form textures = places.columns();
    textures.edit("Textures", "~/scenes/textures");
    textures.button("Browse...");
    Form pictures = places.columns();
    pictures.edit("Pictures", "~/pictures");
    pictures.button("Browse...");
    page.notes("Notes", "Textures are read from the first folder that has them.\n"
                        "Pictures that exist are kept, and the new ones numbered.\n"
                        "Notes are saved with the scene.");
}

QWidget* makeByHand()
{
    auto* window = new QWidget;
    window->setWindowTitle("Preferences");
    auto* layout = new QVBoxLayout(window);
    auto* bar = new QMenuBar(window);
    addMenus(bar);
    layout->setMenuBar(bar);
    Form all(window, QBoxLayout::TopToBottom);
    layout->addWidget(all.widget());
    QTabWidget* tabs = all.tabs();
    addGeneral(addPage(tabs, "General"));
    addViewport(addPage(tabs, "Viewport"));
    addRendering(addPage(tabs, "Rendering"));
    addInput(addPage(tabs, "Input"));
    addFiles(addPage(tabs, "Files"));
    Form buttons = all.columns();
    for (const char* text : {"Restore defaults", "Apply", "OK"}) buttons.button(text);
    return window;
}

// ---- measurements -------------------------------------------------------------------------

int numElements()
{
    const KsRef<KsTopLevelDialog> dialog = readForm(fileText());
    return 1 + countElements(dialog->getElements());
}

void read(benchmark::State& state)
{
    const std::string text = fileText();
    for (auto _ : state) benchmark::DoNotOptimize(readForm(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void readBuildAndPaintWindow(benchmark::State& state)
{
    const std::string text = fileText();
    measureWindow(state, numElements(), [&] { return readForm(text); });
}

void paintWindowByHand(benchmark::State& state)
{
    measureHandWritten(state, numElements(), makeByHand);
}

void readAndBuildScene(benchmark::State& state)
{
    const std::string text = fileText();
    measureScene(state, numElements(), [&] { return readForm(text); });
}

/// With the first picture, from nothing.
void readBuildAndPaintScene(benchmark::State& state)
{
    const std::string text = fileText();
    for (auto _ : state) {
        const PanelScene scene(readForm(text));
        KsOffscreenRenderer renderer{scene.viewport};
        renderer.render(scene.root.get());
    }
}

/// The same before GL: boxes and draw list.
void readBuildAndListScene(benchmark::State& state)
{
    const std::string text = fileText();
    for (auto _ : state) {
        const PanelScene scene(readForm(text));
        KsRenderAction draws(scene.viewport);
        draws.apply(scene.root.get());
    }
}

void enrol()
{
    benchmark::RegisterBenchmark("read", read)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("readBuildAndPaintWindow", readBuildAndPaintWindow)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("paintWindowByHand", paintWindowByHand)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("readAndBuildScene", readAndBuildScene)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("readBuildAndListScene", readBuildAndListScene)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("readBuildAndPaintScene", readBuildAndPaintScene)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, enrol); }
