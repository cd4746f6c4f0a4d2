#pragma once

#include "tests/support/process.h"

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A name that no other run uses. What killed users leave of it on disk is
/// taken away when all tests are done: while threads start processes, nobody
/// can be sure to be the last who has it open.
std::string freshSemaphoreName();

/// A running semaphore_worker.
class SemaphoreUser
{
public:
    /// The arguments as semaphore_worker.cpp describes them.
    explicit SemaphoreUser(const std::vector<std::string>& arguments);

    void tell(const std::string& line) { m_process.writeLine(line); }
    /// The next line; empty at the end.
    std::string hear();
    /// Tells an order and hears whether it was done, past "waiting".
    bool ask(const std::string& order);

    /// Ends it as kill -9 does and waits until it has gone.
    void kill();
    /// Waits for its end: the status, and what it said since.
    int finish(std::string* said = nullptr) { return m_process.finish(said); }

private:
    Process m_process;
};

}  // namespace test
}  // namespace zorvel
