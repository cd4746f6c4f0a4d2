/// Prints where a library that is loaded in this process comes from; without
/// a name, where all of them do.
///
///   find_module [PART_OF_THE_NAME [SYMBOL...]]

#include <zorvel/modules.h>

#include <boost/system/system_error.hpp>

#include <iostream>
#include <vector>

namespace {

void listAll()
{
    const zvLoadedModuleList modules;
    for (zvLoadedModuleListIterator module = modules.begin(); module != modules.end(); ++module)
        std::cout << *module << '\n';
}

/// The symbols are what the library has to export.
bool find(const char* name, std::vector<const char*> symbols)
{
    char path[2562];
    if (!zvGetLoadedModuleFullPath(path, name, symbols.data(), symbols.size()))
        return false;
    std::cout << path << '\n';
    return true;
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        if (argc < 2) {
            listAll();
        } else if (!find(argv[1], std::vector<const char*>(argv + 2, argv + argc))) {
            std::cerr << "no such library is loaded\n";
            return 1;
        }
        return 0;
    } catch (const boost::system::system_error& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
