#include "chartPanel.h"
#include "colorPicker.h"
#include "latLonEditor.h"
#include "mainWindow.h"
#include "messageRecorder.h"
#include "notices.h"
#include "notifierWidget.h"
#include "paintLog.h"
#include "palette.h"
#include "paletteChooser.h"
#include "pictures.h"
#include "positionPanel.h"
#include "recordingsPanel.h"
#include "sonarPanel.h"
#include "speedPanel.h"
#include "stripChart.h"
#include "testCase.h"
#include "texts.h"
#include "theme.h"
#include "timeAxis.h"
#include "timeRuler.h"
#include "valueRuler.h"

#include <QAction>
#include <QColorDialog>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QWheelEvent>
#include <cmath>
#include <limits>
#include <memory>

using namespace survey_console;
using zorbin_qt_gui::colorPicker_t;
using zorbin_qt_gui::latLonEditor_t;
using zorbin_qt_gui::notifierWidget_t;
using zorbin_qt_gui::palette_t;
using zorbin_qt_gui::stripChart_t;

namespace {

const char SHIP[] = EXAMPLE_DATA "/nbp1406-underway/underway-10min.log";
const char BOAT[] = EXAMPLE_DATA "/plaka-sailing/plaka-10min.log";
const char RIVER[] = EXAMPLE_DATA "/leesferry-echosounder/echosounder-200khz.pgm";
const double START = 1406851200.0; // 2014-08-01 00:00:00 UTC
const double LENGTH = 600.0;       // s
enum panel_t
{
    PANEL_DEPTH,
    PANEL_HEADING,
    PANEL_SPEED,
    PANEL_COURSE,
    PANEL_ATTITUDE,
    PANEL_HEAVE
};

// Ten minutes: a sounding every 10 s, 100 m growing by 1 m each, none from 200 s to 300 s; once a
// second a gyro heading that swings 5 deg to both sides of north.
readResult_t testLine()
{
    readResult_t line;
    for (int second = 0; second <= 600; ++second) {
        const double time = START + second;
        if (second % 10 == 0 && (second <= 200 || second >= 300))
            line.recording.add(CHANNEL_DEPTH, "SDDPT", {time, 100.0 + second / 10.0});
        const double swing = 5.0 * std::sin(second * 0.1);
        line.recording.add(CHANNEL_GYRO_HEADING, "HEHDT",
                           {time, swing < 0.0 ? swing + 360.0 : swing});
    }
    return line;
}

// A ping a second for a minute.
sonarRecord_t testSonar()
{
    sonarRecord_t record;
    record.extent = {-30.0, 30.0, 2};
    for (int second = 0; second < 60; ++second)
        record.pings.push_back({START + second, {-10.0F, -20.0F}});
    return record;
}

std::vector<echogram_t> testEchograms()
{
    sonarRecord_t record;
    record.extent = {0.0, 30.0, 2};
    record.fullLevel = 255.0F;
    for (int second = 0; second < 60; ++second)
        record.pings.push_back({START + second, {10.0F, 20.0F}, 5.0});
    return {{"echosounder-200khz.pgm", record}};
}

// The console over the test line, its real time set by hand.
struct console_t
{
    double realTime = 0.0;
    mainWindow_t window{"test line", testLine(), [this] { return realTime; }};

    console_t()
    {
        window.resize(1280, 800);
        window.show();
        window.activateWindow();
    }

    bool isReady()
    {
        const bool active = QTest::qWaitForWindowActive(&window, patienceMs());
        QCoreApplication::processEvents(); // what the layout queued
        return active;
    }

    replayClock_t* clock() { return window.clock(); }
    double elapsed() { return window.clock()->time() - START; }

    void pass(double seconds)
    {
        realTime += seconds;
        window.clock()->advance();
    }

    template <typename widget_t>
    widget_t* find(const char* name)
    {
        return window.findChild<widget_t*>(name);
    }

    chartPanel_t* panel(panel_t index) { return window.chartPanels().at(index); }
    stripChart_t* chart(panel_t index) { return panel(index)->chart(); }
    valueRuler_t* ruler(panel_t index) { return panel(index)->valueRuler(); }
    // The time ruler of a column.
    timeRuler_t* timeRuler(const char* axis) { return find<timeAxis_t>(axis)->ruler(); }
    QToolButton* autoscaleButton(panel_t index)
    {
        return panel(index)->findChild<QToolButton*>("autoscaleButton");
    }
    QLabel* label(panel_t index, const char* name)
    {
        return panel(index)->findChild<QLabel*>(name);
    }
    QString text(panel_t index, const char* name) { return label(index, name)->text(); }
    QColor textColor(panel_t index, const char* name)
    {
        return label(index, name)->palette().color(QPalette::WindowText);
    }
    colorPicker_t* picker(panel_t index, const char* name)
    {
        return panel(index)->findChild<colorPicker_t*>(name);
    }
    paletteChooser_t* chooser() { return window.findChild<paletteChooser_t*>(); }
    QComboBox* paletteBox() { return find<QComboBox>("paletteBox"); }
    // Chooses the row of the palette box as a user does.
    void choosePalette(int row)
    {
        QComboBox* box = paletteBox();
        box->setFocus();
        while (box->currentIndex() != row)
            QTest::keyClick(box, box->currentIndex() < row ? Qt::Key_Down : Qt::Key_Up);
    }

