/// Makes an empty file that nobody else has, in the directory for temporary
/// files, and prints its path.
///
///   scratch_file

#include <zorvel/errors.h>
#include <zorvel/fsutil.h>
#include <zorvel/lockfile.h>

#include <cstring>
#include <iostream>
#include <vector>

int main()
{
    std::vector<char> path(std::strlen(zvGetTempDir()) + 9);
    try {
        // The name is free when it is given, and somebody else may take it
        // before it is used: only who creates the file has it.
        do
            zvGetTempName(path.data());
        while (!zvGetDefaultFSImp()->createFileExclusive(path.data()));
    } catch (const zvFileBasedLockError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    std::cout << path.data() << '\n';
    return 0;
}
