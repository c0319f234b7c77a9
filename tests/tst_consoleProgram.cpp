#include "palette.h"
#include "pictures.h"
#include "testCase.h"
#include "testFiles.h"
#include "testRecords.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <map>
#include <memory>

using namespace survey_console;
using zorbin_qt_gui::palette_t;

namespace {

struct outcome_t
{
    int exitCode = -1; // crashed or hung
    QString out;
    QString err;
};

// A run of the program, which begins at once and goes on beside the test until its outcome is asked
// for: most of its time the program sleeps, so that its alarm flashes in step with the clock.
class run_t
{
public:
    explicit run_t(const QStringList& arguments);
    ~run_t();
    run_t(const run_t&) = delete;
    run_t& operator=(const run_t&) = delete;

    outcome_t outcome();

private:
    const QTemporaryDir m_directory; // its own; without one Qt says so
    QProcess m_process;
};

run_t::run_t(const QStringList& arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR", m_directory.path());
    environment.insert("XDG_CONFIG_HOME", m_directory.path()); // not the tester's own
    environment.remove("ZORBIN_QT_RESOURCE_DIR");
    m_process.setProcessEnvironment(environment);
    m_process.start(SURVEY_CONSOLE_PROGRAM, arguments);
}

run_t::~run_t()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill(); // its function has failed
    m_process.waitForFinished();
}

outcome_t run_t::outcome()
{
    if (m_process.state() != QProcess::NotRunning)
        m_process.waitForFinished(60000 * patience());
    const bool hasExited = m_process.state() == QProcess::NotRunning &&
                           m_process.error() == QProcess::UnknownError && // none
                           m_process.exitStatus() == QProcess::NormalExit;
    return {hasExited ? m_process.exitCode() : -1,
            QString::fromUtf8(m_process.readAllStandardOutput()),
            QString::fromUtf8(m_process.readAllStandardError())};
}

// A run that writes a picture, which may be looked at again and again.
class pictureRun_t
{
public:
    explicit pictureRun_t(const QStringList& arguments)
        : m_run(arguments + QStringList{"--screenshot", m_directory.filePath("console.png")})
    {
    }

    // Null if the program failed or had something to say.
    const QImage& picture()
    {
        if (!m_isOver) {
            m_isOver = true;
            const outcome_t outcome = m_run.outcome();
            if (outcome.exitCode == 0 && outcome.err.isEmpty())
                m_picture.load(m_directory.filePath("console.png"));
            else
                qInfo("exit code %d: %s", outcome.exitCode, qPrintable(outcome.err));
        }
        return m_picture;
    }

private:
    const QTemporaryDir m_directory;
    run_t m_run;
    bool m_isOver = false;
    QImage m_picture;
};

const QSize pictureSize(1280, 800);

} // namespace

/// The console as a program: its options, what it writes, and how it ends.
class tst_consoleProgram : public testCase_t
{
    Q_OBJECT
private:
    // The run with these arguments, which is the same for all functions that ask for it.
    pictureRun_t& run(const QStringList& arguments);

    std::map<QStringList, std::unique_ptr<pictureRun_t>> m_runs;

private Q_SLOTS:
    void writesAScreenshot();
    void drawsThroughTheBackEndOfChoice();
    void screenshotsAreAlike_data();
    void screenshotsAreAlike();
    void findsThePalettesOfTheSourceTree();
    void replaysTheBoat();
    void offersFurtherRecordings();
    void quitsAfterTheDuration();
    void showsTheThemeAndSizeOfChoice();
    void keepsItsStateForTheNextRun();
    void picturesHaveNoPartInTheState();
    void reportsSettingsItCannotWrite();
    void printsHelp();
    void refusesBadOptions_data();
    void refusesBadOptions();
    void refusesBadRecordings_data();
    void refusesBadRecordings();
    void refusesABadSonarRecord();
    void refusesABadEchogram();
    void showsTheEchogramsOfChoice();
    void reportsDamagedPings_data();
    void reportsDamagedPings();
    void reportsDamagedLines();
    void reportsAPictureItCannotWrite();
};

pictureRun_t& tst_consoleProgram::run(const QStringList& arguments)
{
    std::unique_ptr<pictureRun_t>& run = m_runs[arguments];
    if (!run)
        run = std::make_unique<pictureRun_t>(arguments);
    return *run;
}

void tst_consoleProgram::writesAScreenshot()
{
    const QImage picture = run({}).picture();
    QCOMPARE(picture.size(), pictureSize);
    // The curves' two colours are there, so it shows a replay and not an empty window.
    const int first = countOf(QColor(0x62, 0xc6, 0xe6), picture);
    const int second = countOf(QColor(0xf0, 0xb0, 0x52), picture);
    QVERIFY2(first > 5000, qPrintable(QString::number(first)));
    QVERIFY2(second > 5000, qPrintable(QString::number(second)));
}

