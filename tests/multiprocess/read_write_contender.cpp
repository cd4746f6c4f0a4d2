#include "tests/multiprocess/contender.h"
#include "tests/multiprocess/marks.h"
#include "tests/multiprocess/release_set.h"

#include <zorvel/zorvel.h>

#include <filesystem>
#include <thread>

namespace zorvel {
namespace test {

namespace {

/// What readers and writers do inside, and what they find wrong there. Whoever
/// is inside shows it by a directory of the system's, whatever the library
/// under test does: "inside" for a writer, "reading.ID" for a reader.
class Visit
{
public:
    explicit Visit(const Task& task)
        : m_task(task), m_directory(task.directory), m_release(task.directory), m_marks(task.directory)
    {
    }

    /// Notes an event in the order of all processes' events.
    void mark(const std::string& event);

    /// Looks at the release twice. When `own` is given it must be that one.
    void read(const int* own = nullptr);

    /// Replaces the release by the next generation, which is returned.
    int write();

    bool foundWrong() const { return m_foundWrong; }

private:
    void complain(const std::string& what);
    void compare(const Look& first, const Look& second, const int* own);
    void requireNoReader();
    void requireNoWriter();
    bool leftByTheVictim(const Look& look);

    const Task m_task;
    const std::filesystem::path m_directory;
    const ReleaseSet m_release;
    Marks m_marks;
    bool m_foundWrong = false;
};

void Visit::mark(const std::string& event)
{
    if (m_task.asks)
        askMark(event);
    else
        say("mark " + std::to_string(m_marks.take()) + ' ' + event);
}

void Visit::complain(const std::string& what)
{
    m_foundWrong = true;
    say("wrong: " + what);
}

void Visit::read(const int* own)
{
    const std::filesystem::path mark = m_directory / ("reading." + std::to_string(m_task.id));
    std::filesystem::create_directory(mark);
    say("inside");
    requireNoWriter();
    const Look first = m_release.look();
    std::this_thread::sleep_for(m_task.hold);
    const Look second = m_release.look();
    compare(first, second, own);
    requireNoWriter();
    std::filesystem::remove(mark);
}

void Visit::compare(const Look& first, const Look& second, const int* own)
{
    if (!first.sameAs(second))
        complain("torn: the release changed between two looks");
    else if (leftByTheVictim(first))
        say("unfinished");
    else if (!first.writing.empty())
        complain("torn: somebody is writing");
    else if (!first.whole())
        complain("torn: " + first.fault);
    else if (own && (first.generation != *own || first.writer != m_task.id))
        complain("replaced: another writer's release is here");
}

/// Both before and after: a reader or writer that comes or goes meanwhile is
/// found too.
int Visit::write()
{
    const std::filesystem::path mark = m_directory / "inside";
    const bool alone = std::filesystem::create_directory(mark);
    if (!alone)
        complain("overlap: another writer is inside");
    say("inside");
    requireNoReader();
    const Look before = m_release.look();
    if (leftByTheVictim(before))
        say("repairing");
    else if (!before.writing.empty() || !before.whole())
        complain("torn: " + before.fault);
    m_release.write(before.generation + 1, m_task.id, [this] {
        say("halfway");
        std::this_thread::sleep_for(m_task.hold);
    });
    requireNoReader();
    if (alone)
        std::filesystem::remove(mark);
    return before.generation + 1;
}

void Visit::requireNoReader()
{
    for (const int reader : numbersIn(namesIn(m_directory), "reading"))
        complain("overlap: reader " + std::to_string(reader) + " is inside");
}

void Visit::requireNoWriter()
{
    if (std::filesystem::exists(m_directory / "inside"))
        complain("overlap: a writer is inside");
}

bool Visit::leftByTheVictim(const Look& look)
{
    if (m_task.victim == anybody)
        return !look.writing.empty();
    return look.writing == std::set<int>({m_task.victim});
}

/// Asks for its lock, unless it is one of those that take none.
class ReadWriteContender : public Contender
{
public:
    ReadWriteContender(const Task& task, bool locks) : m_visit(task), m_locking(task.directory, task.fs), m_locks(locks)
    {
    }

    int verdict() const override { return m_visit.foundWrong() ? wrongFound : 0; }

protected:
    /// Without limit: at its deadline an acquire goes on without the guard.
    template <class Lock>
    bool enter(Lock& lock)
    {
        say("waiting");
        return !m_locks || lock.acquire(false);
    }

    template <class Lock>
    bool leave(Lock& lock)
    {
        return !m_locks || lock.release();
    }

    Visit m_visit;
    const zvDirectoryReadWriteLock m_locking;

private:
    const bool m_locks;
};

class Reader : public ReadWriteContender
{
public:
    Reader(const Task& task, bool locks) : ReadWriteContender(task, locks), m_lock(m_locking.getReadLock()) {}

    int hold() override
    {
        if (!enter(m_lock))
            return notAcquired;
        m_visit.mark("read");
        say("held");
        m_visit.read();
        m_visit.mark("left");
        if (!leave(m_lock))
            return notAcquired;
        say("free");
        return 0;
    }

private:
    zvDirectoryReadWriteLock::ReadLock m_lock;
};

class Writer : public ReadWriteContender
{
public:
    Writer(const Task& task, bool locks) : ReadWriteContender(task, locks), m_lock(m_locking.getWriteLock()) {}

    int hold() override
    {
        if (!enter(m_lock))
            return notAcquired;
        m_visit.mark("write");
        say("held");
        const int generation = m_visit.write();
        m_visit.mark("written");
        if (!finish(generation))
            return notAcquired;
        say("free");
        return 0;
    }

protected:
    /// Ends the hold in which it wrote that generation.
    virtual bool finish(int) { return leave(m_lock); }

    zvDirectoryReadWriteLock::WriteLock m_lock;
};

/// A writer that verifies its own release before anybody can replace it.
class Downgrader : public Writer
{
public:
    using Writer::Writer;

protected:
    bool finish(int generation) override
    {
        say("downgrading");
        zvDirectoryReadWriteLock::ReadLock reader = m_lock.downgrade();
        if (!reader.isAcquired() || m_lock.isAcquired())
            return false;
        m_visit.mark("downgraded");
        m_visit.read(&generation);
        m_visit.mark("left");
        return leave(reader);
    }
};

}  // namespace

std::unique_ptr<Contender> makeReadWriteContender(const Task& task)
{
    if (task.role == "reader")
        return std::unique_ptr<Contender>(new Reader(task, true));
    if (task.role == "writer")
        return std::unique_ptr<Contender>(new Writer(task, true));
    if (task.role == "downgrader")
        return std::unique_ptr<Contender>(new Downgrader(task, true));
    if (task.role == "unlocked-reader")
        return std::unique_ptr<Contender>(new Reader(task, false));
    if (task.role == "unlocked-writer")
        return std::unique_ptr<Contender>(new Writer(task, false));
    return nullptr;
}

}  // namespace test
}  // namespace zorvel
