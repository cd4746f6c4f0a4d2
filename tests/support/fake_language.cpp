#include "tests/support/fake_language.h"

#include "platform/language.h"

#include <string>

namespace zorvel {
namespace test {
namespace fake_language {

namespace {

const char* language = nullptr;
Output output = real;

}  // namespace

Scope::Scope(const char* itsLanguage, Output itsOutput)
{
    language = itsLanguage;
    output = itsOutput;
}

Scope::~Scope()
{
    language = nullptr;
    output = real;
}

std::string realUserLanguage() __asm__("__real_" ZORVEL_USER_LANGUAGE);
bool realFromCodePage932(const char* text, std::string& result) __asm__("__real_" ZORVEL_FROM_CODE_PAGE_932);

std::string wrappedUserLanguage() __asm__("__wrap_" ZORVEL_USER_LANGUAGE);
bool wrappedFromCodePage932(const char* text, std::string& result) __asm__("__wrap_" ZORVEL_FROM_CODE_PAGE_932);

std::string wrappedUserLanguage()
{
    return language ? std::string(language) : realUserLanguage();
}

bool wrappedFromCodePage932(const char* text, std::string& result)
{
    if (output == real)
        return realFromCodePage932(text, result);
    result = text;
    return output == asStored;
}

}  // namespace fake_language
}  // namespace test
}  // namespace zorvel
