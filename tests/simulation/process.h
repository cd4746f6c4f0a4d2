#pragma once

#include "dirlock/detail/unique_numbers.h"
#include "tests/simulation/plan.h"
#include "tests/simulation/strands.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/function.hpp>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zorvel {
namespace sim {

class World;

/// Leaves every operation of a process that has crashed, so that its strands
/// end. It is of no family: nobody catches it to go on.
struct Crashed
{
};

/// What can befall an operation.
enum class Fault
{
    none,
    notSent,    ///< it fails
    replyLost,  ///< it happens and is reported as failed
    sentTwice,  ///< it happens, its reply is lost, it is sent again: the second answer counts
    denied,     ///< access is denied for a moment
    busy,
};

/// A machine: its clock, and what its client of the file server remembers.
class Machine
{
public:
    Machine(const MachinePlan& plan, Time cached) : m_plan(plan), m_cached(cached) {}

    boost::posix_time::ptime timeAt(Time now) const;

    /// `id` tells the file apart from another of its name.
    bool remembers(const std::string& file, std::size_t id, Time now, long long& time) const;
    void remember(const std::string& file, std::size_t id, Time now, long long time);
    void forget(const std::string& file) { m_memory.erase(file); }

private:
    struct Memory
    {
        long long time;
        std::size_t id;
        Time since;
    };

    const MachinePlan m_plan;
    const Time m_cached;
    std::map<std::string, Memory> m_memory;
};

/// A simulated process: a main strand and one for each of its timers.
class Process
{
public:
    Process(World& world, int number, const ProcessPlan& plan, Machine& machine);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The one whose strand runs; null outside of all.
    static Process* current();

    const int number;
    const unsigned long pid;
    Machine& machine;
    dirlock::UniqueNumbers numbers;

    void start(std::function<void()> body);

    /// One request to the file server. `effect` is made there, with the time
    /// of the server's clock; it gives the code that comes back, which may be
    /// another one or none at all.
    int request(const char* verb, const std::string& file, std::function<int(long long)> effect);

    /// An interruption point of Boost.Thread.
    void sleep(Time duration);

    /// Time that the process spends on its own things; no interruption point.
    void spend(Time duration);

    boost::posix_time::ptime clock();

    Strand& startTimer(Time after, std::function<void()> body);

    /// Interrupts a timer's strand and waits for its end.
    void endTimer(Strand& timer);

    /// Lets none of its operations fail or take a second.
    void spare() { m_isSpared = true; }

    void crash();
    void pause(Time duration);
    void interrupt();

    bool isDead() const { return m_dead; }

    /// Whether its main strand has ended.
    bool isOver() const { return m_strands.front()->isDone(); }
    void leaveIfDead() const;

    /// Whether an operation of it failed or lost its reply.
    bool isFaulty() const { return m_faults > 0; }
    bool isPaused() const;

    Time pausedInAll() const { return m_pausedInAll; }
    int faultCount() const { return m_faults; }

private:
    void step();
    void await(Time until, bool canBeInterrupted);
    Fault nextFault(const std::string& verb);
    Time way();
    void stirAll();

    World& m_world;
    std::vector<Strand*> m_strands;
    std::map<std::uint32_t, Strand*> m_joiners;  ///< who waits for the end of a timer's strand
    unsigned m_timers;
    int m_operations;
    bool m_dead;
    bool m_isSpared;
    int m_faults;
    Time m_pausedUntil;
    Time m_pausedInAll;
};

}  // namespace sim
}  // namespace zorvel
