#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zorvel {
namespace demo {

/// Who is inside, by marks that have nothing to do with the lock and show
/// whether it did its part:
///
///   marks/readers/NAME/
///   marks/writers/NAME/
///
/// Whoever enters leaves his mark first and looks for others then, so of two
/// that may not be inside together at least one meets the other's mark. The
/// mark of a dead process stays: only who watches all processes knows.
class Marks
{
public:
    explicit Marks(const std::filesystem::path& root);

    void create();

    /// Both return the names of those who may not be inside as well. A writer
    /// takes the marks that it finds away.
    std::vector<std::string> enterAsReader(const std::string& name);
    std::vector<std::string> enterAsWriter(const std::string& name);

    void leaveAsReader(const std::string& name);
    void leaveAsWriter(const std::string& name);

private:
    const std::filesystem::path m_readers;
    const std::filesystem::path m_writers;
};

}  // namespace demo
}  // namespace zorvel
