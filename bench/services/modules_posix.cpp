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

// What is prescribed and nothing else, by bare calls: a snapshot of where the modules are; for each up to the one
// wanted the name that the loader, or for the executable the system, has of it, with the separators of the library;
// the path made full; the name looked for in it.

const std::size_t mostModules = 128;

struct Snapshot
{
    void* modules[mostModules];
    std::size_t count;
};

/// The kernel's own has a name that is no path, and is left out.
int addModule(dl_phdr_info* info, std::size_t, void* data)
{
    if (info->dlpi_name[0] != '\0' && info->dlpi_name[0] != '/')
        return 0;
    Snapshot& snapshot = *static_cast<Snapshot*>(data);
    for (int i = 0; i < info->dlpi_phnum && snapshot.count < mostModules; ++i) {
        if (info->dlpi_phdr[i].p_type != PT_LOAD)
            continue;
        snapshot.modules[snapshot.count++] = reinterpret_cast<void*>(info->dlpi_addr + info->dlpi_phdr[i].p_vaddr);
        break;
    }
    return 0;
}

struct NameOfModule
{
    void* module;
    char* name;
};

/// The loader's name goes with its module, so it is copied while the loader waits.
int copyName(dl_phdr_info*, std::size_t, void* data)
{
    const NameOfModule& asked = *static_cast<NameOfModule*>(data);
    dl_find_object found;
    if (::_dl_find_object(asked.module, &found) == 0)
        std::strcpy(asked.name, found.dlfo_link_map->l_name);
    return 1;
}

/// Sixteen bytes at a step, up to fifteen more than there are.
void turnSeparators(char* name, char from, char to)
{
    const std::size_t length = std::strlen(name);
    for (std::size_t i = 0; i < length; i += 16) {
        char block[16];
        std::memcpy(block, name + i, sizeof block);
        for (char& byte : block)
            byte = byte == from ? to : byte;
        std::memcpy(name + i, block, sizeof block);
    }
}

void nameOf(void* module, char* name)
{
    name[0] = '\0';
    NameOfModule asked = {module, name};
    ::dl_iterate_phdr(&copyName, &asked);
    if (!name[0]) {
        const ssize_t length = ::readlink("/proc/self/exe", name, 2561);
        name[length > 0 ? length : 0] = '\0';
    }
    turnSeparators(name, '/', '\\');
}

/// The least that can be done: no name in it is "." or "..", or may be.
bool makeFull(const char* name, char* full)
{
    if (name[0] != '\\' || std::strstr(name, "\\."))
        return false;
    std::strcpy(full, name);
    return true;
}

bool lookUp()
{
    Snapshot snapshot;
    snapshot.count = 0;
    ::dl_iterate_phdr(&addModule, &snapshot);
    char name[2562 + 15];
    char full[2562 + 15];
    for (std::size_t i = 0; i < snapshot.count; ++i) {
        nameOf(snapshot.modules[i], name);
        if (!makeFull(name, full))
            return false;
        const char* const match = std::strstr(full, wanted);
        if (!match || std::strchr(match, '\\'))
            continue;
        std::strcpy(path, full);
        return true;
    }
    return false;
}

void bareSteps(benchmark::State& state)
{
    for (auto _ : state) {
        if (!lookUp())
            state.SkipWithError("not found");
        benchmark::DoNotOptimize(path[0]);
    }
}

}  // namespace

BENCHMARK(ours)->Name("module-lookup/zorvel");
BENCHMARK(bare)->Name("module-lookup/dl_iterate_phdr");
BENCHMARK(bareSteps)->Name("module-lookup/bare-steps");
