#pragma once

#include <string>
#include <vector>

/// Child processes for tests, the same on both systems.
namespace zorvel {
namespace test {

struct ProcessOptions
{
    /// Name and value; a variable in `unset` is taken out of the environment.
    std::vector<std::pair<std::string, std::string>> set;
    std::vector<std::string> unset;
    /// Runs the child as an unprivileged user (Linux only; ignored on Windows,
    /// where the tests do not run as somebody special).
    bool unprivileged = false;
};

/// A started child. Standard output is a pipe that is read line by line or to
/// its end; standard error goes to another. Killed and waited for when the
/// owner goes.
class Process
{
public:
    Process(const std::vector<std::string>& command, const ProcessOptions& options = ProcessOptions());
    ~Process();

    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The next line of its output without the line end; false at the end.
    bool readLine(std::string& line);

    /// Writes a line to its input.
    void writeLine(const std::string& line);

    /// Ends it as kill -9 does.
    void kill();

    /// Stops it where it is, all its threads, and lets it go on. It must be
    /// running.
    void pause();
    void resume();

    /// Reads what is left of both streams and waits; returns the exit status
    /// (128 + signal where a signal ended it).
    int finish(std::string* output = nullptr, std::string* errors = nullptr);

private:
    struct State;
    State* m_state;
};

}  // namespace test
}  // namespace zorvel
