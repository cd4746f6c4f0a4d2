#include "tests/hosts/hold_figures.h"
#include "tests/hosts/machines.h"
#include "tests/hosts/shared_directory.h"
#include "tests/multiprocess/fleet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>

using namespace zorvel::test;

namespace {

/// Of readers and writers, of all that take turns on the read-write lock.
const int writers = 2;

double secondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

int count(const char* name)
{
    return std::atoi(setting(name).c_str());
}

/// On both machines together, half of them on each; even, and at least four.
int contenders()
{
    return count("ZORVEL_CONTENDERS");
}

std::string several(int number, const std::string& what)
{
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

std::string title(const SharedDirectory& directory, const std::string& what)
{
    return "figures: " + directory.share() + ", " + setting("ZORVEL_PAIR") + ", " + what + ": ";
}

/// A client of NFS v3 that remembers what was missing tells by the time of a
/// directory whether that has changed, and two changes in one tick of the
/// server's clock have the same time. So it can miss a writer's mark that was
/// there before it looked; readers and writers must not use such a mount (see
/// docs/filesystems.md), and only their figures are of interest.
bool missesMarks(const SharedDirectory& directory)
{
    return directory.share() == "nfs3";
}

/// Starts all, and waits for their ends; seconds. Everybody had all of its
/// holds; statuses are 0, or anything for `wrongMayBeFound`.
double runToTheEnd(Fleet& fleet, const std::vector<Part>& parts, bool wrongMayBeFound = false)
{
    fleet.waitReady();
    const auto begin = std::chrono::steady_clock::now();
    fleet.go();
    for (int i = 0; i < fleet.size(); ++i) {
        const int status = fleet[i].finish();
        if (!wrongMayBeFound) {
            EXPECT_EQ(0, status) << "worker " << i;
        }
        EXPECT_EQ(parts[i].holds, fleet[i].held()) << "worker " << i;
    }
    return secondsSince(begin);
}

void printCommon(const std::vector<Hold>& holds, double seconds)
{
    std::cout << holds.size() << " holds in " << static_cast<int>(seconds) << " s, overlaps " << overlaps(holds).size()
              << ", ";
}

/// What holds of every fleet that has run to its end.
void expectOrder(const Fleet& fleet, const SharedDirectory& directory)
{
    EXPECT_TRUE(complete(fleet.marks()));
    EXPECT_EQ(std::vector<std::string>(), overlaps(holdsOf(fleet.marks())));
    EXPECT_EQ(std::vector<std::string>(), fleet.complaints());
    EXPECT_EQ(std::vector<std::string>(), directory.lockFiles());
}

std::string nameOfCase(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
    return name;
}

}  // namespace

class TakeTurns : public testing::TestWithParam<std::string>
{
};

TEST_P(TakeTurns, OfContendersOnTwoMachinesOneIsInside)
{
    const SharedDirectory directory(GetParam());
    const std::vector<Part> parts(contenders(), Part{"asking-exclusive", count("ZORVEL_EXCLUSIVE_HOLDS"), 0, 0});
    Fleet fleet(directory.path(), parts);
    const double seconds = runToTheEnd(fleet, parts);
    expectOrder(fleet, directory);

    const std::vector<Hold> holds = holdsOf(fleet.marks());
    std::cout << title(directory, "exclusive");
    printCommon(holds, seconds);
    std::cout << "turns when the first was through: most " << parts[0].holds << ", fewest "
              << fewestWhenTheFirstWasThrough(holds, contenders()) << ", longest run of others' "
              << longestWait(holds, contenders()) << ", files judged stale " << fleet.said("FS_LOCK:")
              << ", lock files left " << directory.lockFiles().size() << std::endl;
}

TEST_P(TakeTurns, WritersOnTwoMachinesAreAloneAndReadersSeeWholeReleases)
{
    const SharedDirectory directory(GetParam());
    directory.writeFirstRelease();
    const int holdsEach = count("ZORVEL_READ_WRITE_HOLDS");
    const int readers = contenders() - writers;
    std::vector<Part> parts(readers, Part{"asking-reader", holdsEach, 5, 40});
    parts.insert(parts.end(), writers, Part{"asking-writer", holdsEach, 1, 10});
    Fleet fleet(directory.path(), parts);
    const double seconds = runToTheEnd(fleet, parts, missesMarks(directory));
    if (!missesMarks(directory)) {
        expectOrder(fleet, directory);
        EXPECT_EQ(writers * holdsEach, directory.release().generation);
    }

    const std::vector<Hold> holds = holdsOf(fleet.marks());
    std::cout << title(directory, several(readers, "reader") + ", " + several(writers, "writer"));
    printCommon(holds, seconds);
    std::cout << "most readers together " << mostReaders(holds) << ", releases among the reads "
              << writesAmongReads(holds) << ", reads of something wrong " << fleet.complaints().size()
              << ", lock files left " << directory.lockFiles().size() << std::endl;
}

TEST_P(TakeTurns, NobodyWritesBeforeTheReaderThatAWriterBecameHasLeft)
{
    const SharedDirectory directory(GetParam());
    directory.writeFirstRelease();
    const int holdsEach = count("ZORVEL_DOWNGRADES");
    const int each = (contenders() - writers) / 2;
    std::vector<Part> parts(each, Part{"asking-downgrader", holdsEach, 4, 10});
    parts.insert(parts.end(), each, Part{"asking-reader", holdsEach, 4, 40});
    parts.insert(parts.end(), writers, Part{"asking-writer", holdsEach, 2, 10});
    Fleet fleet(directory.path(), parts);
    const double seconds = runToTheEnd(fleet, parts, missesMarks(directory));
    if (!missesMarks(directory)) {
        expectOrder(fleet, directory);
        EXPECT_EQ((each + writers) * holdsEach, directory.release().generation);
    }

    const std::vector<Hold> holds = holdsOf(fleet.marks());
    std::cout << title(directory, several(each, "downgrader") + ", " + several(each, "reader") + ", " +
                                      several(writers, "writer"));
    printCommon(holds, seconds);
    std::cout << "changes of writer " << changesOfWriter(holds) << ", reads of something wrong "
              << fleet.complaints().size() << ", lock files left " << directory.lockFiles().size() << std::endl;
}

INSTANTIATE_TEST_SUITE_P(OnShares, TakeTurns, testing::ValuesIn(shares()), nameOfCase);
