#include "platform/tick_count.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace zorvel::platform;

namespace {

/// Milliseconds since the start of the system as it says itself, in
/// hundredths of a second.
std::uint64_t uptime()
{
    double seconds = 0;
    std::ifstream("/proc/uptime") >> seconds;
    return static_cast<std::uint64_t>(seconds * 1000);
}

}  // namespace

TEST(TickCount, IsTheTimeSinceTheStartOfTheSystem)
{
    const std::uint64_t before = uptime();
    const std::uint32_t ticks = tickCount();
    const std::uint64_t after = uptime() + 10;
    EXPECT_LE(ticks - static_cast<std::uint32_t>(before), after - before + 10);
}

TEST(TickCount, NeverGoesBack)
{
    std::uint32_t last = tickCount();
    for (int count = 0; count < 1000; ++count) {
        const std::uint32_t now = tickCount();
        EXPECT_LT(now - last, 0x80000000u);
        last = now;
    }
}
