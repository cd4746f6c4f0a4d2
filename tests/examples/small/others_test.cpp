#include "tests/examples/small/example.h"
#include "tests/support/system_facts.h"

#include "platform/path_rules.h"

#include <zorvel/paths.h>

#include <gtest/gtest.h>

#include <string>

using namespace zorvel::test;

namespace {

std::string full(const std::string& path)
{
    return (zorvel::platform::isAbsolutePath("C:\\") ? "C:" : "") + path;
}

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

TEST(FullPath, IsPrintedWithItsDirectory)
{
    const Outcome outcome = runExample("full_path", {full("\\dir\\x\\..\\name"), full("\\")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, full("\\dir\\name") + " is in " + full("\\dir") + '\n' + full("\\") + " is a root\n");
}

TEST(FullPath, OfARelativePathBeginsWithTheCurrentDirectory)
{
    const std::vector<std::string> lines = linesOf(runExample("full_path", {"one/two"}).output);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(zorvel::platform::isAbsolutePath(lines[0].c_str())) << lines[0];
    EXPECT_NE(lines[0].find("\\one\\two is in "), std::string::npos) << lines[0];
    EXPECT_EQ(runExample("full_path", {}).output, "");
}

TEST(Ticks, AreAsManyAsWanted)
{
    const Outcome outcome = runExample("ticks", {"3", "10"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "tick 1\ntick 2\ntick 3\n");
    EXPECT_EQ(runExample("ticks", {"0", "10"}).status, 2);
}

TEST(ExplainError, PrintsTheSystemsText)
{
    const std::string missing = std::to_string(codeOfMissingFile());
    const Outcome outcome = runExample("explain_error", {missing, "123456789"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
              missing + ": " + firstLine(systemTextOf(codeOfMissingFile())) + '\n' + "123456789: unknown\n");
}

TEST(SameName, ComparesByCharacter)
{
    EXPECT_EQ(runExample("same_name", {"Dir/Name", "dir\\nAME"}).output, "the same\n");
    EXPECT_EQ(runExample("same_name", {"dir", "dir\\"}).output, "not the same\n");
    EXPECT_EQ(runExample("same_name", {"Dir/Name", "dir\\nAME", "932"}).output, "the same\n");
    EXPECT_EQ(runExample("same_name", {"dir"}).status, 2);
}

TEST(SameName, TakesDoubleByteCharactersWhole)
{
    // Two characters of code page 932; to others the second bytes are two cases of one letter.
    const Arguments names{"\x83\x41", "\x83\x61"};
    const std::string expected = zvIsMultiByteLead(0x83) ? "not the same\n" : "the same\n";
    EXPECT_EQ(runExample("same_name", names).output, expected);
    EXPECT_EQ(runExample("same_name", {names[0], names[1], "932"}).output, "not the same\n");
}
