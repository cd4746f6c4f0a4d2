#pragma once

/// @file
/// Callbacks after a while, once or at a fixed rate. What is here: @ref timer.

#include <zorvel/export.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

/// @defgroup timer Timers
/// @brief A function called after a while, once or at a fixed rate, on a thread of its own.
///
/// Each timer has a thread, which runs code of the library: cancel all timers
/// before the library is unloaded. Linux sleeps until a deadline to the
/// microsecond; Windows sleeps by milliseconds, and the thread looks at the
/// clock for the rest of the last one. Nothing else differs. The @ref lockfile
/// are kept fresh by timers.
///
/// @include ticks.cpp
///
/// @{

/// The handle of a running timer. Dropping the last handle does not stop the
/// timer: it goes on detached (a repeating one for ever). Only cancel() stops.
class ZORVEL_API zvTimerTask
{
public:
    /// Does not stop the timer.
    virtual ~zvTimerTask();

    /// Whether the timer's thread has been ended by an exception: one of the
    /// callback, or the interruption of cancel(). Any thread may ask.
    virtual bool hasFailed() const = 0;

    /// Interrupts the timer's thread and waits for its end: afterwards the
    /// callback is not running and will not run again. A further call, or one
    /// after the timer ended by itself, does nothing. Any thread but the
    /// timer's own may call it; not while holding a lock that the callback
    /// takes. From the timer's own callback it does not wait: the timer ends
    /// when the callback returns. boost::thread_interrupted leaves when the
    /// calling thread is interrupted; the timer may then still be ending.
    virtual void cancel() = 0;
};

/// Calls fn on a thread of its own one interval from now, and, when repeat is
/// set, at every further interval. The callback is copied; what it refers to is
/// the caller's and must live until cancel() has returned or the timer has
/// ended. Any thread may call.
///
/// The rate is fixed: each deadline is one interval after the one before it,
/// however long the callback takes; missed calls follow at once until the
/// schedule has caught up. Time is the local wall clock in microseconds.
///
/// A negative interval (negative infinity too) counts as zero, positive
/// infinity waits until cancelled; not-a-date-time ends the timer at once,
/// failed. An exception of fn (an empty fn included) ends the timer and shows only
/// in zvTimerTask::hasFailed(). Throws boost::thread_resource_error when no thread
/// can be started.
ZORVEL_API boost::shared_ptr<zvTimerTask> zvSetTimer(const boost::function0<void>& fn,
                                                     boost::posix_time::time_duration interval, bool repeat);

/// @}
