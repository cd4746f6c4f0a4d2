#pragma once

#include "bench/paths/texts.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <locale>
#include <string>
#include <utility>

namespace zorvel {
namespace bench {

/// A locale for the C library and the C++ library, for as long as it lives.
class LocaleScope
{
public:
    explicit LocaleScope(const char* name) : m_before(std::locale::global(std::locale(name))) {}
    ~LocaleScope() { std::locale::global(m_before); }

    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;

private:
    std::locale m_before;
};

/// Registers ROW-SUFFIX/CONTESTANT: work(state, texts) in the locale of the code page's texts.
template <class Work>
void inCodePage(const CodePage& page, const std::string& row, const char* contestant, Work work)
{
    const std::string name = row + "-" + page.suffix + "/" + contestant;
    benchmark::RegisterBenchmark(name.c_str(), [&page, work](benchmark::State& state) {
        const LocaleScope scope(page.locale);
        work(state, page.texts);
    });
}

/// The same in ASCII and in code page 932.
template <class Work>
void inBothCodePages(const std::string& row, const char* contestant, Work work)
{
    for (const CodePage& page : codePages())
        inCodePage(page, row, contestant, work);
}

/// The loop that is measured: calls work(i) for one text after another and uses what it gives.
template <class Work>
void overTexts(benchmark::State& state, std::size_t count, Work work)
{
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(work(i));
        if (++i == count)
            i = 0;
    }
}

/// Ends a benchmark of which somebody gives another answer than the others.
inline bool require(benchmark::State& state, bool holds)
{
    if (!holds)
        state.SkipWithError("gives another answer than the others");
    return holds;
}

void registerNormalise();
void registerJoin();
void registerCompare();
void registerFind();
void registerScan();

}  // namespace bench
}  // namespace zorvel
