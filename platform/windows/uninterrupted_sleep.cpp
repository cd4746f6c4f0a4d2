#include "platform/uninterrupted_sleep.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/thread/thread.hpp>

namespace zorvel {
namespace platform {

/// Boost's sleep waits for a timer, which is as exact as the system's clock; a
/// bare Sleep could end a tick early.
void sleepUninterrupted(long milliseconds)
{
    boost::this_thread::sleep(boost::posix_time::milliseconds(milliseconds));
}

}  // namespace platform
}  // namespace zorvel
