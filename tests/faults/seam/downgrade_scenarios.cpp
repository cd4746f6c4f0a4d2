#include "tests/faults/seam/lock_run.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

/// A writer becomes a reader, or stays what it is.
class Downgrade : public LockRun
{
public:
    Downgrade() : m_writer(readWriteLock().getWriteLock()), m_reader(readWriteLock().getReadLock())
    {
        EXPECT_TRUE(m_writer.tryAcquire(false));
    }

    std::string act() override
    {
        m_reader = m_writer.downgrade(boost::posix_time::seconds(1));
        return textOf(m_reader.isAcquired());
    }

    void check(const std::string& ending, const Faults& faults) override
    {
        const bool isReader = ending == "true";
        EXPECT_EQ(isReader, m_reader.isAcquired());
        EXPECT_EQ(!isReader, m_writer.isAcquired());
        EXPECT_EQ(1u, runningTimers());
        EXPECT_FALSE(readWriteLock().getWriteLock().tryAcquire(false)) << "another writer came in between";
        EXPECT_TRUE(isReader ? countOf(".deploy_read_lock.") != 0 : has(".deploy_write_lock"));
        EXPECT_EQ(isReader, m_reader.release());
        EXPECT_EQ(!isReader, m_writer.release());
        expectFree(faults);
    }

private:
    zvDirectoryReadWriteLock::WriteLock m_writer;
    zvDirectoryReadWriteLock::ReadLock m_reader;
};

/// One who does not write cannot become a reader.
class DowngradeOfNobody : public LockRun
{
public:
    std::string act() override
    {
        zvDirectoryReadWriteLock::WriteLock writer = readWriteLock().getWriteLock();
        if (!writer.tryAcquire(true))
            return "false";
        writer.release();
        return textOf(writer.tryDowngrade().isAcquired());
    }

    void check(const std::string&, const Faults& faults) override { expectFree(faults); }
};

}  // namespace

Scenarios downgradeScenarios()
{
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Persistence both = Persistence::both;
    const Rules exceptions = {
        {sleepFor, "", both, "interrupted"},
        {setTimer, "bad_alloc", both, "bad_alloc"},
        {setTimer, "", both, "thread_resource_error"},
        {openFile, "EACCES", ever, "zvPermissionDenied"},
    };
    const Rules downgrading = exceptions + Rules{
                                               {openFile, "EACCES", once, "true"},
                                               {openFile, "EEXIST EEXIST-done", both, "true"},
                                               {openFile, "", both, "true zvFileAccessError"},
                                           };
    const Rules nobody = exceptions + Rules{
                                          {openFile, "EACCES EEXIST EEXIST-done", both, "false"},
                                          {openFile, "", both, "false zvFileAccessError"},
                                          {entryKind, "directory link", both, "false"},
                                          {entryKind, "none", ever, "zvNoSuchDirectory"},
                                          {entryKind, "", both, "false zvNoSuchDirectory"},
                                          {codeOfSearch, "", both, "zvFileAccessError"},
                                          {nextOfSearch, "", once, "false zvFileAccessError"},
                                          {nextOfSearch, "", ever, "zvFileAccessError"},
                                          {openSearch, "ENOENT ENOTDIR", both, "false"},
                                          {openSearch, "bad_alloc", once, "false bad_alloc"},
                                          {openSearch, "bad_alloc", ever, "bad_alloc"},
                                          {openSearch, "", once, "false zvFileAccessError"},
                                          {openSearch, "", ever, "zvFileAccessError"},
                                      };
    return {
        {"downgrade", &make<Downgrade>, "true", downgrading, 1000, "zvNoSuchDirectory"},
        {"downgrade_of_nobody", &make<DowngradeOfNobody>, "false", nobody},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
