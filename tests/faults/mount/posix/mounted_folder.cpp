#include "tests/faults/mount/posix/mounted_folder.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace zorvel {
namespace test {
namespace fault_mount {

namespace {

std::string nativeForm(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

Control* mapped(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor == -1)
        throw std::runtime_error("no file of orders");
    void* const page = mmap(nullptr, sizeof(Control), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    close(descriptor);
    if (page == MAP_FAILED)
        throw std::runtime_error("no page of orders");
    return static_cast<Control*>(page);
}

}  // namespace

MountedFolder::MountedFolder()
{
    m_tree.directory("folder");
    m_tree.directory("point");
    m_tree.file("orders", std::string(sizeof(Control), '\0'));
    m_control = mapped(nativeForm(m_tree.path("orders")));
    m_process.reset(new Process(
        {ZORVEL_FAULT_MOUNT, nativeForm(m_tree.path("folder")), nativePath(), nativeForm(m_tree.path("orders"))}));
    std::string line;
    if (!m_process->readLine(line) || line != "mounted")
        throw std::runtime_error("no mount");
}

/// The mount ends with an operation after it was told to.
MountedFolder::~MountedFolder()
{
    m_control->isOver = 1;
    struct stat status;
    const int ignored = lstat((nativePath() + "/none").c_str(), &status);
    static_cast<void>(ignored);
    m_process->finish();
    munmap(m_control, sizeof(Control));
}

std::string MountedFolder::nativePath() const
{
    return nativeForm(path());
}

}  // namespace fault_mount
}  // namespace test
}  // namespace zorvel
