#pragma once

#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

struct StormPlan
{
    /// One process each, all the time.
    std::vector<Part> parts;
    std::chrono::seconds duration;
    /// How long a process lives on average once it is ready.
    std::chrono::milliseconds life;
    /// Whether now and then, and at the end, what the dead leave goes stale by
    /// itself.
    bool patient;
    unsigned seed;
};

/// Processes that take one directory in turns, are each killed at a random
/// moment and replaced at once. What they leave is aged as soon as it is
/// certain that no living process owns it, so that nobody waits for half a
/// minute: such a file exists before every living process has said what it
/// owns (see claiming_fs.h), is none of that, and has not been touched when
/// all have said it.
class Storm
{
public:
    explicit Storm(const StormPlan& plan);

    void run();
    /// Kills all who are left. One newcomer of each role comes in, and then
    /// nothing is left of the locks.
    void end();
    /// No two were inside who exclude each other, as they saw it and as the
    /// order of their marks tells; and all that can happen has happened.
    void expectOrder();
    /// The contrary, for processes that take no lock.
    void expectViolations();
    void report() const;

private:
    typedef std::chrono::steady_clock Clock;

    /// Where one process is at a time.
    struct Place
    {
        std::unique_ptr<Worker> worker;
        bool ready = false;
        Clock::time_point end;
        /// It is to die inside, if it comes in within a while.
        bool aimed = false;
    };

    /// The hold in which one died.
    struct OpenHold
    {
        int worker;
        bool writes;
        std::string lockFile;
    };

    void start(std::size_t index);
    std::unique_ptr<Worker> startWorker(std::size_t index, const Part& part);
    void killWhoeverIsDue();
    void chooseEnd(Place& place);
    static bool isDue(const Place& place);
    void kill(Place& place);
    void bury(Worker& dead, int status, int expected);
    /// To the others, one that died inside is there until its lock file is
    /// aged. (Where it is not aged, it has half a minute in which nobody may
    /// come, and its hold ends at once.)
    void keepLastHold(const Worker& dead);
    /// The hold ends, and what showed the dead one inside goes.
    void close(const OpenHold& hold);
    void closeHoldUnder(const std::string& lockFile);
    void closeAllHolds();
    void spareWhatItLeft(const Worker& dead);
    bool spared(const std::string& name, Scene::Stamp stamp) const;
    std::map<std::string, Scene::Stamp> candidates() const;
    void ageWhatTheDeadLeft();
    std::set<std::string> ownedByTheLiving();
    /// Makes one hold with each role.
    void letNewcomersIn();
    /// All that is left.
    void waitUntilStale() const;
    void tell(int worker, const std::string& what);
    /// All that happened, in order.
    void tellStory();

    const StormPlan m_plan;
    const std::vector<Launcher> m_kinds;
    const Scene m_scene;
    std::mt19937 m_random;
    std::atomic<int> m_numbers;
    int m_nextId = 0;
    std::vector<Place> m_places;

    std::vector<Mark> m_marks;
    std::vector<OpenHold> m_open;
    std::vector<std::string> m_complaints;
    std::map<std::string, int> m_said;
    /// Who had what and who died when, in lines that sort.
    std::vector<std::string> m_story;
    std::map<std::string, Scene::Stamp> m_spared;
    int m_sparedWorker = -1;
    Clock::time_point m_nextSpared;
    Clock::time_point m_nextLook;
    int m_kills = 0;
    int m_diedInside = 0;
    int m_aged = 0;
    int m_sparedFiles = 0;
    int m_leftAtTheEnd = 0;
    int m_overlaps = 0;
    /// In the queue, behind the newcomers.
    int m_leftBehind = 0;
    int m_calibrations = 0;
    std::vector<double> m_newcomers;
};

}  // namespace test
}  // namespace zorvel
