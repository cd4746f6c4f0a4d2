#include "platform/directory.h"

#include <windows.h>

namespace zorvel {
namespace platform {

namespace {

/// Whether the last component is made of dots and blanks alone. The system
/// drops those at the end of a name: such a component would find the directory
/// itself or its parent under their own names, not an entry of the directory.
bool endsInDots(const char* pattern)
{
    const char* component = pattern;
    for (const char* p = pattern; *p; ++p) {
        if (IsDBCSLeadByte(static_cast<BYTE>(*p)) && p[1])
            ++p;
        else if (*p == '\\' || *p == '/')
            component = p + 1;
    }
    while (*component == '.' || *component == ' ')
        ++component;
    return *component == '\0';
}

}  // namespace

struct DirectorySearch::State
{
    State() : handle(INVALID_HANDLE_VALUE), isFirst(true) {}

    ~State()
    {
        if (handle != INVALID_HANDLE_VALUE)
            FindClose(handle);
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    HANDLE handle;
    bool isFirst;
    WIN32_FIND_DATAA found;
};

DirectorySearch::DirectorySearch() {}
DirectorySearch::~DirectorySearch() {}

bool DirectorySearch::open(const char* pattern)
{
    m_state.reset(new State);
    if (!pattern || endsInDots(pattern))
        return false;
    m_state->handle = FindFirstFileA(pattern, &m_state->found);
    return m_state->handle != INVALID_HANDLE_VALUE;
}

const char* DirectorySearch::next()
{
    if (!m_state || m_state->handle == INVALID_HANDLE_VALUE)
        return nullptr;
    if (!m_state->isFirst && !FindNextFileA(m_state->handle, &m_state->found))
        return nullptr;
    m_state->isFirst = false;
    return m_state->found.cFileName;
}

}  // namespace platform
}  // namespace zorvel
