#pragma once

#include <filesystem>

namespace zorvel {
namespace test {

/// Numbers the events of all processes in the order in which they happen,
/// without a clock: native programs and those under Wine have none in common.
///
/// A mark is a directory that the system lets one process create. Nobody tries
/// a number before the one below it is taken, so a mark that is made before
/// another has the lower number.
class Marks
{
public:
    /// For those who lock `directory`; the marks lie in "marks" below it.
    explicit Marks(const std::filesystem::path& directory);

    /// The next number.
    int take();

private:
    bool claim(int number) const;

    const std::filesystem::path m_directory;
    int m_next;
};

}  // namespace test
}  // namespace zorvel
