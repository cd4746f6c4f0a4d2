#include "tests/support/encoding.h"
#include "tests/unit/errors/facility_calls.h"
#include "tests/unit/errors/message_texts.h"

#include <gtest/gtest.h>

#include <iterator>

using namespace zorvel::test;
using zorvel::errors::registerMessages;
using zorvel::errors::removeMessages;

namespace {

/// The tables as they come to the message facility.
class MessageTables : public testing::Test
{
protected:
    MessageTables()
    {
        facility_calls::reset();
        registerMessages();
    }

    const qx_message_table& primary() const { return *facility_calls::record().primary; }
    const qx_language_table& japanese() const { return *facility_calls::record().language; }
};

}  // namespace

TEST_F(MessageTables, PrimaryTableHasEveryMessage)
{
    EXPECT_EQ(15u, std::size(messageTexts));
    EXPECT_EQ(15u, primary().count);
    EXPECT_EQ(78u, primary().facility);
    EXPECT_STREQ("", primary().extraText);
    for (std::size_t index = 0; index < std::size(messageTexts); ++index) {
        EXPECT_EQ(messageTexts[index].identifier, primary().identifiers[index]);
        EXPECT_STREQ(messageTexts[index].name, primary().names[index]);
        EXPECT_STREQ(messageTexts[index].english, primary().texts[index]);
    }
    EXPECT_EQ(0xFFFFFFFFu, primary().identifiers[15]);
}

TEST_F(MessageTables, JapaneseTableHasTheSameMessages)
{
    EXPECT_EQ(78u, japanese().facility);
    EXPECT_EQ(0xFFFFFFFFu, japanese().reserved);
    EXPECT_EQ(primary().identifiers, japanese().identifiers);
    for (std::size_t index = 0; index < std::size(messageTexts); ++index)
        EXPECT_EQ(messageTexts[index].japanese, utf8FromCodePage932(japanese().texts[index])) << index;
}

TEST_F(MessageTables, JapaneseIsStoredInTheBytesOfItsCodePage)
{
    EXPECT_STREQ("\x83\x5A\x83\x7D\x83\x74\x83\x48 '%1' \x82\xF0\x8A\x4A\x82\xAF\x82\xDC\x82\xB9\x82\xF1\x81\x42\n"
                 "\x83\x56\x83\x58\x83\x65\x83\x80\x83\x47\x83\x89\x81\x5B: %2",
                 japanese().texts[1]);
}

TEST_F(MessageTables, IdentifiersAreTheFacilityAndAnIndexFromOne)
{
    for (std::uint32_t index = 0; index < 15; ++index)
        EXPECT_EQ(78u << 16 | (index + 1), primary().identifiers[index]);
}

TEST_F(MessageTables, RegistrationAndRemovalAskTheFacilityAndGiveZero)
{
    facility_calls::reset();
    EXPECT_EQ(0, registerMessages());
    const qx_message_table* const registered = facility_calls::record().primary;
    EXPECT_EQ(0, removeMessages());
    EXPECT_EQ(registered, facility_calls::record().primary);
    EXPECT_EQ(std::vector<std::string>({"add primary", "add ja", "remove primary"}),
              facility_calls::record().registrations);
    EXPECT_EQ(std::vector<_memory_context*>(3, qxGetMemoryContext()), facility_calls::record().contexts);
}

TEST_F(MessageTables, RemovalGivesZeroAlsoWhereNothingIsRegistered)
{
    EXPECT_EQ(0, removeMessages());
    EXPECT_EQ(0, removeMessages());
    EXPECT_EQ(0, registerMessages());
}
