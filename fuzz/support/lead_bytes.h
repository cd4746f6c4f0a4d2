#pragma once

#include "fuzz/support/input.h"
#include "fuzz/naive/characters.h"
#include "fuzz/support/locales.h"

#include <zorvel/paths.h>

#include <clocale>

namespace zorvel {
namespace fuzz {

/// The lead-byte test that the input chooses, installed in the library and
/// returned for the naive implementation: none, that of Shift_JIS, every byte,
/// or the library's own in the locale C and in one of Shift_JIS. The locale is
/// C with the others.
inline naive::LeadTest chooseLeadBytes(Input& input)
{
    const naive::LeadTest tests[] = {&naive::noLeadByte, &naive::shiftJisLeadByte, &naive::everyByteLeads,
                                     &naive::noLeadByte, &naive::shiftJisLeadByte};
    const std::size_t chosen = input.choice(5);
    zvSetIsMultiByteLead(chosen < 3 ? tests[chosen] : &qxIsMultiByteLead);
    useLocale(LC_CTYPE, chosen == 4 ? "ja_JP.SHIFT_JIS" : "C");
    return tests[chosen];
}

/// Whether the library's own test is installed, which follows the codeset.
inline bool testIsOwn()
{
    const zvMultiByteLeadTest installed = zvSetIsMultiByteLead(nullptr);
    zvSetIsMultiByteLead(installed);
    return installed == &qxIsMultiByteLead;
}

}  // namespace fuzz
}  // namespace zorvel
