#pragma once

#include "tests/multiprocess/fleet.h"
#include "tests/multiprocess/scene.h"

#include <zorvel/lockfile.h>

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// Where the victim dies.
enum class Moment
{
    reading,      ///< inside, as a reader, for certain
    writing,      ///< inside, as a writer, for certain
    halfWay,      ///< with half of a release written, for certain
    queued,       ///< in the queue for the guard, for certain
    waiting,      ///< for the others, as a reader or a writer
    downgrading,  ///< about to become a reader, or just become one
    any,
};

/// Whether the victim has the lock then.
bool isInside(Moment moment);

/// One fleet that loses a worker.
class Round
{
public:
    /// The same seed gives the same victim and the same wait. `fs` is what the
    /// test itself locks through.
    Round(Moment moment, unsigned seed, const boost::shared_ptr<zvAbstractFS>& fs);

    /// Starts all and kills the victim at its moment.
    void kill();
    /// Ages what the dead process left, as soon as it is certain that nobody
    /// refreshes it, until the survivors have done all they had to do.
    void helpSurvivors();
    void expectSurvivorsDidAll();
    /// Nobody but the dead one left anything of the locks. A writer, a reader
    /// and a full queue later that is gone as well.
    void expectTracesGo();
    void report() const;

    /// Whether the victim died with a part of its release written.
    bool leftUnfinished() const { return m_leftUnfinished; }
    /// Whether its mark and its role's lock file tell that it died inside.
    bool diedInside() const;
    /// Lock files of the victim's.
    const std::vector<std::string>& traces() const { return m_traces; }

private:
    void goAndWait();
    void goAfterTurnsOfOthers(int turns);
    void goAndQueue();
    bool survivorsAreRunning() const;
    void ageTraces();
    void visit(const std::string& role);

    const Moment m_moment;
    const unsigned m_seed;
    const boost::shared_ptr<zvAbstractFS> m_fs;
    const int m_victim;
    const std::string m_role;
    const Scene m_scene;
    Fleet m_fleet;
    int m_killMark = -1;
    long long m_killed = 0;
    bool m_leftUnfinished = false;
    bool m_leftMark = false;
    std::vector<std::string> m_traces;
};

}  // namespace test
}  // namespace zorvel
