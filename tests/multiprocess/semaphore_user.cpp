#include "tests/multiprocess/semaphore_user.h"

#include "platform/process.h"

#include <zorvel/ipc.h>

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

std::vector<std::string> commandWith(const std::vector<std::string>& arguments)
{
    // Set by the build for each run.
    const char* const program = std::getenv("ZORVEL_SEMAPHORE_WORKER");
    if (!program)
        throw std::runtime_error("ZORVEL_SEMAPHORE_WORKER is not set");
    std::vector<std::string> command{program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

boost::mutex namesMutex;
std::vector<std::string> names;

/// Whoever opens a semaphore last takes its file away.
class Sweeper : public testing::Environment
{
public:
    void TearDown() override
    {
        for (const std::string& name : names)
            zvSemaphoreIPC(name, 0, false).Open();
    }
};
testing::Environment* const sweeper = testing::AddGlobalTestEnvironment(new Sweeper);

}  // namespace

std::string freshSemaphoreName()
{
    const boost::lock_guard<boost::mutex> lock(namesMutex);
    names.push_back("zorvel-users-" + std::to_string(platform::processId()) + '-' + std::to_string(names.size()));
    return names.back();
}

SemaphoreUser::SemaphoreUser(const std::vector<std::string>& arguments) : m_process(commandWith(arguments)) {}

std::string SemaphoreUser::hear()
{
    std::string line;
    return m_process.readLine(line) ? line : std::string();
}

bool SemaphoreUser::ask(const std::string& order)
{
    tell(order);
    std::string answer;
    do
        answer = hear();
    while (answer == "waiting");
    return answer == "yes";
}

void SemaphoreUser::kill()
{
    m_process.kill();
    m_process.finish();
}

}  // namespace test
}  // namespace zorvel
