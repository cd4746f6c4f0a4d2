// A pass-through mount that fails on order.
//
//   fault_mount FOLDER MOUNT_POINT CONTROL_FILE
//   fault_mount --try
//
// The first shows what is in FOLDER at MOUNT_POINT and prints "mounted"; CONTROL_FILE holds a Control (control.h). It
// ends, and the mount with it, when it is told to, on SIGTERM, or with the process that started it. The second only
// says why this machine cannot carry such a mount (exit status 1), if it cannot.
//
// Nothing is cached: every operation that the kernel needs comes here, one after another, so that runs can be repeated.

#define FUSE_USE_VERSION 31
#include <fuse3/fuse.h>

#include "tests/faults/mount/posix/control_page.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

using namespace zorvel::test;
using fault_mount::Control;
using fault_mount::mapped;
using fault_mount::Operation;

std::string folder;
Control* control = nullptr;

/// The library asks for the attributes of what was just made or changed. That
/// is a part of the change, not an operation of the kernel.
bool isAskedByTheLibrary = false;

std::string below(const char* path)
{
    return folder + path;
}

bool isDue(Operation operation)
{
    const std::uint32_t call = ++control->counts[operation];
    if (control->operation != operation || control->hits >= control->limit)
        return false;
    return control->isForEver ? call >= control->call : call == control->call;
}

/// An operation gives what `act` gives (negative: a code), or fails as ordered.
template <class Act>
int passed(Operation operation, Act act)
{
    if (control->isOver)
        fuse_exit(fuse_get_context()->fuse);
    if (!control->isArmed || !isDue(operation))
        return act();
    ++control->hits;
    if (control->delay)
        usleep(control->delay);
    const int code = -static_cast<int>(control->code.load());
    if (code == 0)
        return act();
    if (!control->isDone)
        return code;
    const int result = act();
    return result < 0 ? result : code;
}

template <class Act>
int passedAndAsked(Operation operation, Act act)
{
    const int code = passed(operation, act);
    isAskedByTheLibrary = code == 0;
    return code;
}

int result(int value)
{
    return value == -1 ? -errno : value;
}

int descriptorOf(const fuse_file_info* file)
{
    return static_cast<int>(file->fh);
}

int attributes(const char* path, struct stat* status, const fuse_file_info* file)
{
    return result(file ? fstat(descriptorOf(file), status) : lstat(below(path).c_str(), status));
}

int getAttributes(const char* path, struct stat* status, fuse_file_info* file)
{
    if (isAskedByTheLibrary) {
        isAskedByTheLibrary = false;
        return attributes(path, status, file);
    }
    return passed(fault_mount::getattr, [&] { return attributes(path, status, file); });
}

int readLink(const char* path, char* target, std::size_t size)
{
    return passed(fault_mount::readlink, [&] {
        const ssize_t length = ::readlink(below(path).c_str(), target, size - 1);
        if (length == -1)
            return -errno;
        target[length] = '\0';
        return 0;
    });
}

int makeDirectory(const char* path, mode_t mode)
{
    return passedAndAsked(fault_mount::mkdir, [&] { return result(::mkdir(below(path).c_str(), mode)); });
}

int removeFile(const char* path)
{
    return passed(fault_mount::unlink, [&] { return result(::unlink(below(path).c_str())); });
}

int removeDirectory(const char* path)
{
    return passed(fault_mount::rmdir, [&] { return result(::rmdir(below(path).c_str())); });
}

int makeLink(const char* target, const char* path)
{
    return passedAndAsked(fault_mount::symlink, [&] { return result(::symlink(target, below(path).c_str())); });
}

int renameEntry(const char* from, const char* to, unsigned flags)
{
    if (flags != 0)
        return -EINVAL;
    return passed(fault_mount::rename, [&] { return result(::rename(below(from).c_str(), below(to).c_str())); });
}

int changeMode(const char* path, mode_t mode, fuse_file_info*)
{
    return passedAndAsked(fault_mount::chmod, [&] { return result(::chmod(below(path).c_str(), mode)); });
}

int changeOwner(const char* path, uid_t user, gid_t group, fuse_file_info*)
{
    isAskedByTheLibrary = true;
    return result(lchown(below(path).c_str(), user, group));
}

int cut(const char* path, off_t size, fuse_file_info*)
{
    return passedAndAsked(fault_mount::truncate, [&] { return result(::truncate(below(path).c_str(), size)); });
}

int setTimes(const char* path, const timespec times[2], fuse_file_info*)
{
    return passedAndAsked(fault_mount::utimens,
                          [&] { return result(utimensat(AT_FDCWD, below(path).c_str(), times, AT_SYMLINK_NOFOLLOW)); });
}

/// An open that failed after it was done leaves nothing open.
int openedAs(Operation operation, const char* path, int flags, mode_t mode, fuse_file_info* file)
{
    int descriptor = -1;
    const int code = passed(operation, [&] {
        descriptor = ::open(below(path).c_str(), flags | O_CLOEXEC, mode);
        return descriptor == -1 ? -errno : 0;
    });
    if (code != 0 && descriptor != -1)
        close(descriptor);
    file->fh = static_cast<std::uint64_t>(descriptor);
    file->direct_io = 1;
    return code;
}

int openFile(const char* path, fuse_file_info* file)
{
    return openedAs(fault_mount::open, path, file->flags, 0, file);
}

int createFile(const char* path, mode_t mode, fuse_file_info* file)
{
    const int code = openedAs(fault_mount::create, path, file->flags | O_CREAT, mode, file);
    isAskedByTheLibrary = code == 0;
    return code;
}

