#include "tests/unit/dirlock/scene.h"

#include "tests/support/fake_timer.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace zorvel {
namespace test {

namespace {

bool begins(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

/// What a log shows of the operations, with the longest word cut.
std::string shortVerb(const std::string& verb)
{
    return verb == "findMatchingFilesAndDirs" ? "walk" : verb;
}

}  // namespace

Scene::Scene(const std::string& directory)
    : m_directory(directory),
      m_names(directory),
      m_fs(boost::make_shared<RecordingFs>()),
      m_lock(new zvDirectoryExclusiveLock(directory, "L", m_fs))
{
    fake_timer::reset();
    m_fs->addDirectory(directory);
    m_fs->setScript([this](const Operation& operation) { return play(operation); });
}

void Scene::take(int level, long long ageSeconds)
{
    m_fs->addFile(nameOf(level), ageSeconds);
}

void Scene::free(int level)
{
    m_fs->removeFileNow(nameOf(level));
}

bool Scene::isTaken(int level) const
{
    return m_fs->has(nameOf(level));
}

void Scene::before(const std::string& operation, std::size_t nth, const std::function<void()>& action)
{
    m_rules.push_back(Rule{operation, nth, action, false});
}

void Scene::refuse(const std::string& operation, std::size_t nth)
{
    m_rules.push_back(Rule{operation, nth, std::function<void()>(), true});
}

std::string Scene::key(const Operation& operation) const
{
    return shortVerb(operation.verb) + ' ' + m_names(operation.name);
}

boost::optional<bool> Scene::play(const Operation& operation)
{
    const std::string asked = key(operation);
    const std::size_t times = ++m_seen[asked];
    boost::optional<bool> answer;
    for (const Rule& rule : m_rules) {
        if (rule.operation != asked || (rule.nth != 0 && rule.nth != times))
            continue;
        if (rule.action)
            rule.action();
        if (rule.refuse)
            answer = false;
    }
    if (!m_plan || !m_plan->covers(operation.number))
        return answer;
    throwFailure(m_plan->failure);
    return false;
}

void Scene::heal()
{
    m_rules.clear();
    m_plan.reset();
}

std::string Scene::shortly(std::string line) const
{
    const std::size_t verbEnd = line.find(' ');
    const std::size_t nameEnd = line.find(' ', verbEnd + 1);
    const std::string name = m_names(line.substr(verbEnd + 1, nameEnd - verbEnd - 1));
    const std::string rest = nameEnd == std::string::npos ? std::string() : line.substr(nameEnd);
    line = shortVerb(line.substr(0, verbEnd)) + ' ' + name + rest;
    const std::size_t result = line.find(" -> ");
    const bool isTime =
        begins(line, "mtime ") && line.find_first_not_of("-0123456789", result + 4) == std::string::npos;
    return isTime ? line.substr(0, result) : line;
}

std::vector<std::string> Scene::operations() const
{
    std::vector<std::string> lines = m_fs->log();
    std::transform(lines.begin(), lines.end(), lines.begin(),
                   [this](const std::string& line) { return shortly(line); });
    return lines;
}

std::size_t Scene::countOf(const std::string& beginning) const
{
    const std::vector<std::string> lines = operations();
    return static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(), [&](const std::string& line) { return begins(line, beginning); }));
}

std::vector<std::string> Scene::shortFiles() const
{
    std::vector<std::string> files = m_fs->files();
    std::transform(files.begin(), files.end(), files.begin(),
                   [this](const std::string& file) { return m_names(file); });
    return files;
}

}  // namespace test
}  // namespace zorvel
