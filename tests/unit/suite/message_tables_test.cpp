#include "tests/support/fake_language.h"
#include "tests/unit/suite/message_facility.h"

#include <gtest/gtest.h>

#include <boost/thread/thread.hpp>

#include <atomic>

using namespace zorvel::test;

namespace {

const std::uint32_t facility = 0x4321;
const std::uint32_t first = facility << 16 | 1;
const std::uint32_t second = facility << 16 | 2;

int add(const qx_message_table& table)
{
    return qx_mem_add_primary_message_table(qxGetMemoryContext(), &table);
}

int removeTable(const qx_message_table& table)
{
    return qx_mem_remove_primary_message_table(qxGetMemoryContext(), &table);
}

class MessageTables : public testing::Test
{
protected:
    const fake_language::Scope m_user{"ja", fake_language::asStored};
};

}  // namespace

TEST_F(MessageTables, ContextsAreThereAndStay)
{
    EXPECT_NE(nullptr, qxGetMemoryContext());
    EXPECT_NE(nullptr, qxGetMessageContext());
    EXPECT_EQ(qxGetMemoryContext(), qxGetMemoryContext());
    EXPECT_EQ(qxGetMessageContext(), qxGetMessageContext());
}

TEST_F(MessageTables, NullIsRefused)
{
    const MessageFacility messages(facility, {"text"});
    const std::uint32_t identifiers[] = {first, 0xFFFFFFFF};
    const char* const texts[] = {"translated"};
    const qx_language_table language = {facility, 0xFFFFFFFF, identifiers, texts};
    EXPECT_EQ(-1, qx_mem_add_primary_message_table(qxGetMemoryContext(), nullptr));
    EXPECT_EQ(-1, qx_mem_add_primary_message_table(nullptr, &messages.table()));
    EXPECT_EQ(-1, qx_mem_add_language(nullptr, "ja", &language));
    EXPECT_EQ(-1, qx_mem_add_language(qxGetMemoryContext(), nullptr, &language));
    EXPECT_EQ(-1, qx_mem_add_language(qxGetMemoryContext(), "ja", nullptr));
    EXPECT_EQ(-1, qx_mem_remove_primary_message_table(qxGetMemoryContext(), nullptr));
    EXPECT_EQ(-1, qx_mem_remove_primary_message_table(nullptr, &messages.table()));
    EXPECT_EQ("text", message(first));
}

TEST_F(MessageTables, RegistrationGivesZeroEachTime)
{
    const MessageFacility messages(facility, {"text"});
    EXPECT_EQ(0, add(messages.table()));
    EXPECT_EQ(0, add(messages.table()));
    EXPECT_EQ("text", message(first));
}

TEST_F(MessageTables, OneRemovalIsEnough)
{
    const MessageFacility messages(facility, {"text"});
    add(messages.table());
    EXPECT_EQ(0, removeTable(messages.table()));
    EXPECT_EQ("failed", message(first));
    EXPECT_EQ(-1, removeTable(messages.table()));
    EXPECT_EQ(0, add(messages.table()));
    EXPECT_EQ("text", message(first));
}

TEST_F(MessageTables, ALaterTableTakesTheFacility)
{
    const MessageFacility before(facility, {"before", "before too"});
    {
        const MessageFacility after(facility, {"after"});
        EXPECT_EQ("after", message(first));
        EXPECT_EQ("failed", message(second));
    }
    EXPECT_EQ("failed", message(first));
}

TEST_F(MessageTables, ATableThatIsNotRegisteredRemovesNothing)
{
    const MessageFacility before(facility, {"before"});
    const MessageFacility after(facility, {"after"});
    EXPECT_EQ(-1, removeTable(before.table()));
    EXPECT_EQ("after", message(first));
    const qx_message_table other = {0, facility + 1, nullptr, nullptr, nullptr, ""};
    EXPECT_EQ(-1, removeTable(other));
    EXPECT_EQ("after", message(first));
}

