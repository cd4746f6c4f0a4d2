#pragma once

#include "tests/simulation/plan.h"
#include "tests/simulation/server.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace zorvel {
namespace sim {

class World;

/// What may be wrong with a schedule.
enum class Wrong
{
    twoHolders,       ///< two hold at the same time what excludes each other
    holdersFileGone,  ///< the file of one who holds was removed by another
    overtaken,        ///< one with a place in the queue came after one behind it
    late,             ///< an acquire came back too long after its deadline
    forEver,          ///< somebody waited until the schedule was broken off
    newcomerWaits,    ///< the directory did not come free
    fileStays,        ///< a file stayed that nobody clears
    broken,           ///< an error that nothing explains
};

const char* nameOf(Wrong wrong);

struct Violation
{
    Wrong wrong;
    Time time;
    std::string text;
};

/// Watches a schedule. Holds are what their processes believe: from the return
/// of an acquire to the call of the release.
class Judge : public FileWatch
{
public:
    explicit Judge(World& world) : m_world(world), m_episodes(0), m_holdCount(0), m_mostOvertaken(0) {}

    void holds(int process, Kind kind);

    /// From here to the next holds() a writer is on the way to be a reader.
    void turns(int process);
    void letsGo(int process);

    void asks(int process, Time timeout);
    void answered(int process);

    void died(int process);
    void found(Wrong wrong, const std::string& text);

    const std::vector<Violation>& violations() const { return m_violations; }

    bool hasFound(Wrong wrong) const;

    long holdCount() const { return m_holdCount; }

    /// How often one with a place was overtaken by newcomers, at most.
    int mostOvertaken() const { return m_mostOvertaken; }

    void created(const std::string& name, int process) override;
    void touched(const std::string& name, int process, int owner) override;
    void removed(const std::string& name, int process, int owner) override;

private:
    enum class Hold
    {
        exclusive,
        read,
        write,
        turning,
    };

    /// Somebody's place in the queue.
    struct Place
    {
        int level;
        int firstLevel;
        std::uint64_t episode;
        std::map<int, std::uint64_t> ahead;  ///< who was ahead when it came, by episode
        std::map<int, int> overtaken;        ///< how often it was overtaken by each newcomer
    };

    struct Question
    {
        Time asked;
        Time timeout;
        Time paused;
        int faults;
    };

    static bool excludes(Hold a, Hold b);
    static const char* nameOf(Hold hold);
    void enter(int process, Hold hold);
    void reached(int process, int level);
    void first(int process);
    void slippedIn(int newcomer, int process, Place& place);
    Time allowance(int process, const Question& question) const;

    World& m_world;
    std::map<int, Hold> m_holds;
    std::map<int, Place> m_places;
    std::map<int, Question> m_questions;
    std::uint64_t m_episodes;
    long m_holdCount;
    int m_mostOvertaken;
    std::vector<Violation> m_violations;
};

}  // namespace sim
}  // namespace zorvel
