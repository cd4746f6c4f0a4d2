#include "bench/services/own_directory_posix.h"
#include "bench/support/peers.h"

#include <benchmark/benchmark.h>
#include <fmt/core.h>

#include <stdlib.h>

/// Temporary names are made in an empty directory of the program's own, by everybody.
int main(int argc, char** argv)
{
    const zorvel::bench::OwnDirectory directory;
    setenv("TEMP", directory.path().c_str(), 1);
    setenv("TMPDIR", directory.path().c_str(), 1);
    const std::string fmtVersion = ", fmt " + std::to_string(FMT_VERSION);
    benchmark::AddCustomContext("services", zorvel::bench::versionsOfLibraries() + fmtVersion);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