    // The chart's drawing area.
    QWidget* area(panel_t index) { return chart(index)->findChild<QWidget*>(); }
};

bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

// A palette file of two colours, such as "r=\"255\" g=\"0\" b=\"0\"".
QByteArray twoColors(const QByteArray& first, const QByteArray& last)
{
    return "<palette><colorTable depth=\"24\"><color " + first + "/><color " + last +
           "/></colorTable><keyedColorTable/></palette>";
}

const char RED[] = "r=\"255\" g=\"0\" b=\"0\"";
const char GREEN[] = "r=\"0\" g=\"255\" b=\"0\"";
const char YELLOW[] = "r=\"255\" g=\"255\" b=\"0\"";
const char CYAN[] = "r=\"0\" g=\"255\" b=\"255\"";

// How many pixels of a picture have a colour.
int countOf(const QColor& color, const QImage& picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

struct outcome_t
{
    int exitCode; // -1: crashed or hung
    QString out;
    QString err;
};

outcome_t runConsole(const QStringList& arguments)
{
    const QTemporaryDir runtimeDirectory; // without one Qt says so
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR", runtimeDirectory.path());
    environment.insert("XDG_CONFIG_HOME", runtimeDirectory.path()); // not the tester's own
    environment.remove("ZORBIN_QT_RESOURCE_DIR");
    process.setProcessEnvironment(environment);
    process.start(SURVEY_CONSOLE_PROGRAM, arguments);
    const bool finished = process.waitForFinished(60000);
    return {finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

class tst_surveyConsole : public testCase_t
{
    Q_OBJECT
private:
    QTemporaryDir m_resources; // with the palettes, of which the first two are told apart

protected:
    void setUp() override;

private Q_SLOTS:
    void initTestCase();
    // the window
    void startsPausedAtTheStart();
    void resumesAndPausesByTheButton();
    void resumesAndPausesBySpace();
    void runsByItsOwnTimer();
    void seeksByKeys_data();
    void seeksByKeys();
    void seeksWhereTheSliderIsClicked();
    void sliderFollowsWithoutSeeking();
    void changesTheSpeedByTheBox();
    void listsASpeedOfItsOwn();
    void changesTheTimeWindowByTheBox();
    void showsTheEndOfTheLine();
    void showsCurrentValues();
    void dimsAValueThatIsOld();
    void saysWhatIsNotRecorded();
    void depthGrowsDownwards();
    void headingDoesNotJumpAtNorth();
    void rulersShowTheBounds();
    void followingTheDataIsNotChoosingAScale();
    void rulersAlignWithTheirCharts_data();
    void rulersAlignWithTheirCharts();
    void rulersPointAtThePointer();
    void dragOnTheRulerChoosesTheScale();
    void clickOnTheRulerCentresTheScale();
    void doubleClickOnTheRulerShowsTwiceAsMuch();
    void goesBackToFollowingTheDataByTheButton();
    void readsOutThePointer();
    void drawsAGapFaded();
    void looksTheSameAfterSeekingBack();
    void endsTheWindowAtTheTimeAfterResizing();
    void fitsTheScreen_data();
    void fitsTheScreen();
    void namesDamage();
    void chartKeepsItsHeightWhenAReadOutComes();
    void tellsOfStartAndEnd();
    void showsNoticesWhileValuesChange();
    void asksBeforeItReplaysAnother();
    void goesOnWhenTheUserThinksBetter();
    void saysWhyARecordingCannotBeRead();
    void replaysFromTheList();
    void showsTheAboutBox();
    void turnsPages();
    void hasOnlyThePagesThatThereIsARecordFor();
    void sonarFollowsTheClock();
    void echogramFollowsTheClock();
    void goesToTheTimeNearestToAPosition();
    // colours
    void startsWithTheDepthPalette();
    void coloursTheDepthByValue();
    void recoloursThePastByAnotherPalette();
    void keepsTheScaleWhenItRecolours();
    void coloursNewPointsLikeTheOld();
    void goesBackToOneColour();
    void showsThePaletteOverItsRange();
    void paletteBoxShowsThePalettes();
    void wheelOverThePaletteBoxChangesNothing();
    void choosesAPaletteFromAFile();
    void cancelledFileDialogKeepsThePalette();
    void keepsThePaletteWhenAFileCannotBeRead_data();
    void keepsThePaletteWhenAFileCannotBeRead();
    void readOutStandsBeforeTheMessage();
    void goesOnWithoutPalettes();
    void namesStandardPalettesThatCannotBeRead();
    void hasNoPaletteWithoutDepth();
    void secondCurveLiesOverTheFirst();
    void recoloursACurveByItsPicker();
    void choosesACurveColourInTheDialog();
    void pickedColourTakesTheDepthOffItsPalette();
    void makesDarkColoursVisible_data();
    void makesDarkColoursVisible();
    void stretchesThePaletteOverRoundNumbers_data();
    void stretchesThePaletteOverRoundNumbers();
    // texts
    void writesTimes_data();
    void writesTimes();
    void writesAngles_data();
    void writesAngles();
    void writesBearingsInThreeDigits();
    void writesValuesWithoutMinusZero();
    void writesPositions_data();
    void writesPositions();
    void writesRanges_data();
    void writesRanges();
    // the program
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

void tst_surveyConsole::initTestCase()
{
    QVERIFY(QDir(m_resources.path()).mkdir("palette"));
    const auto path = [this](const char* name) {
        return m_resources.filePath(QStringLiteral("palette/%1.wp").arg(name));
    };
    QVERIFY(writeFile(path("bathy"), twoColors(RED, GREEN)));
    QVERIFY(writeFile(path("imagery"), twoColors(YELLOW, CYAN)));
    for (const char* name : {"intensity", "sidescan", "subbottom", "watercolumn"})
        QVERIFY(writeFile(path(name), twoColors(GREEN, CYAN)));
}

void tst_surveyConsole::setUp()
{
    qputenv("ZORBIN_QT_RESOURCE_DIR", QFile::encodeName(m_resources.path()));
}

void tst_surveyConsole::startsPausedAtTheStart()
{
    console_t console;
    QVERIFY(console.isReady());
    QCOMPARE(console.elapsed(), 0.0);
    QCOMPARE(console.find<QPushButton>("pauseButton")->text(), QStringLiteral("Resume"));
    QCOMPARE(console.find<QLabel>("stateLabel")->text(), QStringLiteral("PAUSED"));
    QCOMPARE(console.find<QLabel>("timeLabel")->text(), QStringLiteral("2014-08-01  00:00:00 UTC"));
}

void tst_surveyConsole::resumesAndPausesByTheButton()
{
    console_t console;
    QVERIFY(console.isReady());
    auto* button = console.find<QPushButton>("pauseButton");
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(button->text(), QStringLiteral("Pause"));
    QCOMPARE(console.find<QLabel>("stateLabel")->text(), QStringLiteral("REPLAY 1\u00d7"));
    console.pass(30.0);
    QCOMPARE(console.elapsed(), 30.0);
    QCOMPARE(console.find<QLabel>("timeLabel")->text(), QStringLiteral("2014-08-01  00:00:30 UTC"));
    QTest::mouseClick(button, Qt::LeftButton);
    console.pass(30.0);
    QCOMPARE(console.elapsed(), 30.0);
    QCOMPARE(console.find<QLabel>("stateLabel")->text(), QStringLiteral("PAUSED"));
}

void tst_surveyConsole::resumesAndPausesBySpace()
{
    console_t console;
    QVERIFY(console.isReady());
    // Also with the focus where Space means something else.
    console.find<QComboBox>("speedBox")->setFocus();
    QTest::keyClick(console.find<QComboBox>("speedBox"), Qt::Key_Space);
    QVERIFY(console.clock()->isRunning());
    console.find<QPushButton>("pauseButton")->setFocus();
    QTest::keyClick(console.find<QPushButton>("pauseButton"), Qt::Key_Space);
    QVERIFY(!console.clock()->isRunning());
}

void tst_surveyConsole::runsByItsOwnTimer()
{
    console_t console;
    QVERIFY(console.isReady());
    QTest::mouseClick(console.find<QPushButton>("pauseButton"), Qt::LeftButton);
    console.realTime += 2.0; // nobody calls advance()
    QTRY_COMPARE(console.elapsed(), 2.0);
}

void tst_surveyConsole::seeksByKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<double>("elapsed");
    QTest::newRow("Left") << int(Qt::Key_Left) << 290.0;
    QTest::newRow("Right") << int(Qt::Key_Right) << 310.0;
    QTest::newRow("Page Up") << int(Qt::Key_PageUp) << 240.0;
    QTest::newRow("Page Down") << int(Qt::Key_PageDown) << 360.0;
    QTest::newRow("Home") << int(Qt::Key_Home) << 0.0;
    QTest::newRow("End") << int(Qt::Key_End) << 600.0;
}

void tst_surveyConsole::seeksByKeys()
{
    QFETCH(int, key);
    QFETCH(double, elapsed);
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 300.0);
    QTest::keyClick(&console.window, static_cast<Qt::Key>(key));
    QCOMPARE(console.elapsed(), elapsed);
    console.clock()->seek(START + 300.0);
    auto* slider = console.find<QSlider>("seekSlider"); // has a meaning of its own for each
    slider->setFocus();
    QTest::keyClick(slider, static_cast<Qt::Key>(key));
    QCOMPARE(console.elapsed(), elapsed);
}

void tst_surveyConsole::seeksWhereTheSliderIsClicked()
{
    console_t console;
    QVERIFY(console.isReady());
    auto* slider = console.find<QSlider>("seekSlider");
    for (const double share : {0.75, 0.25}) {
        const int x = static_cast<int>(slider->width() * share);
        QTest::mouseClick(slider, Qt::LeftButton, Qt::KeyboardModifiers(),
                          QPoint(x, slider->height() / 2));
        QVERIFY2(std::fabs(console.elapsed() - LENGTH * share) < LENGTH / slider->width() * 2.0,
                 qPrintable(QString::number(console.elapsed())));
        QCOMPARE(console.chart(PANEL_DEPTH)->maxTimeBound(), console.clock()->time());
    }
}

void tst_surveyConsole::sliderFollowsWithoutSeeking()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->setRunning(true);
    console.pass(123.456789);
    QCOMPARE(console.elapsed(), 123.456789 + START - START); // as far as a double tells
    auto* slider = console.find<QSlider>("seekSlider");
    QCOMPARE(slider->value(), 2058); // 123.46 s of 600 s, in ten thousandths
}

void tst_surveyConsole::changesTheSpeedByTheBox()
{
    console_t console;
    QVERIFY(console.isReady());
    auto* box = console.find<QComboBox>("speedBox");
    QCOMPARE(box->currentText(), QStringLiteral("1\u00d7"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(console.clock()->speed(), 2.0);
    for (int i = 0; i < 10; ++i)
        QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(console.clock()->speed(), 100.0);
    console.clock()->setRunning(true);
    QCOMPARE(console.find<QLabel>("stateLabel")->text(), QStringLiteral("REPLAY 100\u00d7"));
}

void tst_surveyConsole::listsASpeedOfItsOwn()
{
    console_t console;
    auto* box = console.find<QComboBox>("speedBox");
    const int count = box->count();
    console.clock()->setSpeed(7.5);
    QCOMPARE(box->currentText(), QStringLiteral("7.5\u00d7"));
    QCOMPARE(box->count(), count + 1);
    console.clock()->setSpeed(5.0);
    QCOMPARE(box->currentText(), QStringLiteral("5\u00d7"));
    console.clock()->setSpeed(7.5);
    QCOMPARE(box->count(), count + 1);
}

void tst_surveyConsole::changesTheTimeWindowByTheBox()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    QCOMPARE(console.chart(PANEL_DEPTH)->minTimeBound(), START + 100.0); // five minutes
    auto* box = console.find<QComboBox>("spanBox");
    QCOMPARE(box->currentText(), QStringLiteral("5 min"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(console.chart(PANEL_DEPTH)->minTimeBound(), START + 280.0);
    QCOMPARE(console.chart(PANEL_DEPTH)->maxTimeBound(), START + 400.0);
    QCOMPARE(console.chart(PANEL_HEAVE)->minTimeBound(), START + 280.0);
}

void tst_surveyConsole::showsTheEndOfTheLine()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->setRunning(true);
    console.pass(601.0);
    QCOMPARE(console.elapsed(), 600.0);
    QCOMPARE(console.find<QLabel>("stateLabel")->text(), QStringLiteral("END OF LINE"));
    QCOMPARE(console.text(PANEL_DEPTH, "valueLabel0"), QStringLiteral("160.0"));
    QTest::mouseClick(console.find<QPushButton>("pauseButton"), Qt::LeftButton);
    QCOMPARE(console.elapsed(), 0.0);
    QCOMPARE(console.find<QLabel>("stateLabel")->text(), QStringLiteral("REPLAY 1\u00d7"));
    QCOMPARE(console.text(PANEL_DEPTH, "valueLabel0"), QStringLiteral("100.0"));
}

void tst_surveyConsole::showsCurrentValues()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->setRunning(true);
    console.pass(59.0);
    QCOMPARE(console.text(PANEL_DEPTH, "valueLabel0"), QStringLiteral("105.0")); // of 50 s
    console.pass(1.0);
    QCOMPARE(console.text(PANEL_DEPTH, "valueLabel0"), QStringLiteral("106.0"));
    // 5 deg * sin(6.0) = -1.397 deg
    QCOMPARE(console.text(PANEL_HEADING, "valueLabel0"), QStringLiteral("358.6"));
}

void tst_surveyConsole::dimsAValueThatIsOld()
{
    console_t console;
    QVERIFY(console.isReady());
    const auto color = [&] { return console.textColor(PANEL_DEPTH, "valueLabel0"); };
    console.clock()->seek(START + 218.0); // 18 s after the last sounding, 1.8 times the usual step
    const QColor fresh = color();
    console.clock()->seek(START + 218.1);
    QVERIFY(color() != fresh);
    console.clock()->seek(START + 300.0);
    QCOMPARE(color(), fresh);
}

void tst_surveyConsole::saysWhatIsNotRecorded()
{
    console_t console;
    QVERIFY(!console.panel(PANEL_DEPTH)->findChild<QLabel*>("missingLabel"));
    QVERIFY(!console.panel(PANEL_HEADING)->findChild<QLabel*>("missingLabel"));
    for (const panel_t panel : {PANEL_SPEED, PANEL_COURSE, PANEL_ATTITUDE, PANEL_HEAVE}) {
        QCOMPARE(console.text(panel, "missingLabel"), QStringLiteral("not recorded"));
        QVERIFY(!console.autoscaleButton(panel));
        QCOMPARE(console.ruler(panel)->end(), console.ruler(panel)->start()); // no ticks
    }
}

void tst_surveyConsole::depthGrowsDownwards()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 200.0);
    const double top = console.ruler(PANEL_DEPTH)->end();
    const double bottom = console.ruler(PANEL_DEPTH)->start();
    QVERIFY2(-top < 100.0 && -top > 80.0, qPrintable(QString::number(-top)));
    QVERIFY2(-bottom > 120.0 && -bottom < 140.0, qPrintable(QString::number(-bottom)));
}

void tst_surveyConsole::headingDoesNotJumpAtNorth()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 600.0);
    const double range = console.chart(PANEL_HEADING)->maxValueBound() -
                         console.chart(PANEL_HEADING)->minValueBound();
    QVERIFY2(range > 10.0 && range < 20.0, qPrintable(QString::number(range)));
    valueRuler_t* ruler = console.ruler(PANEL_HEADING);
    QVERIFY(std::stod(ruler->textFromValue(ruler->start())) > 350.0);
    QVERIFY(std::stod(ruler->textFromValue(ruler->end())) < 10.0);
}

