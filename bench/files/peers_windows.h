#pragma once

#include "bench/files/contestants.h"

namespace zorvel {
namespace bench {

/// FindFirstFileA, DeleteFileA and so on: like ours in the code page's bytes.
Contestant win32WithBytes();

/// The same in the system's own characters, with a listing that leaves short
/// names out.
Contestant win32WithWideCharacters();

/// The floor: what is prescribed or promised, and nothing else.
Contestant bareSteps();

}  // namespace bench
}  // namespace zorvel
