#include "tests/simulation/world.h"

namespace zorvel {
namespace sim {

namespace {

World* only = nullptr;

}  // namespace

World::World(const Plan& itsPlan, Choices& itsChoices, Pace& itsPace, Trace& itsTrace)
    : plan(itsPlan), choices(itsChoices), pace(itsPace), trace(itsTrace), strands(itsPace), judge(*this), server(judge)
{
    for (const MachinePlan& machine : plan.machines)
        m_machines.emplace_back(new Machine(machine, plan.cached));
    only = this;
}

World::~World()
{
    only = nullptr;
}

World* World::current()
{
    return only;
}

Process& World::addProcess(const ProcessPlan& processPlan)
{
    Machine& machine = *m_machines[static_cast<std::size_t>(processPlan.machine)];
    m_processes.emplace_back(new Process(*this, processCount(), processPlan, machine));
    return *m_processes.back();
}

long long World::serverTime() const
{
    const long long start = 1931246813;
    const Time jump = pace.now() >= plan.serverJumpAt ? plan.serverJump : 0;
    const Time now = pace.now() + plan.serverOffset + pace.now() / 1000000 * plan.serverPpm + jump;
    return start + (now >= 0 ? now / second : (now - second + 1) / second);
}

}  // namespace sim
}  // namespace zorvel
