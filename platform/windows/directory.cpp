#include "platform/directory.h"

#include "platform/windows/listing.h"
#include "platform/windows/wide_text.h"

#include <errno.h>

namespace zorvel {
namespace platform {

/// `pending` is what the first next() opens.
struct DirectorySearch::State
{
    windows::Listing listing;
    std::wstring pending;
};

DirectorySearch::DirectorySearch() {}
DirectorySearch::~DirectorySearch() {}

int DirectorySearch::open(const char* pattern)
{
    m_state.reset(new State);
    return m_state->listing.open(pattern);
}

/// A listing that is open keeps the directory from being removed.
int DirectorySearch::openDirectory(const char* path)
{
    m_state.reset();
    if (entryKind(path) != EntryKind::directory)
        return ENOTDIR;
    m_state.reset(new State);
    m_state->pending = windows::wide(path) + L"\\*";
    return 0;
}

void DirectorySearch::forgetEarlierListing() {}

const char* DirectorySearch::next()
{
    if (!m_state)
        return nullptr;
    if (!m_state->pending.empty()) {
        m_state->listing.openAll(m_state->pending);
        m_state->pending.clear();
    }
    return m_state->listing.next();
}

void DirectorySearch::close()
{
    m_state.reset();
}

EntryKind DirectorySearch::listedKind() const
{
    return m_state ? m_state->listing.kind() : EntryKind::none;
}

int DirectorySearch::size(std::int32_t& bytes) const
{
    if (listedKind() != EntryKind::file)
        return ENOSYS;
    bytes = static_cast<std::int32_t>(m_state->listing.size());
    return 0;
}

int DirectorySearch::code() const
{
    // Names that the code page lacks are passed over, which is no failure here.
    const int code = m_state ? m_state->listing.code() : 0;
    return code == EILSEQ ? 0 : code;
}

}  // namespace platform
}  // namespace zorvel
