#include "bench/files/contest.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <utility>

namespace zorvel {
namespace bench {

namespace {

typedef std::chrono::steady_clock Clock;

std::string nameOf(const std::string& row, const char* contestant)
{
    return row + '/' + contestant;
}

}  // namespace

LookRow::LookRow(const std::string& name, const std::string& path, std::uint64_t expected, int repetitions)
    : m_name(name), m_path(path), m_expected(expected), m_repetitions(repetitions)
{
}

void LookRow::add(const char* contestant, Work work) const
{
    if (!work)
        return;
    const auto run = [row = *this, work](benchmark::State& state) {
        for (auto _ : state) {
            const std::uint64_t found = work(row.m_path);
            if (found != row.m_expected && found != succeeded)
                state.SkipWithError("it did not find what is there");
        }
    };
    benchmark::RegisterBenchmark(nameOf(m_name, contestant).c_str(), run)
        ->Iterations(1)
        ->Repetitions(m_repetitions)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

ChangeRow::ChangeRow(const std::string& name, int rounds, int repetitions, Preparation prepare, Check check)
    : m_name(name),
      m_rounds(rounds),
      m_repetitions(repetitions),
      m_prepare(std::move(prepare)),
      m_check(std::move(check))
{
}

void ChangeRow::add(const char* contestant, Work work) const
{
    if (!work)
        return;
    const auto run = [row = *this, work](benchmark::State& state) {
        for (auto _ : state) {
            const std::string path = row.m_prepare();
            const Clock::time_point begin = Clock::now();
            const bool isDone = work(path) != 0;
            state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
            if (!isDone || !row.m_check(path))
                state.SkipWithError("it did not do what was asked");
        }
    };
    benchmark::RegisterBenchmark(nameOf(m_name, contestant).c_str(), run)
        ->Iterations(m_rounds)
        ->Repetitions(m_repetitions)
        ->UseManualTime()
        ->Unit(m_rounds > 1 ? benchmark::kMicrosecond : benchmark::kMillisecond);
}

}  // namespace bench
}  // namespace zorvel
