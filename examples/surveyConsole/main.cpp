// Replays a recorded survey line in strip charts. Look at the depth chart's faded lines where
// soundings are missing, at the charts' scales following the data, and at the read-out under each
// chart and the arrows on its rulers when the pointer is over it. Try the seek slider and 100x, a
// drag over a value ruler (its "Auto" button goes back), another palette for the depth, and another
// colour for a curve: click the square beside its value. The second page shows a sidescan record:
// drag over the histogram to set the levels that the colours are stretched over, over the range
// ruler to look closer, and the slider below to look back. Ask the simulated sounder for more power
// than it has. The third page shows an echosounder's record: 100 s into it the depth that the
// instrument finds begins to jump to multiples of the bottom's echo. The fourth page shows the
// position in a notation of choice: enter another one to see its range and bearing. Recordings are
// collected there, file by file or by folders, and replayed from the list; the menu opens a single
// one. The window comes back as it was left.

#include "mainWindow.h"
#include "recordingReader.h"
#include "recordingsPanel.h"
#include "theme.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>
#include <QTranslator>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>

using namespace survey_console;

namespace {

const int EXIT_BAD_USAGE = 2;
const double MAX_DURATION = 86400.0;     // s
const double SCREENSHOT_STRETCH = 420.0; // s of the recording
const int MAX_SIZE = 8192;               // px
const int SCREENSHOT_FRAMES = 60;

struct options_t
{
    QStringList recordings; // the first is replayed, all are offered; at least one
    QString sonar;
    QStringList echograms;      // the first one shows, all are offered; at least one
    std::optional<page_t> page; // at first; none: as it was last time, as the speed
    QString backEnd;            // of the strip charts; empty: as the library chooses
    std::optional<double> speed;
    std::optional<theme::name_t> theme;
    QSize size;            // of the window; empty: as it was last time
    double duration = 0.0; // s; 0.0: until closed
    QString screenshot;
    QString settings; // file; empty: the user's own
};

void complain(const QString& message)
{
    std::fprintf(stderr, "surveyConsole: %s\n", qUtf8Printable(message));
}

// False, after a message, unless the option's value is a number from min to max.
bool readNumber(const QCommandLineParser& parser, const QCommandLineOption& option, double min,
                double max, double* number)
{
    const QString text = parser.value(option);
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !(value >= min && value <= max)) {
        complain(QStringLiteral("--%1 takes a number from %2 to %3, not '%4'")
                     .arg(option.names().constFirst())
                     .arg(min)
                     .arg(max)
                     .arg(text));
        return false;
    }
    *number = value;
    return true;
}

// False, after a message, unless the text is a size that a window may have.
bool readSize(const QString& text, QSize* size)
{
    const QStringList parts = text.split(QLatin1Char('x'));
    *size = parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : QSize();
    if (size->isEmpty() || size->width() > MAX_SIZE || size->height() > MAX_SIZE) {
        complain(QStringLiteral("--size takes WIDTHxHEIGHT, each up to %1, not '%2'")
                     .arg(MAX_SIZE)
                     .arg(text));
        return false;
    }
    return true;
}

