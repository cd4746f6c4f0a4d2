#include "suite/qx_messages.h"

#include "platform/codepage.h"
#include "platform/language.h"
#include "suite/detail/message_format.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <map>
#include <mutex>

namespace {

using zorvel::suite::fillByNumber;
using zorvel::suite::fillInOrder;
using zorvel::suite::isTranslation;
using zorvel::suite::readArguments;
using zorvel::suite::TextBuffer;
using zorvel::suite::writeInOrder;

const std::uint32_t endOfIdentifiers = 0xFFFFFFFF;

/// By language.
typedef std::map<std::string, const qx_language_table*> Translations;

/// The tables of one facility.
struct Facility
{
    const qx_message_table* english = nullptr;
    Translations translations;
};

/// The text of an identifier in a table, or null.
template <class Table>
const char* textIn(const Table& table, std::uint32_t identifier)
{
    for (std::size_t i = 0; table.identifiers[i] != endOfIdentifiers; ++i) {
        if (table.identifiers[i] == identifier)
            return table.texts[i];
    }
    return nullptr;
}

/// The texts of one message: English, and the user's language or null.
struct Texts
{
    const char* english;
    const char* translated;
};

/// There are two or three letters and as many languages; a comparison of memory would wait for the letters of the
/// user's, which have only just been written.
const qx_language_table* tableFor(const Translations& translations, const std::string& language)
{
    const auto isWanted = [&language](const Translations::value_type& translation) {
        return translation.first.size() == language.size() &&
               std::mismatch(language.begin(), language.end(), translation.first.begin()).first == language.end();
    };
    const auto found = std::find_if(translations.begin(), translations.end(), isWanted);
    return found == translations.end() ? nullptr : found->second;
}

Texts textsOf(const std::map<std::uint32_t, Facility>& facilities, std::uint32_t identifier,
              const std::string& language)
{
    const auto facility = facilities.find(identifier >> 16);
    if (facility == facilities.end() || !facility->second.english)
        return {nullptr, nullptr};
    const qx_language_table* const table = tableFor(facility->second.translations, language);
    return {textIn(*facility->second.english, identifier), table ? textIn(*table, identifier) : nullptr};
}

/// A message that has a translation; empty when it cannot be made.
std::string format(const Texts& texts, std::va_list values)
{
    std::vector<std::string> arguments;
    std::string translation;
    if (!readArguments(texts.english, values, arguments))
        return std::string();
    if (zorvel::platform::fromCodePage932(texts.translated, translation))
        return isTranslation(translation.c_str()) ? fillByNumber(translation.c_str(), arguments) : std::string();
    return fillInOrder(texts.english, arguments);
}

/// Ends what was written to a buffer, cut at the end of a character where it does not fit; its length.
std::size_t terminate(const TextBuffer& text, char* buffer, std::size_t size)
{
    const std::size_t length =
        text.length() < size ? text.length() : zorvel::platform::wholeCharacters(buffer, size - 1);
    buffer[length] = '\0';
    return length;
}

/// Straight into the buffer where nothing has to be put in another order.
bool write(const Texts& texts, std::va_list values, TextBuffer& buffer)
{
    if (!texts.english)
        return false;
    if (!texts.translated)
        return writeInOrder(texts.english, values, buffer);
    const std::string text = format(texts, values);
    buffer.append(text.data(), text.size());
    return true;
}

}  // namespace

struct _memory_context
{
    std::mutex mutex;
    std::map<std::uint32_t, Facility> facilities;
};

struct _message_context
{
    _memory_context& tables;
};

/// Never destroyed: messages come from the destructors of static objects too.
_memory_context* qxGetMemoryContext()
{
    static _memory_context* const context = new _memory_context;
    return context;
}

_message_context* qxGetMessageContext()
{
    static _message_context context = {*qxGetMemoryContext()};
    return &context;
}

int qx_mem_add_primary_message_table(_memory_context* context, const qx_message_table* table)
{
    if (!context || !table)
        return -1;
    const std::lock_guard<std::mutex> guard(context->mutex);
    context->facilities[table->facility].english = table;
    return 0;
}

int qx_mem_add_language(_memory_context* context, const char* language, const qx_language_table* table)
{
    if (!context || !language || !table)
        return -1;
    const std::lock_guard<std::mutex> guard(context->mutex);
    context->facilities[table->facility].translations[language] = table;
    return 0;
}

int qx_mem_remove_primary_message_table(_memory_context* context, const qx_message_table* table)
{
    if (!context || !table)
        return -1;
    const std::lock_guard<std::mutex> guard(context->mutex);
    const auto facility = context->facilities.find(table->facility);
    if (facility == context->facilities.end() || facility->second.english != table)
        return -1;
    context->facilities.erase(facility);
    return 0;
}

int qx_vsprintm(_message_context* context, char* buffer, std::size_t size, std::uint32_t identifier,
                std::va_list arguments)
try {
    if (!context || !buffer || size == 0)
        return 0;
    const std::string language = zorvel::platform::userLanguage();
    const std::lock_guard<std::mutex> guard(context->tables.mutex);
    TextBuffer text(buffer, size);
    if (write(textsOf(context->tables.facilities, identifier, language), arguments, text))
        return static_cast<int>(terminate(text, buffer, size));
    buffer[0] = '\0';
    return 0;
} catch (const std::exception&) {
    return 0;  // exhausted memory
}
