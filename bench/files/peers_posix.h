#pragma once

#include "bench/files/contestants.h"

namespace zorvel {
namespace bench {

/// fts(3), with fnmatch(3) for patterns, which it looks for in one walk.
Contestant ftsItself();

/// glob(3), folder by folder as ours.
Contestant globItself();

Contestant boostFilesystem();

/// find, du, rm and mkdir, as processes of their own.
std::vector<Contestant> tools();

/// The calls of the kernel that a row's work cannot do without, and nothing
/// else: no peers, but what can be had at best.
std::vector<Contestant> floors();

/// The first line of what a tool prints about its version.
std::string versionOf(const char* tool);

}  // namespace bench
}  // namespace zorvel
