#pragma once

#include "tests/simulation/pace.h"
#include "tests/simulation/world.h"

#include <cstdint>
#include <map>
#include <unordered_set>
#include <vector>

namespace zorvel {
namespace sim {

/// Says which of several ways a schedule goes, and remembers them all: run
/// after run it goes through every one.
class Ways
{
public:
    Ways() : m_depth(0), m_states(0) {}

    void beginRun();

    /// One of `count`, at a moment of which `state` tells everything. False in
    /// `isNew` when all that can follow was seen already.
    std::size_t choose(std::size_t count, std::uint64_t state, bool& isNew);

    /// Goes on to the next way; false when there is none.
    bool nextRun();

    /// Moments at which there was a choice, each counted once.
    std::uint64_t states() const { return m_states; }

private:
    struct Fork
    {
        std::size_t taken;
        std::size_t count;
    };

    std::vector<Fork> m_forks;
    std::size_t m_depth;
    std::uint64_t m_states;
    std::unordered_set<std::uint64_t> m_seen;
};

/// What may befall the processes, besides that they take turns.
struct StepBounds
{
    int crashes = 0;       ///< how many processes may die, at any moment
    int preemptions = -1;  ///< how often one that could go on must stand back for another; -1: any number
    int steps = 2000;      ///< of a whole schedule; more is for ever
};

/// Time stands still; any strand that can may go on at any moment.
///
/// Who goes in circles, waiting and seeing the same again, goes on when another
/// has made a file come or go. The files of the dead
/// become stale all at once, at any moment after.
class StepPace : public Pace
{
public:
    StepPace(Ways& ways, const StepBounds& bounds);

    void use(World& world) { m_world = &world; }

    Time now() const override { return second; }
    void exchange(Time there, Time back, std::function<void()> effect) override;
    void sleep(Time duration) override;
    void waitToBeStirred() override;
    void begin(Strand& strand, Time after) override;
    void stir(Strand& strand) override;
    void later(Time after, std::function<void()> event) override;
    bool isTimeless() const override { return true; }
    void learnt(std::uint64_t what) override;
    void beginsAnew(std::uint64_t what) override;
    Strand* next() override;

    /// From here on there is one way only: the one for who comes afterwards.
    void forkNoMore() { m_forks = false; }

    void ageTheDead();

    /// Whether it ended because the rest was seen already.
    bool isKnown() const { return m_isKnown; }
    bool overran() const { return m_steps > m_bounds.steps; }

private:
    /// What came between two waits of a strand.
    struct Round
    {
        std::uint64_t learnt;
        std::uint64_t foreignChanges;  ///< at its end, by others
        std::uint64_t history;         ///< at its end
    };

    struct State
    {
        bool isOptional = false;  ///< a timer that has not called
        bool isBlocked = false;   ///< waits to be stirred
        bool waitsForChange = false;
        bool standsBack = false;  ///< waits, so that others may go on freely
        std::uint64_t ownChanges = 0;
        std::uint64_t history = 0;  ///< all that it did and learnt
        std::uint64_t round = 0;    ///< the same since its last wait
        std::vector<Round> rounds;  ///< the last ones, newest first
    };

    std::uint64_t foreignChanges(const State& state) const;
    static std::size_t lengthOfCircle(const std::vector<Round>& rounds);
    bool canGoOn(Strand& strand);
    Strand* someDeadOne();
    std::uint64_t digest();
    Strand* choose(const std::vector<Strand*>& ready);
    void crashOrAge(std::size_t choice);
    Strand* goOn(Strand* strand, bool isPreempted);
    Strand* giveUpKnown();
    std::size_t eventCount() const;

    Ways& m_ways;
    const StepBounds m_bounds;
    World* m_world;
    std::map<std::uint32_t, State> m_strands;
    int m_crashesLeft;
    int m_preemptionsLeft;
    Strand* m_last;  ///< who went on last
    bool m_deadAreStale;
    bool m_forks;
    bool m_isKnown;
    int m_steps;
};

}  // namespace sim
}  // namespace zorvel
