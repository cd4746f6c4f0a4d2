#include "tests/support/child.h"
#include "tests/support/code_page.h"

#include <gmock/gmock.h>

#include <cstdio>

namespace {

/// A run that executed nothing proves nothing: it is a failure, whatever the
/// filter was.
int runTests()
{
    const int status = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 0)
        return status;
    std::fprintf(stderr, "no test was executed\n");
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    int status = 0;
    if (!zorvel::test::native::enterWantedCodePage()) {
        std::fprintf(stderr, "the process does not run in the code page that ZORVEL_CODE_PAGE names\n");
        return 1;
    }
    if (zorvel::test::runChildMode(argc, argv, status))
        return status;
    testing::InitGoogleMock(&argc, argv);
    return runTests();
}
