#pragma once

/// @file
/// The executable and the libraries that are loaded in the process. What is here:
/// @ref modules.

#include <zorvel/export.h>

#include <cstddef>
#include <cstdint>

/// @defgroup modules Loaded modules
/// @brief The executable and the libraries of the process, and where their files are.
///
/// Windows: as the system lists them. Linux: as the dynamic loader lists them,
/// the executable first, without the kernel's own (which has no file). Paths are
/// full, in the process's code page and with `\` between names, as the functions
/// of @ref paths take them.
///
/// @include find_module.cpp
///
/// @{

// ---------------------------------------------------------------------------
// The list of loaded modules
// ---------------------------------------------------------------------------

/// Walks a list of modules. It refers to the list's storage and must not
/// outlive it. One thread at a time.
class ZORVEL_API zvLoadedModuleListIterator
{
public:
    /// An iterator at index on count handles, which stay the caller's (null:
    /// none of them has a name). process: whose they are, as the list knows it;
    /// ignored on Linux. Never throws.
    zvLoadedModuleListIterator(void* process, void* const* modules, std::uint32_t count, std::uint32_t index);

    /// A copy walks the same list from the same position, with a text of its own.
    zvLoadedModuleListIterator(const zvLoadedModuleListIterator&) = default;

    /// Takes over the other's position only, also from an iterator of another
    /// list: this one goes on walking its own.
    zvLoadedModuleListIterator& operator=(const zvLoadedModuleListIterator& other);

    /// The full path of the module's file, in at most 2561 bytes, owned by the
    /// iterator until it moves. Empty outside the list. Where the system cannot
    /// tell, for instance because the module is gone by now, the text is still
    /// that of the position before (Linux: also for a name with `\` in it).
    /// Never null.
    const char* operator*() const;

    /// The position, counted from 0.
    std::uint32_t getIndex() const;

    /// Only positions are compared, as unsigned numbers.
    /// @{
    bool operator==(const zvLoadedModuleListIterator& other) const;
    bool operator!=(const zvLoadedModuleListIterator& other) const;
    bool operator<(const zvLoadedModuleListIterator& other) const;
    bool operator<=(const zvLoadedModuleListIterator& other) const;
    bool operator>(const zvLoadedModuleListIterator& other) const;
    bool operator>=(const zvLoadedModuleListIterator& other) const;
    /// @}

    /// One position on or back, without an end: position 4294967295 comes
    /// before position 0. What operator*() gave is overwritten.
    /// @{
    zvLoadedModuleListIterator& operator++();
    zvLoadedModuleListIterator& operator--();
    zvLoadedModuleListIterator operator++(int);
    zvLoadedModuleListIterator operator--(int);
    /// @}

private:
    ZORVEL_LOCAL void updateName();

    void* process;
    void* const* modules;
    std::uint32_t count;
    std::uint32_t index;
    char name[2562];
};

/// A snapshot of the modules that are loaded when it is made; what is loaded or
/// unloaded later is not seen, and nothing keeps a module loaded. One thread at
/// a time.
class ZORVEL_API zvLoadedModuleList
{
public:
    /// Takes the snapshot. Throws boost::system::system_error with the system's
    /// code when the system refuses. When memory is exhausted a snapshot of
    /// more than 128 modules holds the first 128.
    zvLoadedModuleList();

    /// Frees the snapshot; iterators on it must be gone.
    ~zvLoadedModuleList();

    /// Not copyable: a list is what is loaded now. Make another one.
    zvLoadedModuleList(const zvLoadedModuleList&) = delete;

    /// Makes this list refer to the storage of the other, which must outlive
    /// it; the storage that this one had is not freed. Of two lists that share
    /// a snapshot of more than 128 modules only one may ever be destroyed.
    zvLoadedModuleList& operator=(const zvLoadedModuleList& other);

    /// An iterator at the first module; it is at end() when there is none.
    zvLoadedModuleListIterator begin() const;

    /// The position behind the last module.
    zvLoadedModuleListIterator end() const;

private:
    ZORVEL_LOCAL void takeAll(std::uint32_t needed);

    void* process;
    void* inlineModules[128];
    void** modules;
    std::uint32_t count;
};

// ---------------------------------------------------------------------------
// Looking a module up
// ---------------------------------------------------------------------------

/// The test that zvGetLoadedModuleFullPath() applies to one module after another,
/// and the best one so far. One thread at a time.
class ZORVEL_API zvLoadedModuleNameChecker
{
public:
    /// Looks at nothing yet.
    ///
    /// - `outPath`: receives the path chosen; at least 2562 bytes, or null when
    ///   the path is not wanted.
    /// - `name`: what to look for in the paths, with case; null and "" are in all
    ///   of them.
    /// - `symbols`: what the module must export, `symbolCount` names; null for
    ///   nothing.
    ///
    /// All stay the caller's and must outlive the checker.
    zvLoadedModuleNameChecker(char* outPath, const char* name, const char** symbols, std::size_t symbolCount);

    /// A copy writes to the same buffer, and has a best module of its own.
    /// @{
    zvLoadedModuleNameChecker(const zvLoadedModuleNameChecker&);
    zvLoadedModuleNameChecker& operator=(const zvLoadedModuleNameChecker&);
    /// @}

    /// Leaves the caller's buffers alone.
    virtual ~zvLoadedModuleNameChecker();

    /// Looks at a module by its path, which is made full first. True when the
    /// name begins the file's name: nothing better can come. Otherwise false,
    /// and the path was taken if the module exports the symbols and its name is
    /// matched better than that of the module taken before: a match inside the
    /// file's name is better than one in its directory. False for null, "", and
    /// for a path of more than 2561 bytes.
    virtual bool operator()(const char* modulePath);

    /// outPath once a path was chosen, else null.
    char* getModuleFullPath() const;

protected:
    /// Whether the library at a path exports every symbol; it is loaded for the
    /// time of the question. True when none is asked for, false for a library
    /// that cannot be loaded and for a null symbol.
    bool verifyLibrarySymbols(const char* path);

private:
    ZORVEL_LOCAL void choose(const char* path, std::int32_t score);

    const char* name;
    char* outPath;
    char* result;
    const char** symbols;
    std::uint64_t symbolCount;
    std::int32_t bestScore;
};

/// The full path of a loaded module whose path holds name and which exports
/// the symbols: the first whose file name begins with name; if there is none
/// the first with name inside its file name; then the first with name in its
/// directory. Only the first place at which name stands in a path counts:
/// `foo` in `\foo\foo.so` is in the directory. Null and "" as name match every
/// module: the executable is found, or, with symbols, the first module that
/// exports them.
///
/// Returns outPath (at least 2562 bytes, the caller's), or null when no module
/// qualifies or outPath is null. A library that cannot be loaded for the
/// question of its symbols is passed over. Throws as zvLoadedModuleList does.
/// Threads may call it at the same time, each with a buffer of its own.
ZORVEL_API char* zvGetLoadedModuleFullPath(char* outPath, const char* name, const char** symbols,
                                           std::size_t symbolCount);

/// Clears a buffer of size bytes and writes into it the full path of a module:
/// null is the executable. False, with the buffer cleared, for what is no
/// module; false for a null buffer and for size 0. A path that does not fit is
/// cut, and the answer is true. Thread-safe.
///
/// Windows: module is its `HMODULE`. Linux: any address inside the module (of
/// one of its functions, say), or what `dlopen` gave for it.
ZORVEL_API bool zvGetCurrentModulePath(void* module, char* buffer, unsigned long size);

/// @}
