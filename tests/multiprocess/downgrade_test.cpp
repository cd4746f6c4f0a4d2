#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <stdexcept>

using namespace zorvel::test;

namespace {

const int downgraders = 3;
const int readers = 3;
const int writers = 1;
const int holdsEach = 40;

std::vector<Part> contenders()
{
    std::vector<Part> parts(downgraders, Part{"downgrader", holdsEach, 4, 10});
    parts.insert(parts.end(), readers, Part{"reader", holdsEach, 4, 20});
    parts.insert(parts.end(), writers, Part{"writer", holdsEach, 2, 10});
    return parts;
}

/// Readers' holds that a downgraded hold had company of.
int readersMetByDowngraded(const std::vector<Hold>& holds)
{
    int met = 0;
    for (const Hold& downgraded : holds)
        if (downgraded.coveredUntil != downgraded.end)
            met += static_cast<int>(std::count_if(holds.begin(), holds.end(), [&](const Hold& other) {
                return !other.writes && other.worker != downgraded.worker && other.begin < downgraded.coveredUntil &&
                       downgraded.end < other.end;
            }));
    return met;
}

/// Marks of one process after another: {worker, event}.
std::vector<Mark> story(const std::vector<std::pair<int, std::string>>& events)
{
    std::vector<Mark> marks;
    for (const auto& event : events)
        marks.push_back(Mark{static_cast<int>(marks.size()), event.first, event.second});
    return marks;
}

std::size_t overlapsIn(const std::vector<std::pair<int, std::string>>& events)
{
    return overlaps(holdsOf(story(events))).size();
}

}  // namespace

/// Each worker verifies besides that the release that it reads is its own.
TEST(Downgrade, NoOtherWriterComesBeforeTheReaderThatAWriterBecameHasLeft)
{
    const Scene scene;
    scene.writeFirstRelease();
    Fleet fleet(scene.directory(), contenders());
    fleet.waitReady();
    fleet.go();
    for (int i = 0; i < fleet.size(); ++i) {
        EXPECT_EQ(0, fleet[i].finish()) << "worker " << i;
        EXPECT_EQ(holdsEach, fleet[i].held()) << "worker " << i;
    }
    EXPECT_EQ(std::vector<std::string>(), fleet.complaints());
    EXPECT_EQ(std::vector<std::string>(), scene.lockFiles());
    EXPECT_EQ((downgraders + writers) * holdsEach, scene.release().generation);

    ASSERT_TRUE(complete(fleet.marks()));
    const std::vector<Hold> holds = holdsOf(fleet.marks());
    ASSERT_EQ(static_cast<std::size_t>((2 * downgraders + readers + writers) * holdsEach), holds.size());
    EXPECT_EQ(std::vector<std::string>(), overlaps(holds));
    std::cout << holds.size() << " holds, " << downgraders * holdsEach
              << " of them downgraded; readers that were inside with those: " << readersMetByDowngraded(holds)
              << ", changes of writer: " << changesOfWriter(holds) << std::endl;
    EXPECT_GE(readersMetByDowngraded(holds), 2) << "nobody came in after a downgrade";
    // Workers that came one after another would make three.
    EXPECT_GE(changesOfWriter(holds), holdsEach / 2) << "writers hardly met";
}

/// The judge of the test above.
TEST(Downgrade, IntervalsThatShouldExcludeEachOtherAreFound)
{
    EXPECT_EQ(0u, overlapsIn({{0, "read"}, {1, "read"}, {0, "left"}, {1, "left"}, {2, "write"}, {2, "written"}}));
    EXPECT_EQ(1u, overlapsIn({{0, "read"}, {1, "write"}, {0, "left"}, {1, "written"}}));
    EXPECT_EQ(1u, overlapsIn({{0, "write"}, {1, "read"}, {1, "left"}, {0, "written"}}));
    EXPECT_EQ(2u, overlapsIn({{0, "write"}, {1, "write"}, {0, "written"}, {1, "written"}}));
}

TEST(Downgrade, AWriterBetweenTheTwoHoldsOfADowngradeIsFound)
{
    EXPECT_EQ(0u, overlapsIn({{0, "write"},
                              {0, "written"},
                              {1, "read"},
                              {0, "downgraded"},
                              {1, "left"},
                              {0, "left"},
                              {1, "write"},
                              {1, "written"}}));
    EXPECT_EQ(1u,
              overlapsIn({{0, "write"}, {0, "written"}, {1, "write"}, {1, "written"}, {0, "downgraded"}, {0, "left"}}));
    EXPECT_EQ(2u,
              overlapsIn({{0, "write"}, {0, "written"}, {0, "downgraded"}, {1, "write"}, {0, "left"}, {1, "written"}}));
}

TEST(Downgrade, ChangesOfWriterAreCountedOverReadersAndDowngrades)
{
    const auto changes = [](const std::vector<std::pair<int, std::string>>& events) {
        return changesOfWriter(holdsOf(story(events)));
    };
    EXPECT_EQ(0, changes({{0, "read"}, {0, "left"}, {1, "read"}, {1, "left"}}));
    EXPECT_EQ(0, changes({{0, "write"},
                          {0, "written"},
                          {0, "downgraded"},
                          {1, "read"},
                          {0, "left"},
                          {1, "left"},
                          {0, "write"},
                          {0, "written"}}));
    EXPECT_EQ(2, changes({{0, "write"},
                          {0, "written"},
                          {1, "write"},
                          {1, "written"},
                          {1, "write"},
                          {1, "written"},
                          {0, "write"},
                          {0, "written"}}));
}

TEST(Downgrade, MarksThatMakeNoSenseAreRefused)
{
    EXPECT_THROW(holdsOf(story({{0, "read"}})), std::runtime_error);
    EXPECT_THROW(holdsOf(story({{0, "left"}})), std::runtime_error);
    EXPECT_THROW(holdsOf(story({{0, "read"}, {0, "written"}})), std::runtime_error);
    EXPECT_THROW(holdsOf(story({{0, "read"}, {0, "left"}, {0, "downgraded"}})), std::runtime_error);
    EXPECT_FALSE(complete({Mark{0, 0, "read"}, Mark{2, 0, "left"}}));
    EXPECT_FALSE(complete({Mark{0, 0, "read"}, Mark{0, 1, "read"}}));
}
