#pragma once

#include "fuzz/naive/characters.h"
#include "fuzz/support/input.h"

namespace zorvel {
namespace fuzz {

/// Makes a category of the process's locale the named one; aborts where the
/// locale is missing. The test locales are found through LOCPATH.
void useLocale(int category, const char* name);

/// The codeset of the process that the input chooses, for functions that ask
/// the system and not the replaceable test: "C", or Shift_JIS. Returns its
/// lead bytes.
naive::LeadTest chooseCodeset(Input& input);

}  // namespace fuzz
}  // namespace zorvel
