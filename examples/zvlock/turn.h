#pragma once

#include "examples/zvlock/command.h"
#include "examples/zvlock/directory_lock.h"
#include "examples/zvlock/signals.h"

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/mutex.hpp>

#include <exception>

namespace zorvel {
namespace zvlock {

/// One turn in the directory: waits for the lock, runs the command, gives the
/// lock back.
class Turn
{
public:
    /// Any thread, at any time: ends the waiting, or goes to the command.
    void onSignal(const Signal& signal);

    /// The number of a signal that came while no command ran; 0: none did.
    int signalled() const;

    /// On the main thread, once. The status to end with; the user has been told
    /// if it is not the command's. Throws what the locks throw.
    int run(const Options& options);

private:
    bool acquire(DirectoryLock& lock, const boost::posix_time::time_duration& limit);
    void tryToAcquire(DirectoryLock& lock, const boost::posix_time::time_duration& limit);
    void wait(const boost::posix_time::time_duration& limit);
    int execute(const std::vector<NativeText>& words);
    bool start(Command& command, const std::vector<NativeText>& words);
    void forget();

    mutable boost::mutex m_mutex;
    boost::condition_variable m_changed;
    int m_signal = 0;
    Command* m_command = nullptr;  ///< the running one
    bool m_tried = false;          ///< the result of acquiring is known:
    bool m_acquired = false;
    std::exception_ptr m_failure;
};

}  // namespace zvlock
}  // namespace zorvel
