#include "suite/qx.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(NameHash, SameBytesGiveTheSameAddress)
{
    _namehash_context* const names = qx_namehash_create();
    ASSERT_NE(nullptr, names);
    char name[] = "a\\b";
    const char* const first = qx_namehash_add(names, name);
    ASSERT_NE(nullptr, first);
    EXPECT_NE(name, first);
    EXPECT_STREQ("a\\b", first);
    EXPECT_EQ(first, qx_namehash_add(names, std::string("a\\b").c_str()));
    EXPECT_NE(first, qx_namehash_add(names, "A\\b"));
    name[0] = 'x';
    EXPECT_STREQ("a\\b", first);
    EXPECT_STREQ("", qx_namehash_add(names, ""));
    qx_namehash_destroy(names);
}

TEST(NameHash, NamesStayWhereTheyAre)
{
    _namehash_context* const names = qx_namehash_create();
    ASSERT_NE(nullptr, names);
    std::vector<const char*> handedOut;
    for (int i = 0; i < 5000; ++i)
        handedOut.push_back(qx_namehash_add(names, std::to_string(i).c_str()));
    for (int i = 0; i < 5000; ++i) {
        ASSERT_EQ(std::to_string(i), handedOut[static_cast<std::size_t>(i)]);
        ASSERT_EQ(handedOut[static_cast<std::size_t>(i)], qx_namehash_add(names, std::to_string(i).c_str()));
    }
    qx_namehash_destroy(names);
}

TEST(NameHash, NullIsRefused)
{
    _namehash_context* const names = qx_namehash_create();
    EXPECT_EQ(nullptr, qx_namehash_add(names, nullptr));
    EXPECT_EQ(nullptr, qx_namehash_add(nullptr, "a"));
    qx_namehash_destroy(names);
    qx_namehash_destroy(nullptr);
}
