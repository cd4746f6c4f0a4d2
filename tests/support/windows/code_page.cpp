#include "tests/support/code_page.h"

#include <windows.h>

#include <cstdlib>

namespace zorvel {
namespace test {
namespace native {

bool enterWantedCodePage()
{
    const char* const wanted = std::getenv("ZORVEL_CODE_PAGE");
    return !wanted || std::strtoul(wanted, nullptr, 10) == GetACP();
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
