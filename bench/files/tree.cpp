#include "bench/files/tree.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace zorvel {
namespace bench {

namespace {

const std::uint64_t filesPerFolder = 50;
const std::uint64_t foldersPerGroup = 50;

std::string numbered(const char* prefix, std::uint64_t number, const char* suffix = "")
{
    const std::string digits = std::to_string(number);
    return prefix + std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits + suffix;
}

bool isText(std::uint64_t number)
{
    return number % 10 == 7;
}

std::uint64_t sizeOf(std::uint64_t number)
{
    return number * 97 % 4000;
}

}  // namespace

Tree::Tree(std::uint64_t fileCount)
    : files(fileCount), folders(fileCount / filesPerFolder), texts(fileCount / 10), bytes(0)
{
    for (std::uint64_t number = 0; number < filesPerFolder; ++number)
        bytes += sizeOf(number);
    bytes *= folders;
}

bool isQuick()
{
    const char* const quick = std::getenv("ZORVEL_BENCH_QUICK");
    return quick && std::strcmp(quick, "1") == 0;
}

std::string treeRoot()
{
    const char* const wanted = std::getenv("ZORVEL_BENCH_TREE");
    const std::string root = wanted && *wanted ? wanted : "build/bench/tree";
    std::filesystem::create_directories(root);
    return root;
}

std::string inTreeRoot(const std::string& name)
{
    return treeRoot() + '/' + name;
}

std::vector<std::string> foldersOf(const std::string& path, const Tree& tree)
{
    std::vector<std::string> folders;
    std::string group;
    for (std::uint64_t folder = 0; folder < tree.folders; ++folder) {
        const std::uint64_t inGroup = folder % foldersPerGroup;
        if (inGroup == 0)
            group = path + '/' + numbered("group-", folder / foldersPerGroup);
        folders.push_back(inGroup == 0 ? group : group + '/' + numbered("folder-", inGroup));
    }
    return folders;
}

void makeTree(const std::string& path, const Tree& tree)
{
    makeFolder(path);
    for (const std::string& folder : foldersOf(path, tree)) {
        makeFolder(folder);
        for (std::uint64_t number = 0; number < filesPerFolder; ++number)
            makeFile(folder + '/' + numbered("file-", number, isText(number) ? ".txt" : ".dat"), sizeOf(number));
    }
}

std::string keptTree(const Tree& tree)
{
    const std::string path = inTreeRoot("kept-" + std::to_string(tree.files));
    const std::string mark = path + ".complete";
    if (!exists(mark)) {
        clear(path);
        makeTree(path, tree);
        std::ofstream(mark).put('\n');
    }
    return path;
}

bool exists(const std::string& path)
{
    return std::filesystem::exists(path);
}

void clear(const std::string& path)
{
    std::filesystem::remove_all(path);
}

}  // namespace bench
}  // namespace zorvel
