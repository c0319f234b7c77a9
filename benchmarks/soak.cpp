// A watch of 24 hours, faster than it happens: sixteen curves at 1 kHz and a waterfall at 20 lines
// a second, with gaps, steps and spikes in the data. Prints memory and the cost of a frame for
// every hour; both are to stay as they are once the kept history is full. Fails if memory doesn't.
// Needs no display: without one it runs on Qt's offscreen platform.
#include "linesModel.h"
#include "palette.h"
#include "rangeColorer.h"
#include "stripChart.h"
#include "stripChartCurve.h"
#include "waterfallRenderer.h"
#include "waterfallView.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <fstream>
#include <limits>
#include <malloc.h>
#include <random>
#include <unistd.h>
#include <vector>

using namespace zorbin_qt_gui;

namespace {

const int CHARTS = 4;
const int CURVES_PER_CHART = 4;
const int POINT_RATE = 1000;      // points a second and curve
const int LINE_RATE = 20;         // lines of the waterfall a second
const int FRAME_RATE = 10;        // simulated; a frame is drawn for each
const double WINDOW = 60.0;       // s in view
const double KEPT = 600.0;        // s of history
const double START = 1.4e9;       // s since 1970, as a recording has it
const double HOUR = 3600.0;       // s
const std::size_t SAMPLES = 1000; // in a line
const double GROWTH = 1.02;       // what memory may become of itself once the history is full

struct options_t
{
    double hours = 24.0;
    double wallSeconds = std::numeric_limits<double>::infinity();
};

class linesRenderer_t : public baseWaterfallRenderer_t
{
public:
    linesRenderer_t()
    {
        std::vector<unsigned int> greys;
        for (int level = 0; level < 256; ++level)
            greys.push_back(qRgb(level, level, level));
        palette_t palette;
        palette.setColorTable(greys, palette_t::DEPTH_24);
        m_colorer.setPalette(palette);
        m_colorer.setRangeValues(0.0F, 1.0F);
    }

    void render(const context_t* context, QRgb* pixels, baseWaterfallModel_t* model,
                unsigned index) override
    {
        const std::vector<float>& line =
            static_cast<linesModel_t*>(model)->line(static_cast<int>(index));
        for (unsigned i = 0; i < context->numPixels; ++i)
            pixels[i] = m_colorer.color(line[i * line.size() / context->numPixels]);
    }

private:
    rangeColorer_t m_colorer;
};

// What the sensors send: swell and noise; now and then a dropout, a step, a spike or a NaN.
class sensor_t
{
public:
    explicit sensor_t(unsigned number) : m_random(number), m_phase(number) {}

    std::deque<stripChartCurve_t::point_t> read(qint64 first, int count, const QColor& color)
    {
        std::deque<stripChartCurve_t::point_t> points;
        if (m_random() % 6000 == 0)
            m_silentUntil = first + POINT_RATE * static_cast<qint64>(m_random() % 30);
        if (m_random() % 3000 == 0)
            m_offset = static_cast<double>(m_random() % 100);
        for (qint64 i = std::max(first, m_silentUntil); i < first + count; ++i) {
            const double time = static_cast<double>(i) / POINT_RATE;
            const double noise = static_cast<double>(m_random() % 1000) / 5000.0;
            double value = m_offset + std::sin(time * 0.7 + m_phase) + noise;
            const auto chance = m_random() % 1000000;
            if (chance == 0)
                value *= 1000.0;
            else if (chance == 1)
                value = std::numeric_limits<double>::quiet_NaN();
            points.emplace_back(START + time, value, color);
        }
        return points;
    }

private:
    std::minstd_rand m_random;
    const double m_phase;
    double m_offset = 0.0;
    qint64 m_silentUntil = 0;
};

struct curve_t
{
    stripChartCurve_t* curve; // owned by its chart
    sensor_t sensor;
    QColor color;
};

class console_t : public QWidget
{
public:
    console_t()
    {
        static const std::array<QColor, CURVES_PER_CHART> colors = {Qt::darkBlue, Qt::darkRed,
                                                                    Qt::darkGreen, Qt::darkYellow};
        auto* layout = new QVBoxLayout(this);
        for (int i = 0; i < CHARTS; ++i) {
            auto* chart = new stripChart_t(this);
            chart->timeBounds(START - WINDOW, START);
            layout->addWidget(chart);
            m_charts.push_back(chart);
            for (const QColor& color : colors) {
                auto* curve = new stripChartCurve_t;
                curve->color(color);
                curve->dataDuration(KEPT);
                chart->addCurve(curve);
                m_curves.push_back(
                    {curve, sensor_t(static_cast<unsigned>(m_curves.size() + 1)), color});
            }
        }
        m_waterfall._model(&m_model);
        m_waterfall._renderer(&m_renderer);
        m_waterfall.bounds(0.0, 1.0);
        layout->addWidget(&m_waterfall);
        resize(1280, 1000);
    }