// Ends the program for --help; false, after a message, for options that are wrong.
bool readOptions(options_t* options)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Replays a recorded survey line: depth, heading, speed, course and attitude in strip "
        "charts, sidescan sonar and an echosounder in waterfalls."));
    QCommandLineOption recording(
        QStringLiteral("recording"),
        QStringLiteral("Replay the NMEA 0183 log FILE; further ones are offered in a list."),
        QStringLiteral("FILE"));
    recording.setDefaultValues(
        {QStringLiteral(SURVEY_CONSOLE_DATA_DIR "/nbp1406-underway/underway-10min.log"),
         QStringLiteral(SURVEY_CONSOLE_DATA_DIR "/plaka-sailing/plaka-10min.log")});
    const QCommandLineOption sonar(
        QStringLiteral("sonar"),
        QStringLiteral("Replay the sidescan record FILE, a PGM picture beside a CSV table."),
        QStringLiteral("FILE"),
        QStringLiteral(SURVEY_CONSOLE_DATA_DIR "/scotsman-sidescan/sidescan-600khz.pgm"));
    QCommandLineOption echogram(
        QStringLiteral("echogram"),
        QStringLiteral("Replay the echosounder's record FILE, a PGM picture beside a CSV table; "
                       "further ones are offered in a list."),
        QStringLiteral("FILE"));
    echogram.setDefaultValues(
        {QStringLiteral(SURVEY_CONSOLE_DATA_DIR "/leesferry-echosounder/echosounder-200khz.pgm"),
         QStringLiteral(SURVEY_CONSOLE_DATA_DIR "/leesferry-echosounder/echosounder-83khz.pgm")});
    const QCommandLineOption page(
        QStringLiteral("page"),
        QStringLiteral("Show PAGE first: charts, sonar, echogram or survey."),
        QStringLiteral("PAGE"));
    const QCommandLineOption themeOption(QStringLiteral("theme"),
                                         QStringLiteral("Show everything in THEME: dark or light."),
                                         QStringLiteral("THEME"));
    const QCommandLineOption size(QStringLiteral("size"),
                                  QStringLiteral("Make the window WIDTHxHEIGHT pixels large."),
                                  QStringLiteral("WIDTHxHEIGHT"));
    const QCommandLineOption backEnd(
        QStringLiteral("back-end"),
        QStringLiteral("Draw strip charts by BACKEND: simple (QPainter) or gl (OpenGL)."),
        QStringLiteral("BACKEND"));
    const QCommandLineOption speed(QStringLiteral("speed"),
                                   QStringLiteral("Replay at N times real time, 1 to 100."),
                                   QStringLiteral("N"));
    const QCommandLineOption duration(QStringLiteral("duration"),
                                      QStringLiteral("Quit after S seconds of real time."),
                                      QStringLiteral("S"));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Replay the first seven minutes at once, write a picture of the window to "
                       "FILE and quit."),
        QStringLiteral("FILE"));
    const QCommandLineOption settings(
        QStringLiteral("settings"),
        QStringLiteral("Keep the window's state in FILE instead of the user's settings."),
        QStringLiteral("FILE"));
    const QCommandLineOption help = parser.addHelpOption();
    parser.addOptions({recording, sonar, echogram, page, backEnd, speed, duration, screenshot,
                       settings, themeOption, size});
    if (!parser.parse(QCoreApplication::arguments())) {
        complain(parser.errorText());
        return false;
    }
    if (parser.isSet(help))
        parser.showHelp();
    options->recordings = parser.values(recording);
    options->sonar = parser.value(sonar);
    options->echograms = parser.values(echogram);
    options->backEnd = parser.value(backEnd);
    options->screenshot = parser.value(screenshot);
    options->settings = parser.value(settings);
    if (parser.isSet(page)) {
        const auto index = pageNames().indexOf(parser.value(page));
        if (index < 0) {
            complain(QStringLiteral("--page takes charts, sonar, echogram or survey, not '%1'")
                         .arg(parser.value(page)));
            return false;
        }
        options->page = static_cast<page_t>(index);
    }
    if (parser.isSet(themeOption)) {
        const auto index = theme::names().indexOf(parser.value(themeOption));
        if (index < 0) {
            complain(QStringLiteral("--theme takes dark or light, not '%1'")
                         .arg(parser.value(themeOption)));
            return false;
        }
        options->theme = static_cast<theme::name_t>(index);
    }
    if (parser.isSet(size) && !readSize(parser.value(size), &options->size))
        return false;
    if (parser.isSet(backEnd) && options->backEnd != QStringLiteral("simple") &&
        options->backEnd != QStringLiteral("gl")) {
        complain(QStringLiteral("--back-end takes simple or gl, not '%1'").arg(options->backEnd));
        return false;
    }
    if (!parser.positionalArguments().isEmpty()) {
        complain(QStringLiteral("unexpected argument '%1'")
                     .arg(parser.positionalArguments().constFirst()));
        return false;
    }
    if (parser.isSet(screenshot) && options->screenshot.isEmpty()) {
        complain(QStringLiteral("--screenshot takes a file name"));
        return false;
    }
    if (parser.isSet(settings) && options->settings.isEmpty()) {
        complain(QStringLiteral("--settings takes a file name"));
        return false;
    }
    if (parser.isSet(speed)) {
        double times = 0.0;
        if (!readNumber(parser, speed, replayClock_t::MIN_SPEED, replayClock_t::MAX_SPEED, &times))
            return false;
        options->speed = times;
    }
    return !parser.isSet(duration) ||
           readNumber(parser, duration, 0.001, MAX_DURATION, &options->duration);
}

