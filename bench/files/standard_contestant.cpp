#include "bench/files/contestants.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string_view>

namespace zorvel {
namespace bench {

namespace fs = std::filesystem;

std::uint64_t Tally::entries() const
{
    benchmark::DoNotOptimize(m_bytes);
    return m_entries;
}

namespace {

typedef fs::path::string_type Text;

/// The paths are counted in the form that they have: nothing is converted.
void add(Tally& tally, const Text& path, bool isDirectory)
{
    tally.add(reinterpret_cast<const char*>(path.data()), path.size() * sizeof path[0], isDirectory);
}

std::uint64_t walk(const std::string& path)
{
    Tally tally;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
        add(tally, entry.path().native(), entry.is_directory());
    return tally.entries();
}

std::uint64_t size(const std::string& path)
{
    std::uint64_t total = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
        total += entry.is_regular_file() ? entry.file_size() : 0;
    return total;
}

std::uint64_t match(const std::string&)
{
    Tally tally;
    static const Text ending = fs::path(".txt").native();
    for (const std::string& folder : patternFolders()) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const Text& path = entry.path().native();
            if (path.size() >= ending.size() && path.compare(path.size() - ending.size(), Text::npos, ending) == 0)
                add(tally, path, entry.is_directory());
        }
    }
    return tally.entries();
}

std::uint64_t remove(const std::string& path)
{
    return fs::remove_all(path);
}

std::uint64_t create(const std::string& path)
{
    fs::create_directories(path);
    return 1;
}

}  // namespace

Contestant standardFilesystem()
{
    return {"std-filesystem", &walk, &size, &match, &remove, &create, &create};
}

}  // namespace bench
}  // namespace zorvel
