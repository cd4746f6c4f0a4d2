#include "tests/faults/seam/lock_run.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using boost::posix_time::milliseconds;
using boost::posix_time::seconds;
using namespace seam_faults;

const char levelZero[] = ".deploy_lock.0";
const char levelOne[] = ".deploy_lock.1";

class ExclusiveRun : public LockRun
{
public:
    ExclusiveRun() : m_lock(new zvDirectoryExclusiveLock(directory(), "run", fs())) {}

    void check(const std::string& ending, const Faults& faults) override
    {
        EXPECT_EQ(ending == "true", m_lock->isAcquired());
        if (ending == "true")
            expectHeld();
        EXPECT_EQ(ending == "true", m_lock->release());
        m_lock.reset();
        expectFree(faults);
    }

protected:
    std::string acquire(const boost::posix_time::time_duration& timeout, bool skipRefresh = false)
    {
        return textOf(m_lock->acquire(timeout, skipRefresh));
    }

    void expectHeld()
    {
        EXPECT_TRUE(has(levelZero));
        EXPECT_FALSE(zvDirectoryExclusiveLock(directory(), "newcomer", fs()).tryAcquire(false));
    }

    std::unique_ptr<zvDirectoryExclusiveLock> m_lock;
};

class TryAcquire : public ExclusiveRun
{
public:
    std::string act() override { return textOf(m_lock->tryAcquire(false)); }
};

class AcquireWithoutRefresh : public ExclusiveRun
{
public:
    std::string act() override { return acquire(seconds(1), true); }
};

/// In the file's place of a holder who died.
class TakeOver : public ExclusiveRun
{
public:
    TakeOver() { foreignFile(levelZero, 60); }
    std::string act() override { return acquire(seconds(2)); }

    void check(const std::string& ending, const Faults& faults) override
    {
        removeStaleFile(levelZero);
        removeStaleFile(levelOne);
        ExclusiveRun::check(ending, faults);
    }
};

/// Behind a holder who died and another who died while it waited.
class TakeOverQueue : public TakeOver
{
public:
    TakeOverQueue() { foreignFile(levelOne, 60); }
};

bool isCreationWithoutAReply(const Fault& fault)
{
    return fault.function == openFile && fault.answer.effect == Effect::done && fault.forEver;
}

/// Waits longer than a file takes to go stale, so that a file that nobody
/// knows of (made, and said not to be) is in nobody's way for ever.
class AcquirePatiently : public ExclusiveRun
{
public:
    std::string act() override { return acquire(seconds(60), true); }

    /// Files at all the levels, of which no creator knows, are a full queue: it
    /// says so to everybody, and somebody has to clear it.
    void check(const std::string& ending, const Faults& faults) override
    {
        if (countOf(".deploy_lock.") == 1024) {
            EXPECT_TRUE(std::any_of(faults.begin(), faults.end(), isCreationWithoutAReply));
            EXPECT_FALSE(newcomerCanHaveAll());
            EXPECT_TRUE(zvRemoveRF((directory() + "\\*").c_str()));
        }
        ExclusiveRun::check(ending, faults);
    }
};

/// Behind a holder who stays: no fault lets a second one in.
class WaitInVain : public ExclusiveRun
{
public:
    WaitInVain() { foreignFile(levelZero); }
    std::string act() override { return acquire(milliseconds(30)); }
    void check(const std::string& ending, const Faults& faults) override
    {
        removeForeignFile(levelZero);
        ExclusiveRun::check(ending, faults);
    }
};

class TryInVain : public WaitInVain
{
public:
    std::string act() override { return textOf(m_lock->tryAcquire(false)); }
};

class HeldRun : public ExclusiveRun
{
public:
    HeldRun() { EXPECT_TRUE(m_lock->tryAcquire(false)); }

    /// A hold that is not released is still one, whatever happened to it.
    void check(const std::string& ending, const Faults& faults) override
    {
        if (ending == "refreshed" || ending == "ended") {
            EXPECT_TRUE(m_lock->isAcquired());
            EXPECT_TRUE(has(levelZero));
            EXPECT_TRUE(m_lock->release());
        }
        EXPECT_FALSE(m_lock && m_lock->isAcquired());
        m_lock.reset();
        expectFree(faults);
    }
};

class Refresh : public HeldRun
{
public:
    std::string act() override
    {
        for (int times = 3; times > 0; --times)
            fireTimers();
        return runningTimers() == 1 ? "refreshed" : "ended";
    }
};

class Release : public HeldRun
{
public:
    std::string act() override { return m_lock->release() ? "released" : "false"; }
};

class Destroy : public HeldRun
{
public:
    std::string act() override
    {
        m_lock.reset();
        return "destroyed";
    }
};

