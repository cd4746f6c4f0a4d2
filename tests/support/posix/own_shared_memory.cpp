#include "tests/support/posix/own_shared_memory.h"

#include <sched.h>
#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace zorvel {
namespace test {

namespace {

const char sharedMemory[] = "/dev/shm";

void check(bool done, const char* what)
{
    if (!done)
        throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
}

/// What is mounted from now on is not seen outside.
void leaveMountNamespace()
{
    static bool left = false;
    if (left)
        return;
    check(unshare(CLONE_NEWNS) == 0, "a mount namespace of its own");
    check(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "private mounts");
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
