#include "bench/services/own_directory_posix.h"

#include <benchmark/benchmark.h>

#include <stdlib.h>

/// Temporary names are made in an empty directory of the program's own, by everybody.
int main(int argc, char** argv)
{
    const zorvel::bench::OwnDirectory directory;
    setenv("TEMP", directory.path().c_str(), 1);
    setenv("TMPDIR", directory.path().c_str(), 1);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
