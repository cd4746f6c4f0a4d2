#include "tests/multiprocess/kill_round.h"

#include "tests/multiprocess/marks.h"
#include "tests/multiprocess/sweep.h"

#include <zorvel/dirlock.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iostream>
#include <random>
#include <sstream>
#include <thread>

namespace zorvel {
namespace test {

namespace {

typedef std::chrono::steady_clock Clock;

const int holdsEach = 15;
const int holdMsec = 15;
const int pauseMsec = 10;
const int killedStatus = 128 + 9;

std::string roleOf(Moment moment, unsigned seed)
{
    const char* const roles[] = {"reader", "writer", "downgrader"};
    const unsigned any = seed / 2;
    switch (moment) {
    case Moment::reading: return "reader";
    case Moment::writing:
    case Moment::halfWay: return "writer";
    case Moment::queued:
    case Moment::waiting: return roles[any % 2];
    case Moment::downgrading: return "downgrader";
    default: return roles[any % 3];
    }
}

/// In a mixed fleet once one kind dies, once the other.
int victimOf(unsigned seed)
{
    return static_cast<int>(seed % 2);
}

/// The victim does not end by itself. To die inside for certain it stays there.
std::vector<Part> contenders(Moment moment, unsigned seed)
{
    std::vector<Part> parts;
    for (const char* role : {"reader", "reader", "writer", "downgrader"})
        parts.push_back(Part{role, holdsEach, holdMsec, pauseMsec});
    const int inside = isInside(moment) ? 600 * 1000 : holdMsec;
    parts.insert(parts.begin() + victimOf(seed), Part{roleOf(moment, seed), 100000, inside, pauseMsec});
    return parts;
}

/// The words of a worker after which its moment comes.
std::string wordBefore(Moment moment)
{
    switch (moment) {
    case Moment::reading:
    case Moment::writing: return "inside";
    case Moment::halfWay: return "halfway";
    case Moment::downgrading: return "downgrading";
    default: return "waiting";
    }
}

/// How long after them, at most.
int msecUntil(Moment moment)
{
    switch (moment) {
    case Moment::waiting: return 40;
    case Moment::downgrading: return 3;
    case Moment::any: return 400;
    default: return holdMsec;
    }
}

}  // namespace

bool isInside(Moment moment)
{
    return moment == Moment::reading || moment == Moment::writing || moment == Moment::halfWay;
}

Round::Round(Moment moment, unsigned seed, const boost::shared_ptr<zvAbstractFS>& fs)
    : m_moment(moment),
      m_seed(seed),
      m_fs(fs),
      m_victim(victimOf(seed)),
      m_role(roleOf(moment, seed)),
      m_fleet(m_scene.directory(), contenders(moment, seed), m_victim)
{
    m_scene.writeFirstRelease();
}

void Round::kill()
{
    m_fleet.waitReady();
    if (m_moment == Moment::queued)
        goAndQueue();
    else
        goAndWait();
    EXPECT_EQ(killedStatus, m_fleet[m_victim].finish()) << "seed " << m_seed;
    // What the dead one had is fresh still, so that whoever comes into its
    // place has a later mark.
    m_killMark = Marks(m_scene.directory()).take();
    m_killed = static_cast<long long>(std::time(nullptr));
    m_leftUnfinished = m_scene.tree().exists("writing." + std::to_string(m_victim));
    m_leftMark = m_scene.tree().exists(m_role == "reader" ? "reading." + std::to_string(m_victim) : "inside");
}

bool Round::diedInside() const
{
    const std::string lockFile = m_role == "reader" ? ".deploy_read_lock." : ".deploy_write_lock";
    return m_leftMark && std::any_of(m_traces.begin(), m_traces.end(), [&](const std::string& name) {
               return name.compare(0, lockFile.size(), lockFile) == 0;
           });
}

void Round::goAndWait()
{
    std::mt19937 random(m_seed);
    int turn = 1 + static_cast<int>(random() % 4);
    if (isInside(m_moment)) {
        goAfterTurnsOfOthers(turn);
        turn = 1;
    } else {
        m_fleet.go();
    }
    if (m_moment != Moment::any)
        m_fleet[m_victim].waitSaid(wordBefore(m_moment), turn);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % (1000 * msecUntil(m_moment))));
    m_fleet[m_victim].kill();
}

