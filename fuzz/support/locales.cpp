#include "fuzz/support/locales.h"

#include "fuzz/support/require.h"

#include <clocale>
#include <cstring>

namespace zorvel {
namespace fuzz {

void useLocale(int category, const char* name)
{
    if (std::strcmp(std::setlocale(category, nullptr), name) != 0)
        require(std::setlocale(category, name) != nullptr, name);
}

naive::LeadTest chooseCodeset(Input& input)
{
    const bool doubleByte = input.choice(2) == 1;
    useLocale(LC_CTYPE, doubleByte ? "ja_JP.SHIFT_JIS" : "C");
    return doubleByte ? &naive::shiftJisLeadByte : &naive::noLeadByte;
}

}  // namespace fuzz
}  // namespace zorvel
