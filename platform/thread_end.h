#pragma once

#include <boost/thread/thread.hpp>

namespace zorvel {
namespace platform {

/// Whether the system has done with a thread that has not been joined or
/// detached, so that joining it takes no time. False while that is not known.
bool hasEnded(boost::thread::native_handle_type thread);

}  // namespace platform
}  // namespace zorvel
