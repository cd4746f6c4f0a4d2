#pragma once

#include "tests/simulation/choices.h"
#include "tests/simulation/judge.h"
#include "tests/simulation/pace.h"
#include "tests/simulation/plan.h"
#include "tests/simulation/process.h"
#include "tests/simulation/server.h"
#include "tests/simulation/strands.h"
#include "tests/simulation/trace.h"

#include <memory>
#include <vector>

namespace zorvel {
namespace sim {

/// All that there is in one schedule. One exists at a time.
class World
{
public:
    World(const Plan& plan, Choices& choices, Pace& pace, Trace& trace);
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Null outside of a schedule.
    static World* current();

    const Plan& plan;
    Choices& choices;
    Pace& pace;
    Trace& trace;
    Strands strands;
    Judge judge;
    Server server;

    Process& addProcess(const ProcessPlan& processPlan);
    Process& process(int number) { return *m_processes[static_cast<std::size_t>(number)]; }
    int processCount() const { return static_cast<int>(m_processes.size()); }

    /// Seconds of the server's clock.
    long long serverTime() const;

private:
    std::vector<std::unique_ptr<Machine>> m_machines;
    std::vector<std::unique_ptr<Process>> m_processes;
};

}  // namespace sim
}  // namespace zorvel
