#pragma once

#include <zorvel/suite.h>

/// The suite's utility library, as far as zorvel's own rooms use it beyond
/// what <zorvel/suite.h> shows to callers. Its messages are in
/// suite/qx_messages.h.

/// Whether a Perl-style regular expression is found in a text, without regard
/// to case (ASCII letters). ^ and $ mean the beginning and the end of the
/// whole text. False for null, for a pattern that is none and for a search
/// that runs out of memory. Never throws. Thread-safe.
bool qxRegexpi(const char* text, const char* pattern);