void tst_surveyConsole::rulersShowTheBounds()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    for (const char* axis : {"timeAxis0", "timeAxis1"}) {
        QCOMPARE(console.timeRuler(axis)->start(), START + 100.0);
        QCOMPARE(console.timeRuler(axis)->end(), START + 400.0);
    }
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    QCOMPARE(console.ruler(PANEL_DEPTH)->start(), chart->minValueBound());
    QCOMPARE(console.ruler(PANEL_DEPTH)->end(), chart->maxValueBound());
    chart->valueBounds(-250.0, -50.0);
    QCOMPARE(console.ruler(PANEL_DEPTH)->start(), -250.0);
    QCOMPARE(console.ruler(PANEL_DEPTH)->end(), -50.0);
}

void tst_surveyConsole::followingTheDataIsNotChoosingAScale()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->setRunning(true);
    for (int i = 0; i < 10; ++i) {
        console.pass(30.0);
        QVERIFY(console.chart(PANEL_DEPTH)->autoscaleValue());
        QCOMPARE(console.ruler(PANEL_DEPTH)->end(), console.chart(PANEL_DEPTH)->maxValueBound());
    }
}

void tst_surveyConsole::rulersAlignWithTheirCharts_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(1280, 800);
    QTest::newRow("large") << QSize(1907, 1013);
}

void tst_surveyConsole::rulersAlignWithTheirCharts()
{
    QFETCH(QSize, size);
    console_t console;
    QVERIFY(console.isReady());
    console.window.resize(size);
    QTRY_COMPARE(console.window.size(), size);
    QCoreApplication::processEvents();
    const auto placeOf = [&](const QWidget* widget) {
        return QRect(widget->mapTo(&console.window, QPoint()), widget->size());
    };
    for (const panel_t panel :
         {PANEL_DEPTH, PANEL_HEADING, PANEL_SPEED, PANEL_COURSE, PANEL_ATTITUDE, PANEL_HEAVE}) {
        const QRect area = placeOf(console.area(panel));
        const QRect values = placeOf(console.ruler(panel));
        QCOMPARE(values.top(), area.top());
        QCOMPARE(values.bottom(), area.bottom());
        QCOMPARE(values.right() + 1, area.left());
        const QRect times = placeOf(console.timeRuler(panel % 2 == 0 ? "timeAxis0" : "timeAxis1"));
        QCOMPARE(times.left(), area.left());
        QCOMPARE(times.right(), area.right());
        QVERIFY(times.top() > area.bottom());
    }
}

void tst_surveyConsole::rulersPointAtThePointer()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    console.chart(PANEL_DEPTH)->valueBounds(-200.0, 0.0);
    const QImage values = snapshot(*console.ruler(PANEL_DEPTH));
    const QImage times = snapshot(*console.timeRuler("timeAxis0"));
    const QImage otherTimes = snapshot(*console.timeRuler("timeAxis1"));
    QWidget* area = console.area(PANEL_DEPTH);
    const QPoint pointer(area->width() / 4, area->height() / 2);
    QTest::mouseMove(area, pointer);
    QTRY_VERIFY(console.ruler(PANEL_DEPTH)->indicator() != 0.0);
    QCOMPARE(console.ruler(PANEL_DEPTH)->valueToPixel(console.ruler(PANEL_DEPTH)->indicator()),
             pointer.y());
    timeRuler_t* timeRuler = console.timeRuler("timeAxis0");
    // A time of day to 1e-7 s, taken to a pixel and back.
    QVERIFY(std::abs(timeRuler->valueToPixel(timeRuler->indicator()) - pointer.x()) <= 1);
    QVERIFY(snapshot(*console.ruler(PANEL_DEPTH)) != values);
    QVERIFY(snapshot(*timeRuler) != times);
    QCOMPARE(firstDifference(snapshot(*console.timeRuler("timeAxis1")), otherTimes), QString());

    QTest::mouseMove(console.find<QLabel>("timeLabel"));
    QTRY_COMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
    QCOMPARE(firstDifference(snapshot(*console.ruler(PANEL_DEPTH)), values), QString());
    QCOMPARE(firstDifference(snapshot(*timeRuler), times), QString());
}

void tst_surveyConsole::dragOnTheRulerChoosesTheScale()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    valueRuler_t* ruler = console.ruler(PANEL_DEPTH);
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    const double bottom = ruler->pixelToValue(ruler->height() * 3 / 4);
    const double top = ruler->pixelToValue(ruler->height() / 4);
    QTest::mousePress(ruler, Qt::LeftButton, Qt::KeyboardModifiers(),
                      QPoint(5, ruler->height() / 4));
    QTest::mouseRelease(ruler, Qt::LeftButton, Qt::KeyboardModifiers(),
                        QPoint(5, ruler->height() * 3 / 4));
    QCOMPARE(chart->minValueBound(), bottom);
    QCOMPARE(chart->maxValueBound(), top);
    QVERIFY(!chart->autoscaleValue());
    QVERIFY(!console.autoscaleButton(PANEL_DEPTH)->isChecked());
    console.clock()->seek(START + 600.0);
    QCOMPARE(chart->maxValueBound(), top);
    QCOMPARE(ruler->end(), top);
    QVERIFY(console.chart(PANEL_HEADING)->autoscaleValue());
}

void tst_surveyConsole::clickOnTheRulerCentresTheScale()
{
    console_t console;
    QVERIFY(console.isReady());
    console.chart(PANEL_HEADING)->valueBounds(-10.0, 10.0);
    valueRuler_t* ruler = console.ruler(PANEL_HEADING);
    const double center = ruler->pixelToValue(20);
    QTest::mouseClick(ruler, Qt::LeftButton, Qt::KeyboardModifiers(), QPoint(5, 20));
    QCOMPARE(console.chart(PANEL_HEADING)->minValueBound(), center - 10.0);
    QCOMPARE(console.chart(PANEL_HEADING)->maxValueBound(), center + 10.0);
}

void tst_surveyConsole::doubleClickOnTheRulerShowsTwiceAsMuch()
{
    console_t console;
    QVERIFY(console.isReady());
    stripChart_t* chart = console.chart(PANEL_HEADING);
    chart->valueBounds(-10.0, 10.0);
    valueRuler_t* ruler = console.ruler(PANEL_HEADING);
    QTest::mouseDClick(ruler, Qt::LeftButton, Qt::KeyboardModifiers(),
                       QPoint(5, ruler->height() / 2));
    QCOMPARE(chart->maxValueBound() - chart->minValueBound(), 40.0);
}

void tst_surveyConsole::goesBackToFollowingTheDataByTheButton()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    QToolButton* button = console.autoscaleButton(PANEL_DEPTH);
    const double top = chart->maxValueBound();
    QVERIFY(button->isChecked());
    chart->valueBounds(-250.0, -50.0);
    QVERIFY(!button->isChecked());
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(button->isChecked());
    QVERIFY(chart->autoscaleValue());
    QCOMPARE(chart->maxValueBound(), top);
    QCOMPARE(console.ruler(PANEL_DEPTH)->end(), top);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!chart->autoscaleValue());
    QCOMPARE(chart->maxValueBound(), top); // held
}

void tst_surveyConsole::readsOutThePointer()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    console.chart(PANEL_DEPTH)->valueBounds(-200.0, 0.0);
    QWidget* area = console.area(PANEL_DEPTH);
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
    const QPoint pointer(area->width() / 4, area->height() / 2);
    QTest::mouseMove(area, pointer);
    const auto wanted = [&] { // the read-out itself may change the layout
        const double time = START + 100.0 + 300.0 * pointer.x() / area->width();
        const double depth = 200.0 * pointer.y() / area->height();
        return QStringLiteral("%1  %2 m").arg(timeText(time, 1), valueText(depth, 1));
    };
    QTRY_COMPARE(console.text(PANEL_DEPTH, "pointerLabel"), wanted());
    QTest::mouseMove(console.find<QLabel>("timeLabel"));
    QTRY_COMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
}

