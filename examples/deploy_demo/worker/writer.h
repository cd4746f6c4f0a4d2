#pragma once

#include "examples/deploy_demo/worker/player.h"

namespace zorvel {
namespace demo {

/// Deploys releases one after the other.
class Writer : public Player
{
public:
    struct Part
    {
        int releases = 0;
        /// The turn in which it stands still half way; 0: none.
        int stallAt = 0;
        /// Verifies each release as a reader, which it becomes by a downgrade.
        bool verifies = false;
    };

    Writer(const Place& place, const Part& part);

    void run();

private:
    void turn(bool stalls);
    void deploy(int release, bool stalls);
    void sayHalf(int release) const;
    void end();
    void verifyAsReader(int release);

    const Part m_part;
    zvDirectoryReadWriteLock::WriteLock m_lock;
};

}  // namespace demo
}  // namespace zorvel
