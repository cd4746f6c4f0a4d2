#include "timer/thread_join.h"

#include "platform/thread_end.h"
#include "tests/unit/timer/calls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using namespace zorvel::test;
using zorvel::platform::hasEnded;
using zorvel::timer::joinEnding;

TEST(ThreadEnd, IsSeenBeforeTheJoin)
{
    Happening mayEnd;
    boost::thread thread([&] { mayEnd.waitFor(); });
    EXPECT_FALSE(hasEnded(thread.native_handle()));
    mayEnd.happen();
    EXPECT_TRUE(eventually([&] { return hasEnded(thread.native_handle()); }));
    thread.join();
}

TEST(ThreadJoin, WaitsForAThreadThatEndsSoon)
{
    for (int i = 0; i < 200; ++i) {
        std::atomic<bool> isOver(false);
        boost::thread thread([&] { isOver = true; });
        joinEnding(thread);
        EXPECT_TRUE(isOver);
        EXPECT_FALSE(thread.joinable());
    }
}

TEST(ThreadJoin, WaitsForAThreadThatTakesLongerThanALook)
{
    std::atomic<bool> isOver(false);
    boost::thread thread([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        isOver = true;
    });
    joinEnding(thread);
    EXPECT_TRUE(isOver);
    EXPECT_FALSE(thread.joinable());
}

}  // namespace
