#include "tests/support/semaphore_facts.h"

#include <cerrno>

namespace zorvel {
namespace test {

/// The system has no such names; the limit is that of the other system.
unsigned long whyRefusesName(const std::string& name)
{
    if (name.find('\0') != std::string::npos)
        return EINVAL;
    return name.size() > 32767 ? ENAMETOOLONG : 0;
}

unsigned long codeOfFreeSemaphore()
{
    return EOVERFLOW;
}

unsigned long codeOfClosedHandle()
{
    return EBADF;
}

}  // namespace test
}  // namespace zorvel
