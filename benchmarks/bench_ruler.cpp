// Rulers: frames of a ruler on screen whose range changes, the tick search by itself beside one
// that makes and measures every label, and ranges that have no ticks. Needs no display: without one
// it runs on Qt's offscreen platform.
#include "runBenchmarks.h"

#include <QCoreApplication>
#include <QWindow>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <plainRuler.h>
#include <ruler.h>
#include <string>
#include <vector>

using namespace zorbin_qt_gui;

namespace {
const std::vector<ruler_t::tickEntry_t> timeTable = {{1.0, 10},  {2.0, 4},  {5.0, 5},
                                                     {10.0, 10}, {15.0, 3}, {30.0, 6}};

// Hours, minutes and seconds, UTC.
std::string timeText(double value)
{
    const auto second = static_cast<std::int64_t>(std::floor(value)) % 86400;
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(second / 3600),
                  static_cast<int>(second / 60 % 60), static_cast<int>(second % 60));
    return text;
}

class countingRuler_t : public ruler_t
{
public:
    std::int64_t paints = 0;
    mutable std::int64_t labels = 0;

    std::string textFromValue(double value) const override
    {
        ++labels;
        return ruler_t::textFromValue(value);
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        ruler_t::paintEvent(event);
    }
};

class timeRuler_t : public countingRuler_t
{
public:
    timeRuler_t() { tickTable(timeTable, 60.0); }

    std::string textFromValue(double value) const override
    {
        ++labels;
        return timeText(value);
    }
};

// Waits until the window is on screen: before that nothing is painted.
template <typename ruler_type>
void show(ruler_type& ruler)
{
    ruler.resize(1000, 40);
    ruler.show();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    while (!ruler.windowHandle()->isExposed() || ruler.paints == 0);
    ruler.paints = 0;
}

// The range of a frame: a tenth of a per cent wider each time, for a decade.
double rangeOf(std::int64_t frame)
{
    return std::pow(1.001, static_cast<double>(frame % 2303));
}

void changeRangeAndPaint(benchmark::State& state)
{
    countingRuler_t ruler;
    ruler.showMinorTicks(state.range(0) != 0);
    if (state.range(1) != 0)
        ruler.indicator(0.5);
    show(ruler);
    std::int64_t frame = 0;
    for (auto _ : state) {
        ruler.range(0.0, rangeOf(++frame));
        ruler.repaint();
    }
    if (ruler.paints < state.iterations() || ruler.labels == 0)
        state.SkipWithError("a frame was not painted");
    state.counters["labels"] =
        static_cast<double>(ruler.labels) / static_cast<double>(state.iterations());
}
BENCHMARK(changeRangeAndPaint)
    ->ArgNames({"minor", "arrow"})
    ->Args({0, 0})
    ->Args({1, 0})
    ->Args({1, 1});

// Nothing has changed: what a neighbour's expose event costs.
void paintAgain(benchmark::State& state)
{
    countingRuler_t ruler;
    show(ruler);
    ruler.range(0.0, 7.0);
    ruler.repaint();
    const std::int64_t labels = ruler.labels;
    for (auto _ : state)
        ruler.repaint();
    if (ruler.labels != labels)
        state.SkipWithError("ticks were computed anew");
}
BENCHMARK(paintAgain);

// A time axis on watch, 25 frames a second.
void scrollTimeAxis(benchmark::State& state)
{
    const auto seconds = static_cast<double>(state.range(0));
    timeRuler_t ruler;
    show(ruler);
    double now = 1.7e9;
    for (auto _ : state) {
        now += 1.0 / 25.0;
        ruler.range(now - seconds, now);
        ruler.repaint();
    }
    if (ruler.paints < state.iterations() || ruler.labels == 0)
        state.SkipWithError("a frame was not painted");
    state.counters["labels"] =
        static_cast<double>(ruler.labels) / static_cast<double>(state.iterations());
}
BENCHMARK(scrollTimeAxis)->ArgName("seconds")->Arg(60)->Arg(3600);

void searchTicks(benchmark::State& state)
{
    const auto seconds = static_cast<double>(state.range(0));
    timeRuler_t ruler;
    show(ruler);
    double now = 1.7e9;
    for (auto _ : state) {
        now += 1.0 / 25.0;
        ruler.range(now - seconds, now);
        ruler.calculateTickPlacement();
    }
    if (!(ruler.labels > 0))
        state.SkipWithError("no ticks were tried");
}
BENCHMARK(searchTicks)->ArgName("seconds")->Arg(60)->Arg(3600);

void searchTicksPlainly(benchmark::State& state)
{
    const auto seconds = static_cast<double>(state.range(0));
    const timeRuler_t ruler;
    plainRuler_t plain(ruler.font());
    plain.textFromValue = timeText;
    plain.setSize(QSize(1000, 40));
    plain.setTable(timeTable, 60.0);
    double now = 1.7e9;
    for (auto _ : state) {
        now += 1.0 / 25.0;
        plain.setRange(now - seconds, now);
        plain.calculateTickPlacement();
    }
    if (plain.ticks().empty())
        state.SkipWithError("no ticks were found");
}
BENCHMARK(searchTicksPlainly)->ArgName("seconds")->Arg(60)->Arg(3600);

// Ranges that leave nothing to find, and one so narrow that the search begins far away each time.
void searchOddRange(benchmark::State& state, double start, double end, bool hasTicks)
{
    countingRuler_t ruler;
    show(ruler);
    ruler.range(start, end);
    ruler.labels = 0;
    for (auto _ : state) {
        ruler.step(0);
        ruler.calculateTickPlacement();
    }
    if ((ruler.labels > 0) != hasTicks)
        state.SkipWithError("ticks where none are, or none where some are");
}
BENCHMARK_CAPTURE(searchOddRange, huge, 1e300, 1.5e300, true);
BENCHMARK_CAPTURE(searchOddRange, tiny, 1e-300, 2e-300, true);
BENCHMARK_CAPTURE(searchOddRange, infinite, -1.7e308, 1.7e308, false);
BENCHMARK_CAPTURE(searchOddRange, unknown, 0.0, std::numeric_limits<double>::quiet_NaN(), false);

// A base so near 1 that not all of its powers can be tried.
void searchWithOddBase(benchmark::State& state)
{
    countingRuler_t ruler;
    show(ruler);
    ruler.range(0.0, 1000.0);
    for (auto _ : state) {
        ruler.tickTable({{1e6, 10}}, 1.0000001);
        ruler.calculateTickPlacement();
    }
    if (ruler.paints > state.iterations())
        state.SkipWithError("painted meanwhile");
}
BENCHMARK(searchWithOddBase)->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv);
}
