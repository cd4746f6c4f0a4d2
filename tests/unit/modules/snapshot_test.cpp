#include "tests/support/system_facts.h"
#include "tests/unit/modules/counted_memory.h"
#include "tests/unit/modules/fake_modules.h"
#include "tests/unit/modules/walk.h"

#include <zorvel/modules.h>

#include <boost/system/system_error.hpp>
#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

/// The code and text of the exception that a snapshot throws.
struct Failure
{
    boost::system::error_code code;
    std::string text;
};

Failure failureOfSnapshot()
{
    try {
        zvLoadedModuleList list;
    } catch (const boost::system::system_error& error) {
        return Failure{error.code(), error.what()};
    }
    ADD_FAILURE() << "the snapshot was taken";
    return Failure();
}

void expectFailure(const Failure& failure, unsigned long code, const char* text)
{
    const boost::system::error_code expected(static_cast<int>(code), boost::system::system_category());
    EXPECT_EQ(failure.code, expected);
    EXPECT_EQ(&failure.code.category(), &boost::system::system_category());
    EXPECT_EQ(failure.text, boost::system::system_error(expected, text).what());
    EXPECT_EQ(failure.text.find(text), 0u);
}

void nameModules(std::size_t count)
{
    for (std::size_t index = 0; index < count; ++index)
        fake_modules::setName(fake_modules::handle(index), fake_modules::nameOf(index));
}

/// So many modules: what is asked for, allocated, held and found.
void expectOneEnumeration(std::size_t count)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    fake_modules::addModules(count);
    {
        const zvLoadedModuleList list;
        ASSERT_EQ(fake_modules::enumerations().size(), 1u) << count;
        EXPECT_EQ(fake_modules::enumerations()[0].process, fake_modules::process());
        EXPECT_EQ(fake_modules::enumerations()[0].size, 1024u);
        EXPECT_EQ(walk(list), fakeNames(0, count));
    }
    EXPECT_TRUE(memory.taken().empty()) << count;
    EXPECT_EQ(memory.given(), 0u) << count;
}

void expectTwoEnumerations(std::size_t count)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    fake_modules::addModules(count);
    {
        const zvLoadedModuleList list;
        ASSERT_EQ(fake_modules::enumerations().size(), 2u) << count;
        EXPECT_EQ(fake_modules::enumerations()[0].size, 1024u);
        EXPECT_EQ(fake_modules::enumerations()[1].process, fake_modules::process());
        EXPECT_EQ(fake_modules::enumerations()[1].size, count * sizeof(void*));
        EXPECT_EQ(memory.taken(), std::vector<std::size_t>{count * sizeof(void*)});
        EXPECT_EQ(memory.held(), 1u);
        EXPECT_EQ(walk(list), fakeNames(0, count));
    }
    EXPECT_EQ(memory.held(), 0u) << count;
    EXPECT_EQ(memory.given(), 1u) << count;
}

}  // namespace

TEST(Snapshot, UpTo128ModulesNeedNoBlock)
{
    for (const std::size_t count : {0, 1, 2, 127, 128})
        expectOneEnumeration(count);
}

TEST(Snapshot, MoreModulesAreEnumeratedAgainIntoABlock)
{
    for (const std::size_t count : {129, 150, 5000})
        expectTwoEnumerations(count);
}

TEST(Snapshot, APartOfAHandleDoesNotCount)
{
    const fake_modules::Scope modules;
    fake_modules::answer({true, 0, fake_modules::handles(0, 3), 3 * sizeof(void*) - 1});
    const zvLoadedModuleList list;
    EXPECT_EQ(list.end().getIndex(), 2u);
}

TEST(Snapshot, FailureOfTheFirstEnumerationIsThrown)
{
    for (const unsigned long code : {codeOfMissingFile(), codeOfDeniedAccess()}) {
        const fake_modules::Scope modules;
        const counted_memory::Scope memory;
        fake_modules::answerWithFailure(code);
        expectFailure(failureOfSnapshot(), code, "EnumProcessModules failed on first call");
        EXPECT_EQ(fake_modules::enumerations().size(), 1u);
        EXPECT_TRUE(memory.taken().empty());
        EXPECT_EQ(memory.given(), 0u);
    }
}

TEST(Snapshot, FailureOfTheSecondEnumerationFreesTheBlockAndKeepsTheCode)
{
    for (const unsigned long code : {codeOfMissingFile(), codeOfDeniedAccess()}) {
        const fake_modules::Scope modules;
        const counted_memory::Scope memory;
        fake_modules::answerWith(fake_modules::handles(0, 129));
        fake_modules::answerWithFailure(code);
        expectFailure(failureOfSnapshot(), code, "EnumProcessModules failed on second call");
        EXPECT_EQ(fake_modules::enumerations().size(), 2u);
        EXPECT_EQ(memory.taken().size(), 1u);
        EXPECT_EQ(memory.held(), 0u);
        EXPECT_EQ(memory.given(), 1u);
        EXPECT_FALSE(memory.gaveForeign());
    }
}

TEST(Snapshot, ExhaustedMemoryLeavesTheFirst128Modules)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory(true);
    fake_modules::addModules(200);
    {
        const zvLoadedModuleList list;
        EXPECT_EQ(memory.taken(), std::vector<std::size_t>{200 * sizeof(void*)});
        EXPECT_EQ(fake_modules::enumerations().size(), 1u);
        EXPECT_EQ(list.end().getIndex(), 128u);
        EXPECT_EQ(walk(list), fakeNames(0, 128));
    }
    EXPECT_FALSE(memory.gaveForeign());
}

TEST(Snapshot, TheFirstReportCountsWhenModulesComeInBetween)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    nameModules(140);
    fake_modules::answerWith(fake_modules::handles(0, 130));
    fake_modules::answerWith(fake_modules::handles(0, 140));
    {
        const zvLoadedModuleList list;
        EXPECT_EQ(walk(list), fakeNames(0, 130));
    }
    EXPECT_EQ(memory.held(), 0u);
}

// The handles that the second enumeration did not store are null, which stands for the executable: nothing is read that
// nobody wrote.
TEST(Snapshot, TheFirstReportCountsWhenModulesGoInBetween)
{
    const fake_modules::Scope modules;
    nameModules(140);
    fake_modules::setName(nullptr, "\\the\\executable");
    fake_modules::answerWith(fake_modules::handles(0, 140));
    fake_modules::answerWith(fake_modules::handles(0, 100));
    const zvLoadedModuleList list;
    std::vector<std::string> expected = fakeNames(0, 100);
    expected.resize(140, "\\the\\executable");
    EXPECT_EQ(walk(list), expected);
}

TEST(Snapshot, LaterModulesAreNotSeen)
{
    const fake_modules::Scope modules;
    fake_modules::addModules(2);
    const zvLoadedModuleList list;
    fake_modules::addModules(3);
    EXPECT_EQ(walk(list), fakeNames(0, 2));
    const zvLoadedModuleList later;
    EXPECT_EQ(walk(later), fakeNames(0, 3));
}

TEST(Snapshot, HasThePrescribedSize)
{
    EXPECT_EQ(sizeof(zvLoadedModuleList), 8u + 128 * 8 + 8 + 4 + 4);
    EXPECT_EQ(sizeof(zvLoadedModuleListIterator), 8u + 8 + 4 + 4 + 2562 + 6);
}
