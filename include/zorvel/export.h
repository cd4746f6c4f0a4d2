#pragma once

/// Marks what the shared library exports.
///
/// - ZORVEL_BUILDING is defined while the library's own objects are compiled.
/// - ZORVEL_STATIC is defined by whoever links the static core instead of the
///   shared library (the project's own tests do).
///
/// Everything that carries no ZORVEL_API is hidden; a class inside an exported
/// class is, with ZORVEL_LOCAL.
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

/// The two 64-bit types that appear in exported signatures. On Windows they
/// are the compiler's and the runtime's own types, elsewhere the types of the
/// same width.
#if defined(_WIN32)
#  include <time.h>
typedef unsigned __int64 zvUInt64;
typedef __time64_t zvTime64;
#else
#  include <cstdint>
typedef std::uint64_t zvUInt64;
typedef std::int64_t zvTime64;
#endif