void tst_surveyConsole::drawsAGapFaded()
{
    console_t console;
    QVERIFY(console.isReady());
    console.choosePalette(0); // one colour
    console.clock()->seek(START + 400.0);
    const QImage picture = snapshot(*console.area(PANEL_DEPTH));
    const auto brightestAt = [&](double elapsed) {
        const int x = static_cast<int>((elapsed - 100.0) / 300.0 * picture.width());
        int brightest = 0;
        for (int y = 0; y < picture.height(); ++y)
            brightest = std::max(brightest, qGreen(picture.pixel(x, y)));
        return brightest;
    };
    QVERIFY(brightestAt(150.0) > 150); // soundings
    QVERIFY(brightestAt(350.0) > 150);
    QVERIFY(brightestAt(250.0) < 100); // from 200 s to 300 s there are none
    QVERIFY(brightestAt(250.0) > 30);
}

void tst_surveyConsole::looksTheSameAfterSeekingBack()
{
    console_t console;
    QVERIFY(console.isReady());
    console.chart(PANEL_DEPTH)->valueBounds(-200.0, 0.0); // autoscale depends on what was before
    console.chart(PANEL_HEADING)->valueBounds(-10.0, 10.0);
    console.clock()->setRunning(true);
    for (int frame = 0; frame < 349; ++frame)
        console.pass(1.0);
    console.clock()->seek(START + 350.0); // the window ends there, not at a whole pixel
    const QImage depth = snapshot(*console.area(PANEL_DEPTH));
    const QImage heading = snapshot(*console.area(PANEL_HEADING));

    console.clock()->seek(START + 600.0);
    QVERIFY(snapshot(*console.area(PANEL_DEPTH)) != depth);
    QVERIFY(snapshot(*console.area(PANEL_HEADING)) != heading);
    console.clock()->seek(START + 350.0);
    QCOMPARE(firstDifference(snapshot(*console.area(PANEL_DEPTH)), depth), QString());
    QCOMPARE(firstDifference(snapshot(*console.area(PANEL_HEADING)), heading), QString());
    QCOMPARE(console.text(PANEL_DEPTH, "valueLabel0"), QStringLiteral("135.0"));
}

void tst_surveyConsole::endsTheWindowAtTheTimeAfterResizing()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    console.window.resize(1900, 1000);
    QTRY_VERIFY(console.window.width() == 1900);
    QCoreApplication::processEvents();
    console.clock()->setRunning(true);
    console.pass(1.0);
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    const double pixel = 300.0 / chart->width();
    QVERIFY2(chart->maxTimeBound() >= START + 401.0 &&
                 chart->maxTimeBound() <= START + 401.0 + pixel,
             qPrintable(QString::number(chart->maxTimeBound() - START)));
    QVERIFY(std::fabs(chart->maxTimeBound() - chart->minTimeBound() - 300.0) < 1e-6);
}

void tst_surveyConsole::fitsTheScreen_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(1280, 800);
    QTest::newRow("large") << QSize(1920, 1080);
}

// Every text has the room it asks for.
void tst_surveyConsole::fitsTheScreen()
{
    QFETCH(QSize, size);
    readResult_t ship = readRecording(SHIP);
    QCOMPARE(ship.error, QString());
    mainWindow_t window("underway-10min.log", std::move(ship), [] { return 0.0; });
    window.addSonar("sidescan-600khz.pgm", testSonar());
    window.addEchograms(testEchograms());
    window.addSurvey();
    window.resize(size);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs()));
    window.clock()->seek(window.clock()->start() + 500.0);
    QCoreApplication::processEvents();
    QCOMPARE(window.size(), size);
    for (const page_t page : {PAGE_SURVEY, PAGE_ECHOGRAM, PAGE_SONAR, PAGE_CHARTS}) {
        window.showPage(page);
        QCoreApplication::processEvents();
        QCOMPARE(window.size(), size);
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            if (!label->isVisible())
                continue;
            QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->text()));
            QVERIFY2(label->height() >= label->sizeHint().height(), qPrintable(label->text()));
        }
    }
    for (const chartPanel_t* panel : window.chartPanels())
        QVERIFY(panel->chart()->height() >= size.height() / 5);
}

void tst_surveyConsole::namesDamage()
{
    readResult_t line = testLine();
    line.counts.bad = 3;
    mainWindow_t window("test line", std::move(line), [] { return 0.0; });
    QCOMPARE(window.findChild<QLabel*>("damageLabel")->text(),
             QStringLiteral("3 damaged lines skipped"));
    console_t sound;
    QCOMPARE(sound.find<QLabel>("damageLabel")->text(), QString());
}