/// A hold inside a hold.
class AcquireTwice : public HeldRun
{
public:
    std::string act() override
    {
        const bool isInside = m_lock->acquire(seconds(1), false) && m_lock->release();
        const bool isReleased = m_lock->release();
        return isInside && isReleased ? "released" : "false";
    }
};

}  // namespace

Scenarios exclusiveScenarios()
{
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Persistence both = Persistence::both;
    // What is said to be there although it is not, and the other way round.
    const Rules misled = {
        {entryKind, "directory link", ever, "false"},
        {entryKind, "none", ever, "zvNoSuchDirectory"},
    };
    const Rules exceptions = {
        {sleepFor, "", both, "interrupted"},
        {setTimer, "bad_alloc", both, "bad_alloc"},
        {setTimer, "", both, "thread_resource_error"},
    };
    // An open that fails makes an exception of a creation, and is repeated by a refresh; one that is refused is
    // repeated by both.
    const Rules acquiring = misled + exceptions +
                            Rules{
                                {entryKind, "directory link", once, "true false"},
                                {entryKind, "", both, "true false zvNoSuchDirectory"},
                                {openFile, "EACCES", once, "true"},
                                {openFile, "EACCES", ever, "zvPermissionDenied"},
                                {openFile, "EEXIST EEXIST-done", both, "true false"},
                                {openFile, "", both, "true zvFileAccessError"},
                            };
    // What is thrown in the queue is the base.
    const Rules queued = exceptions + Rules{
                                          {entryKind, "directory link", ever, "false"},
                                          {entryKind, "directory link", once, "true false"},
                                          {entryKind, "none", ever, "zvNoSuchDirectory zvFileBasedLockError"},
                                          {entryKind, "", both, "true false zvNoSuchDirectory zvFileBasedLockError"},
                                          {modificationTime, "ENOENT EBUSY", both, "true"},
                                          {modificationTime, "", both, "zvFileBasedLockError"},
                                          {openFile, "EACCES", once, "true"},
                                          {openFile, "EACCES", ever, "zvPermissionDenied zvFileBasedLockError"},
                                          {openFile, "EEXIST", once, "true"},
                                          {openFile, "EEXIST-done", once, "true false"},
                                          {openFile, "EEXIST EEXIST-done", ever, "true false zvFileBasedLockError"},
                                          {openFile, "", both, "true zvFileAccessError zvFileBasedLockError"},
                                          {removeFile, "EACCES", once, "true zvFileBasedLockError"},
                                          {removeFile, "EACCES", ever, "zvFileBasedLockError"},
                                      };
    // Nobody gets in while another one holds.
    const Rules inVain = exceptions + Rules{
                                          {entryKind, "directory link", both, "false"},
                                          {entryKind, "none", ever, "zvNoSuchDirectory zvFileBasedLockError"},
                                          {entryKind, "", both, "false zvNoSuchDirectory zvFileBasedLockError"},
                                          {modificationTime, "ENOENT EBUSY", both, "false"},
                                          {modificationTime, "", both, "zvFileBasedLockError"},
                                          {openFile, "EACCES", once, "false"},
                                          {openFile, "EACCES", ever, "zvPermissionDenied zvFileBasedLockError"},
                                          {openFile, "EEXIST EEXIST-done", once, "false"},
                                          {openFile, "EEXIST EEXIST-done", ever, "false zvFileBasedLockError"},
                                          {openFile, "", both, "zvFileAccessError zvFileBasedLockError"},
                                          {removeFile, "EACCES", both, "false zvPermissionDenied"},
                                      };
    // With time enough a file that was made unknown to its maker goes stale and is taken over.
    const Rules patient =
        Rules{
            {openFile, "EEXIST EEXIST-done", once, "true"},
        } +
        acquiring;
    return {
        {"exclusive_try_acquire", &make<TryAcquire>, "true", acquiring},
        {"exclusive_acquire_without_refresh", &make<AcquireWithoutRefresh>, "true", acquiring},
        {"exclusive_acquire_patiently", &make<AcquirePatiently>, "true", patient},
        {"exclusive_take_over", &make<TakeOver>, "true", queued},
        {"exclusive_take_over_queue", &make<TakeOverQueue>, "true", queued},
        {"exclusive_wait_in_vain", &make<WaitInVain>, "false", inVain, 6},
        {"exclusive_try_in_vain", &make<TryInVain>, "false", inVain},
        {"exclusive_refresh", &make<Refresh>, "refreshed", {{openFile, "EACCES", ever, "ended"}}, 1000, "ended"},
        {"exclusive_release", &make<Release>, "released", {}},
        {"exclusive_destroy", &make<Destroy>, "destroyed", {}},
        {"exclusive_acquire_twice", &make<AcquireTwice>, "released", {}},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
