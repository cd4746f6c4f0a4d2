#include "platform/directory.h"

#include "platform/posix/native_path.h"
#include "platform/posix/wildcard.h"

#include <dirent.h>
#include <errno.h>
#include <sys/stat.h>

#include <string>

namespace zorvel {
namespace platform {

using posix::NativePath;

/// Either a listing that is matched name by name, or, without wild cards, the
/// one name that was found to exist.
struct DirectorySearch::State
{
    State(const std::string& directory, const std::string& pattern)
        : component(pattern), stream(nullptr), single(false), code(0)
    {
        const bool isListed = posix::hasWildcards(pattern.c_str());
        const std::string path = isListed ? directory : directory + component;
        if (isListed)
            stream = opendir(path.c_str());
        else
            single = exists(path);
        if (!stream && !single)
            code = errno;
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

    const char* nextMatch()
    {
        while (const dirent* entry = nextEntry()) {
            if (posix::matchesWildcards(component.c_str(), entry->d_name) && posix::isReachable(entry->d_name))
                return entry->d_name;
        }
        return nullptr;
    }

    const dirent* nextEntry()
    {
        errno = 0;
        const dirent* const entry = readdir(stream);
        if (!entry)
            code = errno;
        return entry;
    }

    const std::string component;
    DIR* stream;
    bool single;
    int code;
};

DirectorySearch::DirectorySearch() {}
DirectorySearch::~DirectorySearch() {}

int DirectorySearch::open(const char* pattern)
{
    m_state.reset();
    const NativePath native(pattern);
    const std::string path(native.c_str() ? native.c_str() : "");
    const std::string::size_type separator = path.rfind('/');
    const std::string::size_type begin = separator == std::string::npos ? 0 : separator + 1;
    if (begin == path.size())
        return ENOENT;
    m_state.reset(new State(begin ? path.substr(0, begin) : "./", path.substr(begin)));
    return m_state->code;
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

int DirectorySearch::code() const
{
    return m_state ? m_state->code : 0;
}

}  // namespace platform
}  // namespace zorvel
