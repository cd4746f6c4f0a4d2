#include "suite/kpath.h"

#include "platform/path_rules.h"
#include "suite/qx.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace {

typedef std::pair<std::string, std::string> Parts;

Parts separated(const char* path)
{
    char directory[64];
    char name[64];
    EXPECT_TRUE(kpSeparatePathName(path, directory, sizeof directory, name, sizeof name)) << path;
    return Parts(directory, name);
}

std::string concatenated(const std::string& path, const char* name)
{
    char buffer[64];
    std::strcpy(buffer, path.c_str());
    EXPECT_TRUE(kpConcatPathName(buffer, sizeof buffer, name)) << path << " + " << name;
    return buffer;
}

/// Whether "C:" is a drive here, or a name like others.
bool hasDrives()
{
    return zorvel::platform::drivePrefixLength("C:") == 2;
}

/// Whether 0x95 0x5C is one character here.
bool isDoubleByte()
{
    return qxIsMultiByteLead(0x95);
}

}  // namespace

TEST(KPath, AbsolutePaths)
{
    for (const char* path : {"\\\\srv", "//srv", "/\\srv", "\\\\"})
        EXPECT_TRUE(kpIsAbsolutePath(path)) << path;
    for (const char* path : {"", "a", "a\\b", ".", "..\\a", "C:", "C:a", ":\\", "1:\\", "CC:\\"})
        EXPECT_FALSE(kpIsAbsolutePath(path)) << path;
    EXPECT_FALSE(kpIsAbsolutePath(nullptr));
}

TEST(KPath, DrivesAndRootsAreTheSystems)
{
    for (const char* path : {"C:\\", "c:/x", "Z:\\a"})
        EXPECT_EQ(hasDrives(), kpIsAbsolutePath(path)) << path;
    for (const char* path : {"\\", "/", "\\a", "/a"})
        EXPECT_EQ(!hasDrives(), kpIsAbsolutePath(path)) << path;
}

TEST(KPath, SeparatesAtTheLastSeparator)
{
    EXPECT_EQ(Parts("a", "b"), separated("a\\b"));
    EXPECT_EQ(Parts("a\\b", "c"), separated("a\\b/c"));
    EXPECT_EQ(Parts("a", ""), separated("a\\"));
    EXPECT_EQ(Parts("C:\\a\\b", ""), separated("C:\\a\\b\\"));
    EXPECT_EQ(Parts("", "b"), separated("b"));
    EXPECT_EQ(Parts("", ""), separated(""));
    EXPECT_EQ(Parts("a\\", "b"), separated("a\\\\b"));
}

TEST(KPath, RootsKeepTheirSeparator)
{
    EXPECT_EQ(Parts("\\", "x"), separated("\\x"));
    EXPECT_EQ(Parts("/", "x"), separated("/x"));
    EXPECT_EQ(Parts("\\", ""), separated("\\"));
    EXPECT_EQ(Parts("\\\\", "server"), separated("\\\\server"));
    EXPECT_EQ(Parts("\\\\server", "share"), separated("\\\\server\\share"));
    EXPECT_EQ(hasDrives() ? Parts("C:\\", "x") : Parts("C:", "x"), separated("C:\\x"));
    EXPECT_EQ(hasDrives() ? Parts("C:\\", "") : Parts("C:", ""), separated("C:\\"));
    EXPECT_EQ(hasDrives() ? Parts("C:", "x") : Parts("", "C:x"), separated("C:x"));
    EXPECT_EQ(hasDrives() ? Parts("C:", "") : Parts("", "C:"), separated("C:"));
}

TEST(KPath, SeparatingKnowsDoubleByteCharacters)
{
    EXPECT_EQ(isDoubleByte() ? Parts("a", "\x95\x5C") : Parts("a\\\x95", ""), separated("a\\\x95\x5C"));
    EXPECT_EQ(isDoubleByte() ? Parts("\x95\x5C", "b") : Parts("\x95\x5C", "b"), separated("\x95\x5C\\b"));
    EXPECT_EQ(Parts("a", "\x95"), separated("a\\\x95"));
}

