#pragma once

#include "platform/files.h"

#include <memory>
#include <string>
#include <vector>

namespace zorvel {
namespace platform {

/// An entry as a directory's listing gives it.
struct ListedEntry
{
    std::string name;
    EntryKind kind;  ///< what the listing says of it; none where it does not say
};

/// The entries that a pattern matches, one after another, in the system's
/// order. Wild cards stand in the last component only. On Windows the system
/// matches, but only '*' and '?' are wild cards: a component with '<', '>', '"'
/// or '|' matches nothing, and names with characters that the code page lacks
/// are passed over. On Linux '*' and '?' match by character, with case, and
/// names that hold '\' are passed over, because no path of the library could
/// name them. "." and ".." are reported where the system does.
class DirectorySearch
{
public:
    DirectorySearch();
    ~DirectorySearch();

    DirectorySearch(const DirectorySearch&) = delete;
    DirectorySearch& operator=(const DirectorySearch&) = delete;

    /// Starts on a pattern: 0, or the runtime's errno value when nothing can be
    /// listed. ENOENT and ENOTDIR say that there is nothing.
    int open(const char* pattern);

    /// Starts on all entries of a directory: 0, or the runtime's errno value
    /// when it is none itself (a link to one is refused) or cannot be listed.
    /// Linux lists this directory, whatever has its name later. Windows lists
    /// what has the name when next() is called first, and holds nothing till
    /// then.
    int openDirectory(const char* path);

    /// What is listed from now on is what the directory holds, and not what
    /// this machine remembers of an earlier listing: a client of a network file
    /// system may take that to be true as long as the directory keeps its time,
    /// which two changes in one tick of the server's clock share. Before the
    /// first next(). No failure is known. Windows: without effect, its client
    /// remembers for a time that an administrator sets.
    void forgetEarlierListing();

    /// The next entry's name, valid until the next call; null at the end.
    const char* next();

    /// Lets go of what is open; next() gives nothing any more.
    void close();

    /// What the listing says of that entry, without asking for it: what it was
    /// when the system listed it, and never a link. none where the listing does
    /// not say.
    EntryKind listedKind() const;

    /// The size of that entry as fileStatus() gives it: 0, or the runtime's
    /// errno value. Windows: for what is listed as a file, and as the listing
    /// says; that of others must be asked for by path (ENOSYS).
    int size(std::int32_t& bytes) const;

    /// At the end: 0, or the code with which the system broke off.
    int code() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// An open directory in which entries are examined and removed by name without
/// following a link, whatever happens meanwhile to the names that led to it.
///
/// Linux: all calls are relative to a descriptor. Windows: the directory is
/// held open without permission for others to rename or remove it, links are
/// known by their reparse attribute, and nothing is removed of which an open
/// handle shows that it lies elsewhere (a system that resolves a link although
/// it was asked not to).
///
/// Names are taken literally, as list() and match() gave them. What the system
/// would not take literally (Windows: a blank or dot at the end) is a file that
/// cannot be removed. Functions that return a code return 0 for success, else
/// the runtime's errno value. The mode that allowRemovalsInside() changed is
/// back at the latest when the object goes. One thread at a time.
class RemovalDirectory
{
public:
    RemovalDirectory();
    ~RemovalDirectory();

    RemovalDirectory(RemovalDirectory&& other) noexcept;
    RemovalDirectory& operator=(RemovalDirectory&& other) noexcept;
    RemovalDirectory(const RemovalDirectory&) = delete;
    RemovalDirectory& operator=(const RemovalDirectory&) = delete;

    /// Opens the directory at a path; links on the way and at its end are
    /// followed. The empty path is the current directory.
    int open(const char* path);

    /// Opens a directory of a parent; a link is refused, and on Windows a path
    /// of more than 2561 bytes.
    int openChild(const RemovalDirectory& parent, const char* name);

    /// Appends all entries but "." and "..", with what the listing takes kind()
    /// to be. On failure some may be missing: EACCES where listing is not
    /// allowed, EILSEQ where Windows holds names that the code page lacks
    /// characters for.
    int list(std::vector<ListedEntry>& entries) const;

    /// The same for the entries that a pattern matches, as DirectorySearch
    /// matches them. ENOENT where that shows that there are none; without wild
    /// cards the code with which the system refuses to look at the one name.
    int match(const char* component, std::vector<ListedEntry>& entries) const;

    /// What an entry is: none only when it is not there, directory only when it
    /// is one itself. On Linux every link is a file, because it goes like one.
    EntryKind kind(const char* name) const;

    /// Removes a file or a link to one, never a directory.
    int removeFile(const char* name) const;

    /// Removes an empty directory or, on Windows, a link to a directory. A
    /// `child` that holds it open is closed first where the system asks for
    /// that.
    int removeDirectory(const char* name, RemovalDirectory* child) const;

    /// Takes off an entry what forbids to remove it: on Windows its read-only
    /// attribute; on Linux nothing, an entry's own mode plays no part. True
    /// when something was changed, which forbidRemovalOf() puts back.
    bool allowRemovalOf(const char* name) const;
    void forbidRemovalOf(const char* name) const;

    /// Takes off this directory what forbids to remove its entries: on Linux it
    /// gets its owner's write bit; on Windows nothing does.
    /// restorePermission() puts the mode back if it was changed. Neither does
    /// anything when it is called again.
    void allowRemovalsInside();
    void restorePermission();

    /// Gives up the descriptor for a while, so that deep trees do not need one
    /// for each level. resume() takes it up again as the parent of an open
    /// child: false when that parent is another directory by now. On Windows
    /// neither does anything: a directory that is let go could be swapped.
    void suspend();
    bool resume(const RemovalDirectory& child);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace platform
}  // namespace zorvel
