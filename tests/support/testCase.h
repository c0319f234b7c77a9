#pragma once
#include "patience.h"

#include <QApplication>
#include <QObject>
#include <QTest>

/// What every test class derives from. A function fails, beside what it checks itself,
/// - on a message of warning level or above that no messageRecorder_t has taken,
/// - if it leaves a top-level widget that wasn't there before.
class testCase_t : public QObject
{
    Q_OBJECT

protected:
    /// Runs before each function. A failure there ends the function.
    virtual void setUp() {}
    /// Runs after each function, also a failed one, before the function is looked at.
    virtual void tearDown() {}

private Q_SLOTS:
    void initTestCase_data(); // what QtTest calls before anything else
    virtual void init() final;
    virtual void cleanup() final;

private:
    QList<QWidget*> m_widgetsBefore; // top-level widgets; compared, never used
};

/// Runs all functions of \p tests, or those that the arguments name, and returns the number of
/// failures. Messages of warning level or above that come outside of functions count, too:
/// messagesOutsideFunctions() tells them once the application is gone.
int runTests(testCase_t& tests, int argc, char** argv);

/// How many messages of warning level or above came after the last function. Prints them.
int messagesOutsideFunctions();

template <class application_t, class tests_t>
int testMain(int argc, char** argv)
{
    int failures = 0;
    {
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi); // as QTEST_MAIN() does
        application_t application(argc, argv);
        tests_t tests;
        failures = runTests(tests, argc, argv);
    }
    return failures + messagesOutsideFunctions();
}

/// The main function of a test program: ZORBIN_TEST_MAIN(tst_ruler, QApplication).
#define ZORBIN_TEST_MAIN(tests_t, application_t)                                                   \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        return testMain<application_t, tests_t>(argc, argv);                                       \
    }
