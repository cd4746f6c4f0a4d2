#pragma once

#include "fuzz/support/input.h"
#include "fuzz/naive/characters.h"

#include <zorvel/paths.h>

namespace zorvel {
namespace fuzz {

/// The lead-byte test that the input chooses, installed in the library and
/// returned for the naive implementation: none, that of Shift_JIS, or every
/// byte.
inline naive::LeadTest chooseLeadBytes(Input& input)
{
    const naive::LeadTest tests[] = {&naive::noLeadByte, &naive::shiftJisLeadByte, &naive::everyByteLeads};
    const naive::LeadTest test = tests[input.choice(3)];
    zvSetIsMultiByteLead(test);
    return test;
}

}  // namespace fuzz
}  // namespace zorvel
