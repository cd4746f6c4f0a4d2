// A mount whose listings the kernel remembers, as clients of network file systems do: what it has once read of a
// directory it goes on showing until the directory's time has changed.
//
//   remembering_mount FOLDER MOUNT_POINT CONTROL_FILE
//
// Shows the names in FOLDER, which are not to be read nor changed here, and says "mounted". Of the Control (control.h)
// only isOver means anything. (The library's other interface, which is that of fault_mount, has no word for this.)

#define FUSE_USE_VERSION 31
#include <fuse3/fuse_lowlevel.h>

#include "tests/faults/mount/posix/control_page.h"

#include <dirent.h>
#include <errno.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

using zorvel::test::fault_mount::Control;
using zorvel::test::fault_mount::mapped;

std::string folder;
Control* control = nullptr;
fuse_session* session = nullptr;

/// 0 seconds: names and attributes are asked for each time, only listings are remembered.
const double notRemembered = 0;

void find(fuse_req_t request, fuse_ino_t, const char* name)
{
    fuse_entry_param entry = {};
    if (control->isOver)
        fuse_session_exit(session);
    if (lstat((folder + '/' + name).c_str(), &entry.attr) != 0) {
        fuse_reply_err(request, errno);
        return;
    }
    entry.ino = entry.attr.st_ino;
    entry.attr_timeout = entry.entry_timeout = notRemembered;
    fuse_reply_entry(request, &entry);
}

/// Only the directory is ever asked for.
void getAttributes(fuse_req_t request, fuse_ino_t number, fuse_file_info*)
{
    struct stat status;
    if (number != FUSE_ROOT_ID || lstat(folder.c_str(), &status) != 0)
        fuse_reply_err(request, ENOENT);
    else
        fuse_reply_attr(request, &status, notRemembered);
}

void openDirectory(fuse_req_t request, fuse_ino_t, fuse_file_info* file)
{
    file->cache_readdir = 1;
    file->keep_cache = 1;
    fuse_reply_open(request, file);
}

std::vector<std::string> names()
{
    std::vector<std::string> all;
    DIR* const stream = ::opendir(folder.c_str());
    while (const dirent* const entry = stream ? ::readdir(stream) : nullptr)
        all.push_back(entry->d_name);
    if (stream)
        closedir(stream);
    return all;
}

/// `offset`: how many names the kernel has.
void readDirectory(fuse_req_t request, fuse_ino_t, std::size_t size, off_t offset, fuse_file_info*)
{
    const std::vector<std::string> all = names();
    std::vector<char> list(size);
    std::size_t used = 0;
    for (std::size_t i = static_cast<std::size_t>(offset); i < all.size(); ++i) {
        struct stat status = {};
        status.st_ino = i + 2;
        status.st_mode = S_IFREG;
        const std::size_t length = fuse_add_direntry(request, list.data() + used, size - used, all[i].c_str(), &status,
                                                     static_cast<off_t>(i + 1));
        if (length > size - used)
            break;
        used += length;
    }
    fuse_reply_buf(request, list.data(), used);
}

int serve(const char* point)
{
    char name[] = "remembering_mount";
    char* arguments[] = {name, nullptr};
    fuse_args args = FUSE_ARGS_INIT(1, arguments);
    fuse_lowlevel_ops operations = {};
    operations.lookup = &find;
    operations.getattr = &getAttributes;
    operations.opendir = &openDirectory;
    operations.readdir = &readDirectory;
    session = fuse_session_new(&args, &operations, sizeof operations, nullptr);
    if (!session || fuse_set_signal_handlers(session) != 0 || fuse_session_mount(session, point) != 0)
        return 1;
    std::puts("mounted");
    std::fflush(stdout);
    fuse_session_loop(session);
    fuse_session_unmount(session);
    fuse_remove_signal_handlers(session);
    fuse_session_destroy(session);
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: remembering_mount FOLDER MOUNT_POINT CONTROL_FILE\n");
        return 2;
    }
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    folder = argv[1];
    control = mapped(argv[3]);
    return control ? serve(argv[2]) : 1;
}
