// A tab dialog of many pages beside the same one written by hand with Qt: made, and turned to
// another page. The counters tell bytes per control and per page.

#include "forms.h"

#include <arborium/actions/KsRenderAction.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QTabWidget>

namespace {

constexpr int controlsPerPage = 20;

KsRef<KsTopLevelDialog> makePages(int pages)
{
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    auto* tabs = new KsTabDialog;
    for (int i = 0; i < pages; ++i) {
        auto* page = new KsRowDialog;
        page->label = ("Page " + std::to_string(i)).c_str();
        for (int k = 0; k < controlsPerPage; ++k) {
            auto* box = new KsDialogCheckBox;
            box->label = ("Option " + std::to_string(k)).c_str();
            box->onString = "on";
            page->addChild(box);
        }
        tabs->addChild(page);
    }
    dialog->addChild(tabs);
    return dialog;
}

KsTabDialog* tabsOf(KsTopLevelDialog* dialog)
{
    return static_cast<KsTabDialog*>(dialog->getChild(0));
}

QWidget* makeHandWritten(int pages)
{
    auto* window = new QWidget;
    auto* column = new QVBoxLayout(window);
    auto* tabs = named(new QTabWidget(window));
    for (int i = 0; i < pages; ++i) {
        auto* page = new QWidget;
        auto* rows = new QVBoxLayout(page);
        for (int k = 0; k < controlsPerPage; ++k) {
            auto* cell = new QFrame(page);
            auto* inner = new QHBoxLayout(cell);
            inner->addWidget(named(new QLabel("Option " + QString::number(k), cell)));
            inner->addWidget(named(new QCheckBox("on", cell)));
            rows->addWidget(cell);
        }
        tabs->addTab(page, "Page " + QString::number(i));
    }
    column->addWidget(tabs);
    return window;
}

void countPages(benchmark::State& state)
{
    state.counters["bytesPerPage"] = state.counters["bytesPerControl"] * controlsPerPage;
}

void buildPages(benchmark::State& state)
{
    const int pages = static_cast<int>(state.range(0));
    measureWindow(state, pages * controlsPerPage, [=] { return makePages(pages); });
    countPages(state);
}
BENCHMARK(buildPages)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);

void buildPagesHandWritten(benchmark::State& state)
{
    const int pages = static_cast<int>(state.range(0));
    measureHandWritten(state, pages * controlsPerPage, [=] { return makeHandWritten(pages); });
    countPages(state);
}
BENCHMARK(buildPagesHandWritten)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);

void buildPages3D(benchmark::State& state)
{
    const int pages = static_cast<int>(state.range(0));
    measureScene(state, pages * controlsPerPage, [=] { return makePages(pages); });
    countPages(state);
}
BENCHMARK(buildPages3D)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);

// Every page was on show once before; the paint is that of the new page.

void changePage(benchmark::State& state)
{
    const int pages = static_cast<int>(state.range(0));
    const KsRef<KsTopLevelDialog> dialog = makePages(pages);
    dialog->buildDialog();
    dialog->show();
    KsTabDialog* tabs = tabsOf(dialog.get());
    for (int page : {0, 1}) {
        tabs->selectedPage = page;
        settle();
    }
    for (auto _ : state) {
        tabs->selectedPage = 1 - tabs->selectedPage;
        QCoreApplication::processEvents();
    }
    delete dialog->getBaseWidget();
}
BENCHMARK(changePage)->Arg(20)->Arg(200)->Unit(benchmark::kMicrosecond);

void changePageHandWritten(benchmark::State& state)
{
    const std::unique_ptr<QWidget> window(makeHandWritten(static_cast<int>(state.range(0))));
    window->show();
    auto* tabs = window->findChild<QTabWidget*>();
    for (int page : {0, 1}) {
        tabs->setCurrentIndex(page);
        settle();
    }
    for (auto _ : state) {
        tabs->setCurrentIndex(1 - tabs->currentIndex());
        QCoreApplication::processEvents();
    }
}
BENCHMARK(changePageHandWritten)->Arg(20)->Arg(200)->Unit(benchmark::kMicrosecond);

/// What it costs before GL: boxes brought up to date, the draw list made anew.
void changePage3D(benchmark::State& state)
{
    const PanelScene scene(makePages(static_cast<int>(state.range(0))));
    KsGetBoundingBoxAction boxes(scene.viewport);
    KsRenderAction draws(scene.viewport);
    draws.apply(scene.root.get());
    KsTabDialog* tabs = tabsOf(scene.dialog);
    for (auto _ : state) {
        tabs->selectedPage = 1 - tabs->selectedPage;
        boxes.apply(scene.root.get());
        draws.apply(scene.root.get());
    }
    state.counters["visitsPerFrame"] =
        static_cast<double>(draws.getNumVisits()) / static_cast<double>(state.iterations());
}
BENCHMARK(changePage3D)->Arg(20)->Arg(200)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
