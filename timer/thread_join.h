#pragma once

#include <boost/thread/thread.hpp>

namespace zorvel {
namespace timer {

/// Joins a thread that was told to end and has nothing left to do: looks for a
/// moment whether it has ended before going to sleep over it.
void joinEnding(boost::thread& thread);

}  // namespace timer
}  // namespace zorvel
