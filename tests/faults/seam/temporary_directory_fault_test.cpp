#include "tests/support/child.h"
#include "tests/support/seam_faults.h"
#include "tests/support/temporary_tree.h"

#include <zorvel/fsutil.h>

#include <gtest/gtest.h>

#include <iostream>

// The choice of the directory for temporary files when the current directory
// cannot be told. It is made once in a process, so each case has a child of its
// own.

namespace {

using namespace zorvel::test;

/// Prints what is chosen while the system fails, what it is afterwards, and
/// whether the system was asked at all; argument: "once" or "ever".
int choose(const std::vector<std::string>& arguments)
{
    const bool isForEver = arguments.at(0) == "ever";
    const seam_faults::Fault fault = {seam_faults::fullPath, 1, isForEver,
                                      seam_faults::answersOf(seam_faults::fullPath).at(0)};
    seam_faults::begin(&fault);
    const std::string during = zvGetTempDir();
    const seam_faults::Record record = seam_faults::end();
    std::cout << during << '\n' << zvGetTempDir() << '\n' << (record.failures != 0 ? "asked" : "not asked") << '\n';
    return 0;
}

const ChildMode mode("choose-under-faults", &choose);

typedef std::vector<std::pair<std::string, std::string>> Variables;

std::string chosen(const std::string& persistence, const Variables& variables)
{
    ProcessOptions options;
    options.unset = {"TEMP", "TMP"};
    options.set = variables;
    const ChildResult child = runChild("choose-under-faults", {persistence}, options);
    EXPECT_EQ(0, child.status) << child.errors;
    return child.output;
}

class TemporaryDirectoryFaults : public testing::TestWithParam<const char*>
{
};

TEST_P(TemporaryDirectoryFaults, WithoutACurrentDirectoryItIsTmpForGood)
{
    const std::string tooLong(2561, 'x');
    for (const Variables& variables : {Variables(), Variables{{"TEMP", tooLong}}, Variables{{"TMP", tooLong}}})
        EXPECT_EQ("\\tmp\\\n\\tmp\\\nasked\n", chosen(GetParam(), variables));
}

TEST_P(TemporaryDirectoryFaults, AVariableNeedsNoCurrentDirectory)
{
    EXPECT_EQ("C:\\a\\\nC:\\a\\\nnot asked\n", chosen(GetParam(), {{"TEMP", "C:\\a"}, {"TMP", "D:\\b"}}));
    EXPECT_EQ("D:\\b\\\nD:\\b\\\nnot asked\n", chosen(GetParam(), {{"TMP", "D:\\b"}}));
}

INSTANTIATE_TEST_SUITE_P(Persistence, TemporaryDirectoryFaults, testing::Values("once", "ever"));

}  // namespace
