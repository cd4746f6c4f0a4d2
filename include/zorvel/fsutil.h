#pragma once

/// @file
/// Files and directories: queries, permissions, walk, creation, removal,
/// temporary names. What is here: @ref files.

#include <zorvel/export.h>
#include <zorvel/suite.h>

#include <vector>

/// @defgroup files Files
/// @brief Queries, permissions, the walk over a directory, recursive creation and removal, temporary names.
///
/// Paths are NUL-terminated byte strings in the process's multibyte code page
/// (Linux: the codeset of the locale); `\` and `/` both separate, on both
/// systems. They stay the caller's, and nothing keeps them after the call.
///
/// No function here throws for a failure of the file system: the result says so.
/// All may be called from any thread.
///
/// What is done to the text of a path alone, without a look at the disk, is in
/// @ref paths. A file that only one of several can create is one of
/// zvAbstractFS::createFileExclusive().
///
/// Linux: a drive letter is an ordinary name, and a name that itself holds `\`
/// cannot be reached by any path. Windows: the system's ANSI functions are
/// called, which take paths of 259 bytes at most.
///
/// @{

// ---------------------------------------------------------------------------
// Queries and permissions
// ---------------------------------------------------------------------------

/// @defgroup queries Queries and permissions
/// @brief What is at a path, how large it is, who may write it.
///
/// Sizes are in bytes. A mode word has the type and permission bits of the
/// runtime's `st_mode`; of the permissions Windows keeps one only, whether the
/// file may be written.
///
/// @include describe.cpp
///
/// @{

/// Whether the path names a directory, or a link to one. False for null, the
/// empty path and anything that cannot be examined. Windows: a link to a
/// directory counts also when it leads nowhere.
ZORVEL_API bool zvIsDirectory(const char* path);

/// Whether the path names anything: a file, a directory or a link, also one
/// that leads nowhere. False for null.
ZORVEL_API bool zvFileOrDirExists(const char* path);

/// Whether the path names something that is not a directory. False for null. A
/// link that leads nowhere counts as a file (on Windows one to a directory does
/// not).
ZORVEL_API bool zvFileExists(const char* path);

/// The size of a file in bytes, read through a signed 32-bit field: 2 GiB and
/// more come out negative or cut. 0 for a directory, for null, and for what
/// cannot be examined. Linux: links are followed.
ZORVEL_API long long zvGetFileSize(const char* path);

/// Stores the bytes free to the calling user on the file system of a directory.
/// On failure (null as path among them) false, with all bits of the result set.
/// False for a null result.
/// The path of a file gives its file system on Linux and fails on Windows.
ZORVEL_API bool zvGetFileSystemAvailableSpace(const char* path, zvUInt64* available);

/// The runtime's mode word of a path: its type and permission bits; bit 0x80
/// lets the owner write. 0 when it cannot be read, and for null. Linux: links
/// are followed.
ZORVEL_API unsigned short zvGetFilePermissions(const char* path);

/// Sets the permission bits of a path: 0 on success, -1 on failure and for null. Windows
/// knows bit 0x80 only, Linux takes the twelve bits below the type. Links are
/// followed.
ZORVEL_API int zvSetFilePermissions(const char* path, unsigned short mode);

/// Lets the owner write and returns the mode word from before, to be handed
/// back to zvSetFilePermissions(). 0, and nothing changed, when the mode cannot
/// be read: not for paths that may be missing. Whether the change succeeded is
/// not told. Linux: links are followed.
ZORVEL_API unsigned short zvEnableWritePermission(const char* path);

/// Forbids the owner to write; otherwise as zvEnableWritePermission().
ZORVEL_API unsigned short zvDisableWritePermission(const char* path);

/// @}

// ---------------------------------------------------------------------------
// Callback objects
// ---------------------------------------------------------------------------

/// @defgroup callbacks Callback objects
/// @brief What the walk calls with each path: an adapter for a lambda, a sum, a list of names, nothing.
///
/// The walk (zvFindMatchingFilesAndDirs()) calls them on the thread that walks, one
/// call at a time; it does not copy them. An exception of a call leaves the walk.
/// What an object refers to is its creator's.
///
/// @dontinclude directory_sizes.cpp
/// @skip Called with the path
/// @until onDirectory, 0, false
///
/// @{

/// Called with each path that a walk finds. The text is the caller's and changes
/// after the call: copy what is to be kept. Derive from it, or wrap a lambda in a
/// zvStringProcedureAdapter.
class ZORVEL_API zvStringProcedure
{
public:
    /// Nothing to copy.
    /// @{
    zvStringProcedure();
    zvStringProcedure(const zvStringProcedure&);
    zvStringProcedure& operator=(const zvStringProcedure&);
    virtual ~zvStringProcedure();
    /// @}

    /// The walk never gives null.
    virtual void operator()(const char* path) const = 0;
};

/// Called with the beginning of a path. Nothing in the library calls one; it is
/// for callers' own use.
class ZORVEL_API zvStringPrefixProcedure
{
public:
    /// Nothing to copy.
    /// @{
    zvStringPrefixProcedure();
    zvStringPrefixProcedure(const zvStringPrefixProcedure&);
    zvStringPrefixProcedure& operator=(const zvStringPrefixProcedure&);
    virtual ~zvStringPrefixProcedure();
    /// @}