int readFile(const char*, char* data, std::size_t size, off_t offset, fuse_file_info* file)
{
    return passed(fault_mount::read,
                  [&] { return result(static_cast<int>(pread(descriptorOf(file), data, size, offset))); });
}

int writeFile(const char*, const char* data, std::size_t size, off_t offset, fuse_file_info* file)
{
    return passed(fault_mount::write,
                  [&] { return result(static_cast<int>(pwrite(descriptorOf(file), data, size, offset))); });
}

int flushFile(const char*, fuse_file_info*)
{
    return passed(fault_mount::flush, [] { return 0; });
}

/// Comes when the kernel likes, and nobody hears what it gives.
int releaseFile(const char*, fuse_file_info* file)
{
    return result(close(descriptorOf(file)));
}

int syncFile(const char*, int, fuse_file_info* file)
{
    return passed(fault_mount::fsync, [&] { return result(::fsync(descriptorOf(file))); });
}

DIR* directoryOf(const fuse_file_info* file)
{
    return reinterpret_cast<DIR*>(file->fh);
}

int openDirectory(const char* path, fuse_file_info* file)
{
    DIR* stream = nullptr;
    const int code = passed(fault_mount::opendir, [&] {
        stream = ::opendir(below(path).c_str());
        return stream ? 0 : -errno;
    });
    if (code != 0 && stream)
        closedir(stream);
    file->fh = reinterpret_cast<std::uint64_t>(stream);
    return code;
}

int listAll(DIR* stream, void* list, fuse_fill_dir_t add)
{
    rewinddir(stream);
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(stream);
        if (!entry)
            return -errno;
        struct stat status = {};
        status.st_ino = entry->d_ino;
        status.st_mode = static_cast<mode_t>(DTTOIF(entry->d_type));
        if (add(list, entry->d_name, &status, 0, static_cast<fuse_fill_dir_flags>(0)) != 0)
            return -ENOMEM;
    }
}

int readDirectory(const char*, void* list, fuse_fill_dir_t add, off_t, fuse_file_info* file, fuse_readdir_flags)
{
    return passed(fault_mount::readdir, [&] { return listAll(directoryOf(file), list, add); });
}

int releaseDirectory(const char*, fuse_file_info* file)
{
    return result(closedir(directoryOf(file)));
}

int describe(const char* path, struct statvfs* status)
{
    return passed(fault_mount::statfs, [&] { return result(statvfs(below(path).c_str(), status)); });
}

void* begin(fuse_conn_info* connection, fuse_config* configuration)
{
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_READDIRPLUS);
    configuration->entry_timeout = 0;
    configuration->attr_timeout = 0;
    configuration->negative_timeout = 0;
    configuration->use_ino = 1;
    configuration->hard_remove = 1;
    return nullptr;
}

fuse_operations operations()
{
    fuse_operations all = {};
    all.init = &begin;
    all.getattr = &getAttributes;
    all.readlink = &readLink;
    all.mkdir = &makeDirectory;
    all.unlink = &removeFile;
    all.rmdir = &removeDirectory;
    all.symlink = &makeLink;
    all.rename = &renameEntry;
    all.chmod = &changeMode;
    all.chown = &changeOwner;
    all.truncate = &cut;
    all.utimens = &setTimes;
    all.open = &openFile;
    all.create = &createFile;
    all.read = &readFile;
    all.write = &writeFile;
    all.flush = &flushFile;
    all.release = &releaseFile;
    all.fsync = &syncFile;
    all.opendir = &openDirectory;
    all.readdir = &readDirectory;
    all.releasedir = &releaseDirectory;
    all.statfs = &describe;
    return all;
}

/// A mount for as long as the object lives.
class Mount
{
public:
    explicit Mount(const char* point) : m_fuse(nullptr), m_isMounted(false)
    {
        char name[] = "fault_mount";
        char* arguments[] = {name, nullptr};
        fuse_args args = FUSE_ARGS_INIT(1, arguments);
        const fuse_operations all = operations();
        m_fuse = fuse_new(&args, &all, sizeof all, nullptr);
        m_isMounted = m_fuse && fuse_mount(m_fuse, point) == 0;
    }

    ~Mount()
    {
        if (m_isMounted)
            fuse_unmount(m_fuse);
        if (m_fuse)
            fuse_destroy(m_fuse);
    }

    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;

    bool isMounted() const { return m_isMounted; }

    int serve()
    {
        if (fuse_set_signal_handlers(fuse_get_session(m_fuse)) != 0)
            return 1;
        std::puts("mounted");
        std::fflush(stdout);
        fuse_loop(m_fuse);
        fuse_remove_signal_handlers(fuse_get_session(m_fuse));
        return 0;
    }

private:
    fuse* m_fuse;
    bool m_isMounted;
};

int tryToMount()
{
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (device == -1) {
        std::printf("/dev/fuse cannot be opened: %s\n", std::strerror(errno));
        return 1;
    }
    close(device);
    char point[] = "/tmp/fault-mount-XXXXXX";
    if (!mkdtemp(point))
        return 1;
    // What the library says of a failure comes before this line.
    const bool isPossible = Mount(point).isMounted();
    ::rmdir(point);
    if (!isPossible)
        std::puts("no file system of a program can be mounted here");
    return isPossible ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--try") == 0)
        return tryToMount();
    if (argc != 4) {
        std::fprintf(stderr, "usage: fault_mount FOLDER MOUNT_POINT CONTROL_FILE | --try\n");
        return 2;
    }
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    umask(0);
    folder = argv[1];
    control = mapped(argv[3]);
    if (!control) {
        std::perror(argv[3]);
        return 1;
    }
    Mount mount(argv[2]);
    return mount.isMounted() ? mount.serve() : 1;
}
