#include <zorvel/fsutil.h>
#include <zorvel/paths.h>

#include "fsutil/detail/walk_pattern.h"

#include <cstring>
#include <string>

namespace {

const int depthLimit = 1024;

/// The pattern of everything in a directory. The separator is added by
/// character: a name that ends in a double-byte character with the second byte
/// 0x5C gets one too, else its neighbours that begin alike would be counted.
std::string patternOfAll(const std::string& directory)
{
    const char* const last = directory.data() + directory.size() - 1;
    const bool endsInSeparator = zvFindLastSep(directory.data(), last) == last;
    return directory + (endsInSeparator ? "*" : "\\*");
}

}  // namespace

zvUInt64 zvGetDirectorySize(const char* dir)
{
    using namespace zorvel::fsutil;
    if (!dir || !*dir || strnlen(dir, patternLimit + 1) > patternLimit)
        return 0;
    // The current directory and roots are entered by the walk's own rules.
    const bool isEntered = isCurrentDirectoryForm(dir) || zvIsRootDir(dir);
    const std::string pattern = isEntered ? dir : patternOfAll(dir);
    zvUInt64 total = 0;
    zvFindMatchingFilesAndDirs(pattern.c_str(), zvDirectorySizeAdder(&total), zvIgnoreString(), depthLimit, false);
    return total;
}
