#pragma once

#include <cstddef>
#include <cstdint>

/// One operation of the system on one path each. Paths are terminated byte
/// strings in the library's form (both separators); null is refused like a
/// missing file. Functions that return a code return 0 for success, else the
/// runtime's errno value; nothing is retried but a call cut short by a signal.
namespace zorvel {
namespace platform {

enum class EntryKind
{
    none,           ///< nothing there, or not to be examined
    file,           ///< a file, or a link that does not lead to a directory
    directory,      ///< a directory
    directoryLink,  ///< a link (symbolic link, junction) to a directory
};

EntryKind entryKind(const char* path);

struct FileStatus
{
    unsigned short mode;            ///< the runtime's st_mode: type and permission bits
    std::int32_t size;              ///< the low 32 bits of the size, signed; 0 for a directory
    std::int64_t modificationTime;  ///< seconds since 1970-01-01 UTC by the server's clock
};

/// Follows links. The client of a share may answer with what it remembers.
int fileStatus(const char* path, FileStatus& status);

/// The modification time alone (see FileStatus). On Linux the server of a share
/// is asked, whatever its client remembers, and a file that the server no longer
/// knows is missing; on Windows the client may answer.
int modificationTime(const char* path, std::int64_t& seconds);

/// The same, asked of the server on both systems: on Windows by opening the
/// file, which a look that is made all the time must not do.
int modificationTimeAtServer(const char* path, std::int64_t& seconds);

/// Sets the permission bits of a path; follows links.
int changeMode(const char* path, unsigned short mode);

/// Stores the bytes free to the calling user. False on failure.
bool availableSpace(const char* directory, std::uint64_t& bytes);

int makeDirectory(const char* path);

/// Removes a file or a link to one, never a directory (EACCES).
int removeFile(const char* path);

enum class OpenMode
{
    createNew,     ///< fails with EEXIST when the file exists
    createOrOpen,  ///< creates the file when missing, never truncates it
};

/// An open file that is closed with its owner.
class WritableFile
{
public:
    WritableFile() : m_descriptor(-1) {}
    ~WritableFile() { close(); }

    WritableFile(const WritableFile&) = delete;
    WritableFile& operator=(const WritableFile&) = delete;

    /// Opens for writing, readable and writable by all where it creates (on
    /// Linux as far as the umask lets them: somebody else may have to take a
    /// dead user's lock file over). Closes what was open before. A directory gives EACCES.
    int open(const char* path, OpenMode mode);

    /// Writes at the start of the file what fits in one call; returns 0 when
    /// all of it was written. A short write gives EIO.
    int write(const void* data, std::size_t size);

    /// Returns when other machines can see what was written. Linux: does nothing
    /// but on SMB, where closing is not enough. Windows cannot tell such a share
    /// and has everything written to its disk or server.
    int flush();

    void close();

private:
    int m_descriptor;
};

}  // namespace platform
}  // namespace zorvel