void tst_surveyConsole::chartKeepsItsHeightWhenAReadOutComes()
{
    console_t console;
    QVERIFY(console.isReady());
    const int height = console.area(PANEL_DEPTH)->height();
    QTest::mouseMove(console.area(PANEL_DEPTH), QPoint(20, 20));
    QTRY_VERIFY(!console.text(PANEL_DEPTH, "pointerLabel").isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(console.area(PANEL_DEPTH)->height(), height);
    QTest::mouseMove(console.find<QLabel>("timeLabel"));
    QTRY_COMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
}

void tst_surveyConsole::tellsOfStartAndEnd()
{
    console_t console;
    QVERIFY(console.isReady());
    const notices_t* notices = console.window.notices();
    QCOMPARE(notices->texts(), QStringList());
    console.clock()->setRunning(true);
    console.pass(0.1);
    QCOMPARE(notices->texts(), QStringList({"test line: 00:00:00 to 00:10:00 UTC"}));
    console.pass(LENGTH);
    QCOMPARE(notices->texts(),
             QStringList({"Depth: nothing since 00:03:20 UTC", "End of the recording"}));
}

// Labels ask for a layout with each value, here more often than a notifier waits for.
void tst_surveyConsole::showsNoticesWhileValuesChange()
{
    console_t console;
    QVERIFY(console.isReady());
    auto* const notifier = console.window.findChild<notifierWidget_t*>();
    const QSize size = notifier->size();
    int second = 0;
    QTimer values; // headings that differ
    connect(&values, &QTimer::timeout, this, [&] {
        second = 6 - second;
        console.clock()->seek(START + second);
    });
    values.start(5);
    console.clock()->setRunning(true);
    console.pass(0.1);
    auto* const frame = console.find<QLabel>("noticeLabel")->parentWidget()->parentWidget();
    const auto bottom = [&] { return frame->mapTo(notifier, QPoint(0, frame->height())).y(); };
    QTRY_VERIFY(notifier->updatesEnabled());
    QTRY_COMPARE(bottom(), notifier->height()); // has slid in
    paintLog_t painted(console.label(PANEL_HEADING, "valueLabel0"));
    QRegion paintedSoFar;
    QTRY_VERIFY(!(paintedSoFar += painted.take()).isEmpty());
    QCOMPARE(notifier->size(), size);
}

void tst_surveyConsole::asksBeforeItReplaysAnother()
{
    console_t console;
    QVERIFY(console.isReady());
    QString chosen;
    std::shared_ptr<readResult_t> line;
    connect(&console.window, &mainWindow_t::recordingChosen, this,
            [&](const QString& path, const std::shared_ptr<readResult_t>& read) {
                chosen = path;
                line = read;
            });
    console.window.openRecording(SHIP);
    QCOMPARE(chosen, QString());
    QTRY_VERIFY(console.find<QWidget>("openPrompt"));
    auto* prompt = console.find<QWidget>("openPrompt");
    QTRY_VERIFY(prompt->isVisible());
    QCOMPARE(prompt->findChild<QLabel*>()->text(),
             QStringLiteral("Replay underway-10min.log (0:10:24) in place of test line?"));
    prompt->findChild<QPushButton*>("replayButton")->click(); // it has yet to find its place
    QCOMPARE(chosen, QString(SHIP));
    QVERIFY(!line->recording.isEmpty());
    QTRY_VERIFY(!console.find<QWidget>("openPrompt"));
}

void tst_surveyConsole::goesOnWhenTheUserThinksBetter()
{
    console_t console;
    QVERIFY(console.isReady());
    bool isChosen = false;
    connect(&console.window, &mainWindow_t::recordingChosen, this, [&] { isChosen = true; });
    console.window.openRecording(SHIP);
    console.window.openRecording(BOAT); // the one question takes the place of the other
    QTRY_COMPARE(console.window.findChildren<QWidget*>("openPrompt").size(), 1);
    console.find<QWidget>("openPrompt")->findChild<QPushButton*>("cancelButton")->click();
    QTRY_VERIFY(!console.find<QWidget>("openPrompt"));
    QVERIFY(!isChosen);
}

void tst_surveyConsole::saysWhyARecordingCannotBeRead()
{
    console_t console;
    QVERIFY(console.isReady());
    console.window.openRecording("/nowhere/line.log");
    QCOMPARE(console.window.notices()->texts(),
             QStringList({"cannot open '/nowhere/line.log': No such file or directory"}));
    QVERIFY(!console.find<QWidget>("openPrompt"));
}

void tst_surveyConsole::replaysFromTheList()
{
    console_t console;
    QVERIFY(!console.window.recordings());
    console.window.addSonar("test.pgm", testSonar());
    console.window.addSurvey();
    console.window.showPage(PAGE_SURVEY);
    QVERIFY(console.isReady());
    QString chosen;
    connect(&console.window, &mainWindow_t::recordingChosen, this,
            [&](const QString& path) { chosen = path; });
    console.window.recordings()->addFiles({SHIP, BOAT});
    auto* list = console.find<QListWidget>("recordingList");
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    QTRY_VERIFY(console.find<QWidget>("openPrompt"));
    auto* prompt = console.find<QWidget>("openPrompt");
    QTRY_VERIFY(prompt->isVisible());
    QCOMPARE(chosen, QString()); // asks first
    prompt->findChild<QPushButton*>("replayButton")->click();
    QCOMPARE(chosen, QString(BOAT));
    QCOMPARE(console.window.page(), PAGE_SURVEY);
}

void tst_surveyConsole::showsTheAboutBox()
{
    console_t console;
    QVERIFY(console.isReady());
    QString text;
    QTimer::singleShot(0, this, [&] { // once the box is shown, which blocks
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        text = box->text();
        box->close();
    });
    console.find<QAction>("aboutAction")->trigger();
    QVERIFY2(text.contains("the sounder is simulated"), qPrintable(text));
}

void tst_surveyConsole::turnsPages()
{
    console_t console;
    console.window.addSonar("test.pgm", testSonar());
    console.window.addEchograms(testEchograms());
    console.window.addSurvey();
    QVERIFY(console.isReady());
    sonarPanel_t* sonar = console.window.sonarPanel();
    chartPanel_t* charts = console.panel(PANEL_DEPTH);
    auto* chartsButton = console.find<QToolButton>("pageButton0");
    auto* sonarButton = console.find<QToolButton>("pageButton1");
    QVERIFY(charts->isVisible());
    QVERIFY(!sonar->isVisible());
    QVERIFY(chartsButton->isChecked());
    QTest::mouseClick(sonarButton, Qt::LeftButton);
    QVERIFY(!charts->isVisible());
    QVERIFY(sonar->isVisible());
    QVERIFY(sonarButton->isChecked());
    QVERIFY(!chartsButton->isChecked());
    QTest::keyClick(&console.window, Qt::Key_F1);
    QVERIFY(charts->isVisible());
    QTest::keyClick(&console.window, Qt::Key_F2);
    QVERIFY(sonar->isVisible());
    QCOMPARE(console.window.page(), PAGE_SONAR);
    QTest::keyClick(&console.window, Qt::Key_F3);
    QVERIFY(console.window.echogramPanel()->isVisible());
    QCOMPARE(console.window.page(), PAGE_ECHOGRAM);
    QTest::keyClick(&console.window, Qt::Key_F4);
    QCOMPARE(console.window.page(), PAGE_SURVEY);
    QVERIFY(console.window.findChild<positionPanel_t*>()->isVisible());
    QVERIFY(console.find<QToolButton>("pageButton3")->isChecked());
}

// Each page has its key, whatever other pages there are.
void tst_surveyConsole::hasOnlyThePagesThatThereIsARecordFor()
{
    console_t console;
    console.window.addSurvey();
    QVERIFY(console.isReady());
    QVERIFY(!console.find<QToolButton>("pageButton2"));
    QTest::keyClick(&console.window, Qt::Key_F3);
    QCOMPARE(console.window.page(), PAGE_CHARTS);
    QTest::keyClick(&console.window, Qt::Key_F4);
    QCOMPARE(console.window.page(), PAGE_SURVEY);
    consoleState_t state;
    state.page = PAGE_ECHOGRAM;
    console.window.restore(state);
    QCOMPARE(console.window.page(), PAGE_SURVEY); // stays
}

void tst_surveyConsole::goesToTheTimeNearestToAPosition()
{
    readResult_t line = testLine();
    for (int second = 0; second <= 600; ++second) // north at 3.6 kn along the meridian
        line.recording.addFix("INGGA", {START + second, QGeoCoordinate(second / 60000.0, 0.0)});
    mainWindow_t window("test line", std::move(line), [] { return 0.0; });
    window.addSonar("test.pgm", testSonar());
    window.addSurvey();
    auto* vessel = window.findChild<latLonEditor_t*>("vesselLatitude");
    auto* target = window.findChild<latLonEditor_t*>("targetLatitude");
    target->setValue(300.0 / 60000.0);
    QTest::mouseClick(window.findChild<QPushButton*>("nearestButton"), Qt::LeftButton);
    QCOMPARE(window.clock()->time(), START + 300.0);
    double latitude = 0.0;
    QVERIFY(vessel->value(latitude));
    QCOMPARE(latitude, 300.0 / 60000.0);
}

void tst_surveyConsole::sonarFollowsTheClock()
{
    console_t console;
    console.window.addSonar("test.pgm", testSonar());
    QVERIFY(console.isReady());
    const pingModel_t* pings = console.window.sonarPanel()->model();
    QCOMPARE(pings->end(), 1);
    console.clock()->setRunning(true);
    console.pass(30.5);
    QCOMPARE(pings->end(), 31);
    console.clock()->seek(START + 10.0);
    QCOMPARE(pings->end(), 11);
    console.clock()->seek(START + 600.0); // ten times the record
    QCOMPARE(pings->end(), 601);
}

void tst_surveyConsole::echogramFollowsTheClock()
{
    console_t console;
    QVERIFY(!console.window.echogramPanel());
    console.clock()->seek(START + 5.0);
    console.window.addEchograms(testEchograms());
    QVERIFY(console.isReady());
    const pingModel_t* pings = console.window.echogramPanel()->model();
    QCOMPARE(pings->end(), 6);
    console.clock()->setRunning(true);
    console.pass(30.5);
    QCOMPARE(pings->end(), 36);
    console.clock()->seek(START + 10.0);
    QCOMPARE(pings->end(), 11);
}

void tst_surveyConsole::startsWithTheDepthPalette()
{
    console_t console;
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Bathymetry"));
    QVERIFY(console.chooser()->palette());
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
}

// The soundings go from 100 m to 160 m, so the palette's second colour starts at 130 m, at 300 s.
void tst_surveyConsole::coloursTheDepthByValue()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 200.0);
    const QImage shallow = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::red, shallow) > 100);
    QCOMPARE(countOf(Qt::green, shallow), 0);
    console.clock()->seek(START + 600.0);
    const QImage deep = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::green, deep) > 100);
    QCOMPARE(countOf(Qt::red, deep), 0);
    // The value changes its colour with neither.
    QCOMPARE(console.textColor(PANEL_DEPTH, "valueLabel0"), theme::text());
}

void tst_surveyConsole::recoloursThePastByAnotherPalette()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    const QImage before = snapshot(*console.area(PANEL_DEPTH));
    console.choosePalette(2);
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Imagery"));
    const QImage after = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::red, before) > 100);
    QVERIFY(countOf(Qt::green, before) > 100);
    QCOMPARE(countOf(Qt::yellow, after), countOf(Qt::red, before));
    QCOMPARE(countOf(Qt::cyan, after), countOf(Qt::green, before));
    QCOMPARE(countOf(Qt::red, after) + countOf(Qt::green, after), 0);
}

void tst_surveyConsole::keepsTheScaleWhenItRecolours()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->setRunning(true);
    for (int frame = 0; frame < 400; ++frame)
        console.pass(1.0);
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    QSignalSpy moves(chart, &stripChart_t::valueBoundsChanged);
    console.choosePalette(2);
    console.picker(PANEL_DEPTH, "colorPicker0")->selectedColor(Qt::magenta);
    QCOMPARE(moves.count(), 0);
    QVERIFY(chart->autoscaleValue());
    chart->valueBounds(-200.0, 0.0);
    console.choosePalette(1);
    QVERIFY(!chart->autoscaleValue());
    QCOMPARE(chart->minValueBound(), -200.0);
    QCOMPARE(chart->maxValueBound(), 0.0);
}

void tst_surveyConsole::coloursNewPointsLikeTheOld()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 310.0);
    console.choosePalette(2);
    const int before = countOf(Qt::cyan, snapshot(*console.area(PANEL_DEPTH)));
    console.clock()->setRunning(true);
    console.pass(100.0);
    const QImage after = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::cyan, after) > before + 100);
    QCOMPARE(countOf(Qt::red, after) + countOf(Qt::green, after), 0);
}

void tst_surveyConsole::goesBackToOneColour()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    console.choosePalette(0);
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("One colour"));
    const QImage picture = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(theme::firstCurve(), picture) > 100);
    QCOMPARE(countOf(Qt::red, picture) + countOf(Qt::green, picture), 0);
    QCOMPARE(console.textColor(PANEL_DEPTH, "valueLabel0"), theme::firstCurve());
}

void tst_surveyConsole::showsThePaletteOverItsRange()
{
    console_t console;
    QVERIFY(console.isReady());
    auto* widget = console.find<QWidget>("paletteSwatch");
    QCOMPARE(widget->toolTip(), QStringLiteral("The colours from 100 to 160 m"));
    const QImage picture = snapshot(*widget);
    QCOMPARE(picture.width(), 96);
    QImage wanted(96, 10, QImage::Format_RGB32);
    wanted.fill(Qt::green);
    QPainter(&wanted).fillRect(0, 0, 48, 10, Qt::red);
    QCOMPARE(firstDifference(picture.copy(0, 0, 96, 10), wanted), QString());
    const QSize size = console.chooser()->size();
    console.choosePalette(0);
    QCoreApplication::processEvents();
    QCOMPARE(console.chooser()->size(), size); // nothing moves
    const QImage empty = snapshot(*widget);
    QCOMPARE(countOf(empty.pixelColor(0, 0), empty), empty.width() * empty.height());
    const QRect below(0, 10, picture.width(), picture.height() - 10); // the ends' values
    QVERIFY(picture.copy(below) != empty.copy(below));
}

void tst_surveyConsole::paletteBoxShowsThePalettes()
{
    console_t console;
    const QComboBox* box = console.paletteBox();
    QStringList names;
    for (int row = 0; row < box->count(); ++row)
        names += box->itemText(row);
    QCOMPARE(names, (QStringList{"One colour", "Bathymetry", "Imagery", "Intensity", "Sidescan",
                                 "Sub-bottom", "Water column", "From file\u2026"}));
    const QImage icon = box->itemIcon(2).pixmap(28, 12).toImage();
    QCOMPARE(icon.size(), QSize(28, 12));
    for (const QString& name : names) { // each has the room it asks for
        QVERIFY2(box->fontMetrics().horizontalAdvance(name) <=
                     11 * box->fontMetrics().horizontalAdvance('X'),
                 qPrintable(name));
    }
    QCOMPARE(icon.pixelColor(13, 6), QColor(Qt::yellow));
    QCOMPARE(icon.pixelColor(14, 6), QColor(Qt::cyan));
    QCOMPARE(box->itemIcon(0).pixmap(28, 12).toImage().pixelColor(14, 6), theme::firstCurve());
}

