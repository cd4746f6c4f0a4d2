#include "tests/multiprocess/contender.h"

#include <zorvel/zorvel.h>

namespace zorvel {
namespace test {

namespace {

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

/// Does what each line of its input says, to its end: "acquire" and "try" are
/// answered with "acquired" or "denied" (before an acquire it says "waiting"),
/// "release" with "released" or "unreleased", "ask" with "holds" or "idle",
/// and "downgrade" with "downgraded" or "denied". A writer that has become a
/// reader is asked and released as one.
template <class Lock>
class Obedient : public Contender
{
public:
    explicit Obedient(const boost::shared_ptr<Lock>& lock) : m_lock(lock) {}

    int hold() override
    {
        std::string order;
        while (hear(order))
            obey(order);
        return 0;
    }

private:
    void obey(const std::string& order)
    {
        if (order == "acquire")
            acquire();
        else if (order == "try")
            say(m_lock->tryAcquire(false) ? "acquired" : "denied");
        else if (order == "release")
            say(release() ? "released" : "unreleased");
        else if (order == "ask")
            say(m_lock->isAcquired() || isReader() ? "holds" : "idle");
        else if (order == "downgrade")
            say(downgrade(*m_lock) ? "downgraded" : "denied");
    }

    void acquire()
    {
        say("waiting");
        say(m_lock->acquire(false) ? "acquired" : "denied");
    }

    bool isReader() { return m_reader && m_reader->isAcquired(); }
    bool release() { return isReader() ? m_reader->release() : m_lock->release(); }

    bool downgrade(WriteLock& lock)
    {
        m_reader.reset(new ReadLock(lock.downgrade()));
        return isReader();
    }
    template <class Other>
    bool downgrade(Other&)
    {
        return false;
    }

    const boost::shared_ptr<Lock> m_lock;
    boost::shared_ptr<ReadLock> m_reader;
};

template <class Lock>
std::unique_ptr<Contender> obedient(Lock* lock)
{
    return std::unique_ptr<Contender>(new Obedient<Lock>(boost::shared_ptr<Lock>(lock)));
}

}  // namespace

std::unique_ptr<Contender> makeObedientContender(const Task& task)
{
    const zvDirectoryReadWriteLock locking(task.directory, task.fs);
    if (task.role == "obedient-exclusive")
        return obedient(new zvDirectoryExclusiveLock(task.directory, std::to_string(task.id), task.fs));
    if (task.role == "obedient-reader")
        return obedient(new ReadLock(locking.getReadLock()));
    if (task.role == "obedient-writer")
        return obedient(new WriteLock(locking.getWriteLock()));
    return nullptr;
}

}  // namespace test
}  // namespace zorvel
