#include "tests/multiprocess/marks.h"

namespace zorvel {
namespace test {

namespace {

/// A directory of thousands is slow to search where names have no case.
const int marksInAFolder = 100;

}  // namespace

Marks::Marks(const std::filesystem::path& directory) : m_directory(directory / "marks"), m_next(0) {}

int Marks::take()
{
    while (!claim(m_next))
        ++m_next;
    return m_next++;
}

bool Marks::claim(int number) const
{
    const std::filesystem::path folder = m_directory / std::to_string(number / marksInAFolder);
    std::filesystem::create_directories(folder);
    return std::filesystem::create_directory(folder / std::to_string(number % marksInAFolder));
}

}  // namespace test
}  // namespace zorvel
