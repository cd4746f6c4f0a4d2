#include "platform/posix/native_path.h"

#include <gtest/gtest.h>

#include <string>

using zorvel::platform::posix::NativePath;

TEST(NativePath, SeparatorsTurn)
{
    EXPECT_STREQ("/a/b/c", NativePath("\\a/b\\c").c_str());
    EXPECT_STREQ("//srv/", NativePath("\\\\srv\\").c_str());
    EXPECT_STREQ("", NativePath("").c_str());
    EXPECT_EQ(nullptr, NativePath(nullptr).c_str());
}

TEST(NativePath, WhatTheSystemCannotTakeNamesNothing)
{
    const std::string longest(PATH_MAX - 1, 'x');
    EXPECT_EQ(longest, NativePath(longest.c_str()).c_str());
    EXPECT_STREQ("", NativePath((longest + "x").c_str()).c_str());
    EXPECT_STREQ("", NativePath(std::string(1000000, '\\').c_str()).c_str());
}
