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

/// The current directory in a buffer of size bytes, in the library's form.
/// Returns the buffer; null, and the buffer is of no use, when the system cannot
/// tell, when it does not fit, or when it cannot be written as a path of the
/// library (Linux: a name with '\' in it). Thread-safe.
char* qxGetcwd(char* buffer, std::size_t size);
