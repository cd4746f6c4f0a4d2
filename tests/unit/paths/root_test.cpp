#include <zorvel/paths.h>

#include <gtest/gtest.h>

#include <string>

TEST(Root, Accepted)
{
    for (const char* root : {"\\", "/", "C:\\", "c:/", ":\\", ":/", "ab:\\", "AbZ:/"})
        EXPECT_TRUE(zvIsRootDir(root)) << root;
}

TEST(Root, Refused)
{
    for (const char* path :
         {"",     "C:",     "C:\\x", "C:\\Temp", "\\\\server", "\\\\", "//", "C:\\\\", "1:\\",    "a b:\\", "::\\",
          "\\\n", "C:\\\n", "\n\\",  "x\n\\",    " \\",        "\\ ",  "a",  "a\\",    "\x81:\\", "C:\\a\\"})
        EXPECT_FALSE(zvIsRootDir(path)) << path;
    EXPECT_FALSE(zvIsRootDir(nullptr));
}

TEST(Root, LongTexts)
{
    EXPECT_TRUE(zvIsRootDir((std::string(2600, 'q') + ":\\").c_str()));
    EXPECT_FALSE(zvIsRootDir((std::string(1000000, 'q') + "\\").c_str()));
    EXPECT_FALSE(zvIsRootDir((std::string(1000000, '\\')).c_str()));
}
