#include "bench/support/peers.h"
#include "bench/timers/asio_loop.h"

#include <zorvel/timer.h>

#include <benchmark/benchmark.h>
#include <boost/thread/thread.hpp>

#include <atomic>

/// A timer is set for an hour from now and cancelled at once.
namespace {

using zorvel::bench::AsioLoop;

void ours(benchmark::State& state)
{
    std::atomic<int> calls(0);
    for (auto _ : state)
        zvSetTimer([&calls] { ++calls; }, boost::posix_time::hours(1), false)->cancel();
    benchmark::DoNotOptimize(calls.load());
}

/// Returns before the handler was told; it is told later, on the thread of the loop.
void asio(benchmark::State& state)
{
    std::atomic<int> calls(0);
    AsioLoop loop;
    for (auto _ : state) {
        boost::asio::steady_timer timer(loop.context(), std::chrono::hours(1));
        timer.async_wait([&calls](const boost::system::error_code& code) { calls += !code; });
        timer.cancel();
    }
    benchmark::DoNotOptimize(calls.load());
}

/// With what our cancel() promises: when it returns, the handler runs no more.
void asioWaited(benchmark::State& state)
{
    std::atomic<int> calls(0);
    AsioLoop loop;
    for (auto _ : state) {
        std::atomic<bool> isOver(false);
        boost::asio::steady_timer timer(loop.context(), std::chrono::hours(1));
        timer.async_wait([&](const boost::system::error_code& code) {
            calls += !code;
            isOver = true;
        });
        timer.cancel();
        while (!isOver)
            std::this_thread::yield();
    }
    benchmark::DoNotOptimize(calls.load());
}

/// A timer has a thread of its own from the moment at which it is set: the thread alone.
void thread(benchmark::State& state)
{
    for (auto _ : state) {
        boost::thread sleeper([] { boost::this_thread::sleep(boost::posix_time::hours(1)); });
        sleeper.interrupt();
        sleeper.join();
    }
}

}  // namespace

BENCHMARK(ours)->Name("timer-start-cancel/zorvel")->UseRealTime();
BENCHMARK(asio)->Name("timer-start-cancel/asio")->UseRealTime();
BENCHMARK(asioWaited)->Name("timer-start-cancel/asio-waited")->UseRealTime();
BENCHMARK(thread)->Name("timer-start-cancel/thread")->UseRealTime();

int main(int argc, char** argv)
{
    benchmark::AddCustomContext("timers", zorvel::bench::versionsOfLibraries());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
