#include "platform/posix/semaphore_patience.h"

#include <gtest/gtest.h>

using zorvel::platform::posix::SemaphorePatience;

namespace {

typedef SemaphorePatience::Time Time;

const Time start = std::chrono::hours(1);
const Time moment = Time(1);

/// From when on it looks again after looks that did not help, each as soon as it may.
Time pauseAfterFailures(SemaphorePatience& patience, int failures)
{
    Time now = start;
    Time pause = Time::zero();
    for (int i = 0; i < failures; ++i) {
        patience.didNotHelpAt(now);
        for (pause = moment; !patience.shouldLookAt(now + pause);)
            pause *= 2;
        now += pause;
    }
    return pause;
}

TEST(SemaphorePatience, LooksAtFirst)
{
    EXPECT_TRUE(SemaphorePatience().shouldLookAt(Time::zero()));
    EXPECT_TRUE(SemaphorePatience().shouldLookAt(start));
}

TEST(SemaphorePatience, AfterALookThatDidNotHelpAPauseOfAHundredFollows)
{
    SemaphorePatience patience;
    patience.didNotHelpAt(start);
    EXPECT_FALSE(patience.shouldLookAt(start));
    EXPECT_FALSE(patience.shouldLookAt(start + 100 * SemaphorePatience::longestLook - moment));
    EXPECT_TRUE(patience.shouldLookAt(start + 100 * SemaphorePatience::longestLook));
}

TEST(SemaphorePatience, PausesGrowToASecondAndNoFurther)
{
    SemaphorePatience patience;
    const Time first = pauseAfterFailures(patience, 1);
    EXPECT_LT(first, pauseAfterFailures(patience, 3));
    pauseAfterFailures(patience, 50);
    const Time late = start + std::chrono::hours(1);
    patience.didNotHelpAt(late);
    EXPECT_FALSE(patience.shouldLookAt(late + std::chrono::milliseconds(999)));
    EXPECT_TRUE(patience.shouldLookAt(late + std::chrono::seconds(1)));
}

TEST(SemaphorePatience, ALookThatHelpedMakesThePausesShortAgain)
{
    SemaphorePatience patience;
    pauseAfterFailures(patience, 5);
    patience.helped();
    patience.didNotHelpAt(start);
    EXPECT_FALSE(patience.shouldLookAt(start + SemaphorePatience::shortestPause - moment));
    EXPECT_TRUE(patience.shouldLookAt(start + SemaphorePatience::shortestPause));
}

}  // namespace
