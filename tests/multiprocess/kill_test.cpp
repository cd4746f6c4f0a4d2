#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <random>
#include <thread>

using namespace zorvel::test;

namespace {

typedef std::chrono::steady_clock Clock;

const int processes = 5;
const int holdsEach = 15;
/// The victim holds long enough to be killed inside.
const int holdMsec = 20;

enum class Moment
{
    holding,  ///< inside
    queued,   ///< waiting for the others
    any,
};

/// Kills the victim at a random moment of the kind asked for.
void killVictim(Fleet& fleet, int victim, Moment moment, unsigned seed)
{
    std::mt19937 random(seed);
    const int turn = 1 + static_cast<int>(random() % 4);
    if (moment == Moment::holding)
        fleet[victim].waitHeld(turn);
    else if (moment == Moment::queued)
        fleet[victim].waitWaiting(turn);
    const int wait = moment == Moment::any ? static_cast<int>(random() % 400) : static_cast<int>(random() % holdMsec);
    std::this_thread::sleep_for(std::chrono::milliseconds(wait));
    fleet[victim].kill();
    fleet[victim].finish();
}

bool survivorsAreRunning(const Fleet& fleet, int victim)
{
    for (int i = 0; i < fleet.size(); ++i)
        if (i != victim && fleet.worker(i).running())
            return true;
    return false;
}

/// Ages what the dead process left whenever the survivors have made no
/// progress for four seconds. A machine that stood still itself in that time
/// proves nothing about them.
void helpSurvivors(const Fleet& fleet, int victim, const Scene& scene)
{
    int held = fleet.held();
    Clock::time_point progress = Clock::now();
    while (survivorsAreRunning(fleet, victim)) {
        const Clock::time_point before = Clock::now();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const bool stoodStill = Clock::now() - before > std::chrono::milliseconds(500);
        if (stoodStill || fleet.held() != held) {
            held = fleet.held();
            progress = Clock::now();
        } else if (Clock::now() - progress > std::chrono::seconds(4)) {
            scene.ageAbandoned();
            progress = Clock::now();
        }
    }
}

/// What a dead waiter leaves behind everybody else in the queue stays until
/// somebody queues behind it: it is in nobody's way. Anything else is gone,
/// and the directory is free.
void expectFree(const Scene& scene, unsigned seed)
{
    const std::vector<std::string> left = scene.lockFiles();
    EXPECT_LE(left.size(), 1u) << "seed " << seed;
    EXPECT_EQ(0, std::count(left.begin(), left.end(), ".deploy_lock.0")) << "seed " << seed;

    Fleet newcomer(scene.directory(), 1, 1, 0);
    newcomer.waitReady();
    newcomer.go();
    EXPECT_EQ(0, newcomer[0].finish()) << "seed " << seed;
    EXPECT_EQ(left, scene.lockFiles()) << "seed " << seed;
}

void playRound(Moment moment, unsigned seed)
{
    const Scene scene;
    Fleet fleet(scene.directory(), processes, holdsEach, holdMsec);
    // In a mixed fleet once one kind dies, once the other.
    const int victim = static_cast<int>(seed % 2);
    fleet.waitReady();
    fleet.go();
    killVictim(fleet, victim, moment, seed);
    helpSurvivors(fleet, victim, scene);
    for (int i = 0; i < processes; ++i) {
        if (i == victim)
            continue;
        EXPECT_EQ(0, fleet[i].finish()) << "worker " << i << ", seed " << seed;
        EXPECT_EQ(holdsEach, fleet[i].held()) << "worker " << i << ", seed " << seed;
    }
    expectFree(scene, seed);
}

/// Rounds wait most of the time, so several run side by side.
void playRounds(Moment moment, unsigned firstSeed, int rounds)
{
    boost::thread_group threads;
    for (int i = 0; i < rounds; ++i)
        threads.create_thread([=] { playRound(moment, firstSeed + i); });
    threads.join_all();
}

}  // namespace

TEST(Kill, AKilledHoldersLockIsTakenOverOnceItIsStale)
{
    playRounds(Moment::holding, 100, 4);
    playRounds(Moment::holding, 110, 4);
}

TEST(Kill, AKilledWaitersPlaceInTheQueueIsTakenOverOnceItIsStale)
{
    playRounds(Moment::queued, 200, 4);
    playRounds(Moment::queued, 210, 4);
}

TEST(Kill, AtAnyMoment)
{
    playRounds(Moment::any, 300, 4);
}
