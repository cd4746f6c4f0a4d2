/// Prints every path that one of the patterns matches, each once.
///
///   each_once PATTERN...

#include <zorvel/errors.h>
#include <zorvel/fsutil.h>
#include <zorvel/suite.h>

#include <iostream>
#include <set>
#include <vector>

int main(int argc, char** argv)
{
    // Destroyed at the end, with all its names.
    zvScopedResource<_namehash_context*> names(qx_namehash_create(), &qx_namehash_destroy);

    std::vector<const char*> found;
    const zvHashNameToVector collect(found, names.get());
    for (int i = 1; i < argc; ++i)
        zvFindMatchingFilesAndDirs(argv[i], collect, collect, 0, false);

    // Equal paths are one text of the set: to compare the addresses is enough.
    std::set<const char*> printed;
    for (const char* const path : found) {
        if (path && printed.insert(path).second)
            std::cout << path << '\n';
    }
    return 0;
}
