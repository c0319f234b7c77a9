#include "gestures.h"
#include "slidingGauge.h"
#include "speedPanel.h"
#include "testCase.h"
#include "timeRuler.h"
#include "valueRuler.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QSignalSpy>
#include <cmath>
#include <limits>

using namespace survey_console;
using zorbin_qt_gui::slidingGauge_t;

namespace {

const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

} // namespace

class tst_consoleRulers : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void printsWhatTheUserKnows_data();
    void printsWhatTheUserKnows();
    void followsWithoutASignal();
    void choosesWithinLimits_data();
    void choosesWithinLimits();
    void allRulersAskForOneWidth();
    void printsTimes_data();
    void printsTimes();
    void marksRoundTimes_data();
    void marksRoundTimes();
    void gaugeShowsTheSpeed();
    void gaugeIsEmptyWhenTheSpeedIsOld();
    void gaugeTakesTheSpeedMadeGoodForWantOfAnother();
    void gaugeShowsThePlannedSpeed();
    void wheelOverThePlannedSpeedChangesNothing();
};

void tst_consoleRulers::printsWhatTheUserKnows_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << int(valueRuler_t::KIND_PLAIN) << 20.0 << "20";
    QTest::newRow("fraction") << int(valueRuler_t::KIND_PLAIN) << -0.25 << "-0.25";
    QTest::newRow("zero") << int(valueRuler_t::KIND_PLAIN) << -0.0 << "0";
    QTest::newRow("a hair below zero") << int(valueRuler_t::KIND_PLAIN) << -1e-17 << "0";
    QTest::newRow("depth") << int(valueRuler_t::KIND_DEPTH) << -4300.0 << "4300";
    QTest::newRow("surface") << int(valueRuler_t::KIND_DEPTH) << 0.0 << "0";
    QTest::newRow("angle") << int(valueRuler_t::KIND_ANGLE) << 218.5 << "218.5";
    QTest::newRow("angle below north") << int(valueRuler_t::KIND_ANGLE) << -2.0 << "358";
    QTest::newRow("north after a turn") << int(valueRuler_t::KIND_ANGLE) << 360.0 << "0";
}

void tst_consoleRulers::printsWhatTheUserKnows()
{
    QFETCH(int, kind);
    QFETCH(double, value);
    QFETCH(QString, text);
    const valueRuler_t ruler(static_cast<valueRuler_t::kind_t>(kind));
    QCOMPARE(QString::fromStdString(ruler.textFromValue(value)), text);
}

void tst_consoleRulers::followsWithoutASignal()
{
    valueRuler_t ruler(valueRuler_t::KIND_PLAIN);
    const QSignalSpy chosen(&ruler, &valueRuler_t::scaleChosen);
    ruler.follow(1.0, 2.0);
    QCOMPARE(ruler.start(), 1.0);
    QCOMPARE(ruler.end(), 2.0);
    QCOMPARE(chosen.count(), 0);
}

void tst_consoleRulers::choosesWithinLimits_data()
{
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::addColumn<double>("chosenBottom");
    QTest::addColumn<double>("chosenTop");
    QTest::newRow("inside") << 1.0 << 3.0 << 1.0 << 3.0;
    QTest::newRow("too little") << 1.0 << 1.0 << 0.95 << 1.05;
    QTest::newRow("too much") << -1e6 << 1e6 << -5e4 << 5e4;
}

void tst_consoleRulers::choosesWithinLimits()
{
    QFETCH(double, bottom);
    QFETCH(double, top);
    QFETCH(double, chosenBottom);
    QFETCH(double, chosenTop);
    valueRuler_t ruler(valueRuler_t::KIND_PLAIN);
    const QSignalSpy chosen(&ruler, &valueRuler_t::scaleChosen);
    ruler.range(bottom, top); // as the mouse does
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen[0][0].toDouble(), chosenBottom);
    QCOMPARE(chosen[0][1].toDouble(), chosenTop);
    QCOMPARE(ruler.start(), chosenBottom);
    QCOMPARE(ruler.end(), chosenTop);
}

void tst_consoleRulers::allRulersAskForOneWidth()
{
    valueRuler_t small(valueRuler_t::KIND_PLAIN);
    valueRuler_t great(valueRuler_t::KIND_DEPTH);
    for (valueRuler_t* ruler : {&small, &great}) {
        ruler->resize(ruler->sizeHint().width(), 160);
        ruler->follow(ruler == &small ? 0.0 : -11000.0, ruler == &small ? 0.1 : -10000.0);
        ruler->grab(); // sets the minimum that its labels need
        QVERIFY2(ruler->minimumWidth() <= ruler->sizeHint().width(),
                 qPrintable(QString::number(ruler->minimumWidth())));
    }
    QCOMPARE(small.sizeHint().width(), great.sizeHint().width());
}

