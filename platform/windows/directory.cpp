#include "platform/directory.h"

#include "platform/windows/listing.h"

namespace zorvel {
namespace platform {

struct DirectorySearch::State
{
    windows::Listing listing;
};

DirectorySearch::DirectorySearch() {}
DirectorySearch::~DirectorySearch() {}

bool DirectorySearch::open(const char* pattern)
{
    m_state.reset(new State);
    return m_state->listing.open(pattern) == 0;
}

const char* DirectorySearch::next()
{
    return m_state ? m_state->listing.next() : nullptr;
}

}  // namespace platform
}  // namespace zorvel
