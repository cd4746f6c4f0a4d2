#include <zorvel/dirlock.h>
#include <zorvel/errors.h>

#include "tests/support/child.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <iostream>

// A directory in which the caller may not write.

namespace {

using namespace zorvel::test;

int acquireRefused(const std::vector<std::string>& arguments)
{
    zvDirectoryExclusiveLock lock(arguments.at(0), "test", zvGetDefaultFSImp());
    for (int i = 0; i < 2; ++i) {
        try {
            std::cout << lock.tryAcquire(false) << std::endl;
        } catch (const zvPermissionDenied& error) {
            std::cout << "denied " << error.what() << std::endl;
        } catch (const zvFileBasedLockError& error) {
            std::cout << "other " << error.what() << std::endl;
        }
    }
    std::cout << lock.isAcquired() << lock.release() << std::endl;
    return 0;
}
const ChildMode refusedMode("acquire-refused", &acquireRefused);

TEST(RefusedDirectory, IsThrownAsADeniedPermission)
{
    TemporaryTree tree;
    tree.directory("refused");
    tree.makeReadOnly("refused");
    ProcessOptions options;
    options.unprivileged = true;
    // The locales of the build folder may be out of such a user's reach.
    options.unset = {"ZORVEL_CODE_PAGE", "LC_ALL", "LOCPATH"};
    const std::string line =
        "denied Tried to obtain a lock on a directory without write permission: " + tree.path("refused") +
        "/.deploy_lock.0\n";
    EXPECT_EQ(line + line + "00\n", runChild("acquire-refused", {tree.path("refused")}, options).output);
    EXPECT_TRUE(tree.names("refused").empty());
}

}  // namespace
