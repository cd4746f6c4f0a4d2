#pragma once

#include <boost/version.hpp>

#include <cstdlib>
#include <string>

namespace zorvel {
namespace bench {

/// The versions of the libraries that every peer comes from.
inline std::string versionsOfLibraries()
{
    std::string versions =
        "Boost " + std::to_string(BOOST_VERSION / 100000) + "." + std::to_string(BOOST_VERSION / 100 % 1000);
#if defined(__GLIBC__)
    versions += ", GNU C library " + std::to_string(__GLIBC__) + "." + std::to_string(__GLIBC_MINOR__);
#endif
#if defined(_GLIBCXX_RELEASE)
    versions += ", GNU C++ library " + std::to_string(_GLIBCXX_RELEASE);
#endif
    return versions;
}

}  // namespace bench
}  // namespace zorvel