/// A victim that stays inside has one turn only; it comes when the others have
/// had some.
void Round::goAfterTurnsOfOthers(int turns)
{
    for (int i = 0; i < m_fleet.size(); ++i)
        if (i != m_victim)
            m_fleet[i].go();
    m_fleet[1 - m_victim].waitHeld(turns);
    m_fleet[m_victim].go();
}

/// While the test has the guard, everybody ends up in the queue for it.
void Round::goAndQueue()
{
    zvDirectoryExclusiveLock guard(m_scene.directory(), "test", m_fs);
    EXPECT_TRUE(guard.acquire(false)) << "seed " << m_seed;
    m_fleet.go();
    while (static_cast<int>(m_scene.lockFiles().size()) <= m_fleet.size())
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    m_fleet[m_victim].kill();
}

bool Round::survivorsAreRunning() const
{
    for (int i = 0; i < m_fleet.size(); ++i)
        if (i != m_victim && m_fleet.worker(i).running())
            return true;
    return false;
}

/// A live owner refreshes its file every second. A machine that stood still
/// itself proves nothing about it.
void Round::helpSurvivors()
{
    Clock::time_point since = Clock::now();
    while (survivorsAreRunning()) {
        const Clock::time_point before = Clock::now();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const Clock::time_point now = Clock::now();
        if (now - before > std::chrono::milliseconds(500))
            since = now;
        else if (now - since > std::chrono::seconds(4))
            ageTraces();
    }
}

void Round::ageTraces()
{
    const std::vector<std::string> traces = m_scene.ageTracesOf(m_victim, m_killed);
    m_traces.insert(m_traces.end(), traces.begin(), traces.end());
}

void Round::expectSurvivorsDidAll()
{
    for (int i = 0; i < m_fleet.size(); ++i) {
        if (i == m_victim)
            continue;
        EXPECT_EQ(0, m_fleet[i].finish()) << "worker " << i << ", seed " << m_seed;
        EXPECT_EQ(holdsEach, m_fleet[i].held()) << "worker " << i << ", seed " << m_seed;
    }
    EXPECT_EQ(std::vector<std::string>(), m_fleet.complaints()) << "seed " << m_seed;
    EXPECT_EQ(std::vector<std::string>(), overlaps(holdsOf(m_fleet.marks(), m_victim, m_killMark)))
        << "seed " << m_seed << ", killed at mark " << m_killMark;
}

/// One more worker, which is to see a whole release.
void Round::visit(const std::string& role)
{
    Fleet newcomer(m_scene.directory(), {Part{role, 1, 0, 0}}, m_victim);
    newcomer.waitReady();
    newcomer.go();
    EXPECT_EQ(0, newcomer[0].finish()) << role << ", seed " << m_seed;
    EXPECT_EQ(std::vector<std::string>(), newcomer.complaints()) << role << ", seed " << m_seed;
    EXPECT_EQ(0, newcomer[0].said("unfinished")) << role << ", seed " << m_seed;
}

void Round::expectTracesGo()
{
    EXPECT_EQ(std::vector<std::string>(), m_scene.lockFilesTouchedAfter(m_killed)) << "seed " << m_seed;
    ageTraces();
    visit("writer");
    visit("reader");
    const Look release = m_scene.release();
    EXPECT_EQ(std::string(), release.fault) << "seed " << m_seed;
    EXPECT_EQ(std::set<int>(), release.writing) << "seed " << m_seed;
    sweepQueue(m_scene, m_fs);
    EXPECT_EQ(std::vector<std::string>(), m_scene.lockFiles()) << "seed " << m_seed;
}

void Round::report() const
{
    std::ostringstream line;
    line << "seed " << m_seed << ": " << m_role << ' ' << m_victim << " killed in hold "
         << m_fleet.worker(m_victim).held() << (m_leftUnfinished ? ", release unfinished (seen " : " (seen ")
         << m_fleet.said("unfinished") << ", repaired " << m_fleet.said("repairing") << "), left";
    for (const std::string& name : m_traces)
        line << ' ' << name;
    line << (m_traces.empty() ? " nothing\n" : "\n");
    std::cout << line.str() << std::flush;
}

}  // namespace test
}  // namespace zorvel
