#include "lockfile/lock_logs.h"

#include <cstdlib>
#include <iostream>

namespace {

bool isSet(const char* variable)
{
    return std::getenv(variable) != nullptr;
}

// Read once, in this order, while the library is loaded.
const bool verbose = isSet("ZORVEL_FSLOCK_VERBOSE");
const bool warning = verbose || isSet("ZORVEL_FSLOCK_WARNING");
const bool stale = isSet("ZORVEL_FSLOCK_STALE_LOG");

}  // namespace

namespace zorvel {

zvLogger verboseLog(verbose, std::cout);
zvLogger warningLog(warning, std::cerr);
zvLogger staleLog(stale, std::cout);

}  // namespace zorvel
