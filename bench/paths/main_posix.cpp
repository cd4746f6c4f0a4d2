#include "bench/paths/scene.h"
#include "bench/support/peers.h"

#include <stdlib.h>

/// The locales are looked for where the build made them.
int main(int argc, char** argv)
{
    setenv("LOCPATH", ZORVEL_BENCH_LOCALES, 1);
    zorvel::bench::registerNormalise();
    zorvel::bench::registerJoin();
    zorvel::bench::registerCompare();
    zorvel::bench::registerFind();
    zorvel::bench::registerScan();
    benchmark::AddCustomContext("paths", zorvel::bench::versionsOfLibraries());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
