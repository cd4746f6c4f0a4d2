#pragma once

#include <zorvel/lockfile.h>

/// The logs of the lock code. Each is on or off for the life of the process,
/// by the presence (an empty value counts) of an environment variable when the
/// library is loaded.
namespace zorvel {

/// Progress of acquisition and refresh, on standard output:
/// ZORVEL_FSLOCK_VERBOSE.
extern zvLogger verboseLog;

/// Failures that the caller does not see as exceptions, on standard error:
/// ZORVEL_FSLOCK_VERBOSE or ZORVEL_FSLOCK_WARNING.
extern zvLogger warningLog;

/// Detection and removal of stale lock files, on standard output:
/// ZORVEL_FSLOCK_STALE_LOG.
extern zvLogger staleLog;

}  // namespace zorvel
