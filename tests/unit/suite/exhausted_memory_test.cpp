#include <zorvel/suite.h>

#include "suite/nqservices.h"
#include "tests/support/temporary_tree.h"
#include "tests/unit/suite/exhaustible_memory.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using zorvel::test::Exhaustion;

TEST(ExhaustedMemory, ASetOfNamesIsNotMade)
{
    const Exhaustion none(0);
    EXPECT_EQ(nullptr, qx_namehash_create());
}

TEST(ExhaustedMemory, ANameIsNotInterned)
{
    _namehash_context* const names = qx_namehash_create();
    const std::string name(100, 'n');
    const char* interned = "";
    {
        const Exhaustion none(0);
        interned = qx_namehash_add(names, name.c_str());
    }
    EXPECT_EQ(nullptr, interned);
    EXPECT_STREQ(name.c_str(), qx_namehash_add(names, name.c_str()));
    qx_namehash_destroy(names);
}

/// Whichever of its allocations fails, the listing is there or it is not.
TEST(ExhaustedMemory, AListingIsWholeOrNull)
{
    zorvel::test::TemporaryTree tree;
    tree.file("one");
    tree.file("two");
    const std::string pattern = tree.path("*o*");
    int failures = 0;
    for (int count = 0;; ++count) {
        char* list = nullptr;
        {
            const Exhaustion some(count);
            list = ioGetDirList(pattern.c_str(), 0);
        }
        if (list) {
            std::size_t names = 0;
            for (const char* name = list; *name; name += std::string(name).size() + 1)
                ++names;
            EXPECT_EQ(2u, names);
            qxFree(list);
            break;
        }
        ++failures;
    }
    EXPECT_GE(failures, 2);
}

}  // namespace
