#include "tests/multiprocess/roamers.h"
#include "tests/multiprocess/semaphore_user.h"

#include <zorvel/ipc.h>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/thread.hpp>
#include <boost/thread/thread_time.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <iostream>
#include <memory>
#include <random>
#include <thread>

using namespace zorvel::test;

namespace {

typedef std::chrono::steady_clock Clock;
typedef std::unique_ptr<SemaphoreUser> User;

User obedient(const std::string& name)
{
    User user(new SemaphoreUser({"obey", name}));
    EXPECT_TRUE(user->ask("open"));
    return user;
}

/// Others that wait without limit while the test holds the semaphore.
class Queue
{
public:
    explicit Queue(int length) : m_name(freshSemaphoreName()), m_holder(m_name, 1, false)
    {
        EXPECT_TRUE(m_holder.Open());
        EXPECT_TRUE(m_holder.TryAcquire());
        for (int i = 0; i < length; ++i)
            m_users.push_back(obedient(m_name));
        for (const User& user : m_users) {
            user->tell("acquire");
            EXPECT_EQ("waiting", user->hear());
        }
    }

    void kill(int index)
    {
        m_users[index]->kill();
        m_users.erase(m_users.begin() + index);
    }

    void release() { EXPECT_TRUE(m_holder.Release()); }

    /// Waits until everybody has had the semaphore, and whether somebody took
    /// it along who was killed. Then it is given back for the dead.
    bool followToTheEnd();

private:
    void follow(SemaphoreUser& user);
    bool waitForAll();

    const std::string m_name;
    zvSemaphoreIPC m_holder;
    std::vector<User> m_users;
    boost::mutex m_mutex;
    boost::condition_variable m_changed;
    std::size_t m_served = 0;
};

void Queue::follow(SemaphoreUser& user)
{
    EXPECT_EQ("yes", user.hear());
    EXPECT_TRUE(user.ask("release"));
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    ++m_served;
    m_changed.notify_all();
}

/// False when nobody has had it for four seconds.
bool Queue::waitForAll()
{
    boost::unique_lock<boost::mutex> lock(m_mutex);
    while (m_served < m_users.size()) {
        const std::size_t before = m_served;
        const boost::system_time limit = boost::get_system_time() + boost::posix_time::seconds(4);
        if (!m_changed.timed_wait(lock, limit, [&] { return m_served > before; }))
            return false;
    }
    return true;
}

bool Queue::followToTheEnd()
{
    boost::thread_group followers;
    for (const User& user : m_users)
        followers.create_thread([this, &user] { follow(*user); });
    const bool lost = !waitForAll();
    if (lost) {
        EXPECT_FALSE(m_holder.TryAcquire()) << "it is free and nobody was told";
        EXPECT_TRUE(m_holder.Release());
    }
    followers.join_all();
    EXPECT_TRUE(m_holder.TryAcquire());
    EXPECT_FALSE(m_holder.TryAcquire());
    return lost;
}

void spin(std::chrono::microseconds time)
{
    for (const Clock::time_point end = Clock::now() + time; Clock::now() < end;) {
    }
}

/// A waiter is killed at about the moment in which it is woken.
bool killJustWoken(unsigned seed)
{
    std::mt19937 random(seed);
    Queue queue(5);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
    queue.release();
    const int longest[] = {30, 200, 3000};
    spin(std::chrono::microseconds(random() % longest[seed % 3]));
    // On most systems the first in line is the one who is woken.
    queue.kill(random() % 2 == 0 ? 0 : static_cast<int>(random() % 5));
    return queue.followToTheEnd();
}

void roam(unsigned seed, int count, Clock::time_point end)
{
    Roamers roamers(seed, count);
    while (Clock::now() < end && !testing::Test::HasFailure())
        roamers.round(2);
    EXPECT_LT(0, roamers.visits) << "seed " << seed;
    roamers.report();
}

}  // namespace

