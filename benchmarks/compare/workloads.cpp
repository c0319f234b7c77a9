// What every contender has to do, and how it is timed. Prints one line per figure: its name, the
// number and the unit. CPU time is that of this process, user and system; the display server's
// isn't in it.
#include "contender.h"
#include "waveform.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <malloc.h>
#include <map>
#include <random>
#include <string>
#include <sys/resource.h>

namespace {
const int framesPerBlock = 5;     // between two looks at the clock
const double warmUpSeconds = 0.1; // CPU time that isn't counted

// What the command line says.
struct options_t
{
    double seconds;    // CPU time to measure for
    double noise;      // of the amplitude of the swell
    int checkedFrames; // instead of timing, digests of this many pictures; 0: timing
};

[[noreturn]] void fail(const char* message)
{
    std::fprintf(stderr, "%s\n", message);
    std::exit(EXIT_FAILURE);
}

double cpuSeconds()
{
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double allocatedMegabytes()
{
    const struct mallinfo2 info = mallinfo2();
    return 1e-6 * static_cast<double>(info.uordblks + info.hblkhd);
}

void print(const std::string& name, double value, const char* unit)
{
    std::printf("%s %.6g %s\n", name.c_str(), value, unit);
}

// Where a chart's right edge is before there is data; the data begin at 0.
double startTime(const chartShape_t& shape)
{
    return -10.0 * shape.window;
}

// What is on screen. Sees to it that every frame is painted before the next one begins.
class screen_t : public QObject
{
public:
    // What is put off until the end of a frame is finished by \p finish.
    screen_t(QWidget* window, QWidget* plotArea, std::function<void()> finish)
        : m_window(window), m_finish(std::move(finish))
    {
        window->resize(plotWidth, plotHeight);
        window->show();
        waitFor([window] { return window->windowHandle()->isExposed(); });
        if (plotArea->size() != QSize(plotWidth, plotHeight))
            fail("The plot area is not 1000 x 400 pixels");
        plotArea->installEventFilter(this);
    }

    void endFrame()
    {
        m_finish();
        waitFor([this] { return m_painted; });
        m_painted = false;
    }

    // Of what the display server shows, so that pixels which were shifted count as they are.
    QByteArray digest()
    {
        QCoreApplication::processEvents();
        const QImage image = m_window->screen()
                                 ->grabWindow(m_window->winId(), 0, 0, plotWidth, plotHeight)
                                 .toImage()
                                 .convertToFormat(QImage::Format_RGB32);
        if (image.size() != QSize(plotWidth, plotHeight))
            fail("The screen can't be read");
        QCryptographicHash hash(QCryptographicHash::Md5);
        for (int y = 0; y < plotHeight; ++y)
            hash.addData(
                QByteArray(reinterpret_cast<const char*>(image.constScanLine(y)), 4 * plotWidth));
        return hash.result().toHex();
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            m_painted = true;
        return false;
    }

private:
    template <typename Condition>
    void waitFor(Condition condition)
    {
        QCoreApplication::processEvents();
        QElapsedTimer timer;
        timer.start();
        while (!condition()) {
            if (timer.elapsed() > 10000)
                fail("A frame was not painted");
            QCoreApplication::processEvents();
        }
    }

    QWidget* const m_window;
    const std::function<void()> m_finish;
    bool m_painted = false;
};

// A contender on screen.
template <typename contender>
class staged_t
{
public:
    // Must take part: not null.
    explicit staged_t(std::unique_ptr<contender> actor)
        : m_actor(std::move(actor)),
          m_screen(m_actor->window(), m_actor->plotArea(), [this] { m_actor->finishFrame(); })
    {
    }

    contender* operator->() { return m_actor.get(); }
    screen_t* screen() { return &m_screen; }

private:
    const std::unique_ptr<contender> m_actor;
    screen_t m_screen;
};

// A chart on screen.
class stage_t : public staged_t<contender_t>
{
public:
    explicit stage_t(const chartShape_t& shape) : staged_t(makeContender(shape))
    {
        (*this)->scrollTime(startTime(shape)); // a jump: the time scale follows the size
    }
};

using prepare_t = std::function<void(int firstFrame)>; // untimed, before every block of frames
using frame_t = std::function<void(int frame)>;        // up to, but not with, its end

// Times the frames, after some to warm up.
void timeFrames(const std::string& name, screen_t* screen, const options_t& options,
                const prepare_t& prepare, const frame_t& frame)
{
    double warmUp = 0.0;
    double used = 0.0;
    int counted = 0;
    for (int first = 0; used < options.seconds; first += framesPerBlock) {
        prepare(first);
        const double start = cpuSeconds();
        for (int i = first; i < first + framesPerBlock; ++i) {
            frame(i);
            screen->endFrame();
        }
        const double spent = cpuSeconds() - start;
        if (warmUp < warmUpSeconds) {
            warmUp += spent;
        } else {
            used += spent;
            counted += framesPerBlock;
        }
    }
    print(name, 1e3 * used / counted, "ms/frame");
}

// Prints digests of pictures instead.
void checkFrames(const std::string& name, screen_t* screen, const options_t& options,
                 const prepare_t& prepare, const frame_t& frame)
{
    for (int i = 0; i < options.checkedFrames; ++i) {
        if (i % framesPerBlock == 0)
            prepare(i);
        frame(i);
        screen->endFrame();
        std::printf("%s-%d %s digest\n", name.c_str(), i, screen->digest().constData());
    }
}

void runFrames(const std::string& name, screen_t* screen, const options_t& options,
               const prepare_t& prepare, const frame_t& frame)
{
    const auto run = options.checkedFrames > 0 ? checkFrames : timeFrames;
    run(name, screen, options, prepare, frame);
}

// Gives the curve the samples [0, count), in blocks of moderate size.
void fill(stage_t* stage, const waveform_t& waveform, int curve, qint64 count)
{
    const qint64 blockSize = 10000;
    for (qint64 first = 0; first < count; first += blockSize) {
        const std::vector<sample_t> samples =
            waveform.block(curve, first, std::min(blockSize, count - first));
        (*stage)->addPoints(curve, samples.data(), static_cast<int>(samples.size()));
    }
}

// A full window that scrolls: every frame adds some points to every curve, one by one as they are
// measured, and moves the right edge to the newest one.
void scroll(const std::string& name, const options_t& options, int curves, double rate,
            int pointsPerFrame)
{
    chartShape_t shape;
    shape.curves = curves;
    const waveform_t waveform(rate, shape.window, options.noise);
    const qint64 history = static_cast<qint64>(shape.kept * rate);
    stage_t stage(shape);
    for (int curve = 0; curve < curves; ++curve)
        fill(&stage, waveform, curve, history);
    const auto newest = [&](int frame) { return history - 1 + (frame + 1) * pointsPerFrame; };

    std::vector<std::vector<sample_t>> samples(static_cast<std::size_t>(curves)); // of a block
    const auto prepare = [&](int frame) {
        for (int curve = 0; curve < curves; ++curve)
            samples[static_cast<std::size_t>(curve)] =
                waveform.block(curve, newest(frame - 1) + 1, framesPerBlock * pointsPerFrame);
    };
    const auto addAndScroll = [&](int frame) {
        const int first = frame % framesPerBlock * pointsPerFrame;
        for (int i = first; i < first + pointsPerFrame; ++i) {
            for (int curve = 0; curve < curves; ++curve)
                stage->addPoint(
                    curve, samples[static_cast<std::size_t>(curve)][static_cast<std::size_t>(i)]);
        }
        stage->scrollTime(waveform.at(0, newest(frame)).time);
    };
    runFrames(name, stage.screen(), options, prepare, addAndScroll);
}

// What scrolling costs by itself: an empty chart moves by a pixel a frame.
void scrollEmpty(const std::string& name, const options_t& options)
{
    chartShape_t shape;
    shape.curves = 0;
    stage_t stage(shape);
    const double pixel = shape.window / plotWidth;
    const auto scrollByOne = [&](int frame) {
        stage->scrollTime(startTime(shape) + (frame + 0.5) * pixel);
    };
    runFrames(
        name, stage.screen(), options, [](int) {}, scrollByOne);
}

// A full repaint: two hours of points stand still and the value bounds change with every frame.
void rescale(const std::string& name, const options_t& options, int points)
{
    chartShape_t shape;
    shape.window = 7200.0;
    shape.kept = 7200.0;
    shape.autoscale = false;
    const waveform_t waveform(points / shape.window, shape.window, options.noise);
    stage_t stage(shape);
    const double before = allocatedMegabytes();
    fill(&stage, waveform, 0, points);
    stage->scrollTime(shape.window);
    const auto setBounds = [&](int frame) {
        const int step = frame % 50;
        stage->valueBounds(-1.2 - 0.002 * step, 1.2 + 0.001 * step);
    };
    runFrames(
        name, stage.screen(), options, [](int) {}, setBounds);
    if (options.checkedFrames == 0)
        print(name + "-memory", allocatedMegabytes() - before, "MB");
}

// Adding to a long history of which the last minute is on show: the window runs ahead by 20 s, the
// points that belong there are added and as many old ones dropped, and the frame is painted. Prints
// the speed of all that but for the painting and, as NAME-all, with it.
void append(const std::string& name, const options_t& options, int history, int batch)
{
    const double rate = 1000.0;
    const int pointsPerFrame = 20000;
    chartShape_t shape;
    shape.kept = history / rate;
    const waveform_t waveform(rate, shape.window, options.noise);
    stage_t stage(shape);
    fill(&stage, waveform, 0, history);
    std::vector<sample_t> samples;
    double adding = 0.0;
    double all = 0.0;
    qint64 added = 0;
    for (qint64 first = history; added == 0 || all < options.seconds; first += pointsPerFrame) {
        samples = waveform.block(0, first, pointsPerFrame);
        const double start = cpuSeconds();
        stage->scrollTime(samples.back().time);
        if (batch == 1) {
            for (const sample_t& sample : samples)
                stage->addPoint(0, sample);
        } else {
            for (int i = 0; i < pointsPerFrame; i += batch)
                stage->addPoints(0, &samples[static_cast<std::size_t>(i)], batch);
        }
        const double finished = cpuSeconds();
        stage.screen()->endFrame();
        if (first == history)
            continue; // to warm up
        adding += finished - start;
        all += cpuSeconds() - start;
        added += pointsPerFrame;
    }
    print(name, 1e-6 * static_cast<double>(added) / adding, "Mpoints/s");
    print(name + "-all", 1e-6 * static_cast<double>(added) / all, "Mpoints/s");
}

template <typename contender>
std::unique_ptr<contender> takingPart(std::unique_ptr<contender> actor)
{
    if (actor == nullptr)
        fail("This contender takes no part in the workload");
    return actor;
}

// A full waterfall that scrolls by a line a frame: hills with noise that wander to the right.
void waterfall(const std::string& name, const options_t& options)
{
    staged_t<waterfallContender_t> stage(takingPart(makeWaterfall()));
    const int distinctLines = 1000;
    std::vector<std::vector<float>> lines;
    std::mt19937 random(1);
    for (int line = 0; line < distinctLines; ++line) {
        lines.emplace_back();
        for (int i = 0; i < plotWidth; ++i) {
            const double hill = 0.4 + 0.3 * std::sin(0.02 * i - 0.01 * line);
            const double noise = 0.3 * static_cast<double>(random()) / 4294967296.0;
            lines.back().push_back(static_cast<float>(hill + noise));
        }
    }
    const auto addLine = [&](int frame) {
        stage->addLine(lines[static_cast<std::size_t>(frame % distinctLines)].data());
    };
    for (int frame = 0; frame < plotHeight; ++frame)
        addLine(frame);
    stage.screen()->endFrame();
    runFrames(
        name, stage.screen(), options, [](int) {}, [&](int frame) { addLine(plotHeight + frame); });
}

// A bare widget that does nothing but scroll and fill the line that appears.
class emptyScroll_t : public QWidget
{
public:
    emptyScroll_t() { setAttribute(Qt::WA_OpaquePaintEvent); }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter(this).fillRect(event->rect(), Qt::white);
    }
};

// What scrolling a widget by a line costs by itself: the floor under a waterfall.
void scrollWidget(const std::string& name, const options_t& options)
{
    emptyScroll_t widget;
    screen_t screen(&widget, &widget, [] {});
    runFrames(
        name, &screen, options, [](int) {}, [&](int) { widget.scroll(0, 1); });
}

// A million samples, a hill over the whole range, replaced by others with every frame.
void distribution(const std::string& name, const options_t& options)
{
    staged_t<histogramContender_t> stage(takingPart(makeHistogram()));
    std::vector<std::vector<float>> samples(2);
    std::mt19937 random(1);
    for (std::vector<float>& some : samples) {
        for (int i = 0; i < 1000000; ++i) {
            const double sum = static_cast<double>(random()) + static_cast<double>(random());
            some.push_back(static_cast<float>(sum / (2.0 * 4294967296.0)));
        }
    }
    runFrames(
        name, stage.screen(), options, [](int) {},
        [&](int frame) { stage->replace(samples[static_cast<std::size_t>(frame % 2)]); });
}

using workload_t = std::function<void(const std::string& name, const options_t& options)>;
using std::placeholders::_1;
using std::placeholders::_2;

std::map<std::string, workload_t> workloads()
{
    return {
        {"S1", std::bind(scroll, _1, _2, 1, 100.0, 5)},
        {"S1-empty", scrollEmpty},
        {"S2", std::bind(scroll, _1, _2, 8, 1000.0, 50)},
        {"S3-10k", std::bind(rescale, _1, _2, 10000)},
        {"S3-100k", std::bind(rescale, _1, _2, 100000)},
        {"S3-720k", std::bind(rescale, _1, _2, 720000)},
        {"S4-single-72k", std::bind(append, _1, _2, 72000, 1)},
        {"S4-single-720k", std::bind(append, _1, _2, 720000, 1)},
        {"S4-single-7200k", std::bind(append, _1, _2, 7200000, 1)},
        {"S4-batch-72k", std::bind(append, _1, _2, 72000, 50)},
        {"S4-batch-720k", std::bind(append, _1, _2, 720000, 50)},
        {"S4-batch-7200k", std::bind(append, _1, _2, 7200000, 50)},
        {"W1", waterfall},
        {"W1-empty", scrollWidget},
        {"H1", distribution},
    };
}

double number(const QCommandLineParser& parser, const QString& option)
{
    bool ok = false;
    const double value = parser.value(option).toDouble(&ok);
    if (!ok || !(value >= 0.0 && value <= 1e6))
        fail(qPrintable(QStringLiteral("--%1 takes a number from 0 to 1e6").arg(option)));
    return value;
}
} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption({"seconds", "CPU time to measure for.", "S", "1"});
    parser.addOption({"noise", "Noise on the curves, as a part of their amplitude.", "N", "0.1"});
    parser.addOption({"check", "Print digests of N pictures; time nothing. Not for S4.", "N", "0"});
    parser.addPositionalArgument("workload", "S1, S1-empty, S2, S3-10k, W1, H1 and so on.");
    parser.process(application);

    const options_t options{number(parser, "seconds"), number(parser, "noise"),
                            static_cast<int>(number(parser, "check"))};
    const std::map<std::string, workload_t> known = workloads();
    const QStringList names = parser.positionalArguments();
    const auto workload = known.find(names.value(0).toStdString());
    if (names.size() != 1 || workload == known.end())
        fail("One workload must be named; see --help and docs/performance.md");
    workload->second(workload->first, options);
    return EXIT_SUCCESS;
}
