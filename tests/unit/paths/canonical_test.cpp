#include "platform/path_rules.h"
#include "suite/kpath.h"
#include "tests/unit/paths/lead_byte_scope.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

using namespace zorvel::test;

namespace {

/// The process's own current directory in the library's form.
std::string currentDirectory()
{
    char buffer[4096];
    EXPECT_TRUE(zorvel::platform::fullPath(".", buffer, sizeof buffer));
    return buffer;
}

std::string collapsed(const char* in)
{
    char out[260];
    std::memset(out, '#', sizeof out);
    EXPECT_EQ(out, zvCollapsePath(out, in));
    return out;
}

std::string canonical(const std::string& in)
{
    char out[4096];
    std::memset(out, '#', sizeof out);
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, in.c_str(), in.size()));
    return out;
}

}  // namespace

/// Not here: what ends in ".." and comes to a root without a drive ("\..",
/// "\a\.."). Wine reads past the end of such a text.
TEST(Collapse, RemovesDotComponents)
{
    const struct
    {
        const char* in;
        const char* out;
    } rows[] = {
        {"", "\\"},
        {".", "."},
        {"\\", "\\"},
        {"\\..\\a", "\\a"},
        {"\\..\\", "\\"},
        {"\\.\\", "\\"},
        {"\\.\\a", "\\a"},
        {"\\a", "\\a"},
        {"\\a\\", "\\a\\"},
        {"\\a\\..\\b", "\\b"},
        {"\\a\\..\\..\\b", "\\b"},
        {"\\a\\.\\..\\b", "\\b"},
        {"\\a\\b\\..", "\\a"},
        {"\\ \\..\\b", "\\b"},
        {"C:", "C:\\"},
        {"C:\\", "C:\\"},
        {"C:a", "C:a"},
        {"C:\\..", "C:\\"},
        {"C:\\..\\..", "C:\\"},
        {"C:\\..\\a", "C:\\a"},
        {"C:\\a\\..", "C:\\"},
        {"C:\\a\\.\\b", "C:\\a\\b"},
        {"C:\\a\\..\\b", "C:\\b"},
        {"C:\\a\\..\\b  ", "C:\\b  "},
        {"C:\\a\\b\\..", "C:\\a"},
        {"C:\\a\\b\\..\\", "C:\\a\\"},
        {"C:\\a\\b\\..\\..\\..\\c", "C:\\c"},
        {"C:\\a\\\\b", "C:\\a\\\\b"},
        {"C:\\a\\\\..\\b", "C:\\a\\b"},
        {"C:\\a\\..\\\\b", "C:\\\\b"},
        {"C:\\a.\\..\\b", "C:\\b"},
        {"C:\\a...", "C:\\a..."},
        {"C:\\a.\\b", "C:\\a.\\b"},
        {"C:\\a\\.b", "C:\\a\\.b"},
        {"\\\\", "\\\\"},
        {"\\\\srv\\share", "\\\\srv\\share"},
        {"\\\\srv\\share\\..", "\\\\srv"},
        {"\\\\srv\\share\\..\\..\\..\\a", "\\\\srv\\a"},
        {"\\\\srv\\share\\a\\..", "\\\\srv\\share"},
        {"\\\\srv\\..\\b", "\\\\srv\\b"},
        {"\\\\\\a", "\\\\\\a"},
        {"a", "a"},
        {"a\\", "a\\"},
        {"a\\.\\b", "a\\b"},
        {"a\\..\\b", "\\b"},
        {"a\\b\\..\\c", "a\\c"},
        {"a\\b\\..", "a"},
        {"..", ".."},
        {"..\\a", "..\\a"},
        {"..\\..\\a", "\\a"},
        {".\\a", "a"},
        {"a\\..\\..\\b", "\\b"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.out, collapsed(row.in)) << row.in;
}

TEST(Collapse, OnlyBackslashSeparates)
{
    for (const char* in : {"/", "/..", "/a/../b", "C:/a/../b", "a/../b", "./a", "\\a/..\\b"})
        EXPECT_EQ(in, collapsed(in)) << in;
}

TEST(Collapse, KnowsTheDoubleByteCharactersOfTheCodePage)
{
    const bool doubleByte = qxIsMultiByteLead(0x95);
    EXPECT_EQ(doubleByte ? "\\b" : "\\\x95\\b", collapsed("\\\x95\x5C\\..\\b"));
    EXPECT_EQ(doubleByte ? "C:\\" : "C:\\\x95", collapsed("C:\\\x95\x5C\\.."));
}

TEST(Collapse, BoundsAndNull)
{
    const std::string longest = "C:\\" + std::string(256, 'x');
    EXPECT_EQ(longest, collapsed(longest.c_str()));
    EXPECT_EQ("", collapsed((longest + "x").c_str()));
    EXPECT_EQ("", collapsed((longest + "\\..").c_str()));
    EXPECT_EQ("", collapsed(std::string(100000, '\\').c_str()));
    EXPECT_EQ("", collapsed(nullptr));
    EXPECT_EQ(nullptr, zvCollapsePath(nullptr, "a"));
    EXPECT_EQ(nullptr, zvCollapsePath(nullptr, nullptr));
}

TEST(Collapse, NeverLeavesItsBuffer)
{
    // A lead byte at the very end may come back as two bytes.
    struct
    {
        char out[260];
        char guard[8];
    } memory;
    std::memset(&memory, '#', sizeof memory);
    zvCollapsePath(memory.out, ("C:\\" + std::string(255, 'x') + "\x95").c_str());
    EXPECT_NE(nullptr, std::memchr(memory.out, '\0', sizeof memory.out));
    EXPECT_EQ("########", std::string(memory.guard, 8));
}

TEST(Collapse, OutputMayBeTheInput)
{
    char path[260] = "C:\\a\\..\\b";
    EXPECT_EQ(path, zvCollapsePath(path, path));
    EXPECT_STREQ("C:\\b", path);
}

TEST(Canonicalize, BlankMeansTheCurrentDirectory)
{
    for (const char* in : {"", "   ", " \t\n\v\f\r", "."})
        EXPECT_EQ(currentDirectory(), canonical(in)) << in;
}

TEST(Canonicalize, RelativePathsBecomeAbsolute)
{
    const std::string here = currentDirectory();
    EXPECT_EQ(here + "\\a", canonical("a"));
    EXPECT_EQ(here + "\\a", canonical("  a"));
    EXPECT_EQ(here + "\\a\\c", canonical("a/.\\b/../c"));
    EXPECT_EQ(here, canonical("a\\.."));
    EXPECT_EQ(here + "\\a\\", canonical("a\\"));
    EXPECT_EQ(here + "\\a\\b", canonical("a\\\\b"));
}

TEST(Canonicalize, AbsolutePathsKeepTrailingSpace)
{
    EXPECT_EQ("\\\\s\\b  ", canonical("  \\\\s\\a\\..\\b  "));
    EXPECT_EQ("\\\\s\\b", canonical("\\\\s\\.\\b"));
    const std::string root = kpIsAbsolutePath("C:\\") ? "C:\\" : "\\";
    EXPECT_EQ(root + "b  ", canonical("  " + root + "a\\..\\b  "));
    EXPECT_EQ(root, canonical(root + "a\\..\\..\\"));
}

TEST(Canonicalize, UnterminatedInputIsReadUpToItsLength)
{
    const std::string text = "\\\\s\\a\\..\\b";
    const std::unique_ptr<char[]> exact(new char[text.size()]);
    std::memcpy(exact.get(), text.data(), text.size());
    char out[300];
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, exact.get(), text.size()));
    EXPECT_STREQ("\\\\s\\b", out);
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, exact.get(), 5));
    EXPECT_STREQ("\\\\s\\a", out);
}

