#include "examples/deploy_demo/marks.h"

#include <system_error>

namespace zorvel {
namespace demo {

namespace fs = std::filesystem;

namespace {

void takeMark(const fs::path& mark)
{
    std::error_code ignored;
    fs::remove(mark, ignored);
}

std::vector<std::string> othersIn(const fs::path& directory, const std::string& name)
{
    std::vector<std::string> others;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string found = entry.path().filename().string();
        if (found != name)
            others.push_back(found);
    }
    return others;
}

void takeAway(const fs::path& directory, const std::vector<std::string>& names)
{
    for (const std::string& name : names)
        takeMark(directory / name);
}

}  // namespace

Marks::Marks(const fs::path& root) : m_readers(root / "marks" / "readers"), m_writers(root / "marks" / "writers") {}

void Marks::create()
{
    fs::create_directories(m_readers);
    fs::create_directories(m_writers);
}

std::vector<std::string> Marks::enterAsReader(const std::string& name)
{
    fs::create_directory(m_readers / name);
    return othersIn(m_writers, name);
}

std::vector<std::string> Marks::enterAsWriter(const std::string& name)
{
    fs::create_directory(m_writers / name);
    std::vector<std::string> met = othersIn(m_writers, name);
    takeAway(m_writers, met);
    const std::vector<std::string> readers = othersIn(m_readers, name);
    takeAway(m_readers, readers);
    met.insert(met.end(), readers.begin(), readers.end());
    return met;
}

void Marks::leaveAsReader(const std::string& name)
{
    takeMark(m_readers / name);
}

void Marks::leaveAsWriter(const std::string& name)
{
    takeMark(m_writers / name);
}

}  // namespace demo
}  // namespace zorvel
