#pragma once

#include "examples/deploy_demo/event.h"
#include "examples/deploy_demo/marks.h"
#include "examples/deploy_demo/release_store.h"

#include <zorvel/dirlock.h>

#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace zorvel {
namespace demo {

/// Where a process works and which directory it locks: the same one, unless
/// the lock is to be without effect.
struct Place
{
    std::string directory;
    std::string locked;
    std::string name;
};

/// What readers and writers have in common. One thread.
class Player
{
public:
    explicit Player(const Place& place);

    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    zvDirectoryReadWriteLock lock() const;

protected:
    void say(Word word, int number = 0, const std::string& name = "-") const;
    /// For one of so many milliseconds; the same in every run and in both
    /// builds.
    void pause(int least, int most);

    /// Takes a ReadLock or a WriteLock, however long that takes: an acquire
    /// with a limit goes on without its guard at its deadline.
    template <class Lock>
    void take(Lock& lock)
    {
        say(Word::queue);
        m_asking = true;
        if (!lock.acquire(false))
            throw std::runtime_error("a lock without a time limit was not acquired");
        m_asking = false;
        say(Word::hold);
    }

    template <class Lock>
    void give(Lock& lock)
    {
        say(Word::leave);
        if (!lock.release())
            throw std::runtime_error("a lock that was held was not released");
        say(Word::free);
    }

    void sayMet(const std::vector<std::string>& names) const;

    /// Reads a release, file by file, and says what it is. `afterFile` is
    /// called with the number of each file that was read.
    Word examine(const Manifest& manifest, const std::function<void(int)>& afterFile) const;

    /// Stands still in the middle, to be killed.
    [[noreturn]] void stall(int release);

    const std::string m_name;
    ReleaseStore m_store;
    Marks m_marks;

private:
    void noteRemoval(const std::string& file) const;

    const std::string m_locked;
    std::minstd_rand m_random;
    const boost::shared_ptr<zvAbstractFS> m_fs;
    /// Between a request and its fulfilment a lock removes stale files only.
    bool m_asking = false;
};

}  // namespace demo
}  // namespace zorvel
