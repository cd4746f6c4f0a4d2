#include "tests/unit/modules/fake_modules.h"

#include <zorvel/modules.h>

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

const std::uint32_t beforeZero = 4294967295u;

/// Three modules with names, and iterators on them.
class ModuleIterator : public testing::Test
{
protected:
    ModuleIterator() : handles(fake_modules::handles(0, 3)), others(fake_modules::handles(10, 5))
    {
        for (const std::size_t index : {0, 1, 2, 10, 11, 12, 13, 14})
            fake_modules::setName(fake_modules::handle(index), fake_modules::nameOf(index));
    }

    zvLoadedModuleListIterator at(std::uint32_t index) const
    {
        return zvLoadedModuleListIterator(fake_modules::process(), handles.data(), 3, index);
    }

    /// On another list, of five modules.
    zvLoadedModuleListIterator otherAt(std::uint32_t index) const
    {
        return zvLoadedModuleListIterator(fake_modules::process(), others.data(), 5, index);
    }

    const fake_modules::Scope modules;
    const std::vector<void*> handles;
    const std::vector<void*> others;
};

}  // namespace

TEST_F(ModuleIterator, GivesTheNameAtItsPosition)
{
    for (std::uint32_t index = 0; index < 3; ++index) {
        EXPECT_EQ(at(index).getIndex(), index);
        EXPECT_EQ(*at(index), fake_modules::nameOf(index));
    }
}

TEST_F(ModuleIterator, AsksForTheNameOnceWhenItMoves)
{
    zvLoadedModuleListIterator it = at(1);
    ++it;
    *it;
    *it;
    --it;
    const std::vector<fake_modules::NameQuestion>& asked = fake_modules::nameQuestions();
    ASSERT_EQ(asked.size(), 3u);
    for (std::size_t index = 0; index < 3; ++index) {
        EXPECT_EQ(asked[index].process, fake_modules::process());
        EXPECT_EQ(asked[index].module, handles[index == 1 ? 2 : 1]);
        EXPECT_EQ(asked[index].size, 2562u);
    }
}

TEST_F(ModuleIterator, IsEmptyOutsideTheList)
{
    for (const std::uint32_t index : {3u, 4u, 0x7FFFFFFFu, 0x80000000u, beforeZero}) {
        EXPECT_STREQ(*at(index), "") << index;
        EXPECT_EQ(at(index).getIndex(), index);
    }
    EXPECT_TRUE(fake_modules::nameQuestions().empty());
}

TEST_F(ModuleIterator, OfAnEmptyListIsEmpty)
{
    const zvLoadedModuleListIterator it(fake_modules::process(), nullptr, 0, 0);
    EXPECT_STREQ(*it, "");
    EXPECT_EQ(it.getIndex(), 0u);
}

TEST_F(ModuleIterator, WithoutHandlesIsEmpty)
{
    zvLoadedModuleListIterator it(fake_modules::process(), nullptr, 3, 1);
    EXPECT_STREQ(*it, "");
    ++it;
    EXPECT_EQ(it.getIndex(), 2u);
    EXPECT_STREQ(*it, "");
    EXPECT_TRUE(fake_modules::nameQuestions().empty());
}

TEST_F(ModuleIterator, PrefixFormsMoveAndReturnTheIterator)
{
    zvLoadedModuleListIterator it = at(0);
    EXPECT_EQ(&++it, &it);
    EXPECT_EQ(it.getIndex(), 1u);
    EXPECT_EQ(*it, fake_modules::nameOf(1));
    EXPECT_EQ(&--it, &it);
    EXPECT_EQ(it.getIndex(), 0u);
    EXPECT_EQ(*it, fake_modules::nameOf(0));
}

TEST_F(ModuleIterator, PostfixFormsReturnWhatItWas)
{
    zvLoadedModuleListIterator it = at(1);
    const zvLoadedModuleListIterator before = it++;
    EXPECT_EQ(before.getIndex(), 1u);
    EXPECT_EQ(*before, fake_modules::nameOf(1));
    EXPECT_EQ(it.getIndex(), 2u);
    EXPECT_EQ(*it, fake_modules::nameOf(2));
    const zvLoadedModuleListIterator after = it--;
    EXPECT_EQ(after.getIndex(), 2u);
    EXPECT_EQ(*after, fake_modules::nameOf(2));
    EXPECT_EQ(it.getIndex(), 1u);
    EXPECT_EQ(*it, fake_modules::nameOf(1));
}

TEST_F(ModuleIterator, BeforeTheFirstComesTheHighestNumber)
{
    zvLoadedModuleListIterator it = at(0);
    --it;
    EXPECT_EQ(it.getIndex(), beforeZero);
    EXPECT_STREQ(*it, "");
    it--;
    EXPECT_EQ(it.getIndex(), beforeZero - 1);
    EXPECT_STREQ(*it, "");
    ++it;
    it++;
    EXPECT_EQ(it.getIndex(), 0u);
    EXPECT_EQ(*it, fake_modules::nameOf(0));
}

