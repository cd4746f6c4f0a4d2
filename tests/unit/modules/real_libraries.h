#pragma once

#include "tests/support/temporary_tree.h"

#include <zorvel/modules.h>

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A library that is loaded for a scope, through the suite.
class Loaded
{
public:
    /// A path in the library's form.
    explicit Loaded(const std::string& path);
    ~Loaded();
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;

    /// Null when it could not be loaded.
    void* get() const { return m_library; }
    /// Unloads it now.
    void unload();

private:
    void* m_library;
};

/// The libraries that were built with the tests.
std::string plainLibrary();
std::string dependentLibrary();

/// This program, full and with '\'.
std::string executable();

/// The same with '\' between names.
std::string libraryForm(std::string path);

/// The ending of the names of libraries.
std::string librarySuffix();

/// Copies the plain library into a tree.
void copyPlainLibrary(const TemporaryTree& tree, const std::string& relative);

/// What a walk through a snapshot comes upon.
std::vector<std::string> walkThrough(const zvLoadedModuleList& list);

/// How often a walk comes upon a path.
std::size_t occurrences(const std::vector<std::string>& paths, const std::string& path);

/// The answer of zvGetLoadedModuleFullPath; "none" for null.
std::string lookUpReal(const char* name, const std::vector<const char*>& symbols = {});

}  // namespace test
}  // namespace zorvel
