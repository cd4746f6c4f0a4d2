/// Prints the sizes of the directories in a directory, the largest first.
///
///   directory_sizes [DIRECTORY]

#include <zorvel/fsutil.h>

#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>

int main(int argc, char** argv)
{
    const std::string directory = argc > 1 ? argv[1] : ".";
    if (!zvIsDirectory(directory.c_str())) {
        std::cerr << directory << " is no directory\n";
        return 1;
    }

    // Called with the path of each directory that the walk comes upon.
    std::multimap<zvUInt64, std::string, std::greater<zvUInt64>> sizes;
    const auto measure = [&](const char* path) { sizes.emplace(zvGetDirectorySize(path), path); };
    const zvStringProcedureAdapter<decltype(measure)> onDirectory(measure);

    // Everything in the directory; 0: none of what is found is entered.
    const std::string pattern = directory + "\\*";
    zvFindMatchingFilesAndDirs(pattern.c_str(), zvIgnoreString(), onDirectory, 0, false);

    for (const auto& entry : sizes)
        std::cout << std::setw(15) << entry.first << "  " << entry.second << '\n';
    return 0;
}
