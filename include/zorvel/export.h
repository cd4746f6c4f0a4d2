#pragma once

/// @file
/// What marks the exported names, and the two 64-bit integers of the interface.
/// What is here: @ref basics.

/// @defgroup basics Basics
/// @brief The marks of exported names, and the 64-bit integers that stand in signatures.
///
/// Every other header includes these. A program that uses the installed package has
/// nothing to define.
///
/// Sizes in bytes, kept in order:
///
/// @dontinclude directory_sizes.cpp
/// @skipline zvUInt64
///
/// @{

/// @def ZORVEL_API
/// Marks what the shared library exports.
///
/// - `ZORVEL_BUILDING` is defined while the library's own objects are compiled.
/// - `ZORVEL_STATIC` is defined by whoever links the static core instead of the
///   shared library (the project's own tests do).
///
/// Everything that carries no ZORVEL_API is hidden; a class inside an exported
/// class is, with #ZORVEL_LOCAL. Windows: `dllexport` or `dllimport`. Linux:
/// default visibility.

/// @def ZORVEL_LOCAL
/// Hides what lies inside an exported class. Windows: nothing, as only what is
/// marked is exported. Linux: hidden visibility.
#if defined(_WIN32)
#  if defined(ZORVEL_BUILDING)
#    define ZORVEL_API __declspec(dllexport)
#  elif defined(ZORVEL_STATIC)
#    define ZORVEL_API
#  else
#    define ZORVEL_API __declspec(dllimport)
#  endif
#  define ZORVEL_LOCAL
#else
#  define ZORVEL_API __attribute__((visibility("default")))
#  define ZORVEL_LOCAL __attribute__((visibility("hidden")))
#endif

/// @typedef zvUInt64
/// An unsigned integer of 64 bits: sizes and free space in bytes. Windows: the
/// compiler's own `unsigned __int64`. Linux: `std::uint64_t`.

/// @typedef zvTime64
/// Whole seconds since 1970-01-01 UTC, signed, in 64 bits. Windows: the
/// runtime's own `__time64_t`. Linux: `std::int64_t`.
#if defined(_WIN32)
#  include <time.h>
typedef unsigned __int64 zvUInt64;
typedef __time64_t zvTime64;
#else
#  include <cstdint>
typedef std::uint64_t zvUInt64;
typedef std::int64_t zvTime64;
#endif

/// @}
