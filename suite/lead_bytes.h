#pragma once

#include "platform/codepage.h"

namespace zorvel {
namespace suite {

/// Whether leadBytes() is what qxIsMultiByteLead() answers: so with the stand-in. Of the suite's own function nothing
/// is known, and it is asked byte by byte.
#if defined(ZORVEL_SUITE_IS_BUNDLED)
const bool knowsLeadBytes = true;
#else
const bool knowsLeadBytes = false;
#endif

/// The lead bytes of the code page as it is now.
inline const platform::LeadBytes& leadBytes()
{
    return platform::allLeadBytes();
}

}  // namespace suite
}  // namespace zorvel
