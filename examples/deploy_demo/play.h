#pragma once

#include "examples/deploy_demo/cast.h"
#include "examples/deploy_demo/history.h"
#include "examples/deploy_demo/posix/worker_processes.h"
#include "examples/deploy_demo/progress.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace zorvel {
namespace demo {

/// Starts the processes, kills those that stall, closes the store when all
/// writers have ended, and writes down what they report.
class Play
{
public:
    /// The directory is where they meet. The progress line outlives this
    /// object.
    Play(const Cast& cast, const std::filesystem::path& directory, Progress& progress);

    /// Runs it to its end; false when the user interrupted it. Throws
    /// std::runtime_error when it cannot go on.
    bool run();

    /// After run().
    const History& history() const { return m_history; }
    /// What went wrong with single processes.
    const std::vector<std::string>& problems() const { return m_problems; }

private:
    bool start();
    bool answer(Event& event);
    bool compareClocks();
    bool perform();
    void receive(const Report& report);
    void end(std::size_t process);
    void killStalled();
    void kill(std::size_t process);
    void finish();
    const Death* unburied() const;
    std::string situation() const;
    std::string staleness(const Death& death) const;

    const Cast m_cast;
    const std::filesystem::path m_directory;
    Progress& m_progress;
    WorkerProcesses m_processes;
    History m_history;
    std::vector<std::string> m_problems;

    /// What is taken off each process's times to have them on this clock.
    std::vector<Microseconds> m_offsets;
    std::size_t m_running = 0;
    std::size_t m_writers = 0;
    /// When each process that stands still is killed.
    std::map<std::size_t, Microseconds> m_stalled;
};

}  // namespace demo
}  // namespace zorvel