void tst_consoleRulers::printsTimes_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<QString>("text");
    QTest::newRow("start of a day") << 1406851200.0 << QStringLiteral("\u00a000:00:00\u00a0");
    QTest::newRow("a hair before") << 1406851199.9999998 << QStringLiteral("\u00a000:00:00\u00a0");
    QTest::newRow("end of a day") << 1406851199.0 << QStringLiteral("\u00a023:59:59\u00a0");
    QTest::newRow("before 1970") << -1.0 << QString();
    QTest::newRow("not a number") << NOT_A_NUMBER << QString();
    QTest::newRow("infinite") << HUGE_VAL << QString();
}

void tst_consoleRulers::printsTimes()
{
    QFETCH(double, time);
    QFETCH(QString, text);
    const std::string label = timeRuler_t().textFromValue(time);
    QCOMPARE(QString::fromLatin1(label.data(), static_cast<int>(label.size())), text);
}

// Records which times have been labelled.
class recordingTimeRuler_t : public timeRuler_t
{
public:
    std::string textFromValue(double value) const override
    {
        times.push_back(value);
        return timeRuler_t::textFromValue(value);
    }
    mutable std::vector<double> times;
};

void tst_consoleRulers::marksRoundTimes_data()
{
    QTest::addColumn<double>("span"); // s
    QTest::addColumn<double>("interval");
    QTest::newRow("a minute") << 60.0 << 10.0;
    QTest::newRow("five minutes") << 300.0 << 60.0;
    QTest::newRow("an hour") << 3600.0 << 600.0;
    QTest::newRow("a day") << 86400.0 << 18000.0;
}

void tst_consoleRulers::marksRoundTimes()
{
    QFETCH(double, span);
    QFETCH(double, interval);
    recordingTimeRuler_t ruler;
    ruler.resize(480, 30);
    const double start = 1406851200.0;
    ruler.range(start, start + span);
    ruler.grab();
    // The last labels asked for are those of the interval that was chosen.
    QVERIFY(ruler.times.size() >= 2);
    const std::size_t count = ruler.times.size();
    QCOMPARE(ruler.times[count - 1] - ruler.times[count - 2], interval);
    QCOMPARE(std::fmod(ruler.times[count - 1], interval), 0.0);
}

namespace {

const double START = 1406851200.0;

recording_t lineWith(channelId_t channel)
{
    recording_t recording;
    for (int second = 0; second <= 10; ++second)
        recording.add(channel, "INVTG", {START + second, 8.0 + 0.1 * second});
    return recording;
}

} // namespace

void tst_consoleRulers::gaugeShowsTheSpeed()
{
    speedPanel_t panel(lineWith(CHANNEL_SPEED));
    panel.showTime(START + 5.5);
    QCOMPARE(panel.findChild<slidingGauge_t*>("speedGauge")->feedback(), 8.5);
    QCOMPARE(panel.findChild<QLabel*>("speedLabel")->text(), QStringLiteral("8.5"));
}

void tst_consoleRulers::gaugeIsEmptyWhenTheSpeedIsOld()
{
    speedPanel_t panel(lineWith(CHANNEL_SPEED));
    panel.showTime(START + 11.7);
    QCOMPARE(panel.findChild<slidingGauge_t*>("speedGauge")->feedback(), 9.0);
    panel.showTime(START + 11.9); // more than 1.8 s after the last
    QCOMPARE(panel.findChild<slidingGauge_t*>("speedGauge")->feedback(), 0.0);
    QCOMPARE(panel.findChild<QLabel*>("speedLabel")->text(), QStringLiteral("\u2013"));
    panel.showTime(START - 1.0);
    QCOMPARE(panel.findChild<QLabel*>("speedLabel")->text(), QStringLiteral("\u2013"));
}

void tst_consoleRulers::gaugeTakesTheSpeedMadeGoodForWantOfAnother()
{
    speedPanel_t panel(lineWith(CHANNEL_SPEED_MADE_GOOD));
    panel.showTime(START + 5.0);
    QCOMPARE(panel.findChild<slidingGauge_t*>("speedGauge")->feedback(), 8.5);
}

void tst_consoleRulers::gaugeShowsThePlannedSpeed()
{
    speedPanel_t panel(lineWith(CHANNEL_SPEED));
    auto* gauge = panel.findChild<slidingGauge_t*>("speedGauge");
    QCOMPARE(gauge->setpoint(), 9.0);
    QCOMPARE(gauge->minimum(), 0.0);
    QCOMPARE(gauge->maximum(), 10.0);
    panel.findChild<QDoubleSpinBox*>("plannedSpeedBox")->setValue(7.5);
    QCOMPARE(gauge->setpoint(), 7.5);
}

void tst_consoleRulers::wheelOverThePlannedSpeedChangesNothing()
{
    speedPanel_t panel(lineWith(CHANNEL_SPEED));
    auto* box = panel.findChild<QDoubleSpinBox*>("plannedSpeedBox");
    turnWheel(box, QPoint(5, 5), true);
    QCOMPARE(box->value(), 9.0);
}

ZORBIN_TEST_MAIN(tst_consoleRulers, QApplication)
#include "tst_consoleRulers.moc"
