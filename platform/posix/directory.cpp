#include "platform/directory.h"

#include "platform/posix/native_path.h"
#include "platform/posix/wildcard.h"

#include <dirent.h>
#include <sys/stat.h>

#include <string>

namespace zorvel {
namespace platform {

using posix::NativePath;

/// Either a listing that is matched name by name, or, without wild cards, the
/// one name that was found to exist.
struct DirectorySearch::State
{
    State(const std::string& directory, const std::string& pattern) : component(pattern), stream(nullptr), single(false)
    {
        if (posix::hasWildcards(pattern.c_str()))
            stream = opendir(directory.c_str());
        else
            single = exists(directory + component);
    }

    ~State()
    {
        if (stream)
            closedir(stream);
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    static bool exists(const std::string& path)
    {
        struct stat status;
        return lstat(path.c_str(), &status) == 0;
    }

    const char* nextMatch() const
    {
        while (const dirent* entry = readdir(stream)) {
            if (posix::matchesWildcards(component.c_str(), entry->d_name) && posix::isReachable(entry->d_name))
                return entry->d_name;
        }
        return nullptr;
    }

    const std::string component;
    DIR* stream;
    bool single;
};

DirectorySearch::DirectorySearch() {}
DirectorySearch::~DirectorySearch() {}

bool DirectorySearch::open(const char* pattern)
{
    m_state.reset();
    const NativePath native(pattern);
    const std::string path(native.c_str() ? native.c_str() : "");
    const std::string::size_type separator = path.rfind('/');
    const std::string::size_type begin = separator == std::string::npos ? 0 : separator + 1;
    if (begin == path.size())
        return false;
    m_state.reset(new State(begin ? path.substr(0, begin) : "./", path.substr(begin)));
    return m_state->stream || m_state->single;
}

const char* DirectorySearch::next()
{
    if (!m_state)
        return nullptr;
    if (m_state->stream)
        return m_state->nextMatch();
    const bool isFirst = m_state->single;
    m_state->single = false;
    return isFirst ? m_state->component.c_str() : nullptr;
}

}  // namespace platform
}  // namespace zorvel
