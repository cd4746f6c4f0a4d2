#include "tests/faults/seam/scenario.h"
#include "tests/support/temporary_tree.h"
#include "tests/unit/ipc/caught_errors.h"

#include <zorvel/ipc.h>

#include <gtest/gtest.h>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

/// A semaphore of a name that nobody else has.
class SemaphoreRun : public Run
{
    const TemporaryTree m_tree;
    CaughtErrors m_errors;

public:
    SemaphoreRun() : m_semaphore(new zvSemaphoreIPC(name(), 0, false)) {}

    void check(const std::string& ending, const Faults& faults) override
    {
        const std::string messages = m_errors.take();
        if (faults.empty()) {
            EXPECT_EQ(expectsMessage(), !messages.empty()) << messages;
        } else if (faults[0].answer.effect != Effect::noMemory) {
            EXPECT_EQ(isTold(faults[0]), !messages.empty()) << messages;
        }
        checkObject(ending, faults);
        m_semaphore.reset();
        expectGone();
    }

protected:
    std::string name() const { return "seam-" + m_tree.root(); }
    virtual void checkObject(const std::string& ending, const Faults& faults) = 0;
    /// Whether a message comes when nothing fails.
    virtual bool expectsMessage() const { return false; }

    /// Whether a message comes of a fault: of what the system refused, and of a
    /// wait that did not come to an end as it should.
    virtual bool isTold(const Fault& fault) const
    {
        if (fault.function == closeSemaphore)
            return fault.answer.result == -1;
        return expectsMessage() || fault.function == createSemaphore || fault.function == waitForSemaphore ||
               fault.function == releaseSemaphore;
    }

    std::unique_ptr<zvSemaphoreIPC> m_semaphore;

private:
    /// With the last handle closed the semaphore is free for who opens it next.
    void expectGone()
    {
        zvSemaphoreIPC next(name(), 0, false);
        EXPECT_TRUE(next.Open());
        EXPECT_TRUE(next.TryAcquire()) << "an earlier handle is still open";
        EXPECT_TRUE(next.Release());
    }
};

class Open : public SemaphoreRun
{
public:
    std::string act() override { return textOf(m_semaphore->Open()); }

protected:
    void checkObject(const std::string& ending, const Faults&) override
    {
        EXPECT_EQ(ending == "true", m_semaphore->IsValid());
        EXPECT_EQ(ending == "true", m_semaphore->TryAcquire());
    }
};

class OpenedRun : public SemaphoreRun
{
public:
    OpenedRun() { EXPECT_TRUE(m_semaphore->Open()); }

protected:
    void checkObject(const std::string&, const Faults&) override { EXPECT_TRUE(m_semaphore->IsValid()); }
};

class Acquire : public OpenedRun
{
public:
    std::string act() override { return textOf(m_semaphore->Acquire(true)); }

protected:
    void checkObject(const std::string& ending, const Faults& faults) override
    {
        OpenedRun::checkObject(ending, faults);
        EXPECT_EQ(ending == "true", m_semaphore->OwnsLock());
        EXPECT_EQ(ending != "true", m_semaphore->TryAcquire()) << "it is taken exactly when it says so";
    }
};

class TryAcquire : public Acquire
{
public:
    std::string act() override { return textOf(m_semaphore->TryAcquire()); }

protected:
    bool isTold(const Fault& fault) const override
    {
        return Acquire::isTold(fault) && std::string(fault.answer.name) != "timedOut";
    }
};

class TimeOut : public OpenedRun
{
public:
    TimeOut() { EXPECT_TRUE(m_semaphore->TryAcquire()); }

    std::string act() override
    {
        const bool isAcquired = m_semaphore->Acquire(true);
        return isAcquired ? "true" : m_semaphore->WaitTimedOut() ? "timedOut" : "false";
    }

protected:
    bool expectsMessage() const override { return true; }
};

class Release : public OpenedRun
{
public:
    Release() { EXPECT_TRUE(m_semaphore->TryAcquire()); }
    std::string act() override { return textOf(m_semaphore->Release()); }

protected:
    void checkObject(const std::string& ending, const Faults& faults) override
    {
        OpenedRun::checkObject(ending, faults);
        EXPECT_FALSE(m_semaphore->OwnsLock());
        const bool isDone = ending == "true" || faults.at(0).answer.effect == Effect::done;
        EXPECT_EQ(isDone, m_semaphore->TryAcquire());
    }
};

class ReleaseOfFree : public OpenedRun
{
public:
    std::string act() override { return textOf(m_semaphore->Release()); }

protected:
    bool expectsMessage() const override { return true; }
};

class Close : public OpenedRun
{
public:
    std::string act() override
    {
        m_semaphore.reset();
        return "closed";
    }

protected:
    void checkObject(const std::string&, const Faults&) override {}
};

/// One whole life.
class Life : public SemaphoreRun
{
public:
    std::string act() override
    {
        const bool isOpen = m_semaphore->Open();
        const bool isAcquired = isOpen && m_semaphore->Acquire(true);
        const bool isReleased = isAcquired && m_semaphore->Release();
        m_semaphore.reset();
        return std::string(textOf(isOpen)) + "," + textOf(isAcquired) + "," + textOf(isReleased);
    }

protected:
    void checkObject(const std::string&, const Faults&) override {}
};

}  // namespace

Scenarios semaphoreScenarios()
{
    const Persistence both = Persistence::both;
    const Rules opening = {{createSemaphore, "", both, "false"}};
    const Rules acquiring = {{waitForSemaphore, "", both, "false"}};
    const Rules releasing = {{releaseSemaphore, "", both, "false"}};
    const Rules waiting = Rules{{waitForSemaphore, "timedOut", both, "timedOut"}} + acquiring;
    const Rules living = {
        {createSemaphore, "", both, "false,false,false"},
        {waitForSemaphore, "", both, "true,false,false"},
        {releaseSemaphore, "", both, "true,true,false"},
    };
    return {
        {"semaphore_open", &make<Open>, "true", opening},
        {"semaphore_acquire", &make<Acquire>, "true", acquiring},
        {"semaphore_try_acquire", &make<TryAcquire>, "true", acquiring},
        {"semaphore_time_out", &make<TimeOut>, "timedOut", waiting},
        {"semaphore_release", &make<Release>, "true", releasing},
        {"semaphore_release_of_free", &make<ReleaseOfFree>, "false", {}},
        {"semaphore_close", &make<Close>, "closed", {}},
        {"semaphore_life", &make<Life>, "true,true,true", living},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
