#include "tests/simulation/step_pace.h"

#include <algorithm>

namespace zorvel {
namespace sim {

namespace {

/// A reader's and a writer's looks have two waits; some more to be safe.
const std::size_t mostRounds = 12;

}  // namespace

void Ways::beginRun()
{
    m_depth = 0;
}

std::size_t Ways::choose(std::size_t count, std::uint64_t state, bool& isNew)
{
    isNew = true;
    if (m_depth < m_forks.size())
        return m_forks[m_depth++].taken;
    isNew = m_seen.insert(state).second;
    if (!isNew)
        return 0;
    ++m_states;
    m_forks.push_back(Fork{0, count});
    ++m_depth;
    return 0;
}

bool Ways::nextRun()
{
    while (!m_forks.empty() && m_forks.back().taken + 1 == m_forks.back().count)
        m_forks.pop_back();
    if (m_forks.empty())
        return false;
    ++m_forks.back().taken;
    return true;
}

StepPace::StepPace(Ways& ways, const StepBounds& bounds)
    : m_ways(ways),
      m_bounds(bounds),
      m_world(nullptr),
      m_crashesLeft(bounds.crashes),
      m_preemptionsLeft(bounds.preemptions),
      m_last(nullptr),
      m_deadAreStale(false),
      m_forks(true),
      m_isKnown(false),
      m_steps(0)
{
}

std::uint64_t StepPace::foreignChanges(const State& state) const
{
    return m_world->server.changes() - state.ownChanges + (m_deadAreStale ? 1 : 0);
}

void StepPace::exchange(Time, Time, std::function<void()> effect)
{
    Strand& self = *m_world->strands.current();
    // The moment before is another than the one after whatever came last.
    learnt(3);
    m_world->strands.wait();
    if (self.process->isDead())
        return;
    const std::uint64_t before = m_world->server.changes();
    effect();
    m_strands[self.id].ownChanges += m_world->server.changes() - before;
}

void StepPace::sleep(Time)
{
    State& state = m_strands[m_world->strands.current()->id];
    state.history = mixed(state.history + 7);
    state.rounds.insert(state.rounds.begin(), Round{state.round, foreignChanges(state), state.history});
    if (state.rounds.size() > mostRounds)
        state.rounds.pop_back();
    state.round = 0;
    const std::size_t circle = lengthOfCircle(state.rounds);
    // Where it has been before it is the same as then.
    if (circle > 0)
        state.history = state.rounds[0].history = state.rounds[circle].history;
    state.standsBack = true;
    state.waitsForChange = circle > 0 && state.rounds[circle].foreignChanges == foreignChanges(state);
    m_world->strands.wait();
}

/// How many rounds ago it was where it is now: the last rounds were as those
/// before. 0 for never.
std::size_t StepPace::lengthOfCircle(const std::vector<Round>& rounds)
{
    const auto isAlike = [](const Round& a, const Round& b) { return a.learnt == b.learnt; };
    for (std::size_t length = 1; 2 * length <= rounds.size(); ++length) {
        const std::vector<Round>::const_iterator middle = rounds.begin() + static_cast<std::ptrdiff_t>(length);
        if (std::equal(rounds.begin(), middle, middle, isAlike))
            return length;
    }
    return 0;
}

void StepPace::waitToBeStirred()
{
    learnt(5);
    m_strands[m_world->strands.current()->id].isBlocked = true;
    m_world->strands.wait();
}

void StepPace::begin(Strand& strand, Time after)
{
    m_strands[strand.id].isOptional = after > 0;
}

void StepPace::stir(Strand& strand)
{
    State& state = m_strands[strand.id];
    state.isBlocked = false;
    state.waitsForChange = false;
}

void StepPace::later(Time, std::function<void()> event)
{
    event();
}

void StepPace::learnt(std::uint64_t what)
{
    State& state = m_strands[m_world->strands.current()->id];
    state.history = mixed(state.history + what);
    state.round = mixed(state.round + what);
}

void StepPace::beginsAnew(std::uint64_t what)
{
    State& state = m_strands[m_world->strands.current()->id];
    state.history = mixed(what);
    state.round = mixed(what);
}

bool StepPace::canGoOn(Strand& strand)
{
    if (strand.isDone())
        return false;
    const State& state = m_strands[strand.id];
    return !state.isBlocked && !(state.waitsForChange && state.rounds[0].foreignChanges == foreignChanges(state));
}

/// The dead end at once, each in one way.
Strand* StepPace::someDeadOne()
{
    for (const std::unique_ptr<Strand>& strand : m_world->strands.all())
        if (!strand->isDone() && strand->hasStarted() && strand->process->isDead())
            return strand.get();
    return nullptr;
}

/// Everything that can make a difference from here on. A strand that is done
/// makes none, nor does it how many came before.
std::uint64_t StepPace::digest()
{
    const int left = (m_preemptionsLeft + 2) * 100 + m_crashesLeft * 2 + (m_deadAreStale ? 1 : 0);
    std::uint64_t value = mixed(m_world->server.digest() + mixed(static_cast<std::uint64_t>(left)));
    std::map<const Process*, std::uint64_t> rank;
    for (const std::unique_ptr<Strand>& strand : m_world->strands.all()) {
        if (strand->isDone())
            continue;
        const State& state = m_strands[strand->id];
        const bool isInTurn = strand.get() == m_last && m_bounds.preemptions >= 0;
        const unsigned flags = (strand->hasStarted() ? 2 : 0) + (state.isBlocked ? 4 : 0) + (canGoOn(*strand) ? 8 : 0) +
                               (isInTurn ? 16 : 0) + (isInTurn && state.standsBack ? 32 : 0);
        const std::uint64_t who = static_cast<std::uint64_t>(strand->process->number) * 100 + rank[strand->process]++;
        value += mixed(who + mixed(state.history + flags));
    }
    return value;
}

void StepPace::ageTheDead()
{
    m_deadAreStale = true;
    for (int i = 0; i < m_world->processCount(); ++i)
        if (m_world->process(i).isDead())
            m_world->server.age(i, 3600);
    for (std::map<std::uint32_t, State>::value_type& strand : m_strands)
        strand.second.waitsForChange = false;
}

/// After the strands come these events: each process that lives dies, and the
/// files of the dead become stale.
std::size_t StepPace::eventCount() const
{
    std::size_t count = 0;
    bool isSomebodyDead = false;
    for (int i = 0; i < m_world->processCount(); ++i) {
        const Process& process = m_world->process(i);
        isSomebodyDead = isSomebodyDead || process.isDead();
        count += m_crashesLeft > 0 && !process.isDead() && !process.isOver() ? 1 : 0;
    }
    return count + (isSomebodyDead && !m_deadAreStale ? 1 : 0);
}

void StepPace::crashOrAge(std::size_t choice)
{
    for (int i = 0; m_crashesLeft > 0 && i < m_world->processCount(); ++i) {
        if (m_world->process(i).isDead() || m_world->process(i).isOver())
            continue;
        if (choice-- == 0) {
            --m_crashesLeft;
            m_world->process(i).crash();
            return;
        }
    }
    ageTheDead();
}

Strand* StepPace::goOn(Strand* strand, bool isPreempted)
{
    if (isPreempted && m_preemptionsLeft > 0)
        --m_preemptionsLeft;
    m_last = strand;
    m_strands[strand->id].standsBack = false;
    return strand;
}

/// What follows was seen already: all end.
Strand* StepPace::giveUpKnown()
{
    m_isKnown = true;
    m_forks = false;
    for (int i = 0; i < m_world->processCount(); ++i)
        m_world->process(i).crash();
    return nullptr;
}

/// Null: something else than a strand's turn was chosen.
Strand* StepPace::choose(const std::vector<Strand*>& ready)
{
    const bool isInTheMiddle =
        m_last && std::find(ready.begin(), ready.end(), m_last) != ready.end() && !m_strands[m_last->id].standsBack;
    const bool mustGoOn = isInTheMiddle && m_preemptionsLeft == 0;
    const std::size_t strands = mustGoOn ? 1 : ready.size();
    const std::size_t count = strands + eventCount();
    if (count == 1 || !m_forks)
        return goOn(mustGoOn ? m_last : ready.front(), false);
    bool isNew = true;
    const std::size_t choice = m_ways.choose(count, digest(), isNew);
    if (!isNew)
        return giveUpKnown();
    if (choice < strands) {
        Strand* const chosen = mustGoOn ? m_last : ready[choice];
        return goOn(chosen, isInTheMiddle && chosen != m_last);
    }
    crashOrAge(choice - strands);
    return nullptr;
}

Strand* StepPace::next()
{
    for (;;) {
        if (++m_steps > m_bounds.steps)
            return someDeadOne();
        if (Strand* const dead = someDeadOne())
            return dead;
        std::vector<Strand*> ready;
        bool isAnyNeeded = false;
        for (const std::unique_ptr<Strand>& strand : m_world->strands.all()) {
            if (!canGoOn(*strand))
                continue;
            ready.push_back(strand.get());
            isAnyNeeded = isAnyNeeded || !m_strands[strand->id].isOptional || strand->hasStarted();
        }
        if (isAnyNeeded) {
            if (Strand* const chosen = choose(ready))
                return chosen;
            continue;
        }
        if (m_deadAreStale || m_crashesLeft == m_bounds.crashes)
            return nullptr;
        ageTheDead();
    }
}

}  // namespace sim
}  // namespace zorvel
