/// Makes an empty folder "build" in a directory; an old one goes, with all that
/// is in it.
///
///   clean_build DIRECTORY

#include <zorvel/fsutil.h>
#include <zorvel/paths.h>

#include <iostream>

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "usage: clean_build DIRECTORY\n";
        return 2;
    }
    const zvPathString directory(argv[1]);
    const zvPathString build(directory, "build");

    // True also when there was nothing to remove; a link goes, not its target.
    if (!zvRemoveRF(build.c_str())) {
        std::cerr << "something stays in " << build << '\n';
        return 1;
    }
    // With the directory itself and its parents, where they are missing.
    if (!zvMkdirP(build.c_str())) {
        std::cerr << build << " cannot be created\n";
        return 1;
    }
    std::cout << build << '\n';
    return 0;
}
