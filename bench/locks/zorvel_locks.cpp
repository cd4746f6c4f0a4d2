// zorvel's locks:
//
//   locks_zorvel exclusive|read|write LATENCY_MS DIR cycles COUNT
//   locks_zorvel exclusive|read|write LATENCY_MS DIR contend LOG HOLD_MS
//   locks_zorvel refresh-thread LATENCY_MS DIR cycles COUNT    the timer of a lock alone: start and cancel
//   locks_zorvel held DIR COUNT
//   locks_zorvel threads COUNT

#include <zorvel/dirlock.h>
#include <zorvel/timer.h>

#include "bench/locks/contender.h"
#include "bench/locks/delaying_fs.h"
#include "bench/locks/held_locks.h"

#include <boost/make_shared.hpp>

#include <chrono>
#include <cmath>
#include <exception>
#include <iostream>
#include <memory>
#include <thread>

namespace {

using namespace zorvel::bench;

typedef std::vector<std::string> Words;

boost::shared_ptr<zvAbstractFS> fileSystem(const std::string& latencyMsec)
{
    const std::chrono::microseconds latency(std::llround(std::stod(latencyMsec) * 1000));
    if (latency.count() == 0)
        return zvGetDefaultFSImp();
    return boost::make_shared<DelayingFs>(zvGetDefaultFSImp(), latency);
}

template <class Held>
Lock lockOf(const std::shared_ptr<Held>& held)
{
    return Lock{[=] { return held->acquire(false); }, [=] { held->release(); }, &ownProcessorTime};
}

/// As a lock alone has it: each start comes after a pause of the poll interval.
Lock refreshThread()
{
    const auto timer = std::make_shared<boost::shared_ptr<zvTimerTask>>();
    const auto start = [=] {
        *timer = zvSetTimer([] {}, boost::posix_time::seconds(1), true);
        return true;
    };
    const auto pause = [] { std::this_thread::sleep_for(std::chrono::milliseconds(5)); };
    return Lock{start, [=] { (*timer)->cancel(); }, &ownProcessorTime, pause};
}

Lock makeLock(const std::string& kind, const std::string& directory, const boost::shared_ptr<zvAbstractFS>& fs)
{
    if (kind == "refresh-thread")
        return refreshThread();
    const zvDirectoryReadWriteLock both(directory, fs);
    if (kind == "read")
        return lockOf(std::make_shared<zvDirectoryReadWriteLock::ReadLock>(both.getReadLock()));
    if (kind == "write")
        return lockOf(std::make_shared<zvDirectoryReadWriteLock::WriteLock>(both.getWriteLock()));
    return lockOf(std::make_shared<zvDirectoryExclusiveLock>(directory, "", fs));
}

int run(const Words& words)
{
    if (words.size() == 3 && words[0] == "held")
        return printHeldLocks(words[1], std::stoi(words[2]));
    if (words.size() == 2 && words[0] == "threads")
        return printIdleThreads(std::stoi(words[1]));
    if (words.size() < 4) {
        std::cerr << "see the beginning of zorvel_locks.cpp" << std::endl;
        return 2;
    }
    return carryOut(makeLock(words[0], words[2], fileSystem(words[1])), Words(words.begin() + 3, words.end()));
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return run(wordsOf(argc, argv));
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
