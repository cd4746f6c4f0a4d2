#include "tests/simulation/actor.h"

#include <zorvel/dirlock.h>
#include <zorvel/errors.h>

#include "tests/simulation/world.h"

#include <boost/thread/exceptions.hpp>

#include <memory>
#include <string>

namespace zorvel {
namespace sim {

const char* const directoryName = "srv";

namespace {

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

boost::posix_time::time_duration durationOf(Time time)
{
    return time == never ? boost::posix_time::time_duration(boost::posix_time::pos_infin)
                         : boost::posix_time::time_duration(boost::posix_time::microseconds(time));
}

class Actor
{
public:
    Actor(World& world, Process& process)
        : m_world(world),
          m_process(process),
          m_fs(zvGetDefaultFSImp()),
          m_exclusive(directoryName, std::string(1, static_cast<char>('A' + process.number)), m_fs),
          m_readWrite(directoryName, m_fs),
          m_reader(m_readWrite.getReadLock()),
          m_writer(m_readWrite.getWriteLock())
    {
    }

    void take(const Turn& turn)
    {
        m_process.spend(turn.before);
        if (turn.kind == Kind::exclusive)
            hold(m_exclusive, turn);
        else if (turn.kind == Kind::read)
            hold(m_reader, turn);
        else
            hold(m_writer, turn);
    }

private:
    template <class Lock>
    bool acquire(Lock& lock, const Turn& turn)
    {
        m_world.judge.asks(m_process.number, turn.timeout);
        const bool isHeld = tryTo(lock, turn);
        m_process.leaveIfDead();
        if (isHeld)
            m_world.judge.holds(m_process.number, turn.kind);
        m_world.judge.answered(m_process.number);
        return isHeld;
    }

    template <class Lock>
    bool tryTo(Lock& lock, const Turn& turn)
    {
        try {
            return lock.acquire(durationOf(turn.timeout), !turn.refreshed);
        } catch (const zvFileBasedLockError& error) {
            note(error.what());
            if (!m_process.isFaulty())
                m_world.judge.found(Wrong::broken, error.what());
        } catch (const boost::thread_interrupted&) {
            note("gives up");
        }
        return false;
    }

    template <class Lock>
    void hold(Lock& lock, const Turn& turn)
    {
        if (!acquire(lock, turn)) {
            note("did not get it");
            return;
        }
        if (turn.kind == Kind::downgrade && downgrade(turn))
            return;
        m_process.spend(turn.hold);
        m_world.judge.letsGo(m_process.number);
        lock.release();
    }

    /// False when it stays a writer.
    bool downgrade(const Turn& turn)
    {
        m_process.spend(turn.hold / 2);
        m_world.judge.turns(m_process.number);
        ReadLock reader = m_readWrite.getReadLock();
        try {
            reader = m_writer.downgrade();
        } catch (const zvFileBasedLockError& error) {
            note(error.what());
        } catch (const boost::thread_interrupted&) {
            note("stays a writer");
        }
        m_process.leaveIfDead();
        const bool isReader = reader.isAcquired();
        m_world.judge.holds(m_process.number, isReader ? Kind::read : Kind::write);
        if (!isReader)
            return false;
        m_process.spend(turn.hold / 2);
        m_world.judge.letsGo(m_process.number);
        reader.release();
        return true;
    }

    void note(const char* what) { m_world.trace.event(m_world.pace.now(), m_process.number, what); }

    World& m_world;
    Process& m_process;
    const boost::shared_ptr<zvAbstractFS> m_fs;
    zvDirectoryExclusiveLock m_exclusive;
    zvDirectoryReadWriteLock m_readWrite;
    ReadLock m_reader;
    WriteLock m_writer;
};

}  // namespace

/// Where every order is tried a turn has locks of its own, so that what came
/// before makes no difference.
void act(World& world, Process& process, const ProcessPlan& plan)
{
    std::unique_ptr<Actor> actor;
    for (std::size_t i = 0; i < plan.turns.size(); ++i) {
        world.pace.beginsAnew(i + 1);
        if (!actor || world.pace.isTimeless())
            actor.reset(new Actor(world, process));
        actor->take(plan.turns[i]);
    }
}

}  // namespace sim
}  // namespace zorvel
