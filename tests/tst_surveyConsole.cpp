#include "chartPanel.h"
#include "gestures.h"
#include "latLonEditor.h"
#include "notices.h"
#include "notifierWidget.h"
#include "paintLog.h"
#include "pictures.h"
#include "positionPanel.h"
#include "recordingsPanel.h"
#include "sonarPanel.h"
#include "stripChart.h"
#include "testCase.h"
#include "testConsole.h"
#include "testFiles.h"
#include "texts.h"
#include "timeRuler.h"
#include "valueRuler.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <QToolButton>
#include <cmath>
#include <memory>

using namespace survey_console;
using zorbin_qt_gui::latLonEditor_t;
using zorbin_qt_gui::notifierWidget_t;
using zorbin_qt_gui::stripChart_t;

/// The console's window. Its colours, texts and options have tests of their own.
class tst_surveyConsole : public testCase_t
{
    Q_OBJECT
private:
    testPalettes_t m_palettes;

private Q_SLOTS:
    void initTestCase();
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
};

void tst_surveyConsole::initTestCase()
{
    m_palettes.use();
}

void tst_surveyConsole::startsPausedAtTheStart()
{
    console_t console;
    QVERIFY(console.show());
    QCOMPARE(console.elapsed(), 0.0);
    QCOMPARE(console.find<QPushButton>("pauseButton")->text(), QStringLiteral("Resume"));
    QCOMPARE(console.find<QLabel>("stateLabel")->text(), QStringLiteral("PAUSED"));
    QCOMPARE(console.find<QLabel>("timeLabel")->text(), QStringLiteral("2014-08-01  00:00:00 UTC"));
}

void tst_surveyConsole::resumesAndPausesByTheButton()
{
    console_t console;
    QVERIFY(console.show());
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
    QVERIFY(console.show());
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
    QVERIFY(console.show());
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
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 300.0);
    QTest::keyClick(&console.window, static_cast<Qt::Key>(key));
    QCOMPARE(console.elapsed(), elapsed);
    console.clock()->seek(lineStart + 300.0);
    auto* slider = console.find<QSlider>("seekSlider"); // has a meaning of its own for each
    slider->setFocus();
    QTest::keyClick(slider, static_cast<Qt::Key>(key));
    QCOMPARE(console.elapsed(), elapsed);
}

void tst_surveyConsole::seeksWhereTheSliderIsClicked()
{
    console_t console;
    QVERIFY(console.show());
    auto* slider = console.find<QSlider>("seekSlider");
    for (const double share : {0.75, 0.25}) {
        const int x = static_cast<int>(slider->width() * share);
        QTest::mouseClick(slider, Qt::LeftButton, Qt::KeyboardModifiers(),
                          QPoint(x, slider->height() / 2));
        QVERIFY2(std::fabs(console.elapsed() - lineLength * share) <
                     lineLength / slider->width() * 2.0,
                 qPrintable(QString::number(console.elapsed())));
        QCOMPARE(console.chart(PANEL_DEPTH)->maxTimeBound(), console.clock()->time());
    }
}

void tst_surveyConsole::sliderFollowsWithoutSeeking()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->setRunning(true);
    console.pass(123.456789);
    QCOMPARE(console.elapsed(), 123.456789 + lineStart - lineStart); // as far as a double tells
    auto* slider = console.find<QSlider>("seekSlider");
    QCOMPARE(slider->value(), 2058); // 123.46 s of 600 s, in ten thousandths
}

