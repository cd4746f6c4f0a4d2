#include "tests/simulation/exhaustive.h"

#include "tests/simulation/actor.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <vector>

namespace zorvel {
namespace sim {

namespace {

struct Case
{
    const char* name;
    std::vector<std::vector<Kind>> processes;
    Time timeout;
    StepBounds bounds;
    bool isLong;
};

StepBounds bounds(int crashes, int preemptions)
{
    StepBounds result;
    result.crashes = crashes;
    result.preemptions = preemptions;
    return result;
}

const int any = -1;
const Kind X = Kind::exclusive;
const Kind R = Kind::read;
const Kind W = Kind::write;
const Kind D = Kind::downgrade;

std::vector<Case> allCases()
{
    return {
        {"exclusive, 2", {{X}, {X}}, never, bounds(0, any), false},
        {"exclusive, 2, tries", {{X, X}, {X, X}}, 0, bounds(0, any), false},
        {"exclusive, 2, one dies", {{X}, {X}}, never, bounds(1, any), false},
        {"exclusive, 2, twice each", {{X, X}, {X, X}}, never, bounds(0, 2), false},
        {"exclusive, 3", {{X}, {X}, {X}}, never, bounds(0, 1), false},
        {"exclusive, 3, one dies", {{X}, {X}, {X}}, never, bounds(1, 0), false},
        {"2 writers", {{W}, {W}}, never, bounds(0, 2), false},
        {"reader, writer", {{R}, {W}}, never, bounds(0, 2), false},
        {"reader, downgrading writer", {{R}, {D}}, never, bounds(0, 2), false},
        {"writer, downgrading writer", {{W}, {D}}, never, bounds(0, 2), false},
        {"reader, writer, one dies", {{R}, {W}}, never, bounds(1, 1), false},
        {"writer, downgrading writer, one dies", {{W}, {D}}, never, bounds(1, 1), false},
        {"reader, writer, downgrading writer", {{R}, {W}, {D}}, never, bounds(0, 0), false},
        {"exclusive, 3 (long)", {{X}, {X}, {X}}, never, bounds(0, 2), true},
        {"exclusive, 3, one dies (long)", {{X}, {X}, {X}}, never, bounds(1, 1), true},
        {"2 writers (long)", {{W}, {W}}, never, bounds(0, any), true},
        {"reader, writer (long)", {{R}, {W}}, never, bounds(0, any), true},
        {"reader, downgrading writer (long)", {{R}, {D}}, never, bounds(0, 4), true},
        {"writer, downgrading writer (long)", {{W}, {D}}, never, bounds(0, 4), true},
    };
}

Plan planOf(const Case& each)
{
    Plan plan;
    plan.oneWay = 0;
    for (std::size_t i = 0; i < each.processes.size(); ++i) {
        plan.machines.push_back(MachinePlan());
        ProcessPlan process;
        process.machine = static_cast<int>(i);
        process.pid = 1000 + static_cast<unsigned long>(i);
        for (const Kind kind : each.processes[i]) {
            Turn turn;
            turn.kind = kind;
            turn.timeout = each.timeout;
            turn.hold = 2;
            process.turns.push_back(turn);
        }
        plan.processes.push_back(process);
    }
    return plan;
}

/// One way of a case.
class StepSchedule
{
public:
    StepSchedule(const Plan& plan, Choices& choices, Ways& ways, const StepBounds& bounds, Trace& trace)
        : m_pace(ways, bounds), m_world(plan, choices, m_pace, trace)
    {
        m_pace.use(m_world);
    }

    const Judge& run()
    {
        for (const ProcessPlan& process : m_world.plan.processes)
            start(process);
        runToTheEnd();
        if (!m_pace.isKnown() && m_world.judge.violations().empty())
            requireFree();
        return m_world.judge;
    }

    bool isKnown() const { return m_pace.isKnown(); }

private:
    void start(const ProcessPlan& plan)
    {
        Process& process = m_world.addProcess(plan);
        process.start([this, &process, plan] { act(m_world, process, plan); });
    }

    void runToTheEnd()
    {
        m_world.strands.run();
        for (const std::unique_ptr<Strand>& strand : m_world.strands.all()) {
            if (strand->isDone() || !strand->hasStarted())
                continue;
            m_world.judge.found(Wrong::forEver, m_pace.overran() ? "too many steps" : "all wait");
            for (int i = 0; i < m_world.processCount(); ++i)
                m_world.process(i).crash();
            m_world.strands.run();
            return;
        }
    }

    void requireFree()
    {
        m_pace.forkNoMore();
        for (const Server::Files::value_type& file : m_world.server.files())
            if (!m_world.process(file.second.owner).isDead())
                m_world.judge.found(Wrong::fileStays, file.first);
        if (m_world.server.files().empty())
            return;
        m_pace.ageTheDead();
        const long before = m_world.judge.holdCount();
        ProcessPlan newcomer = m_world.plan.processes.front();
        newcomer.pid = 99991;
        newcomer.turns.resize(1);
        newcomer.turns.front().timeout = never;
        if (newcomer.turns.front().kind != Kind::exclusive)
            newcomer.turns.front().kind = Kind::write;
        start(newcomer);
        runToTheEnd();
        if (m_world.judge.holdCount() == before)
            m_world.judge.found(Wrong::newcomerWaits, "for ever");
    }

    StepPace m_pace;
    World m_world;
};

/// The way that the last run of `ways` went, once more, as a table.
void showLast(const Case& each, const Plan& plan, Ways ways)
{
    ways.beginRun();
    Choices choices(0);
    Trace trace(true);
    StepSchedule schedule(plan, choices, ways, each.bounds, trace);
    schedule.run();
    trace.print(std::cout, true);
}

bool runCase(const Case& each)
{
    const Plan plan = planOf(each);
    Ways ways;
    std::uint64_t runs = 0;
    do {
        ways.beginRun();
        Choices choices(0);
        Trace silent(false);
        StepSchedule schedule(plan, choices, ways, each.bounds, silent);
        const Judge& judge = schedule.run();
        ++runs;
        if (!judge.violations().empty()) {
            std::cout << each.name << ": " << nameOf(judge.violations().front().wrong) << ": "
                      << judge.violations().front().text << '\n';
            showLast(each, plan, ways);
            return false;
        }
    } while (ways.nextRun());
    std::cout << std::left << std::setw(50) << each.name << std::right << std::setw(9) << ways.states() << " states"
              << std::setw(9) << runs << " runs, 0 violations; preemptions: ";
    if (each.bounds.preemptions < 0)
        std::cout << "any" << std::endl;
    else
        std::cout << each.bounds.preemptions << std::endl;
    return true;
}

}  // namespace

bool runExhaustively(const std::string& which, bool withLongCases)
{
    bool isAllWell = true;
    for (const Case& each : allCases())
        if ((withLongCases || !each.isLong) && std::string(each.name).compare(0, which.size(), which) == 0)
            isAllWell = runCase(each) && isAllWell;
    return isAllWell;
}

}  // namespace sim
}  // namespace zorvel
