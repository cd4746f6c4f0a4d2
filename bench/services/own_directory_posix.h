#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace zorvel {
namespace bench {

/// An empty directory below the directory for temporary files, removed with all that is in it.
class OwnDirectory
{
public:
    OwnDirectory() : m_path((std::filesystem::temp_directory_path() / "zorvel-bench-XXXXXX").string())
    {
        if (!::mkdtemp(&m_path[0]))
            std::abort();
    }

    ~OwnDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    OwnDirectory(const OwnDirectory&) = delete;
    OwnDirectory& operator=(const OwnDirectory&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

}  // namespace bench
}  // namespace zorvel
