#include <zorvel/fsutil.h>
#include <zorvel/paths.h>

#include "platform/files.h"
#include "platform/path_rules.h"

#include <zorvel/detail/character_key.h>

#include <cstring>
#include <string>

namespace {

using zorvel::detail::isSeparator;

/// What the end of a name, or of a path, must not be for the path to mean the
/// same as a whole and step by step: some systems drop blanks and dots there,
/// the normaliser blanks, and ".." leads back.
bool isPlainEnd(unsigned char byte)
{
    return byte > ' ' && byte != '.';
}

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
    bool isSeparatorAt(std::size_t index) const { return index < m_path.size() && zvIsPathSep(m_path[index]); }

    /// A drive with its separator, "\\server", one separator, or a name.
    std::size_t endOfFirst() const
    {
        const std::size_t drive = zorvel::platform::drivePrefixLength(m_path.c_str());
        if (drive)
            return isSeparatorAt(drive) ? drive + 1 : drive;
        if (isNetworkPath())
            return endOfName(2);
        return isSeparatorAt(0) ? 1 : endOfName(0);
    }

    std::size_t endOfName(std::size_t index) const
    {
        while (index < m_path.size() && !isSeparatorAt(index)) {
            const bool isPair = zvIsMultiByteLead(static_cast<unsigned char>(m_path[index]));
            index += isPair && index + 1 < m_path.size() ? 2 : 1;
        }
        return index;
    }

    void skipSeparators()
    {
        while (isSeparatorAt(m_next))
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
        if (!m_path.empty() && !m_endsInSeparator)
            m_path += '\\';
        m_path += component;
        const char* const last = component.data() + component.size() - 1;
        m_endsInSeparator = zvFindLastSep(component.data(), last) == last;
    }

    const char* c_str() const { return m_path.c_str(); }

private:
    std::string m_path;
    bool m_endsInSeparator = false;
};

/// One look, one attempt: a directory that somebody else makes in between is
/// a failure. What is in a directory that was just made needs no look.
class Creation
{
public:
    bool ensure(const char* path)
    {
        const bool isNew = m_isBelowNew && isPlainEnd(static_cast<unsigned char>(path[std::strlen(path) - 1]));
        const bool isThere = !isNew && zvIsDirectory(path);
        m_isBelowNew = !isThere && zorvel::platform::makeDirectory(path) == 0;
        return isThere || m_isBelowNew;
    }

private:
    bool m_isBelowNew = false;
};

/// Whether no byte after the first is part of a character that is not ASCII, or
/// a separator behind what must not be the end of a name. Without a way out
/// before the end the compiler takes many bytes at once.
bool isPlainInside(const char* path, std::size_t length)
{
    unsigned char flaws = 0;
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char byte = static_cast<unsigned char>(path[i]);
        const unsigned char before = static_cast<unsigned char>(path[i - 1]);
        const bool separates = isSeparator(path[i]);
        flaws |= static_cast<unsigned char>((byte & 0x80) | (separates & !isPlainEnd(before)));
    }
    return flaws == 0;
}

/// Whether a text is its own normalised form but for separators, and names the
/// same directory as a whole as its components do one after another: then one
/// look at it answers for all of them.
bool isPlain(const char* path)
{
    const bool isNetworkPath = isSeparator(path[0]) && isSeparator(path[1]);
    const std::size_t drive = zorvel::platform::drivePrefixLength(path);
    const unsigned char first = static_cast<unsigned char>(path[0]);
    if (first <= ' ' || first >= 0x80 || isNetworkPath || (drive && !isSeparator(path[drive])))
        return false;
    const std::size_t length = std::strlen(path);
    return isPlainInside(path, length) && isPlainEnd(static_cast<unsigned char>(path[length - 1]));
}

}  // namespace

bool zvMkdirP(const char* path)
{
    if (!path)
        return false;
    if (isPlain(path) && zvIsDirectory(path))
        return true;
    const zvPathString normalized(path);
    Components components(normalized);
    Prefix prefix;
    Creation creation;
    std::string component;
    // Server and share of a network path cannot be created.
    for (int toSkip = components.isNetworkPath() ? 2 : 0; components.next(component); --toSkip) {
        prefix.join(component);
        if (toSkip <= 0 && !creation.ensure(prefix.c_str()))
            return false;
    }
    return true;
}
