/// Prints what is at each path.
///
///   describe PATH...

#include <zorvel/fsutil.h>

#include <iostream>

namespace {

/// The bit of a mode word that lets the owner write.
const unsigned short ownerMayWrite = 0x80;

void describe(const char* path)
{
    std::cout << path << ": ";
    zvUInt64 space = 0;
    if (!zvFileOrDirExists(path))
        std::cout << "nothing";
    else if (!zvIsDirectory(path))
        std::cout << "a file of " << zvGetFileSize(path) << " bytes";
    else if (zvGetFileSystemAvailableSpace(path, &space))
        std::cout << "a directory, with " << space << " bytes free";
    else
        std::cout << "a directory";

    if (zvFileExists(path) && !(zvGetFilePermissions(path) & ownerMayWrite))
        std::cout << ", read-only";
    std::cout << '\n';
}

}  // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        describe(argv[i]);
    return 0;
}
