#include "tests/support/system_facts.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace zorvel {
namespace test {

unsigned long codeOfMissingFile()
{
    return ENOENT;
}

unsigned long codeOfDeniedAccess()
{
    return EACCES;
}

std::string systemTextOf(unsigned long code)
{
    return std::strerror(static_cast<int>(code));
}

bool systemTextsEndWithALine()
{
    return false;
}

void failToOpenAFile()
{
    open("/no such directory/no such file", O_RDONLY);
}

void clearLastError()
{
    errno = 0;
}

void setLastError(unsigned long code)
{
    errno = static_cast<int>(code);
}

bool linksAreRemovable()
{
    return true;
}

bool readOnlyFilesStay()
{
    return false;
}

bool searchesForNothingBegin()
{
    return true;
}

const char* systemLibrary()
{
    return "libc.so";
}

const char* systemSymbol()
{
    return "getpid";
}

void setEnvironment(const std::string& name, const std::string& value)
{
    setenv(name.c_str(), value.c_str(), 1);
}

}  // namespace test
}  // namespace zorvel
