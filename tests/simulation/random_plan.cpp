#include "tests/simulation/choices.h"
#include "tests/simulation/plan.h"

#include <initializer_list>

namespace zorvel {
namespace sim {

namespace {

Time oneOf(Dice& dice, std::initializer_list<Time> values)
{
    return *(values.begin() + dice.below(values.size()));
}

/// Mostly short, so that many meet.
Time shortTime(Dice& dice, Time usual, Time longest)
{
    return dice.odds(150) ? dice.between(0, longest) : dice.between(0, usual);
}

/// What the processes of one plan do.
enum class Mix
{
    exclusive,
    readersAndWriters,
    writers,
    downgraders,
};

Kind anyKind(Dice& dice, Mix mix)
{
    if (mix == Mix::exclusive)
        return Kind::exclusive;
    const std::uint64_t number = dice.below(10) + (mix == Mix::writers ? 4 : mix == Mix::downgraders ? 7 : 0);
    return number < 5 ? Kind::read : number < 8 ? Kind::write : Kind::downgrade;
}

Turn anyTurn(Dice& dice, Mix mix, bool isLong)
{
    Turn turn;
    turn.kind = anyKind(dice, mix);
    turn.before = shortTime(dice, 40 * millisecond, 3 * second);
    turn.hold = shortTime(dice, 20 * millisecond, 4 * second);
    // Sometimes so long that without a refresh it would be taken for dead.
    if (isLong && dice.odds(30))
        turn.hold = dice.between(0, 45 * second);
    // A read-write lock that must exclude is acquired without limit.
    if (mix == Mix::exclusive && dice.odds(500))
        turn.timeout = dice.odds(300) ? 0 : shortTime(dice, 100 * millisecond, 5 * second);
    turn.refreshed = turn.hold > 5 * second || !dice.odds(100);
    return turn;
}

/// The sum of the pauses of a process stays far from the 30 seconds.
Mishap anyMishap(Dice& dice, const Plan& plan, Mishap::Sort sort)
{
    Mishap mishap;
    mishap.sort = sort;
    mishap.process = static_cast<int>(dice.below(plan.processes.size()));
    mishap.operation = static_cast<int>(dice.below(dice.odds(500) ? 12 : 100));
    mishap.delay = dice.between(0, 3 * plan.oneWay + millisecond);
    if (sort == Mishap::pause)
        mishap.duration = dice.between(0, 6 * second);
    return mishap;
}

void addMishaps(Dice& dice, Plan& plan)
{
    const bool areCrashes = plan.oneWay >= 3 * millisecond;
    for (int i = 0; i < 2; ++i) {
        if (areCrashes && dice.odds(200))
            plan.mishaps.push_back(anyMishap(dice, plan, Mishap::crash));
        if (dice.odds(200))
            plan.mishaps.push_back(anyMishap(dice, plan, Mishap::pause));
        if (dice.odds(150))
            plan.mishaps.push_back(anyMishap(dice, plan, Mishap::interruption));
    }
}

void addProcesses(Dice& dice, Plan& plan)
{
    const Mix mix = dice.odds(400)   ? Mix::exclusive
                    : dice.odds(400) ? Mix::readersAndWriters
                    : dice.odds(500) ? Mix::writers
                                     : Mix::downgraders;
    const std::uint64_t count = 2 + dice.below(plan.faults ? 3 : 5);
    for (std::uint64_t i = 0; i < count; ++i) {
        ProcessPlan process;
        process.machine = static_cast<int>(dice.below(plan.machines.size()));
        // Processes of different machines may have the same identifier.
        process.pid = static_cast<unsigned long>(1000 + dice.below(3) + (process.machine == 0 ? 7 * i : 0));
        for (std::uint64_t turns = 1 + dice.below(4); turns > 0; --turns)
            process.turns.push_back(anyTurn(dice, mix, plan.oneWay >= 3 * millisecond));
        plan.processes.push_back(process);
    }
}

}  // namespace

Plan randomPlan(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan;
    plan.seed = seed;
    plan.oneWay = oneOf(dice, {0, 100, 400, millisecond, 3 * millisecond, 6 * millisecond, 10 * millisecond});
    plan.jitter = plan.oneWay == 0 ? 0 : static_cast<unsigned>(oneOf(dice, {0, 100, 500, 1000}));
    plan.stretch = dice.odds(400) ? 15 : 4;
    if (plan.oneWay >= 3 * millisecond) {
        plan.slow = static_cast<unsigned>(oneOf(dice, {0, 0, 3}));
        plan.slowest = second;
        plan.faults = static_cast<unsigned>(oneOf(dice, {0, 0, 3, 15}));
    }
    plan.cached = oneOf(dice, {0, 0, second, 5 * second});
    plan.serverOffset = dice.between(-20 * 3600 * second, 20 * 3600 * second);
    plan.serverPpm = static_cast<int>(dice.between(-50, 50));
    for (std::uint64_t machines = 1 + dice.below(3); machines > 0; --machines) {
        MachinePlan machine;
        machine.offset = dice.between(-2 * 3600 * second, 2 * 3600 * second);
        machine.ppm = static_cast<int>(dice.between(-50, 50));
        plan.machines.push_back(machine);
    }
    addProcesses(dice, plan);
    addMishaps(dice, plan);
    // Nobody may remember the time of a dead one's file while another takes it over.
    if (plan.faults > 0 || !plan.mishaps.empty())
        plan.cached = 0;
    return plan;
}

}  // namespace sim
}  // namespace zorvel
