#pragma once

namespace zorvel {
namespace platform {
namespace windows {

/// The runtime's code for a system error (GetLastError) of a call that looks
/// for something. ENOENT: there is nothing, or nothing can have such a name.
/// EACCES: it is there and forbidden. Not for deciding that an entry which was
/// found before is gone by now.
int codeOfLookup(unsigned long error);

}  // namespace windows
}  // namespace platform
}  // namespace zorvel
