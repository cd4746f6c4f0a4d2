#include "tests/multiprocess/scene.h"

#include <algorithm>
#include <ctime>
#include <sstream>

namespace zorvel {
namespace test {

namespace {

const char lockFilePrefix[] = ".deploy_lock.";

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

std::vector<std::string> Scene::lockFiles() const
{
    std::vector<std::string> names = m_tree.names();
    names.erase(std::remove_if(names.begin(), names.end(), [](const std::string& name) { return !isLockFile(name); }),
                names.end());
    return names;
}

int Scene::ageAbandoned() const
{
    const long long now = static_cast<long long>(std::time(nullptr));
    if (m_tree.exists("inside"))
        m_tree.removeDirectory("inside");
    int aged = 0;
    for (const std::string& name : lockFiles()) {
        const long long age = now - m_tree.modificationTime(name);
        if (age < 3 || age > 30)
            continue;
        m_tree.age(name, -40);
        ++aged;
    }
    return aged;
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
