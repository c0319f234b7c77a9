#include "replayClock.h"
#include "testCase.h"

#include <QSignalSpy>
#include <limits>

using survey_console::replayClock_t;

namespace {

const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
const double INFINITE = std::numeric_limits<double>::infinity();

// A clock over 1000 s to 1600 s whose real time is set by hand.
struct handDriven_t
{
    double realTime = 50.0;
    replayClock_t clock{[this] { return realTime; }};

    handDriven_t() { clock.setSpan(1000.0, 1600.0); }

    void pass(double seconds)
    {
        realTime += seconds;
        clock.advance();
    }
};

} // namespace

class tst_replayClock : public testCase_t
{
    Q_OBJECT
private Q_SLOTS:
    void startsPausedAtTheStart();
    void standsWhilePaused();
    void runsWithRealTime();
    void runsAtItsSpeed_data();
    void runsAtItsSpeed();
    void speedAppliesFromItsChangeOn();
    void ignoresASpeedThatIsNotANumber();
    void pausesWhereItIs();
    void resumesWithoutTheTimeOfThePause();
    void seeksWithinTheSpan_data();
    void seeksWithinTheSpan();
    void ignoresASeekToNotANumber();
    void seeksWhileRunning();
    void stopsAtTheEnd();
    void stopsAtTheEndWhenPausedLate();
    void replaysFromTheStartAfterTheEnd();
    void mayBePausedBySomeoneWhoFollowsTheTime();
    void emitsNothingWhenNothingChanges();
    void anEmptySpanIsAtItsEnd();
};

void tst_replayClock::startsPausedAtTheStart()
{
    handDriven_t driven;
    QCOMPARE(driven.clock.time(), 1000.0);
    QCOMPARE(driven.clock.start(), 1000.0);
    QCOMPARE(driven.clock.end(), 1600.0);
    QCOMPARE(driven.clock.speed(), 1.0);
    QVERIFY(!driven.clock.isRunning());
    QVERIFY(!driven.clock.isAtEnd());
}

void tst_replayClock::standsWhilePaused()
{
    handDriven_t driven;
    QSignalSpy advanced(&driven.clock, &replayClock_t::timeAdvanced);
    driven.pass(10.0);
    QCOMPARE(driven.clock.time(), 1000.0);
    QCOMPARE(advanced.count(), 0);
}

void tst_replayClock::runsWithRealTime()
{
    handDriven_t driven;
    QSignalSpy advanced(&driven.clock, &replayClock_t::timeAdvanced);
    driven.realTime += 5.0; // before it runs
    driven.clock.setRunning(true);
    driven.pass(2.0);
    driven.pass(0.5);
    QCOMPARE(driven.clock.time(), 1002.5);
    QCOMPARE(advanced.count(), 2);
    QCOMPARE(advanced.at(0).at(0).toDouble(), 1002.0);
    QCOMPARE(advanced.at(1).at(0).toDouble(), 1002.5);
}

void tst_replayClock::runsAtItsSpeed_data()
{
    QTest::addColumn<double>("wanted");
    QTest::addColumn<double>("speed");
    QTest::newRow("least") << 1.0 << 1.0;
    QTest::newRow("between") << 2.5 << 2.5;
    QTest::newRow("greatest") << 100.0 << 100.0;
    QTest::newRow("too slow") << 0.5 << 1.0;
    QTest::newRow("zero") << 0.0 << 1.0;
    QTest::newRow("negative") << -3.0 << 1.0;
    QTest::newRow("too fast") << 100.1 << 100.0;
    QTest::newRow("infinite") << INFINITE << 100.0;
}

void tst_replayClock::runsAtItsSpeed()
{
    QFETCH(double, wanted);
    QFETCH(double, speed);
    handDriven_t driven;
    driven.clock.setSpeed(wanted);
    QCOMPARE(driven.clock.speed(), speed);
    driven.clock.setRunning(true);
    driven.pass(4.0);
    QCOMPARE(driven.clock.time(), 1000.0 + 4.0 * speed);
}

void tst_replayClock::speedAppliesFromItsChangeOn()
{
    handDriven_t driven;
    driven.clock.setRunning(true);
    driven.realTime += 3.0; // not advanced yet
    driven.clock.setSpeed(10.0);
    QCOMPARE(driven.clock.time(), 1003.0);
    driven.pass(2.0);
    QCOMPARE(driven.clock.time(), 1023.0);
}

void tst_replayClock::ignoresASpeedThatIsNotANumber()
{
    handDriven_t driven;
    driven.clock.setSpeed(5.0);
    driven.clock.setSpeed(NOT_A_NUMBER);
    QCOMPARE(driven.clock.speed(), 5.0);
}

void tst_replayClock::pausesWhereItIs()
{
    handDriven_t driven;
    driven.clock.setRunning(true);
    driven.realTime += 3.0; // not advanced yet
    driven.clock.setRunning(false);
    QCOMPARE(driven.clock.time(), 1003.0);
    driven.pass(3.0);
    QCOMPARE(driven.clock.time(), 1003.0);
}

void tst_replayClock::resumesWithoutTheTimeOfThePause()
{
    handDriven_t driven;
    driven.clock.setRunning(true);
    driven.pass(1.0);
    driven.clock.setRunning(false);
    driven.pass(100.0);
    driven.clock.setRunning(true);
    driven.pass(1.0);
    QCOMPARE(driven.clock.time(), 1002.0);
}

