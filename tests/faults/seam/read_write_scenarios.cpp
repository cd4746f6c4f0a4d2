#include "tests/faults/seam/lock_run.h"
#include "tests/support/system_facts.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using namespace seam_faults;

const char writerFile[] = ".deploy_write_lock";
const char readerFiles[] = ".deploy_read_lock.";
const char foreignReader[] = ".deploy_read_lock.4711";

/// One of the two, which acquires; `Lock` is ReadLock or WriteLock.
template <class Lock>
class HolderRun : public LockRun
{
public:
    explicit HolderRun(const Lock& lock) : m_lock(new Lock(lock)) {}

    void check(const std::string& ending, const Faults& faults) override
    {
        EXPECT_EQ(ending == "true", m_lock->isAcquired());
        EXPECT_EQ(ending == "true" ? 1u : 0u, runningTimers()) << "of the holder, and none of the guard";
        if (ending == "true")
            expectHeld();
        EXPECT_EQ(ending == "true", m_lock->release());
        m_lock.reset();
        expectFree(faults);
    }

protected:
    virtual void expectHeld() = 0;

    std::string acquire(const boost::posix_time::time_duration& timeout)
    {
        return textOf(m_lock->acquire(timeout, false));
    }

    std::unique_ptr<Lock> m_lock;
};

typedef zvDirectoryReadWriteLock::ReadLock ReadLock;
typedef zvDirectoryReadWriteLock::WriteLock WriteLock;

class ReaderRun : public HolderRun<ReadLock>
{
public:
    ReaderRun() : HolderRun<ReadLock>(ReadLock("nowhere", zvGetDefaultFSImp()))
    {
        *m_lock = readWriteLock().getReadLock();
    }

protected:
    void expectHeld() override
    {
        EXPECT_LE(1u, countOf(readerFiles));
        EXPECT_FALSE(readWriteLock().getWriteLock().tryAcquire(false));
    }
};

class WriterRun : public HolderRun<WriteLock>
{
public:
    WriterRun() : HolderRun<WriteLock>(WriteLock("nowhere", zvGetDefaultFSImp()))
    {
        *m_lock = readWriteLock().getWriteLock();
    }

protected:
    void expectHeld() override
    {
        EXPECT_TRUE(has(writerFile));
        EXPECT_FALSE(readWriteLock().getWriteLock().tryAcquire(false));
        EXPECT_FALSE(readWriteLock().getReadLock().tryAcquire(false));
    }
};

template <class Base>
class TryRun : public Base
{
public:
    std::string act() override { return textOf(this->m_lock->tryAcquire(false)); }
};

template <class Base>
class AcquireRun : public Base
{
public:
    std::string act() override { return this->acquire(seconds(1)); }
};

/// Behind a writer, and readers, who died.
template <class Base>
class TakeOverRun : public AcquireRun<Base>
{
public:
    TakeOverRun()
    {
        this->foreignFile(writerFile, 60);
        this->foreignFile(foreignReader, 60);
    }

    void check(const std::string& ending, const Faults& faults) override
    {
        // Readers do not look for others; what is stale may stay.
        this->removeStaleFile(foreignReader);
        this->removeStaleFile(writerFile);
        Base::check(ending, faults);
    }
};

/// Behind somebody who stays: whatever fails, nobody comes in.
template <class Base>
class WaitRun : public Base
{
public:
    explicit WaitRun(const char* file = writerFile) : m_file(file) { this->foreignFile(file); }
    std::string act() override { return this->acquire(milliseconds(30)); }

    void check(const std::string& ending, const Faults& faults) override
    {
        if (ending == "true") {
            expectMisled(faults);
            return;
        }
        this->removeForeignFile(m_file);
        Base::check(ending, faults);
    }

private:
    /// Only the word of the system that nothing is there lets somebody in.
    void expectMisled(const Faults& faults)
    {
        EXPECT_TRUE(contains(faults, openSearch));
        EXPECT_TRUE(this->m_lock->release());
        if (this->has(m_file)) {
            this->removeForeignFile(m_file);
        }
        this->expectFree(faults);
    }

    const char* const m_file;
};

class WriterBehindReader : public WaitRun<WriterRun>
{
public:
    WriterBehindReader() : WaitRun<WriterRun>(foreignReader) {}
};

/// Refresh and release of one who holds.
template <class Base>
class HeldRun : public Base
{
public:
    HeldRun() { EXPECT_TRUE(this->m_lock->tryAcquire(false)); }

    std::string act() override
    {
        fireTimers();
        fireTimers();
        const bool isRefreshed = runningTimers() == 1;
        return !this->m_lock->release() ? "false" : isRefreshed ? "released" : "ended";
    }

    void check(const std::string&, const Faults& faults) override
    {
        EXPECT_FALSE(this->m_lock->isAcquired());
        this->m_lock.reset();
        this->expectFree(faults);
    }
};

}  // namespace