    /// The text is the caller's.
    virtual void operator()(const char* prefix) const = 0;
};

/// A test on a string. Nothing in the library calls one; it is for callers' own
/// use.
class ZORVEL_API zvStringPredicate
{
public:
    /// Nothing to copy.
    /// @{
    zvStringPredicate();
    zvStringPredicate(const zvStringPredicate&);
    zvStringPredicate& operator=(const zvStringPredicate&);
    virtual ~zvStringPredicate();
    /// @}

    /// The answer. The text is the caller's.
    virtual bool operator()(const char* text) const = 0;
};

/// A test on the beginning of a string. Nothing in the library calls one; it is
/// for callers' own use.
class ZORVEL_API zvStringPrefixPredicate
{
public:
    /// Nothing to copy.
    /// @{
    zvStringPrefixPredicate();
    zvStringPrefixPredicate(const zvStringPrefixPredicate&);
    zvStringPrefixPredicate& operator=(const zvStringPrefixPredicate&);
    virtual ~zvStringPrefixPredicate();
    /// @}

    /// The answer. The text is the caller's.
    virtual bool operator()(const char* prefix) const = 0;
};

/// Does nothing: for what a walk finds and nobody wants. Thread-safe.
class ZORVEL_API zvIgnoreString : public zvStringProcedure
{
public:
    /// Nothing to copy.
    /// @{
    zvIgnoreString();
    zvIgnoreString(const zvIgnoreString&);
    zvIgnoreString& operator=(const zvIgnoreString&);
    ~zvIgnoreString() override;
    /// @}

    /// Does nothing, with null too.
    void operator()(const char* path) const override;
};

/// Adds the size of each file (zvGetFileSize()) to a total of the caller, which
/// must outlive the adder. A null total is left alone. One thread at a time for
/// each total.
class ZORVEL_API zvDirectorySizeAdder : public zvStringProcedure
{
public:
    /// Bytes. The total is not set to 0 here.
    explicit zvDirectorySizeAdder(zvUInt64* total);

    /// A copy adds to the same total.
    /// @{
    zvDirectorySizeAdder(const zvDirectorySizeAdder&);
    zvDirectorySizeAdder& operator=(const zvDirectorySizeAdder&);
    ~zvDirectorySizeAdder() override;
    /// @}

    /// Adds the size of one file: nothing for null and for what cannot be
    /// examined. A size that zvGetFileSize() gives as negative makes the total
    /// smaller.
    void operator()(const char* path) const override;

private:
    zvUInt64* m_total;
};

/// Interns each path in a set of names and appends the interned pointer (null
/// when the set refuses it) to a vector. Both belong to the caller and must
/// outlive this object; the pointers live as long as the set. One thread at a
/// time.
///
/// @dontinclude each_once.cpp
/// @skip std::vector<const
/// @until collect, collect
class ZORVEL_API zvHashNameToVector : public zvStringProcedure
{
public:
    /// Refers to both. The set is one of qx_namehash_create(); a null one
    /// refuses every name.
    zvHashNameToVector(std::vector<const char*>& names, _namehash_context* context);

    /// A copy appends to the same vector.
    /// @{
    zvHashNameToVector(const zvHashNameToVector&);
    ~zvHashNameToVector() override;
    /// @}

    /// Appends one path, or null for null. std::bad_alloc leaves when the vector
    /// cannot grow.
    void operator()(const char* path) const override;

private:
    std::vector<const char*>& m_names;
    _namehash_context* m_context;
};

/// Calls any callable with each path and ignores its result. The callable is
/// the creator's and must outlive the adapter.
template <class F>
class zvStringProcedureAdapter : public zvStringProcedure
{
public:
    /// Refers to the callable; does not copy it.
    explicit zvStringProcedureAdapter(F& callable) : m_callable(callable) {}

    /// Calls the callable. Its exceptions leave.
    void operator()(const char* path) const override { m_callable(path); }

private:
    F& m_callable;
};

/// @}

// ---------------------------------------------------------------------------
// Directory walk
// ---------------------------------------------------------------------------

/// @defgroup walk Directory walk
/// @brief Every entry that a pattern matches, also in the directories below; whether there is one; how large all is.
///
/// What a walk finds goes to @ref callbacks.
///
/// @include directory_sizes.cpp
///
/// @{

