#pragma once

#include "examples/deploy_demo/event.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace zorvel {
namespace demo {

/// What came from the workers.
struct Report
{
    enum Kind
    {
        line,         ///< a line of `process`
        ended,        ///< `process` has closed its output
        nothing,      ///< not in time
        interrupted,  ///< this program is asked to end
    };
    Kind kind = nothing;
    std::size_t process = 0;
    std::string text;
    Microseconds arrived = 0;
};

/// Child processes that talk by lines. All of them are killed and waited for
/// when the owner goes. One object at a time; one thread.
class WorkerProcesses
{
public:
    /// From now on SIGINT, SIGTERM and SIGHUP become a report.
    WorkerProcesses();
    ~WorkerProcesses();

    WorkerProcesses(const WorkerProcesses&) = delete;
    WorkerProcesses& operator=(const WorkerProcesses&) = delete;

    /// Starts a program (a path) with its arguments; its number counts from 0.
    /// Throws std::system_error.
    void start(const std::vector<std::string>& command);

    /// Writes a line to its input. A process that has ended is no failure.
    void send(std::size_t process, const std::string& line);

    Report next(std::chrono::milliseconds timeout);

    /// kill -9; it is gone when this returns.
    void kill(std::size_t process);

    /// Waits for its end; the exit status, 128 + signal where one ended it.
    int finish(std::size_t process);

private:
    struct Child;

    Report read(std::size_t process);
    bool takeLine(std::size_t process, Report& report);

    std::vector<std::unique_ptr<Child>> m_children;
};

/// The file of this program. Throws std::system_error.
std::string programPath();

/// Whether standard output is a terminal.
bool outputIsTerminal();

}  // namespace demo
}  // namespace zorvel
