#include <zorvel/modules.h>

#include <benchmark/benchmark.h>

#include <cstring>

#include <link.h>
#include <unistd.h>

/// The full path of a loaded library, found by the beginning of its file's name.
namespace {

const char* const wanted = "libgcc_s.so";

char path[2562];

void ours(benchmark::State& state)
{
    for (auto _ : state) {
        if (!zvGetLoadedModuleFullPath(path, wanted, nullptr, 0))
            state.SkipWithError("not found");
        benchmark::DoNotOptimize(path[0]);
    }
}

int isWanted(dl_phdr_info* info, std::size_t, void* found)
{
    const char* const slash = std::strrchr(info->dlpi_name, '/');
    if (std::strncmp(slash ? slash + 1 : info->dlpi_name, wanted, std::strlen(wanted)) != 0)
        return 0;
    std::strcpy(path, info->dlpi_name);
    *static_cast<bool*>(found) = true;
    return 1;
}

bool iterate()
{
    bool found = false;
    ::dl_iterate_phdr(&isWanted, &found);
    return found;
}

void bare(benchmark::State& state)
{
    for (auto _ : state) {
        if (!iterate())
            state.SkipWithError("not found");
        benchmark::DoNotOptimize(path[0]);
    }
}

/// The executable is looked at first, and its path is to be had of the system only.
void withExecutable(benchmark::State& state)
{
    char executable[2562];
    for (auto _ : state) {
        benchmark::DoNotOptimize(::readlink("/proc/self/exe", executable, sizeof executable));
        if (!iterate())
            state.SkipWithError("not found");
        benchmark::DoNotOptimize(path[0]);
    }
}

}  // namespace

BENCHMARK(ours)->Name("module-lookup/zorvel");
BENCHMARK(bare)->Name("module-lookup/dl_iterate_phdr");
BENCHMARK(withExecutable)->Name("module-lookup/readlink-and-iterate");
