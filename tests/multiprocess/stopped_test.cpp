#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <thread>

using namespace zorvel::test;

namespace {

/// What docs/locking.md says of a process that stands still for more than half
/// a minute. Its file is aged meanwhile, which is all that the others see of
/// that time; with ZORVEL_STOPPED_FOR_REAL set the time is let pass.
class Stopped : public testing::Test
{
protected:
    /// Processes that do what they are told, each with the lock named.
    void start(const std::vector<std::string>& locks)
    {
        std::vector<Part> parts;
        for (const std::string& lock : locks)
            parts.push_back(Part{"obedient-" + lock, 1, 0, 0});
        fleet.reset(new Fleet(scene.directory(), parts));
        fleet->waitReady();
        fleet->go();
    }

    Worker& who(int index) { return (*fleet)[index]; }

    /// Tells an order and waits for the answer expected.
    testing::AssertionResult does(int index, const std::string& order, const std::string& expected)
    {
        const int before = who(index).said(expected);
        who(index).tell(order);
        if (who(index).waitSaid(expected, before + 1))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << index << " ended instead of saying " << expected;
    }
    bool acquires(int index) { return does(index, "acquire", "acquired"); }
    bool isDenied(int index) { return does(index, "try", "denied"); }
    /// As it sees it itself.
    bool holds(int index) { return does(index, "ask", "holds"); }
    bool releases(int index) { return does(index, "release", "released"); }

    void startsToWait(int index)
    {
        const int before = who(index).said("waiting");
        who(index).tell("acquire");
        EXPECT_TRUE(who(index).waitSaid("waiting", before + 1));
    }
    bool getsIn(int index) { return who(index).waitSaid("acquired", 1); }

    std::vector<std::string> files(const std::string& opening) const
    {
        std::vector<std::string> names = scene.lockFiles();
        names.erase(std::remove_if(names.begin(), names.end(),
                                   [&](const std::string& name) { return name.compare(0, opening.size(), opening); }),
                    names.end());
        return names;
    }
    bool exists(const std::string& opening) const { return !files(opening).empty(); }

    void waitUntil(const std::function<bool()>& happens) const
    {
        while (!happens())
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }

    /// The file of somebody who has just been stopped. Where the time is let
    /// pass, whoever waits for it sees that it has.
    void letGoStale(const std::string& name)
    {
        m_stopped = std::chrono::steady_clock::now();
        if (!m_forReal)
            scene.tree().age(name, -40);
    }

    void stopUntilStale(int index, const std::string& name)
    {
        who(index).pause();
        letGoStale(name);
    }

    void goesOn(int index)
    {
        const auto stopped = std::chrono::steady_clock::now() - m_stopped;
        // The last refresh lies at most a second before, and file times have
        // whole seconds.
        EXPECT_TRUE(!m_forReal || stopped > std::chrono::seconds(25));
        std::cout << "stopped for " << std::chrono::duration<double>(stopped).count() << " s" << std::endl;
        who(index).resume();
    }

    const Scene scene{};
    std::unique_ptr<Fleet> fleet;

private:
    const bool m_forReal = std::getenv("ZORVEL_STOPPED_FOR_REAL") != nullptr;
    std::chrono::steady_clock::time_point m_stopped;
};

const char guard[] = ".deploy_lock.0";
const char writersMark[] = ".deploy_write_lock";
const char readersMark[] = ".deploy_read_lock.";

}  // namespace

TEST_F(Stopped, AHolderIsSucceededAndNeitherSeesItNorIsTold)
{
    start({"exclusive", "exclusive", "exclusive"});
    ASSERT_TRUE(acquires(0));
    startsToWait(1);
    waitUntil([this] { return exists(".deploy_lock.1"); });
    stopUntilStale(0, guard);
    ASSERT_TRUE(getsIn(1));
    goesOn(0);
    EXPECT_TRUE(holds(0)) << "it sees nothing";
    EXPECT_TRUE(holds(1)) << "two are inside";
    EXPECT_TRUE(releases(0)) << "it is told nothing";
    EXPECT_TRUE(holds(1));
    // The file that went was the successor's; its next refresh brings it back.
    waitUntil([this] { return exists(guard); });
    EXPECT_TRUE(isDenied(2));
    EXPECT_TRUE(releases(1));
    EXPECT_TRUE(acquires(2));
    EXPECT_TRUE(releases(2));
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}

TEST_F(Stopped, AReadersMarkIsClearedByAWriterAndComesBack)
{
    start({"reader", "writer"});
    ASSERT_TRUE(acquires(0));
    startsToWait(1);
    stopUntilStale(0, files(readersMark).at(0));
    ASSERT_TRUE(getsIn(1));
    EXPECT_FALSE(exists(readersMark));
    goesOn(0);
    EXPECT_TRUE(holds(0)) << "a reader beside a writer";
    waitUntil([this] { return exists(readersMark); });
    EXPECT_TRUE(releases(1));
    EXPECT_TRUE(isDenied(1)) << "from now on it counts again";
    EXPECT_TRUE(releases(0));
    EXPECT_TRUE(does(1, "try", "acquired"));
    EXPECT_TRUE(releases(1));
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}