TEST(KPath, SeparatingIsBounded)
{
    char directory[8] = "d";
    char name[8] = "n";
    EXPECT_TRUE(kpSeparatePathName("abc\\de", directory, 4, name, 3));
    EXPECT_STREQ("abc", directory);
    EXPECT_STREQ("de", name);
    EXPECT_FALSE(kpSeparatePathName("xyz\\pq", directory, 3, name, 3));
    EXPECT_FALSE(kpSeparatePathName("xyz\\pq", directory, 4, name, 2));
    EXPECT_FALSE(kpSeparatePathName("xyz\\pq", directory, 0, name, 3));
    EXPECT_FALSE(kpSeparatePathName("xyz\\pq", directory, 4, name, 0));
    EXPECT_FALSE(kpSeparatePathName(nullptr, directory, 8, name, 8));
    EXPECT_FALSE(kpSeparatePathName("a\\b", nullptr, 8, name, 8));
    EXPECT_FALSE(kpSeparatePathName("a\\b", directory, 8, nullptr, 8));
    EXPECT_STREQ("abc", directory);
    EXPECT_STREQ("de", name);
}

TEST(KPath, DirectoryBufferMayBeThePath)
{
    char path[16] = "a\\b\\cde";
    char name[16];
    EXPECT_TRUE(kpSeparatePathName(path, path, sizeof path, name, sizeof name));
    EXPECT_STREQ("a\\b", path);
    EXPECT_STREQ("cde", name);
    EXPECT_TRUE(kpSeparatePathName(std::strcpy(path, "\\x"), path, sizeof path, name, sizeof name));
    EXPECT_STREQ("\\", path);
    EXPECT_STREQ("x", name);
}

TEST(KPath, ConcatenatesWithOneSeparator)
{
    EXPECT_EQ("a\\b", concatenated("a", "b"));
    EXPECT_EQ("a\\b", concatenated("a\\", "b"));
    EXPECT_EQ("a/b", concatenated("a/", "b"));
    EXPECT_EQ("b", concatenated("", "b"));
    EXPECT_EQ("\\b", concatenated("\\", "b"));
    EXPECT_EQ("C:\\b", concatenated("C:\\", "b"));
    EXPECT_EQ("CC:\\b", concatenated("CC:", "b"));
    EXPECT_EQ("a\\b\\*", concatenated("a\\b", "*"));
    EXPECT_EQ(hasDrives() ? "C:b" : "C:\\b", concatenated("C:", "b"));
}

TEST(KPath, ConcatenatingKnowsDoubleByteCharacters)
{
    EXPECT_EQ(isDoubleByte() ? "\x95\x5C\\b"
                             : "\x95\x5C"
                               "b",
              concatenated("\x95\x5C", "b"));
    EXPECT_EQ("a\\\x95\x5C", concatenated("a", "\x95\x5C"));
    EXPECT_EQ("\x95\\b", concatenated("\x95", "b"));
}

TEST(KPath, SplitPartsJoinToTheSamePath)
{
    for (const char* path : {"a\\b", "\\x", "C:\\x", "C:x", "\\\\srv\\share", "b", "a\\\x95\x5C",
                             "\x95\x5C"
                             "b"}) {
        const Parts parts = separated(path);
        EXPECT_EQ(path, concatenated(parts.first, parts.second.c_str()));
    }
}

TEST(KPath, ConcatenatingIsBounded)
{
    for (std::size_t size = 0; size <= 8; ++size) {
        const std::unique_ptr<char[]> buffer(new char[size + 1]);
        std::memset(buffer.get(), 'a', size + 1);
        if (size >= 4)
            std::strcpy(buffer.get(), "abc");
        const bool fits = size >= 7;
        EXPECT_EQ(fits, kpConcatPathName(buffer.get(), size, "de")) << size;
        if (size >= 4) {
            EXPECT_STREQ(fits ? "abc\\de" : "abc", buffer.get()) << size;
        }
    }
    char text[4] = "abc";
    EXPECT_FALSE(kpConcatPathName(text, 4, ""));
    EXPECT_STREQ("abc", text);
    EXPECT_FALSE(kpConcatPathName(nullptr, 4, "a"));
    EXPECT_FALSE(kpConcatPathName(text, 4, nullptr));
}
