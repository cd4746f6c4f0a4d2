#pragma once

#include <string>
#include <vector>

namespace zorvel {
namespace bench {

typedef std::vector<std::string> Texts;

/// Paths of 40 to 110 bytes as they are written down, with '/', and the locale in which their bytes are characters.
struct CodePage
{
    const char* suffix;
    const char* locale;
    Texts texts;
};

/// ASCII in a UTF-8 locale, and Japanese in code page 932.
const std::vector<CodePage>& codePages();

/// The texts with their ASCII letters in capitals; not those that are second bytes of characters.
Texts inCapitals(const Texts& texts, bool doubleByte);

/// Whether the texts have double-byte characters.
bool isDoubleByte(const Texts& texts);

}  // namespace bench
}  // namespace zorvel
