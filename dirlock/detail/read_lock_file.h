#pragma once

#include <zorvel/lockfile.h>
#include <zorvel/paths.h>

#include "dirlock/detail/unique_numbers.h"

#include <cstdint>
#include <utility>

namespace zorvel {
namespace dirlock {

/// What the names of the readers' files begin with; a number follows.
extern const char* const readLockPrefix;

/// Creates a reader's file with a number that nobody has. Only the exclusive
/// creation decides, one for each number drawn and at most `attempts`; the
/// directory is not listed. The result tells whether one was created, and its
/// name. An interruption point of Boost.Thread at each collision.
std::pair<bool, zvPathString> createUniqueReadLockFile(const zvPathString& directory,
                                                       const boost::shared_ptr<zvAbstractFS>& fs,
                                                       UniqueNumbers& numbers, std::uint32_t attempts);

/// A reader's file of this process, held: empty when every number was taken.
/// On an exception no file stays, unless its removal fails or memory is
/// exhausted.
boost::shared_ptr<zvLockFile> makeReadLockFile(const zvPathString& directory,
                                               const boost::posix_time::time_duration& interval,
                                               const boost::shared_ptr<zvAbstractFS>& fs);

}  // namespace dirlock
}  // namespace zorvel