TEST(SemaphoreKill, AHoldersTokenIsLostOnlyWhileSomebodyHasTheSemaphoreOpen)
{
    const std::string name = freshSemaphoreName();
    User holder = obedient(name);
    User first = obedient(name);
    EXPECT_TRUE(holder->ask("try"));
    EXPECT_FALSE(first->ask("try"));
    holder->kill();
    EXPECT_FALSE(first->ask("try"));
    EXPECT_FALSE(first->ask("timed"));
    User second = obedient(name);
    EXPECT_FALSE(second->ask("try")) << "a newcomer joins those who are there";
    EXPECT_TRUE(first->ask("close"));
    EXPECT_FALSE(second->ask("try"));
    first->kill();
    EXPECT_FALSE(second->ask("try"));
    EXPECT_TRUE(second->ask("close"));
    User third = obedient(name);
    EXPECT_TRUE(third->ask("try")) << "nobody had it open";
    EXPECT_TRUE(second->ask("open"));
    EXPECT_FALSE(second->ask("try"));
    EXPECT_TRUE(third->ask("release"));
    EXPECT_TRUE(second->ask("try"));
    EXPECT_FALSE(third->ask("try"));
}

TEST(SemaphoreKill, ATokenGoesWithItsHolderWhenNobodyElseHasTheSemaphoreOpen)
{
    const std::string name = freshSemaphoreName();
    for (int i = 0; i < 5; ++i) {
        const User holder = obedient(name);
        EXPECT_TRUE(holder->ask("try")) << i;
        EXPECT_FALSE(holder->ask("try"));
        holder->kill();
    }
}

TEST(SemaphoreKill, SomebodyElseReleasesForTheDead)
{
    const std::string name = freshSemaphoreName();
    const User holder = obedient(name);
    const User other = obedient(name);
    EXPECT_TRUE(holder->ask("acquire"));
    holder->kill();
    EXPECT_TRUE(other->ask("release"));
    EXPECT_FALSE(other->ask("release"));
    EXPECT_TRUE(other->ask("acquire"));
}

TEST(SemaphoreKill, TheLastOfSeveralDeadTakesTheSemaphoreAlong)
{
    const std::string name = freshSemaphoreName();
    for (int i = 0; i < 3; ++i) {
        std::vector<User> users;
        for (int j = 0; j < 4; ++j)
            users.push_back(obedient(name));
        EXPECT_TRUE(users[i]->ask("try"));
        users[3]->tell("acquire");
        EXPECT_EQ("waiting", users[3]->hear());
        for (const User& user : users)
            user->kill();
    }
    EXPECT_TRUE(obedient(name)->ask("try"));
}

TEST(SemaphoreKill, AWaiterThatIsKilledDoesNotStandInTheWayOfOthers)
{
    for (int victim = 0; victim < 4; ++victim) {
        Queue queue(4);
        queue.kill(victim);
        queue.release();
        EXPECT_FALSE(queue.followToTheEnd()) << "a waiter that had not got it cannot have taken it along";
    }
}

/// Whoever is killed when it has been woken may have the token and take it
/// along, but never the waking of the others.
TEST(SemaphoreKill, AWaiterThatIsKilledJustWokenDoesNotSwallowTheWakingOfOthers)
{
    const int sideBySide = 6;
    const int rounds = 4;
    boost::thread_group threads;
    std::atomic<int> lost(0);
    for (int i = 0; i < sideBySide; ++i)
        threads.create_thread([&, i] {
            for (int round = 0; round < rounds; ++round)
                lost += killJustWoken(static_cast<unsigned>(i * 100 + round));
        });
    threads.join_all();
    std::cout << lost << " of " << sideBySide * rounds << " died with the token" << std::endl;
}

TEST(SemaphoreKill, AtRandomMoments)
{
    const Clock::time_point end = Clock::now() + std::chrono::seconds(ZORVEL_KILL_SECONDS);
    boost::thread_group threads;
    threads.create_thread([=] { roam(1001, 5, end); });
    // Of a few, the last goes again and again and takes the semaphore along.
    threads.create_thread([=] { roam(1002, 2, end); });
    threads.join_all();
}
