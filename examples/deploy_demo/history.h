#pragma once

#include "examples/deploy_demo/event.h"

#include <string>
#include <vector>

namespace zorvel {
namespace demo {

/// A process as the picture and the table name it.
struct Member
{
    std::string name;  ///< "P1"
    std::string kind;  ///< "Linux", "Wine"
};

enum class Activity
{
    queued,      ///< has asked for the lock and waits
    holding,     ///< has it
    leftBehind,  ///< is dead, and its lock not yet taken over
};

struct Interval
{
    std::size_t process;
    Activity activity;
    Microseconds from;
    Microseconds to;
    int release;  ///< of a holder; 0: none
};

struct Kill
{
    bool happened = false;
    bool inside = false;  ///< the process held the lock
    std::size_t process = 0;
    Microseconds time = 0;
    int release = 0;
};

/// Of the dead holder's lock.
struct TakeOver
{
    bool happened = false;
    std::size_t process = 0;
    Microseconds time = 0;
    bool foundMark = false;
    int foundFiles = 0;  ///< of the release that was not finished
};

/// What happened, put together from the events of all processes. Those of one
/// process come in order; those of several may come mixed.
class History
{
public:
    explicit History(const std::vector<Member>& members);

    void add(const Event& event);

    const std::vector<Member>& members() const { return m_members; }
    /// In order of their beginnings, once finish() was called.
    const std::vector<Interval>& intervals() const { return m_intervals; }
    const Kill& kill() const { return m_kill; }
    const TakeOver& takeOver() const { return m_takeOver; }
    /// The time of the first request.
    Microseconds begin() const { return m_begin; }
    Microseconds end() const { return m_end; }
    int deployed() const { return m_deployed; }
    int lastRelease() const { return m_lastRelease; }

    /// Marks of live processes that others met, and releases that somebody
    /// else wrote into.
    int strangersMet() const { return m_strangersMet; }

    /// For the line that tells how it goes.
    int waiting() const;
    /// The name of a live holder; empty when there is none.
    std::string holder() const;

    /// Ends what is under way and orders the intervals.
    void finish();

private:
    struct Lane
    {
        Microseconds queuedSince = 0;
        Microseconds heldSince = 0;
        int release = 0;
    };

    void startHolding(const Event& event);
    void stopHolding(const Event& event);
    void meet(const Event& event);
    void die(const Event& event);
    void takeOver(const Event& event);
    bool isDeadHolder(const std::string& name) const;

    std::vector<Member> m_members;
    std::vector<Lane> m_lanes;
    std::vector<Interval> m_intervals;
    Kill m_kill;
    TakeOver m_takeOver;
    Microseconds m_begin = 0;
    Microseconds m_end = 0;
    int m_deployed = 0;
    int m_lastRelease = 0;
    int m_strangersMet = 0;
};

}  // namespace demo
}  // namespace zorvel