void tst_surveyConsole::changesTheSpeedByTheBox()
{
    console_t console;
    QVERIFY(console.show());
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
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    QCOMPARE(console.chart(PANEL_DEPTH)->minTimeBound(), lineStart + 100.0); // five minutes
    auto* box = console.find<QComboBox>("spanBox");
    QCOMPARE(box->currentText(), QStringLiteral("5 min"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(console.chart(PANEL_DEPTH)->minTimeBound(), lineStart + 280.0);
    QCOMPARE(console.chart(PANEL_DEPTH)->maxTimeBound(), lineStart + 400.0);
    QCOMPARE(console.chart(PANEL_HEAVE)->minTimeBound(), lineStart + 280.0);
}

void tst_surveyConsole::showsTheEndOfTheLine()
{
    console_t console;
    QVERIFY(console.show());
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
    QVERIFY(console.show());
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
    QVERIFY(console.show());
    const auto color = [&] { return console.textColor(PANEL_DEPTH, "valueLabel0"); };
    console.clock()->seek(lineStart +
                          218.0); // 18 s after the last sounding, 1.8 times the usual step
    const QColor fresh = color();
    console.clock()->seek(lineStart + 218.1);
    QVERIFY(color() != fresh);
    console.clock()->seek(lineStart + 300.0);
    QCOMPARE(color(), fresh);
}

void tst_surveyConsole::saysWhatIsNotRecorded()
{
    console_t console;
    QVERIFY(!console.panel(PANEL_DEPTH)->findChild<QLabel*>("missingLabel"));
    QVERIFY(!console.panel(PANEL_HEADING)->findChild<QLabel*>("missingLabel"));
    for (const chartIndex_t panel : {PANEL_SPEED, PANEL_COURSE, PANEL_ATTITUDE, PANEL_HEAVE}) {
        QCOMPARE(console.text(panel, "missingLabel"), QStringLiteral("not recorded"));
        QVERIFY(!console.autoscaleButton(panel));
        QCOMPARE(console.ruler(panel)->end(), console.ruler(panel)->start()); // no ticks
    }
}

void tst_surveyConsole::depthGrowsDownwards()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 200.0);
    const double top = console.ruler(PANEL_DEPTH)->end();
    const double bottom = console.ruler(PANEL_DEPTH)->start();
    QVERIFY2(-top < 100.0 && -top > 80.0, qPrintable(QString::number(-top)));
    QVERIFY2(-bottom > 120.0 && -bottom < 140.0, qPrintable(QString::number(-bottom)));
}

