#pragma once

/// The main function of a program bench_NAME: runs its benchmarks as the command line says, in a
/// QApplication. Without a display Qt draws on its offscreen platform. \p describe, if there is
/// one, is called before them and may add to what is printed of the circumstances. Returns the exit
/// status.
int runBenchmarks(int argc, char** argv, void (*describe)() = nullptr);
