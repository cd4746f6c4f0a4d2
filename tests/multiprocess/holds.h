#pragma once

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// An event that a worker noted inside its hold (see marks.h).
struct Mark
{
    int number;
    int worker;
    /// "read" and "left" are the ends of a reader's hold, "write" and
    /// "written" those of a writer's; "downgraded" is the beginning of a
    /// reader's that a writer's has become.
    std::string event;
};

/// The time between two marks of one worker.
struct Hold
{
    int worker;
    bool writes;
    int begin;
    int end;
    /// For a writer's hold that became a reader's: the end of that one.
    /// Otherwise `end`.
    int coveredUntil;
};

/// The holds that all the marks tell of, in the order of their beginnings. A
/// hold without an end ends at `endOfDead`; it must be the victim's. Throws
/// std::runtime_error for marks that do not make up holds.
std::vector<Hold> holdsOf(std::vector<Mark> marks, int victim = -1, int endOfDead = -1);

/// One line for each pair of holds that should have excluded each other: a
/// writer's and anybody's, and a writer's and the whole time of another that
/// became a reader.
std::vector<std::string> overlaps(const std::vector<Hold>& holds);

/// The largest number of readers that were inside together.
int mostReaders(const std::vector<Hold>& holds);

/// The number of writers' holds that came after the first reader's and before
/// the last.
int writesAmongReads(const std::vector<Hold>& holds);

/// How often a writer's hold came after another worker's.
int changesOfWriter(const std::vector<Hold>& holds);

/// Whether each of 0, 1, 2... up to the number of marks was taken once.
bool complete(const std::vector<Mark>& marks);

}  // namespace test
}  // namespace zorvel
