#include "tests/simulation/server.h"

#include "tests/simulation/choices.h"

#include <algorithm>
#include <cerrno>

namespace zorvel {
namespace sim {

FileWatch::~FileWatch() = default;

std::uint64_t digest(const std::string& text)
{
    std::uint64_t value = 0xCBF29CE484222325u;
    for (const char character : text)
        value = (value ^ static_cast<unsigned char>(character)) * 0x100000001B3u;
    return value;
}

std::string shortName(const std::string& name)
{
    return name.size() > 1 && name[1] >= '0' && name[1] <= '9' ? ".clock" : name;
}

int Server::createNew(const std::string& name, int process, long long now, std::size_t& id)
{
    if (has(name))
        return EEXIST;
    return createOrOpen(name, process, now, id);
}

int Server::createOrOpen(const std::string& name, int process, long long now, std::size_t& id)
{
    const Files::const_iterator found = m_files.find(name);
    if (found != m_files.end()) {
        id = found->second.id;
        return 0;
    }
    id = m_nextId++;
    m_files[name] = File{now, process, id};
    ++m_changes;
    m_watch.created(name, process);
    return 0;
}

int Server::write(const std::string& name, std::size_t id, int process, long long now)
{
    const Files::iterator found = m_files.find(name);
    if (found == m_files.end() || found->second.id != id)
        return 0;
    const int owner = found->second.owner;
    found->second.time = now;
    found->second.owner = process;
    m_watch.touched(name, process, owner);
    return 0;
}

int Server::remove(const std::string& name, int process)
{
    const Files::const_iterator found = m_files.find(name);
    if (found == m_files.end())
        return ENOENT;
    const int owner = found->second.owner;
    m_files.erase(found);
    ++m_changes;
    m_watch.removed(name, process, owner);
    return 0;
}

int Server::timeOf(const std::string& name, long long& time) const
{
    const Files::const_iterator found = m_files.find(name);
    if (found == m_files.end())
        return ENOENT;
    time = found->second.time;
    return 0;
}

std::size_t Server::idOf(const std::string& name) const
{
    const Files::const_iterator found = m_files.find(name);
    return found == m_files.end() ? 0 : found->second.id;
}

std::vector<std::string> Server::namesWith(const std::string& prefix) const
{
    std::vector<Files::const_iterator> found;
    for (Files::const_iterator file = m_files.begin(); file != m_files.end(); ++file)
        if (file->first.compare(0, prefix.size(), prefix) == 0)
            found.push_back(file);
    std::sort(found.begin(), found.end(),
              [](Files::const_iterator a, Files::const_iterator b) { return a->second.id < b->second.id; });
    std::vector<std::string> names;
    for (const Files::const_iterator& file : found)
        names.push_back(file->first);
    return names;
}

/// Whose a file is nobody can see.
std::uint64_t Server::digestOf(const std::string& pattern) const
{
    if (!pattern.empty() && pattern.back() == '*') {
        std::uint64_t value = 1;
        for (const std::string& name : namesWith(pattern.substr(0, pattern.size() - 1)))
            value = mixed(value + sim::digest(name));
        return value;
    }
    const Files::const_iterator file = m_files.find(pattern);
    return file == m_files.end() ? 0 : mixed(static_cast<std::uint64_t>(file->second.time));
}

std::uint64_t Server::digest() const
{
    std::uint64_t value = 0;
    for (const Files::value_type& file : m_files)
        value += mixed(sim::digest(shortName(file.first)) + mixed(static_cast<std::uint64_t>(file.second.time)) +
                       static_cast<std::uint64_t>(file.second.owner + 1) * 977);
    return value;
}

void Server::age(int process, long long seconds)
{
    for (Files::value_type& file : m_files)
        if (file.second.owner == process)
            file.second.time -= seconds;
}

}  // namespace sim
}  // namespace zorvel
