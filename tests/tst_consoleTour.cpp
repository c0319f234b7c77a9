#include "alarmLabel.h"
#include "chartPanel.h"
#include "gestures.h"
#include "indicator.h"
#include "pictures.h"
#include "recordingsPanel.h"
#include "sonarPanel.h"
#include "stripChart.h"
#include "testCase.h"
#include "testConsole.h"
#include "theme.h"
#include "valueRuler.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <QToolButton>
#include <cmath>
#include <memory>

using namespace survey_console;

// Goes through the whole console with the mouse and the keyboard, as an operator does on the first
// day: each function goes on where the one before left it.
class tst_consoleTour : public testCase_t
{
    Q_OBJECT
private:
    template <typename widget_t>
    widget_t* find(const char* name)
    {
        return m_console->find<widget_t>(name);
    }
    void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    chartPanel_t* depthPanel() { return m_console->panel(PANEL_DEPTH); }
    int countOf(const QColor& color, QWidget* widget)
    {
        return ::countOf(color, snapshot(*widget));
    }

    std::unique_ptr<console_t> m_console;
    mainWindow_t* m_window = nullptr; // the console's

private Q_SLOTS:
    void initTestCase();
    void startsTheReplay();
    void changesThePalette();
    void dragsOnARuler();
    void raisesTheDepthAlarm();
    void changesPage();
    void setsTheSounder();
    void isRefusedByTheSounder();
    void looksAtTheEchogram();
    void changesTheFrequency();
    void addsRecordings();
    void answersThePrompt();
    void opensTheAboutBox();
    void cleanupTestCase();
};

void tst_consoleTour::initTestCase()
{
    qputenv("ZORBIN_QT_RESOURCE_DIR", RESOURCES);
    theme::apply(qApp);
    readResult_t line = readRecording(shipLog);
    QCOMPARE(line.error, QString());
    sonarResult_t sonar = readSonarRecord(sidescanPicture);
    QCOMPARE(sonar.error, QString());
    m_console = std::make_unique<console_t>(std::move(line), QStringLiteral("underway-10min.log"));
    m_window = &m_console->window;
    m_window->addSonar("sidescan", std::move(sonar.record));
    std::vector<echogram_t> echograms;
    for (const int kilohertz : {200, 83}) {
        sonarResult_t echoes = readEchogram(echogramPicture(kilohertz));
        QCOMPARE(echoes.error, QString());
        echograms.push_back({QStringLiteral("echoes"), std::move(echoes.record)});
    }
    m_window->addEchograms(std::move(echograms));
    m_window->addSurvey();
    m_window->restore(consoleState_t());
    QVERIFY(m_console->show());
}

void tst_consoleTour::startsTheReplay()
{
    click(find<QPushButton>("pauseButton"));
    QCOMPARE(find<QPushButton>("pauseButton")->text(), QStringLiteral("Pause"));
    m_console->realTime += 300.0;
    QTRY_COMPARE(m_window->clock()->time(), m_window->clock()->start() + 300.0);
    QTest::keyClick(m_window, Qt::Key_Space); // holds still what follows
    QCOMPARE(find<QLabel>("stateLabel")->text(), QStringLiteral("PAUSED"));
    QCOMPARE(find<QLabel>("timeLabel")->text(), QStringLiteral("2014-08-01  00:05:00 UTC"));
    // The page shows once the first notice has slid in.
    QTRY_VERIFY(countOf(theme::firstCurve(), m_console->chart(PANEL_SPEED)) > 500);
}

void tst_consoleTour::changesThePalette()
{
    auto* box = find<QComboBox>("paletteBox");
    QWidget* chart = depthPanel()->chart();
    const QImage before = snapshot(*chart);
    QCOMPARE(countOf(theme::firstCurve(), chart), 0);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(box->currentText(), QStringLiteral("One colour"));
    QVERIFY(snapshot(*chart) != before);
    QVERIFY(countOf(theme::firstCurve(), chart) > 50);
}

