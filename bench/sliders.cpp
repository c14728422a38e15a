// Sliders beside rows written by hand, and what a drag costs. Both forms show bars in gradients.

#include "forms.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>

namespace {

constexpr int slidersPerRow = 5;
constexpr int moves = 1000;

KsRef<KsTopLevelDialog> sliders(int count, const std::string& fields = "")
{
    std::string text = "TopLevelDialog { label \"Sliders\" ";
    for (int i = 0; i < count; ++i) {
        if (i % slidersPerRow == 0) text += "ColumnDialog { ";
        text += "DialogRealSlider { label \"Value " + std::to_string(i) +
                "\" value 0.5 colors [ 0.1 0.2 0.5, 0.9 0.9 0.8 ] " + fields + " } ";
        if (i % slidersPerRow == slidersPerRow - 1 || i == count - 1) text += "} ";
    }
    return readForm(text + "}");
}

QWidget* slidersByHand(int count)
{
    auto* window = new QWidget;
    auto* column = new QVBoxLayout(window);
    QHBoxLayout* row = nullptr;
    for (int i = 0; i < count; ++i) {
        if (i % slidersPerRow == 0) {
            auto* frame = new QFrame(window);
            row = new QHBoxLayout(frame);
            column->addWidget(frame);
        }
        auto* cell = new QFrame(window);
        auto* inner = new QHBoxLayout(cell);
        inner->addWidget(named(new QLabel("Value " + QString::number(i), cell)));
        inner->addWidget(named(new QCheckBox(cell)));
        auto* bar = new PaintedBar(cell);
        bar->setMinimumSize(80, 24);
        inner->addWidget(bar);
        auto* edit = named(new QLineEdit("0.500", cell));
        edit->setFixedWidth(44);
        inner->addWidget(edit);
        row->addWidget(cell);
    }
    return window;
}

void window(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    measureWindow(state, count, [=] { return sliders(count); });
}
// The time of all threads: drawing may have some of its own.
BENCHMARK(window)->Arg(30)->Arg(300)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

void windowByHand(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    measureHandWritten(state, count, [=] { return slidersByHand(count); });
}
BENCHMARK(windowByHand)->Arg(30)->Arg(300)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

void scene(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    measureScene(state, count, [=] { return sliders(count); });
}
BENCHMARK(scene)->Arg(30)->Arg(300)->Unit(benchmark::kMillisecond);

KsDialogRealSlider* onlySlider(KsTopLevelDialog* dialog)
{
    return static_cast<KsDialogRealSlider*>(
        static_cast<KsDialogGroup*>(dialog->getChild(0))->getChild(0));
}

/// A thousand moves of the pointer, to and fro, as the widget gets them.
void dragInAWindow(benchmark::State& state)
{
    KsRef<KsTopLevelDialog> dialog = sliders(1, "continuousTrigger TRUE width 400");
    dialog->buildDialog();
    dialog->show();
    QWidget* bar = nullptr;
    for (QObject* child : onlySlider(dialog.get())->getWidget()->children()) {
        if (auto* slider = dynamic_cast<KsDialogCustomSlider*>(child)) bar = slider->getWidget();
    }
    const auto send = [&](QEvent::Type type, int x) {
        const bool moving = type == QEvent::MouseMove;
        QMouseEvent event(type, QPoint(x, 3), moving ? Qt::NoButton : Qt::LeftButton,
                          Qt::LeftButton, {});
        QApplication::sendEvent(bar, &event);
    };
    const int travel = bar->width() - 12;
    for (auto _ : state) {
        send(QEvent::MouseButtonPress, 6);
        for (int i = 0; i < moves; ++i) send(QEvent::MouseMove, 6 + i * 7 % travel);
        send(QEvent::MouseButtonRelease, 6);
    }
    state.SetItemsProcessed(state.iterations() * moves);
    QWidget* base = dialog->getBaseWidget();
    dialog.reset();
    delete base;
}
BENCHMARK(dragInAWindow)->Unit(benchmark::kMillisecond);

/// The same in a scene.
void dragInAScene(benchmark::State& state)
{
    const PanelScene panel(sliders(1, "continuousTrigger TRUE width 400"));
    KsDialogRealSlider* slider = onlySlider(panel.dialog);
    KsSearchAction search;
    search.setSearchingAll(true);
    search.setNode(slider->getAnyPart("cursorSep", false));
    search.apply(panel.root.get());
    KsGetBoundingBoxAction boxes(panel.viewport);
    boxes.apply(search.getPath());
    const KbVec3f middle = boxes.getBoundingBox().getCenter() - KbVec3f(0, 3, 0);
    KbVec3f screen;
    panel.camera->getViewVolume(1).projectToScreen(middle, screen);
    const KbVec2f start(screen[0] * 1000, screen[1] * 1000);
    KsHandleEventAction events(panel.viewport);
    const auto send = [&](const KsEvent& event) {
        events.setEvent(&event);
        events.apply(panel.root.get());
        events.setEvent(nullptr);
    };
    using Button = KsMouseButtonEvent;
    for (auto _ : state) {
        send(Button(Button::BUTTON1, KsButtonEvent::DOWN, start));
        for (int i = 0; i < moves; ++i)
            send(KsLocation2Event(start + KbVec2f(static_cast<float>(i * 7 % 100), 0)));
        send(KsLocation2Event(start));
        send(Button(Button::BUTTON1, KsButtonEvent::UP, start));
    }
    state.SetItemsProcessed(state.iterations() * moves);
    if (slider->value == 0.5f && slider->value.isDefault()) state.SkipWithError("nothing moved");
}
BENCHMARK(dragInAScene)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv); }