/// Hands the full path of every entry that matches a pattern to one of two
/// callbacks and returns the number of calls made.
///
/// - `pattern`: a path whose last component may hold `*` and `?`; at most 1024
///   bytes. `.` (also `.\` and `./`) and a root stand for all entries in them,
///   one level of depth being used up by entering. A trailing separator is
///   ignored.
/// - `fileProc` gets what is no directory, `dirProc` the directories. Links to
///   directories are reported as directories and not entered.
/// - `depth`: how many levels of matching directories are entered, each
///   directory being reported before its contents; only the top level is
///   filtered by the pattern. 0 and less: none.
/// - `stopAtFirst`: end after the first call.
///
/// 0 for a null, empty or longer pattern, one with `*` in its directory part,
/// one whose last component is `.` or `..`, and whatever cannot be listed. The
/// order is the system's. An entry whose path needs more than 2561 bytes is not
/// reported, and on Linux neither is one whose name holds `\` (no path can
/// name it); on Windows neither is one whose name has characters that the code
/// page lacks. Exceptions of a callback leave the walk, nothing is leaked.
///
/// Windows matches as the system does (case is ignored, `*.*` is everything,
/// short names match too), but only `*` and `?` are wild cards: a last component
/// with `<`, `>`, `"` or `|`, which no name can hold, matches nothing. Linux
/// matches by character, with case: a double-byte character is one.
ZORVEL_API int zvFindMatchingFilesAndDirs(const char* pattern, const zvStringProcedure& fileProc,
                                          const zvStringProcedure& dirProc, int depth, bool stopAtFirst);

/// The sum of zvGetFileSize() over all files below a directory, in bytes, up to
/// 1024 levels deep. 0 for null, the empty path, one that takes more than 1024
/// bytes with a separator and `*` behind it, a missing directory. A file of 2 GiB
/// or more can make it smaller; what links to directories lead to is not counted.
ZORVEL_API zvUInt64 zvGetDirectorySize(const char* dir);

/// Whether anything matches the pattern. It is that of
/// zvFindMatchingFilesAndDirs() at depth 0: false for `.`, for roots and for what
/// cannot be listed.
ZORVEL_API bool zvMatchingFileOrDirExists(const char* pattern);

/// @}

// ---------------------------------------------------------------------------
// Recursive creation and removal
// ---------------------------------------------------------------------------

/// @defgroup trees Recursive creation and removal
/// @brief A directory with all its parents; everything that a pattern matches, with all that is in it.
///
/// @include clean_build.cpp
///
/// @{

/// Creates a directory and every missing parent. True when the directory
/// exists at the end (and for an empty path), false for null and at the first
/// directory that could not be created; those created before stay. Separators
/// are unified and blanks around the path dropped. Server and share of a
/// network path (`//server/share`, two leading separators) are never created
/// and not looked at: a path of these two alone gives true, on Linux too, where
/// nothing else treats them as a network path. A drive without a separator
/// (`C:x`) is not supported.
///
/// A directory that somebody else creates at the same moment makes it false:
/// call again. Exhausted memory leaves as std::bad_alloc.
///
/// Linux: the new directories are open to all as far as the umask lets them.
/// Windows: their rights are those that the system gives.
ZORVEL_API bool zvMkdirP(const char* path);

/// Removes every entry that the pattern matches, directories with all that is
/// in them, forcing write permission on the way. True when all of it is gone
/// (also when nothing matched), false when something had to stay; the rest is
/// removed nevertheless, and what stayed has its write bit back, also when
/// exhausted memory leaves as std::bad_alloc.
///
/// Nothing matched also where the directory part is missing, is no directory,
/// or may not be opened or listed. Any other failure to look (descriptors or
/// memory of the system are used up) gives false.
///
/// The pattern is that of zvFindMatchingFilesAndDirs() at depth 0, so `.` and
/// roots remove nothing and give true; null too. Links are removed themselves:
/// what they point to is never touched, also when somebody swaps a directory for
/// a link while the removal runs.
///
/// Windows: an entry stays (false) whose path is longer than the system takes
/// (259 bytes, in no case more than 2561), or whose name the system would not
/// take literally (a blank or dot at its end, characters that the code page
/// lacks). Linux has no such limits below the pattern.
ZORVEL_API bool zvRemoveRF(const char* pattern);

/// @}

// ---------------------------------------------------------------------------
// Temporary names
// ---------------------------------------------------------------------------

/// @defgroup temporary Temporary names
/// @brief The directory for temporary files, and a name in it that is free.
///
/// @include scratch_file.cpp
///
/// @{

/// The directory for temporary files, with a `\` at its end: the value of the
/// environment variable `TEMP`, else of `TMP`, else the current directory, else
/// `\tmp`. Chosen once, by the first call; later changes are not seen. The text
/// is the library's and lives as long as the process. What takes more than 2560
/// bytes counts as not set; an empty value is the root. The directory is not
/// looked at, and a name that ends in a double-byte character whose second byte
/// is 0x5C gets no separator (see zvAddPathSep()). Thread-safe.
///
/// Linux: the same two variables; `TMPDIR` is not asked.
ZORVEL_API const char* zvGetTempDir();

/// Writes a path in zvGetTempDir() that nothing has at the moment into a buffer and
/// returns the buffer: `tp` and six digits behind the directory. The buffer is the
/// caller's and has room for the directory and 9 bytes. Nothing is created or
/// reserved: create the file exclusively (zvAbstractFS::createFileExclusive()), and
/// ask again if somebody was faster. Does not return while all million names are
/// taken. Null for null. Threads may call it at the same time, each with a buffer
/// of its own.
ZORVEL_API char* zvGetTempName(char* buffer);

/// @}

/// @}
