#include "tests/unit/modules/real_libraries.h"

#include "suite/qx.h"
#include "tests/support/native_process.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace zorvel {
namespace test {

namespace {

std::string contentOf(const char* file)
{
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

/// The host's path of a file of the build, as Windows programs know it.
std::string builtFile(const char* hostPath)
{
    const std::string program = executable();
    const std::string drive = program.size() > 1 && program[1] == ':' ? program.substr(0, 2) : "";
    return libraryForm(drive + hostPath);
}

}  // namespace

Loaded::Loaded(const std::string& path) : m_library(qxLoadLibrary(path.c_str(), nullptr)) {}

Loaded::~Loaded()
{
    unload();
}

void Loaded::unload()
{
    if (m_library)
        qxUnloadLibrary(m_library);
    m_library = nullptr;
}

std::string plainLibrary()
{
    return builtFile(ZORVEL_PLAIN_LIBRARY);
}

std::string dependentLibrary()
{
    return builtFile(ZORVEL_DEPENDENT_LIBRARY);
}

std::string executable()
{
    return libraryForm(native::programPath());
}

std::string libraryForm(std::string path)
{
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string librarySuffix()
{
    return ZORVEL_LIBRARY_SUFFIX;
}

void copyPlainLibrary(const TemporaryTree& tree, const std::string& relative)
{
    static const std::string content = contentOf(ZORVEL_PLAIN_LIBRARY);
    tree.file(relative, content);
}

std::vector<std::string> walkThrough(const zvLoadedModuleList& list)
{
    std::vector<std::string> paths;
    for (zvLoadedModuleListIterator at = list.begin(), end = list.end(); at != end; ++at)
        paths.push_back(*at);
    return paths;
}

std::size_t occurrences(const std::vector<std::string>& paths, const std::string& path)
{
    return static_cast<std::size_t>(std::count(paths.begin(), paths.end(), path));
}

std::string lookUpReal(const char* name, const std::vector<const char*>& symbols)
{
    std::vector<const char*> wanted = symbols;
    std::string buffer(2562, '#');
    const char* const found =
        zvGetLoadedModuleFullPath(&buffer[0], name, wanted.empty() ? nullptr : wanted.data(), wanted.size());
    return found ? found : "none";
}

}  // namespace test
}  // namespace zorvel
