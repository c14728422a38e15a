// A menu bar of twenty menus with twenty entries each, of each kind, beside the same bar written by
// hand with Qt. The counter tells bytes per entry.

#include "forms.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>

#include <QMenu>
#include <QMenuBar>
#include <QVBoxLayout>

namespace {

constexpr int menus = 20;
constexpr int entriesPerMenu = 20;
constexpr int entries = menus * entriesPerMenu;

std::string numbered(const char* text, int i) { return text + std::to_string(i); }

std::string nameOf(int i) { return numbered("Entry ", i); }
std::string acceleratorOf(int i) { return numbered("Ctrl+Shift+F", i % 35 + 1); }

/// Nine push buttons, five check boxes, two separators and one radio group in turn: twenty rows.
std::string entriesOf(int menu, bool onlyPlain)
{
    std::string text;
    for (int i = 0; i < entriesPerMenu; ++i) {
        const int n = menu * entriesPerMenu + i;
        const std::string label =
            "label \"" + nameOf(n) + "\" accelerator \"" + acceleratorOf(n) + "\" ";
        if (onlyPlain || i < 10) {
            text += "MenuPushButton { " + label + "}\n";
        } else if (i < 15) {
            text += "MenuCheckBox { " + label + "}\n";
        } else if (i < 17) {
            text += "MenuSeparator { }\n";
        } else {
            text += "MenuRadioButtons { items [ \"one\", \"two\", \"three\" ] }\n";
            break;
        }
    }
    return text;
}

std::string barOf(bool onlyPlain)
{
    std::string text = "TopLevelDialog { label \"Menus\" MenuBar {\n";
    for (int i = 0; i < menus; ++i)
        text += "MenuPopup { label \"" + numbered("Menu ", i) + "\" auditorID \"" +
                numbered("menu", i) + "\"\n" + entriesOf(i, onlyPlain) + "}\n";
    return text + "} }\n";
}

void chosen(int, bool) {}

/// As a person writes it: each action in the application's font, with a function that it calls.
QWidget* barByHand(bool onlyPlain)
{
    auto* window = new QWidget;
    auto* layout = new QVBoxLayout(window);
    auto* bar = new QMenuBar(window);
    bar->setFont(KsFormweave::getFormweaveFont());
    layout->setMenuBar(bar);
    for (int m = 0; m < menus; ++m) {
        QMenu* menu = bar->addMenu(QString::fromStdString(numbered("Menu ", m)));
        menu->setFont(KsFormweave::getFormweaveFont());
        const auto add = [&](const QString& text, bool checkable) {
            QAction* action = menu->addAction(text);
            action->setCheckable(checkable);
            QObject::connect(action, &QAction::triggered, menu, [m](bool on) { chosen(m, on); });
            return action;
        };
        for (int i = 0; i < entriesPerMenu; ++i) {
            const int n = m * entriesPerMenu + i;
            if (!onlyPlain && i >= 15 && i < 17) {
                menu->addSeparator();
            } else if (!onlyPlain && i >= 17) {
                add(i == 17 ? "one" : i == 18 ? "two" : "three", true)->setChecked(i == 17);
            } else {
                add(QString::fromStdString(nameOf(n)), !onlyPlain && i >= 10)
                    ->setShortcut(QKeySequence(QString::fromStdString(acceleratorOf(n))));
            }
        }
    }
    // As wide as all titles, so that none is folded away.
    window->resize(bar->sizeHint());
    return window;
}

/// The middle of the title of a menu, in the view.
KbVec2f titleIn(const PanelScene& scene, KsFormweave* menu)
{
    KsSearchAction search;
    search.setSearchingAll(true);
    search.setNode(menu->getAnyPart("frameSep", false));
    search.apply(scene.root.get());
    KsGetBoundingBoxAction box(scene.viewport);
    if (KsPath* path = search.getPath()) box.apply(path);
    KbVec3f seen;
    scene.camera->getViewVolume(scene.viewport.getViewportAspectRatio())
        .projectToScreen(box.getBoundingBox().getCenter(), seen);
    return KbVec2f(seen[0] * 1000, seen[1] * 1000);
}

/// A press and a release on a title, up to the list of draws; then the same again: the menu opens and
/// closes.
void openAndClose(benchmark::State& state, const std::string& text, bool measuresOpening)
{
    const PanelScene scene(readForm(text));
    KsFormweave* menu = scene.dialog->searchForAuditorId("menu10");
    KsGetBoundingBoxAction boxes(scene.viewport);
    KsRenderAction draws(scene.viewport);
    KsHandleEventAction events(scene.viewport);
    draws.apply(scene.root.get());
    const KbVec2f place = titleIn(scene, menu);
    const auto click = [&] {
        for (const auto each : {KsButtonEvent::DOWN, KsButtonEvent::UP}) {
            const KsMouseButtonEvent event(KsMouseButtonEvent::BUTTON1, each, place);
            events.setEvent(&event);
            events.apply(scene.root.get());
        }
        boxes.apply(scene.root.get());
        draws.apply(scene.root.get());
    };
    for (auto _ : state) {
        if (!measuresOpening) state.PauseTiming();
        click();
        if (!menu->showsChildren3D()) state.SkipWithError("the menu is closed");
        if (measuresOpening)
            state.PauseTiming();
        else
            state.ResumeTiming();
        click();
        if (menu->showsChildren3D()) state.SkipWithError("the menu is open");
        if (measuresOpening) state.ResumeTiming();
    }
}

void enrolBar(const std::string& name, bool onlyPlain)
{
    const std::string text = barOf(onlyPlain);
    // Reading the text is part of it; it is a small part.
    const MakeDialog make = [text] { return readForm(text); };
    const auto enrol = [&](const char* what, std::function<void(benchmark::State&)> run) {
        benchmark::RegisterBenchmark((name + "/" + what).c_str(), std::move(run))
            ->Unit(benchmark::kMillisecond);
    };
    enrol("read", [=](benchmark::State& state) {
        for (auto _ : state) make();
    });
    enrol("window", [=](benchmark::State& state) { measureWindow(state, entries, make); });
    enrol("byHand", [=](benchmark::State& state) {
        measureHandWritten(state, entries, [=] { return barByHand(onlyPlain); });
    });
    enrol("scene", [=](benchmark::State& state) { measureScene(state, entries, make); });
    enrol("open", [=](benchmark::State& state) { openAndClose(state, text, true); });
    enrol("close", [=](benchmark::State& state) { openAndClose(state, text, false); });
}

/// One menu with that many entries.
std::string columnOf(int count)
{
    std::string text = "TopLevelDialog { MenuBar { MenuPopup { auditorID \"menu10\"\n";
    for (int i = 0; i < count; ++i) text += "MenuPushButton { label \"" + nameOf(i) + "\" }\n";
    return text + "} } }\n";
}

/// That many menus, each within the one before.
std::string nestOf(int depth)
{
    std::string text = "TopLevelDialog { MenuBar {\n", end = "} }\n";
    for (int i = 0; i < depth; ++i) {
        text += "MenuPopup { label \"" + nameOf(i) + "\"\n";
        end += "}";
    }
    return text + end + "\n";
}

/// What must grow as the number does, in both presentations.
void enrolGrowth(const std::string& name, std::string (*textOf)(int),
                 std::initializer_list<int> counts)
{
    for (const int count : counts) {
        const MakeDialog make = [text = textOf(count)] { return readForm(text); };
        const std::string size = "/" + std::to_string(count);
        benchmark::RegisterBenchmark(
            (name + "/window" + size).c_str(),
            [=](benchmark::State& state) { measureWindow(state, count, make); })
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(
            (name + "/scene" + size).c_str(),
            [=](benchmark::State& state) { measureScene(state, count, make); })
            ->Unit(benchmark::kMillisecond);
    }
}

} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv, [] {
        enrolBar("pushButtons", true);
        enrolBar("allKinds", false);
        enrolGrowth("column", &columnOf, {1000, 10000});
        enrolGrowth("nest", &nestOf, {50, 100, 200});
    });
}
