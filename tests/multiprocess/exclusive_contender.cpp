#include "tests/multiprocess/contender.h"

#include <zorvel/zorvel.h>

#include <filesystem>
#include <fstream>
#include <thread>

namespace zorvel {
namespace test {

namespace {

/// Inside, it proves that it is alone by creating a directory that must not
/// exist: the system lets one creator win, whatever the library under test
/// does.
class ExclusiveContender : public Contender
{
public:
    explicit ExclusiveContender(const Task& task)
        : m_task(task), m_directory(task.directory), m_lock(task.directory, std::to_string(task.id), task.fs)
    {
    }

    int hold() override
    {
        say("waiting");
        if (!m_lock.acquire(false))
            return notAcquired;
        mark("write");
        const std::filesystem::path inside = m_directory / "inside";
        if (!std::filesystem::create_directory(inside))
            return wrongFound;
        say("held");
        std::this_thread::sleep_for(m_task.hold);
        writeTurn();
        std::filesystem::remove(inside);
        mark("written");
        if (!m_lock.release())
            return notAcquired;
        say("free");
        return 0;
    }

private:
    void mark(const std::string& event) const
    {
        if (m_task.asks)
            askMark(event);
    }

    /// The order of all holds; a reader of it sees who overtook whom.
    void writeTurn() const { std::ofstream(m_directory / "turns", std::ios::app) << m_task.id << '\n'; }

    const Task m_task;
    const std::filesystem::path m_directory;
    zvDirectoryExclusiveLock m_lock;
};

}  // namespace

std::unique_ptr<Contender> makeExclusiveContender(const Task& task)
{
    return std::unique_ptr<Contender>(new ExclusiveContender(task));
}

}  // namespace test
}  // namespace zorvel
