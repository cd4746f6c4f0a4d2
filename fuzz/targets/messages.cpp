// Messages: formatting in English and in translation, in several codesets, and what does not fit.
//
// Input: locale ('0' to '7', see below), language of the translation ('0' Japanese, '1' English), size of the buffer, a
// number, the first argument, which may be stretched ('0': it is not), '|', the English text, '|', the translation (see
// naive/messages.h for its characters), '|', and two more arguments with '|' between them. "~" is a null argument. Of
// the English text the first four conversions count.

#include "errors/messages.h"
#include "fuzz/naive/messages.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"
#include "suite/qx_messages.h"

#include <clocale>
#include <cstdarg>
#include <cstdlib>
#include <sstream>

using namespace zorvel;
using naive::Codeset;

namespace {

struct Locale
{
    const char* characters;
    const char* messages;
    Codeset codeset;
    bool japanese;
};

const Locale locales[] = {
    {"C", "C", Codeset::ascii, false},
    {"ja_JP.SHIFT_JIS", "ja_JP.SHIFT_JIS", Codeset::shiftJis, true},
    {"ja_JP.EUC-JP", "ja_JP.SHIFT_JIS", Codeset::eucJp, true},
    {"C.UTF-8", "ja_JP.SHIFT_JIS", Codeset::utf8, true},
    {"ja_JP.WINDOWS-31J", "ja_JP.SHIFT_JIS", Codeset::windows31j, true},
    {"en_US.ISO-8859-1", "ja_JP.SHIFT_JIS", Codeset::ascii, true},
    {"C", "ja_JP.SHIFT_JIS", Codeset::ascii, true},
    {"C.UTF-8", "C", Codeset::utf8, false},
};

const Locale& chooseLocale(fuzz::Input& input)
{
    const char* const language = std::getenv("LANGUAGE");
    fuzz::require(language == nullptr || *language == '\0', "LANGUAGE is not set");
    const Locale& chosen = locales[input.choice(8)];
    fuzz::useLocale(LC_CTYPE, chosen.characters);
    fuzz::useLocale(LC_MESSAGES, chosen.messages);
    return chosen;
}

const std::uint32_t facility = 0x7F;
const std::uint32_t identifiers[] = {facility << 16 | 1, facility << 16 | 2, 0xFFFFFFFF};

/// A message with its translation, registered for as long as it lives.
class Registered
{
public:
    Registered(const char* english, const char* language, const char* translation)
        : m_english{english, ""}, m_translated{translation, ""}
    {
        qx_mem_add_primary_message_table(qxGetMemoryContext(), &m_table);
        qx_mem_add_language(qxGetMemoryContext(), language, &m_translation);
    }
    ~Registered() { qx_mem_remove_primary_message_table(qxGetMemoryContext(), &m_table); }

    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

private:
    const char* const m_english[2];
    const char* const m_translated[2];
    const qx_message_table m_table = {2, facility, identifiers, m_english, m_english, ""};
    const qx_language_table m_translation = {facility, 0xFFFFFFFF, identifiers, m_translated};
};

/// The arguments that the input gives; each is a text or a number.
struct Arguments
{
    const char* texts[4];
    int numbers[4];
};

/// Calls a function with the arguments that the conversions ask for: 's' a
/// text, 'd' a number, at most four.
template <class Function, class... Given>
int callWith(const Function& function, const char* conversions, const Arguments& arguments, Given... given)
{
    const std::size_t index = sizeof...(given);
    if constexpr (index < 4) {
        if (conversions[index] == 's')
            return callWith(function, conversions, arguments, given..., arguments.texts[index]);
        if (conversions[index] == 'd')
            return callWith(function, conversions, arguments, given..., arguments.numbers[index]);
    }
    return function(given...);
}

int format(char* buffer, std::size_t size, std::uint32_t identifier, ...)
{
    std::va_list arguments;
    va_start(arguments, identifier);
    const int result = qx_vsprintm(qxGetMessageContext(), buffer, size, identifier, arguments);
    va_end(arguments);
    return result;
}

std::string shownArgument(char conversion, const Arguments& arguments, std::size_t index)
{
    if (conversion == 'd')
        return std::to_string(arguments.numbers[index]);
    return arguments.texts[index] ? arguments.texts[index] : "(null)";
}

/// The first four conversions stay; a '%' further on becomes a '&'.
std::string withFewConversions(std::string english)
{
    int conversions = 0;
    for (std::size_t i = 0; i < english.size(); ++i) {
        if (english[i] != '%')
            continue;
        const bool doubled = i + 1 < english.size() && english[i + 1] == '%';
        if (!doubled && ++conversions > 4)
            english[i] = '&';
        else
            ++i;
    }
    return english;
}

/// What can be a character of a translation, so that it can be written in every
/// codeset: the others become '.'.
std::string writable(std::string written)
{
    for (char& byte : written) {
        if (byte < ' ' || byte > '}' || byte == '\\')
            byte = '.';
    }
    return written;
}

/// Compares a text that was cut, or the part of it that is certain: where the
/// arguments hold bytes that are no characters, up to the last few bytes.
void requireCut(const std::string& whole, bool certain, std::size_t limit, Codeset codeset, const std::string& found)
{
    if (whole.size() <= limit)
        return fuzz::requireSame(whole, found, "the whole text");
    if (certain)
        return fuzz::requireSame(naive::cut(whole, limit, codeset), found, "the text cut between characters");
    fuzz::require(found.size() <= limit && found.size() + 6 > limit, "cut where the buffer ends");
    fuzz::requireSame(whole.substr(0, found.size()), found, "the beginning of the text");
}

bool isAscii(const std::string& text)
{
    for (const char byte : text) {
        if (byte < 0)
            return false;
    }
    return true;
}

/// What the input is about.
struct Case
{
    std::string texts[4];
    Arguments arguments;
    std::string conversions;
    std::string expected;  ///< the whole text; empty when there is none
    bool certain;
    Codeset codeset;
};

/// Takes the arguments: a number, how long the second text is made, and the
/// texts.
void takeArguments(fuzz::Input& input, const std::string& first, Case& message)
{
    for (std::size_t i = 0; i < 3; ++i)
        message.texts[i] = i == 0 ? first : fuzz::untilNul(input.text());
    message.texts[3] = "fourth";
    for (std::size_t i = 0; i < 4; ++i) {
        const std::string& text = message.texts[i];
        message.certain = message.certain && isAscii(text);
        message.arguments.texts[i] = text == "~" ? nullptr : text.c_str();
    }
}

/// What must come of it.
std::string expectedText(const Case& message, const std::string& english, const std::string& written, bool translated)
{
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < message.conversions.size(); ++i)
        shown.push_back(shownArgument(message.conversions[i], message.arguments, i));
    const std::optional<std::string> translation = naive::inCodeset(written, message.codeset);
    return translated && translation ? naive::filledByNumber(*translation, shown)
                                     : naive::filledInOrder(english, shown);
}

