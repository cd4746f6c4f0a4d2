#include "bench/files/peers_posix.h"

#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorvel {
namespace bench {

namespace {

/// What is done with each entry of a folder that is no folder itself.
typedef std::uint64_t (*OnFile)(int folder, const char* name);

std::uint64_t doNothing(int, const char*)
{
    return 1;
}

std::uint64_t askForSize(int folder, const char* name)
{
    struct stat status;
    return fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::uint64_t unlinkIt(int folder, const char* name)
{
    return unlinkat(folder, name, 0) == 0 ? 1 : 0;
}

/// Reads an open folder to its end, and gives the names of the folders in it.
std::vector<std::string> readFolder(int folder, OnFile onFile, std::uint64_t& sum)
{
    alignas(8) static char buffer[32 * 1024];
    std::vector<std::string> folders;
    while (const ssize_t size = getdents64(folder, buffer, sizeof buffer)) {
        for (ssize_t at = 0; at < size;) {
            const dirent64* const entry = reinterpret_cast<const dirent64*>(buffer + at);
            at += entry->d_reclen;
            if (entry->d_type != DT_DIR)
                sum += onFile(folder, entry->d_name);
            else if (entry->d_name[0] != '.')
                folders.push_back(entry->d_name);
        }
        if (size < 0)
            break;
    }
    return folders;
}

/// Each folder counts as `perFolder`.
std::uint64_t through(int parent, const char* name, OnFile onFile, std::uint64_t perFolder, bool isRemoval)
{
    std::uint64_t sum = 0;
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder == -1)
        return 0;
    for (const std::string& inner : readFolder(folder, onFile, sum))
        sum += perFolder + through(folder, inner.c_str(), onFile, perFolder, isRemoval);
    close(folder);
    if (isRemoval)
        unlinkat(parent, name, AT_REMOVEDIR);
    return sum;
}

std::uint64_t readAll(const std::string& path)
{
    return through(AT_FDCWD, path.c_str(), &doNothing, 2, false);
}

std::uint64_t askAll(const std::string& path)
{
    return through(AT_FDCWD, path.c_str(), &askForSize, 0, false);
}

std::uint64_t removeAll(const std::string& path)
{
    return through(AT_FDCWD, path.c_str(), &unlinkIt, 0, true);
}

/// Of the work of a pattern only the reading; nothing is found.
std::uint64_t readEach(const std::string&)
{
    std::uint64_t sum = 0;
    for (const std::string& path : patternFolders()) {
        const int folder = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        readFolder(folder, &doNothing, sum);
        close(folder);
    }
    return sum != 0 ? succeeded : 0;
}

/// From the first component that is missing on; the path is known to have no
/// doubled separators.
std::uint64_t makeEach(const std::string& path)
{
    bool isMade = true;
    const std::string::size_type first = path.find("/level-1/");
    for (std::string::size_type end = first; isMade && end != path.npos;) {
        end = path.find('/', end + 1);
        isMade = mkdir(path.substr(0, end).c_str(), 0777) == 0;
    }
    return isMade;
}

std::uint64_t askOnce(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

}  // namespace

std::vector<Contestant> floors()
{
    return {{"getdents-floor", &readAll, nullptr, &readEach, nullptr, nullptr, nullptr},
            {"fstatat-floor", nullptr, &askAll, nullptr, nullptr, nullptr, nullptr},
            {"unlinkat-floor", nullptr, nullptr, nullptr, &removeAll, nullptr, nullptr},
            {"mkdir-floor", nullptr, nullptr, nullptr, nullptr, &makeEach, nullptr},
            {"stat-floor", nullptr, nullptr, nullptr, nullptr, nullptr, &askOnce}};
}

}  // namespace bench
}  // namespace zorvel
