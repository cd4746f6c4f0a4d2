#include "examples/deploy_demo/release_store.h"

#include <fstream>
#include <stdexcept>
#include <system_error>

namespace zorvel {
namespace demo {

namespace fs = std::filesystem;

namespace {

void writeWhole(const fs::path& name, const std::string& content)
{
    std::ofstream stream(name);
    stream << content << std::endl;
    if (!stream)
        throw std::runtime_error("cannot write " + name.string());
}

/// The first line; empty when there is no such file.
std::string firstLine(const fs::path& name)
{
    std::ifstream stream(name);
    std::string line;
    std::getline(stream, line);
    return line;
}

std::string content(int release, int file, const std::string& author)
{
    return "release " + std::to_string(release) + " file " + std::to_string(file) + " by " + author;
}

/// The last word of a file's line.
std::string authorOf(const std::string& line)
{
    return line.substr(line.find_last_of(' ') + 1);
}

}  // namespace

ReleaseStore::ReleaseStore(const fs::path& root) : m_root(root)
{
}

int ReleaseStore::current() const
{
    const std::string line = firstLine(m_root / "current");
    return line.empty() ? 0 : std::stoi(line);
}

bool ReleaseStore::mark(const std::string& name)
{
    const fs::path inside = m_root / "inside";
    if (!fs::create_directory(inside))
        return false;
    writeWhole(inside / name, name);
    return true;
}

std::string ReleaseStore::markedBy() const
{
    std::error_code gone;
    const fs::directory_iterator mark(m_root / "inside", gone);
    return mark == fs::directory_iterator() ? std::string() : mark->path().filename().string();
}

void ReleaseStore::unmark()
{
    fs::remove_all(m_root / "inside");
}

int ReleaseStore::filesOf(int release) const
{
    int count = 0;
    for (int i = 0; i < FILES_PER_RELEASE; ++i)
        count += fs::exists(file(release, i)) ? 1 : 0;
    return count;
}

void ReleaseStore::discard(int release)
{
    fs::remove_all(folder(release));
}

void ReleaseStore::begin(int release)
{
    fs::create_directories(folder(release));
}

void ReleaseStore::write(int release, int index, const std::string& author)
{
    writeWhole(file(release, index), content(release, index, author));
}

void ReleaseStore::publish(int release)
{
    const fs::path next = m_root / "current.new";
    writeWhole(next, std::to_string(release));
    fs::rename(next, m_root / "current");
}

bool ReleaseStore::isWhole(int release, std::string author) const
{
    if (author.empty())
        author = authorOf(firstLine(file(release, 0)));
    for (int i = 0; i < FILES_PER_RELEASE; ++i)
        if (firstLine(file(release, i)) != content(release, i, author))
            return false;
    return true;
}

fs::path ReleaseStore::folder(int release) const
{
    return m_root / "releases" / std::to_string(release);
}

fs::path ReleaseStore::file(int release, int index) const
{
    return folder(release) / ("file." + std::to_string(index));
}

}  // namespace demo
}  // namespace zorvel
