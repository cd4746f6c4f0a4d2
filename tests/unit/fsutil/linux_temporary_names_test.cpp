#include "tests/support/child.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

using namespace zorvel::test;

TEST(TemporaryNames, ALinkToNothingExists)
{
    TemporaryTree tree;
    tree.link("nowhere", "tp000008");
    ProcessOptions options;
    options.set = {{"TEMP", tree.root()}};
    EXPECT_EQ("tp000009\n", runChild("draw-with-seeds", {"7"}, options).output);
    EXPECT_FALSE(tree.exists("nowhere"));
}
