#include "examples/zvlock/turn.h"

#include "examples/zvlock/exit_status.h"

#include <boost/thread/thread.hpp>

#include <iostream>

namespace zorvel {
namespace zvlock {

using boost::posix_time::time_duration;
using Locked = boost::unique_lock<boost::mutex>;

void Turn::onSignal(const Signal& signal)
{
    const Locked locked(m_mutex);
    if (!m_command)
        m_signal = signal.number;
    else if (!signal.sentToAll)
        m_command->pass(signal.number);
    m_changed.notify_all();
}

int Turn::signalled() const
{
    const Locked locked(m_mutex);
    return m_signal;
}

int Turn::run(const Options& options)
{
    const std::unique_ptr<DirectoryLock> lock = makeLock(options.kind, options.directory);
    if (acquire(*lock, options.limit))
        return execute(options.command);
    if (const int signal = signalled())
        return endedBySignal + signal;
    std::cerr << "zvlock: " << options.directory << ": the lock was not acquired\n";
    return notAcquired;
}

/// The waiting is done by a thread of its own, because only a thread can be
/// interrupted. It may acquire at the very moment in which it is told to give
/// up: what counts is the result.
bool Turn::acquire(DirectoryLock& lock, const time_duration& limit)
{
    boost::thread waiting([&] { tryToAcquire(lock, limit); });
    wait(lock.interruptsAtLimit() ? limit : time_duration(boost::posix_time::pos_infin));
    waiting.interrupt();
    waiting.join();
    if (m_failure)
        std::rethrow_exception(m_failure);
    return m_acquired;
}

void Turn::tryToAcquire(DirectoryLock& lock, const time_duration& limit)
{
    bool acquired = false;
    std::exception_ptr failure;
    try {
        acquired = lock.acquire(limit);
    } catch (const boost::thread_interrupted&) {
        // Given up, as it was told.
    } catch (...) {
        failure = std::current_exception();
    }
    const Locked locked(m_mutex);
    m_tried = true;
    m_acquired = acquired;
    m_failure = failure;
    m_changed.notify_all();
}

/// Until acquiring has a result, a signal comes or the limit is reached.
void Turn::wait(const time_duration& limit)
{
    Locked locked(m_mutex);
    const auto isOver = [this] { return m_tried || m_signal; };
    if (limit.is_special())
        m_changed.wait(locked, isOver);
    else
        m_changed.timed_wait(locked, boost::get_system_time() + limit, isOver);
}

int Turn::execute(const std::vector<NativeText>& words)
{
    Command command;
    try {
        if (!start(command, words))
            return endedBySignal + signalled();
    } catch (const CannotStart& error) {
        std::cerr << "zvlock: " << inCodePage(words[0]) << ": " << error.what() << '\n';
        return error.isThere() ? cannotExecute : notFound;
    }
    const int status = command.wait();
    forget();
    return status;
}

/// False, and not started, when a signal came first: it either ends this
/// program or goes to the command.
bool Turn::start(Command& command, const std::vector<NativeText>& words)
{
    const Locked locked(m_mutex);
    if (m_signal)
        return false;
    command.start(words);
    m_command = &command;
    return true;
}

void Turn::forget()
{
    const Locked locked(m_mutex);
    m_command = nullptr;
}

}  // namespace zvlock
}  // namespace zorvel
