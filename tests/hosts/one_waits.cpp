#include "tests/hosts/one_waits.h"

#include <gtest/gtest.h>

#include <climits>

namespace zorvel {
namespace test {

double secondsBetween(Moment from, Moment to)
{
    return std::chrono::duration<double>(to - from).count();
}

OneWaits::OneWaits(const std::string& share, const Part& holder, const Part& waiter)
    : m_directory(share),
      m_what(share + ": " + holder.role.substr(7) + " held, " + waiter.role.substr(7) + " waited"),
      m_holderReads(holder.role != "asking-exclusive"),
      m_fleet(prepared(m_directory), {holder, waiter})
{
}

std::string OneWaits::prepared(const SharedDirectory& directory)
{
    directory.writeFirstRelease();
    return directory.path();
}

void OneWaits::sendHolder()
{
    m_fleet.waitReady();
    m_fleet[0].go();
}

void OneWaits::awaitHolder()
{
    EXPECT_TRUE(m_fleet[0].waitSaid(m_holderReads ? "looked" : "held", 1)) << m_what;
}

void OneWaits::sendWaiter()
{
    m_fleet[1].go();
}

void OneWaits::awaitWaiter()
{
    EXPECT_TRUE(m_fleet[1].waitWaiting(1)) << m_what;
    m_waiterFollower = boost::thread([this] {
        m_fleet[1].waitHeld(1);
        m_came = std::chrono::steady_clock::now();
    });
    m_holderFollower = boost::thread([this] {
        m_fleet[0].waitSaid("free", 1);
        m_left = std::chrono::steady_clock::now();
    });
}

void OneWaits::finish()
{
    m_holderFollower.join();
    m_holderStatus = m_fleet[0].finish();
    m_waiterFollower.join();
    m_waiterStatus = m_fleet[1].finish();
}

void OneWaits::finishWithoutHolder()
{
    m_waiterFollower.join();
    m_waiterStatus = m_fleet[1].finish();
    m_fleet[0].kill();
    m_holderFollower.join();
    m_holderStatus = m_fleet[0].finish();
}

bool OneWaits::wereInsideTogether() const
{
    return !overlaps(holdsOf(m_fleet.marks(), 0, INT_MAX)).empty();
}

std::vector<std::unique_ptr<OneWaits>> beginOnAllShares(const std::vector<std::pair<Part, Part>>& parts)
{
    std::vector<std::unique_ptr<OneWaits>> all;
    for (const std::string& share : shares())
        for (const auto& pair : parts)
            all.emplace_back(new OneWaits(share, pair.first, pair.second));
    for (const auto step :
         {&OneWaits::sendHolder, &OneWaits::awaitHolder, &OneWaits::sendWaiter, &OneWaits::awaitWaiter})
        for (const auto& one : all)
            (*one.*step)();
    return all;
}

}  // namespace test
}  // namespace zorvel
