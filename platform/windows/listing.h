#pragma once

#include "platform/files.h"

#include <windows.h>

#include <string>

namespace zorvel {
namespace platform {
namespace windows {

/// Whether the system takes a listed name as it stands. It drops blanks and
/// dots at the end, so that a path with such a name means a neighbour.
bool isLiteral(const std::string& name);

/// The entries that a pattern matches, with names in the ANSI code page. The
/// system is asked for its own names, because its conversion would silently
/// give a name that the code page cannot express another one.
class Listing
{
public:
    Listing() : m_search(INVALID_HANDLE_VALUE), m_isFirst(true), m_code(0) {}
    ~Listing();

    Listing(const Listing&) = delete;
    Listing& operator=(const Listing&) = delete;

    /// Starts on a pattern, once: 0, or the code of codeOfLookup(). ENOENT for
    /// a last component that can name no entry.
    int open(const char* pattern);

    /// The same for a pattern whose last component is "*".
    int openAll(const std::wstring& pattern);

    /// The next name, valid until the next call; null at the end. Names that
    /// the code page cannot express are passed over.
    const char* next();

    /// What the listing says of that entry. none for a link, and for what a path
    /// with this name would not mean.
    EntryKind kind() const;

    /// The low 32 bits of its size, as the listing says.
    DWORD size() const { return m_found.nFileSizeLow; }

    /// At the end: 0, EILSEQ when a name was passed over, or the code with
    /// which the system broke off.
    int code() const { return m_code; }

private:
    bool advance();

    HANDLE m_search;
    WIN32_FIND_DATAW m_found;
    bool m_isFirst;
    int m_code;
    std::string m_name;
};

}  // namespace windows
}  // namespace platform
}  // namespace zorvel