TEST_F(ModuleIterator, MovesPastTheEndAndBack)
{
    zvLoadedModuleListIterator it = at(2);
    ++it;
    EXPECT_STREQ(*it, "");
    ++it;
    EXPECT_EQ(it.getIndex(), 4u);
    EXPECT_STREQ(*it, "");
    --it;
    --it;
    EXPECT_EQ(*it, fake_modules::nameOf(2));
}

TEST_F(ModuleIterator, ComparesPositionsAsUnsignedNumbers)
{
    const std::uint32_t positions[] = {0, 1, 3, 0x7FFFFFFF, 0x80000000, beforeZero};
    for (const std::uint32_t left : positions)
        for (const std::uint32_t right : positions) {
            EXPECT_EQ(at(left) == at(right), left == right) << left << ' ' << right;
            EXPECT_EQ(at(left) != at(right), left != right) << left << ' ' << right;
            EXPECT_EQ(at(left) < at(right), left < right) << left << ' ' << right;
            EXPECT_EQ(at(left) <= at(right), left <= right) << left << ' ' << right;
            EXPECT_EQ(at(left) > at(right), left > right) << left << ' ' << right;
            EXPECT_EQ(at(left) >= at(right), left >= right) << left << ' ' << right;
        }
}

TEST_F(ModuleIterator, ComparisonDoesNotTellListsApart)
{
    EXPECT_TRUE(at(1) == otherAt(1));
    EXPECT_FALSE(at(1) != otherAt(1));
    EXPECT_TRUE(at(1) < otherAt(2));
    EXPECT_TRUE(at(1) <= otherAt(1));
    EXPECT_TRUE(at(2) > otherAt(1));
    EXPECT_TRUE(at(1) >= otherAt(1));
}

TEST_F(ModuleIterator, AssignmentTakesThePositionOnly)
{
    zvLoadedModuleListIterator it = at(0);
    EXPECT_EQ(&(it = otherAt(2)), &it);
    EXPECT_EQ(it.getIndex(), 2u);
    EXPECT_EQ(*it, fake_modules::nameOf(2));
    ++it;
    EXPECT_STREQ(*it, "") << "it goes on in its own list";
}

TEST_F(ModuleIterator, AssignmentOfAPositionOutsideItsListEmptiesIt)
{
    zvLoadedModuleListIterator it = at(0);
    it = otherAt(4);
    EXPECT_EQ(it.getIndex(), 4u);
    EXPECT_STREQ(*it, "");
}

TEST_F(ModuleIterator, AssignmentToItselfChangesNothing)
{
    zvLoadedModuleListIterator it = at(1);
    const zvLoadedModuleListIterator& same = it;
    it = same;
    EXPECT_EQ(it.getIndex(), 1u);
    EXPECT_EQ(*it, fake_modules::nameOf(1));
}

TEST_F(ModuleIterator, ACopyWalksTheSameListByItself)
{
    zvLoadedModuleListIterator it = at(0);
    zvLoadedModuleListIterator copy = it;
    ++copy;
    EXPECT_EQ(*copy, fake_modules::nameOf(1));
    EXPECT_EQ(*it, fake_modules::nameOf(0));
}

TEST_F(ModuleIterator, AFailedQuestionLeavesTheTextAsItWas)
{
    fake_modules::removeName(handles[1]);
    EXPECT_STREQ(*at(1), "");
    zvLoadedModuleListIterator it = at(0);
    ++it;
    EXPECT_EQ(*it, fake_modules::nameOf(0));
    it = otherAt(2);
    EXPECT_EQ(*it, fake_modules::nameOf(2));
    --it;
    EXPECT_EQ(*it, fake_modules::nameOf(2));
}

TEST_F(ModuleIterator, HoldsNamesOf2561Bytes)
{
    const std::string longest(2561, 'n');
    fake_modules::setName(handles[0], longest);
    EXPECT_EQ(*at(0), longest);
    fake_modules::setName(handles[0], longest + "more");
    EXPECT_EQ(*at(0), longest);
}

TEST_F(ModuleIterator, OfAListWalksTheList)
{
    fake_modules::addModules(3);
    const zvLoadedModuleList list;
    EXPECT_EQ(list.begin().getIndex(), 0u);
    EXPECT_EQ(*list.begin(), fake_modules::nameOf(0));
    EXPECT_EQ(list.end().getIndex(), 3u);
    EXPECT_STREQ(*list.end(), "");
    EXPECT_STREQ(*--list.begin(), "");
    EXPECT_EQ(*--list.end(), fake_modules::nameOf(2));
}
