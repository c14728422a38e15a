// Controls of each kind beside the same forms written by hand with Qt, and a form of all kinds. The
// counter tells bytes per control.

#include "forms.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/events/KsEvent.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <vector>

namespace {

constexpr int controlsPerRow = 10;

/// A frame with a label and the control, as a person writes a row of a form.
template <class Widget> QWidget* labelled(QWidget* parent, int i, Widget*& control)
{
    auto* cell = new QFrame(parent);
    auto* inner = new QHBoxLayout(cell);
    inner->addWidget(named(new QLabel("Label " + QString::number(i), cell)));
    control = named(new Widget(cell));
    inner->addWidget(control);
    return cell;
}

struct Kind {
    const char* type;
    const char* fields; ///< In a file, beside the label.
    QWidget* (*byHand)(QWidget* parent, int i);
    bool labelled = true;
};

const Kind kinds[] = {
    {"DialogCheckBox", "onString \"on\"",
     [](QWidget* parent, int i) {
         QCheckBox* box = nullptr;
         QWidget* cell = labelled(parent, i, box);
         box->setText("on");
         return cell;
     }},
    {"DialogPushButton", "buttonLabel \"Press\"",
     [](QWidget* parent, int i) {
         QPushButton* button = nullptr;
         QWidget* cell = labelled(parent, i, button);
         button->setText("Press");
         return cell;
     }},
    {"DialogLabel", "",
     [](QWidget* parent, int i) {
         auto* cell = new QFrame(parent);
         auto* inner = new QHBoxLayout(cell);
         inner->addWidget(named(new QLabel("Label " + QString::number(i), cell)));
         return static_cast<QWidget*>(cell);
     }},
    {"DialogSeparator", "",
     [](QWidget* parent, int) {
         auto* cell = new QFrame(parent);
         auto* inner = new QHBoxLayout(cell);
         auto* line = new QFrame(cell);
         line->setFrameShape(QFrame::HLine);
         inner->addWidget(line);
         return static_cast<QWidget*>(cell);
     },
     false},
    {"DialogRealSlider", "value 0.5 colors [ 0.1 0.2 0.5, 0.9 0.9 0.8 ]",
     [](QWidget* parent, int i) {
         QCheckBox* box = nullptr;
         QWidget* cell = labelled(parent, i, box);
         auto* bar = new PaintedBar(cell);
         bar->setMinimumSize(60, 24);
         cell->layout()->addWidget(bar);
         cell->layout()->addWidget(named(new QLineEdit("0.500", cell)));
         return cell;
     }},
    {"DialogComboBox", "items [ \"red\", \"green\", \"blue\" ]",
     [](QWidget* parent, int i) {
         QComboBox* combo = nullptr;
         QWidget* cell = labelled(parent, i, combo);
         combo->addItems({"red", "green", "blue"});
         return cell;
     }},
    {"DialogEditText", "editText \"some text\"",
     [](QWidget* parent, int i) {
         QLineEdit* edit = nullptr;
         QWidget* cell = labelled(parent, i, edit);
         edit->setText("some text");
         return cell;
     }},
    {"DialogRadioButtons", "items [ \"red\", \"green\", \"blue\" ]",
     [](QWidget* parent, int i) {
         auto* cell = new QFrame(parent);
         auto* inner = new QHBoxLayout(cell);
         auto* box = named(new QGroupBox("Label " + QString::number(i), cell));
         auto* column = new QVBoxLayout(box);
         for (const char* item : {"red", "green", "blue"})
             column->addWidget(named(new QRadioButton(item, box)));
         inner->addWidget(box);
         return static_cast<QWidget*>(cell);
     }},
};

using Kinds = std::vector<const Kind*>;

/// Those that this library has.
Kinds present()
{
    Kinds found;
    for (const Kind& kind : kinds)
        if (!KsType::fromName(kind.type).isBad()) found.push_back(&kind);
    return found;
}

/// The text of a form: one after the other of the kinds, `perRow` beside each other.
std::string formOf(const Kinds& all, int count, int perRow)
{
    std::string text = "TopLevelDialog { label \"Large\"\n";
    for (int i = 0; i < count;) {
        if (perRow > 1) text += "ColumnDialog {\n";
        for (int k = 0; k < perRow && i < count; ++k, ++i) {
            const Kind& kind = *all[static_cast<std::size_t>(i) % all.size()];
            text += std::string(kind.type) + " { ";
            if (kind.labelled) text += "label \"Label " + std::to_string(i) + "\" ";
            text += std::string(kind.fields) + " }\n";
        }
        if (perRow > 1) text += "}\n";
    }
    return text + "}\n";
}

QWidget* windowOf(const Kinds& all, int count, int perRow)
{
    auto* window = new QWidget;
    auto* column = new QVBoxLayout(window);
    for (int i = 0; i < count;) {
        auto* frame = new QFrame(window);
        auto* row = new QHBoxLayout(frame);
        for (int k = 0; k < perRow && i < count; ++k, ++i)
            row->addWidget(all[static_cast<std::size_t>(i) % all.size()]->byHand(frame, i));
        column->addWidget(frame);
    }
    return window;
}

void enrolForm(const std::string& name, const Kinds& all, int count, int perRow)
{
    const std::string size = "/" + std::to_string(count);
    const std::string text = formOf(all, count, perRow);
    // Reading the text is part of it; it is a small part.
    const MakeDialog make = [text] { return readForm(text); };
    const auto enrol = [&](const char* what, std::function<void(benchmark::State&)> run) {
        benchmark::RegisterBenchmark((name + "/" + what + size).c_str(), std::move(run))
            ->Unit(benchmark::kMillisecond);
    };
    enrol("window", [=](benchmark::State& state) { measureWindow(state, count, make); });
    enrol("byHand", [=](benchmark::State& state) {
        measureHandWritten(state, count, [=] { return windowOf(all, count, perRow); });
    });
    enrol("scene", [=](benchmark::State& state) { measureScene(state, count, make); });
}

/// A press on a combo box of many items, up to the list of draws: the list stands open.
void openLongList(benchmark::State& state)
{
    std::string text = "TopLevelDialog { DialogComboBox { auditorID \"long\" items [";
    for (int i = 0; i < state.range(0); ++i) text += " \"item " + std::to_string(i) + "\",";
    const PanelScene scene(readForm(text + " ] } }"));
    KsFormweave* combo = scene.dialog->searchForAuditorId("long");
    KsGetBoundingBoxAction boxes(scene.viewport);
    KsRenderAction draws(scene.viewport);
    KsHandleEventAction events(scene.viewport);
    draws.apply(scene.root.get());
    for (auto _ : state) {
        const KsMouseButtonEvent press(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN,
                                       KbVec2f(500, 500));
        events.setEvent(&press);
        events.apply(scene.root.get());
        boxes.apply(scene.root.get());
        draws.apply(scene.root.get());
        state.PauseTiming();
        if (!events.isHandled()) state.SkipWithError("nothing was pressed");
        const KsMouseButtonEvent release(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP,
                                         KbVec2f(500, 500));
        events.setEvent(&release);
        events.apply(scene.root.get());
        combo->set3DInactive();
        boxes.apply(scene.root.get());
        draws.apply(scene.root.get());
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv, [] {
        for (const Kind* kind : present())
            for (const int count : {100, 1000})
                enrolForm(kind->type, {kind}, count, controlsPerRow);
        enrolForm("allKinds", present(), 1000, 1);
        if (!KsType::fromName("DialogComboBox").isBad()) {
            benchmark::RegisterBenchmark("openLongList", openLongList)
                ->Arg(1000)
                ->Arg(10000)
                ->Unit(benchmark::kMillisecond);
        }
    });
}
