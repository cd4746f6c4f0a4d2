#include "tests/multiprocess/sweep.h"

#include <zorvel/dirlock.h>

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace zorvel {
namespace test {

namespace {

int lastPlace(const std::vector<std::string>& names)
{
    const std::string queueFile = ".deploy_lock.";
    int last = 0;
    for (const std::string& name : names)
        if (name.compare(0, queueFile.size(), queueFile) == 0)
            last = std::max(last, std::atoi(name.c_str() + queueFile.size()));
    return last;
}

}  // namespace

void sweepQueue(const Scene& scene, const boost::shared_ptr<zvAbstractFS>& fs)
{
    const int waiters = lastPlace(scene.lockFiles());
    zvDirectoryExclusiveLock holder(scene.directory(), "holder", fs);
    EXPECT_TRUE(holder.acquire(false));
    boost::thread_group threads;
    for (int i = 0; i < waiters; ++i)
        threads.create_thread([&scene, &fs] {
            zvDirectoryExclusiveLock waiter(scene.directory(), "waiter", fs);
            EXPECT_TRUE(waiter.acquire(false));
        });
    const auto isAged = [&scene](const std::string& name) { return scene.aged(name); };
    for (std::vector<std::string> left = scene.lockFiles(); std::any_of(left.begin(), left.end(), isAged);
         left = scene.lockFiles())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    holder.release();
    threads.join_all();
}

}  // namespace test
}  // namespace zorvel
