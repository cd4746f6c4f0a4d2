#include "tests/faults/mount/posix/mounted_folder.h"

#include "tests/faults/mount/posix/control_page.h"

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

/// The time of a folder, which it can get back.
class SameTick
{
public:
    explicit SameTick(const std::string& folder) : m_folder(folder)
    {
        if (lstat(folder.c_str(), &m_before) != 0)
            throw std::runtime_error("no folder");
    }

    void restore() const
    {
        const timespec times[] = {m_before.st_atim, m_before.st_mtim};
        if (utimensat(AT_FDCWD, m_folder.c_str(), times, 0) != 0)
            throw std::runtime_error("the folder keeps no time");
    }

private:
    const std::string m_folder;
    struct stat m_before;
};

}  // namespace

MountedFolder::MountedFolder(const std::string& program)
{
    m_tree.directory("folder");
    m_tree.directory("point");
    m_tree.file("orders", std::string(sizeof(Control), '\0'));
    m_control = mapped(nativeForm(m_tree.path("orders")).c_str());
    if (!m_control)
        throw std::runtime_error("no page of orders");
    m_process.reset(
        new Process({program, nativeForm(m_tree.path("folder")), nativePath(), nativeForm(m_tree.path("orders"))}));
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

void MountedFolder::makeInTheSameTick(const std::string& name) const
{
    const SameTick tick(nativeForm(m_tree.path("folder")));
    m_tree.file("folder/" + name);
    tick.restore();
}

void MountedFolder::removeInTheSameTick(const std::string& name) const
{
    const SameTick tick(nativeForm(m_tree.path("folder")));
    if (::unlink(nativeForm(m_tree.path("folder/" + name)).c_str()) != 0)
        throw std::runtime_error("no such file");
    tick.restore();
}

}  // namespace fault_mount
}  // namespace test
}  // namespace zorvel
