#include "tests/multiprocess/contender.h"
#include "tests/multiprocess/release_set.h"

#include <zorvel/zorvel.h>

#include <thread>

namespace zorvel {
namespace test {

namespace {

class AskingContender : public Contender
{
public:
    explicit AskingContender(const Task& task) : m_task(task) {}

    int verdict() const override { return m_foundWrong ? wrongFound : 0; }

protected:
    /// Without limit.
    template <class Lock>
    bool enter(Lock& lock, const char* event)
    {
        say("waiting");
        if (!lock.acquire(false))
            return false;
        askMark(event);
        say("held");
        return true;
    }

    void complain(const std::string& what)
    {
        m_foundWrong = true;
        say("wrong: " + what);
    }

    const Task m_task;

private:
    bool m_foundWrong = false;
};

class Exclusive : public AskingContender
{
public:
    explicit Exclusive(const Task& task)
        : AskingContender(task), m_lock(task.directory, std::to_string(task.id), task.fs)
    {
    }

    int hold() override
    {
        if (!enter(m_lock, "write"))
            return notAcquired;
        std::this_thread::sleep_for(m_task.hold);
        askMark("written");
        say("releasing");
        if (!m_lock.release())
            return notAcquired;
        say("free");
        return 0;
    }

private:
    zvDirectoryExclusiveLock m_lock;
};

/// Reads and writes the release that lies in the directory. Of what is on the
/// share only its content is looked at: a listing of the directory can be old.
class ReaderOrWriter : public AskingContender
{
public:
    explicit ReaderOrWriter(const Task& task)
        : AskingContender(task), m_locking(task.directory, task.fs), m_release(task.directory)
    {
    }

protected:
    void read(const int* own = nullptr)
    {
        const Look first = m_release.content();
        say("looked");
        std::this_thread::sleep_for(m_task.hold);
        const Look second = m_release.content();
        if (!first.sameAs(second))
            complain("torn: the release changed between two looks");
        else if (!first.whole())
            complain("torn: " + first.fault);
        else if (first.generation < m_newest)
            complain("old: generation " + std::to_string(first.generation) + " after " + std::to_string(m_newest));
        else if (own && (first.generation != *own || first.writer != m_task.id))
            complain("replaced: another writer's release is here");
        m_newest = first.generation;
    }

    int write()
    {
        const Look before = m_release.content();
        say("looked");
        if (!before.whole())
            complain("torn: " + before.fault);
        else if (before.generation < m_newest)
            complain("old: generation " + std::to_string(before.generation) + " after " + std::to_string(m_newest));
        m_newest = before.generation + 1;
        m_release.replace(m_newest, m_task.id, [this] { std::this_thread::sleep_for(m_task.hold); });
        return m_newest;
    }

    const zvDirectoryReadWriteLock m_locking;

private:
    const ReleaseSet m_release;
    int m_newest = -1;
};

class Reader : public ReaderOrWriter
{
public:
    explicit Reader(const Task& task) : ReaderOrWriter(task), m_lock(m_locking.getReadLock()) {}

    int hold() override
    {
        if (!enter(m_lock, "read"))
            return notAcquired;
        read();
        askMark("left");
        if (!m_lock.release())
            return notAcquired;
        say("free");
        return 0;
    }

private:
    zvDirectoryReadWriteLock::ReadLock m_lock;
};

/// `downgrades`: it becomes a reader of its own release.
class Writer : public ReaderOrWriter
{
public:
    Writer(const Task& task, bool downgrades)
        : ReaderOrWriter(task), m_lock(m_locking.getWriteLock()), m_downgrades(downgrades)
    {
    }

    int hold() override
    {
        if (!enter(m_lock, "write"))
            return notAcquired;
        const int generation = write();
        askMark("written");
        if (!(m_downgrades ? verify(generation) : m_lock.release()))
            return notAcquired;
        say("free");
        return 0;
    }

private:
    bool verify(int generation)
    {
        zvDirectoryReadWriteLock::ReadLock reader = m_lock.downgrade();
        if (!reader.isAcquired() || m_lock.isAcquired())
            return false;
        askMark("downgraded");
        read(&generation);
        askMark("left");
        return reader.release();
    }

    zvDirectoryReadWriteLock::WriteLock m_lock;
    const bool m_downgrades;
};

}  // namespace

std::unique_ptr<Contender> makeAskingContender(const Task& task)
{
    if (task.role == "asking-exclusive")
        return std::unique_ptr<Contender>(new Exclusive(task));
    if (task.role == "asking-reader")
        return std::unique_ptr<Contender>(new Reader(task));
    if (task.role == "asking-writer")
        return std::unique_ptr<Contender>(new Writer(task, false));
    if (task.role == "asking-downgrader")
        return std::unique_ptr<Contender>(new Writer(task, true));
    return nullptr;
}

}  // namespace test
}  // namespace zorvel