TEST(Canonicalize, EmbeddedNulEndsTheText)
{
    char out[300];
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, "\\\\s\\a\0\\b", 8));
    EXPECT_STREQ("\\\\s\\a", out);
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, "  \0x", 4));
    EXPECT_EQ(currentDirectory().substr(0, 299), out);
}

TEST(Canonicalize, LengthMayExceedTheText)
{
    const std::string in = "\\\\s\\a";
    char out[300];
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, in.c_str(), 100000));
    EXPECT_STREQ("\\\\s\\a", out);
}

TEST(Canonicalize, LongInputIsReadUpToItsOwnNul)
{
    // 2561 bytes are copied and end at the given length; 2562 bytes are used in place.
    const std::string blanks(2561 - 5, ' ');
    const std::string shorter = blanks + "\\\\s\\ab";
    const std::string longer = " " + shorter;
    char out[300];
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, shorter.c_str(), 2561));
    EXPECT_STREQ("\\\\s\\a", out);
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, longer.c_str(), 2562));
    EXPECT_STREQ("\\\\s\\ab", out);
}

TEST(Canonicalize, OverlongPathsDoNotFit)
{
    char out[5000];
    out[0] = '#';
    const std::string absolute = "\\\\s\\" + std::string(300, 'x');
    EXPECT_EQ(out, zvCanonicalizePath(out, sizeof out, absolute.c_str(), absolute.size()));
    EXPECT_STREQ("", out);
    const std::string huge = std::string(100000, 'x');
    EXPECT_EQ(huge.c_str(), zvCanonicalizePath(out, sizeof out, huge.c_str(), huge.size()));
}

