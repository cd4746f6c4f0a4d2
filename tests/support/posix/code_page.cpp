#include "tests/support/code_page.h"

namespace zorvel {
namespace test {
namespace native {

bool hasWantedCodePage()
{
    return true;
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
