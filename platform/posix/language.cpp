#include "platform/language.h"

#include <cstdlib>
#include <cstring>

#include <iconv.h>
#include <langinfo.h>
#include <locale.h>

namespace zorvel {
namespace platform {
namespace {

/// The letters that a locale's name or an entry of LANGUAGE begins with.
std::string languageOf(const char* locale)
{
    return std::string(locale, std::strcspn(locale, "_.@:"));
}

/// In these locales nothing is translated, whatever the user prefers.
bool isNeutral(const char* locale)
{
    return (locale[0] == 'C' && locale[1] == '\0') || std::strcmp(locale, "POSIX") == 0;
}

/// The first language of a list like "ja:en"; empty when there is none.
std::string firstOf(const char* list)
{
    return list ? languageOf(list + std::strspn(list, ":")) : std::string();
}

/// One conversion between two codesets, closed with its owner.
class Conversion
{
public:
    Conversion(const char* to, const char* from) : m_descriptor(::iconv_open(to, from)) {}
    ~Conversion()
    {
        if (isOpen())
            ::iconv_close(m_descriptor);
    }

    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    bool isOpen() const { return m_descriptor != reinterpret_cast<iconv_t>(-1); }

    /// Converts a whole text; false where a character has no counterpart.
    bool convert(const char* text, std::string& result)
    {
        char* from = const_cast<char*>(text);
        std::size_t left = std::strlen(text);
        // No codeset of a locale takes more than four bytes for a character.
        result.resize(4 * left);
        char* to = result.data();
        std::size_t room = result.size();
        if (::iconv(m_descriptor, &from, &left, &to, &room) == static_cast<std::size_t>(-1))
            return false;
        result.resize(result.size() - room);
        return true;
    }

private:
    iconv_t m_descriptor;
};

}  // namespace

/// As the C library chooses the language of its own error texts, which stand in
/// the same messages.
std::string userLanguage()
{
    const char* const locale = ::nl_langinfo(_NL_LOCALE_NAME(LC_MESSAGES));
    if (isNeutral(locale))
        return "en";
    const std::string preferred = firstOf(std::getenv("LANGUAGE"));
    return preferred.empty() ? languageOf(locale) : preferred;
}

bool fromCodePage932(const char* text, std::string& result)
{
    Conversion conversion(::nl_langinfo(CODESET), "CP932");
    return conversion.isOpen() && conversion.convert(text, result);
}

}  // namespace platform
}  // namespace zorvel
