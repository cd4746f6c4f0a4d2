#pragma once

#include <filesystem>
#include <string>

/// The current directory of the process, for a scope.
class WorkingDirectory
{
public:
    explicit WorkingDirectory(const std::string& path) : m_previous(std::filesystem::current_path())
    {
        std::filesystem::current_path(path);
    }
    ~WorkingDirectory() { std::filesystem::current_path(m_previous); }

    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    std::filesystem::path m_previous;
};
