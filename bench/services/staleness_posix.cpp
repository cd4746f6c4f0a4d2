#include "bench/services/own_directory_posix.h"

#include <zorvel/lockfile.h>

#include <benchmark/benchmark.h>

#include <ctime>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>

/// Whether a lock file is stale, once the clocks have been compared; beside the time of a file and nothing else.
namespace {

/// A lock file that was just refreshed.
class LockFile
{
public:
    LockFile() : m_path(m_directory.path() + "/.deploy_write_lock") { std::ofstream(m_path) << "0"; }

    const std::string& directory() const { return m_directory.path(); }
    const char* path() const { return m_path.c_str(); }

private:
    const zorvel::bench::OwnDirectory m_directory;
    const std::string m_path;
};

void ours(benchmark::State& state)
{
    const LockFile file;
    const boost::posix_time::ptime deadline(boost::posix_time::pos_infin);
    zvLockFileIsStale isStale(file.directory(), zvGetDefaultFSImp());
    isStale(file.path(), 30, deadline);
    for (auto _ : state) {
        if (isStale(file.path(), 30, deadline))
            state.SkipWithError("stale");
    }
}

/// Compared with the clock, as one has to.
void bareStat(benchmark::State& state)
{
    const LockFile file;
    struct stat status;
    for (auto _ : state) {
        if (::stat(file.path(), &status) != 0 || status.st_mtime + 30 < std::time(nullptr))
            state.SkipWithError("stale");
    }
}

/// What is prescribed and nothing else: the local time, and a time of the file that no client of a file server may
/// answer out of its memory.
void prescribedCalls(benchmark::State& state)
{
    const LockFile file;
    struct statx status;
    for (auto _ : state) {
        benchmark::DoNotOptimize(boost::posix_time::microsec_clock::local_time());
        if (::statx(AT_FDCWD, file.path(), AT_STATX_FORCE_SYNC, STATX_MTIME, &status) != 0)
            state.SkipWithError("gone");
    }
}

}  // namespace

BENCHMARK(ours)->Name("staleness/zorvel");
BENCHMARK(bareStat)->Name("staleness/stat");
BENCHMARK(prescribedCalls)->Name("staleness/clock-and-statx");
