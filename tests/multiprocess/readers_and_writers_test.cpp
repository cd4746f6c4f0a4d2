#include "tests/multiprocess/contender.h"
#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <iostream>

using namespace zorvel::test;

namespace {

const int readers = 6;
const int writers = 2;
const int holdsEach = 100;

/// Readers stay away between two holds: a steady stream of them would hold the
/// writers off.
std::vector<Part> readersAndWriters()
{
    std::vector<Part> parts(readers, Part{"reader", holdsEach, 5, 20});
    parts.insert(parts.end(), writers, Part{"writer", holdsEach, 1, 5});
    return parts;
}

/// A release, the marks, and no file of a lock.
std::vector<std::string> namesAtTheEnd()
{
    std::vector<std::string> names = {"marks"};
    for (int i = 0; i < releaseSize; ++i)
        names.push_back("release." + std::to_string(i));
    return names;
}

int countTorn(const std::vector<std::string>& complaints)
{
    return static_cast<int>(std::count_if(complaints.begin(), complaints.end(), [](const std::string& complaint) {
        return complaint.find("torn:") != std::string::npos;
    }));
}

}  // namespace

TEST(ReadersAndWriters, NoReaderEverSeesHalfARelease)
{
    const Scene scene;
    scene.writeFirstRelease();
    Fleet fleet(scene.directory(), readersAndWriters());
    fleet.waitReady();
    fleet.go();
    for (int i = 0; i < fleet.size(); ++i) {
        EXPECT_EQ(0, fleet[i].finish()) << "worker " << i;
        EXPECT_EQ(holdsEach, fleet[i].held()) << "worker " << i;
    }
    EXPECT_EQ(std::vector<std::string>(), fleet.complaints());
    EXPECT_EQ(namesAtTheEnd(), scene.tree().names()) << "something was left behind";

    const std::vector<Hold> holds = holdsOf(fleet.marks());
    EXPECT_TRUE(complete(fleet.marks()));
    EXPECT_EQ(std::vector<std::string>(), overlaps(holds));
    // Every writer built on the one before: no release was lost.
    const Look last = scene.release();
    EXPECT_EQ(std::string(), last.fault);
    EXPECT_EQ(writers * holdsEach, last.generation);

    std::cout << fleet.held() << " holds, torn reads: " << countTorn(fleet.complaints())
              << ", most readers together: " << mostReaders(holds)
              << ", releases between the first read and the last: " << writesAmongReads(holds) << std::endl;
    EXPECT_GE(mostReaders(holds), 2) << "readers kept each other out";
    EXPECT_GE(writesAmongReads(holds), 2) << "readers and writers never met";
}

/// Shows that the tests would see it if the lock did not exclude.
TEST(ReadersAndWriters, WithoutALockEveryReaderSeesTornReleases)
{
    const int careless = 3;
    const Scene scene;
    scene.writeFirstRelease();
    std::vector<Part> parts(careless, Part{"unlocked-reader", holdsEach, 1, 0});
    parts.push_back(Part{"unlocked-writer", INT_MAX, 1, 0});
    Fleet fleet(scene.directory(), parts);
    fleet.waitReady();
    fleet[careless].go();
    ASSERT_TRUE(fleet[careless].waitHeld(1));
    for (int i = 0; i < careless; ++i)
        fleet[i].go();
    for (int i = 0; i < careless; ++i) {
        EXPECT_EQ(wrongFound, fleet[i].finish()) << "worker " << i;
        EXPECT_GT(countTorn(fleet[i].complaints()), 0) << "worker " << i;
    }
    fleet[careless].kill();
    fleet[careless].finish();

    const std::vector<Hold> holds = holdsOf(fleet.marks(), careless, INT_MAX);
    std::cout << fleet.held() << " holds, torn reads: " << countTorn(fleet.complaints())
              << ", complaints: " << fleet.complaints().size() << ", overlaps: " << overlaps(holds).size() << std::endl;
    EXPECT_FALSE(overlaps(holds).empty());
}
