#include "bench/files/peers_posix.h"

#include <boost/filesystem.hpp>

namespace zorvel {
namespace bench {

namespace {

namespace fs = boost::filesystem;

bool isDirectory(const fs::directory_entry& entry)
{
    return entry.symlink_status().type() == fs::directory_file;
}

std::uint64_t walk(const std::string& path)
{
    Tally tally;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
        tally.add(entry.path().c_str(), entry.path().size(), isDirectory(entry));
    return tally.entries();
}

std::uint64_t size(const std::string& path)
{
    std::uint64_t total = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
        total += isDirectory(entry) ? 0 : fs::file_size(entry.path());
    return total;
}

std::uint64_t match(const std::string&)
{
    Tally tally;
    static const std::string ending = ".txt";
    for (const std::string& folder : patternFolders()) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const std::string& name = entry.path().native();
            if (name.size() >= ending.size() && name.compare(name.size() - ending.size(), name.npos, ending) == 0)
                tally.add(name.data(), name.size(), isDirectory(entry));
        }
    }
    return tally.entries();
}

std::uint64_t remove(const std::string& path)
{
    return fs::remove_all(path);
}

std::uint64_t create(const std::string& path)
{
    fs::create_directories(path);
    return 1;
}

}  // namespace

Contestant boostFilesystem()
{
    return {"boost-filesystem", &walk, &size, &match, &remove, &create, &create};
}

}  // namespace bench
}  // namespace zorvel
