#include "tests/unit/ipc/fake_language.h"

#include "platform/language.h"

namespace zorvel {
namespace test {

namespace {

std::string& chosen()
{
    static std::string* const language = new std::string("en");  // outlives static objects
    return *language;
}

}  // namespace

void setLanguage(const std::string& language)
{
    chosen() = language;
}

}  // namespace test

namespace platform {

std::string userLanguage()
{
    return test::chosen();
}

bool fromCodePage932(const char* text, std::string& result)
{
    result = text;
    return true;
}

}  // namespace platform
}  // namespace zorvel
