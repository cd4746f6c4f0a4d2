#pragma once

#include <cstddef>

namespace zorvel {
namespace fsutil {

/// The longest pattern that is accepted, without its terminator.
const std::size_t patternLimit = 1024;

/// What a pattern of the walk asks for: the entries of a directory whose names
/// match a component. Walk and removal share it.
struct WalkPattern
{
    char directory[patternLimit + 1];  ///< '\' between names; empty is the current directory
    char component[patternLimit + 1];  ///< the only part that may hold wild cards
    int depth;                         ///< how many levels below it are entered
};

/// "." and "..".
bool isSpecialName(const char* name);

/// "." and its forms with a separator.
bool isCurrentDirectoryForm(const char* path);

/// Takes a pattern apart. False when nothing is to be done: for null, an empty
/// or too long pattern, wild cards in the directory part, no last component,
/// and the current directory or a root, which are entered and never reported,
/// at a depth that does not allow to enter them. A last component "." or ".."
/// gives nothing either: the system would find another entry under it.
bool resolveWalkPattern(const char* pattern, int depth, WalkPattern& result);

}  // namespace fsutil
}  // namespace zorvel
