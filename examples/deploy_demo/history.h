#pragma once

#include "examples/deploy_demo/event.h"

#include <string>
#include <vector>

namespace zorvel {
namespace demo {

enum class Role
{
    writer,
    reader,
};

/// A process as the picture and the table name it.
struct Member
{
    std::string name;  ///< "W1"
    std::string kind;  ///< "Linux", "Wine"
    Role role;
};

enum class Activity
{
    waiting,     ///< has asked for its lock
    writing,     ///< has the directory alone
    reading,     ///< has it together with other readers
    leftBehind,  ///< is dead, and its lock file not yet removed
};

/// What a reading made of the release.
enum class Finding
{
    whole,
    unfinished,  ///< its writer died; nothing was served
    torn,        ///< finished, and yet not whole
};

struct Interval
{
    std::size_t process;
    Activity activity;
    Microseconds from;
    Microseconds to;
    int release;  ///< that was written or read; 0: none
    Finding found = Finding::whole;
};

/// A process that was killed.
struct Death
{
    std::size_t process = 0;
    Microseconds time = 0;
    bool inside = false;  ///< it held its lock
    int release = 0;      ///< that it wrote or read

    bool cleared = false;  ///< its lock file was stale and removed
    std::size_t heir = 0;  ///< by whom
    Microseconds clearedAt = 0;

    bool replaced = false;  ///< a writer found its unfinished release
    std::size_t replacedBy = 0;
    int foundFiles = 0;
};

struct Downgrade
{
    std::size_t process;
    Microseconds time;
};

/// What readings found.
struct Readings
{
    int verified = 0;
    int unfinished = 0;
    int torn = 0;
};

/// What happened, put together from the events of all processes. Those of one
/// process come in order; those of several may come mixed.
class History
{
public:
    explicit History(const std::vector<Member>& members);

    void add(const Event& event);

    /// Ends what is under way and orders the intervals.
    void finish();

    const std::vector<Member>& members() const { return m_members; }
    const std::vector<Interval>& intervals() const { return m_intervals; }
    /// In the order in which they happened.
    const std::vector<Death>& deaths() const { return m_deaths; }
    const std::vector<Downgrade>& downgrades() const { return m_downgrades; }
    /// Of each member.
    const std::vector<Readings>& readings() const { return m_readings; }
    /// The time of the first request.
    Microseconds begin() const { return m_begin; }
    Microseconds end() const { return m_end; }
    int deployed() const { return m_deployed; }
    int lastRelease() const { return m_lastRelease; }

    /// Marks of live processes that others met who may not be inside with them.
    int strangersMet() const { return m_strangersMet; }
    /// Releases that were not what their writer wrote, and unfinished ones whose
    /// writer lives.
    int spoiled() const { return m_spoiled; }
    /// Lock files that were removed although their owner lives.
    int robbed() const { return m_robbed; }

    /// For the line that tells how it goes: how many live processes do it.
    int count(Activity activity) const;
    /// The writer who is inside; empty when there is none.
    std::string writer() const;

private:
    struct Lane
    {
        Activity activity = Activity::waiting;
        Microseconds since = 0;  ///< 0: does nothing
        int release = 0;
        Finding found = Finding::whole;
    };

    void start(const Event& event, Activity activity);
    void stop(std::size_t process, Microseconds time);
    void lower(const Event& event);
    void judge(const Event& event);
    void meet(const Event& event);
    void findHalf(const Event& event);
    void clear(const Event& event);
    void die(const Event& event);
    Death* deathOf(const std::string& name, Microseconds before);

    std::vector<Member> m_members;
    std::vector<Lane> m_lanes;
    std::vector<Interval> m_intervals;
    std::vector<Death> m_deaths;
    std::vector<Downgrade> m_downgrades;
    std::vector<Readings> m_readings;
    Microseconds m_begin = 0;
    Microseconds m_end = 0;
    int m_deployed = 0;
    int m_lastRelease = 1;  ///< the first one is there from the beginning
    int m_strangersMet = 0;
    int m_spoiled = 0;
    int m_robbed = 0;
};

}  // namespace demo
}  // namespace zorvel
