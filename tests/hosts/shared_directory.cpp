#include "tests/hosts/shared_directory.h"

#include "tests/hosts/machines.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <sstream>

namespace zorvel {
namespace test {

namespace {

/// No worker's number.
const int nobody = 1000;
const char server[] = "S";

std::string nextName()
{
    static std::atomic<int> number(0);
    return setting("ZORVEL_RUN") + '.' + std::to_string(++number);
}

}  // namespace

SharedDirectory::SharedDirectory(const std::string& share) : m_share(share)
{
    const std::string place = '/' + share + '/' + nextName();
    // The name of a share is that of its mount and of its directory there.
    m_path = setting("ZORVEL_MOUNTS") + '/' + share + place;
    m_onServer = setting("ZORVEL_EXPORT") + place;
    onMachine(server, {"mkdir", m_onServer});
    onMachine(server, {"chmod", "0777", m_onServer});
}

SharedDirectory::~SharedDirectory()
{
    try {
        onMachine(server, {"rm", "-rf", m_onServer});
    } catch (const std::exception&) {
        // The server's disk is made anew for the next run.
    }
}

std::vector<std::string> SharedDirectory::lockFiles() const
{
    std::istringstream names(onMachine(server, {"ls", "-A", m_onServer}));
    std::vector<std::string> result;
    for (std::string name; std::getline(names, name);)
        if (name[0] == '.')
            result.push_back(name);
    return result;
}

std::vector<std::string> SharedDirectory::locks() const
{
    std::vector<std::string> result;
    for (const std::string& name : lockFiles())
        if (name.rfind(".deploy_", 0) == 0)
            result.push_back(name);
    return result;
}

/// One command for all files, because each costs a guest some time.
void SharedDirectory::writeFirstRelease() const
{
    std::vector<std::string> command = {"sh", "-c",
                                        "i=0; for file; do printf %s \"$file\" >\"$0.$i\"; i=$((i + 1)); done; "
                                        "chmod 0666 \"$0\".*",
                                        m_onServer + "/release"};
    const std::vector<std::string> files = releaseFiles(0, nobody);
    command.insert(command.end(), files.begin(), files.end());
    onMachine(server, command);
}

/// The files of a release begin with the same line, which tells them apart.
Look SharedDirectory::release() const
{
    const std::string all = onMachine(server, {"sh", "-c", "cat \"$0\".*", m_onServer + "/release"});
    const std::string header = all.substr(0, all.find('\n') + 1);
    std::vector<std::string> files;
    for (std::size_t from = 0; !header.empty() && from < all.size();) {
        const std::size_t to = std::min(all.find(header, from + 1), all.size());
        files.push_back(all.substr(from, to - from));
        from = to;
    }
    files.resize(releaseSize);
    return judge(files, std::set<int>());
}

std::vector<std::string> shares()
{
    return settings("ZORVEL_SHARES");
}

}  // namespace test
}  // namespace zorvel
