#include "tests/support/child.h"
#include "tests/support/temporary_tree.h"
#include "tests/support/temporary_tree_system.h"

#include <gtest/gtest.h>

#include <exception>

namespace {

using namespace zorvel::test;

int overwrite(const std::vector<std::string>& arguments)
{
    try {
        native::makeFile(arguments.at(0), "overwritten");
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}
const ChildMode overwriteMode("overwrite", &overwrite);

ProcessOptions unprivileged()
{
    ProcessOptions options;
    options.unprivileged = true;
    return options;
}

TEST(UnprivilegedChild, MayNotWriteAReadOnlyFile)
{
    const TemporaryTree tree;
    tree.file("f", "kept");
    tree.makeReadOnly("f");
    EXPECT_EQ(1, runChild("overwrite", {tree.path("f")}, unprivileged()).status);
    EXPECT_EQ("kept", tree.content("f"));
}

TEST(UnprivilegedChild, MayUseTheTreeItself)
{
    const TemporaryTree tree;
    EXPECT_EQ(0, runChild("overwrite", {tree.path("f")}, unprivileged()).status);
    EXPECT_EQ("overwritten", tree.content("f"));
}

}  // namespace
