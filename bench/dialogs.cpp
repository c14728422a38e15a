// Dialogs beside the same forms written by hand with Qt. Run with --benchmark_filter=... as wanted;
// the counters tell bytes per control and nodes visited per frame.

#include "forms.h"

#include <arborium/actions/KsRenderAction.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <memory>
#include <string>

namespace {

constexpr int boxesPerRow = 10;

std::string fileOf(int nodes)
{
    std::string text = "#Arborium V2.1 ascii\nTopLevelDialog {\n  label \"Large\"\n";
    for (int i = 1; i < nodes;) {
        text += "  RowDialog {\n    rowSpacing 2\n";
        ++i;
        for (int k = 0; k < boxesPerRow && i < nodes; ++k, ++i) {
            const std::string n = std::to_string(i);
            text += "    DialogCheckBox {\n      label \"Option " + n +
                    "\"\n      auditorID \"box" + n +
                    "\"\n      state TRUE\n      onString \"on\"\n      offString \"off\"\n" +
                    "      width 180\n    }\n";
        }
        text += "  }\n";
    }
    return text + "}\n";
}

KsRef<KsTopLevelDialog> makeForm(int boxes)
{
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    for (int i = 0; i < boxes;) {
        auto* row = new KsColumnDialog;
        for (int k = 0; k < boxesPerRow && i < boxes; ++k, ++i) {
            auto* box = new KsDialogCheckBox;
            box->label = ("Option " + std::to_string(i)).c_str();
            box->onString = "on";
            row->addChild(box);
        }
        dialog->addChild(row);
    }
    return dialog;
}

QWidget* makeHandWritten(int boxes)
{
    auto* window = new QWidget;
    auto* column = new QVBoxLayout(window);
    for (int i = 0; i < boxes;) {
        auto* frame = new QFrame(window);
        auto* row = new QHBoxLayout(frame);
        for (int k = 0; k < boxesPerRow && i < boxes; ++k, ++i) {
            auto* cell = new QFrame(frame);
            auto* inner = new QHBoxLayout(cell);
            auto* label = new QLabel("Option " + QString::number(i), cell);
            auto* box = new QCheckBox("on", cell);
            label->setFont(KsFormweave::getFormweaveFont());
            box->setFont(KsFormweave::getFormweaveFont());
            inner->addWidget(label);
            inner->addWidget(box);
            row->addWidget(cell);
        }
        column->addWidget(frame);
    }
    return window;
}

void readDialogFile(benchmark::State& state)
{
    measureReading(state, fileOf(static_cast<int>(state.range(0))), state.range(0));
}
BENCHMARK(readDialogFile)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

void addChildrenOneByOne(benchmark::State& state)
{
    for (auto _ : state) {
        KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
        for (int i = 0; i < state.range(0); ++i) dialog->addChild(new KsDialogCheckBox);
    }
}
BENCHMARK(addChildrenOneByOne)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void buildAndShow(benchmark::State& state)
{
    const int boxes = static_cast<int>(state.range(0));
    measureWindow(state, boxes, [=] { return makeForm(boxes); });
}
BENCHMARK(buildAndShow)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void buildAndShowHandWritten(benchmark::State& state)
{
    const int boxes = static_cast<int>(state.range(0));
    measureHandWritten(state, boxes, [=] { return makeHandWritten(boxes); });
}
BENCHMARK(buildAndShowHandWritten)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void build3D(benchmark::State& state)
{
    const int boxes = static_cast<int>(state.range(0));
    measureScene(state, boxes, [=] { return makeForm(boxes); });
}
BENCHMARK(build3D)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

/// A scene with a panel of check boxes.
struct Scene : PanelScene {
    explicit Scene(int boxes) : PanelScene(makeForm(boxes)) {}
    KsDialogCheckBox* anyBox() const
    {
        return static_cast<KsDialogCheckBox*>(
            static_cast<KsDialogGroup*>(dialog->getChild(0))->getChild(0));
    }
};

void unchangedFrame(benchmark::State& state)
{
    const Scene scene(static_cast<int>(state.range(0)));
    KsOffscreenRenderer renderer{KbViewportRegion(1000, 1000)};
    renderer.render(scene.root.get());
    for (auto _ : state) renderer.render(scene.root.get());
}
BENCHMARK(unchangedFrame)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

/// What a changed state costs before GL: boxes brought up to date, the draw list made anew.
void frameAfterOneStateOurSide(benchmark::State& state)
{
    const Scene scene(static_cast<int>(state.range(0)));
    const KbViewportRegion viewport(1000, 1000);
    KsGetBoundingBoxAction boxes(viewport);
    KsRenderAction draws(viewport);
    draws.apply(scene.root.get());
    KsDialogCheckBox* box = scene.anyBox();
    for (auto _ : state) {
        box->state = !box->state.getValue();
        boxes.apply(scene.root.get());
        draws.apply(scene.root.get());
    }
    state.counters["visitsPerFrame"] =
        static_cast<double>(draws.getNumVisits()) / static_cast<double>(state.iterations());
}
BENCHMARK(frameAfterOneStateOurSide)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

void frameAfterOneState(benchmark::State& state)
{
    const Scene scene(static_cast<int>(state.range(0)));
    KsOffscreenRenderer renderer{KbViewportRegion(1000, 1000)};
    KsDialogCheckBox* box = scene.anyBox();
    for (auto _ : state) {
        box->state = !box->state.getValue();
        renderer.render(scene.root.get());
    }
}
BENCHMARK(frameAfterOneState)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

void fieldToWidget(benchmark::State& state)
{
    KsRef<KsTopLevelDialog> dialog = makeForm(1);
    dialog->buildDialog();
    auto* box = static_cast<KsDialogCheckBox*>(
        static_cast<KsDialogGroup*>(dialog->getChild(0))->getChild(0));
    for (auto _ : state) box->state = !box->state.getValue();
    QWidget* window = dialog->getBaseWidget();
    dialog.reset();
    delete window;
}
BENCHMARK(fieldToWidget);

void bareQtCall(benchmark::State& state)
{
    const std::unique_ptr<QWidget> window(makeHandWritten(1));
    auto* box = window->findChild<QCheckBox*>();
    bool on = false;
    for (auto _ : state) {
        on = !on;
        box->setChecked(on);
        box->setText(on ? QStringLiteral("on") : QString());
    }
}
BENCHMARK(bareQtCall);

} // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
