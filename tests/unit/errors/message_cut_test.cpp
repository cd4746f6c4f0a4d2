#include "tests/support/encoding.h"
#include "tests/support/fake_language.h"
#include "tests/unit/errors/facility_calls.h"
#include "tests/unit/errors/message_texts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <sstream>

using namespace zorvel::test;
using zorvel::errors::emitMessage;
using zorvel::errors::MessageEmitter;
using zorvel::errors::registerMessages;

namespace {

const std::size_t longestText = 2046;

/// A record between bytes that nobody may touch.
struct GuardedEmitter
{
    GuardedEmitter()
    {
        std::memset(behind, '#', sizeof behind);
        emitter.registerTables = &registerMessages;
    }
    bool isIntact() const
    {
        return emitter.registerTables == &registerMessages &&
               std::string(behind, sizeof behind) == std::string(64, '#');
    }

    MessageEmitter emitter = MessageEmitter();
    char behind[64];
};

/// The longest character of the code page in which the binary runs.
std::string longestCharacter()
{
    const char* const codePage = std::getenv("ZORVEL_CODE_PAGE");
    const std::string name = codePage ? codePage : "";
    if (name == "SHIFT_JIS" || name == "932")
        return "\x83\x5C";
    if (name == "EUC-JP")
        return "\x8F\xB0\xA1";
    if (name == "UTF-8")
        return "\xF0\x9F\x98\x80";
    return name == "1252" ? "\xE9" : "x";
}

/// So many bytes "a" and as many characters as it takes to pass the limit.
std::string longName(std::size_t padding)
{
    std::string name(padding, 'a');
    while (name.size() <= 2 * longestText)
        name += longestCharacter();
    return name;
}

class MessageCut : public testing::Test
{
protected:
    MessageCut() : m_english("en") {}

    /// A name with which a message of the longest length comes out one longer
    /// by so much.
    std::string nameForExcess(int excess) const
    {
        const std::size_t fixed = std::strlen("Wait on semaphore '' timed out after 7 seconds.");
        return std::string(longestText - fixed + static_cast<std::size_t>(excess), 'n');
    }

    const fake_language::Scope m_english;
    GuardedEmitter m_guarded;
    std::ostringstream m_stream;
};

}  // namespace

TEST_F(MessageCut, LongestTextIsWhole)
{
    const std::string name = nameForExcess(0);
    EXPECT_EQ(2048, emitMessage(m_guarded.emitter, m_stream, ZORVEL_SEM_WAIT_TIMED_OUT, name.c_str(), 7));
    EXPECT_EQ("Wait on semaphore '" + name + "' timed out after 7 seconds.\n", m_stream.str());
    EXPECT_EQ(m_stream.str(), m_guarded.emitter.text);
    EXPECT_TRUE(m_guarded.isIntact());
}

TEST_F(MessageCut, WhatIsLongerIsCutSoThatTheLineFeedFits)
{
    for (const int excess : {1, 2, 3, 27, 28, 100, 100000}) {
        m_stream.str(std::string());
        const std::string name = nameForExcess(excess);
        const std::string whole = "Wait on semaphore '" + name + "' timed out after 7 seconds.";
        EXPECT_EQ(2048, emitMessage(m_guarded.emitter, m_stream, ZORVEL_SEM_WAIT_TIMED_OUT, name.c_str(), 7));
        EXPECT_EQ(whole.substr(0, longestText) + '\n', m_stream.str()) << excess;
        EXPECT_TRUE(m_guarded.isIntact()) << excess;
    }
}

TEST_F(MessageCut, ANumberMayBeCut)
{
    const std::size_t fixed = std::strlen("Wait on semaphore '' timed out after ");
    const std::string name(longestText - fixed - 5, 'n');
    EXPECT_EQ(2048, emitMessage(m_guarded.emitter, m_stream, ZORVEL_SEM_WAIT_TIMED_OUT, name.c_str(), 1234567));
    EXPECT_EQ("Wait on semaphore '" + name + "' timed out after 12345\n", m_stream.str());
}

namespace {

/// Emits with a name of long characters, one byte more before them each time,
/// so that the limit falls on each of their bytes.
void expectWholeCharacters(const char* text)
{
    const std::size_t characterSize = longestCharacter().size();
    for (std::size_t padding = 0; padding <= characterSize; ++padding) {
        GuardedEmitter guarded;
        std::ostringstream stream;
        const std::string name = longName(padding);
        const int result = emitMessage(guarded.emitter, stream, ZORVEL_SEM_CLOSE_FAILED, name.c_str(), "why");
        const std::string line = stream.str();
        EXPECT_EQ(static_cast<int>(line.size()) + 1, result);
        EXPECT_EQ('\n', line.back());
        EXPECT_GE(longestText + 1, line.size());
        EXPECT_LT(longestText + 1, line.size() + characterSize);
        const std::string shown = utf8FromProcessCodePage(line.substr(0, line.size() - 1));
        const std::string whole = fillIn(text, {utf8FromProcessCodePage(name), "why"});
        EXPECT_EQ(whole.substr(0, shown.size()), shown) << padding;
        EXPECT_TRUE(guarded.isIntact());
    }
}

}  // namespace

TEST_F(MessageCut, NoCharacterOfAnArgumentIsSplit)
{
    expectWholeCharacters(messageTexts[2].english);
}

TEST(MessageCutInJapanese, NoCharacterIsSplit)
{
    const bool hasJapanese = longestCharacter().size() > 1;
    const fake_language::Scope user("ja");
    expectWholeCharacters(hasJapanese ? messageTexts[2].japanese : messageTexts[2].english);
}

/// The limit falls into what follows the argument.
TEST(MessageCutInJapanese, NoCharacterOfTheTextIsSplit)
{
    const bool hasJapanese = longestCharacter().size() > 1;
    const fake_language::Scope user("ja");
    for (std::size_t left = 1; left < 12; ++left) {
        GuardedEmitter guarded;
        std::ostringstream stream;
        const std::string name(longestText - left - 12, 'n');
        emitMessage(guarded.emitter, stream, ZORVEL_SEM_OP_UNSUPPORTED, "f", name.c_str());
        const std::string line = stream.str();
        EXPECT_GE(longestText + 1, line.size());
        EXPECT_LT(longestText + 1, line.size() + 4);
        const std::string shown = utf8FromProcessCodePage(line.substr(0, line.size() - 1));
        const MessageText& message = messageTexts[13];
        const std::string whole = fillIn(hasJapanese ? message.japanese : message.english, {"f", name});
        EXPECT_EQ(whole.substr(0, shown.size()), shown) << left;
        EXPECT_TRUE(guarded.isIntact());
    }
}

TEST_F(MessageCut, ALineFeedAlwaysFitsBehindWhatTheFacilityWrote)
{
    const facility_calls::FormatAnswer full(2047, std::string(2047, 'f'));
    EXPECT_EQ(2048, emitMessage(m_guarded.emitter, m_stream, ZORVEL_SEM_WAIT_ABANDONED, "s"));
    EXPECT_EQ(std::string(longestText, 'f') + '\n', m_stream.str());
    EXPECT_TRUE(m_guarded.isIntact());
}