void tst_consoleTour::dragsOnARuler()
{
    valueRuler_t* ruler = depthPanel()->valueRuler();
    auto* autoscale = depthPanel()->findChild<QToolButton*>(QStringLiteral("autoscaleButton"));
    const double start = ruler->start();
    const double end = ruler->end();
    const int x = ruler->width() / 2;
    const int low = ruler->height() * 3 / 4;
    const int high = ruler->height() / 4;
    QTest::mousePress(ruler, Qt::LeftButton, Qt::KeyboardModifiers(), QPoint(x, low));
    dragTo(ruler, QPoint(x, ruler->height() / 2));
    dragTo(ruler, QPoint(x, high));
    QTest::mouseRelease(ruler, Qt::LeftButton, Qt::KeyboardModifiers(), QPoint(x, high));
    QVERIFY(!autoscale->isChecked());
    const double span = end - start;
    const double tolerance = 3.0 * span / ruler->height(); // of pixels
    QVERIFY2(std::fabs(ruler->start() - (start + span / 4.0)) < tolerance,
             qPrintable(QString::number(ruler->start())));
    QVERIFY2(std::fabs(ruler->end() - (end - span / 4.0)) < tolerance,
             qPrintable(QString::number(ruler->end())));
    QCOMPARE(depthPanel()->chart()->minValueBound(), ruler->start());
    click(autoscale);
    QCOMPARE(ruler->start(), start);
    QCOMPARE(ruler->end(), end);
}

void tst_consoleTour::raisesTheDepthAlarm()
{
    auto* label = find<zorbin_qt_gui::alarmLabel_t>("alarmLabel");
    auto* box = find<QDoubleSpinBox>("alarmBox");
    m_window->clock()->seek(m_window->clock()->start() + 270.0); // a sounding is fresh
    QCOMPARE(label->text(), QStringLiteral("no alarm"));
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("6000"));
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(box->value(), 6000.0);
    QCOMPARE(label->text(), QStringLiteral("SHALLOW WATER"));
    QTRY_VERIFY(countOf(theme::alarm(), label) > label->width() * label->height() / 2); // flashes
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("20"));
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(label->text(), QStringLiteral("no alarm"));
}

void tst_consoleTour::changesPage()
{
    QVERIFY(!m_window->sonarPanel()->isVisible());
    click(find<QToolButton>("pageButton1"));
    QCOMPARE(m_window->page(), PAGE_SONAR);
    QVERIFY(m_window->sonarPanel()->isVisible());
    QVERIFY(!depthPanel()->isVisible());
}

void tst_consoleTour::setsTheSounder()
{
    auto* lamp = find<zorbin_qt_gui::indicator_t>("gainLamp");
    auto* gain = find<QDoubleSpinBox>("gain");
    QVERIFY(countOf(theme::running(), lamp) > 50);
    gain->setFocus();
    gain->selectAll();
    QTest::keyClicks(gain, QStringLiteral("25"));
    QTest::keyClick(gain, Qt::Key_Return);
    QCOMPARE(find<QLabel>("sounderStateLabel")->text(), QStringLiteral("waiting for an answer"));
    QVERIFY(countOf(theme::paused(), lamp) > 50);
    QTRY_COMPARE(find<QLabel>("sounderStateLabel")->text(), QStringLiteral("as set"));
    QVERIFY(countOf(theme::running(), lamp) > 50);
    QCOMPARE(gain->value(), 25.0);
}

void tst_consoleTour::isRefusedByTheSounder()
{
    auto* power = find<QSlider>("power");
    auto* lamp = find<zorbin_qt_gui::indicator_t>("powerLamp");
    auto* discard = find<QPushButton>("discardButton");
    QVERIFY(!discard->isEnabled());
    power->setFocus();
    for (int i = 0; i < 31; ++i) // from 60 % to 91 %, more than it has
        QTest::keyClick(power, Qt::Key_Up);
    QCOMPARE(power->value(), 91);
    QTRY_COMPARE(find<QLabel>("sounderStateLabel")->text(), QStringLiteral("1 refused"));
    QVERIFY(countOf(theme::alarm(), lamp) > 50);
    click(discard);
    QVERIFY(power->value() <= 80);
    QCOMPARE(find<QLabel>("sounderStateLabel")->text(), QStringLiteral("as set"));
    QVERIFY(countOf(theme::running(), lamp) > 50);
}