void tst_surveyConsole::wheelOverThePaletteBoxChangesNothing()
{
    console_t console;
    QVERIFY(console.isReady());
    QComboBox* box = console.paletteBox();
    box->setFocus();
    const QPoint middle = box->rect().center();
    QWheelEvent turn(middle, box->mapToGlobal(middle), QPoint(), QPoint(0, -120), Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(box, &turn);
    QCOMPARE(box->currentText(), QStringLiteral("Bathymetry"));
}

void tst_surveyConsole::choosesAPaletteFromAFile()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath("my own palette.WP");
    QVERIFY(writeFile(path, twoColors(YELLOW, CYAN)));
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    console.clock()->setRunning(true);
    QComboBox* box = console.paletteBox();
    console.choosePalette(6);
    QTest::keyClick(box, Qt::Key_Down); // "From file..."
    auto* dialog = console.window.findChild<QFileDialog*>();
    QVERIFY(dialog && dialog->isVisible());
    QCOMPARE(dialog->nameFilters().first(), QStringLiteral("Palettes (*.wp *.xml *.jsp)"));
    QCOMPARE(box->currentText(), QStringLiteral("Water column")); // until a file is chosen
    console.pass(10.0);
    QCOMPARE(console.elapsed(), 410.0); // the replay goes on

    dialog->findChild<QLineEdit*>()->setText(path);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
    QVERIFY2(box->currentText().startsWith("my o") && box->currentText().contains(u'\u2026') &&
                 box->currentText().endsWith(".WP"),
             qPrintable(box->currentText()));
    QCOMPARE(box->currentData(Qt::ToolTipRole).toString(), path);
    QCOMPARE(box->itemText(box->count() - 1), QStringLiteral("From file\u2026"));
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
    QVERIFY(countOf(Qt::yellow, snapshot(*console.area(PANEL_DEPTH))) > 100);
    QTRY_VERIFY(!console.window.findChild<QFileDialog*>());
}

void tst_surveyConsole::cancelledFileDialogKeepsThePalette()
{
    console_t console;
    QVERIFY(console.isReady());
    console.choosePalette(6);
    QTest::keyClick(console.paletteBox(), Qt::Key_Down);
    auto* dialog = console.window.findChild<QFileDialog*>();
    QVERIFY(dialog);
    dialog->reject();
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Water column"));
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
}

void tst_surveyConsole::keepsThePaletteWhenAFileCannotBeRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("debugMessages");
    QTest::newRow("missing") << "missing.wp" << QByteArray() << 0;
    QTest::newRow("unknown ending") << "1.txt" << twoColors(RED, GREEN) << 0;
    QTest::newRow("not XML") << "1.xml" << QByteArray("palette") << 1;
    QTest::newRow("something else") << "1.xml" << QByteArray("<chart/>") << 0;
    QTest::newRow("empty table")
        << "1.wp" << QByteArray("<palette><colorTable depth=\"24\"/><keyedColorTable/></palette>")
        << 0;
}

void tst_surveyConsole::keepsThePaletteWhenAFileCannotBeRead()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(int, debugMessages);
    const QTemporaryDir directory;
    if (!content.isEmpty())
        QVERIFY(writeFile(directory.filePath(name), content));
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    console.choosePalette(2);
    const int count = console.paletteBox()->count();
    const QImage before = snapshot(*console.area(PANEL_DEPTH));
    {
        const messageRecorder_t messages;
        console.chooser()->chooseFile(directory.filePath(name));
        QCOMPARE(messages.texts().size(), debugMessages);
    }
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
             QStringLiteral("Can't read palette %1").arg(name));
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Imagery"));
    QCOMPARE(console.paletteBox()->count(), count);
    QCoreApplication::processEvents();
    QCOMPARE(firstDifference(snapshot(*console.area(PANEL_DEPTH)), before), QString());
    console.choosePalette(1);
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString()); // it is over
}

void tst_surveyConsole::readOutStandsBeforeTheMessage()
{
    console_t console;
    QVERIFY(console.isReady());
    QTest::mouseMove(console.area(PANEL_DEPTH), QPoint(30, 30));
    QTRY_VERIFY(!console.text(PANEL_DEPTH, "pointerLabel").isEmpty());
    console.chooser()->chooseFile("/nowhere.wp");
    QVERIFY(console.text(PANEL_DEPTH, "pointerLabel").endsWith(" m"));
    QTest::mouseMove(console.find<QLabel>("timeLabel"));
    QTRY_COMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
                 QStringLiteral("Can't read palette nowhere.wp"));
}

void tst_surveyConsole::goesOnWithoutPalettes()
{
    const QTemporaryDir empty;
    qputenv("ZORBIN_QT_RESOURCE_DIR", QFile::encodeName(empty.path()));
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
             QStringLiteral("No palettes found: one colour"));
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("One colour"));
    QCOMPARE(console.paletteBox()->count(), 2);
    QVERIFY(countOf(theme::firstCurve(), snapshot(*console.area(PANEL_DEPTH))) > 100);
}

void tst_surveyConsole::namesStandardPalettesThatCannotBeRead()
{
    const QTemporaryDir directory;
    QVERIFY(QDir(directory.path()).mkdir("palette"));
    for (const char* name : {"intensity", "sidescan", "subbottom", "watercolumn"})
        QVERIFY(writeFile(directory.filePath(QStringLiteral("palette/%1.wp").arg(name)),
                          twoColors(GREEN, CYAN)));
    qputenv("ZORBIN_QT_RESOURCE_DIR", QFile::encodeName(directory.path()));
    console_t console;
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"),
             QStringLiteral("Can't read palette Bathymetry, Imagery"));
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("Intensity"));
}

void tst_surveyConsole::hasNoPaletteWithoutDepth()
{
    readResult_t line;
    line.recording.add(CHANNEL_HEAVE, "PRDID", {START, 0.5});
    line.recording.add(CHANNEL_HEAVE, "PRDID", {START + 1.0, 0.6});
    mainWindow_t window("test line", std::move(line), [] { return 0.0; });
    QVERIFY(!window.findChild<paletteChooser_t*>());
}

void tst_surveyConsole::secondCurveLiesOverTheFirst()
{
    readResult_t line;
    for (int second = 0; second < 100; ++second) {
        line.recording.add(CHANNEL_GYRO_HEADING, "HEHDT", {START + second, 90.0});
        line.recording.add(CHANNEL_HEADING, "INHDT", {START + second, 90.0});
    }
    mainWindow_t window("test line", std::move(line), [] { return 0.0; });
    window.resize(1280, 800);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs()));
    window.clock()->seek(START + 99.0);
    QCoreApplication::processEvents();
    const QImage picture = snapshot(*window.chartPanels().at(PANEL_HEADING)->chart());
    QVERIFY(countOf(theme::secondCurve(), picture) > 100);
    QCOMPARE(countOf(theme::firstCurve(), picture), 0);
}

void tst_surveyConsole::recoloursACurveByItsPicker()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    const QImage before = snapshot(*console.area(PANEL_HEADING));
    colorPicker_t* picker = console.picker(PANEL_HEADING, "colorPicker0");
    QCOMPARE(picker->selectedColor(), theme::firstCurve());
    picker->selectedColor(Qt::magenta);
    const QImage after = snapshot(*console.area(PANEL_HEADING));
    QVERIFY(countOf(theme::firstCurve(), before) > 1000);
    QCOMPARE(countOf(Qt::magenta, after), countOf(theme::firstCurve(), before));
    QCOMPARE(countOf(theme::firstCurve(), after), 0);
    QCOMPARE(console.textColor(PANEL_HEADING, "valueLabel0"), QColor(Qt::magenta));
    console.clock()->seek(START + 100.0); // feeds the curve anew
    QCOMPARE(countOf(theme::firstCurve(), snapshot(*console.area(PANEL_HEADING))), 0);
}

void tst_surveyConsole::choosesACurveColourInTheDialog()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    QTimer::singleShot(0, [] {
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->setCurrentColor(Qt::magenta);
        dialog->accept();
    });
    QTest::mouseClick(console.picker(PANEL_HEADING, "colorPicker0"), Qt::LeftButton);
    QVERIFY(countOf(Qt::magenta, snapshot(*console.area(PANEL_HEADING))) > 1000);
}

void tst_surveyConsole::pickedColourTakesTheDepthOffItsPalette()
{
    console_t console;
    QVERIFY(console.isReady());
    console.clock()->seek(START + 400.0);
    console.picker(PANEL_DEPTH, "colorPicker0")->selectedColor(Qt::magenta);
    QCOMPARE(console.paletteBox()->currentText(), QStringLiteral("One colour"));
    const QImage picture = snapshot(*console.area(PANEL_DEPTH));
    QVERIFY(countOf(Qt::magenta, picture) > 100);
    QCOMPARE(countOf(Qt::red, picture) + countOf(Qt::green, picture), 0);
    const QImage icon = console.paletteBox()->itemIcon(0).pixmap(28, 12).toImage();
    QCOMPARE(icon.pixelColor(14, 6), QColor(Qt::magenta));
    console.choosePalette(1);
    QVERIFY(countOf(Qt::red, snapshot(*console.area(PANEL_DEPTH))) > 100);
}

