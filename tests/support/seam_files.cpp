#include "tests/support/seam_wrapper.h"

#include "platform/directory.h"
#include "platform/files.h"

// The files and directories of the seam.

using namespace zorvel::platform;
namespace seam = zorvel::test::seam_faults;

namespace {

/// A search that broke off says so until the next one begins.
thread_local long codeOfBrokenSearch = 0;

typedef std::vector<ListedEntry> Entries;

int withKindsHidden(int code, Entries& entries)
{
    if (seam::areKindsHidden())
        for (ListedEntry& entry : entries)
            entry.kind = EntryKind::none;
    return code;
}

}  // namespace

ZORVEL_SEAM(entryKind, EntryKind, const char* path)
{
    return seam::called<EntryKind>(seam::entryKind, [&] { return real_entryKind(path); });
}

ZORVEL_SEAM(fileStatus, int, const char* path, FileStatus& status)
{
    return seam::called<int>(seam::fileStatus, [&] { return real_fileStatus(path, status); });
}

ZORVEL_SEAM(modificationTime, int, const char* path, std::int64_t& seconds)
{
    return seam::called<int>(seam::modificationTime, [&] { return real_modificationTime(path, seconds); });
}

ZORVEL_SEAM(modificationTimeAtServer, int, const char* path, std::int64_t& seconds)
{
    return seam::called<int>(seam::modificationTimeAtServer,
                             [&] { return real_modificationTimeAtServer(path, seconds); });
}

ZORVEL_SEAM(changeMode, int, const char* path, unsigned short mode)
{
    return seam::called<int>(seam::changeMode, [&] { return real_changeMode(path, mode); });
}

ZORVEL_SEAM(availableSpace, bool, const char* directory, std::uint64_t& bytes)
{
    return seam::called<bool>(seam::availableSpace, [&] { return real_availableSpace(directory, bytes); });
}

ZORVEL_SEAM(makeDirectory, int, const char* path)
{
    return seam::called<int>(seam::makeDirectory, [&] { return real_makeDirectory(path); });
}

ZORVEL_SEAM(removeFile, int, const char* path)
{
    return seam::called<int>(seam::removeFile, [&] { return real_removeFile(path); });
}

ZORVEL_SEAM(openFile, int, WritableFile* self, const char* path, OpenMode mode)
{
    const int code = seam::called<int>(seam::openFile, [&] { return real_openFile(self, path, mode); });
    if (code != 0)
        self->close();
    return code;
}

ZORVEL_SEAM(writeFile, int, WritableFile* self, const void* data, std::size_t size)
{
    return seam::called<int>(seam::writeFile, [&] { return real_writeFile(self, data, size); });
}

ZORVEL_SEAM(flushFile, int, WritableFile* self)
{
    return seam::called<int>(seam::flushFile, [&] { return real_flushFile(self); });
}

ZORVEL_SEAM(openSearch, int, DirectorySearch* self, const char* pattern)
{
    codeOfBrokenSearch = 0;
    return seam::called<int>(seam::openSearch, [&] { return real_openSearch(self, pattern); });
}

ZORVEL_SEAM(openDirectory, int, DirectorySearch* self, const char* path)
{
    codeOfBrokenSearch = 0;
    return seam::called<int>(seam::openDirectory, [&] { return real_openDirectory(self, path); });
}

ZORVEL_SEAM(listedKind, EntryKind, const DirectorySearch* self)
{
    return seam::areKindsHidden() ? EntryKind::none : real_listedKind(self);
}

ZORVEL_SEAM(sizeOfFound, int, const DirectorySearch* self, std::int32_t& bytes)
{
    return seam::called<int>(seam::sizeOfFound, [&] { return real_sizeOfFound(self, bytes); });
}

ZORVEL_SEAM(codeOfSearch, int, const DirectorySearch* self)
{
    return seam::called<int>(seam::codeOfSearch, [&] {
        return codeOfBrokenSearch != 0 ? static_cast<int>(codeOfBrokenSearch) : real_codeOfSearch(self);
    });
}

ZORVEL_SEAM(nextOfSearch, const char*, DirectorySearch* self)
{
    if (const seam::Answer* const answer = seam::next(seam::nextOfSearch)) {
        codeOfBrokenSearch = answer->result;
        return nullptr;
    }
    const std::size_t before = seam::failuresBelow();
    const char* const name = seam::insideOf([&] { return real_nextOfSearch(self); });
    seam::noteIfHit(seam::nextOfSearch, before, name ? 0 : real_codeOfSearch(self));
    return name;
}

ZORVEL_SEAM(openRemoval, int, RemovalDirectory* self, const char* path)
{
    return seam::called<int>(seam::openRemoval, [&] { return real_openRemoval(self, path); });
}

ZORVEL_SEAM(openChild, int, RemovalDirectory* self, const RemovalDirectory& parent, const char* name)
{
    return seam::called<int>(seam::openChild, [&] { return real_openChild(self, parent, name); });
}

ZORVEL_SEAM(listEntries, int, const RemovalDirectory* self, Entries& entries)
{
    const int code = seam::called<int>(seam::listEntries, [&] { return real_listEntries(self, entries); });
    return withKindsHidden(code, entries);
}

ZORVEL_SEAM(matchEntries, int, const RemovalDirectory* self, const char* component, Entries& entries)
{
    const int code = seam::called<int>(seam::matchEntries, [&] { return real_matchEntries(self, component, entries); });
    return withKindsHidden(code, entries);
}

ZORVEL_SEAM(kindOfEntry, EntryKind, const RemovalDirectory* self, const char* name)
{
    return seam::called<EntryKind>(seam::kindOfEntry, [&] { return real_kindOfEntry(self, name); });
}

ZORVEL_SEAM(removeEntry, int, const RemovalDirectory* self, const char* name)
{
    return seam::called<int>(seam::removeEntry, [&] { return real_removeEntry(self, name); });
}

ZORVEL_SEAM(removeEmptyDirectory, int, const RemovalDirectory* self, const char* name, RemovalDirectory* child)
{
    return seam::called<int>(seam::removeEmptyDirectory, [&] { return real_removeEmptyDirectory(self, name, child); });
}

ZORVEL_SEAM(allowRemovalOf, bool, const RemovalDirectory* self, const char* name)
{
    return seam::called<bool>(seam::allowRemovalOf, [&] { return real_allowRemovalOf(self, name); });
}

ZORVEL_SEAM(allowRemovalsInside, void, RemovalDirectory* self)
{
    seam::calledOrNot(seam::allowRemovalsInside, [&] { real_allowRemovalsInside(self); });
}

ZORVEL_SEAM(restorePermission, void, RemovalDirectory* self)
{
    seam::calledOrNot(seam::restorePermission, [&] { real_restorePermission(self); });
}

ZORVEL_SEAM(resume, bool, RemovalDirectory* self, const RemovalDirectory& child)
{
    return seam::called<bool>(seam::resume, [&] { return real_resume(self, child); });
}
