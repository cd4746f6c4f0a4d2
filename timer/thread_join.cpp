#include "timer/thread_join.h"

#include "platform/thread_end.h"

#include <boost/smart_ptr/detail/sp_thread_pause.hpp>

#include <chrono>
#include <thread>

namespace zorvel {
namespace timer {

namespace {

typedef std::chrono::steady_clock Clock;

/// To be woken on a processor that has become idle takes longer than a thread
/// needs to end, once it is awake. Its own wake-up may take as long.
const Clock::duration longestLook = std::chrono::microseconds(100);

/// The thread may be waiting for this processor.
const Clock::duration longestTurn = std::chrono::microseconds(25);

bool endsBefore(boost::thread::native_handle_type thread, Clock::time_point limit)
{
    do {
        if (platform::hasEnded(thread))
            return true;
        boost::detail::sp_thread_pause();
    } while (Clock::now() < limit);
    return false;
}

void lookForEnd(boost::thread::native_handle_type thread)
{
    const Clock::time_point end = Clock::now() + longestLook;
    do
        std::this_thread::yield();
    while (!endsBefore(thread, Clock::now() + longestTurn) && Clock::now() < end);
}

}  // namespace

void joinEnding(boost::thread& thread)
{
    // Asked for once: it takes a lock that the thread needs for its end.
    const boost::thread::native_handle_type handle = thread.native_handle();
    if (!platform::hasEnded(handle))
        lookForEnd(handle);
    thread.join();
}

}  // namespace timer
}  // namespace zorvel
