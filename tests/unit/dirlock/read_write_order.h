#pragma once

#include "tests/support/fake_timer.h"
#include "tests/unit/dirlock/read_write_scenarios.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

/// Runs of operations that the acquires of readers and writers are made of.
namespace zorvel {
namespace test {

typedef std::vector<std::string> Lines;

inline Lines joined(const std::vector<Lines>& parts)
{
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// The guard of a directory in which nobody else has it; takes 5 ms.
inline Lines guardTaken()
{
    return {"exists #0 -> false", "create #0 -> true", "refresh #0 +1000000us -> true", "exists #0 -> true"};
}

inline Lines guardGivenBack()
{
    return {"remove #0 +1000000us -> true"};
}

/// The guard that somebody else has, when there is no time to wait for it.
inline Lines guardNotTaken()
{
    return {"exists #0 -> true", "exists #1 -> false", "remove #-1 -5000us -> false"};
}

/// The guard that somebody else has for longer than the 20 ms until the
/// deadline.
inline Lines guardWaitedForInVain()
{
    return {"exists #0 -> true",
            "exists #1 -> false",
            "create #1 -> true",
            "create #0 -> false",
            "isDirectory D -> true",
            "create CAL -> true",
            "mtime CAL",
            "remove CAL +10000us -> true",
            "mtime #0",
            "create #0 -> false",
            "mtime #0",
            "create #0 -> false",
            "mtime #0",
            "remove #1 now -> true"};
}

/// Until level 0 is judged for the first time, the deadline 9995 ms away.
inline Lines guardQueuedFor()
{
    return {"exists #0 -> true",
            "exists #1 -> false",
            "create #1 -> true",
            "create #0 -> false",
            "isDirectory D -> true",
            "create CAL -> true",
            "mtime CAL",
            "remove CAL +9985000us -> true",
            "mtime #0"};
}

/// The guard that is freed when it is asked for the second time; takes 15 ms.
inline Lines guardTakenWhenFreed()
{
    return joined(
        {guardQueuedFor(),
         {"create #0 -> true", "remove #1 +9980000us -> true", "refresh #0 +1000000us -> true", "exists #0 -> true"}});
}

/// The guard of a dead process; takes 10 ms.
inline Lines guardTakenOver()
{
    return joined({guardQueuedFor(),
                   {"refresh #0 +9985000us -> true", "remove #1 +9985000us -> true", "refresh #0 +1000000us -> true",
                    "exists #0 -> true"}});
}

/// What the first question about a file's age costs.
inline Lines clocksCompared(const std::string& deadline)
{
    return {"isDirectory D -> true", "create CAL -> true", "mtime CAL", "remove CAL " + deadline + " -> true"};
}

class ReadWriteOrder : public testing::Test
{
protected:
    bool run(const char* name) { return readWriteScenario(name).run(m_scene); }

    void expectOperations(const std::vector<Lines>& parts)
    {
        EXPECT_THAT(m_scene.operations(), testing::ElementsAreArray(joined(parts)));
    }

    /// All sleeps are polls of 5 ms.
    void expectSleeps(std::size_t count) { EXPECT_EQ(std::vector<long>(count, 5), fake_clock::sleeps()); }

    void expectFiles(const Lines& files)
    {
        EXPECT_THAT(m_scene.shortFiles(), testing::UnorderedElementsAreArray(files));
    }

    ReadWriteScene m_scene;
};

}  // namespace test
}  // namespace zorvel
