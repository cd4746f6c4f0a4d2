#include "tests/simulation/schedule.h"

#include "tests/simulation/actor.h"
#include "tests/simulation/timed_pace.h"
#include "tests/simulation/world.h"

#include <algorithm>
#include <string>

namespace zorvel {
namespace sim {

namespace {

const Time longestSchedule = 3600 * second;

/// After this everything that the dead have left is stale.
const Time grace = 31 * second;

/// On clocks that run true; one machine is as good as another for those who
/// come afterwards.
ProcessPlan newcomerPlan(Kind kind, Time before, Time hold)
{
    ProcessPlan plan;
    plan.pid = 99991;
    Turn turn;
    turn.kind = kind;
    turn.before = before;
    turn.hold = hold;
    plan.turns.push_back(turn);
    return plan;
}

class Schedule
{
public:
    Schedule(const Plan& plan, Choices& choices, Trace& trace)
        : m_pace(longestSchedule), m_world(plan, choices, m_pace, trace)
    {
        m_pace.use(m_world.strands);
    }

    Outcome run()
    {
        noteClocks();
        for (const ProcessPlan& process : m_world.plan.processes)
            start(process);
        runToTheEnd();
        if (!m_world.judge.hasFound(Wrong::forEver))
            letNewcomersIn();
        Outcome outcome;
        outcome.violations = m_world.judge.violations();
        outcome.choices = m_world.choices.taken();
        outcome.lasted = m_pace.now();
        outcome.holds = m_world.judge.holdCount();
        outcome.mostOvertaken = m_world.judge.mostOvertaken();
        return outcome;
    }

private:
    Process& start(const ProcessPlan& plan)
    {
        Process& process = m_world.addProcess(plan);
        process.start([this, &process, plan] { act(m_world, process, plan); });
        return process;
    }

    /// For the table: the clocks jump by themselves.
    void noteClocks()
    {
        const Plan& plan = m_world.plan;
        if (plan.serverJump != 0)
            noteLater(plan.serverJumpAt, -1, "the server's clock is set by ", plan.serverJump);
        for (std::size_t i = 0; i < plan.processes.size(); ++i) {
            const MachinePlan& machine = plan.machines[static_cast<std::size_t>(plan.processes[i].machine)];
            if (machine.jump != 0)
                noteLater(machine.jumpAt, static_cast<int>(i), "its clock is set by ", machine.jump);
        }
    }

    void noteLater(Time time, int process, const char* what, Time jump)
    {
        const std::string text = what + std::to_string(jump / second) + " s";
        m_pace.later(time, [=] { m_world.trace.event(m_pace.now(), process, text); });
    }

    void runToTheEnd()
    {
        m_world.strands.run();
        if (!areSomeLeft())
            return;
        m_world.judge.found(Wrong::forEver, m_pace.overran() ? "not at its end after an hour" : "all wait");
        // So that they unwind.
        m_pace.setLimit(never);
        for (int i = 0; i < m_world.processCount(); ++i)
            m_world.process(i).crash();
        m_world.strands.run();
    }

    bool areSomeLeft() const
    {
        return std::any_of(m_world.strands.all().begin(), m_world.strands.all().end(),
                           [](const std::unique_ptr<Strand>& strand) { return !strand->isDone(); });
    }

    /// Whoever comes when all are gone gets the directory at once, and finds a
    /// way through what the dead have left.
    void letNewcomersIn()
    {
        requireExplainedFiles();
        const bool isExclusive = m_world.plan.processes.front().turns.front().kind == Kind::exclusive;
        const std::size_t left = m_world.server.files().size();
        const Time begin = m_pace.now() + grace;
        Process& newcomer = start(newcomerPlan(isExclusive ? Kind::exclusive : Kind::write, grace, 0));
        newcomer.spare();
        runToTheEnd();
        const Time operation = 2 * m_world.plan.longestWay() + millisecond;
        const Time took = m_pace.now() - begin;
        if (took > 50 * millisecond + static_cast<Time>(30 + 10 * left) * operation)
            m_world.judge.found(Wrong::newcomerWaits, std::to_string(took / millisecond) + " ms");
        if (!m_world.server.files().empty())
            sweep();
    }

    /// Without anybody who died or met a failure no file stays at all.
    void requireExplainedFiles()
    {
        for (const Server::Files::value_type& file : m_world.server.files()) {
            const Process& owner = m_world.process(file.second.owner);
            if (!owner.isDead() && !owner.isFaulty())
                m_world.judge.found(Wrong::fileStays, file.first);
        }
    }

    /// Lets so many queue that every level is passed, and a writer come in.
    /// What stays then stays for ever; only comparisons of clocks may.
    void sweep()
    {
        int levels = 1;
        for (const std::string& name : m_world.server.namesWith(".deploy_lock."))
            levels = std::max(levels, std::stoi(name.substr(name.rfind('.') + 1)) + 2);
        for (int i = 0; i < levels; ++i)
            start(newcomerPlan(Kind::exclusive, grace, second + levels * 200 * m_world.plan.oneWay)).spare();
        runToTheEnd();
        start(newcomerPlan(Kind::write, grace, 0)).spare();
        runToTheEnd();
        for (const Server::Files::value_type& file : m_world.server.files())
            if (file.first.compare(0, 8, ".deploy_") == 0)
                m_world.judge.found(Wrong::fileStays, file.first + " for ever");
    }

    TimedPace m_pace;
    World m_world;
};

}  // namespace

Outcome runSchedule(const Plan& plan, Trace& trace, const std::set<Choices::Key>* only)
{
    Choices choices(plan.seed);
    if (only)
        choices.allowOnly(*only);
    Schedule schedule(plan, choices, trace);
    return schedule.run();
}

}  // namespace sim
}  // namespace zorvel
