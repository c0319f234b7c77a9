#pragma once
#include "testCase.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>

/// What a child process did.
struct childOutcome_t
{
    bool crashed;     ///< ended by a signal, as a fatal message does
    int exitCode;     ///< meaningful unless it crashed
    QStringList said; ///< its output: what it printed, and each message as "KIND: TEXT"
};

/// Scenarios that need a process of their own, by name. Each returns the exit code.
using childScenarios_t = QMap<QString, std::function<int()>>;

/// Runs this test program again for one scenario. \p environment holds settings as "NAME=VALUE";
/// "NAME" alone removes a variable.
childOutcome_t runChild(const QString& scenario, const QStringList& environment = {});

/// Scenarios that make their applications themselves, from main()'s arguments.
using bareChildScenarios_t = QMap<QString, std::function<int(int& argc, char** argv)>>;

/// The main function of a test program with such scenarios.
int runTestsOrScenario(int argc, char** argv, testCase_t& tests, const childScenarios_t& scenarios,
                       const bareChildScenarios_t& bareScenarios = {});
