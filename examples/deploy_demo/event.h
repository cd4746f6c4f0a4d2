#pragma once

#include <cstdint>
#include <string>

namespace zorvel {
namespace demo {

/// Microseconds since 1970-01-01 UTC by the system's clock, which all
/// processes of a machine share.
typedef std::int64_t Microseconds;

Microseconds now();

/// What a worker reports. A worker's line is the time, the word and, where the
/// word has one, a number and a name, separated by blanks.
enum class Word
{
    ready,       ///< started; waits for "go"
    clock,       ///< answer to "clock": its time
    queue,       ///< is about to ask for its lock
    cleared,     ///< has removed the stale lock file `name` while it asked
    hold,        ///< has its lock
    met,         ///< found the mark of `name`, with whom it may not be inside
    half,        ///< found `number` files of a release that `name` did not finish
    start,       ///< begins to deploy release `number`
    stall,       ///< stands still in the middle of release `number`
    deployed,    ///< release `number` is finished and what it wrote
    spoiled,     ///< release `number` is not what it wrote
    lower,       ///< is about to become a reader; from here on others may read
    served,      ///< release `number` is whole
    unfinished,  ///< release `number`, by `name`, was never finished; not served
    torn,        ///< release `number` is finished and yet not whole
    leave,       ///< is about to release its lock
    free,        ///< has released it
    done,        ///< ends; all is well
    killed,      ///< was killed (said by the one who did it)
};

struct Event
{
    std::size_t process;
    Microseconds time;
    Word word;
    int number = 0;
    std::string name;
};

/// The line of an event, without its end.
std::string lineOf(const Event& event);

/// Reads a worker's line; false when it is none.
bool readEvent(std::size_t process, const std::string& line, Event& event);

}  // namespace demo
}  // namespace zorvel
