#pragma once

#include "tests/support/recording_fs.h"

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// The files that were made or refreshed, by the log of the file system, and
/// have not been removed.
std::vector<std::string> ownFiles(const RecordingFs& fs);

/// Whether a removal of the file was tried, in vain.
bool wasGivenUp(const RecordingFs& fs, const std::string& file);

}  // namespace test
}  // namespace zorvel
