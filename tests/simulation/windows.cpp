#include "tests/simulation/windows.h"

#include "tests/simulation/choices.h"

namespace zorvel {
namespace sim {

namespace {

Turn turnOf(Dice& dice, Kind kind, Time hold)
{
    Turn turn;
    turn.kind = kind;
    turn.before = dice.between(0, 20 * millisecond);
    turn.hold = hold;
    return turn;
}

/// Some processes of one machine each, on a share where nothing goes wrong,
/// each with one turn.
Plan calmPlan(Dice& dice, std::uint64_t seed, Kind kind, int processes)
{
    Plan plan;
    plan.seed = seed;
    plan.oneWay = 5 * millisecond;
    plan.jitter = 300;
    for (int i = 0; i < processes; ++i) {
        plan.machines.push_back(MachinePlan());
        ProcessPlan process;
        process.machine = i;
        process.pid = 1000 + static_cast<unsigned long>(i);
        process.turns.push_back(turnOf(dice, kind, dice.between(0, 2 * second)));
        plan.processes.push_back(process);
    }
    return plan;
}

Mishap mishapAt(Dice& dice, Mishap::Sort sort, int process, int operations, Time duration)
{
    Mishap mishap;
    mishap.sort = sort;
    mishap.process = process;
    mishap.operation = static_cast<int>(dice.below(static_cast<std::uint64_t>(operations)));
    mishap.delay = dice.between(0, 20 * millisecond);
    mishap.duration = duration;
    return mishap;
}

Plan standstillOfHolder(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 2);
    plan.mishaps.push_back(mishapAt(dice, Mishap::pause, 0, 20, dice.between(31 * second, 60 * second)));
    return plan;
}

Plan standstillOfWriter(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::write, 2);
    plan.mishaps.push_back(mishapAt(dice, Mishap::pause, 0, 30, dice.between(31 * second, 60 * second)));
    return plan;
}

/// The first dies with the lock; one of those who wait stands still.
Plan twoTakers(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 3);
    plan.processes[0].turns[0].before = 0;
    plan.processes[1].turns[0].before += 20 * millisecond;
    plan.processes[2].turns[0].before += 20 * millisecond;
    plan.mishaps.push_back(mishapAt(dice, Mishap::crash, 0, 6, 0));
    // It does so at about the time at which the dead one's file becomes stale.
    plan.jitter = 0;
    plan.mishaps.push_back(mishapAt(dice, Mishap::pause, 1, 120, dice.between(30 * second, 32 * second)));
    plan.mishaps.back().operation += 2360;
    return plan;
}

Plan withoutGuard(std::uint64_t seed, Kind timedKind)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::write, 2);
    Turn& timed = plan.processes[1].turns[0];
    timed.kind = timedKind;
    timed.timeout = dice.odds(500) ? 0 : dice.between(0, 60 * millisecond);
    for (ProcessPlan& process : plan.processes)
        process.turns[0].before = dice.between(0, 60 * millisecond);
    return plan;
}

Plan readerWithoutGuard(std::uint64_t seed)
{
    return withoutGuard(seed, Kind::read);
}

Plan writerWithoutGuard(std::uint64_t seed)
{
    return withoutGuard(seed, Kind::write);
}

Plan clockSetForward(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 2);
    plan.machines[1].jumpAt = dice.between(0, 2 * second);
    plan.machines[1].jump = dice.between(31 * second, 3600 * second);
    return plan;
}

Plan clockSetBack(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 2);
    plan.processes[0].turns[0].hold = dice.between(35 * second, 50 * second);
    plan.machines[0].jumpAt = dice.between(0, 3 * second);
    plan.machines[0].jump = -dice.between(35 * second, 3600 * second);
    return plan;
}

Plan serverSetForward(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 2);
    plan.processes[0].turns[0].hold = dice.between(2 * second, 4 * second);
    plan.processes[1].turns[0].before = dice.between(0, 2 * second);
    plan.serverJumpAt = dice.between(0, 2 * second);
    plan.serverJump = dice.between(31 * second, 3600 * second);
    return plan;
}

Plan oldAnswers(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 2);
    plan.processes[0].turns[0].hold = dice.between(25 * second, 50 * second);
    plan.cached = dice.between(35 * second, 60 * second);
    return plan;
}

/// A writer dies; another replaces its mark by its own while a third still
/// remembers the time of the old one.
Plan replacedFile(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::write, 3);
    plan.processes[0].turns[0].before = 0;
    for (std::size_t i = 1; i < 3; ++i) {
        plan.processes[i].turns[0].before += 100 * millisecond;
        plan.processes[i].turns[0].hold = dice.between(second, 4 * second);
    }
    plan.mishaps.push_back(mishapAt(dice, Mishap::crash, 0, 4, 0));
    plan.mishaps.back().operation += 8;
    plan.cached = dice.between(2 * second, 5 * second);
    plan.cachedByName = true;
    return plan;
}

Plan notRefreshed(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 2);
    plan.processes[0].turns[0].refreshed = false;
    plan.processes[0].turns[0].hold = dice.between(25 * second, 40 * second);
    return plan;
}

Plan failedLook(std::uint64_t seed)
{
    Dice dice(mixed(seed));
    Plan plan = calmPlan(dice, seed, Kind::exclusive, 3);
    for (ProcessPlan& process : plan.processes)
        process.turns = {turnOf(dice, Kind::exclusive, dice.between(0, 20 * millisecond)),
                         turnOf(dice, Kind::exclusive, dice.between(0, 20 * millisecond))};
    plan.failingLooks = 80;
    return plan;
}

}  // namespace

const Window windows[] = {
    {"standstill-of-holder", "a holder stands still for more than 30 seconds", &standstillOfHolder},
    {"standstill-of-writer", "the same for a writer", &standstillOfWriter},
    {"two-takers", "a waiter stands still while it takes a stale file over", &twoTakers},
    {"reader-without-guard", "a reader whose deadline comes before its guard", &readerWithoutGuard},
    {"writer-without-guard", "a writer whose deadline comes before its guard", &writerWithoutGuard},
    {"clock-set-forward", "the clock of a waiter jumps forward", &clockSetForward},
    {"clock-set-back", "the clock of a holder jumps back", &clockSetBack},
    {"server-set-forward", "the clock of the file server jumps forward", &serverSetForward},
    {"old-answers", "a client remembers modification times for more than 30 seconds", &oldAnswers},
    {"replaced-file", "a client takes the time of an earlier file of the same name for that of a new one",
     &replacedFile},
    {"not-refreshed", "a lock without refresh is held for more than 30 seconds", &notRefreshed},
    {"failed-look", "a look for a file fails", &failedLook},
};

const std::size_t windowCount = sizeof windows / sizeof *windows;

}  // namespace sim
}  // namespace zorvel
