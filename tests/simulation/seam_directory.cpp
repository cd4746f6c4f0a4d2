#include "platform/directory.h"

#include "tests/simulation/seam_files.h"
#include "tests/simulation/world.h"

#include <cerrno>

// The seam's searches, on the simulated server: a listing is one instant.

namespace zorvel {
namespace platform {

using sim::Process;
using sim::World;

struct DirectorySearch::State
{
    std::vector<std::string> names;
    std::size_t next = 0;
};

DirectorySearch::DirectorySearch() {}
DirectorySearch::~DirectorySearch() {}

int DirectorySearch::open(const char* pattern)
{
    m_state.reset();
    const std::string component = sim::fileOf(pattern);
    const bool isListed = !component.empty() && component.back() == '*';
    const std::string prefix = isListed ? component.substr(0, component.size() - 1) : component;
    World& world = *World::current();
    const std::shared_ptr<std::vector<std::string>> names = std::make_shared<std::vector<std::string>>();
    const int code = Process::current()->request(isListed ? "list" : "search", component, [=, &world](long long) {
        if (isListed)
            *names = world.server.namesWith(prefix);
        else if (world.server.has(component))
            *names = {component};
        return isListed || !names->empty() ? 0 : ENOENT;
    });
    if (code != 0)
        return code;
    m_state.reset(new State);
    m_state->names = *names;
    return 0;
}

/// The server has one directory, and nothing in it is another.
int DirectorySearch::openDirectory(const char*)
{
    return ENOTDIR;
}

/// No client remembers anything here.
void DirectorySearch::forgetEarlierListing() {}

void DirectorySearch::close()
{
    m_state.reset();
}

const char* DirectorySearch::next()
{
    if (!m_state || m_state->next >= m_state->names.size())
        return nullptr;
    return m_state->names[m_state->next++].c_str();
}

/// Not all file systems say it; where they do not, each entry is asked for by
/// an operation of its own, and others can come between.
EntryKind DirectorySearch::listedKind() const
{
    return EntryKind::none;
}

int DirectorySearch::size(std::int32_t&) const
{
    return ENOSYS;
}

int DirectorySearch::code() const
{
    return 0;
}

}  // namespace platform
}  // namespace zorvel
