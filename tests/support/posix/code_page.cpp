#include "tests/support/code_page.h"

#include <langinfo.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace zorvel {
namespace test {
namespace native {

bool enterWantedCodePage()
{
    const char* const wanted = std::getenv("ZORVEL_CODE_PAGE");
    if (!wanted)
        return true;
    return std::setlocale(LC_ALL, "") && std::strcmp(nl_langinfo(CODESET), wanted) == 0;
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
