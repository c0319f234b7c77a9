#include "testCase.h"

#include <zorbin/timestamp.h>
#include <zorbin/usleep.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <atomic>
#include <csignal>
#include <pthread.h>
#include <thread>

/// The time stamps and the sleep of libzorbin.
class tst_timestamp : public testCase_t
{
    Q_OBJECT

private Q_SLOTS:
    void isTheWallClock();
    void resolvesMicroseconds();
    void sleepsAtLeastAsLongAsAsked_data();
    void sleepsAtLeastAsLongAsAsked();
    void sleepsOnWhileSignalsArrive();
};

void tst_timestamp::isTheWallClock()
{
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const double stamp = zorbin::gettimestamp();
    const qint64 after = QDateTime::currentMSecsSinceEpoch();

    QVERIFY(stamp >= static_cast<double>(before) / 1000.0);
    QVERIFY(stamp < static_cast<double>(after + 1) / 1000.0); // the reference truncates to ms
}

void tst_timestamp::resolvesMicroseconds()
{
    // The smallest step of a hundred is looked for, since the process may be interrupted.
    double smallest = 1.0;
    for (int i = 0; i < 100; ++i) {
        const double first = zorbin::gettimestamp();
        double next = first;
        while (next == first)
            next = zorbin::gettimestamp();
        smallest = qMin(smallest, qAbs(next - first));
    }
    QVERIFY2(smallest < 5e-6, qPrintable(QString::number(smallest)));
}

void tst_timestamp::sleepsAtLeastAsLongAsAsked_data()
{
    QTest::addColumn<unsigned>("microseconds");

    QTest::newRow("nothing") << 0u;
    QTest::newRow("the shortest") << 1u;
    QTest::newRow("a millisecond") << 1000u;
    QTest::newRow("20 ms") << 20000u;
    QTest::newRow("more than a second") << 1050000u;
}

void tst_timestamp::sleepsAtLeastAsLongAsAsked()
{
    QFETCH(unsigned, microseconds);
    QElapsedTimer timer;
    timer.start();
    zorbinport::usleep(microseconds);
    const qint64 slept = timer.nsecsElapsed();

    QVERIFY2(slept >= microseconds * 1000LL, qPrintable(QString::number(slept)));
    // Generous, for a loaded machine; it catches a wrong unit.
    QVERIFY2(slept < microseconds * 1000LL + 2000000000LL, qPrintable(QString::number(slept)));
}

static std::atomic<int> signalsSeen{0};

void tst_timestamp::sleepsOnWhileSignalsArrive()
{
    struct sigaction action = {};
    action.sa_handler = [](int) { ++signalsSeen; };
    struct sigaction previous = {};
    QCOMPARE(sigaction(SIGUSR1, &action, &previous), 0); // without SA_RESTART

    std::atomic<bool> done{false};
    const pthread_t sleeper = pthread_self();
    std::thread disturber([&done, sleeper] {
        while (!done) {
            pthread_kill(sleeper, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    QElapsedTimer timer;
    timer.start();
    zorbinport::usleep(100000);
    const qint64 slept = timer.nsecsElapsed();
    done = true;
    disturber.join();
    sigaction(SIGUSR1, &previous, nullptr);

    QVERIFY2(slept >= 100000000LL, qPrintable(QString::number(slept)));
    QVERIFY2(signalsSeen >= 2, qPrintable(QString::number(signalsSeen)));
}

ZORBIN_TEST_MAIN(tst_timestamp, QCoreApplication)
#include "tst_timestamp.moc"
