#include <zorvel/fsutil.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// A name in the directory for temporary files that nothing has; nothing is created.
namespace {

void ours(benchmark::State& state)
{
    char name[2562 + 9];
    for (auto _ : state)
        benchmark::DoNotOptimize(zvGetTempName(name));
}

/// In /tmp, whatever the environment says.
void withTmpnam(benchmark::State& state)
{
    char name[L_tmpnam];
    for (auto _ : state)
        benchmark::DoNotOptimize(::tmpnam_r(name));
}

std::string pattern()
{
    return std::string(std::getenv("TEMP")) + "/tpXXXXXX";
}

void withMktemp(benchmark::State& state)
{
    const std::string unused = pattern();
    char name[256];
    for (auto _ : state) {
        std::strcpy(name, unused.c_str());
        benchmark::DoNotOptimize(::mktemp(name));
    }
}

/// Allocates the name, which the caller frees.
void withTempnam(benchmark::State& state)
{
    for (auto _ : state) {
        char* const name = ::tempnam(nullptr, "tp");
        benchmark::DoNotOptimize(name);
        std::free(name);
    }
}

/// The question whether a name is taken, asked once, of another name each time: the system remembers the ones from
/// before.
void oneQuestion(benchmark::State& state)
{
    std::string name = pattern();
    struct stat status;
    unsigned number = 0;
    for (auto _ : state) {
        ++number;
        for (std::size_t i = 1; i <= 6; ++i)
            name[name.size() - i] = static_cast<char>('A' + (number >> (4 * i - 4)) % 16);
        if (::fstatat(AT_FDCWD, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            state.SkipWithError("taken");
    }
}

}  // namespace

BENCHMARK(ours)->Name("temporary-name/zorvel");
BENCHMARK(withTmpnam)->Name("temporary-name/tmpnam_r");
BENCHMARK(withMktemp)->Name("temporary-name/mktemp");
BENCHMARK(withTempnam)->Name("temporary-name/tempnam");
BENCHMARK(oneQuestion)->Name("temporary-name/fstatat");