void tst_consoleProgram::drawsThroughTheBackEndOfChoice()
{
    if (qgetenv("QT_XCB_GL_INTEGRATION") == "none")
        QSKIP("Without OpenGL the charts are empty, as tst_glStripChart tests.");
    pictureRun_t simple({"--back-end", "simple"});
    pictureRun_t gl({"--back-end", "gl"});
    const QImage painted = simple.picture();
    const QImage rendered = gl.picture();
    QCOMPARE(painted.size(), pictureSize);
    QCOMPARE(rendered.size(), pictureSize);
    // Through OpenGL lines are 1 pixel wide instead of 2.
    for (const QColor& color : {QColor(0x62, 0xc6, 0xe6), QColor(0xf0, 0xb0, 0x52)}) {
        const int wide = countOf(color, painted);
        const int narrow = countOf(color, rendered);
        QVERIFY2(narrow > 5000 && narrow < wide - 3000,
                 qPrintable(QStringLiteral("%1 and %2").arg(wide).arg(narrow)));
    }
}

void tst_consoleProgram::screenshotsAreAlike_data()
{
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("second"); // says the same in more words
    QTest::newRow("charts") << QStringList() << QStringList{"--page", "charts"};
    const QStringList sonar = {"--page", "sonar"};
    QTest::newRow("sonar") << sonar << sonar + QStringList{"--sonar", sidescanPicture};
    const QStringList echogram = {"--page", "echogram"};
    QTest::newRow("echogram") << echogram
                              << echogram + QStringList{"--echogram", echogramPicture(200),
                                                        "--echogram", echogramPicture(83)};
    const QStringList survey = {"--page", "survey"};
    QTest::newRow("survey") << survey
                            << survey + QStringList{"--recording", shipLog, "--recording", boatLog};
}

void tst_consoleProgram::screenshotsAreAlike()
{
    QFETCH(QStringList, first);
    QFETCH(QStringList, second);
    pictureRun_t& one = run(first);
    pictureRun_t& other = run(second); // beside the other
    QCOMPARE(one.picture().size(), pictureSize);
    QCOMPARE(firstDifference(other.picture(), one.picture()), QString());
}

void tst_consoleProgram::findsThePalettesOfTheSourceTree()
{
    palette_t depths;
    QVERIFY(depths.load(RESOURCES "/palette/bathy.wp"));
    // The swatch shows the first colour ten pixels high, whatever the depth curve shows.
    QVERIFY(countOf(QColor(depths.colorTable().front()), run({}).picture()) >= 10);
}

void tst_consoleProgram::replaysTheBoat()
{
    pictureRun_t boat({"--recording", boatLog, "--speed", "20"});
    QCOMPARE(boat.picture().size(), pictureSize);
}

void tst_consoleProgram::offersFurtherRecordings()
{
    const QStringList survey = {"--page", "survey"};
    // The second isn't read until it is chosen.
    pictureRun_t other(survey +
                       QStringList{"--recording", shipLog, "--recording", "/nowhere/line.log"});
    pictureRun_t& boat = run(survey);
    QCOMPARE(other.picture().size(), pictureSize);
    QVERIFY(other.picture() != boat.picture()); // by its name in the list
}

void tst_consoleProgram::quitsAfterTheDuration()
{
    const outcome_t outcome = run_t({"--speed", "100", "--duration", "0.5"}).outcome();
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_consoleProgram::showsTheThemeAndSizeOfChoice()
{
    pictureRun_t light({"--theme", "light", "--size", "1600x900"});
    QCOMPARE(light.picture().size(), QSize(1600, 900));
    QCOMPARE(light.picture().pixelColor(2, 2), QColor(0xdc, 0xe3, 0xe9)); // the window's edge
}

void tst_consoleProgram::keepsItsStateForTheNextRun()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath("settings.ini");
    const QString otherFile = directory.filePath("other.ini");
    const QStringList duration = {"--duration", "0.2"};
    const auto kept = [](const QString& path, const char* key) {
        return QSettings(path, QSettings::IniFormat).value(key).toString();
    };
    const QStringList settings = {"--settings", file};
    run_t first(settings + duration + QStringList{"--page", "sonar", "--speed", "20"});
    QCOMPARE(first.outcome().exitCode, 0);
    QCOMPARE(kept(file, "window/page"), QStringLiteral("sonar"));
    QCOMPARE(kept(file, "replay/speed"), QStringLiteral("20"));

    QVERIFY(QFile::copy(file, otherFile));
    run_t next(settings + duration);
    run_t other(QStringList{"--settings", otherFile, "--page", "survey"} + duration);
    QCOMPARE(next.outcome().exitCode, 0);
    QCOMPARE(kept(file, "window/page"), QStringLiteral("sonar"));
    QCOMPARE(kept(file, "replay/speed"), QStringLiteral("20"));
    QCOMPARE(other.outcome().exitCode, 0);
    QCOMPARE(kept(otherFile, "window/page"), QStringLiteral("survey")); // an option comes first
    QCOMPARE(kept(otherFile, "replay/speed"), QStringLiteral("20"));
}

