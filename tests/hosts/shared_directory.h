#pragma once

#include "tests/multiprocess/release_set.h"

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A fresh directory on a share, which the clients lock. It is made, looked at
/// and removed on the server: what the clients see may be old.
class SharedDirectory
{
public:
    explicit SharedDirectory(const std::string& share);
    ~SharedDirectory();

    SharedDirectory(const SharedDirectory&) = delete;
    SharedDirectory& operator=(const SharedDirectory&) = delete;

    const std::string& share() const { return m_share; }

    /// As the clients name it.
    const std::string& path() const { return m_path; }

    /// The files of locks that lie there now, those with which clocks are
    /// compared included.
    std::vector<std::string> lockFiles() const;
    /// Only those that somebody can wait for.
    std::vector<std::string> locks() const;

    /// A release of generation 0, by nobody.
    void writeFirstRelease() const;
    Look release() const;

private:
    const std::string m_share;
    std::string m_path;
    std::string m_onServer;
};

/// The shares of the run, by name.
std::vector<std::string> shares();

}  // namespace test
}  // namespace zorvel
