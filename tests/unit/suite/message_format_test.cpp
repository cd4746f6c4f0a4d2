#include "tests/support/fake_language.h"
#include "tests/unit/suite/message_facility.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>

using namespace zorvel::test;

namespace {

const std::uint32_t facility = 0x1234;

/// One English text for an English user.
class English
{
public:
    explicit English(const char* text) : m_user("en"), m_facility(facility, {text}) {}

    template <class... Arguments>
    std::string with(Arguments... arguments) const
    {
        return message(m_facility.identifier(1), arguments...);
    }

private:
    fake_language::Scope m_user;
    MessageFacility m_facility;
};

/// A text and its translation for a Japanese user.
class Japanese
{
public:
    Japanese(const char* english, const char* japanese)
        : m_user("ja", fake_language::asStored),
          m_facility(facility, {english}),
          m_translation("ja", {m_facility.identifier(1)}, {japanese})
    {
    }

    template <class... Arguments>
    std::string with(Arguments... arguments) const
    {
        return message(m_facility.identifier(1), arguments...);
    }

private:
    fake_language::Scope m_user;
    MessageFacility m_facility;
    Translation m_translation;
};

const char* const none = nullptr;

}  // namespace

TEST(MessageFormat, EnglishTakesItsArgumentsInOrder)
{
    EXPECT_EQ("plain", English("plain").with());
    EXPECT_EQ("a=1, b=-2", English("%s=%d, %s=%d").with("a", 1, "b", -2));
    EXPECT_EQ("ab", English("%s%s").with("a", "b"));
    EXPECT_EQ("100% of 7%", English("100%% of %d%%").with(7));
    EXPECT_EQ("%s", English("%%s").with());
    EXPECT_EQ("1 2 3 4 5 6 7 8 9 10 11 12",
              English("%d %d %d %d %d %d %d %d %d %d %d %d").with(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
}

TEST(MessageFormat, TranslationTakesItsArgumentsByNumber)
{
    EXPECT_EQ("b before a", Japanese("%s %s", "%2 before %1").with("a", "b"));
    EXPECT_EQ("7 of a", Japanese("%s has %d", "%2 of %1").with("a", 7));
    EXPECT_EQ("a a", Japanese("%s %d", "%1 %1").with("a", 7));
    EXPECT_EQ("c", Japanese("%s%d%s", "%3").with("a", 7, "c"));
    EXPECT_EQ("nothing", Japanese("%s", "nothing").with("a"));
    EXPECT_EQ("%1 a% a0", Japanese("%s", "%%1 %1%% %10").with("a"));
    EXPECT_EQ("9h7f5d3b1",
              Japanese("%d%s%d%s%d%s%d%s%d", "%9%8%7%6%5%4%3%2%1").with(1, "b", 3, "d", 5, "f", 7, "h", 9));
}

TEST(MessageFormat, NumbersAreInts)
{
    EXPECT_EQ("-2147483648 2147483647 0", English("%d %d %d").with(INT_MIN, INT_MAX, 0));
    EXPECT_EQ("0 2147483647 -2147483648", Japanese("%d %d %d", "%3 %2 %1").with(INT_MIN, INT_MAX, 0));
}

TEST(MessageFormat, ANullStringIsNamed)
{
    EXPECT_EQ("(null) x", English("%s %s").with(none, "x"));
    EXPECT_EQ("x (null)", Japanese("%s %s", "%2 %1").with(none, "x"));
}

TEST(MessageFormat, ArgumentsAreNoFormats)
{
    EXPECT_EQ("[%s%n%1] [%]", English("[%s] [%s]").with("%s%n%1", "%"));
    EXPECT_EQ("[%] [%2%s%%]", Japanese("%s %s", "[%2] [%1]").with("%2%s%%", "%"));
}

TEST(MessageFormat, BytesAreKept)
{
    EXPECT_EQ("\x83\x5C\xFF\n\t", English("%s\n\t").with("\x83\x5C\xFF"));
    EXPECT_EQ("\x83\x5C=\x95\x5C", Japanese("%s", "\x83\x5C=%1").with("\x95\x5C"));
}

TEST(MessageFormat, EnglishWithOtherConversionsFails)
{
    for (const char* text : {"%x", "%i", "%u", "%c", "%f", "%n", "%p", "%5d", "%-5s", "%.3s", "%ld", "%*d", "%1",
                             "%1$s", "% d", "%", "text %", "%d%", "%s %x"})
        EXPECT_EQ("failed", English(text).with(0, "", "")) << text;
}

TEST(MessageFormat, TranslationWithOtherConversionsFails)
{
    for (const char* text : {"x%s", "x%d", "x%0", "x%a", "%-1", "%", "%1 %", "% 1", "x%\xFF"})
        EXPECT_EQ("failed", Japanese("%s", text).with("a")) << text;
}

TEST(MessageFormat, ANumberWithoutAnArgumentStandsForNothing)
{
    EXPECT_EQ("b[]a", Japanese("%s %s", "%2[%3]%1").with("a", "b"));
    EXPECT_EQ("[]", Japanese("none", "[%1%9]").with());
}

TEST(MessageFormat, UnregisteredIdentifiersFail)
{
    const fake_language::Scope user("en");
    const MessageFacility messages(facility, {"one", "two"});
    EXPECT_EQ("two", message(facility << 16 | 2));
    for (const std::uint32_t identifier : {0u, 1u, facility << 16, facility << 16 | 3, facility << 16 | 0xFFFF,
                                           (facility + 1) << 16 | 1, (facility - 1) << 16 | 1, 0xFFFFFFFFu})
        EXPECT_EQ("failed", message(identifier)) << identifier;
}

TEST(MessageFormat, ABufferIsNeeded)
{
    const fake_language::Scope user("en");
    const MessageFacility messages(facility, {"text"});
    char buffer[] = "#";
    EXPECT_GE(0, formatInto(nullptr, 100, messages.identifier(1)));
    EXPECT_GE(0, formatInto(nullptr, 0, messages.identifier(1)));
    EXPECT_GE(0, formatInto(buffer, 0, messages.identifier(1)));
    EXPECT_STREQ("#", buffer);
}

TEST(MessageFormat, EverySizeTakesWhatFits)
{
    const fake_language::Scope user("en");
    const MessageFacility messages(facility, {"%s is %d%%"});
    const std::string whole = "name is 12345%";
    for (std::size_t size = 1; size <= whole.size() + 3; ++size) {
        char buffer[40];
        std::memset(buffer, '#', sizeof buffer);
        const std::string expected = whole.substr(0, size - 1);
        EXPECT_EQ(static_cast<int>(expected.size()), formatInto(buffer, size, messages.identifier(1), "name", 12345))
            << size;
        if (size > 1) {
            EXPECT_STREQ(expected.c_str(), buffer) << size;
        }
        EXPECT_EQ(std::string(sizeof buffer - size, '#'), std::string(buffer + size, sizeof buffer - size)) << size;
    }
}

namespace {

/// A character of the code page in which the binary runs.
std::string longCharacter()
{
    const char* const codePage = std::getenv("ZORVEL_CODE_PAGE");
    const std::string name = codePage ? codePage : "";
    if (name == "SHIFT_JIS" || name == "932")
        return "\x83\x5C";
    return name == "UTF-8" ? "\xF0\x9F\x98\x80" : "\xE9";
}

}  // namespace

TEST(MessageFormat, NoCharacterIsCutInTwo)
{
    const fake_language::Scope user("en");
    const MessageFacility messages(facility, {"%s"});
    const std::string character = longCharacter();
    const std::string text = "x" + character + character + character;
    for (std::size_t size = 2; size <= text.size() + 1; ++size) {
        char buffer[20];
        const std::size_t characters = (size - 2) / character.size();
        const std::string expected = text.substr(0, 1 + characters * character.size());
        EXPECT_EQ(static_cast<int>(expected.size()), formatInto(buffer, size, messages.identifier(1), text.c_str()))
            << size;
        EXPECT_EQ(expected, buffer) << size;
    }
}