TEST_F(MessageTables, OtherFacilitiesStay)
{
    const MessageFacility messages(facility, {"text"});
    {
        const MessageFacility other(facility + 1, {"other"});
        EXPECT_EQ("other", message((facility + 1) << 16 | 1));
        EXPECT_EQ("text", message(first));
    }
    EXPECT_EQ("failed", message((facility + 1) << 16 | 1));
    EXPECT_EQ("text", message(first));
}

TEST_F(MessageTables, IdentifiersNeedNoOrder)
{
    const std::uint32_t identifiers[] = {facility << 16 | 900, second, facility << 16, first, 0xFFFFFFFF};
    const char* const texts[] = {"nine hundred", "two", "zero", "one"};
    const qx_message_table table = {4, facility, identifiers, texts, texts, ""};
    EXPECT_EQ(0, add(table));
    EXPECT_EQ("nine hundred", message(facility << 16 | 900));
    EXPECT_EQ("two", message(second));
    EXPECT_EQ("zero", message(facility << 16));
    EXPECT_EQ("one", message(first));
    EXPECT_EQ("failed", message(facility << 16 | 3));
    EXPECT_EQ(0, removeTable(table));
}

TEST_F(MessageTables, ATranslationWithoutItsMessagesIsNone)
{
    const Translation translation("ja", {first}, {"translated"});
    EXPECT_EQ("failed", message(first));
    const MessageFacility messages(facility, {"text"});
    EXPECT_EQ("translated", message(first));
}

TEST_F(MessageTables, TranslationsGoWithTheirMessages)
{
    const MessageFacility messages(facility, {"text"});
    const Translation translation("ja", {first}, {"translated"});
    EXPECT_EQ("translated", message(first));
    removeTable(messages.table());
    EXPECT_EQ("failed", message(first));
    add(messages.table());
    EXPECT_EQ("text", message(first));
}

TEST_F(MessageTables, ALaterTranslationTakesTheLanguage)
{
    const MessageFacility messages(facility, {"text"});
    const Translation before("ja", {first}, {"before"});
    const Translation after("ja", {first}, {"after"});
    EXPECT_EQ("after", message(first));
}

TEST_F(MessageTables, WhatIsNotTranslatedIsEnglish)
{
    const MessageFacility messages(facility, {"one", "two"});
    const Translation translation("ja", {second}, {"translated"});
    EXPECT_EQ("one", message(first));
    EXPECT_EQ("translated", message(second));
}

TEST_F(MessageTables, EveryUserReadsTheirLanguage)
{
    const MessageFacility messages(facility, {"English"});
    const Translation japanese("ja", {first}, {"Japanese"});
    const Translation french("fr", {first}, {"French"});
    EXPECT_EQ("Japanese", message(first));
    {
        const fake_language::Scope user("fr", fake_language::asStored);
        EXPECT_EQ("French", message(first));
    }
    for (const char* language : {"en", "de", "jam", "j", "JA", ""}) {
        const fake_language::Scope user(language, fake_language::asStored);
        EXPECT_EQ("English", message(first)) << language;
    }
}

TEST_F(MessageTables, WhatCannotBeShownIsEnglish)
{
    const fake_language::Scope user("ja", fake_language::nothing);
    const MessageFacility messages(facility, {"English"});
    const Translation japanese("ja", {first}, {"Japanese"});
    EXPECT_EQ("English", message(first));
}

namespace {

/// A facility that comes and goes.
void useFacility(std::uint32_t number, std::atomic<int>& failures)
{
    for (int round = 0; round < 50; ++round) {
        const MessageFacility messages(number, {"%s in %d"});
        const Translation translation("ja", {messages.identifier(1)}, {"%2 of %1"});
        if (message(messages.identifier(1), "thread", round) != std::to_string(round) + " of thread")
            ++failures;
    }
}

}  // namespace

TEST_F(MessageTables, ThreadsUseThemAtTheSameTime)
{
    std::atomic<int> failures(0);
    boost::thread_group threads;
    for (std::uint32_t number = 1; number <= 4; ++number)
        threads.create_thread([number, &failures] { useFacility(number, failures); });
    threads.join_all();
    EXPECT_EQ(0, failures);
}
