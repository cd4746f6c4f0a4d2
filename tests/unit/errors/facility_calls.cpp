#include "tests/unit/errors/facility_calls.h"

#include <cstring>

namespace zorvel {
namespace test {
namespace facility_calls {

namespace {

bool isAnswered = false;
std::string answeredText;
int answeredResult = 0;

}  // namespace

Record& record()
{
    static Record only;
    return only;
}

void reset()
{
    record() = Record();
}

FormatAnswer::FormatAnswer(int result, const std::string& text)
{
    answeredText = text;
    answeredResult = result;
    isAnswered = true;
}

FormatAnswer::~FormatAnswer()
{
    isAnswered = false;
}

int realAddPrimary(_memory_context* context, const qx_message_table* table) __asm__("__real_" ZORVEL_ADD_PRIMARY);
int realAddLanguage(_memory_context* context, const char* language,
                    const qx_language_table* table) __asm__("__real_" ZORVEL_ADD_LANGUAGE);
int realRemovePrimary(_memory_context* context, const qx_message_table* table) __asm__("__real_" ZORVEL_REMOVE_PRIMARY);
int realFormat(_message_context* context, char* buffer, std::size_t size, std::uint32_t identifier,
               std::va_list arguments) __asm__("__real_" ZORVEL_FORMAT);

int wrappedAddPrimary(_memory_context* context, const qx_message_table* table) __asm__("__wrap_" ZORVEL_ADD_PRIMARY);
int wrappedAddLanguage(_memory_context* context, const char* language,
                       const qx_language_table* table) __asm__("__wrap_" ZORVEL_ADD_LANGUAGE);
int wrappedRemovePrimary(_memory_context* context,
                         const qx_message_table* table) __asm__("__wrap_" ZORVEL_REMOVE_PRIMARY);
int wrappedFormat(_message_context* context, char* buffer, std::size_t size, std::uint32_t identifier,
                  std::va_list arguments) __asm__("__wrap_" ZORVEL_FORMAT);

int wrappedAddPrimary(_memory_context* context, const qx_message_table* table)
{
    record().registrations.push_back("add primary");
    record().contexts.push_back(context);
    record().primary = table;
    return realAddPrimary(context, table);
}

int wrappedAddLanguage(_memory_context* context, const char* language, const qx_language_table* table)
{
    record().registrations.push_back(std::string("add ") + language);
    record().contexts.push_back(context);
    record().language = table;
    return realAddLanguage(context, language, table);
}

int wrappedRemovePrimary(_memory_context* context, const qx_message_table* table)
{
    record().registrations.push_back("remove primary");
    record().contexts.push_back(context);
    record().primary = table;
    return realRemovePrimary(context, table);
}

int wrappedFormat(_message_context* context, char* buffer, std::size_t size, std::uint32_t identifier,
                  std::va_list arguments)
{
    int result = answeredResult;
    if (isAnswered)
        std::memcpy(buffer, answeredText.c_str(), answeredText.size() + 1);
    else
        result = realFormat(context, buffer, size, identifier, arguments);
    record().formats.push_back(Format{context, buffer, size, identifier, result});
    return result;
}

}  // namespace facility_calls
}  // namespace test
}  // namespace zorvel