void tst_replayClock::seeksWithinTheSpan_data()
{
    QTest::addColumn<double>("wanted");
    QTest::addColumn<double>("time");
    QTest::newRow("between") << 1234.5 << 1234.5;
    QTest::newRow("end") << 1600.0 << 1600.0;
    QTest::newRow("before the start") << 999.0 << 1000.0;
    QTest::newRow("after the end") << 1600.5 << 1600.0;
    QTest::newRow("infinite") << INFINITE << 1600.0;
    QTest::newRow("minus infinite") << -INFINITE << 1000.0;
}

void tst_replayClock::seeksWithinTheSpan()
{
    QFETCH(double, wanted);
    QFETCH(double, time);
    handDriven_t driven;
    driven.clock.seek(1100.0);
    QSignalSpy jumped(&driven.clock, &replayClock_t::timeJumped);
    QSignalSpy advanced(&driven.clock, &replayClock_t::timeAdvanced);
    driven.clock.seek(wanted);
    QCOMPARE(driven.clock.time(), time);
    QCOMPARE(jumped.count(), 1);
    QCOMPARE(jumped.at(0).at(0).toDouble(), time);
    QCOMPARE(advanced.count(), 0);
    QVERIFY(!driven.clock.isRunning());
}

void tst_replayClock::ignoresASeekToNotANumber()
{
    handDriven_t driven;
    driven.clock.seek(1100.0);
    driven.clock.seek(NOT_A_NUMBER);
    QCOMPARE(driven.clock.time(), 1100.0);
}

void tst_replayClock::seeksWhileRunning()
{
    handDriven_t driven;
    driven.clock.setRunning(true);
    driven.pass(1.0);
    driven.realTime += 5.0; // lost: it is elsewhere now
    driven.clock.seek(1500.0);
    QVERIFY(driven.clock.isRunning());
    driven.pass(1.0);
    QCOMPARE(driven.clock.time(), 1501.0);
}

void tst_replayClock::stopsAtTheEnd()
{
    handDriven_t driven;
    driven.clock.seek(1599.0);
    driven.clock.setRunning(true);
    QSignalSpy running(&driven.clock, &replayClock_t::runningChanged);
    driven.pass(0.9);
    QCOMPARE(running.count(), 0);
    driven.pass(0.2);
    QCOMPARE(driven.clock.time(), 1600.0);
    QVERIFY(driven.clock.isAtEnd());
    QVERIFY(!driven.clock.isRunning());
    QCOMPARE(running.count(), 1);
    QCOMPARE(running.at(0).at(0).toBool(), false);
}

void tst_replayClock::stopsAtTheEndWhenPausedLate()
{
    handDriven_t driven;
    driven.clock.setRunning(true);
    QSignalSpy running(&driven.clock, &replayClock_t::runningChanged);
    driven.realTime += 700.0;
    driven.clock.setRunning(false);
    QCOMPARE(driven.clock.time(), 1600.0);
    QCOMPARE(running.count(), 1);
}

void tst_replayClock::replaysFromTheStartAfterTheEnd()
{
    handDriven_t driven;
    driven.clock.seek(1600.0);
    QSignalSpy jumped(&driven.clock, &replayClock_t::timeJumped);
    driven.clock.setRunning(true);
    QCOMPARE(driven.clock.time(), 1000.0);
    QCOMPARE(jumped.count(), 1);
    driven.pass(1.0);
    QCOMPARE(driven.clock.time(), 1001.0);
}

void tst_replayClock::mayBePausedBySomeoneWhoFollowsTheTime()
{
    handDriven_t driven;
    connect(&driven.clock, &replayClock_t::timeAdvanced, &driven.clock,
            [&driven] { driven.clock.setRunning(false); });
    driven.clock.setRunning(true);
    QSignalSpy running(&driven.clock, &replayClock_t::runningChanged);
    driven.pass(700.0); // over the end at once
    QVERIFY(!driven.clock.isRunning());
    QCOMPARE(running.count(), 1);
}

void tst_replayClock::emitsNothingWhenNothingChanges()
{
    handDriven_t driven;
    driven.clock.setRunning(true);
    driven.clock.setSpeed(2.0);
    QSignalSpy advanced(&driven.clock, &replayClock_t::timeAdvanced);
    QSignalSpy jumped(&driven.clock, &replayClock_t::timeJumped);
    QSignalSpy running(&driven.clock, &replayClock_t::runningChanged);
    QSignalSpy speed(&driven.clock, &replayClock_t::speedChanged);
    driven.clock.setRunning(true);
    driven.clock.setSpeed(2.0);
    driven.clock.seek(1000.0);
    driven.pass(0.0);
    QCOMPARE(advanced.count(), 0);
    QCOMPARE(jumped.count(), 0);
    QCOMPARE(running.count(), 0);
    QCOMPARE(speed.count(), 0);
}

void tst_replayClock::anEmptySpanIsAtItsEnd()
{
    handDriven_t driven;
    driven.clock.setSpan(5.0, 5.0);
    QVERIFY(driven.clock.isAtEnd());
    driven.clock.setRunning(true);
    driven.pass(1.0);
    QCOMPARE(driven.clock.time(), 5.0);
    QVERIFY(!driven.clock.isRunning());
}

ZORBIN_TEST_MAIN(tst_replayClock, QCoreApplication)
#include "tst_replayClock.moc"