// False, after a message, unless the record could be read; says what is missing from it.
bool checkRecord(const sonarResult_t& result, const QString& path)
{
    if (!result.error.isEmpty()) {
        complain(result.error);
        return false;
    }
    if (result.record.damaged > 0)
        complain(QStringLiteral("left out %1 damaged pings of '%2'")
                     .arg(result.record.damaged)
                     .arg(path));
    return true;
}

// False, after a message, unless all could be read.
bool readEchograms(const QStringList& paths, std::vector<echogram_t>* echograms)
{
    for (const QString& path : paths) {
        sonarResult_t result = readEchogram(path);
        if (!checkRecord(result, path))
            return false;
        echograms->push_back({QFileInfo(path).fileName(), std::move(result.record)});
    }
    return true;
}

// Replays frame by frame on a clock of its own, so that the picture is the same on every machine.
bool writeScreenshot(mainWindow_t* window, double* realTime, const QString& path)
{
    replayClock_t* clock = window->clock();
    QApplication::processEvents(); // lays the window out
    const double stretch = std::min(SCREENSHOT_STRETCH, clock->end() - clock->start());
    const double start = *realTime;
    for (int frame = 1; frame <= SCREENSHOT_FRAMES; ++frame) {
        *realTime = start + stretch / clock->speed() * frame / SCREENSHOT_FRAMES;
        clock->advance();
        QApplication::processEvents();
    }
    if (window->grab().save(path))
        return true;
    complain(QStringLiteral("cannot write the picture '%1'").arg(path));
    return false;
}

// The palettes are those of the source tree, unless the user names others.
void setResourceDirectory()
{
    if (!qEnvironmentVariableIsSet("ZORBIN_QT_RESOURCE_DIR"))
        qputenv("ZORBIN_QT_RESOURCE_DIR", SURVEY_CONSOLE_RESOURCE_DIR);
}

std::unique_ptr<QSettings> openSettings(const QString& file)
{
    if (file.isEmpty())
        return std::make_unique<QSettings>();
    return std::make_unique<QSettings>(file, QSettings::IniFormat);
}

// As the last run left it, but for what the options say.
consoleState_t firstState(const options_t& options)
{
    consoleState_t state;
    if (options.screenshot.isEmpty()) // a picture is the same for everybody
        state = readState(*openSettings(options.settings));
    state.page = options.page.value_or(state.page);
    state.speed = options.speed.value_or(state.speed);
    state.theme = options.theme.value_or(state.theme);
    return state;
}

