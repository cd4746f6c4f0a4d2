#include "platform/posix/native_path.h"

#include <gtest/gtest.h>

#include <string>

using zorvel::platform::posix::copyInLibraryForm;
using zorvel::platform::posix::NativePath;

TEST(NativePath, SeparatorsTurn)
{
    EXPECT_STREQ("/a/b/c", NativePath("\\a/b\\c").c_str());
    EXPECT_STREQ("//srv/", NativePath("\\\\srv\\").c_str());
    EXPECT_STREQ("", NativePath("").c_str());
    EXPECT_EQ(nullptr, NativePath(nullptr).c_str());
}

/// Bytes are taken in blocks: each length, and a separator in each place of it.
TEST(NativePath, ASeparatorTurnsWhereverItStands)
{
    for (std::size_t length = 1; length < 70; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::string path(length, 'x');
            std::string expected = path;
            path[place] = '\\';
            expected[place] = '/';
            ASSERT_EQ(expected, NativePath(path.c_str()).c_str());
        }
    }
}

TEST(NativePath, TheLibrarysFormIsTheOtherWayRound)
{
    for (std::size_t length = 0; length < 70; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            std::string path(length, 'x');
            std::string expected = path;
            path[place] = '/';
            expected[place] = '\\';
            copyInLibraryForm(path.c_str(), length, &path[0]);
            ASSERT_EQ(expected, path);
        }
    }
}

TEST(NativePath, WhatTheSystemCannotTakeNamesNothing)
{
    const std::string longest(PATH_MAX - 1, 'x');
    EXPECT_EQ(longest, NativePath(longest.c_str()).c_str());
    EXPECT_STREQ("", NativePath((longest + "x").c_str()).c_str());
    EXPECT_STREQ("", NativePath(std::string(1000000, '\\').c_str()).c_str());
}