void tst_consoleProgram::picturesHaveNoPartInTheState()
{
    const QTemporaryDir directory;
    const QString missing = directory.filePath("missing.ini");
    const QString file = directory.filePath("settings.ini");
    const QByteArray content = "[window]\npage=survey\n";
    QVERIFY(writeFile(file, content));
    pictureRun_t without({"--settings", missing});
    pictureRun_t with({"--settings", file});
    const QImage wanted = run({}).picture();
    QCOMPARE(wanted.size(), pictureSize);
    QCOMPARE(firstDifference(without.picture(), wanted), QString());
    QVERIFY(!QFileInfo::exists(missing));
    QCOMPARE(firstDifference(with.picture(), wanted), QString());
    QFile settings(file);
    QVERIFY(settings.open(QIODevice::ReadOnly));
    QCOMPARE(settings.readAll(), content);
}

void tst_consoleProgram::reportsSettingsItCannotWrite()
{
    const QString file = QStringLiteral("/proc/settings.ini"); // not even for the superuser
    const outcome_t outcome = run_t({"--settings", file, "--duration", "0.1"}).outcome();
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: cannot write the settings '%1'\n").arg(file));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_consoleProgram::printsHelp()
{
    const outcome_t outcome = run_t({"--help"}).outcome();
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.err, QString());
    for (const char* option :
         {"--recording", "--sonar", "--echogram", "--page", "--back-end", "--speed", "--duration",
          "--screenshot", "--settings", "--theme", "--size", "--help"})
        QVERIFY2(outcome.out.contains(option), option);
}

void tst_consoleProgram::refusesBadOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    const QString speed =
        QStringLiteral("surveyConsole: --speed takes a number from 1 to 100, not '%1'\n");
    QTest::newRow("speed 0") << QStringList{"--speed", "0"} << speed.arg("0");
    QTest::newRow("speed 101") << QStringList{"--speed", "101"} << speed.arg("101");
    QTest::newRow("speed fast") << QStringList{"--speed", "fast"} << speed.arg("fast");
    QTest::newRow("speed NaN") << QStringList{"--speed", "nan"} << speed.arg("nan");
    QTest::newRow("speed empty") << QStringList{"--speed", ""} << speed.arg("");
    const QString duration =
        QStringLiteral("surveyConsole: --duration takes a number from 0.001 to 86400, not '%1'\n");
    QTest::newRow("duration 0") << QStringList{"--duration", "0"} << duration.arg("0");
    QTest::newRow("duration -1") << QStringList{"--duration=-1"} << duration.arg("-1");
    QTest::newRow("duration infinite") << QStringList{"--duration", "inf"} << duration.arg("inf");
    QTest::newRow("page")
        << QStringList{"--page", "chart"}
        << "surveyConsole: --page takes charts, sonar, echogram or survey, not 'chart'\n";
    QTest::newRow("back end") << QStringList{"--back-end", "GL"}
                              << "surveyConsole: --back-end takes simple or gl, not 'GL'\n";
    QTest::newRow("argument") << QStringList{"line.log"}
                              << "surveyConsole: unexpected argument 'line.log'\n";
    QTest::newRow("empty screenshot")
        << QStringList{"--screenshot", ""} << "surveyConsole: --screenshot takes a file name\n";
    QTest::newRow("theme") << QStringList{"--theme", "grey"}
                           << "surveyConsole: --theme takes dark or light, not 'grey'\n";
    for (const char* size : {"", "1280", "1280x", "0x800", "-1x800", "9000x800", "1280x800x600"})
        QTest::addRow("size '%s'", size)
            << QStringList{"--size", size}
            << QStringLiteral("surveyConsole: --size takes WIDTHxHEIGHT, each up to 8192, not "
                              "'%1'\n")
                   .arg(size);
    QTest::newRow("empty settings")
        << QStringList{"--settings", ""} << "surveyConsole: --settings takes a file name\n";
    QTest::newRow("unknown option")
        << QStringList{"--fly"} << "surveyConsole: Unknown option 'fly'.\n";
    QTest::newRow("missing value")
        << QStringList{"--speed"} << "surveyConsole: Missing value after '--speed'.\n";
}

