/// Prints the full form of paths, and the directories that they are in.
///
///   full_path PATH...

#include <zorvel/paths.h>

#include <cstring>
#include <iostream>

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        // The result is the returned pointer, which need not be the buffer.
        char buffer[2562];
        const char* const full = zvCanonicalizePath(buffer, sizeof buffer, argv[i], std::strlen(argv[i]));

        // '/' becomes '\', doubled separators become one.
        const zvPathString path(full);
        std::cout << path << (zvIsRootDir(path.c_str()) ? " is a root\n" : " is in " + path.directoryPart() + '\n');
    }
    return 0;
}