Scenarios readWriteScenarios()
{
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Persistence both = Persistence::both;
    const char* const brokenSearches = searchesForNothingBegin() ? "zvFileAccessError" : "true false zvFileAccessError";
    const Rules exceptions = {
        {sleepFor, "", both, "interrupted"},
        {setTimer, "bad_alloc", both, "bad_alloc"},
        {setTimer, "", both, "thread_resource_error"},
        {codeOfSearch, "", both, "zvFileAccessError"},
        {entryKind, "directory link", ever, "false"},
        {modificationTime, "ENOENT", ever, "false"},
        {openFile, "EACCES", ever, "zvPermissionDenied"},
        {openSearch, "bad_alloc", ever, "bad_alloc"},
        {openSearch, "EACCES EIO EMFILE ESTALE EINVAL", ever, "zvFileAccessError"},
        {nextOfSearch, "", ever, brokenSearches},
    };
    // The walk that looks for stale files passes over what it cannot list; the look that decides does not.
    const Rules acquiring = exceptions + Rules{
                                             {entryKind, "directory link", once, "true false"},
                                             {entryKind, "none", ever, "zvNoSuchDirectory"},
                                             {entryKind, "none", once, "true false zvNoSuchDirectory"},
                                             {entryKind, "file", both, "true zvNoSuchDirectory"},
                                             {openFile, "EACCES", once, "true"},
                                             {openFile, "EEXIST EEXIST-done", both, "true"},
                                             {openFile, "", both, "true zvFileAccessError"},
                                             {openSearch, "ENOENT ENOTDIR", both, "true"},
                                         };
    const Rules reading =
        Rules{
            {openSearch, "EACCES EIO EMFILE ESTALE EINVAL", once, "zvFileAccessError"},
            {openSearch, "bad_alloc", once, "bad_alloc"},
            {nextOfSearch, "", once, "zvFileAccessError"},
        } +
        acquiring;
    // A writer's file that cannot be made is not there.
    const Rules writing =
        Rules{
            {openFile, "EEXIST", ever, "false"},
            {openFile, "EIO EMFILE ENOENT ENOSPC EPERM EROFS ESTALE EINVAL", ever, "false zvFileAccessError"},
            {openSearch, "EACCES EIO EMFILE ESTALE EINVAL", once, "true zvFileAccessError"},
            {openSearch, "bad_alloc", once, "true bad_alloc"},
            {nextOfSearch, "", once, "true zvFileAccessError"},
        } +
        acquiring;
    // No name for the file that tells the clocks apart; a file that cannot be judged, or removed.
    const Rules judging = {
        {modificationTime, "ENOENT", once, "true"},
        {modificationTime, "EBUSY", both, "true"},
        {modificationTime, "EACCES EIO", both, "zvFileAccessError"},
        {openFile, "EEXIST-done", ever, "true zvFileAccessError"},
        {removeFile, "EACCES", both, "true zvPermissionDenied"},
    };
    const Rules readingPastTheDead =
        Rules{
            {openFile, "EEXIST", ever, "true zvFileAccessError"},
        } +
        judging + reading;
    const Rules writingPastTheDead =
        Rules{
            {openFile, "EEXIST", ever, "false zvFileAccessError"},
            {removeFile, "EBUSY EIO ENOENT EPERM EROFS ESTALE EINVAL", ever, "true false"},
        } +
        judging + writing;
    const Rules inVain =
        exceptions +
        Rules{
            {entryKind, "directory link", once, "false"},      {entryKind, "", both, "false zvNoSuchDirectory"},
            {modificationTime, "ENOENT", once, "false"},       {modificationTime, "EBUSY", both, "false"},
            {modificationTime, "", both, "zvFileAccessError"}, {openFile, "EACCES EEXIST EEXIST-done", once, "false"},
            {openFile, "", both, "false zvFileAccessError"},   {removeFile, "EACCES", ever, "false zvPermissionDenied"},
            {openSearch, "ENOENT ENOTDIR", ever, "true"},
        };
    const Rules readingInVain =
        Rules{
            {openSearch, "ENOENT ENOTDIR", once, "true"},
            {openSearch, "bad_alloc", once, "bad_alloc"},
            {openSearch, "", once, "zvFileAccessError"},
            {nextOfSearch, "", once, "zvFileAccessError"},
        } +
        inVain;
    const Rules writingInVain =
        Rules{
            {openSearch, "ENOENT ENOTDIR", once, "false true"},
            {openSearch, "bad_alloc", once, "false bad_alloc"},
            {openSearch, "", once, "false zvFileAccessError"},
            {nextOfSearch, "", once, "false zvFileAccessError"},
        } +
        inVain;
    const Rules refreshing = {{openFile, "EACCES", ever, "ended"}};
    return {
        {"reader_try_acquire", &make<TryRun<ReaderRun>>, "true", reading},
        {"writer_try_acquire", &make<TryRun<WriterRun>>, "true", writing},
        {"reader_acquire", &make<AcquireRun<ReaderRun>>, "true", reading},
        {"writer_acquire", &make<AcquireRun<WriterRun>>, "true", writing},
        {"reader_take_over", &make<TakeOverRun<ReaderRun>>, "true", readingPastTheDead},
        {"writer_take_over", &make<TakeOverRun<WriterRun>>, "true", writingPastTheDead},
        {"reader_behind_writer", &make<WaitRun<ReaderRun>>, "false", readingInVain, 5},
        {"writer_behind_writer", &make<WaitRun<WriterRun>>, "false", writingInVain, 5},
        {"writer_behind_reader", &make<WriterBehindReader>, "false", writingInVain, 5},
        {"reader_refresh_and_release", &make<HeldRun<ReaderRun>>, "released", refreshing, 1000, "ended"},
        {"writer_refresh_and_release", &make<HeldRun<WriterRun>>, "released", refreshing, 1000, "ended"},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