void tst_consoleProgram::refusesBadOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const outcome_t outcome = run_t(arguments).outcome();
    QCOMPARE(outcome.err, message);
    QCOMPARE(outcome.exitCode, 2);
}

void tst_consoleProgram::refusesBadRecordings_data()
{
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << false << QByteArray()
                             << "surveyConsole: cannot open '%1': No such file or directory\n";
    QTest::newRow("empty") << true << QByteArray() << "surveyConsole: '%1' is empty\n";
    QTest::newRow("broken")
        << true << QByteArray("$HEHDT,218.53,T*13\n\x01\x02\xff\n")
        << "surveyConsole: '%1' holds nothing to replay: 2 lines, 2 of them damaged\n";
}

void tst_consoleProgram::refusesBadRecordings()
{
    QFETCH(bool, exists);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QTemporaryDir directory;
    const QString path = directory.filePath("line.log");
    if (exists)
        QVERIFY(writeFile(path, content));
    const outcome_t outcome = run_t({"--recording", path}).outcome();
    QCOMPARE(outcome.err, message.arg(path));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_consoleProgram::refusesABadSonarRecord()
{
    const outcome_t outcome = run_t({"--sonar", shipLog}).outcome();
    QCOMPARE(outcome.err, QStringLiteral("surveyConsole: cannot open '%1': No such file or "
                                         "directory\n")
                              .arg(QString(shipLog).replace(".log", ".csv")));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_consoleProgram::refusesABadEchogram()
{
    const QString sidescan = QString(sidescanPicture).remove(".pgm");
    const outcome_t outcome =
        run_t({"--echogram", echogramPicture(200), "--echogram", sidescanPicture}).outcome();
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: '%1.csv' is no table of pings\n").arg(sidescan));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_consoleProgram::showsTheEchogramsOfChoice()
{
    const QStringList page = {"--page", "echogram"};
    pictureRun_t low(page + QStringList{"--echogram", echogramPicture(83)});
    pictureRun_t& both = run(
        page + QStringList{"--echogram", echogramPicture(200), "--echogram", echogramPicture(83)});
    pictureRun_t& asUsual = run(page);
    QCOMPARE(asUsual.picture().size(), pictureSize);
    QCOMPARE(firstDifference(both.picture(), asUsual.picture()), QString());
    QCOMPARE(low.picture().size(), pictureSize);
    QVERIFY(low.picture() != asUsual.picture());
}

void tst_consoleProgram::reportsDamagedPings_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QByteArray>("table");
    QTest::newRow("sonar") << "sonar"
                           << QByteArray("time_utc,slant_range_m\n2013-09-10T21:13:08Z,30\n"
                                         "2013-09-10T21:13:09Z,30\n");
    QTest::newRow("echogram") << "echogram"
                              << QByteArray("time_utc,sample_spacing_m,samples\n"
                                            "2013-09-10T21:13:08Z,0.02,1\n"
                                            "2013-09-10T21:13:09Z,0.02,1\n");
}

void tst_consoleProgram::reportsDamagedPings()
{
    QFETCH(QString, page);
    QFETCH(QByteArray, table);
    const QTemporaryDir directory;
    const QString path = directory.filePath("record.pgm");
    QVERIFY(writeFile(path, "P5\n1 2\n255\n\x80")); // the second row is missing
    QVERIFY(writeFile(directory.filePath("record.csv"), table));
    const outcome_t outcome =
        run_t({"--" + page, path, "--page", page, "--screenshot", directory.filePath("1.png")})
            .outcome();
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: left out 1 damaged pings of '%1'\n").arg(path));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_consoleProgram::reportsDamagedLines()
{
    QTemporaryDir directory;
    const QString path = directory.filePath("line.log");
    QVERIFY(writeFile(path, "2014-08-01T00:00:00.183000Z $HEHDT,218.53,T*12\n"
                            "2014-08-01T00:00:00.383000Z $HEHDT,218.53,T*13\n"
                            "2014-08-01T00:00:00.583000Z $HEHDT,218.53,T*12\n"));
    const outcome_t outcome =
        run_t({"--recording", path, "--screenshot", directory.filePath("1.png")}).outcome();
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: skipped 1 damaged of 3 lines in '%1'\n").arg(path));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_consoleProgram::reportsAPictureItCannotWrite()
{
    const outcome_t outcome = run_t({"--screenshot", "/nowhere/console.png"}).outcome();
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: cannot write the picture '/nowhere/console.png'\n"));
    QCOMPARE(outcome.exitCode, 1);
}

ZORBIN_TEST_MAIN(tst_consoleProgram, QApplication)
#include "tst_consoleProgram.moc"
