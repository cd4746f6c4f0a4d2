#include "bench/timers/asio_loop.h"
#include "bench/timers/measured_child_posix.h"
#include "bench/timers/rows.h"

#include <zorvel/timer.h>

#include <boost/thread/thread.hpp>

#include <filesystem>
#include <fstream>
#include <memory>

#include <unistd.h>

namespace zorvel {
namespace bench {
namespace {

double residentKiB()
{
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1024.0;
}

int threads()
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task"))
        count += entry.path().empty() ? 0 : 1;
    return count;
}

/// They live until the child ends.
void setOurs(int count)
{
    for (int i = 0; i < count; ++i)
        zvSetTimer([] {}, boost::posix_time::hours(1), true);
}

void setAsio(int count)
{
    AsioLoop* const loop = new AsioLoop;
    for (int i = 0; i < count; ++i) {
        const auto timer = std::make_shared<boost::asio::steady_timer>(loop->context(), std::chrono::hours(1));
        timer->async_wait([timer](const boost::system::error_code&) {});
    }
}

/// The threads of timers alone.
void setThreads(int count)
{
    for (int i = 0; i < count; ++i)
        boost::thread([] { boost::this_thread::sleep(boost::posix_time::hours(1)); }).detach();
}

/// Memory and threads more than before, once every new thread has gone to sleep.
std::vector<double> cost(void (*set)(int), int count)
{
    const double before = residentKiB();
    const int threadsBefore = threads();
    set(count);
    ::usleep(200000);
    return {residentKiB() - before, static_cast<double>(threads() - threadsBefore)};
}

struct Contestant
{
    const char* name;
    void (*set)(int count);
};

const Contestant contestants[] = {{"zorvel", &setOurs}, {"asio", &setAsio}, {"threads", &setThreads}};

void measureCount(RowFile& rows, int count, const Contestant& contestant)
{
    const std::vector<double> taken = measuredInChild([&] { return cost(contestant.set, count); });
    rows.addAt("timer-memory", contestant.name, count, "KiB", taken.at(0));
    if (count != 200)
        return;
    rows.add("timer-memory-200", contestant.name, "KiB", taken.at(0));
    rows.add("timer-threads-200", contestant.name, "threads", taken.at(1));
}

}  // namespace

void measureMemory(RowFile& rows, int rounds)
{
    for (int round = 0; round < rounds; ++round) {
        for (const int count : {10, 50, 100, 200}) {
            for (const Contestant& contestant : contestants)
                measureCount(rows, count, contestant);
        }
    }
}

}  // namespace bench
}  // namespace zorvel
