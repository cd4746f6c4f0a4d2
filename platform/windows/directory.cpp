#include "platform/directory.h"

#include "platform/windows/listing.h"

#include <errno.h>

namespace zorvel {
namespace platform {

struct DirectorySearch::State
{
    windows::Listing listing;
};

DirectorySearch::DirectorySearch() {}
DirectorySearch::~DirectorySearch() {}

int DirectorySearch::open(const char* pattern)
{
    m_state.reset(new State);
    return m_state->listing.open(pattern);
}

const char* DirectorySearch::next()
{
    return m_state ? m_state->listing.next() : nullptr;
}

int DirectorySearch::code() const
{
    // Names that the code page lacks are passed over, which is no failure here.
    const int code = m_state ? m_state->listing.code() : 0;
    return code == EILSEQ ? 0 : code;
}

}  // namespace platform
}  // namespace zorvel