void tst_surveyConsole::headingDoesNotJumpAtNorth()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 600.0);
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
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    for (const char* axis : {"timeAxis0", "timeAxis1"}) {
        QCOMPARE(console.timeRuler(axis)->start(), lineStart + 100.0);
        QCOMPARE(console.timeRuler(axis)->end(), lineStart + 400.0);
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
    QVERIFY(console.show());
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
    QVERIFY(console.show());
    QVERIFY(console.resize(size));
    const auto placeOf = [&](const QWidget* widget) {
        return QRect(widget->mapTo(&console.window, QPoint()), widget->size());
    };
    for (const chartIndex_t panel :
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
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
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
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    valueRuler_t* ruler = console.ruler(PANEL_DEPTH);
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    const double bottom = ruler->pixelToValue(ruler->height() * 3 / 4);
    const double top = ruler->pixelToValue(ruler->height() / 4);
    drag(ruler, QPoint(5, ruler->height() / 4), QPoint(5, ruler->height() * 3 / 4));
    QCOMPARE(chart->minValueBound(), bottom);
    QCOMPARE(chart->maxValueBound(), top);
    QVERIFY(!chart->autoscaleValue());
    QVERIFY(!console.autoscaleButton(PANEL_DEPTH)->isChecked());
    console.clock()->seek(lineStart + 600.0);
    QCOMPARE(chart->maxValueBound(), top);
    QCOMPARE(ruler->end(), top);
    QVERIFY(console.chart(PANEL_HEADING)->autoscaleValue());
}

void tst_surveyConsole::clickOnTheRulerCentresTheScale()
{
    console_t console;
    QVERIFY(console.show());
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
    QVERIFY(console.show());
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
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
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
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    console.chart(PANEL_DEPTH)->valueBounds(-200.0, 0.0);
    QWidget* area = console.area(PANEL_DEPTH);
    QCOMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
    const QPoint pointer(area->width() / 4, area->height() / 2);
    QTest::mouseMove(area, pointer);
    const auto wanted = [&] { // the read-out itself may change the layout
        const double time = lineStart + 100.0 + 300.0 * pointer.x() / area->width();
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
    QVERIFY(console.show());
    console.choosePalette(0); // one colour
    console.clock()->seek(lineStart + 400.0);
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
    QVERIFY(console.show());
    console.chart(PANEL_DEPTH)->valueBounds(-200.0, 0.0); // autoscale depends on what was before
    console.chart(PANEL_HEADING)->valueBounds(-10.0, 10.0);
    console.clock()->setRunning(true);
    for (int frame = 0; frame < 349; ++frame)
        console.pass(1.0);
    console.clock()->seek(lineStart + 350.0); // the window ends there, not at a whole pixel
    const QImage depth = snapshot(*console.area(PANEL_DEPTH));
    const QImage heading = snapshot(*console.area(PANEL_HEADING));

    console.clock()->seek(lineStart + 600.0);
    QVERIFY(snapshot(*console.area(PANEL_DEPTH)) != depth);
    QVERIFY(snapshot(*console.area(PANEL_HEADING)) != heading);
    console.clock()->seek(lineStart + 350.0);
    QCOMPARE(firstDifference(snapshot(*console.area(PANEL_DEPTH)), depth), QString());
    QCOMPARE(firstDifference(snapshot(*console.area(PANEL_HEADING)), heading), QString());
    QCOMPARE(console.text(PANEL_DEPTH, "valueLabel0"), QStringLiteral("135.0"));
}

void tst_surveyConsole::endsTheWindowAtTheTimeAfterResizing()
{
    console_t console;
    QVERIFY(console.show());
    console.clock()->seek(lineStart + 400.0);
    QVERIFY(console.resize(QSize(1900, 1000)));
    console.clock()->setRunning(true);
    console.pass(1.0);
    stripChart_t* chart = console.chart(PANEL_DEPTH);
    const double pixel = 300.0 / chart->width();
    QVERIFY2(chart->maxTimeBound() >= lineStart + 401.0 &&
                 chart->maxTimeBound() <= lineStart + 401.0 + pixel,
             qPrintable(QString::number(chart->maxTimeBound() - lineStart)));
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
    readResult_t ship = readRecording(shipLog);
    QCOMPARE(ship.error, QString());
    console_t console(std::move(ship), QStringLiteral("underway-10min.log"));
    mainWindow_t& window = console.window;
    window.addSonar("sidescan-600khz.pgm", testSonar());
    window.addEchograms(testEchograms());
    window.addSurvey();
    window.resize(size);
    QVERIFY(console.show());
    window.clock()->seek(window.clock()->start() + 500.0);
    settle();
    QCOMPARE(window.size(), size);
    for (const page_t page : {PAGE_SURVEY, PAGE_ECHOGRAM, PAGE_SONAR, PAGE_CHARTS}) {
        window.showPage(page);
        settle();
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
    const console_t damaged(std::move(line));
    QCOMPARE(damaged.find<QLabel>("damageLabel")->text(),
             QStringLiteral("3 damaged lines skipped"));
    const console_t sound;
    QCOMPARE(sound.find<QLabel>("damageLabel")->text(), QString());
}

void tst_surveyConsole::chartKeepsItsHeightWhenAReadOutComes()
{
    console_t console;
    QVERIFY(console.show());
    const int height = console.area(PANEL_DEPTH)->height();
    QTest::mouseMove(console.area(PANEL_DEPTH), QPoint(20, 20));
    QTRY_VERIFY(!console.text(PANEL_DEPTH, "pointerLabel").isEmpty());
    settle();
    QCOMPARE(console.area(PANEL_DEPTH)->height(), height);
    QTest::mouseMove(console.find<QLabel>("timeLabel"));
    QTRY_COMPARE(console.text(PANEL_DEPTH, "pointerLabel"), QString());
}

void tst_surveyConsole::tellsOfStartAndEnd()
{
    console_t console;
    QVERIFY(console.show());
    const notices_t* notices = console.window.notices();
    QCOMPARE(notices->texts(), QStringList());
    console.clock()->setRunning(true);
    console.pass(0.1);
    QCOMPARE(notices->texts(), QStringList({"test line: 00:00:00 to 00:10:00 UTC"}));
    console.pass(lineLength);
    QCOMPARE(notices->texts(),
             QStringList({"Depth: nothing since 00:03:20 UTC", "End of the recording"}));
}

// Labels ask for a layout with each value, here more often than a notifier waits for.
void tst_surveyConsole::showsNoticesWhileValuesChange()
{
    console_t console;
    QVERIFY(console.show());
    auto* const notifier = console.window.findChild<notifierWidget_t*>();
    const QSize size = notifier->size();
    int second = 0;
    QTimer values; // headings that differ
    connect(&values, &QTimer::timeout, this, [&] {
        second = 6 - second;
        console.clock()->seek(lineStart + second);
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
    QVERIFY(console.show());
    QString chosen;
    std::shared_ptr<readResult_t> line;
    connect(&console.window, &mainWindow_t::recordingChosen, this,
            [&](const QString& path, const std::shared_ptr<readResult_t>& read) {
                chosen = path;
                line = read;
            });
    console.window.openRecording(shipLog);
    QCOMPARE(chosen, QString());
    QTRY_VERIFY(console.find<QWidget>("openPrompt"));
    auto* prompt = console.find<QWidget>("openPrompt");
    QTRY_VERIFY(prompt->isVisible());
    QCOMPARE(prompt->findChild<QLabel*>()->text(),
             QStringLiteral("Replay underway-10min.log (0:10:24) in place of test line?"));
    prompt->findChild<QPushButton*>("replayButton")->click(); // it has yet to find its place
    QCOMPARE(chosen, QString(shipLog));
    QVERIFY(!line->recording.isEmpty());
    QTRY_VERIFY(!console.find<QWidget>("openPrompt"));
}

void tst_surveyConsole::goesOnWhenTheUserThinksBetter()
{
    console_t console;
    QVERIFY(console.show());
    bool isChosen = false;
    connect(&console.window, &mainWindow_t::recordingChosen, this, [&] { isChosen = true; });
    console.window.openRecording(shipLog);
    console.window.openRecording(boatLog); // the one question takes the place of the other
    QTRY_COMPARE(console.window.findChildren<QWidget*>("openPrompt").size(), 1);
    console.find<QWidget>("openPrompt")->findChild<QPushButton*>("cancelButton")->click();
    QTRY_VERIFY(!console.find<QWidget>("openPrompt"));
    QVERIFY(!isChosen);
}

void tst_surveyConsole::saysWhyARecordingCannotBeRead()
{
    console_t console;
    QVERIFY(console.show());
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
    QVERIFY(console.show());
    QString chosen;
    connect(&console.window, &mainWindow_t::recordingChosen, this,
            [&](const QString& path) { chosen = path; });
    console.window.recordings()->addFiles({shipLog, boatLog});
    auto* list = console.find<QListWidget>("recordingList");
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    QTRY_VERIFY(console.find<QWidget>("openPrompt"));
    auto* prompt = console.find<QWidget>("openPrompt");
    QTRY_VERIFY(prompt->isVisible());
    QCOMPARE(chosen, QString()); // asks first
    prompt->findChild<QPushButton*>("replayButton")->click();
    QCOMPARE(chosen, QString(boatLog));
    QCOMPARE(console.window.page(), PAGE_SURVEY);
}

void tst_surveyConsole::showsTheAboutBox()
{
    console_t console;
    QVERIFY(console.show());
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
    QVERIFY(console.show());
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
    QVERIFY(console.show());
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
    console_t console;
    console.window.addSonar("test.pgm", testSonar());
    console.window.addSurvey();
    const double longitude = 300.0 * lineStep;
    console.find<latLonEditor_t>("targetLongitude")->setValue(longitude);
    QTest::mouseClick(console.find<QPushButton>("nearestButton"), Qt::LeftButton);
    QCOMPARE(console.elapsed(), 300.0);
    double vessel = 0.0;
    QVERIFY(console.find<latLonEditor_t>("vesselLongitude")->value(vessel));
    QCOMPARE(vessel, longitude);
}

void tst_surveyConsole::sonarFollowsTheClock()
{
    console_t console;
    console.window.addSonar("test.pgm", testSonar());
    QVERIFY(console.show());
    const pingModel_t* pings = console.window.sonarPanel()->model();
    QCOMPARE(pings->end(), 1);
    console.clock()->setRunning(true);
    console.pass(30.5);
    QCOMPARE(pings->end(), 31);
    console.clock()->seek(lineStart + 10.0);
    QCOMPARE(pings->end(), 11);
    console.clock()->seek(lineStart + 600.0); // ten times the record
    QCOMPARE(pings->end(), 601);
}

void tst_surveyConsole::echogramFollowsTheClock()
{
    console_t console;
    QVERIFY(!console.window.echogramPanel());
    console.clock()->seek(lineStart + 5.0);
    console.window.addEchograms(testEchograms());
    QVERIFY(console.show());
    const pingModel_t* pings = console.window.echogramPanel()->model();
    QCOMPARE(pings->end(), 6);
    console.clock()->setRunning(true);
    console.pass(30.5);
    QCOMPARE(pings->end(), 36);
    console.clock()->seek(lineStart + 10.0);
    QCOMPARE(pings->end(), 11);
}

ZORBIN_TEST_MAIN(tst_surveyConsole, QApplication)
#include "tst_surveyConsole.moc"
