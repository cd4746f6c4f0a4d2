#include "tests/unit/modules/checker.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

// A long path that becomes short is one that fits.
TEST(LinuxNameChecker, TakesAPathThatFitsOnceItIsFull)
{
    std::string path = "\\a";
    for (int i = 0; i < 1500; ++i)
        path += "\\.";
    Checker check("libfoo");
    EXPECT_TRUE(check(path + "\\libfoo"));
    EXPECT_EQ(check.chosen(), "\\a\\libfoo");
}

// A drive is a name like others.
TEST(LinuxNameChecker, ADriveIsARelativePath)
{
    Checker check("libfoo");
    EXPECT_TRUE(check("C:\\a\\libfoo"));
    const std::string end = "\\C:\\a\\libfoo";
    ASSERT_GT(check.chosen().size(), end.size());
    EXPECT_EQ(check.chosen().substr(check.chosen().size() - end.size()), end);
}