TEST_F(Stopped, AWritersMarkIsClearedByAReaderAndComesBack)
{
    start({"writer", "reader", "reader"});
    ASSERT_TRUE(acquires(0));
    startsToWait(1);
    stopUntilStale(0, writersMark);
    ASSERT_TRUE(getsIn(1));
    EXPECT_FALSE(exists(writersMark));
    goesOn(0);
    EXPECT_TRUE(holds(0)) << "a writer beside a reader";
    waitUntil([this] { return exists(writersMark); });
    EXPECT_TRUE(isDenied(2)) << "from now on it counts again";
    EXPECT_TRUE(releases(0));
    EXPECT_TRUE(acquires(2));
    EXPECT_TRUE(releases(1));
    EXPECT_TRUE(releases(2));
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}

TEST_F(Stopped, AWriterTakesAwayTheMarkOfTheNext)
{
    start({"writer", "writer", "reader"});
    ASSERT_TRUE(acquires(0));
    startsToWait(1);
    stopUntilStale(0, writersMark);
    ASSERT_TRUE(getsIn(1));
    goesOn(0);
    EXPECT_TRUE(holds(0)) << "two writers";
    EXPECT_TRUE(releases(0));
    EXPECT_TRUE(holds(1));
    waitUntil([this] { return exists(writersMark); });
    EXPECT_TRUE(isDenied(2));
    EXPECT_TRUE(releases(1));
    EXPECT_TRUE(acquires(2));
    EXPECT_TRUE(releases(2));
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}

/// It becomes a reader beside the next writer, whose mark it removes.
TEST_F(Stopped, AWriterDowngradesBesideTheNext)
{
    start({"writer", "writer", "reader"});
    ASSERT_TRUE(acquires(0));
    startsToWait(1);
    stopUntilStale(0, writersMark);
    ASSERT_TRUE(getsIn(1));
    goesOn(0);
    EXPECT_TRUE(does(0, "downgrade", "downgraded"));
    EXPECT_TRUE(holds(1));
    EXPECT_TRUE(exists(readersMark));
    waitUntil([this] { return exists(writersMark); });
    EXPECT_TRUE(isDenied(2));
    EXPECT_TRUE(releases(1));
    EXPECT_TRUE(isDenied(1)) << "the reader is still there";
    EXPECT_TRUE(releases(0));
    EXPECT_TRUE(does(1, "try", "acquired"));
    EXPECT_TRUE(releases(1));
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}

/// Two then have the place, and go on from it one after the other.
TEST_F(Stopped, AWaiterLosesItsPlaceAndGetsItsTurnAllTheSame)
{
    start({"exclusive", "exclusive", "exclusive"});
    ASSERT_TRUE(acquires(0));
    startsToWait(1);
    waitUntil([this] { return exists(".deploy_lock.1"); });
    startsToWait(2);
    waitUntil([this] { return exists(".deploy_lock.2"); });
    stopUntilStale(1, ".deploy_lock.1");
    waitUntil([this] { return !exists(".deploy_lock.2"); });
    goesOn(1);
    EXPECT_TRUE(releases(0));
    waitUntil([this] { return fleet->said("acquired") > 1; });
    const int first = who(1).said("acquired") > 0 ? 1 : 2;
    const int second = 3 - first;
    EXPECT_TRUE(holds(first));
    EXPECT_TRUE(isDenied(0));
    EXPECT_EQ(0, who(second).said("acquired"));
    EXPECT_TRUE(releases(first));
    EXPECT_TRUE(getsIn(second));
    EXPECT_TRUE(isDenied(0));
    EXPECT_TRUE(releases(second));
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}

/// One that waits for readers or a writer has the guard for half of the time.
TEST_F(Stopped, AWaitingWriterLosesTheGuardAndGetsItsTurnAllTheSame)
{
    start({"reader", "writer", "reader"});
    ASSERT_TRUE(acquires(0));
    startsToWait(1);
    for (who(1).pause(); !exists(guard); who(1).pause()) {
        who(1).resume();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    letGoStale(guard);
    EXPECT_TRUE(acquires(2));
    goesOn(1);
    EXPECT_TRUE(holds(0));
    EXPECT_TRUE(holds(2));
    EXPECT_EQ(0, who(1).said("acquired"));
    EXPECT_TRUE(releases(0));
    EXPECT_TRUE(releases(2));
    EXPECT_TRUE(getsIn(1));
    EXPECT_TRUE(releases(1));
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
}
