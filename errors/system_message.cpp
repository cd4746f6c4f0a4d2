#include <zorvel/errors.h>

#include "platform/system_error.h"

namespace {

const unsigned long lastErrorRequest = 0xFFFFFFFFul;

/// Where unsigned long has 64 bits, a caller's -1 has all of them set.
bool asksForLastError(unsigned long code)
{
    return code == lastErrorRequest || code == ~0ul;
}

}  // namespace

std::string zvGetWinErrorMessage(unsigned long code)
{
    return zorvel::platform::systemErrorText(asksForLastError(code) ? zorvel::platform::lastError() : code);
}
