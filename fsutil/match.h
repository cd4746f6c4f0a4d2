#pragma once

namespace zorvel {

/// Whether the walk at depth 0 searches for a pattern at all, judged by its
/// text alone: not one that is null, empty or longer than 1024 bytes, holds
/// '*' before its last component, or has a last component that names no entry.
bool canBeSearched(const char* pattern);

/// zvMatchingFileOrDirExists for those to whom "there is nothing" and "it
/// could not be looked at" make a difference: 0, or the runtime's errno value
/// of the failure. A missing directory holds nothing, and neither does a
/// pattern that cannot be searched for. The directory itself is asked, not what
/// this machine remembers of it, as far as the system lets one. Throws std::bad_alloc.
int findMatch(const char* pattern, bool& found);

}  // namespace zorvel
