#include "tests/multiprocess/roamers.h"

#include <zorvel/ipc.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace zorvel {
namespace test {

Roamers::Roamers(unsigned seed, int count) : m_random(seed), m_seed(seed), m_name(freshSemaphoreName()), m_users(count)
{
    replaceTheDead();
}

void Roamers::replaceTheDead()
{
    std::vector<SemaphoreUser*> started;
    for (User& user : m_users)
        if (!user) {
            user.reset(new SemaphoreUser({"roam", m_name, m_scene.directory(), std::to_string(m_random() % 100000)}));
            started.push_back(user.get());
        }
    for (SemaphoreUser* const user : started)
        EXPECT_EQ("ready", user->hear());
}

void Roamers::hearParked(SemaphoreUser& user)
{
    const std::string line = user.hear();
    EXPECT_EQ("parked ", line.substr(0, 7)) << line;
    visits += std::atol(line.c_str() + std::min<std::size_t>(line.size(), 7));
}

/// While nobody moves. One that was killed may have taken the token along, not
/// more.
void Roamers::expectOneToken(bool mayBeLost)
{
    zvSemaphoreIPC semaphore(m_name, 1, false);
    ASSERT_TRUE(semaphore.Open());
    if (!semaphore.TryAcquire()) {
        EXPECT_TRUE(mayBeLost) << "nobody had it open";
        ++tokensLost;
        EXPECT_TRUE(semaphore.Release());
        EXPECT_TRUE(semaphore.TryAcquire());
    }
    EXPECT_FALSE(semaphore.TryAcquire());
    EXPECT_TRUE(semaphore.Release());
}

void Roamers::kill(User& victim)
{
    if (!victim)
        return;
    victim->kill();
    victim.reset();
    ++kills;
}

void Roamers::killSome(std::size_t mostVictims)
{
    const std::size_t victims = 1 + m_random() % mostVictims;
    for (std::size_t i = 0; i < victims; ++i)
        kill(m_users[m_random() % m_users.size()]);
}

void Roamers::killAll()
{
    for (User& user : m_users)
        kill(user);
}

std::size_t Roamers::alive() const
{
    return m_users.size() - static_cast<std::size_t>(std::count(m_users.begin(), m_users.end(), nullptr));
}

void Roamers::goForAWhile()
{
    for (const User& user : m_users)
        user->tell("go");
    std::this_thread::sleep_for(std::chrono::microseconds(m_random() % 60000));
}

void Roamers::end()
{
    goForAWhile();
    killAll();
}

void Roamers::stopTheOthers()
{
    m_scene.tree().directory("stop");
    for (const User& user : m_users)
        if (user)
            hearParked(*user);
}

void Roamers::round(std::size_t mostVictims)
{
    goForAWhile();
    killSome(mostVictims);
    goOnWithWhoIsLeft();
}

void Roamers::roundWithoutSurvivors()
{
    goForAWhile();
    killAll();
    goOnWithWhoIsLeft();
}

void Roamers::goOnWithWhoIsLeft()
{
    ++rounds;
    withoutSurvivors += alive() == 0 ? 1 : 0;
    stopTheOthers();
    expectOneToken(alive() > 0 || !startsAlone);
    m_scene.tree().removeDirectory("stop");
    replaceTheDead();
}

void Roamers::report() const
{
    std::cout << ("seed " + std::to_string(m_seed) + ": " + std::to_string(rounds) + " rounds (" +
                  std::to_string(withoutSurvivors) + " without survivors), " + std::to_string(kills) + " kills, " +
                  std::to_string(visits) + " visits of survivors, " + std::to_string(tokensLost) +
                  " tokens lost with their holders\n")
              << std::flush;
}

}  // namespace test
}  // namespace zorvel
