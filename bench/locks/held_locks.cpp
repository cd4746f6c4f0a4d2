#include "bench/locks/held_locks.h"

#include <zorvel/dirlock.h>

#include <condition_variable>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace zorvel {
namespace bench {

namespace {

struct Use
{
    long residentKib = 0;
    long threads = 0;
};

Use currentUse()
{
    Use use;
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:")
            status >> use.residentKib;
        else if (word == "Threads:")
            status >> use.threads;
    }
    return use;
}

/// Makes one more of something, which stays.
typedef std::function<void(int number)> More;

/// The first one brings what is there once only.
void printUseOf(int count, const More& more)
{
    more(0);
    const Use before = currentUse();
    for (int i = 1; i < count; ++i)
        more(i);
    const Use after = currentUse();
    std::cout << after.residentKib - before.residentKib << ' ' << after.threads - before.threads << std::endl;
}

/// Threads that wait for the end.
class IdleThreads
{
public:
    ~IdleThreads()
    {
        {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_ended = true;
        }
        m_end.notify_all();
        for (std::thread& thread : m_threads)
            thread.join();
    }

    void add()
    {
        m_threads.emplace_back([this] {
            std::unique_lock<std::mutex> guard(m_mutex);
            m_end.wait(guard, [this] { return m_ended; });
        });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_ended = false;
    std::vector<std::thread> m_threads;
};

}  // namespace

int printHeldLocks(const std::string& directory, int count)
{
    std::vector<std::unique_ptr<zvDirectoryExclusiveLock>> locks;
    bool allHeld = true;
    printUseOf(count, [&](int number) {
        const std::string place = directory + "/" + std::to_string(number);
        locks.emplace_back(new zvDirectoryExclusiveLock(place, "", zvGetDefaultFSImp()));
        allHeld = locks.back()->acquire(false) && allHeld;
    });
    return allHeld ? 0 : 1;
}

int printIdleThreads(int count)
{
    IdleThreads threads;
    printUseOf(count, [&](int) { threads.add(); });
    return 0;
}

}  // namespace bench
}  // namespace zorvel
