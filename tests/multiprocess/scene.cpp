#include "tests/multiprocess/scene.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <exception>
#include <sstream>

namespace zorvel {
namespace test {

namespace {

/// No worker's number.
const int nobody = 1000;
/// Lock files of more than that are stale to the library.
const long long secondsStale = 30;
const long secondsAged = 40;
const char lockFilePrefix[] = ".deploy_";

bool isLockFile(const std::string& name)
{
    return name.compare(0, sizeof lockFilePrefix - 1, lockFilePrefix) == 0;
}

}  // namespace

std::string Scene::directory() const
{
    std::string path = m_tree.root();
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

void Scene::writeFirstRelease() const
{
    const std::vector<std::string> files = releaseFiles(0, nobody);
    for (int i = 0; i < releaseSize; ++i)
        m_tree.file("release." + std::to_string(i), files[i]);
}

Look Scene::release() const
{
    std::vector<std::string> files;
    for (int i = 0; i < releaseSize; ++i)
        files.push_back(m_tree.content("release." + std::to_string(i)));
    return judge(files, numbersIn(m_tree.names(), "writing"));
}

std::vector<std::string> Scene::lockFiles() const
{
    std::vector<std::string> names = m_tree.names();
    names.erase(std::remove_if(names.begin(), names.end(), [](const std::string& name) { return !isLockFile(name); }),
                names.end());
    return names;
}

int Scene::calibrations() const
{
    const std::vector<std::string> names = m_tree.names();
    return static_cast<int>(std::count_if(names.begin(), names.end(), [](const std::string& name) {
        return name[0] == '.' && name.find_first_not_of("0123456789", 1) == std::string::npos;
    }));
}

int Scene::ageAbandoned() const
{
    const long long now = static_cast<long long>(std::time(nullptr));
    if (m_tree.exists("inside"))
        m_tree.removeDirectory("inside");
    int count = 0;
    for (const std::string& name : lockFiles()) {
        if (!touchedAfter(name, now - 3) && !aged(name))
            count += makeStale(name);
    }
    return count;
}

std::vector<std::string> Scene::ageTracesOf(int worker, long long killed) const
{
    std::vector<std::string> traces;
    for (const std::string& name : lockFiles())
        if (!touchedAfter(name, killed) && !aged(name))
            traces.push_back(name);
    const std::string reading = "reading." + std::to_string(worker);
    if (m_tree.exists(reading))
        m_tree.removeDirectory(reading);
    // Whoever has the directory as a writer now is the dead one.
    if (std::count(traces.begin(), traces.end(), ".deploy_write_lock") > 0 && m_tree.exists("inside"))
        m_tree.removeDirectory("inside");
    traces.erase(std::remove_if(traces.begin(), traces.end(),
                                [this](const std::string& name) { return !makeStale(name); }),
                 traces.end());
    return traces;
}

/// On a machine so busy that half a minute has passed, the others may take a
/// file over just now.
bool Scene::makeStale(const std::string& name) const
{
    try {
        m_tree.age(name, -secondsAged);
    } catch (const std::exception&) {
        if (m_tree.exists(name))
            throw;
        return false;
    }
    return true;
}

std::map<std::string, Scene::Stamp> Scene::stamps() const
{
    std::map<std::string, Stamp> files;
    for (const std::string& name : lockFiles())
        files[name] = stampOf(name);
    return files;
}

std::map<std::string, Scene::Stamp> Scene::quietLockFiles() const
{
    // The times of files move on by some milliseconds at once.
    const Stamp youngest = Stamp::clock::now() - std::chrono::milliseconds(50);
    const Stamp oldest = youngest - std::chrono::seconds(secondsStale);
    std::map<std::string, Stamp> files = stamps();
    for (auto file = files.begin(); file != files.end();)
        file = file->second <= oldest || youngest <= file->second ? files.erase(file) : std::next(file);
    return files;
}

bool Scene::ageQuiet(const std::string& name, Stamp stamp) const
{
    if (stampOf(name) != stamp)
        return false;
    return makeStale(name);
}

Scene::Stamp Scene::stampOf(const std::string& name) const
{
    std::error_code gone;
    const Stamp stamp = std::filesystem::last_write_time(std::filesystem::path(directory()) / name, gone);
    return gone ? Stamp::min() : stamp;
}

bool Scene::aged(const std::string& name) const
{
    return !touchedAfter(name, static_cast<long long>(std::time(nullptr)) - secondsStale);
}

std::vector<std::string> Scene::lockFilesTouchedAfter(long long since) const
{
    std::vector<std::string> names = lockFiles();
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&](const std::string& name) { return !touchedAfter(name, since); }),
                names.end());
    return names;
}

/// A file that cannot be asked has just gone, and its name may be another's
/// already, as in a queue that moves: whoever did that lives.
bool Scene::touchedAfter(const std::string& name, long long since) const
{
    try {
        return m_tree.modificationTime(name) > since;
    } catch (const std::exception&) {
        return true;
    }
}

std::vector<int> Scene::turns() const
{
    std::vector<int> result;
    if (!m_tree.exists("turns"))
        return result;
    std::istringstream lines(m_tree.content("turns"));
    for (int id = 0; lines >> id;)
        result.push_back(id);
    return result;
}

int longestGap(const std::vector<int>& turns, int processes)
{
    std::vector<int> last(processes, -1);
    int gap = 0;
    for (int i = 0; i < static_cast<int>(turns.size()); ++i) {
        gap = std::max(gap, i - last.at(turns[i]) - 1);
        last[turns[i]] = i;
    }
    return gap;
}

}  // namespace test
}  // namespace zorvel
