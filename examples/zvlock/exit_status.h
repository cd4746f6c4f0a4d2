#pragma once

namespace zorvel {
namespace zvlock {

/// What zvlock itself ends with; every other status is the command's.
enum ExitStatus
{
    done = 0,
    notAcquired = 124,    ///< the command was not run
    failed = 125,         ///< nor here: bad options, or the directory cannot be locked
    cannotExecute = 126,  ///< the command is there, but cannot be run
    notFound = 127,       ///< the command is not there
    endedBySignal = 128,  ///< and the signal's number: the command by it, or zvlock while it waited
};

}  // namespace zvlock
}  // namespace zorvel
