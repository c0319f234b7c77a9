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
#include <QPixmap>
#include <QScreen>
#include <QWindow>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <malloc.h>
#include <map>
#include <string>
#include <sys/resource.h>

namespace {
const int framesPerBlock = 5;     // between two looks at the clock
const double warmUpSeconds = 0.1; // CPU time that isn't counted

struct options_t
{
    double seconds = 1.0;  // CPU time to measure for
    double noise = 0.02;   // of the amplitude of the swell
    int checkedFrames = 0; // instead of timing, digests of this many pictures
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

// A contender on screen. Sees to it that every frame is painted before the next one begins.
class stage_t : public QObject
{
public:
    explicit stage_t(const chartShape_t& shape) : m_contender(makeContender(shape))
    {
        QWidget* const window = m_contender->window();
        window->resize(plotWidth, plotHeight);
        window->show();
        waitFor([window] { return window->windowHandle()->isExposed(); });
        if (m_contender->plotArea()->size() != QSize(plotWidth, plotHeight))
            fail("The plot area is not 1000 x 400 pixels");
        m_contender->scrollTime(startTime(shape)); // a jump: the time scale follows the size
        m_contender->plotArea()->installEventFilter(this);
    }

    contender_t* operator->() { return m_contender.get(); }

    void endFrame()
    {
        m_contender->finishFrame();
        waitFor([this] { return m_painted; });
        m_painted = false;
    }

    // Of what the display server shows, so that pixels which were shifted count as they are.
    QByteArray digest()
    {
        QCoreApplication::processEvents();
        QWidget* const window = m_contender->window();
        const QImage image = window->screen()
                                 ->grabWindow(window->winId(), 0, 0, plotWidth, plotHeight)
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

    const std::unique_ptr<contender_t> m_contender;
    bool m_painted = false;
};

using prepare_t = std::function<void(int firstFrame)>; // untimed, before every block of frames
using frame_t = std::function<void(int frame)>;        // up to, but not with, its end

// Times the frames, after some to warm up.
void timeFrames(const std::string& name, stage_t* stage, const options_t& options,
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
            stage->endFrame();
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
void checkFrames(const std::string& name, stage_t* stage, const options_t& options,
                 const prepare_t& prepare, const frame_t& frame)
{
    for (int i = 0; i < options.checkedFrames; ++i) {
        if (i % framesPerBlock == 0)
            prepare(i);
        frame(i);
        stage->endFrame();
        std::printf("%s-%d %s digest\n", name.c_str(), i, stage->digest().constData());
    }
}

void runFrames(const std::string& name, stage_t* stage, const options_t& options,
               const prepare_t& prepare, const frame_t& frame)
{
    const auto run = options.checkedFrames > 0 ? checkFrames : timeFrames;
    run(name, stage, options, prepare, frame);
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
    runFrames(name, &stage, options, prepare, addAndScroll);
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
        name, &stage, options, [](int) {}, scrollByOne);
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
        name, &stage, options, [](int) {}, setBounds);
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
        stage.endFrame();
        if (first == history)
            continue; // to warm up
        adding += finished - start;
        all += cpuSeconds() - start;
        added += pointsPerFrame;
    }
    print(name, 1e-6 * static_cast<double>(added) / adding, "Mpoints/s");
    print(name + "-all", 1e-6 * static_cast<double>(added) / all, "Mpoints/s");
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
    parser.addPositionalArgument("workload", "S1, S1-empty, S2, S3-10k and so on.");
    parser.process(application);

    options_t options;
    options.seconds = number(parser, "seconds");
    options.noise = number(parser, "noise");
    options.checkedFrames = static_cast<int>(number(parser, "check"));
    const std::map<std::string, workload_t> known = workloads();
    const QStringList names = parser.positionalArguments();
    const auto workload = known.find(names.value(0).toStdString());
    if (names.size() != 1 || workload == known.end())
        fail("One workload must be named; see --help and docs/performance.md");
    workload->second(workload->first, options);
    return EXIT_SUCCESS;
}
