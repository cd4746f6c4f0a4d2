#pragma once

namespace zorvel {
namespace platform {

/// Suspends the calling thread for at least a number of milliseconds, whatever
/// signals and interruptions come meanwhile. Used by sleepFor() for threads that
/// cannot be interrupted.
void sleepUninterrupted(long milliseconds);

}  // namespace platform
}  // namespace zorvel
