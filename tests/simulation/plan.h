#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Everything that is settled before a schedule begins.
namespace zorvel {
namespace sim {

/// Microseconds that really pass, from the beginning of the schedule.
typedef std::int64_t Time;

const Time millisecond = 1000;
const Time second = 1000000;
const Time never = INT64_MAX / 4;

struct MachinePlan
{
    Time offset = 0;      ///< of its clock
    int ppm = 0;          ///< that its clock runs too fast
    Time jumpAt = never;  ///< when its clock is set
    Time jump = 0;        ///< by how much
};

enum class Kind
{
    exclusive,
    read,
    write,
    downgrade,  ///< a writer that becomes a reader after half of its time
};

/// One acquire and what follows.
struct Turn
{
    Kind kind = Kind::exclusive;
    Time before = 0;       ///< the pause before
    Time timeout = never;  ///< never: without limit
    Time hold = 0;
    bool refreshed = true;
};

struct ProcessPlan
{
    int machine = 0;
    unsigned long pid = 0;
    std::vector<Turn> turns;
};

/// What befalls a process at one of its operations, some time after it began.
struct Mishap
{
    enum Sort
    {
        crash,
        pause,
        interruption,
    };

    Sort sort = crash;
    int process = 0;
    int operation = 0;
    Time delay = 0;
    Time duration = 0;  ///< of a pause
};

struct Plan
{
    std::uint64_t seed = 0;

    Time oneWay = millisecond;  ///< how long a request, and its reply, takes
    unsigned jitter = 0;        ///< of a thousand, those that take longer
    int stretch = 4;            ///< by up to so many times `oneWay`
    unsigned slow = 0;          ///< of a thousand, those that take up to `slowest` more
    Time slowest = 0;
    unsigned faults = 0;        ///< of a thousand operations, those that fail or whose reply is lost;
    unsigned failingLooks = 0;  ///< of looks for a file these
    Time cached = 0;            ///< how long a client remembers a modification time
    bool cachedByName = false;  ///< also when the file of that name is another by now

    Time serverOffset = 0;
    int serverPpm = 0;
    Time serverJumpAt = never;
    Time serverJump = 0;
    std::vector<MachinePlan> machines;
    std::vector<ProcessPlan> processes;
    std::vector<Mishap> mishaps;

    /// The longest way of a request or a reply.
    Time longestWay() const { return oneWay * (1 + stretch) + (slow ? slowest : 0); }
};

/// A plan within all assumptions, at random.
Plan randomPlan(std::uint64_t seed);

}  // namespace sim
}  // namespace zorvel