TEST(Canonicalize, OutputIsBounded)
{
    const std::string in = "\\\\s\\abc";
    for (std::size_t size = 1; size <= in.size() + 2; ++size) {
        const std::unique_ptr<char[]> out(new char[size]);
        EXPECT_EQ(out.get(), zvCanonicalizePath(out.get(), size, in.c_str(), in.size()));
        EXPECT_STREQ(size > in.size() ? in.c_str() : "", out.get()) << size;
    }
}

TEST(Canonicalize, FailureGivesBackTheInput)
{
    char out[4];
    const char* const in = "relative";
    EXPECT_EQ(in, zvCanonicalizePath(out, 1, in, 8));
    EXPECT_EQ(in, zvCanonicalizePath(out, 2, in, 8));
    EXPECT_EQ(in, zvCanonicalizePath(out, 0, in, 8));
    EXPECT_EQ(in, zvCanonicalizePath(nullptr, 100, in, 8));
    // Terminated: without its leading space. Unterminated: as it is.
    const char* const blank = "  relative";
    EXPECT_EQ(blank + 2, zvCanonicalizePath(out, 1, blank, 10));
    EXPECT_EQ(blank, zvCanonicalizePath(out, 1, blank, 6));
    const std::string longer = std::string(3000, ' ') + "x";
    EXPECT_EQ(longer.c_str() + 3000, zvCanonicalizePath(out, 1, longer.c_str(), longer.size()));
    EXPECT_STREQ(".", zvCanonicalizePath(out, 1, "   ", 3));
}

TEST(Canonicalize, NullInput)
{
    char out[300] = "unchanged";
    EXPECT_EQ(nullptr, zvCanonicalizePath(out, sizeof out, nullptr, 0));
    EXPECT_EQ(nullptr, zvCanonicalizePath(nullptr, 0, nullptr, 7));
    EXPECT_STREQ("unchanged", out);
}

TEST(Canonicalize, OutputMayBeTheInput)
{
    char path[300] = "  \\\\s\\a\\..\\b";
    EXPECT_EQ(path, zvCanonicalizePath(path, sizeof path, path, std::strlen(path)));
    EXPECT_STREQ("\\\\s\\b", path);
}

TEST(Canonicalize, FailureLeavesAnInputThatIsTheOutput)
{
    char path[4096] = "relative\\name";
    EXPECT_EQ(path, zvCanonicalizePath(path, 4, path, std::strlen(path)));
    EXPECT_STREQ("relative\\name", path);
    // Room for the current directory, not for the whole.
    EXPECT_EQ(path, zvCanonicalizePath(path, currentDirectory().size() + 4, path, std::strlen(path)));
    EXPECT_STREQ("relative\\name", path);
    EXPECT_FALSE(zorvel::platform::fullPath(path, path, currentDirectory().size() + 4));
    EXPECT_STREQ("relative\\name", path);
}

TEST(Canonicalize, ALongInputMayBeTheOutput)
{
    char path[4096] = "\\\\s\\a\\..\\b";
    EXPECT_EQ(path, zvCanonicalizePath(path, sizeof path, path, 4000));
    EXPECT_STREQ("\\\\s\\b", path);
    std::strcpy(path, "name");
    EXPECT_EQ(path, zvCanonicalizePath(path, sizeof path, path, 4000));
    EXPECT_EQ(currentDirectory() + "\\name", path);
}
