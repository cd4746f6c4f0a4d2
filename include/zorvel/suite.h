#pragma once

/// @file
/// What callers of zorvel need of the suite's in-house libraries. What is here:
/// @ref suite.

#include <zorvel/export.h>

/// @defgroup suite The suite's libraries
/// @brief The lead-byte test, released memory, and sets of interned names.
///
/// What callers of zorvel need of the suite's in-house libraries, under the
/// suite's own names. With `-DZORVEL_SUITE=bundled` they are provided by zorvel
/// itself (folder suite/); with `-DZORVEL_SUITE=external` they come from the
/// suite. None of them throws. Only qxIsMultiByteLead() differs between Windows and
/// Linux.
///
/// The test that @ref leadbytes starts from is qxIsMultiByteLead(). A walk fills a set
/// of names through zvHashNameToVector:
///
/// @include each_once.cpp
///
/// @{

/// Whether a byte begins a double-byte character of the process's multibyte
/// code page. Windows: the ANSI code page. Linux: the codeset of the current
/// locale (the families of 932, 936, 949 and 950, and EUC; UTF-8 and the
/// single-byte codesets have no lead bytes). Thread-safe.
ZORVEL_API bool qxIsMultiByteLead(unsigned char byte);

/// Releases a buffer that a function of the suite handed out. Null is
/// accepted and ignored. Thread-safe.
ZORVEL_API void qxFree(void* memory);

/// @struct _namehash_context
/// A set of interned names; opaque. Not synchronised: one thread at a time.
struct _namehash_context;

/// Makes an empty set of names, owned by the caller, who ends it with
/// qx_namehash_destroy(). Null when memory is exhausted. Thread-safe.
ZORVEL_API _namehash_context* qx_namehash_create();

/// Ends a set and every name in it. Null is accepted and ignored. Nobody may
/// use the set, or a name of it, any more.
ZORVEL_API void qx_namehash_destroy(_namehash_context* context);

/// Interns a name: returns a copy that the set owns, the same address for the
/// same bytes each time, valid until the set is destroyed. Null for a null
/// set, a null name or exhausted memory. One thread at a time for each set.
ZORVEL_API const char* qx_namehash_add(_namehash_context* context, const char* name);

/// @}
