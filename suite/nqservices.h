#pragma once

/// The suite's services library.

/// Lists the entries that a pattern matches (wild cards in the last component
/// only), in the system's order: one block of names, each with its terminator,
/// ended by an empty name. The caller releases it with qxFree. "." and ".." are
/// listed where the system lists them. flags must be 0.
///
/// Null for a null or empty pattern, for other flags, when nothing can be
/// listed and when memory is exhausted. Never throws. Thread-safe.
char* ioGetDirList(const char* pattern, int flags);
