#include <zorvel/fsutil.h>
#include <zorvel/paths.h>

#include "platform/files.h"
#include "platform/path_rules.h"

#include <string>

namespace {

/// The components of a normalised path from the first to the last.
class Components
{
public:
    explicit Components(const std::string& path) : m_path(path), m_next(0) {}

    bool isNetworkPath() const { return m_path.compare(0, 2, "\\\\") == 0; }

    /// False after the last one.
    bool next(std::string& component)
    {
        const std::size_t begin = m_next;
        if (begin == m_path.size())
            return false;
        m_next = begin == 0 ? endOfFirst() : endOfName(begin);
        component = m_path.substr(begin, m_next - begin);
        skipSeparators();
        return true;
    }

private:
    bool isSeparator(std::size_t index) const { return index < m_path.size() && zvIsPathSep(m_path[index]); }

    /// A drive with its separator, "\\server", one separator, or a name.
    std::size_t endOfFirst() const
    {
        const std::size_t drive = zorvel::platform::drivePrefixLength(m_path.c_str());
        if (drive)
            return isSeparator(drive) ? drive + 1 : drive;
        if (isNetworkPath())
            return endOfName(2);
        return isSeparator(0) ? 1 : endOfName(0);
    }

    std::size_t endOfName(std::size_t index) const
    {
        while (index < m_path.size() && !isSeparator(index)) {
            const bool isPair = zvIsMultiByteLead(static_cast<unsigned char>(m_path[index]));
            index += isPair && index + 1 < m_path.size() ? 2 : 1;
        }
        return index;
    }

    void skipSeparators()
    {
        while (isSeparator(m_next))
            ++m_next;
    }

    const std::string& m_path;
    std::size_t m_next;
};

/// A path as far as its components have been handled. The text is joined as it
/// is: normalising it again at each step would take blanks off inner names.
class Prefix
{
public:
    void join(const std::string& component)
    {
        if (!m_path.empty() && !endsInSeparator())
            m_path += '\\';
        m_path += component;
    }

    const char* c_str() const { return m_path.c_str(); }

private:
    bool endsInSeparator() const
    {
        const char* const last = m_path.data() + m_path.size() - 1;
        return zvFindLastSep(m_path.data(), last) == last;
    }

    std::string m_path;
};

/// One look, one attempt: a directory that somebody else makes in between is
/// a failure.
bool ensureDirectory(const char* path)
{
    return zvIsDirectory(path) || zorvel::platform::makeDirectory(path) == 0;
}

}  // namespace

bool zvMkdirP(const char* path)
{
    if (!path)
        return false;
    const zvPathString normalized(path);
    Components components(normalized);
    Prefix prefix;
    std::string component;
    // Server and share of a network path cannot be created.
    for (int toSkip = components.isNetworkPath() ? 2 : 0; components.next(component); --toSkip) {
        prefix.join(component);
        if (toSkip <= 0 && !ensureDirectory(prefix.c_str()))
            return false;
    }
    return true;
}
