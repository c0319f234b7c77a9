#include "childProcess.h"

#include "messageRecorder.h"

#include <QApplication>
#include <QProcess>
#include <cstdio>
#ifdef ZORBIN_COUNTS_COVERAGE
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>
#endif

static const char childArgument[] = "--scenario";

// A process writes what it ran when it exits, so not after a fatal message. There a copy of it does
// so instead, which is given up if it can't.
static void writeCoverage()
{
#ifdef ZORBIN_COUNTS_COVERAGE
    const pid_t copy = fork();
    if (copy == 0) {
        alarm(10); // s
        std::exit(0);
    }
    waitpid(copy, nullptr, 0);
#endif
}

static void printMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (isOfTheSurroundings(text))
        return;
    std::printf("%s: %s\n", qPrintable(messageKind(type)), qPrintable(text));
    std::fflush(stdout);
    if (type == QtFatalMsg)
        writeCoverage();
}

childOutcome_t runChild(const QString& scenario, const QStringList& environment)
{
    QProcess child;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const QString& setting : environment) {
        const auto equals = setting.indexOf(QLatin1Char('='));
        if (equals < 0)
            variables.remove(setting);
        else
            variables.insert(setting.left(equals), setting.mid(equals + 1));
    }
    child.setProcessEnvironment(variables);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), {childArgument, scenario});
    if (!child.waitForFinished(60000 * patience()))
        qFatal("scenario %s did not finish: %s", qPrintable(scenario),
               qPrintable(child.errorString()));
    const QString output = QString::fromLocal8Bit(child.readAllStandardOutput());
    return {child.exitStatus() == QProcess::CrashExit, child.exitCode(),
            output.split(QLatin1Char('\n'), Qt::SkipEmptyParts)};
}

int runTestsOrScenario(int argc, char** argv, testCase_t& tests, const childScenarios_t& scenarios,
                       const bareChildScenarios_t& bareScenarios)
{
    const bool isChild = argc == 3 && qstrcmp(argv[1], childArgument) == 0;
    const QString name = isChild ? QString::fromLocal8Bit(argv[2]) : QString();
    if (isChild)
        qInstallMessageHandler(printMessage);
    if (const auto scenario = bareScenarios.value(name))
        return scenario(argc, argv);
    int failures = 0;
    {
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi); // as QTEST_MAIN() does
        const QApplication application(argc, argv);
        if (isChild) {
            const auto scenario = scenarios.value(name);
            if (!scenario)
                qFatal("there is no scenario %s", qPrintable(name));
            return scenario();
        }
        failures = runTests(tests, argc, argv);
    }
    return failures + messagesOutsideFunctions();
}