void checkFormat(const Case& message, std::size_t size)
{
    fuzz::HeapText buffer(size);
    const int result = callWith([&](auto... given) { return format(buffer.data(), size, identifiers[0], given...); },
                                message.conversions.c_str(), message.arguments);
    if (size == 0 || message.expected.empty())
        return fuzz::require(result < 1, "no text");
    const std::string found = buffer.data();
    fuzz::requireSame(static_cast<int>(found.size()), result, "the result is the length");
    requireCut(message.expected, message.certain, size - 1, message.codeset, found);
}

/// Its tables are registered by hand.
errors::MessageEmitter emitter = {};

void checkEmitter(const Case& message)
{
    std::ostringstream stream;
    const int result =
        callWith([&](auto... given) { return errors::emitMessage(emitter, stream, identifiers[0], given...); },
                 message.conversions.c_str(), message.arguments);
    const std::string found = stream.str();
    if (message.expected.empty())
        return fuzz::require(result < 2 && found.empty(), "nothing is written");
    fuzz::require(!found.empty() && found.back() == '\n', "a line feed behind it");
    fuzz::requireSame(static_cast<int>(found.size()) + 1, result, "the result of emitting");
    requireCut(message.expected, message.certain, 2046, message.codeset, found.substr(0, found.size() - 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const Locale& locale = chooseLocale(input);
    const bool forJapanese = input.choice(2) == 0;
    const std::size_t bufferSize = input.choice(256);
    const unsigned number = static_cast<unsigned>(input.choice(256)) * 0x01010101u;
    const std::string first = fuzz::untilNul(fuzz::stretchedText(input, {700, 2030}));
    const std::string english = withFewConversions(fuzz::untilNul(input.text()));
    const std::string written = writable(fuzz::untilNul(input.text()));

    Case message;
    message.certain = isAscii(english);
    message.codeset = locale.codeset;
    takeArguments(input, first, message);
    for (unsigned i = 0; i < 4; ++i)
        message.arguments.numbers[i] = static_cast<int>(number + i);
    const std::optional<std::string> conversions = naive::conversionsOf(english);
    message.conversions = conversions.value_or("ssss");
    if (conversions)
        message.expected = expectedText(message, english, written, locale.japanese == forJapanese);

    const std::string translation = naive::inCodePage932(written);
    const Registered registered(english.c_str(), forJapanese ? "ja" : "en", translation.c_str());
    checkFormat(message, bufferSize);
    checkEmitter(message);
    return 0;
}
