#include "tests/support/posix/own_shared_memory.h"

#include "tests/support/native_process.h"

#include <sched.h>
#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

namespace {

const char sharedMemory[] = "/dev/shm";

void check(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

std::vector<std::string> mountPoints()
{
    std::vector<std::string> points;
    std::ifstream mounts("/proc/self/mountinfo");
    for (std::string line; std::getline(mounts, line);) {
        std::istringstream fields(line);
        std::string unused;
        std::string point;
        fields >> unused >> unused >> unused >> unused >> point;
        points.push_back(point);
    }
    return points;
}

/// One by one: in a changed root "/" is no mount point. One with a blank in its
/// name is not found, and none of those matters here.
void makeMountsPrivate()
{
    for (const std::string& point : mountPoints())
        if (mount("none", point.c_str(), nullptr, MS_PRIVATE, nullptr) != 0)
            check(errno == ENOENT || errno == EINVAL || errno == EACCES, point.c_str());
}

/// What is mounted from now on is not seen outside.
void leaveMountNamespace()
{
    static bool left = false;
    if (left)
        return;
    native::programPath();  // while it can be told
    check(unshare(CLONE_NEWNS) == 0, "a mount namespace of its own");
    makeMountsPrivate();
    left = true;
}

void mountMemory(const char* where, unsigned long flags, const std::string& options)
{
    check(mount("zorvel-test", where, "tmpfs", flags, options.c_str()) == 0, where);
}

}  // namespace

OwnSharedMemory::OwnSharedMemory()
{
    leaveMountNamespace();
    mountMemory(sharedMemory, MS_NOSUID | MS_NODEV, "mode=1777,size=4m");
}

OwnSharedMemory::~OwnSharedMemory()
{
    umount2(sharedMemory, MNT_DETACH);
}

void OwnSharedMemory::limitFiles(unsigned count)
{
    mountMemory(sharedMemory, MS_REMOUNT, "size=4m,nr_inodes=" + std::to_string(count + 1));
}

void OwnSharedMemory::limitBytes(unsigned long count)
{
    mountMemory(sharedMemory, MS_REMOUNT, "size=" + std::to_string(count));
}

/// By a second mount of the same files above the first: a mount in which files
/// are open for writing cannot become read-only.
void OwnSharedMemory::makeReadOnly()
{
    check(mount(sharedMemory, sharedMemory, nullptr, MS_BIND, nullptr) == 0, sharedMemory);
    check(mount("none", sharedMemory, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0, sharedMemory);
}

void OwnSharedMemory::makeWritable()
{
    check(umount2(sharedMemory, MNT_DETACH) == 0, sharedMemory);
}

OwnSharedMemory::Missing::Missing()
{
    mountMemory("/dev", 0, "mode=755");
}

OwnSharedMemory::Missing::~Missing()
{
    umount2("/dev", MNT_DETACH);
}

}  // namespace test
}  // namespace zorvel
