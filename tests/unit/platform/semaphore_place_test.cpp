#include "platform/process.h"
#include "platform/semaphore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

using namespace zorvel::platform;

namespace {

std::string name()
{
    return "semaphore-place-test-" + std::to_string(processId());
}

void* opened(const std::string& what = name())
{
    void* const handle = createSemaphore(what, 1, 1);
    EXPECT_NE(nullptr, handle);
    return handle;
}

void expectLeadsNowhere(void* handle)
{
    errno = 0;
    EXPECT_EQ(waitFailed, waitForSemaphore(handle, 0));
    EXPECT_EQ(EBADF, errno);
    errno = 0;
    EXPECT_EQ(waitFailed, waitForSemaphore(handle, 10));
    EXPECT_EQ(EBADF, errno);
    errno = 0;
    EXPECT_FALSE(releaseSemaphore(handle));
    EXPECT_EQ(EBADF, errno);
    errno = 0;
    EXPECT_EQ(0, closeSemaphore(handle));
    EXPECT_EQ(EBADF, errno);
}

int mappings()
{
    int count = 0;
    std::ifstream lines("/proc/self/maps");
    for (std::string line; std::getline(lines, line);)
        ++count;
    return count;
}

}  // namespace

TEST(SemaphorePlace, NoHandleIsGivenTwice)
{
    std::set<void*> handles;
    for (int i = 0; i < 3000; ++i) {
        void* const handle = opened();
        EXPECT_TRUE(handles.insert(handle).second) << i;
        EXPECT_EQ(waitSucceeded, waitForSemaphore(handle, 0));
        EXPECT_NE(0, closeSemaphore(handle));
    }
    // Also the oldest, at the place of which others were open since.
    void* const open = opened();
    for (void* const handle : handles)
        expectLeadsNowhere(handle);
    expectLeadsNowhere(nullptr);
    EXPECT_EQ(waitSucceeded, waitForSemaphore(open, 0)) << "nobody took it by a handle that is closed";
    EXPECT_NE(0, closeSemaphore(open));
}

TEST(SemaphorePlace, OpeningAndClosingLeavesNoMappingsBehind)
{
    for (int i = 0; i < 1000; ++i)
        closeSemaphore(opened());
    const int before = mappings();
    for (int i = 0; i < 3000; ++i)
        closeSemaphore(opened());
    EXPECT_GE(before + 2, mappings());
}

TEST(SemaphorePlace, ManyAreOpenAtOnce)
{
    std::vector<void*> handles;
    for (int i = 0; i < 300; ++i)
        handles.push_back(opened(name() + "-" + std::to_string(i)));
    for (void* const handle : handles)
        EXPECT_EQ(waitSucceeded, waitForSemaphore(handle, 0));
    for (void* const handle : handles) {
        EXPECT_EQ(waitTimedOut, waitForSemaphore(handle, 0));
        EXPECT_TRUE(releaseSemaphore(handle));
        errno = 0;
        EXPECT_FALSE(releaseSemaphore(handle));
        EXPECT_EQ(EOVERFLOW, errno);
        EXPECT_NE(0, closeSemaphore(handle));
    }
}

/// Objects that share a handle may be used by different threads: who closes it does not take the memory away.
TEST(SemaphorePlace, IsClosedWhileOthersUseIt)
{
    for (int i = 0; i < 100; ++i) {
        void* const handle = opened();
        std::atomic<int> started(0);
        const auto use = [&] {
            ++started;
            while (waitForSemaphore(handle, 1) != waitFailed)
                releaseSemaphore(handle);
        };
        std::thread one(use);
        std::thread other(use);
        while (started < 2)
            std::this_thread::yield();
        EXPECT_NE(0, closeSemaphore(handle));
        one.join();
        other.join();
        expectLeadsNowhere(handle);
    }
}