// The chart's own 0c1319 has a relative luminance of 0.0061, so 0.118 is seen: a grey of 96.5.
void tst_surveyConsole::makesDarkColoursVisible_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("visible");
    QTest::newRow("black") << QColor(0, 0, 0) << QColor(97, 97, 97);
    QTest::newRow("just too dark") << QColor(96, 96, 96) << QColor(97, 97, 97);
    QTest::newRow("just bright enough") << QColor(97, 97, 97) << QColor(97, 97, 97);
    QTest::newRow("red") << QColor(255, 0, 0) << QColor(255, 0, 0);
    QTest::newRow("white") << QColor(255, 255, 255) << QColor(255, 255, 255);
    // Luminance 0.0722, so 5.0 % of white: 0.0498 of linear light is 63.05 in sRGB.
    QTest::newRow("blue") << QColor(0, 0, 255) << QColor(64, 64, 255);
}

void tst_surveyConsole::makesDarkColoursVisible()
{
    QFETCH(QColor, color);
    QFETCH(QColor, visible);
    QCOMPARE(visibleOnChart(color), visible);
}

void tst_surveyConsole::stretchesThePaletteOverRoundNumbers_data()
{
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<double>("minSpan");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<int>("decimals");
    QTest::newRow("deep sea") << QVector<double>{4233.0, 5021.5} << 5.0 << 4200.0 << 5100.0 << 0;
    QTest::newRow("round already") << QVector<double>{100.0, 160.0} << 5.0 << 100.0 << 160.0 << 0;
    QTest::newRow("in any order") << QVector<double>{160.0, 100.0} << 5.0 << 100.0 << 160.0 << 0;
    QTest::newRow("one value") << QVector<double>{40.0} << 5.0 << 37.0 << 43.0 << 0;
    QTest::newRow("shallow") << QVector<double>{1.0, 1.2} << 5.0 << 0.0 << 4.0 << 0;
    QTest::newRow("negative") << QVector<double>{-1.0, 1.0} << 1.0 << -1.0 << 1.0 << 0;
    QTest::newRow("small") << QVector<double>{0.12, 0.58} << 0.1 << 0.1 << 0.6 << 1;
    QTest::newRow("NaN and infinities")
        << QVector<double>{std::nan(""), 100.0, HUGE_VAL, 160.0, -HUGE_VAL} << 5.0 << 100.0 << 160.0
        << 0;
    QTest::newRow("nothing finite") << QVector<double>{std::nan("")} << 4.0 << 0.0 << 2.0 << 0;
    QTest::newRow("empty") << QVector<double>{} << 4.0 << 0.0 << 2.0 << 0;
}

void tst_surveyConsole::stretchesThePaletteOverRoundNumbers()
{
    QFETCH(QVector<double>, values);
    QFETCH(double, minSpan);
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(int, decimals);
    std::vector<sample_t> samples;
    for (const double value : values)
        samples.push_back({static_cast<double>(samples.size()), value});
    const valueRange_t range = roundRange(samples, minSpan);
    QCOMPARE(range.min, min);
    QCOMPARE(range.max, max);
    QCOMPARE(range.decimals, decimals);
}

void tst_surveyConsole::writesTimes_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<QString>("seconds");
    QTest::addColumn<QString>("tenths");
    QTest::addColumn<QString>("date");
    const QString none = noValueText();
    QTest::newRow("ship") << START + 205.47 << "00:03:25"
                          << "00:03:25.4"
                          << "2014-08-01";
    QTest::newRow("just before midnight") << START - 0.01 << "23:59:59"
                                          << "23:59:59.9"
                                          << "2014-07-31";
    QTest::newRow("zero") << 0.0 << "00:00:00"
                          << "00:00:00.0"
                          << "1970-01-01";
    QTest::newRow("last") << 253402300799.0 << "23:59:59"
                          << "23:59:59.0"
                          << "9999-12-31";
    QTest::newRow("after the last") << 253402300800.0 << none << none << none;
    QTest::newRow("negative") << -1.0 << none << none << none;
    QTest::newRow("NaN") << std::nan("") << none << none << none;
    QTest::newRow("infinite") << HUGE_VAL << none << none << none;
}

void tst_surveyConsole::writesTimes()
{
    QFETCH(double, time);
    QFETCH(QString, seconds);
    QFETCH(QString, tenths);
    QFETCH(QString, date);
    QCOMPARE(timeText(time), seconds);
    QCOMPARE(timeText(time, 1), tenths);
    QCOMPARE(dateText(time), date);
}

void tst_surveyConsole::writesAngles_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << 218.53 << "218.5";
    QTest::newRow("north") << 0.0 << "0.0";
    QTest::newRow("a turn") << 360.0 << "0.0";
    QTest::newRow("rounds to a turn") << 359.96 << "0.0";
    QTest::newRow("rounds below a turn") << 359.94 << "359.9";
    QTest::newRow("left of north") << -1.4 << "358.6";
    QTest::newRow("a little left of north") << -0.04 << "0.0";
    QTest::newRow("turns") << 730.5 << "10.5";
    QTest::newRow("NaN") << std::nan("") << noValueText();
    QTest::newRow("infinite") << -HUGE_VAL << noValueText();
}

void tst_surveyConsole::writesAngles()
{
    QFETCH(double, degrees);
    QFETCH(QString, text);
    QCOMPARE(angleText(degrees, 1), text);
}

void tst_surveyConsole::writesBearingsInThreeDigits()
{
    QCOMPARE(bearingText(0.0), QStringLiteral("000.0\u00b0"));
    QCOMPARE(bearingText(9.96), QStringLiteral("010.0\u00b0"));
    QCOMPARE(bearingText(39.2), QStringLiteral("039.2\u00b0"));
    QCOMPARE(bearingText(359.96), QStringLiteral("000.0\u00b0"));
    QCOMPARE(bearingText(-90.0), QStringLiteral("270.0\u00b0"));
    QCOMPARE(bearingText(std::nan("")), noValueText());
}

void tst_surveyConsole::writesValuesWithoutMinusZero()
{
    QCOMPARE(valueText(-0.04, 1), QStringLiteral("0.0"));
    QCOMPARE(valueText(-0.0, 2), QStringLiteral("0.00"));
    QCOMPARE(valueText(-0.06, 1), QStringLiteral("-0.1"));
    QCOMPARE(valueText(4674.7, 1), QStringLiteral("4674.7"));
    QCOMPARE(valueText(1e300, 0).size(), 301);
    QCOMPARE(valueText(HUGE_VAL, 1), noValueText());
    QCOMPARE(valueText(std::nan(""), 1), noValueText());
    QCOMPARE(durationText(3909.7), QStringLiteral("1:05:09"));
    QCOMPARE(durationText(0.0), QStringLiteral("0:00:00"));
}

void tst_surveyConsole::writesPositions_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<QString>("text");
    QTest::newRow("south west") << -22.00184832 << -17.93932387
                                << "22\u00b000.111' S  017\u00b056.359' W";
    QTest::newRow("north east") << 60.08451667 << 23.5391
                                << "60\u00b005.071' N  023\u00b032.346' E";
    QTest::newRow("minutes never read 60")
        << 9.999999 << 179.9999999 << "10\u00b000.000' N  180\u00b000.000' E";
    QTest::newRow("no position") << 91.0 << 0.0 << noValueText();
}

void tst_surveyConsole::writesPositions()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(QString, text);
    QCOMPARE(positionText(QGeoCoordinate(latitude, longitude)), text);
}

void tst_surveyConsole::writesRanges_data()
{
    QTest::addColumn<double>("metres");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0.0 << "0 m";
    QTest::newRow("rounded") << 523.6 << "524 m";
    QTest::newRow("below a mile") << 1851.4 << "1851 m";
    QTest::newRow("a mile") << 1852.0 << "1.00 nmi";
    QTest::newRow("far") << 185200.0 << "100.00 nmi";
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << QString(u'\u2013');
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << QString(u'\u2013');
}

void tst_surveyConsole::writesRanges()
{
    QFETCH(double, metres);
    QFETCH(QString, text);
    QCOMPARE(rangeText(metres), text);
}

void tst_surveyConsole::writesAScreenshot()
{
    QTemporaryDir directory;
    const QString path = directory.filePath("console.png");
    const outcome_t outcome = runConsole({"--screenshot", path});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, 0);
    const QImage picture(path);
    QCOMPARE(picture.size(), QSize(1280, 800));
    // The curves' two colours are there, so it shows a replay and not an empty window.
    int first = 0;
    int second = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            first += picture.pixelColor(x, y) == QColor(0x62, 0xc6, 0xe6) ? 1 : 0;
            second += picture.pixelColor(x, y) == QColor(0xf0, 0xb0, 0x52) ? 1 : 0;
        }
    }
    QVERIFY2(first > 5000, qPrintable(QString::number(first)));
    QVERIFY2(second > 5000, qPrintable(QString::number(second)));
}

void tst_surveyConsole::drawsThroughTheBackEndOfChoice()
{
    if (qgetenv("QT_XCB_GL_INTEGRATION") == "none")
        QSKIP("Without OpenGL the charts are empty, as tst_glStripChart tests.");
    const QTemporaryDir directory;
    const auto pictureBy = [&](const QString& backEnd) {
        const QString path = directory.filePath(backEnd + ".png");
        const outcome_t outcome = runConsole({"--back-end", backEnd, "--screenshot", path});
        return outcome.exitCode == 0 && outcome.err.isEmpty() ? QImage(path) : QImage();
    };
    const QImage painted = pictureBy("simple");
    const QImage rendered = pictureBy("gl");
    QCOMPARE(painted.size(), QSize(1280, 800));
    QCOMPARE(rendered.size(), QSize(1280, 800));
    // Through OpenGL lines are 1 pixel wide instead of 2.
    for (const QColor& color : {QColor(0x62, 0xc6, 0xe6), QColor(0xf0, 0xb0, 0x52)}) {
        const int wide = countOf(color, painted);
        const int narrow = countOf(color, rendered);
        QVERIFY2(narrow > 5000 && narrow < wide - 3000,
                 qPrintable(QStringLiteral("%1 and %2").arg(wide).arg(narrow)));
    }
}

