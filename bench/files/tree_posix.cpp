#include "bench/files/tree.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorvel {
namespace bench {

namespace {

void require(bool isDone, const std::string& path)
{
    if (!isDone)
        throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace

void makeFile(const std::string& path, std::uint64_t size)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    require(descriptor != -1 && ftruncate(descriptor, static_cast<off_t>(size)) == 0, path);
    close(descriptor);
}

void makeFolder(const std::string& path)
{
    require(mkdir(path.c_str(), 0777) == 0, path);
}

}  // namespace bench
}  // namespace zorvel
