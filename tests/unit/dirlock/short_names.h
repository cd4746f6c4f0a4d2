#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace zorvel {
namespace test {

/// The files of the locks of one directory under names that are the same in
/// every run: "#1" is a level of the exclusive lock, "CAL" the file that
/// compares the clocks, "W" the file of a writer, "R*" all readers' files,
/// "R3" the file of reader 3 among the others, "own1" the first file of a
/// reader of this process that was named. Other paths stay as they are.
class ShortNames
{
public:
    explicit ShortNames(const std::string& directory) : m_directory(directory) {}

    std::string level(int number) const;
    std::string writer() const;
    /// The file of a reader that is not of this process.
    std::string reader(unsigned int other) const;

    std::string operator()(const std::string& path);

private:
    std::string shortReader(const std::string& number);

    const std::string m_directory;
    std::map<std::string, std::size_t> m_own;
};

}  // namespace test
}  // namespace zorvel