void tst_surveyConsole::screenshotsAreAlike_data()
{
    QTest::addColumn<QString>("page");
    QTest::newRow("charts") << "charts";
    QTest::newRow("sonar") << "sonar";
    QTest::newRow("echogram") << "echogram";
    QTest::newRow("survey") << "survey";
}

void tst_surveyConsole::screenshotsAreAlike()
{
    QFETCH(QString, page);
    QTemporaryDir directory;
    const QString first = directory.filePath("1.png");
    const QString second = directory.filePath("2.png");
    QCOMPARE(runConsole({"--page", page, "--screenshot", first}).exitCode, 0);
    QCOMPARE(runConsole({"--page", page, "--screenshot", second}).exitCode, 0);
    QCOMPARE(firstDifference(QImage(first), QImage(second)), QString());
}

void tst_surveyConsole::findsThePalettesOfTheSourceTree()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath("console.png");
    QCOMPARE(runConsole({"--screenshot", path}).exitCode, 0);
    palette_t depths;
    QVERIFY(depths.load(PALETTES "/bathy.wp"));
    // The swatch shows the first colour ten pixels high, whatever the depth curve shows.
    QVERIFY(countOf(QColor(depths.colorTable().front()), QImage(path)) >= 10);
}

void tst_surveyConsole::replaysTheBoat()
{
    QTemporaryDir directory;
    const QString path = directory.filePath("boat.png");
    const outcome_t outcome =
        runConsole({"--recording", BOAT, "--speed", "20", "--screenshot", path});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(QImage(path).size(), QSize(1280, 800));
}

void tst_surveyConsole::offersFurtherRecordings()
{
    QTemporaryDir directory;
    const QString one = directory.filePath("one.png");
    const QString two = directory.filePath("two.png");
    const QStringList survey = {"--page", "survey", "--recording", BOAT};
    QCOMPARE(runConsole(survey + QStringList{"--screenshot", one}).exitCode, 0);
    const outcome_t outcome = // the second is not read until it is chosen
        runConsole(survey + QStringList{"--recording", "/nowhere/line.log", "--screenshot", two});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY(QImage(one) != QImage(two)); // a longer list
}

void tst_surveyConsole::quitsAfterTheDuration()
{
    const outcome_t outcome = runConsole({"--speed", "100", "--duration", "0.5"});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_surveyConsole::showsTheThemeAndSizeOfChoice()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath("console.png");
    const outcome_t outcome =
        runConsole({"--theme", "light", "--size", "1600x900", "--screenshot", path});
    QCOMPARE(outcome.err, QString());
    QCOMPARE(outcome.exitCode, 0);
    const QImage picture(path);
    QCOMPARE(picture.size(), QSize(1600, 900));
    QCOMPARE(picture.pixelColor(2, 2), QColor(0xdc, 0xe3, 0xe9)); // the edge of the window
}

void tst_surveyConsole::keepsItsStateForTheNextRun()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath("settings.ini");
    const QStringList arguments = {"--settings", file, "--duration", "0.2"};
    const auto kept = [&file](const char* key) {
        return QSettings(file, QSettings::IniFormat).value(key).toString();
    };
    QCOMPARE(runConsole(arguments + QStringList{"--page", "sonar", "--speed", "20"}).exitCode, 0);
    QCOMPARE(kept("window/page"), QStringLiteral("sonar"));
    QCOMPARE(kept("replay/speed"), QStringLiteral("20"));
    QCOMPARE(runConsole(arguments).exitCode, 0);
    QCOMPARE(kept("window/page"), QStringLiteral("sonar"));
    QCOMPARE(kept("replay/speed"), QStringLiteral("20"));
    QCOMPARE(runConsole(arguments + QStringList{"--page", "survey"}).exitCode, 0);
    QCOMPARE(kept("window/page"), QStringLiteral("survey")); // an option comes first
    QCOMPARE(kept("replay/speed"), QStringLiteral("20"));
}

void tst_surveyConsole::picturesHaveNoPartInTheState()
{
    const QTemporaryDir directory;
    const QString file = directory.filePath("settings.ini");
    const auto pictureWith = [&](const QStringList& arguments) {
        const QString path = directory.filePath("console.png");
        const QStringList screenshot = {"--screenshot", path};
        return runConsole(screenshot + arguments).exitCode == 0 ? QImage(path) : QImage();
    };
    const QImage wanted = pictureWith({});
    const QImage without = pictureWith({"--settings", file});
    QVERIFY(!QFileInfo::exists(file));
    const QByteArray content = "[window]\npage=survey\n";
    QVERIFY(writeFile(file, content));
    const QImage with = pictureWith({"--settings", file});
    QFile settings(file);
    QVERIFY(settings.open(QIODevice::ReadOnly));
    QCOMPARE(settings.readAll(), content);
    QCOMPARE(wanted.size(), QSize(1280, 800));
    QCOMPARE(firstDifference(without, wanted), QString());
    QCOMPARE(firstDifference(with, wanted), QString());
}

void tst_surveyConsole::reportsSettingsItCannotWrite()
{
    const QString file = QStringLiteral("/proc/settings.ini"); // not even for the superuser
    const outcome_t outcome = runConsole({"--settings", file, "--duration", "0.1"});
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: cannot write the settings '%1'\n").arg(file));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_surveyConsole::printsHelp()
{
    const outcome_t outcome = runConsole({"--help"});
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.err, QString());
    for (const char* option :
         {"--recording", "--sonar", "--echogram", "--page", "--back-end", "--speed", "--duration",
          "--screenshot", "--settings", "--theme", "--size", "--help"})
        QVERIFY2(outcome.out.contains(option), option);
}

void tst_surveyConsole::refusesBadOptions_data()
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

void tst_surveyConsole::refusesBadOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const outcome_t outcome = runConsole(arguments);
    QCOMPARE(outcome.err, message);
    QCOMPARE(outcome.exitCode, 2);
}

void tst_surveyConsole::refusesBadRecordings_data()
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

void tst_surveyConsole::refusesBadRecordings()
{
    QFETCH(bool, exists);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QTemporaryDir directory;
    const QString path = directory.filePath("line.log");
    if (exists) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    const outcome_t outcome = runConsole({"--recording", path});
    QCOMPARE(outcome.err, message.arg(path));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_surveyConsole::refusesABadSonarRecord()
{
    const outcome_t outcome = runConsole({"--sonar", SHIP});
    QCOMPARE(outcome.err, QStringLiteral("surveyConsole: cannot open '%1': No such file or "
                                         "directory\n")
                              .arg(QString(SHIP).replace(".log", ".csv")));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_surveyConsole::refusesABadEchogram()
{
    const QString sidescan = EXAMPLE_DATA "/scotsman-sidescan/sidescan-600khz";
    const outcome_t outcome = runConsole({"--echogram", RIVER, "--echogram", sidescan + ".pgm"});
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: '%1.csv' is no table of pings\n").arg(sidescan));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_surveyConsole::showsTheEchogramsOfChoice()
{
    const QTemporaryDir directory;
    const auto pictureOf = [&directory](const QStringList& arguments) {
        const QString path = directory.filePath("console.png");
        const outcome_t outcome =
            runConsole(arguments + QStringList{"--page", "echogram", "--screenshot", path});
        return outcome.exitCode == 0 && outcome.err.isEmpty() ? QImage(path) : QImage();
    };
    const QImage asUsual = pictureOf({});
    const QImage both =
        pictureOf({"--echogram", RIVER, "--echogram", QString(RIVER).replace("200khz", "83khz")});
    const QImage low = pictureOf({"--echogram", QString(RIVER).replace("200khz", "83khz")});
    QCOMPARE(asUsual.size(), QSize(1280, 800));
    QCOMPARE(firstDifference(both, asUsual), QString());
    QCOMPARE(low.size(), asUsual.size());
    QVERIFY(low != asUsual);
}

void tst_surveyConsole::reportsDamagedPings_data()
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

void tst_surveyConsole::reportsDamagedPings()
{
    QFETCH(QString, page);
    QFETCH(QByteArray, table);
    const QTemporaryDir directory;
    const QString path = directory.filePath("record.pgm");
    QVERIFY(writeFile(path, "P5\n1 2\n255\n\x80")); // the second row is missing
    QVERIFY(writeFile(directory.filePath("record.csv"), table));
    const outcome_t outcome = runConsole(
        {"--" + page, path, "--page", page, "--screenshot", directory.filePath("1.png")});
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: left out 1 damaged pings of '%1'\n").arg(path));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_surveyConsole::reportsDamagedLines()
{
    QTemporaryDir directory;
    const QString path = directory.filePath("line.log");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("2014-08-01T00:00:00.183000Z $HEHDT,218.53,T*12\n"
               "2014-08-01T00:00:00.383000Z $HEHDT,218.53,T*13\n"
               "2014-08-01T00:00:00.583000Z $HEHDT,218.53,T*12\n");
    file.close();
    const outcome_t outcome =
        runConsole({"--recording", path, "--screenshot", directory.filePath("1.png")});
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: skipped 1 damaged of 3 lines in '%1'\n").arg(path));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_surveyConsole::reportsAPictureItCannotWrite()
{
    const outcome_t outcome = runConsole({"--screenshot", "/nowhere/console.png"});
    QCOMPARE(outcome.err,
             QStringLiteral("surveyConsole: cannot write the picture '/nowhere/console.png'\n"));
    QCOMPARE(outcome.exitCode, 1);
}

ZORBIN_TEST_MAIN(tst_surveyConsole, QApplication)
#include "tst_surveyConsole.moc"
