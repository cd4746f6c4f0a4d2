#pragma once

#include "tests/faults/mount/control.h"
#include "tests/support/process.h"
#include "tests/support/temporary_tree.h"

#include <memory>
#include <string>

namespace zorvel {
namespace test {
namespace fault_mount {

/// An empty folder that one of the mounts here shows, for as long as the
/// object lives. Lies where temporary trees do when it is made.
class MountedFolder
{
public:
    /// `program`: of the mount. Throws std::runtime_error when there is none.
    explicit MountedFolder(const std::string& program = ZORVEL_FAULT_MOUNT);
    ~MountedFolder();

    MountedFolder(const MountedFolder&) = delete;
    MountedFolder& operator=(const MountedFolder&) = delete;

    /// Where it is seen, in the library's form and in the system's.
    std::string path() const { return m_tree.path("point"); }
    std::string nativePath() const;

    /// What is in it, seen without the mount.
    std::vector<std::string> names() const { return m_tree.names("folder"); }

    /// Make or remove a file in it behind the mount's back, as another machine
    /// does in the same tick of the server's clock as the change before: the
    /// directory keeps its time. Throw std::runtime_error.
    void makeInTheSameTick(const std::string& name) const;
    void removeInTheSameTick(const std::string& name) const;

    Control& control() const { return *m_control; }

private:
    const TemporaryTree m_tree;
    Control* m_control;
    std::unique_ptr<Process> m_process;
};

}  // namespace fault_mount
}  // namespace test
}  // namespace zorvel
