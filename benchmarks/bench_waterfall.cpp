// Waterfalls, operation by operation and in three sizes, rows and columns: an arriving line, short
// and long moves, other bounds, other sizes, full repaints; and how fast memory takes as many
// pixels. Frames are painted on screen. Needs no display: without one it runs on Qt's offscreen
// platform.
#include "runBenchmarks.h"

#include <QCoreApplication>
#include <QWindow>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <vector>
#include <waterfallModel.h>
#include <waterfallRenderer.h>
#include <waterfallView.h>

using namespace zorbin_qt_gui;

namespace {
// Copies a line from a table, which is as little as a renderer can do.
class tableRenderer_t : public baseWaterfallRenderer_t
{
public:
    void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t*,
                unsigned index) override
    {
        ++calls;
        const std::size_t first = index % 1009;
        std::copy_n(m_table.begin() + static_cast<std::ptrdiff_t>(first), context->numPixels,
                    pixels);
    }

    std::int64_t calls = 0;

private:
    static std::vector<QRgb> makeTable()
    {
        std::vector<QRgb> table;
        for (unsigned i = 0; i < 8192; ++i)
            table.push_back(0xFF000000U | i * 2654435761U);
        return table;
    }

    const std::vector<QRgb> m_table = makeTable();
};

// A full view on screen. The arguments of a benchmark are width, height and whether it shows rows.
class onScreen_t
{
public:
    explicit onScreen_t(const benchmark::State& state)
    {
        view.resize(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
        view.orientation(state.range(2) != 0 ? Qt::Vertical : Qt::Horizontal);
        model.reset(0, 100000);
        view._model(&model);
        view._renderer(&renderer);
        view.show();
        while (!view.windowHandle()->isExposed())
            QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    baseWaterfallModel_t model;
    tableRenderer_t renderer;
    baseWaterfallView_t view;
};

const std::vector<std::vector<std::int64_t>> sizes = {{1000, 400, 1},  {1000, 400, 0},
                                                      {1920, 1080, 1}, {1920, 1080, 0},
                                                      {3840, 2160, 1}, {3840, 2160, 0}};

void allSizes(benchmark::internal::Benchmark* benchmark)
{
    for (const std::vector<std::int64_t>& size : sizes)
        benchmark->Args(size);
    benchmark->ArgNames({"width", "height", "rows"})->Unit(benchmark::kMicrosecond);
}

// A new line a frame.
void followLine(benchmark::State& state)
{
    onScreen_t screen(state);
    const std::int64_t before = screen.renderer.calls;
    for (auto _ : state) {
        screen.model._addItem();
        QCoreApplication::processEvents();
    }
    if (screen.renderer.calls - before != state.iterations())
        state.SkipWithError("not one line was rendered for each that arrived");
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(followLine)->Apply(allSizes);

// A move to and fro by a tenth of what is in view.
void moveShort(benchmark::State& state)
{
    onScreen_t screen(state);
    const int distance = static_cast<int>(state.range(state.range(2) != 0 ? 1 : 0)) / 10;
    const int newest = screen.view.position();
    for (auto _ : state) {
        screen.view.position(screen.view.position() == newest ? newest - distance : newest);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(moveShort)->Apply(allSizes);

// A jump beyond what is in view: all lines are rendered and painted.
void jump(benchmark::State& state)
{
    onScreen_t screen(state);
    const int newest = screen.view.position();
    for (auto _ : state) {
        screen.view.position(screen.view.position() == newest ? newest - 10000 : newest);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(jump)->Apply(allSizes);

void setBounds(benchmark::State& state)
{
    onScreen_t screen(state);
    double end = 1.0;
    for (auto _ : state) {
        end += 0.001;
        screen.view.bounds(0.0, end);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(setBounds)->Apply(allSizes);

// A pixel wider and back.
void resizeView(benchmark::State& state)
{
    onScreen_t screen(state);
    const QSize size = screen.view.size();
    for (auto _ : state) {
        screen.view.resize(screen.view.size() == size ? size + QSize(1, 0) : size);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(resizeView)->Apply(allSizes);

// Everything is painted, nothing rendered.
void repaintAll(benchmark::State& state)
{
    onScreen_t screen(state);
    const std::int64_t before = screen.renderer.calls;
    for (auto _ : state) {
        screen.view.update();
        QCoreApplication::processEvents();
    }
    if (screen.renderer.calls != before)
        state.SkipWithError("lines were rendered");
}
BENCHMARK(repaintAll)->Apply(allSizes);

// What memory allows: as many pixels are copied once.
void copyPixels(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0) * state.range(1));
    const std::vector<QRgb> from(count, 1U);
    std::vector<QRgb> to(count);
    for (auto _ : state) {
        std::copy(from.begin(), from.end(), to.begin());
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(count * sizeof(QRgb)));
}
BENCHMARK(copyPixels)
    ->Args({1000, 400})
    ->Args({1920, 1080})
    ->Args({3840, 2160})
    ->Unit(benchmark::kMicrosecond);
} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv);
}
