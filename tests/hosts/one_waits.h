#pragma once

#include "tests/hosts/shared_directory.h"
#include "tests/multiprocess/fleet.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

typedef std::chrono::steady_clock::time_point Moment;

double secondsBetween(Moment from, Moment to);

/// Somebody on the first machine who holds a directory of a share, and
/// somebody on the second who waits for it.
class OneWaits
{
public:
    OneWaits(const std::string& share, const Part& holder, const Part& waiter);

    /// Lets the one go inside, and returns when it is there and has read what
    /// it finds.
    void sendHolder();
    void awaitHolder();

    /// The same with the other, which then waits.
    void sendWaiter();
    void awaitWaiter();

    /// Waits for the end of both; the figures are complete then.
    void finish();

    /// Waits for the end of the waiter, the holder being dead.
    void finishWithoutHolder();

    const std::string& what() const { return m_what; }
    const SharedDirectory& directory() const { return m_directory; }

    /// Exit statuses; 0 when all was well.
    int holderStatus() const { return m_holderStatus; }
    int waiterStatus() const { return m_waiterStatus; }

    /// When the waiter came in, and when the holder had left; also for those
    /// that ended without.
    Moment came() const { return m_came; }
    Moment left() const { return m_left; }

    /// By the marks.
    bool wereInsideTogether() const;

private:
    static std::string prepared(const SharedDirectory& directory);

    const SharedDirectory m_directory;
    const std::string m_what;
    const bool m_holderReads;
    Fleet m_fleet;
    int m_holderStatus = -1;
    int m_waiterStatus = -1;
    Moment m_came;
    Moment m_left;
    // Nobody else looks at the moment of the one and the other.
    boost::thread m_waiterFollower;
    boost::thread m_holderFollower;
};

/// One for each share and pair of roles. The holds have begun at about the same
/// time, and everybody else waits.
std::vector<std::unique_ptr<OneWaits>> beginOnAllShares(const std::vector<std::pair<Part, Part>>& parts);

}  // namespace test
}  // namespace zorvel
