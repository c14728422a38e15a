#pragma once

// What the measurements of forms share: building a dialog in each presentation beside a form
// written by hand, bytes per control, and a scene with a panel in it.

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <formweave/formweave.h>

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QWidget>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <functional>
#include <malloc.h>
#include <string>

using MakeDialog = std::function<KsRef<KsTopLevelDialog>()>;
using MakeWindow = std::function<QWidget*()>;

inline std::size_t heapBytes() { return mallinfo2().uordblks; }

inline void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

/// The dialog of a text; null if it cannot be read.
inline KsRef<KsTopLevelDialog> readForm(const std::string& text)
{
    KsInput in;
    in.setBuffer(text.data(), text.size());
    const KsRef<KsSeparator> root(KsDB::readAll(&in));
    return KsRef<KsTopLevelDialog>(
        root && root->getNumChildren() ? ksCast<KsTopLevelDialog>(root->getChild(0)) : nullptr);
}

/// A bar as a person paints it.
class PaintedBar : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        QLinearGradient gradient(6, 0, width() - 7, 0);
        gradient.setColorAt(0, QColor::fromRgbF(0.1, 0.2, 0.5));
        gradient.setColorAt(1, QColor::fromRgbF(0.9, 0.9, 0.8));
        painter.fillRect(QRect(6, height() / 2 - 5, width() - 12, 10), gradient);
        const int x = width() / 2, y = height() / 2;
        painter.setBrush(QColor(0xAA, 0xAA, 0xAA));
        const QPoint triangle[] = {{x - 6, y + 11}, {x, y}, {x + 6, y + 11}};
        painter.drawPolygon(triangle, 3);
        painter.setPen(Qt::white);
        painter.drawLine(x - 5, y + 10, x, y + 1);
        painter.setPen(QColor(0x55, 0x55, 0x55));
        painter.drawLine(x, y + 1, x + 5, y + 10);
    }
};

/// In the font of our controls.
template <class Widget> Widget* named(Widget* widget)
{
    widget->setFont(KsFormweave::getFormweaveFont());
    return widget;
}

/// Time to make, build, show and paint; the counter is bytes for each of `count` controls.
inline void measureWindow(benchmark::State& state, int count, const MakeDialog& make)
{
    double bytes = 0;
    for (auto _ : state) {
        const std::size_t before = heapBytes();
        KsRef<KsTopLevelDialog> dialog = make();
        dialog->buildDialog();
        dialog->show();
        dialog->getBaseWidget()->grab();
        bytes = static_cast<double>(heapBytes()) - static_cast<double>(before);
        state.PauseTiming();
        QWidget* window = dialog->getBaseWidget();
        dialog.reset();
        delete window;
        settle();
        state.ResumeTiming();
    }
    state.counters["bytesPerControl"] = bytes / count;
}

/// The same of a form written by hand.
inline void measureHandWritten(benchmark::State& state, int count, const MakeWindow& make)
{
    double bytes = 0;
    for (auto _ : state) {
        const std::size_t before = heapBytes();
        QWidget* window = make();
        window->show();
        window->grab();
        bytes = static_cast<double>(heapBytes()) - static_cast<double>(before);
        state.PauseTiming();
        delete window;
        settle();
        state.ResumeTiming();
    }
    state.counters["bytesPerControl"] = bytes / count;
}

/// Time to make a panel and build it in a scene.
inline void measureScene(benchmark::State& state, int count, const MakeDialog& make)
{
    double bytes = 0;
    for (auto _ : state) {
        const std::size_t before = heapBytes();
        KsRef<KsTopLevelDialog> dialog = make();
        KsGetBoundingBoxAction action{KbViewportRegion(1000, 1000)};
        action.apply(dialog.get());
        bytes = static_cast<double>(heapBytes()) - static_cast<double>(before);
        state.PauseTiming();
        dialog.reset();
        state.ResumeTiming();
    }
    state.counters["bytesPerControl"] = bytes / count;
}

/// A scene with one panel, built, and a camera that sees it.
struct PanelScene {
    explicit PanelScene(const KsRef<KsTopLevelDialog>& panel)
        : dialog(panel.get()), root(new KsSeparator), camera(new KsOrthographicCamera)
    {
        root->addChild(camera);
        root->addChild(dialog);
        KsGetBoundingBoxAction action(viewport);
        action.apply(root.get());
        camera->viewAll(root.get(), viewport);
    }
    const KbViewportRegion viewport{1000, 1000};
    KsTopLevelDialog* dialog;
    KsRef<KsSeparator> root;
    KsOrthographicCamera* camera;
};

/// Time to read a file that holds `items`, without that of deleting what was read.
inline void measureReading(benchmark::State& state, const std::string& text, std::int64_t items)
{
    for (auto _ : state) {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        KsRef<KsSeparator> root(KsDB::readAll(&in));
        if (!root) state.SkipWithError("not read");
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.SetItemsProcessed(state.iterations() * items);
}

/// The main function of a program of measurements; `enrol` registers those that need the library.
inline int runBenchmarks(int argc, char** argv, const std::function<void()>& enrol = {})
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    KsDebugError::setHandler([](void*, KsDebugError::Severity, const char*, const char*) {},
                             nullptr);
    KsFormweave::init();
    benchmark::Initialize(&argc, argv);
    if (enrol) enrol();
    benchmark::RunSpecifiedBenchmarks();
    KsFormweave::finish();
    return 0;
}