    // What arrives between one frame and the next, and the frame.
    void advance(qint64 frame)
    {
        const int points = POINT_RATE / FRAME_RATE;
        for (curve_t& curve : m_curves)
            curve.curve->addPoints(curve.sensor.read(frame * points, points, curve.color));
        for (int i = 0; i < LINE_RATE / FRAME_RATE; ++i)
            m_model.add(makeLine());
        for (stripChart_t* chart : m_charts)
            chart->scrollTime(START + static_cast<double>(frame + 1) / FRAME_RATE);
        QCoreApplication::processEvents();
    }

private:
    std::vector<float> makeLine()
    {
        std::vector<float> line(SAMPLES);
        for (float& sample : line)
            sample = static_cast<float>(m_random() % 1024) / 1024.0F;
        return line;
    }

    std::vector<stripChart_t*> m_charts;
    std::vector<curve_t> m_curves;
    std::minstd_rand m_random;
    linesModel_t m_model{static_cast<std::size_t>(KEPT * LINE_RATE)};
    linesRenderer_t m_renderer;
    baseWaterfallView_t m_waterfall;
};

double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

double mebibytes(std::size_t bytes)
{
    return static_cast<double>(bytes) / 1048576.0;
}

double residentMemory()
{
    std::size_t all = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return mebibytes(resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)));
}

double allocatedMemory()
{
    const struct mallinfo2 info = mallinfo2();
    return mebibytes(info.uordblks + info.hblkhd);
}

options_t readOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Simulates a watch; prints memory and frame cost by the hour.");
    parser.addHelpOption();
    parser.addOption({"hours", "Simulate <number> hours, 24 if left out.", "number"});
    parser.addOption({"wall-seconds", "Stop after <number> seconds of real time.", "number"});
    parser.process(*QCoreApplication::instance());
    options_t options;
    const auto read = [&parser](const char* name, double* value) {
        if (!parser.isSet(name))
            return;
        bool isNumber = false;
        *value = parser.value(name).toDouble(&isNumber);
        if (!isNumber || !(*value > 0.0)) {
            std::fprintf(stderr, "soak: --%s needs a positive number\n", name);
            std::exit(2);
        }
    };
    read("hours", &options.hours);
    read("wall-seconds", &options.wallSeconds);
    return options;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const options_t options = readOptions();

    console_t console;
    console.show();
    QElapsedTimer wall;
    wall.start();
    const auto wallSeconds = [&wall] { return static_cast<double>(wall.nsecsElapsed()) * 1e-9; };
    const qint64 frames = std::llround(options.hours * HOUR * FRAME_RATE);
    const qint64 framesPerReport = static_cast<qint64>(HOUR / 4.0) * FRAME_RATE;
    double full = 0.0; // MiB allocated with a full history
    double most = 0.0;
    std::printf("%6s %14s %10s %10s %12s %12s %12s %8s\n", "hours", "points", "RSS MiB", "heap MiB",
                "CPU ms/frame", "99 % ms", "worst ms", "speed");
    std::vector<double> costs; // s, in real time
    double cpuBefore = cpuSeconds();
    double wallBefore = 0.0;
    for (qint64 frame = 0; frame < frames && wallSeconds() < options.wallSeconds; ++frame) {
        const double begin = wallSeconds();
        console.advance(frame);
        costs.push_back(wallSeconds() - begin);
        const bool isFull = static_cast<double>(frame) > (KEPT + WINDOW) * FRAME_RATE;
        if ((frame + 1) % framesPerReport != 0 && frame + 1 != frames)
            continue;
        std::sort(costs.begin(), costs.end());
        const auto count = static_cast<double>(costs.size());
        const double heap = allocatedMemory();
        const double cpu = cpuSeconds();
        const double now = wallSeconds();
        std::printf("%6.2f %14lld %10.1f %10.1f %12.3f %12.3f %12.3f %7.0fx\n",
                    static_cast<double>(frame + 1) / FRAME_RATE / HOUR,
                    static_cast<long long>(frame + 1) * (POINT_RATE / FRAME_RATE) * CHARTS *
                        CURVES_PER_CHART,
                    residentMemory(), heap, (cpu - cpuBefore) * 1e3 / count,
                    costs[costs.size() * 99 / 100] * 1e3, costs.back() * 1e3,
                    count / FRAME_RATE / (now - wallBefore));
        std::fflush(stdout);
        costs.clear();
        cpuBefore = cpu;
        wallBefore = now;
        if (isFull && full == 0.0)
            full = heap;
        most = std::max(most, heap);
    }
    if (full == 0.0) {
        std::puts("soak: too short to say anything about memory");
        return 1;
    }
    if (most > full * GROWTH) {
        std::printf("soak: the heap grew from %.1f to %.1f MiB\n", full, most);
        return 1;
    }
    std::printf("soak: memory stayed at %.1f MiB, at most %.1f\n", full, most);
    return 0;
}
