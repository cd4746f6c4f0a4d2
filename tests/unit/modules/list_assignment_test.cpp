#include "tests/unit/modules/counted_memory.h"
#include "tests/unit/modules/fake_modules.h"
#include "tests/unit/modules/walk.h"

#include <zorvel/modules.h>

#include <gtest/gtest.h>

#include <new>
#include <type_traits>

using namespace zorvel::test;

namespace {

/// A list that is never destroyed: of two that share a block only one may be.
class Undestroyed
{
public:
    Undestroyed() : list(*new (&m_storage) zvLoadedModuleList) {}
    Undestroyed(const Undestroyed&) = delete;
    Undestroyed& operator=(const Undestroyed&) = delete;

private:
    std::aligned_storage<sizeof(zvLoadedModuleList), alignof(zvLoadedModuleList)>::type m_storage;

public:
    zvLoadedModuleList& list;
};

/// Makes the next snapshot one of so many modules from a number on.
void nextSnapshot(std::size_t first, std::size_t count)
{
    for (std::size_t index = first; index < first + count; ++index)
        fake_modules::setName(fake_modules::handle(index), fake_modules::nameOf(index));
    fake_modules::answerWith(fake_modules::handles(first, count));
    if (count > 128)
        fake_modules::answerWith(fake_modules::handles(first, count));
}

}  // namespace

TEST(ListAssignment, TakesTheOthersModules)
{
    const fake_modules::Scope modules;
    nextSnapshot(0, 2);
    nextSnapshot(10, 3);
    Undestroyed one;
    Undestroyed other;
    EXPECT_EQ(&(one.list = other.list), &one.list);
    EXPECT_EQ(walk(one.list), fakeNames(10, 3));
    EXPECT_EQ(walk(other.list), fakeNames(10, 3));
}

// Shared storage shows itself: what comes into the other's storage later is seen here, as far as this list counts.
TEST(ListAssignment, RefersToTheOthersStorage)
{
    const fake_modules::Scope modules;
    nextSnapshot(0, 2);
    nextSnapshot(10, 3);
    nextSnapshot(20, 5);
    Undestroyed one;
    Undestroyed other;
    Undestroyed third;
    one.list = other.list;
    other.list = third.list;
    EXPECT_EQ(walk(other.list), fakeNames(20, 5));
    EXPECT_EQ(walk(one.list), fakeNames(20, 3));
}

TEST(ListAssignment, SharesTheBlockOfALargeSnapshot)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    nextSnapshot(0, 2);
    nextSnapshot(10, 200);
    Undestroyed one;
    {
        const zvLoadedModuleList other;
        one.list = other;
        EXPECT_EQ(memory.taken().size(), 1u);
        EXPECT_EQ(memory.given(), 0u);
        EXPECT_EQ(walk(one.list), fakeNames(10, 200));
    }
    EXPECT_EQ(memory.given(), 1u);
    EXPECT_EQ(memory.held(), 0u);
}

TEST(ListAssignment, DoesNotFreeTheBlockFromBefore)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    nextSnapshot(0, 200);
    nextSnapshot(300, 2);
    Undestroyed one;
    Undestroyed other;
    const zvLoadedModuleListIterator old = one.list.begin();
    one.list = other.list;
    EXPECT_EQ(memory.given(), 0u);
    zvLoadedModuleListIterator last = old;
    while (last.getIndex() < 199)
        ++last;
    EXPECT_EQ(*last, fake_modules::nameOf(199));
}

TEST(ListAssignment, AListThatRefersToAnothersArrayFreesNothing)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    nextSnapshot(0, 2);
    nextSnapshot(10, 3);
    {
        const zvLoadedModuleList other;
        zvLoadedModuleList one;
        one = other;
    }
    EXPECT_EQ(memory.given(), 0u);
    EXPECT_FALSE(memory.gaveForeign());
}

TEST(ListAssignment, ToItselfChangesNothing)
{
    const fake_modules::Scope modules;
    const counted_memory::Scope memory;
    nextSnapshot(0, 200);
    {
        zvLoadedModuleList list;
        const zvLoadedModuleList& same = list;
        list = same;
        EXPECT_EQ(walk(list), fakeNames(0, 200));
    }
    EXPECT_EQ(memory.held(), 0u);
    EXPECT_EQ(memory.given(), 1u);
}
