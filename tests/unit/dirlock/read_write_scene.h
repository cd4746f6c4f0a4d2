#pragma once

#include "tests/unit/dirlock/scene.h"

namespace zorvel {
namespace test {

/// A scene with a read lock and a write lock on its directory, each a process
/// of its own as far as files go. Other readers have the numbers 1, 2, 3...;
/// another writer has the one file that a writer can have. The scene's
/// exclusive lock plays somebody else's guard.
class ReadWriteScene : public Scene
{
public:
    explicit ReadWriteScene(const std::string& directory = "D");

    zvDirectoryReadWriteLock& both() { return m_both; }
    zvDirectoryReadWriteLock::ReadLock& reader() { return m_reader; }
    zvDirectoryReadWriteLock::WriteLock& writer() { return m_writer; }

    std::string nameOfWriter() const { return names().writer(); }
    std::string nameOfReader(unsigned int other) const { return names().reader(other); }

    /// Makes another's file, refreshed so many seconds ago.
    void addWriter(long long ageSeconds = 0) { fs().addFile(nameOfWriter(), ageSeconds); }
    void addReader(unsigned int other, long long ageSeconds = 0) { fs().addFile(nameOfReader(other), ageSeconds); }
    void dropWriter() { fs().removeFileNow(nameOfWriter()); }
    void dropReader(unsigned int other) { fs().removeFileNow(nameOfReader(other)); }

private:
    zvDirectoryReadWriteLock m_both;
    zvDirectoryReadWriteLock::ReadLock m_reader;
    zvDirectoryReadWriteLock::WriteLock m_writer;
};

}  // namespace test
}  // namespace zorvel
