// Strip charts, operation by operation: adding, asking for extremes, autoscale, scrolling and
// repainting at several lengths of history. Needs no display: without one it runs on Qt's offscreen
// platform. ZORBIN_QT_STRIPCHART_TYPE=gl measures the OpenGL back end.
#include "runBenchmarks.h"

#include <QColor>
#include <QCoreApplication>
#include <QEvent>
#include <QLayout>
#include <QWindow>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdint>
#include <deque>
#include <memory>
#include <simpleStripChartImpl.h>
#include <stripChart.h>
#include <stripChartCurve.h>
#include <stripChartImpl.h>
#include <vector>

using namespace zorbin_qt_gui;

namespace {
const double rate = 100.0; // points per second

// What the curves show: a saw from 0 to 1000 with noise of 50 on it that repeats with the saw.
struct saw_t
{
    explicit saw_t(std::int64_t period_) : period(period_) {}

    stripChartCurve_t::point_t pointAt(std::int64_t index) const
    {
        const std::int64_t phase = index % period;
        const double noise = static_cast<double>(phase * 7919 % 101) - 50.0;
        return {static_cast<double>(index) / rate,
                1000.0 * static_cast<double>(phase) / static_cast<double>(period) + noise,
                Qt::blue};
    }

    // The points [first, first + count).
    std::deque<stripChartCurve_t::point_t> pointsFrom(std::int64_t first, std::int64_t count) const
    {
        std::deque<stripChartCurve_t::point_t> points;
        for (std::int64_t i = first; i < first + count; ++i)
            points.push_back(pointAt(i));
        return points;
    }

    const std::int64_t period; // points of one tooth
};

// A curve that holds a given number of points: every new point pushes the oldest one out.
class fullCurve_t
{
public:
    fullCurve_t(std::int64_t count, std::int64_t period) : saw(period), m_count(count)
    {
        curve.color(Qt::blue);
        curve.dataDuration(static_cast<double>(count - 1) / rate);
        addNext(count);
    }

    void addNext() { addPoint(saw.pointAt(m_next++)); }

    void addNext(std::int64_t count)
    {
        curve.addPoints(saw.pointsFrom(m_next, count));
        m_next += count;
    }

    // The times are quotients and the limit is a difference, so one point more or less is right.
    bool isFull() const
    {
        const double oldest = static_cast<double>(m_next - m_count) / rate;
        return std::abs(curve.timeMin() - oldest) < 1.5 / rate &&
               curve.timeMax() == saw.pointAt(m_next - 1).time;
    }

    const saw_t saw;
    stripChartCurve_t curve;

private:
    void addPoint(const stripChartCurve_t::point_t& point)
    {
        curve.addPoint(point.time, point.value, point.color);
    }

    const std::int64_t m_count;
    std::int64_t m_next = 0; // number of the next point
};

const std::int64_t shortPeriod = 1000;

// A chart of 1000 x 400 pixels on screen that shows the newest points of a full curve.
class shownChart_t : public QObject
{
public:
    shownChart_t(std::int64_t points, std::int64_t period, double window) : full(points, period)
    {
        chart.addCurve(&full.curve);
        chart.resize(1000, 400);
        chart.show();
        plotArea()->installEventFilter(this);
        do
            QCoreApplication::processEvents();
        while (!chart.windowHandle()->isExposed());
        chart.timeBounds(full.curve.timeMax() - window, full.curve.timeMax());
        QCoreApplication::processEvents();
        paints = 0;
    }

    ~shownChart_t() override { chart.removeCurve(&full.curve); }