void keepState(const consoleState_t& state, const options_t& options)
{
    const auto settings = openSettings(options.settings);
    writeState(state, settings.get());
    settings->sync();
    if (settings->status() == QSettings::AccessError)
        complain(QStringLiteral("cannot write the settings '%1'").arg(settings->fileName()));
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("surveyConsole"));
    QApplication::setApplicationVersion(QStringLiteral(SURVEY_CONSOLE_VERSION));
    QApplication::setOrganizationName(QStringLiteral("the authors of libzorbin-qt-gui"));
    // The library's texts are shown in the user's language, if there is a translation.
    QTranslator libraryTexts;
    if (libraryTexts.load(QLocale(), QStringLiteral("zorbin-qt-gui"), QStringLiteral("_"),
                          QStringLiteral(SURVEY_CONSOLE_TRANSLATIONS)))
        QApplication::installTranslator(&libraryTexts);
    options_t options;
    if (!readOptions(&options))
        return EXIT_BAD_USAGE;
    const QString first = options.recordings.constFirst();
    readResult_t result = readRecording(first);
    if (!result.error.isEmpty()) {
        complain(result.error);
        return EXIT_FAILURE;
    }

    if (result.counts.bad > 0)
        complain(QStringLiteral("skipped %1 damaged of %2 lines in '%3'")
                     .arg(result.counts.bad)
                     .arg(result.counts.lines)
                     .arg(first));
    const sonarResult_t sonar = readSonarRecord(options.sonar);
    std::vector<echogram_t> echograms;
    if (!checkRecord(sonar, options.sonar) || !readEchograms(options.echograms, &echograms))
        return EXIT_FAILURE;

    setResourceDirectory();
    if (!options.backEnd.isEmpty()) // looked at when the first chart or curve is made
        qputenv("ZORBIN_QT_STRIPCHART_TYPE", options.backEnd.toLatin1());
    const consoleState_t start = firstState(options);
    theme::choose(start.theme);
    theme::apply(&application);
    const bool isForPicture = !options.screenshot.isEmpty();
    QElapsedTimer elapsed;
    elapsed.start();
    double pictureTime = 0.0; // s
    const auto realTime = [&] {
        return isForPicture ? pictureTime : static_cast<double>(elapsed.nsecsElapsed()) * 1e-9;
    };
    std::unique_ptr<mainWindow_t> window;
    const std::function<void(const QString&, readResult_t)> replay = [&](const QString& path,
                                                                         readResult_t line) {
        auto next =
            std::make_unique<mainWindow_t>(QFileInfo(path).fileName(), std::move(line), realTime);
        next->addSonar(QFileInfo(options.sonar).fileName(), sonar.record);
        next->addEchograms(echograms);
        next->addSurvey();
        next->recordings()->addFiles(window ? window->recordings()->files() : options.recordings);
        next->recordings()->showReplayed(path);
        next->restore(window ? window->state() : start);
        if (!window && !options.size.isEmpty())
            next->resize(options.size);
        QObject::connect(
            next.get(), &mainWindow_t::recordingChosen, &application,
            [&replay](const QString& chosen, const std::shared_ptr<readResult_t>& chosenLine) {
                // Once the window that asks is done: it is replaced.
                QTimer::singleShot(
                    0, [&replay, chosen, chosenLine] { replay(chosen, std::move(*chosenLine)); });
            });
        QObject::connect(next.get(), &mainWindow_t::themeChosen, &application,
                         [&, path](theme::name_t theme) {
                             QTimer::singleShot(0, [&, path, theme] {
                                 const double time = window->clock()->time();
                                 const bool isRunning = window->clock()->isRunning();
                                 theme::choose(theme);
                                 theme::apply(&application);
                                 replay(path, window->line());
                                 window->clock()->seek(time);
                                 window->clock()->setRunning(isRunning);
                             });
                         });
        next->show();
        next->clock()->setRunning(true);
        window = std::move(next);
    };
    replay(first, std::move(result));
    if (isForPicture)
        return writeScreenshot(window.get(), &pictureTime, options.screenshot) ? EXIT_SUCCESS
                                                                               : EXIT_FAILURE;
    if (options.duration > 0.0)
        QTimer::singleShot(static_cast<int>(options.duration * 1000.0), &application,
                           &QApplication::quit);
    const int code = QApplication::exec();
    keepState(window->state(), options);
    return code;
}
