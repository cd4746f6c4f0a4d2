#pragma once

#include <zorvel/suite.h>

#include <cstddef>

/// The suite's utility library, as far as zorvel's own rooms use it beyond
/// what <zorvel/suite.h> shows to callers. Its messages are in
/// suite/qx_messages.h.

/// Whether a Perl-style regular expression is found in a text, without regard
/// to case (ASCII letters). ^ and $ mean the beginning and the end of the
/// whole text. False for null, for a pattern that is none and for a search
/// that runs out of memory. Never throws. Thread-safe.
bool qxRegexpi(const char* text, const char* pattern);

/// A block of memory, released with qxFree; null when memory is exhausted.
/// Thread-safe.
void* qxMallocWithCheck(std::size_t size);

/// The current directory in a buffer of size bytes, in the library's form.
/// Returns the buffer; null, and the buffer is of no use, when the system cannot
/// tell, when it does not fit, or when it cannot be written as a path of the
/// library (Linux: a name with '\' in it). Thread-safe.
char* qxGetcwd(char* buffer, std::size_t size);

/// Loads a library, or takes one more hold on it when it is loaded already.
/// Null when it cannot be loaded. Its constructors run where it was not loaded
/// before. detail may be null; the stand-in leaves it alone. Thread-safe.
void* qxLoadLibrary(const char* path, void** detail);

/// The address of what a loaded library itself exports under a name (not what
/// it takes from others, except on Linux a variable of each thread); null when
/// it exports no such thing. Thread-safe.
void* qxFindSymbolInLibrary(void* library, const char* symbol);

/// Gives up one hold on a library; with the last one it is unloaded and its
/// destructors run. 0, or -1 when the system refuses and for null. Thread-safe.
int qxUnloadLibrary(void* library);
