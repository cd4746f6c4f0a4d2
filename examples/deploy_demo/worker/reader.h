#pragma once

#include "examples/deploy_demo/worker/player.h"

namespace zorvel {
namespace demo {

/// Serves the present release again and again, and verifies all of it each
/// time.
class Reader : public Player
{
public:
    /// It stands still in the middle of the first release that it reads from
    /// number `stallFrom` on (0: never).
    Reader(const Place& place, int stallFrom);

    /// Until the store is closed; the last reading begins after that.
    void run();

private:
    void turn();
    void serve();

    const int m_stallFrom;
    zvDirectoryReadWriteLock::ReadLock m_lock;
};

}  // namespace demo
}  // namespace zorvel
