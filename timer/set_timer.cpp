#include <zorvel/timer.h>

#include "platform/clock.h"
#include "platform/wake_up.h"
#include "timer/deadline.h"
#include "timer/thread_join.h"

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>
#include <boost/thread/mutex.hpp>
#include <boost/thread/thread.hpp>

#include <algorithm>
#include <atomic>
#include <stdexcept>

namespace {

using boost::posix_time::ptime;
using boost::posix_time::time_duration;
namespace platform = zorvel::platform;

typedef boost::function0<void> Callback;

enum class Phase
{
    waiting,  ///< also before the thread has begun, and after a one-shot's call
    calling,  ///< also when the call has thrown
    stopped,  ///< no call begins any more
};

/// What the worker and the handle both own: a flag that the worker writes once
/// and the handle reads, whether a call is under way or may still come, and the
/// handle's call that ends the worker's sleep.
struct Shared
{
    /// Moves on from waiting; false when somebody else has.
    bool moveTo(Phase next)
    {
        Phase expected = Phase::waiting;
        return phase.compare_exchange_strong(expected, next);
    }

    std::atomic<bool> failed{false};
    std::atomic<Phase> phase{Phase::waiting};
    platform::WakeUp wakeUp;
};

typedef boost::shared_ptr<Shared> SharedPointer;

/// A deadline that is far away, or never comes, is waited for in pieces: the
/// clock is read again after each.
const long longestWaitMsec = 60L * 60 * 1000;

class zvTimerTaskImpl : public zvTimerTask
{
public:
    zvTimerTaskImpl(const boost::function0<void>& worker, const SharedPointer& common)
        : shared(common), thread(worker), workerId(thread.get_id())
    {
    }

    /// Leaves the worker running: only cancel() stops it.
    ~zvTimerTaskImpl() override { thread.detach(); }

    bool hasFailed() const override { return shared->failed; }
    void cancel() override;

private:
    bool stop();

    // Before the thread: nothing may fail once that runs.
    boost::mutex cancelling;
    const SharedPointer shared;
    boost::thread thread;
    const boost::thread::id workerId;
};

void zvTimerTaskImpl::cancel()
{
    // A callback that cancels its own timer cannot wait for its own end; the
    // worker ends as soon as the callback returns.
    if (workerId == boost::this_thread::get_id()) {
        thread.interrupt();
        return;
    }
    const boost::lock_guard<boost::mutex> oneAtATime(cancelling);
    if (!thread.joinable())
        return;
    // A worker that sleeps ends by this. The interruption is for the callback.
    const bool isEnding = stop();
    thread.interrupt();
    if (isEnding)
        zorvel::timer::joinEnding(thread);
    else
        thread.join();
}

/// Ends the worker's sleep. True when it calls no more, and so ends soon; false
/// when it is just calling.
bool zvTimerTaskImpl::stop()
{
    const bool callsNoMore = shared->moveTo(Phase::stopped) || shared->phase == Phase::stopped;
    shared->wakeUp.call();
    return callsNoMore;
}

/// Negative intervals count as zero; repeated, they would lead out of the range
/// of the clock.
time_duration notNegative(const time_duration& interval)
{
    return interval < time_duration(0, 0, 0) ? time_duration(0, 0, 0) : interval;
}

/// One interval from now.
ptime firstDeadline(const time_duration& interval)
{
    if (interval.is_not_a_date_time())
        throw std::invalid_argument("timer interval is not a duration");
    return zorvel::deadlineAfter(platform::localTime(), interval);
}

/// Whole milliseconds, cut, so that a wait never ends late by rounding.
long waitMsec(const time_duration& remaining)
{
    if (remaining.is_special())
        return longestWaitMsec;
    return static_cast<long>(std::min<boost::int64_t>(remaining.total_microseconds() / 1000, longestWaitMsec));
}

/// A sleep of which every microsecond counts. The end of a longer one is one too:
/// the sleep before it is cut to whole milliseconds, so that nobody who cancels a
/// timer early pays for an exact one.
const boost::int64_t longestExactMicrosec = 100000;

bool sleepSome(const time_duration& remaining, platform::WakeUp& wakeUp)
{
    if (remaining.is_special() || remaining.total_microseconds() > longestExactMicrosec)
        return platform::sleepUnlessCalled(wakeUp, waitMsec(remaining));
    return platform::sleepExactlyUnlessCalled(wakeUp, static_cast<long>(remaining.total_microseconds()));
}

/// The deadline is tested after every wait: one that ended early, or a clock
/// that moved, only leads to a further wait. False when the timer is cancelled.
bool sleepUntil(const ptime& deadline, platform::WakeUp& wakeUp)
{
    boost::this_thread::interruption_point();
    for (ptime now = platform::localTime(); now < deadline; now = platform::localTime()) {
        if (!sleepSome(deadline - now, wakeUp))
            return false;
    }
    return true;
}

/// False when the timer was stopped first. After an exception nothing is called
/// any more, and so it does not matter that the call never counts as over.
bool call(const Callback& fn, Shared& shared)
{
    if (!shared.moveTo(Phase::calling))
        return false;
    fn();
    shared.phase = Phase::waiting;
    return true;
}

bool callOnce(const Callback& fn, const time_duration& interval, Shared& shared)
{
    return sleepUntil(firstDeadline(interval), shared.wakeUp) && call(fn, shared);
}

/// The rate is fixed: a deadline is counted from the one before it, not from
/// the end of the callback, so a slow callback does not make the timer drift.
bool callRepeatedly(const Callback& fn, const time_duration& interval, Shared& shared)
{
    ptime deadline = firstDeadline(interval);
    while (sleepUntil(deadline, shared.wakeUp) && call(fn, shared))
        deadline += interval;
    return false;
}

/// False when it was cancelled, which an exception can tell as well.
typedef bool (*Schedule)(const Callback& fn, const time_duration& interval, Shared& shared);

/// The whole life of a timer's thread. It owns all that it uses and never
/// touches the handle, which it may outlive. A cancellation needs no exception
/// to end it: locks that are held for a moment are full of these.
void run(Schedule schedule, const Callback& fn, const time_duration& interval, const SharedPointer& shared)
{
    try {
        if (shared->wakeUp.isCalled() || !schedule(fn, interval, *shared))
            shared->failed = true;
    } catch (...) {
        shared->failed = true;
    }
}

}  // namespace

boost::shared_ptr<zvTimerTask> zvSetTimer(const boost::function0<void>& fn, boost::posix_time::time_duration interval,
                                          bool repeat)
{
    const SharedPointer shared = boost::make_shared<Shared>();
    const Schedule schedule = repeat ? &callRepeatedly : &callOnce;
    return boost::make_shared<zvTimerTaskImpl>(boost::bind(&run, schedule, fn, notNegative(interval), shared), shared);
}
