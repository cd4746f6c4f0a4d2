#include "tests/support/encoding.h"
#include "tests/support/fake_language.h"
#include "tests/unit/errors/message_texts.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <sstream>

using namespace zorvel::test;
using zorvel::errors::emitMessage;
using zorvel::errors::MessageEmitter;
using zorvel::errors::registerMessages;

namespace {

/// What is emitted with a record of its own.
class MessageLanguage : public testing::Test
{
protected:
    MessageLanguage() { m_emitter.registerTables = &registerMessages; }

    std::string sample(const MessageText& message)
    {
        std::ostringstream stream;
        const int result = emitSample(m_emitter, stream, message);
        EXPECT_EQ(static_cast<int>(stream.str().size()) + 1, result) << message.name;
        return stream.str();
    }

    MessageEmitter m_emitter = MessageEmitter();
};

/// The code page in which the binary was asked to run.
std::string codePage()
{
    const char* const wanted = std::getenv("ZORVEL_CODE_PAGE");
    return wanted ? wanted : "";
}

bool codePageHasJapanese()
{
    return codePage() != "" && codePage() != "1252";
}

}  // namespace

TEST_F(MessageLanguage, EnglishUsersReadEnglish)
{
    const fake_language::Scope user("en", fake_language::asStored);
    for (const MessageText& message : messageTexts)
        EXPECT_EQ(sampleInEnglish(message) + '\n', sample(message));
}

TEST_F(MessageLanguage, UsersWithoutATranslationReadEnglish)
{
    const fake_language::Scope user("fr", fake_language::asStored);
    for (const MessageText& message : messageTexts)
        EXPECT_EQ(sampleInEnglish(message) + '\n', sample(message));
}

TEST_F(MessageLanguage, JapaneseUsersReadJapanese)
{
    const fake_language::Scope user("ja", fake_language::asStored);
    for (const MessageText& message : messageTexts)
        EXPECT_EQ(sampleInJapanese(message) + '\n', utf8FromCodePage932(sample(message)));
}

TEST_F(MessageLanguage, JapaneseUsersReadEnglishWhereJapaneseCannotBeShown)
{
    const fake_language::Scope user("ja", fake_language::nothing);
    for (const MessageText& message : messageTexts)
        EXPECT_EQ(sampleInEnglish(message) + '\n', sample(message));
}

TEST_F(MessageLanguage, CodePageOfTheProcessDecides)
{
    const fake_language::Scope user("ja");
    for (const MessageText& message : messageTexts) {
        const std::string expected = codePageHasJapanese() ? sampleInJapanese(message) : sampleInEnglish(message);
        EXPECT_EQ(expected + '\n', utf8FromProcessCodePage(sample(message)));
    }
}

/// The runs in a code page with Japanese are those of a Japanese user.
TEST_F(MessageLanguage, UserOfTheRunIsTheSystems)
{
    for (const MessageText& message : messageTexts) {
        const std::string expected = codePageHasJapanese() ? sampleInJapanese(message) : sampleInEnglish(message);
        EXPECT_EQ(expected + '\n', utf8FromProcessCodePage(sample(message)));
    }
}

TEST_F(MessageLanguage, SwappedPlacesTakeTheSameArguments)
{
    const fake_language::Scope user("ja", fake_language::asStored);
    std::ostringstream stream;
    emitMessage(m_emitter, stream, ZORVEL_SEM_INVALID_RETURN_VALUE, "WaitForSingleObject", "builds", -1);
    emitMessage(m_emitter, stream, ZORVEL_SEM_OP_UNSUPPORTED, "unlink", "builds");
    EXPECT_EQ(
        "セマフォ 'builds' で関数 'WaitForSingleObject' は、無効な値 -1 を返しました。\n"
        "セマフォ 'builds' への処理 'unlink' は、このプラットフォームではサポートされていないため失敗しました。\n",
        utf8FromCodePage932(stream.str()));
}

TEST_F(MessageLanguage, EveryNumberHasItsDigits)
{
    for (const int number : {0, -1, INT_MAX, INT_MIN}) {
        std::ostringstream stream;
        {
            const fake_language::Scope user("en");
            emitMessage(m_emitter, stream, ZORVEL_SEM_WAIT_TIMED_OUT, "s", number);
        }
        const fake_language::Scope user("ja", fake_language::asStored);
        emitMessage(m_emitter, stream, ZORVEL_SEM_WAIT_TIMED_OUT, "s", number);
        const std::string digits = std::to_string(number);
        EXPECT_EQ("Wait on semaphore 's' timed out after " + digits + " seconds.\nセマフォ 's' の待機が " + digits +
                      " 秒後にタイムアウトしました。\n",
                  utf8FromCodePage932(stream.str()));
    }
}

TEST_F(MessageLanguage, ANullArgumentIsNamed)
{
    const char* const none = nullptr;
    std::ostringstream stream;
    {
        const fake_language::Scope user("en");
        emitMessage(m_emitter, stream, ZORVEL_SYS_CALL_FAILED, none, "t");
    }
    const fake_language::Scope user("ja", fake_language::asStored);
    emitMessage(m_emitter, stream, ZORVEL_SEM_OP_UNSUPPORTED, "f", none);
    EXPECT_EQ("Call to system function '(null)' failed.\n System error: t\n"
              "セマフォ '(null)' への処理 'f' は、このプラットフォームではサポートされていないため失敗しました。\n",
              utf8FromCodePage932(stream.str()));
}

TEST_F(MessageLanguage, ArgumentsAreNoFormats)
{
    std::ostringstream stream;
    {
        const fake_language::Scope user("en");
        emitMessage(m_emitter, stream, ZORVEL_SEM_OPEN_FAILED, "%s%d%n%2%%", "%1");
    }
    const fake_language::Scope user("ja", fake_language::asStored);
    emitMessage(m_emitter, stream, ZORVEL_SEM_OPEN_FAILED, "%s%d%n%2%%", "%1");
    EXPECT_EQ("Failed to open semaphore '%s%d%n%2%%'. \n System error: %1\n"
              "セマフォ '%s%d%n%2%%' を開けません。\nシステムエラー: %1\n",
              utf8FromCodePage932(stream.str()));
}
