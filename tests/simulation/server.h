#pragma once

#include "tests/simulation/plan.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace zorvel {
namespace sim {

std::uint64_t digest(const std::string& text);

/// A file's name; the files that compare clocks have one between them.
std::string shortName(const std::string& name);

/// Somebody who wants to know what becomes of the files.
class FileWatch
{
public:
    virtual ~FileWatch();
    virtual void created(const std::string& name, int process) = 0;
    virtual void touched(const std::string& name, int process, int owner) = 0;
    virtual void removed(const std::string& name, int process, int owner) = 0;
};

/// The files of the one directory, as the file server has them. Its answers
/// are the runtime's codes; each call is one instant.
class Server
{
public:
    struct File
    {
        long long time;  ///< of modification, whole seconds of the server's clock
        int owner;       ///< who created it or touched it last
        std::size_t id;
    };
    typedef std::map<std::string, File> Files;

    explicit Server(FileWatch& watch) : m_watch(watch), m_nextId(1), m_changes(0) {}

    /// `now` by the server's clock, in seconds; `id` tells the file apart from
    /// another of its name.
    int createNew(const std::string& name, int process, long long now, std::size_t& id);
    int createOrOpen(const std::string& name, int process, long long now, std::size_t& id);

    /// Also into a file that has gone: nobody sees it.
    int write(const std::string& name, std::size_t id, int process, long long now);

    int remove(const std::string& name, int process);
    int timeOf(const std::string& name, long long& time) const;
    /// Tells a file apart from another of its name; 0 for none.
    std::size_t idOf(const std::string& name) const;
    bool has(const std::string& name) const { return m_files.count(name) > 0; }

    /// The names that begin so, oldest file first.
    std::vector<std::string> namesWith(const std::string& prefix) const;

    /// Makes the files of a process, or of all, older.
    void age(int process, long long seconds);

    const Files& files() const { return m_files; }

    /// Of all that somebody can learn who looks for a name, or for all with a
    /// prefix and '*'.
    std::uint64_t digestOf(const std::string& pattern) const;

    /// Of everything.
    std::uint64_t digest() const;

    /// Grows with every file that comes or goes.
    std::uint64_t changes() const { return m_changes; }

private:
    FileWatch& m_watch;
    Files m_files;
    std::size_t m_nextId;
    std::uint64_t m_changes;
};

}  // namespace sim
}  // namespace zorvel
