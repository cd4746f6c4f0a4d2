#include <zorvel/fsutil.h>
#include <zorvel/paths.h>

#include "fsutil/detail/path_buffer.h"
#include "fsutil/detail/walk_pattern.h"

#include <cstring>

namespace {

const int depthLimit = 1024;

}  // namespace

zvUInt64 zvGetDirectorySize(const char* dir)
{
    using namespace zorvel::fsutil;
    if (!dir || !*dir || strnlen(dir, patternLimit + 1) > patternLimit)
        return 0;
    PathBuffer pattern(dir);
    // The current directory and roots are entered by the walk's own rules. Elsewhere the pattern is joined by the rules
    // that the walk splits it by, whatever lead-byte test is installed: it means what is in the directory and never the
    // directory's neighbours.
    const bool isEntered = isCurrentDirectoryForm(dir) || zvIsRootDir(dir);
    if (!isEntered && !pattern.append("*"))
        return 0;
    zvUInt64 total = 0;
    zvFindMatchingFilesAndDirs(pattern.c_str(), zvDirectorySizeAdder(&total), zvIgnoreString(), depthLimit, false);
    return total;
}
