#pragma once

#include "examples/zvlock/arguments.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace zorvel {
namespace zvlock {

/// A command that could not be started.
class CannotStart : public std::runtime_error
{
public:
    CannotStart(bool isThere, const std::string& text) : std::runtime_error(text), m_isThere(isThere) {}

    /// Whether the command exists.
    bool isThere() const { return m_isThere; }

private:
    bool m_isThere;
};

/// One run of a command, with the standard streams of this program.
class Command
{
public:
    Command();

    /// Waits for the end of a command that was started.
    ~Command();

    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Starts the command, which is looked for in the search path when its name
    /// holds no separator, with its arguments; once. Its signals are as they
    /// were for this program. Throws CannotStart.
    ///
    /// If this program is killed the command gets SIGTERM (Linux; those that
    /// the command started do not) or is killed with all that it started
    /// (Windows). Linux: when the calling thread ends, so it must outlive it.
    void start(const std::vector<NativeText>& words);

    /// Its exit status; 128 and the number of the signal that ended it.
    int wait();

    /// Sends a signal to a command that was started, from any thread, also
    /// when it has ended. Windows: there is none to send, nothing happens.
    void pass(int signal);

private:
    struct Process;
    std::unique_ptr<Process> m_process;
};

}  // namespace zvlock
}  // namespace zorvel
