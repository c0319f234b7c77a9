#include "runBenchmarks.h"

#include <QApplication>
#include <benchmark/benchmark.h>

int runBenchmarks(int argc, char** argv, void (*describe)())
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (describe != nullptr)
        describe();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