// At 270 s the record is in its second round, 119.3 s after its start. There the instrument takes
// multiples of the bottom's echo for the bottom, off and on.
void tst_consoleTour::looksAtTheEchogram()
{
    click(find<QToolButton>("pageButton2"));
    QCOMPARE(m_window->page(), PAGE_ECHOGRAM);
    echogramPanel_t* panel = m_window->echogramPanel();
    QVERIFY(panel->isVisible());
    const auto findHere = [panel](const char* name) { return panel->findChild<QWidget*>(name); };
    QCOMPARE(panel->model()->end(), 3096);
    QCOMPARE(panel->findChild<QLabel*>("instrumentDepthLabel")->text(), QStringLiteral("1.7 m"));
    auto* slider = panel->findChild<QSlider*>("scrollSlider");
    slider->setFocus();
    for (int i = 0; i < 8; ++i)
        QTest::keyClick(slider, Qt::Key_Down);
    QCOMPARE(panel->findChild<QLabel*>("instrumentDepthLabel")->text(), QStringLiteral("5.0 m"));
    click(findHere("newestButton"));
    QCOMPARE(panel->findChild<QLabel*>("instrumentDepthLabel")->text(), QStringLiteral("1.7 m"));
    click(findHere("wholeButton"));
    const auto* ruler = panel->findChild<valueRuler_t*>("rangeRuler");
    QCOMPARE(ruler->start(), 1550 * 0.0187); // at the bottom
    QCOMPARE(ruler->end(), 0.0);
}

void tst_consoleTour::changesTheFrequency()
{
    echogramPanel_t* panel = m_window->echogramPanel();
    auto* box = find<QComboBox>("beamBox");
    const QImage before = snapshot(*panel);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(box->currentText(), QStringLiteral("83 kHz"));
    QVERIFY(snapshot(*panel) != before);
}

void tst_consoleTour::addsRecordings()
{
    click(find<QToolButton>("pageButton3"));
    auto* list = find<QListWidget>("recordingList");
    QVERIFY(list->isVisible());
    QCOMPARE(list->count(), 0);
    click(find<QPushButton>("addFilesButton")); // its dialog comes, and goes by Esc
    QTRY_VERIFY(QApplication::activeModalWidget());
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QCOMPARE(list->count(), 0);
    m_window->recordings()->addFiles({shipLog, boatLog});
    QCOMPARE(list->count(), 2);
    QCOMPARE(list->item(1)->text(), QStringLiteral("plaka-sailing/plaka-10min.log"));
}

void tst_consoleTour::answersThePrompt()
{
    QString chosen;
    connect(m_window, &mainWindow_t::recordingChosen, this,
            [&](const QString& path) { chosen = path; });
    auto* list = find<QListWidget>("recordingList");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::KeyboardModifiers(),
                      list->visualItemRect(list->item(1)).center());
    for (const char* answer : {"cancelButton", "replayButton"}) {
        click(find<QPushButton>("replayRecordingButton"));
        QTRY_VERIFY(find<QWidget>("openPrompt"));
        auto* button = find<QWidget>("openPrompt")->findChild<QPushButton*>(answer);
        QTRY_VERIFY(isInSight(button));
        QCOMPARE(chosen, QString());
        click(button);
        QTRY_VERIFY(!find<QWidget>("openPrompt"));
    }
    QCOMPARE(chosen, boatLog);
}

void tst_consoleTour::opensTheAboutBox()
{
    QString text;
    QTimer::singleShot(0, this, [&] { // once the box is shown, which blocks
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        text = box->text();
        QTest::keyClick(box, Qt::Key_Escape);
    });
    find<QAction>("aboutAction")->trigger();
    QVERIFY2(text.contains("the sounder is simulated"), qPrintable(text));
}

void tst_consoleTour::cleanupTestCase()
{
    m_console.reset();
}

ZORBIN_TEST_MAIN(tst_consoleTour, QApplication)
#include "tst_consoleTour.moc"
