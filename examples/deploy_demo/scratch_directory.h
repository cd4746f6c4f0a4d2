#pragma once

#include <filesystem>

namespace zorvel {
namespace demo {

/// A new directory below another, removed with all that is in it. Throws
/// std::filesystem::filesystem_error.
class ScratchDirectory
{
public:
    explicit ScratchDirectory(const std::filesystem::path& parent);
    ~ScratchDirectory();

    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace demo
}  // namespace zorvel
