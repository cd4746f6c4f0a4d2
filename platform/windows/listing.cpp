#include "platform/windows/listing.h"

#include "platform/codepage.h"
#include "platform/windows/error_code.h"
#include "platform/windows/wide_text.h"

#include <errno.h>

namespace zorvel {
namespace platform {
namespace windows {

namespace {

/// Whether the last component of a pattern can match an entry under the
/// library's rules. One of dots and blanks alone cannot: the system drops those
/// at the end of a name and would find the directory itself or its parent. Nor
/// can one with a character that no name holds: three of them are wild cards to
/// the system and would match what the caller did not name.
bool canMatch(const char* pattern)
{
    bool isNamed = false;
    bool isAllowed = true;
    for (const char* p = pattern; *p; ++p) {
        if (isLeadByte(static_cast<unsigned char>(*p)) && p[1]) {
            isNamed = true;
            ++p;
        } else if (*p == '\\' || *p == '/') {
            isNamed = false;
            isAllowed = true;
        } else {
            isNamed = isNamed || (*p != '.' && *p != ' ');
            isAllowed = isAllowed && *p != '<' && *p != '>' && *p != '"' && *p != '|';
        }
    }
    return isNamed && isAllowed;
}

}  // namespace

bool isLiteral(const std::string& name)
{
    return !name.empty() && name.back() != ' ' && name.back() != '.';
}

EntryKind Listing::kind() const
{
    const DWORD attributes = m_found.dwFileAttributes;
    if (attributes & FILE_ATTRIBUTE_REPARSE_POINT || !isLiteral(m_name))
        return EntryKind::none;
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? EntryKind::directory : EntryKind::file;
}

Listing::~Listing()
{
    if (m_search != INVALID_HANDLE_VALUE)
        FindClose(m_search);
}

int Listing::open(const char* pattern)
{
    if (!pattern || !canMatch(pattern))
        return ENOENT;
    m_search = FindFirstFileW(wide(pattern).c_str(), &m_found);
    return m_search != INVALID_HANDLE_VALUE ? 0 : codeOfLookup(GetLastError());
}

/// Without short names, which cost the system more than all else and which no
/// pattern for everything is compared with; and with few calls for a large
/// directory.
int Listing::openAll(const std::wstring& pattern)
{
    m_search = FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &m_found, FindExSearchNameMatch, nullptr,
                                FIND_FIRST_EX_LARGE_FETCH);
    return m_search != INVALID_HANDLE_VALUE ? 0 : codeOfLookup(GetLastError());
}

bool Listing::advance()
{
    if (m_isFirst) {
        m_isFirst = false;
        return m_search != INVALID_HANDLE_VALUE;
    }
    if (FindNextFileW(m_search, &m_found))
        return true;
    if (GetLastError() != ERROR_NO_MORE_FILES)
        m_code = EIO;
    return false;
}

const char* Listing::next()
{
    while (advance()) {
        if (narrow(m_found.cFileName, m_name))
            return m_name.c_str();
        m_code = EILSEQ;
    }
    return nullptr;
}

}  // namespace windows
}  // namespace platform
}  // namespace zorvel
