#include "platform/directory.h"

#include "platform/posix/entry_reader.h"
#include "platform/posix/native_path.h"
#include "platform/posix/wildcard.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

namespace zorvel {
namespace platform {

using posix::NativePath;

namespace {

/// Some file systems list no types at all.
EntryKind kindOfType(unsigned char type)
{
    if (type == DT_UNKNOWN || type == DT_LNK)
        return EntryKind::none;
    return type == DT_DIR ? EntryKind::directory : EntryKind::file;
}

const int listing = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
const int oneName = 0;

int codeOf(int result)
{
    return result == -1 ? errno : 0;
}

}  // namespace

/// Either a listing that is matched name by name, or, without wild cards, the
/// one name that was found to exist: then nothing is open.
struct DirectorySearch::State
{
    /// flags: how the directory is opened to be listed, or oneName.
    State(const std::string& directory, const std::string& pattern, int flags)
        : path(directory),
          component(pattern),
          names(component.c_str()),
          descriptor(flags ? ::open(path.c_str(), flags) : -1),
          reader(descriptor),
          name(nullptr),
          type(DT_UNKNOWN),
          single(false),
          code(flags ? codeOf(descriptor) : find())
    {
    }

    ~State()
    {
        if (descriptor != -1)
            ::close(descriptor);
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    int find()
    {
        struct stat status;
        path += component;
        if (lstat(path.c_str(), &status) != 0)
            return errno;
        type = IFTODT(status.st_mode);
        single = true;
        return 0;
    }

    const char* nextMatch()
    {
        while (const dirent64* const entry = reader.next()) {
            type = entry->d_type;
            if (names.matches(entry->d_name) && posix::isReachable(entry->d_name))
                return entry->d_name;
        }
        code = reader.code();
        return nullptr;
    }

    const char* nextOfOne()
    {
        const bool isFirst = single;
        single = false;
        return isFirst ? component.c_str() : nullptr;
    }

    std::string path;
    const std::string component;
    const posix::NamePattern names;
    const int descriptor;
    posix::EntryReader reader;
    const char* name;
    unsigned char type;
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
    const int flags = posix::hasWildcards(path.c_str() + begin) ? listing : oneName;
    m_state = std::make_unique<State>(begin ? path.substr(0, begin) : "./", path.substr(begin), flags);
    return m_state->code;
}

int DirectorySearch::openDirectory(const char* path)
{
    const NativePath native(path);
    m_state = std::make_unique<State>(native.c_str() ? native.c_str() : "", "*", listing | O_NOFOLLOW);
    return m_state->code;
}

/// The pages that a listing is remembered in are a directory's own, as a file's content is.
void DirectorySearch::forgetEarlierListing()
{
    if (m_state && m_state->descriptor != -1)
        static_cast<void>(posix_fadvise(m_state->descriptor, 0, 0, POSIX_FADV_DONTNEED));
}

const char* DirectorySearch::next()
{
    if (!m_state)
        return nullptr;
    m_state->name = m_state->descriptor != -1 ? m_state->nextMatch() : m_state->nextOfOne();
    return m_state->name;
}

void DirectorySearch::close()
{
    m_state.reset();
}

EntryKind DirectorySearch::listedKind() const
{
    return m_state ? kindOfType(m_state->type) : EntryKind::none;
}

int DirectorySearch::size(std::int32_t& bytes) const
{
    struct stat status;
    if (!m_state || !m_state->name)
        return ENOENT;
    const bool isListing = m_state->descriptor != -1;
    const char* const name = isListing ? m_state->name : m_state->path.c_str();
    if (fstatat(isListing ? m_state->descriptor : AT_FDCWD, name, &status, 0) != 0)
        return errno;
    bytes = S_ISDIR(status.st_mode) ? 0 : static_cast<std::int32_t>(static_cast<std::uint32_t>(status.st_size));
    return 0;
}

int DirectorySearch::code() const
{
    return m_state ? m_state->code : 0;
}

}  // namespace platform
}  // namespace zorvel
