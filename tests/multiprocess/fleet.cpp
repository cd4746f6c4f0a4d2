#include "tests/multiprocess/fleet.h"

#include <cstdlib>
#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

/// Words of a command, separated by blanks.
Launcher words(const std::string& command)
{
    Launcher result;
    std::size_t from = 0;
    while ((from = command.find_first_not_of(' ', from)) != std::string::npos) {
        const std::size_t to = std::min(command.find(' ', from), command.size());
        result.push_back(command.substr(from, to - from));
        from = to;
    }
    return result;
}

}  // namespace

std::vector<Launcher> launchers()
{
    // One command a line, set by the build for each run.
    const char* commands = std::getenv("ZORVEL_WORKERS");
    if (!commands)
        throw std::runtime_error("ZORVEL_WORKERS is not set");
    std::vector<Launcher> result;
    std::string rest = commands;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('|'), rest.size());
        result.push_back(words(rest.substr(0, end)));
        rest.erase(0, end + 1);
    }
    return result;
}

namespace {

std::vector<std::string> commandLine(const Launcher& launcher, const std::string& directory, int id, int holds,
                                     int holdMsec)
{
    std::vector<std::string> command = launcher;
    command.push_back(directory);
    command.push_back(std::to_string(id));
    command.push_back(std::to_string(holds));
    command.push_back(std::to_string(holdMsec));
    return command;
}

}  // namespace

Worker::Worker(const Launcher& launcher, const std::string& directory, int id, int holds, int holdMsec)
    : m_process(commandLine(launcher, directory, id, holds, holdMsec)),
      m_ready(0),
      m_waiting(0),
      m_held(0),
      m_ended(false),
      m_reader([this] { read(); })
{
}

Worker::~Worker()
{
    if (m_reader.joinable()) {
        m_process.kill();
        m_reader.join();
    }
}

void Worker::read()
{
    std::string line;
    while (m_process.readLine(line)) {
        const boost::lock_guard<boost::mutex> lock(m_mutex);
        if (line == "ready")
            ++m_ready;
        else if (line == "waiting")
            ++m_waiting;
        else if (line == "held")
            ++m_held;
        m_changed.notify_all();
    }
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
}

bool Worker::waitFor(const std::atomic<int>& counter, int times)
{
    boost::unique_lock<boost::mutex> lock(m_mutex);
    m_changed.wait(lock, [&] { return counter >= times || m_ended; });
    return counter >= times;
}

void Worker::waitReady()
{
    if (!waitFor(m_ready, 1))
        throw std::runtime_error("a worker ended before it was ready");
}

void Worker::go()
{
    m_process.writeLine("go");
}

bool Worker::waitHeld(int times)
{
    return waitFor(m_held, times);
}

bool Worker::waitWaiting(int times)
{
    return waitFor(m_waiting, times);
}

void Worker::kill()
{
    m_process.kill();
}

int Worker::finish()
{
    m_reader.join();
    return m_process.finish();
}

Fleet::Fleet(const std::string& directory, int size, int holds, int holdMsec)
{
    const std::vector<Launcher> kinds = launchers();
    for (int i = 0; i < size; ++i)
        m_workers.emplace_back(new Worker(kinds[i % kinds.size()], directory, i, holds, holdMsec));
}

void Fleet::waitReady()
{
    for (const auto& worker : m_workers)
        worker->waitReady();
}

void Fleet::go()
{
    for (const auto& worker : m_workers)
        worker->go();
}

int Fleet::held() const
{
    int sum = 0;
    for (const auto& worker : m_workers)
        sum += worker->held();
    return sum;
}

}  // namespace test
}  // namespace zorvel
