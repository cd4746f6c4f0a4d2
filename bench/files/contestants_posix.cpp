#include "bench/files/peers_posix.h"

#include "bench/files/tree.h"

#include <benchmark/benchmark.h>
#include <boost/version.hpp>

#include <linux/magic.h>
#include <sys/utsname.h>
#include <sys/vfs.h>

#include <gnu/libc-version.h>

namespace zorvel {
namespace bench {

namespace {

std::string fileSystemOf(const std::string& path)
{
    struct statfs status;
    if (statfs(path.c_str(), &status) != 0)
        return "unknown";
    switch (status.f_type) {
    case EXT4_SUPER_MAGIC: return "ext4";
    case XFS_SUPER_MAGIC: return "xfs";
    case BTRFS_SUPER_MAGIC: return "btrfs";
    case TMPFS_MAGIC: return "tmpfs";
    case OVERLAYFS_SUPER_MAGIC: return "overlay";
    default: return "type " + std::to_string(status.f_type);
    }
}

std::string kernel()
{
    struct utsname name;
    return uname(&name) == 0 ? std::string(name.sysname) + ' ' + name.release : "unknown";
}

}  // namespace

std::vector<Contestant> contestants()
{
    std::vector<Contestant> all = {zorvelItself(), standardFilesystem(), boostFilesystem(), ftsItself(), globItself()};
    for (const std::vector<Contestant>& more : {tools(), floors()})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}

Amounts amounts(bool isQuick)
{
    return isQuick ? Amounts{"", 20000, 5000, 0, 3, 5, 20} : Amounts{"", 100000, 20000, 100000, 11, 15, 50};
}

void describeContestants()
{
    benchmark::AddCustomContext("files: file system", fileSystemOf(treeRoot()));
    benchmark::AddCustomContext("files: kernel", kernel());
    benchmark::AddCustomContext("files: fts, glob", std::string("glibc ") + gnu_get_libc_version());
    benchmark::AddCustomContext("files: std-filesystem", std::string("libstdc++, GCC ") + __VERSION__);
    benchmark::AddCustomContext("files: boost-filesystem", BOOST_LIB_VERSION);
    for (const char* const tool : {"find", "du", "rm", "mkdir"})
        benchmark::AddCustomContext(std::string("files: ") + tool, versionOf(tool));
}

}  // namespace bench
}  // namespace zorvel
