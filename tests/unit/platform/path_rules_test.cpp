#include "platform/path_rules.h"

#include "platform/posix/native_path.h"
#include "tests/support/temporary_tree.h"
#include "tests/unit/platform/locale_scope.h"
#include "tests/unit/platform/working_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

using namespace zorvel::platform;

namespace {

std::string canonical(const char* in)
{
    char out[canonicalPathSize];
    EXPECT_TRUE(canonicalize(in, out)) << in;
    return out;
}

std::string absolute(const char* in)
{
    char out[8192];
    return fullPath(in, out, sizeof out) ? out : "(none)";
}

}  // namespace

TEST(PathRules, DriveLettersAreNames)
{
    EXPECT_EQ(0u, drivePrefixLength("C:"));
    EXPECT_EQ(0u, drivePrefixLength(nullptr));
    EXPECT_FALSE(isAbsolutePath("C:\\"));
    EXPECT_TRUE(isAbsolutePath("\\a"));
    EXPECT_TRUE(isAbsolutePath("/"));
    EXPECT_FALSE(isAbsolutePath(""));
    EXPECT_FALSE(isAbsolutePath(nullptr));
}

TEST(PathRules, DotsAtTheEndAndWhatIsLeftOfNothing)
{
    EXPECT_EQ("\\", canonical("\\."));
    EXPECT_EQ("\\a", canonical("\\a\\."));
    EXPECT_EQ("\\", canonical("\\.."));
    EXPECT_EQ("\\", canonical("\\..\\.."));
    EXPECT_EQ("\\", canonical("\\a\\.."));
    EXPECT_EQ("\\", canonical("\\a\\..\\."));
    EXPECT_EQ("C:\\", canonical("C:\\."));
    EXPECT_EQ("\\", canonical("a\\.."));
    EXPECT_EQ("\\", canonical("a\\..\\.."));
    EXPECT_EQ("\\", canonical("..\\.."));
    // The current directory never turns into the root.
    EXPECT_EQ(".", canonical(".\\"));
    EXPECT_EQ(".", canonical(".\\."));
    EXPECT_EQ("a", canonical(".\\\\a"));
    EXPECT_EQ("C:\\...\\a", canonical("C:\\...\\a"));
    EXPECT_EQ("C:\\..a", canonical("C:\\..a"));
}

TEST(PathRules, ADoubleByteCharacterIsNoDrive)
{
    const LocaleScope locale("ja_JP.SHIFT_JIS");
    ASSERT_TRUE(locale.installed());
    EXPECT_EQ("\x81:", canonical("\x81:"));
    EXPECT_EQ("A:\\", canonical("A:"));
}

TEST(FullPath, AbsoluteInput)
{
    EXPECT_EQ("\\", absolute("/"));
    EXPECT_EQ("\\a\\b", absolute("/a\\b"));
    EXPECT_EQ("\\b", absolute("/a/../b"));
    EXPECT_EQ("\\", absolute("/.."));
    EXPECT_EQ("\\", absolute("/a/.."));
    EXPECT_EQ("\\b\\", absolute("\\..\\..\\b\\"));
    EXPECT_EQ("\\a\\b", absolute("\\\\a\\\\b"));
    EXPECT_EQ("\\a", absolute("\\a\\."));
    EXPECT_EQ("\\a...\\ b ", absolute("\\a...\\ b "));
}

/// Bytes are looked at in blocks: what has to go is found in each place of each length.
TEST(FullPath, DotsAndDoubledSeparatorsWhereverTheyStand)
{
    for (std::size_t length = 4; length < 70; ++length) {
        for (std::size_t place = 1; place + 3 < length; ++place) {
            const std::string before = "\\" + std::string(place, 'x');
            const std::string after(length - place - 3, 'y');
            ASSERT_EQ(before + "\\" + after, absolute((before + "\\./" + after).c_str()));
            ASSERT_EQ(before + "\\" + after, absolute((before + "/\\/" + after).c_str()));
            ASSERT_EQ(before + "\\.a" + after, absolute((before + "/.a" + after).c_str()));
            ASSERT_EQ(before + "x..\\" + after, absolute((before + "x../" + after).c_str()));
        }
    }
}

TEST(FullPath, ThePathItselfMayBeOverwritten)
{
    for (std::size_t length = 1; length < 70; ++length) {
        std::string path = "/" + std::string(length, 'x') + "/z";
        ASSERT_TRUE(fullPath(path.c_str(), &path[0], path.size() + 1));
        ASSERT_EQ("\\" + std::string(length, 'x') + "\\z", path);
    }
}

TEST(FullPath, HalfOfACharacterIsNoSeparator)
{
    const LocaleScope locale("ja_JP.SHIFT_JIS");
    ASSERT_TRUE(locale.installed());
    EXPECT_EQ("\\a\x95\x5C.b\\a name that is longer", absolute("/a\x95\x5C.b/a name that is longer"));
    EXPECT_EQ("\\a\x95\x5C\\b", absolute("/a\x95\x5C//b"));
}

TEST(FullPath, RelativeInput)
{
    const WorkingDirectory here("/usr/lib");
    EXPECT_EQ("\\usr\\lib", absolute("."));
    EXPECT_EQ("\\usr\\lib", absolute(""));
    EXPECT_EQ("\\usr\\lib\\a\\b", absolute("a/b"));
    EXPECT_EQ("\\usr\\x", absolute("..\\x"));
    EXPECT_EQ("\\x", absolute("..\\..\\..\\x"));
    EXPECT_EQ("\\usr\\lib\\C:\\a", absolute("C:\\a"));
}

TEST(FullPath, AtTheRoot)
{
    const WorkingDirectory here("/");
    EXPECT_EQ("\\", absolute("."));
    EXPECT_EQ("\\a", absolute("a"));
    EXPECT_EQ("\\", absolute("..\\"));
}

TEST(FullPath, ExactlyWhatFits)
{
    for (std::size_t size = 1; size < 10; ++size) {
        const std::unique_ptr<char[]> out(new char[size]);
        EXPECT_EQ(size >= 6, fullPath("\\a\\bc", out.get(), size)) << size;
        if (size >= 6) {
            EXPECT_STREQ("\\a\\bc", out.get());
        }
    }
}

TEST(FullPath, Refused)
{
    char out[64];
    EXPECT_FALSE(fullPath(nullptr, out, sizeof out));
    EXPECT_FALSE(fullPath("a", nullptr, 64));
    EXPECT_FALSE(fullPath("\\a", out, 0));
    EXPECT_FALSE(fullPath(std::string(100000, 'x').c_str(), out, sizeof out));
}

TEST(FullPath, DirectoryThatCannotBeWrittenAsALibraryPath)
{
    const zorvel::test::TemporaryTree tree;
    const posix::NativePath root(tree.root().c_str());
    const std::filesystem::path odd = std::filesystem::path(root.c_str()) / "with\\backslash";
    std::filesystem::create_directory(odd);
    {
        const WorkingDirectory here(odd);
        EXPECT_EQ("(none)", absolute("a"));
        EXPECT_EQ("\\a", absolute("\\a"));
    }
    std::filesystem::remove(odd);
}
