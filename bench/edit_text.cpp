// An edit text in a scene: a key at the end of a long text, and long texts as a whole.

#include "forms.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <formweave/formweave.h>

#include <benchmark/benchmark.h>
#include <string>

namespace {

/// Wraps into about as many lines as asked for.
std::string textOf(int lines)
{
    std::string text;
    for (int i = 0; i < lines; ++i)
        text += "line " + std::to_string(i) + " of a text that is wrapped" + (i % 3 ? " " : "\n");
    return text;
}

struct Scene {
    explicit Scene(int lines) : root(new KsSeparator), edit(new KsDialogEditText)
    {
        edit->multiLine = true;
        edit->width = 260;
        edit->height = 160;
        edit->fixedWidth = true;
        edit->editText = textOf(lines).c_str();
        auto* dialog = new KsTopLevelDialog;
        dialog->addChild(edit);
        auto* camera = new KsOrthographicCamera;
        root->addChild(camera);
        root->addChild(dialog);
        boxes.apply(root);
        camera->viewAll(root, KbViewportRegion(1000, 1000));
        draws.apply(root);
    }
    KsRef<KsSeparator> root;
    KsDialogEditText* edit;
    KsGetBoundingBoxAction boxes{KbViewportRegion(1000, 1000)};
    KsRenderAction draws{KbViewportRegion(1000, 1000)};
};

/// What a key costs before a frame is asked for.
void keyAtTheEnd(benchmark::State& state)
{
    Scene scene(static_cast<int>(state.range(0)));
    for (auto _ : state) scene.edit->insertCharTo3DText('x');
}
BENCHMARK(keyAtTheEnd)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Iterations(500)
    ->Unit(benchmark::kMicrosecond);

/// The same with the next frame: boxes brought up to date, the draw list made anew.
void keyAtTheEndAndFrame(benchmark::State& state)
{
    Scene scene(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        scene.edit->insertCharTo3DText('x');
        scene.boxes.apply(scene.root);
        scene.draws.apply(scene.root);
    }
}
BENCHMARK(keyAtTheEndAndFrame)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Iterations(500)
    ->Unit(benchmark::kMicrosecond);

/// A text that the application sets is wrapped as a whole.
void setText(benchmark::State& state)
{
    Scene scene(1);
    const KbString text(textOf(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        scene.edit->editText = text;
        scene.boxes.apply(scene.root);
    }
}
BENCHMARK(setText)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
