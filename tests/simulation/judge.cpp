#include "tests/simulation/judge.h"

#include "tests/simulation/world.h"

#include <algorithm>
#include <cstdlib>

namespace zorvel {
namespace sim {

namespace {

const std::string levelPrefix = ".deploy_lock.";
const std::string writersFile = ".deploy_write_lock";
const std::string readersPrefix = ".deploy_read_lock.";

bool beginsWith(const std::string& text, const std::string& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

/// -1 for what is no level's file.
int levelOf(const std::string& name)
{
    return beginsWith(name, levelPrefix) ? std::atoi(name.c_str() + levelPrefix.size()) : -1;
}

std::string letter(int process)
{
    return std::string(1, static_cast<char>('A' + process));
}

}  // namespace

const char* nameOf(Wrong wrong)
{
    static const char* const names[] = {"two holders", "a holder's file removed", "overtaken",  "late",
                                        "for ever",    "newcomer waits",          "file stays", "broken"};
    return names[static_cast<std::size_t>(wrong)];
}

bool Judge::excludes(Hold a, Hold b)
{
    if (a == Hold::read && b == Hold::read)
        return false;
    // A reader may come in as soon as the writer's file is gone.
    return !((a == Hold::turning && b == Hold::read) || (a == Hold::read && b == Hold::turning));
}

const char* Judge::nameOf(Hold hold)
{
    static const char* const names[] = {"holds", "reads", "writes", "becomes a reader"};
    return names[static_cast<std::size_t>(hold)];
}

void Judge::found(Wrong wrong, const std::string& text)
{
    m_violations.push_back(Violation{wrong, m_world.pace.now(), text});
    m_world.trace.event(m_world.pace.now(), -1, std::string("*** ") + sim::nameOf(wrong) + ": " + text);
}

bool Judge::hasFound(Wrong wrong) const
{
    return std::any_of(m_violations.begin(), m_violations.end(),
                       [=](const Violation& violation) { return violation.wrong == wrong; });
}

void Judge::enter(int process, Hold hold)
{
    ++m_holdCount;
    m_world.trace.event(m_world.pace.now(), process, std::string("*") + nameOf(hold) + "*");
    for (const std::map<int, Hold>::value_type& other : m_holds)
        if (other.first != process && excludes(hold, other.second))
            found(Wrong::twoHolders,
                  letter(process) + " " + nameOf(hold) + " while " + letter(other.first) + " " + nameOf(other.second));
    m_holds[process] = hold;
}

void Judge::holds(int process, Kind kind)
{
    enter(process, kind == Kind::exclusive ? Hold::exclusive : kind == Kind::read ? Hold::read : Hold::write);
}

void Judge::turns(int process)
{
    enter(process, Hold::turning);
}

void Judge::letsGo(int process)
{
    m_world.trace.event(m_world.pace.now(), process, "lets go");
    m_holds.erase(process);
}

void Judge::asks(int process, Time timeout)
{
    const Process& asking = m_world.process(process);
    m_questions[process] = Question{m_world.pace.now(), timeout, asking.pausedInAll(), asking.faultCount()};
}

/// What may be under way at a deadline: a look at each level on the way down
/// and at each reader, the comparisons of the clocks, the touch and the removal
/// at the end; the time that the process stood still; and for each operation
/// that failed the second that a touch or removal is tried again.
Time Judge::allowance(int process, const Question& question) const
{
    const Process& asking = m_world.process(process);
    const int operations = 40 + 12 * m_world.processCount();
    return operations * (2 * m_world.plan.longestWay() + millisecond) + 200 * millisecond +
           (asking.pausedInAll() - question.paused) +
           (asking.faultCount() - question.faults) * (1500 * millisecond + 4 * m_world.plan.longestWay());
}

void Judge::answered(int process)
{
    const std::map<int, Question>::iterator question = m_questions.find(process);
    if (question == m_questions.end())
        return;
    const Time took = m_world.pace.now() - question->second.asked;
    if (question->second.timeout != never && took > question->second.timeout + allowance(process, question->second))
        found(Wrong::late, letter(process) + " came back " +
                               std::to_string((took - question->second.timeout) / millisecond) +
                               " ms after its deadline");
    m_questions.erase(question);
    if (m_holds.count(process) == 0)
        m_places.erase(process);
}

void Judge::died(int process)
{
    m_world.trace.event(m_world.pace.now(), process, "dies");
    m_holds.erase(process);
    m_places.erase(process);
    m_questions.erase(process);
}

/// A process that keeps its place while it steps down is the same one.
void Judge::reached(int process, int level)
{
    if (m_world.process(process).isDead())
        return;
    const std::map<int, Place>::iterator place = m_places.find(process);
    if (place != m_places.end() && place->second.level > level) {
        place->second.level = level;
    } else {
        Place fresh{level, level, ++m_episodes, {}, {}};
        for (const std::map<int, Place>::value_type& other : m_places)
            if (other.first != process && other.second.level < level)
                fresh.ahead[other.first] = other.second.episode;
        m_places[process] = fresh;
    }
    if (level == 0)
        first(process);
}

/// A newcomer came before one with a place. Where operations take no time that
/// happens with each newcomer at most as often as there were levels below the
/// place: who waits for a level sees it free before a newcomer has made its
/// pause there, but not before one that looked earlier.
void Judge::slippedIn(int newcomer, int process, Place& place)
{
    const int times = ++place.overtaken[newcomer];
    int all = 0;
    for (const std::map<int, int>::value_type& other : place.overtaken)
        all += other.second;
    m_mostOvertaken = std::max(m_mostOvertaken, all);
    const Plan& plan = m_world.plan;
    const bool isInstant = plan.longestWay() == 0 && plan.mishaps.empty() && plan.faults == 0;
    if (isInstant && times > place.firstLevel)
        found(Wrong::overtaken, "newcomer " + letter(newcomer) + " overtakes " + letter(process) + " again");
}

/// Somebody has taken level 0.
void Judge::first(int process)
{
    const Place mine = m_places[process];
    for (std::map<int, Place>::value_type& other : m_places) {
        if (other.first == process || other.second.level == 0)
            continue;
        const std::map<int, std::uint64_t>::const_iterator ahead = mine.ahead.find(other.first);
        if (ahead != mine.ahead.end() && ahead->second == other.second.episode) {
            if (!m_world.process(other.first).isFaulty())
                found(Wrong::overtaken, letter(process) + " overtakes " + letter(other.first));
        } else if (other.second.ahead.count(process) == 0 || other.second.ahead[process] != mine.episode) {
            slippedIn(process, other.first, other.second);
        }
    }
}

void Judge::created(const std::string& name, int process)
{
    if (levelOf(name) >= 0)
        reached(process, levelOf(name));
}

void Judge::touched(const std::string& name, int process, int owner)
{
    if (levelOf(name) >= 0 && owner != process)
        reached(process, levelOf(name));
}

void Judge::removed(const std::string& name, int process, int owner)
{
    const int level = levelOf(name);
    const std::map<int, Place>::const_iterator place = m_places.find(process);
    if (level >= 0 && place != m_places.end() && place->second.level == level)
        m_places.erase(place);
    const std::map<int, Hold>::const_iterator hold = m_holds.find(owner);
    if (owner == process || hold == m_holds.end())
        return;
    const bool isMark = hold->second == Hold::exclusive ? level == 0
                        : hold->second == Hold::read    ? beginsWith(name, readersPrefix)
                                                        : name == writersFile;
    if (isMark)
        found(Wrong::holdersFileGone, letter(process) + " removes " + name + " of " + letter(owner));
}

}  // namespace sim
}  // namespace zorvel
