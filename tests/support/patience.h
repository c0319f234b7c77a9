#pragma once
#include <QDeadlineTimer>
#include <QTest>

/// How long QTRY_VERIFY() and its like wait, in milliseconds: five seconds, times
/// ZORBIN_TEST_PATIENCE.
int patienceMs();

/// ZORBIN_TEST_PATIENCE from the environment: by how much a loaded machine may be slower. 1 or
/// more.
int patience();

// Not by way of Qt's macros with a limit, which the compiler warns of here with Qt 6.8.
#define ZORBIN_WAIT_UNTIL(condition)                                                               \
    for (QDeadlineTimer waitLimit(patienceMs()); !(condition) && !waitLimit.hasExpired();)         \
    QTest::qWait(10)

#undef QTRY_VERIFY
#define QTRY_VERIFY(expression)                                                                    \
    do {                                                                                           \
        ZORBIN_WAIT_UNTIL(expression);                                                             \
        QVERIFY(expression);                                                                       \
    } while (false)
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected)                                                             \
    do {                                                                                           \
        ZORBIN_WAIT_UNTIL((actual) == (expected));                                                 \
        QCOMPARE(actual, expected);                                                                \
    } while (false)
