#pragma once

#include <string>
#include <vector>

/// The operations below a temporary tree, straight on the system. Paths are
/// absolute and in the library's form; byte strings are in the process's code
/// page. What fails throws std::runtime_error.
namespace zorvel {
namespace test {
namespace native {

/// A new empty directory that every user may use, below the system's
/// directory for temporary files.
std::string makeUniqueDirectory();

void makeDirectory(const std::string& path);
void makeFile(const std::string& path, const std::string& content);
/// Returns when the link is there; `target` need not exist.
void makeLink(const std::string& target, const std::string& path);
void removeTree(const std::string& path);

/// Also true for a link to nothing.
bool exists(const std::string& path);
std::string content(const std::string& path);
/// Unsorted, without "." and "..".
std::vector<std::string> names(const std::string& path);

void moveModificationTime(const std::string& path, long seconds);
/// Seconds since 1970-01-01 UTC.
long long modificationTime(const std::string& path);
void makeReadOnly(const std::string& path);
bool isReadOnly(const std::string& path);

}  // namespace native
}  // namespace test
}  // namespace zorvel
