#pragma once

#include <zorvel/dirlock.h>

#include "tests/support/failing_fs.h"
#include "tests/support/fake_clock.h"
#include "tests/support/recording_fs.h"
#include "tests/unit/dirlock/short_names.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A directory in memory, an exclusive lock on it, and what is to happen to
/// them while a lock works. The clock is moved by the lock's own sleeps; timers
/// are fired by the test. The directory is "D", the label "L".
///
/// Operations are written shortly: "create #1 -> true" is the creation of
/// D/.deploy_lock.1 (see ShortNames); of the times read only the failures are
/// shown; "walk" is findMatchingFilesAndDirs, with its last two arguments.
class Scene
{
public:
    explicit Scene(const std::string& directory = "D");

    virtual ~Scene() {}

    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    zvDirectoryExclusiveLock& lock() { return *m_lock; }
    RecordingFs& fs() { return *m_fs; }
    boost::shared_ptr<RecordingFs> sharedFs() const { return m_fs; }

    /// Destroys the lock object.
    void dropLock() { m_lock.reset(); }

    std::string nameOf(int level) const { return m_names.level(level); }

    /// Makes a level's file, refreshed so many seconds ago.
    void take(int level, long long ageSeconds = 0);
    void free(int level);
    bool isTaken(int level) const;

    /// Runs an action when an operation ("create #0") is asked for the nth
    /// time, before it is done. The action may throw.
    void before(const std::string& operation, std::size_t nth, const std::function<void()>& action);

    /// Answers false instead of the operation, the nth time or (0) each time.
    void refuse(const std::string& operation, std::size_t nth = 0);

    /// Fails operations, after what was to happen before them.
    void fail(const FailurePlan& plan) { m_plan = plan; }

    /// Nothing happens any more, and nothing fails.
    void heal();

    /// All operations so far, shortly.
    std::vector<std::string> operations() const;
    std::size_t countOf(const std::string& beginning) const;

    /// The files in the directory, shortly.
    std::vector<std::string> shortFiles() const;

protected:
    const ShortNames& names() const { return m_names; }

private:
    struct Rule
    {
        std::string operation;
        std::size_t nth;
        std::function<void()> action;
        bool refuse;
    };

    std::string key(const Operation& operation) const;
    std::string shortly(std::string line) const;
    boost::optional<bool> play(const Operation& operation);

    fake_clock::Scope m_clock;
    const std::string m_directory;
    mutable ShortNames m_names;  ///< numbers the own readers as it meets them
    const boost::shared_ptr<RecordingFs> m_fs;
    std::vector<Rule> m_rules;
    std::map<std::string, std::size_t> m_seen;
    boost::optional<FailurePlan> m_plan;
    std::unique_ptr<zvDirectoryExclusiveLock> m_lock;  ///< goes first: it asks the file system while it goes
};

}  // namespace test
}  // namespace zorvel