    QWidget* plotArea() { return chart.layout()->itemAt(0)->widget(); }

    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    fullCurve_t full;
    stripChart_t chart;
    std::int64_t paints = 0;
};

void addPointToFullCurve(benchmark::State& state)
{
    fullCurve_t full(state.range(0), shortPeriod);
    for (auto _ : state)
        full.addNext();
    if (!full.isFull())
        state.SkipWithError("points were not pruned");
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(addPointToFullCurve)->RangeMultiplier(10)->Range(1000, 1000000);

// Fifty points a call; making the batch is part of it.
void addPointsToFullCurve(benchmark::State& state)
{
    const std::int64_t batch = 50;
    fullCurve_t full(state.range(0), shortPeriod);
    for (auto _ : state)
        full.addNext(batch);
    if (!full.isFull())
        state.SkipWithError("points were not pruned");
    state.SetItemsProcessed(batch * state.iterations());
}
BENCHMARK(addPointsToFullCurve)->RangeMultiplier(10)->Range(1000, 1000000);

// Adding to a chart on screen that autoscales and whose window moves on every ten seconds of data;
// nothing is painted meanwhile.
void addPointToShownChart(benchmark::State& state)
{
    shownChart_t shown(state.range(0), shortPeriod, 60.0);
    for (auto _ : state) {
        if (shown.full.curve.timeMax() >= shown.chart.maxTimeBound())
            shown.chart.scrollTime(shown.chart.maxTimeBound() + 10.0);
        shown.full.addNext();
    }
    if (!shown.full.isFull())
        state.SkipWithError("points were not pruned");
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(addPointToShownChart)->RangeMultiplier(10)->Range(10000, 1000000);

// The least and the greatest value of so many points out of a million, always some others.
void valueRangeOfWindow(benchmark::State& state)
{
    const saw_t saw(shortPeriod);
    fullCurve_t full(1000000, saw.period);
    // Every window is at least one tooth long, so these are the extremes of any of them.
    double wantedLeast = saw.pointAt(0).value;
    double wantedGreatest = wantedLeast;
    for (int i = 0; i < saw.period; ++i) {
        wantedLeast = std::min(wantedLeast, saw.pointAt(i).value);
        wantedGreatest = std::max(wantedGreatest, saw.pointAt(i).value);
    }
    const double window = static_cast<double>(state.range(0)) / rate;
    bool right = true;
    std::int64_t shift = 0;
    for (auto _ : state) {
        const double to = full.curve.timeMax() - static_cast<double>(shift) / rate;
        const double least = full.curve.valueMin(to - window, to);
        const double greatest = full.curve.valueMax(to - window, to);
        right = right && least == wantedLeast && greatest == wantedGreatest;
        shift = (shift + 7) % 50000;
    }
    if (!right)
        state.SkipWithError("wrong extremes");
}
BENCHMARK(valueRangeOfWindow)->RangeMultiplier(10)->Range(1000, 900000);

// Autoscale after the time window, which shows so many points out of a million, has moved.
void autoscaleAfterMove(benchmark::State& state)
{
    fullCurve_t full(1000000, shortPeriod);
    simpleStripChartImpl_t impl;
    impl.addCurve(&full.curve);
    impl.updateSize(1000, 400);
    const double window = static_cast<double>(state.range(0)) / rate;
    std::int64_t shift = 0;
    for (auto _ : state) {
        const double to = full.curve.timeMax() - static_cast<double>(shift) / rate;
        impl.timeBounds(to - window, to);
        shift = (shift + 7) % 50000;
    }
    const double least = full.curve.valueMin();
    const double greatest = full.curve.valueMax();
    const double usedPixels = (greatest - least) * impl.yScaleFactor();
    if (impl.minValueBound() > least || impl.maxValueBound() < greatest || usedPixels < 197.0)
        state.SkipWithError("the bounds don't fit the data");
    impl.removeCurve(&full.curve);
}
BENCHMARK(autoscaleAfterMove)->RangeMultiplier(10)->Range(1000, 900000);

// The first point to each of so many autoscaling curves, every one beyond all before.
void addFirstPoints(benchmark::State& state)
{
    const std::int64_t count = state.range(0);
    bool isRight = true;
    for (auto _ : state) {
        state.PauseTiming();
        auto impl = std::make_unique<simpleStripChartImpl_t>();
        impl->updateSize(1000, 400);
        std::vector<stripChartCurve_t*> curves; // the chart's
        for (std::int64_t i = 0; i < count; ++i) {
            curves.push_back(new stripChartCurve_t);
            impl->addCurve(curves.back());
        }
        state.ResumeTiming();
        double value = 10.0;
        for (stripChartCurve_t* const curve : curves)
            curve->addPoint(-1.0, value++);
        state.PauseTiming();
        isRight = isRight && impl->maxValueBound() >= value - 1.0;
        impl.reset();
        state.ResumeTiming();
    }
    if (!isRight)
        state.SkipWithError("the bounds don't fit the data");
    state.SetItemsProcessed(count * state.iterations());
}
BENCHMARK(addFirstPoints)->RangeMultiplier(10)->Range(10, 10000);

const int teethInView = 6; // where the picture must not depend on the number of points

// A frame of a live display: so many new points for every pixel, and a step of one pixel.
void scrollFrame(benchmark::State& state)
{
    const std::int64_t pointsPerPixel = state.range(0);
    const std::int64_t points = 1000 * pointsPerPixel;
    shownChart_t shown(points + pointsPerPixel, points / teethInView,
                       static_cast<double>(points) / rate);
    for (auto _ : state) {
        for (std::int64_t i = 0; i < pointsPerPixel; ++i)
            shown.full.addNext();
        shown.chart.scrollTime(shown.full.curve.timeMax());
        QCoreApplication::processEvents();
    }
    if (shown.paints < state.iterations())
        state.SkipWithError("a frame was not painted");
    state.SetItemsProcessed(pointsPerPixel * state.iterations());
}
// Frames count with all threads of the process: an OpenGL driver may draw in its own.
BENCHMARK(scrollFrame)->RangeMultiplier(10)->Range(1, 100)->MeasureProcessCPUTime();

// Everything anew, because the value bounds differ from frame to frame.
void fullRepaint(benchmark::State& state)
{
    const std::int64_t points = state.range(0);
    shownChart_t shown(points, points / teethInView, static_cast<double>(points) / rate);
    double top = 1100.0;
    for (auto _ : state) {
        top = top < 1200.0 ? top + 0.5 : 1100.0;
        shown.chart.valueBounds(-100.0, top);
        QCoreApplication::processEvents();
    }
    if (shown.paints < state.iterations())
        state.SkipWithError("a frame was not painted");
}
BENCHMARK(fullRepaint)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(720000)
    ->Arg(7200000)
    ->MeasureProcessCPUTime();
} // namespace

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv, [] {
        benchmark::AddCustomContext("back_end", stripChartImpl_t::implementationType());
    });
}
