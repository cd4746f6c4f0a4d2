#include "bench/semaphore/semaphores_posix.h"
#include "bench/support/peers.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <thread>

#include <unistd.h>

/// Acquire and release while nobody else wants it. The process has a second thread, as processes do that need a
/// semaphore.
namespace {

template <class Semaphore>
void pair(benchmark::State& state, const char* kind)
{
    const std::string name = "zorvel-bench-" + std::string(kind) + std::to_string(::getpid());
    Semaphore semaphore(name);
    Semaphore::remove(name);
    for (auto _ : state) {
        if (!semaphore.acquire() || !semaphore.release())
            state.SkipWithError("refused");
    }
}

void ours(benchmark::State& state)
{
    pair<zorvel::bench::OurSemaphore>(state, "zorvel");
}

void posix(benchmark::State& state)
{
    pair<zorvel::bench::PosixSemaphore>(state, "posix");
}

void boostInterprocess(benchmark::State& state)
{
    pair<zorvel::bench::BoostSemaphore>(state, "boost");
}

}  // namespace

BENCHMARK(ours)->Name("semaphore-pair/zorvel");
BENCHMARK(posix)->Name("semaphore-pair/sem_t");
BENCHMARK(boostInterprocess)->Name("semaphore-pair/boost-named");

int main(int argc, char** argv)
{
    benchmark::AddCustomContext("semaphore", zorvel::bench::versionsOfLibraries());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    // Nothing is to profit from a process that has no second thread yet.
    std::thread sleeper([] { ::pause(); });
    sleeper.detach();
    benchmark::RunSpecifiedBenchmarks();
    std::_Exit(0);
}
