#include <zorvel/modules.h>

#include "platform/path_rules.h"
#include "suite/qx.h"

#include <zorvel/paths.h>

#include <cstring>

namespace {

const std::size_t pathSize = 2562;

const std::int32_t hit = 16;
const std::int32_t inFileName = 8;
const std::int32_t elsewhere = 0;
const std::int32_t nothingYet = -1;

const char* const slash = "\\";

/// The path in full where the system can tell, else as it is; false when that
/// does not fit.
bool makeFull(const char* path, char (&full)[pathSize])
{
    if (zorvel::platform::fullPath(path, full, pathSize))
        return true;
    const std::size_t length = strnlen(path, pathSize);
    if (length == pathSize)
        return false;
    std::memcpy(full, path, length + 1);
    return true;
}

/// What a match at a place of the path is worth. Separators are looked for byte
/// by byte, as the name was.
std::int32_t scoreOf(const char* path, const char* match)
{
    if (!match || std::strstr(match, slash))
        return elsewhere;
    return match == path || zvIsPathSep(match[-1]) ? hit : inFileName;
}

}  // namespace

zvLoadedModuleNameChecker::zvLoadedModuleNameChecker(char* toPath, const char* part, const char** wanted,
                                                     std::size_t number)
    : name(part),
      outPath(toPath),
      result(nullptr),
      symbols(wanted),
      symbolCount(wanted ? number : 0),
      bestScore(nothingYet)
{
}

zvLoadedModuleNameChecker::zvLoadedModuleNameChecker(const zvLoadedModuleNameChecker&) = default;
zvLoadedModuleNameChecker& zvLoadedModuleNameChecker::operator=(const zvLoadedModuleNameChecker&) = default;
zvLoadedModuleNameChecker::~zvLoadedModuleNameChecker() = default;

bool zvLoadedModuleNameChecker::operator()(const char* modulePath)
{
    char path[pathSize];
    if (!modulePath || !*modulePath || !makeFull(modulePath, path))
        return false;
    // The first occurrence decides: one in a directory hides one in the file's name. Callers count on the order that
    // this gives.
    const char* const match = name ? std::strstr(path, name) : nullptr;
    if (name && *name && !match)
        return false;
    if (symbolCount != 0 && !verifyLibrarySymbols(path))
        return false;
    const std::int32_t score = scoreOf(path, match);
    // Not for a score as good as the best so far: of equal ones the first stays. A hit is taken whatever was before.
    if (score == hit || score > bestScore)
        choose(path, score);
    return score == hit;
}

void zvLoadedModuleNameChecker::choose(const char* path, std::int32_t score)
{
    bestScore = score;
    result = outPath;
    if (outPath)
        std::strcpy(outPath, path);
}

char* zvLoadedModuleNameChecker::getModuleFullPath() const
{
    return result;
}

bool zvLoadedModuleNameChecker::verifyLibrarySymbols(const char* path)
{
    if (symbolCount == 0)
        return true;
    void* detail = nullptr;
    void* const library = qxLoadLibrary(path, &detail);
    if (!library)
        return false;
    std::uint64_t found = 0;
    while (found < symbolCount && qxFindSymbolInLibrary(library, symbols[found]))
        ++found;
    qxUnloadLibrary(library);
    return found == symbolCount;
}
