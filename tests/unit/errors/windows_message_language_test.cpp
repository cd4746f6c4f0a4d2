#include "platform/language.h"

#include "tests/support/encoding.h"
#include "tests/support/fake_language.h"
#include "tests/support/windows/fake_console.h"
#include "tests/unit/errors/message_texts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

using namespace zorvel::test;

namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

std::string emitted(const MessageText& message)
{
    std::ostringstream stream;
    emitSample(zorvel::errors::messageEmitter, stream, message);
    return utf8FromProcessCodePage(stream.str());
}

bool codePageHasJapanese()
{
    return variable("ZORVEL_CODE_PAGE") == "932";
}

}  // namespace

/// Wine has the language from the locale of messages.
TEST(UserOfWindows, HasTheLanguageOfTheInterface)
{
    const bool isJapanese = codePageHasJapanese() || variable("ZORVEL_WINE_MESSAGES") == "ja_JP.UTF-8";
    EXPECT_EQ(isJapanese ? "ja" : "en", zorvel::platform::userLanguage());
}

TEST(UserOfWindows, ReadsJapaneseOnAConsoleThatShowsTheCodePage)
{
    const fake_language::Scope user("ja");
    const MessageText& message = messageTexts[13];
    const FakeConsole console(codePageHasJapanese() ? 932 : 1252);
    EXPECT_EQ((codePageHasJapanese() ? sampleInJapanese(message) : sampleInEnglish(message)) + '\n', emitted(message));
}

TEST(UserOfWindows, ReadsEnglishOnAConsoleThatShowsAnother)
{
    const fake_language::Scope user("ja");
    for (const MessageText& message : messageTexts) {
        const FakeConsole console(437);
        EXPECT_EQ(sampleInEnglish(message) + '\n', emitted(message));
    }
}

TEST(UserOfWindows, TextsAreConvertedToTheCodePage)
{
    std::string result;
    EXPECT_TRUE(zorvel::platform::fromCodePage932("", result));
    EXPECT_EQ("", result);
    EXPECT_TRUE(zorvel::platform::fromCodePage932("plain '%1'\n", result));
    EXPECT_EQ("plain '%1'\n", result);
    EXPECT_EQ(codePageHasJapanese(), zorvel::platform::fromCodePage932("a\x83\x5C\xB1", result));
    if (codePageHasJapanese()) {
        EXPECT_EQ("a\x83\x5C\xB1", result);
    }
}
