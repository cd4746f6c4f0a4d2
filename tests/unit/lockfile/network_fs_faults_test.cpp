#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include "lockfile/detail/periodic_refresh.h"

#include "tests/support/fake_clock.h"
#include "tests/support/fake_timer.h"
#include "tests/support/seam_faults.h"
#include "tests/support/temporary_tree.h"

#include <boost/thread/thread.hpp>

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

// The default file system when single operations of the system fail.

namespace {

using namespace zorvel::test;
using boost::posix_time::milliseconds;
using boost::posix_time::ptime;
using boost::posix_time::seconds;
using testing::IsEmpty;

typedef std::vector<long> Sleeps;

Sleeps sleepsOf(std::size_t times, long msec)
{
    return Sleeps(times, msec);
}

class NetworkFsFaults : public testing::Test
{
protected:
    bool create() { return m_fs->createFileExclusive(m_name.c_str()); }
    bool remove(const ptime& deadline) { return m_fs->removeFileUntil(m_name, deadline); }
    bool refresh(const ptime& deadline) { return m_fs->refreshLockFileUntil(m_name, deadline); }

    static ptime in(long msec) { return fake_clock::now() + milliseconds(msec); }

    seam_faults::Scope m_faults;
    fake_clock::Scope m_clock;
    TemporaryTree m_tree;
    const boost::shared_ptr<zvAbstractFS> m_fs = zvGetDefaultFSImp();
    const std::string m_name = m_tree.root() + "/file";
};

template <class F>
void expectDenied(const std::string& name, F f)
{
    try {
        f();
        FAIL() << "not denied";
    } catch (const zvPermissionDenied& error) {
        EXPECT_EQ("Tried to obtain a lock on a directory without write permission: " + name, error.what());
    }
}

TEST_F(NetworkFsFaults, ADeniedCreationIsTried51TimesThenThrown)
{
    seam_faults::failAlways(seam_faults::openFile, EACCES);
    expectDenied(m_name, [&] { create(); });
    EXPECT_EQ(51u, seam_faults::calls(seam_faults::openFile));
    EXPECT_EQ(sleepsOf(50, 10), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, ACreationDenied50TimesSucceeds)
{
    seam_faults::failNext(seam_faults::openFile, EACCES, 50);
    EXPECT_TRUE(create());
    EXPECT_EQ(sleepsOf(50, 10), fake_clock::sleeps());
    EXPECT_TRUE(m_tree.exists("file"));
}

TEST_F(NetworkFsFaults, ACreationThatWasDeniedMayFindTheFileThere)
{
    m_tree.file("file");
    seam_faults::failNext(seam_faults::openFile, EACCES, 3);
    EXPECT_FALSE(create());
    EXPECT_EQ(sleepsOf(3, 10), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, OnlyDeniedAccessIsTriedAgain)
{
    for (const int code : {EEXIST, ENOENT, EIO, EBUSY, EMFILE}) {
        seam_faults::reset();
        seam_faults::failAlways(seam_faults::openFile, code);
        try {
            EXPECT_FALSE(create());
            EXPECT_EQ(EEXIST, code);
        } catch (const zvFileAccessError& error) {
            EXPECT_EQ("File system error occurred: Exclusive create failed on " + m_name +
                          " (reason: " + std::strerror(code) + ")",
                      error.what());
        }
        EXPECT_EQ(1u, seam_faults::calls(seam_faults::openFile));
    }
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFsFaults, AMissingDirectoryGoesBeforeEveryCode)
{
    const std::string name = m_tree.root() + "/missing/file";
    for (const int code : {EEXIST, EACCES, EIO}) {
        seam_faults::failAlways(seam_faults::openFile, code);
        EXPECT_THROW(m_fs->createFileExclusive(name.c_str()), zvNoSuchDirectory);
        EXPECT_THROW(m_fs->refreshLockFileUntil(name, in(5)), zvNoSuchDirectory);
    }
}

TEST_F(NetworkFsFaults, ABusyFileIsRemovedWhenItIsFree)
{
    m_tree.file("file");
    seam_faults::failNext(seam_faults::removeFile, EBUSY, 7);
    EXPECT_TRUE(remove(in(100)));
    EXPECT_FALSE(m_tree.exists("file"));
    EXPECT_EQ(sleepsOf(7, 1), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, ABusyFileIsTriedEachMillisecondUntilTheDeadline)
{
    seam_faults::failAlways(seam_faults::removeFile, EBUSY);
    EXPECT_FALSE(remove(in(20)));
    EXPECT_EQ(sleepsOf(20, 1), fake_clock::sleeps());
    EXPECT_EQ(21u, seam_faults::calls(seam_faults::removeFile));
}

TEST_F(NetworkFsFaults, ABusyFileIsTriedForASecondByDefault)
{
    seam_faults::failAlways(seam_faults::removeFile, EBUSY);
    EXPECT_FALSE(m_fs->removeFile(m_name));
    EXPECT_EQ(1001u, seam_faults::calls(seam_faults::removeFile));
}

TEST_F(NetworkFsFaults, ABusyFileIsTriedOnceAfterTheDeadline)
{
    seam_faults::failAlways(seam_faults::removeFile, EBUSY);
    EXPECT_FALSE(remove(in(0)));
    EXPECT_FALSE(remove(in(-50)));
    EXPECT_FALSE(remove(ptime(boost::posix_time::neg_infin)));
    EXPECT_FALSE(remove(ptime(boost::posix_time::not_a_date_time)));
    EXPECT_EQ(4u, seam_faults::calls(seam_faults::removeFile));
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFsFaults, ABusyFileIsTriedWithoutLimit)
{
    m_tree.file("file");
    seam_faults::failNext(seam_faults::removeFile, EBUSY, 5000);
    EXPECT_TRUE(remove(ptime(boost::posix_time::pos_infin)));
    EXPECT_EQ(sleepsOf(5000, 1), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, AnyOtherRefusalOfARemovalAnswersFalseAtOnce)
{
    for (const int code : {ENOENT, EIO, EPERM, ENOTDIR}) {
        seam_faults::reset();
        seam_faults::failAlways(seam_faults::removeFile, code);
        EXPECT_FALSE(remove(in(1000)));
        EXPECT_EQ(1u, seam_faults::calls(seam_faults::removeFile));
    }
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFsFaults, ADeniedRemovalIsThrownAtOnce)
{
    seam_faults::failAlways(seam_faults::removeFile, EACCES);
    expectDenied(m_name, [&] { remove(in(1000)); });
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
    seam_faults::reset();
    m_tree.file("file");
    seam_faults::failNext(seam_faults::removeFile, EBUSY, 2);
    EXPECT_TRUE(remove(in(1000)));
}

TEST_F(NetworkFsFaults, ADeniedRefreshIsTried51TimesThenThrown)
{
    seam_faults::failAlways(seam_faults::openFile, EACCES);
    expectDenied(m_name, [&] { refresh(in(10000)); });
    EXPECT_EQ(51u, seam_faults::calls(seam_faults::openFile));
    EXPECT_EQ(sleepsOf(50, 10), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, ARefreshDenied50TimesSucceedsAfterItsDeadlineToo)
{
    seam_faults::failNext(seam_faults::openFile, EACCES, 50);
    EXPECT_TRUE(refresh(in(-1)));
    EXPECT_EQ(sleepsOf(50, 10), fake_clock::sleeps());
    EXPECT_EQ(4u, m_tree.content("file").size());
}

TEST_F(NetworkFsFaults, AFailedRefreshIsRepeatedEachMillisecondUntilTheDeadline)
{
    seam_faults::failAlways(seam_faults::openFile, EIO);
    EXPECT_FALSE(refresh(in(20)));
    EXPECT_EQ(20u, seam_faults::calls(seam_faults::openFile));
    EXPECT_EQ(sleepsOf(20, 1), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, AFailedRefreshAfterTheDeadlineIsOneAttemptAndOnePause)
{
    seam_faults::failAlways(seam_faults::openFile, EIO);
    EXPECT_FALSE(refresh(in(0)));
    EXPECT_FALSE(refresh(in(-50)));
    EXPECT_FALSE(refresh(ptime(boost::posix_time::neg_infin)));
    EXPECT_FALSE(refresh(ptime(boost::posix_time::not_a_date_time)));
    EXPECT_EQ(4u, seam_faults::calls(seam_faults::openFile));
    EXPECT_EQ(sleepsOf(4, 1), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, ARefreshGoesOnUntilItSucceeds)
{
    seam_faults::failNext(seam_faults::openFile, EIO, 700);
    EXPECT_TRUE(refresh(ptime(boost::posix_time::pos_infin)));
    EXPECT_EQ(sleepsOf(700, 1), fake_clock::sleeps());
}

TEST_F(NetworkFsFaults, AShortWriteIsAFailedRefresh)
{
    seam_faults::failAlways(seam_faults::writeFile, EIO);
    EXPECT_FALSE(refresh(in(5)));
    EXPECT_EQ(5u, seam_faults::calls(seam_faults::writeFile));
    EXPECT_EQ("", m_tree.content("file"));
    seam_faults::reset();
    seam_faults::failNext(seam_faults::writeFile, EIO, 3);
    EXPECT_TRUE(refresh(in(5)));
    EXPECT_EQ(4u, m_tree.content("file").size());
}

TEST_F(NetworkFsFaults, OnlyAPeriodicRefreshIsFlushed)
{
    EXPECT_TRUE(refresh(in(1000)));
    EXPECT_EQ(0u, seam_faults::calls(seam_faults::flushFile));
    {
        const zorvel::lockfile::PeriodicRefresh periodic;
        EXPECT_TRUE(refresh(in(1000)));
    }
    EXPECT_EQ(1u, seam_faults::calls(seam_faults::flushFile));
    EXPECT_TRUE(refresh(in(1000)));
    EXPECT_EQ(1u, seam_faults::calls(seam_faults::flushFile));
}

TEST_F(NetworkFsFaults, ARefreshThatCannotBeFlushedIsTriedAgain)
{
    const zorvel::lockfile::PeriodicRefresh periodic;
    seam_faults::failNext(seam_faults::flushFile, EIO, 2);
    EXPECT_TRUE(refresh(in(1000)));
    EXPECT_EQ(3u, seam_faults::calls(seam_faults::flushFile));
}

/// The timer's touch is a periodic one; the first is not.
TEST_F(NetworkFsFaults, ALockFileFlushesWhatItsTimerRefreshes)
{
    const zvLockFile file(m_name, boost::posix_time::seconds(1), m_fs);
    EXPECT_EQ(0u, seam_faults::calls(seam_faults::flushFile));
    zorvel::test::fake_timer::fire();
    EXPECT_EQ(1u, seam_faults::calls(seam_faults::flushFile));
}

TEST_F(NetworkFsFaults, ATimeThatCannotBeReadIsThrown)
{
    m_tree.file("file");
    for (const int code : {EACCES, EIO, ENOTDIR}) {
        seam_faults::failNext(seam_faults::modificationTime, code, 1);
        try {
            m_fs->getModificationTime(m_name.c_str());
            FAIL() << "a time was read";
        } catch (const zvFileAccessError& error) {
            EXPECT_EQ("File system error occurred: " + m_name, error.what());
        }
    }
    seam_faults::failNext(seam_faults::modificationTime, ENOENT, 1);
    EXPECT_THROW(m_fs->getModificationTime(m_name.c_str()), zvFileNotFoundError);
}

TEST_F(NetworkFsFaults, ATimeThatCannotBeReadWhileTheFileGoesIsAskedForAgain)
{
    m_tree.file("file");
    fake_clock::set(boost::posix_time::ptime(boost::gregorian::date(1970, 1, 1)) +
                    boost::posix_time::seconds(m_tree.modificationTime("file")));
    for (const int code : {EBUSY, EINVAL}) {
        seam_faults::failNext(seam_faults::modificationTime, code, 1);
        EXPECT_EQ(m_tree.modificationTime("file"), m_fs->getModificationTime(m_name.c_str()));
    }
    EXPECT_EQ(sleepsOf(2, 10), fake_clock::sleeps());
}

/// What a search says when it fails with a code, at its beginning or its end.
std::string textOfFailedSearch(const std::string& pattern, seam_faults::Function function, int code)
{
    const seam_faults::Scope faults;
    seam_faults::failNext(function, code, 1);
    try {
        return zvGetDefaultFSImp()->anyMatch(pattern.c_str()) ? "found" : "nothing";
    } catch (const zvFileAccessError& error) {
        return error.what();
    }
}

TEST_F(NetworkFsFaults, WhatCannotBeSearchedIsNotTakenForEmpty)
{
    const std::string text = "File system error occurred: Search failed for " + m_name + " (reason: ";
    for (const int code : {EACCES, EIO, EMFILE, ENOMEM})
        EXPECT_EQ(text + std::strerror(code) + ")", textOfFailedSearch(m_name, seam_faults::openSearch, code));
}

/// An empty directory has the names that stand for itself and its parent, so
/// the search begins on every system.
TEST_F(NetworkFsFaults, ASearchThatBreaksOffIsNotTakenForItsEnd)
{
    m_tree.directory("empty");
    const std::string pattern = m_tree.path("empty\\*");
    EXPECT_EQ("File system error occurred: Search failed for " + pattern + " (reason: " + std::strerror(EIO) + ")",
              textOfFailedSearch(pattern, seam_faults::codeOfSearch, EIO));
}

TEST_F(NetworkFsFaults, AMatchIsFoundBeforeASearchBreaksOff)
{
    m_tree.file("some.none");
    EXPECT_EQ("found", textOfFailedSearch(m_tree.path("*.none"), seam_faults::codeOfSearch, EIO));
}

TEST_F(NetworkFsFaults, WhatIsMissingHoldsNothing)
{
    for (const int code : {ENOENT, ENOTDIR})
        EXPECT_EQ("nothing", textOfFailedSearch(m_name, seam_faults::openSearch, code));
}

/// Whether an operation that waits ends by the interruption of its thread.
template <class F>
bool isInterrupted(F f)
{
    bool interrupted = false;
    boost::mutex begin;
    boost::unique_lock<boost::mutex> notYet(begin);
    boost::thread thread([&] {
        {
            const boost::this_thread::disable_interruption uninterrupted;
            const boost::lock_guard<boost::mutex> lock(begin);
        }
        try {
            f();
        } catch (const boost::thread_interrupted&) {
            interrupted = true;
        }
    });
    thread.interrupt();
    notYet.unlock();
    thread.join();
    return interrupted;
}

TEST_F(NetworkFsFaults, EveryWaitCanBeInterrupted)
{
    seam_faults::failAlways(seam_faults::openFile, EACCES);
    EXPECT_TRUE(isInterrupted([&] { create(); }));
    EXPECT_TRUE(isInterrupted([&] { refresh(in(1000)); }));
    seam_faults::failAlways(seam_faults::openFile, EIO);
    EXPECT_TRUE(isInterrupted([&] { refresh(in(1000)); }));
    seam_faults::failAlways(seam_faults::removeFile, EBUSY);
    EXPECT_TRUE(isInterrupted([&] { remove(in(1000)); }));
    EXPECT_THAT(fake_clock::sleeps(), IsEmpty());
}

TEST_F(NetworkFsFaults, NothingIsInterruptedThatDoesNotWait)
{
    EXPECT_FALSE(isInterrupted([&] {
        create();
        refresh(in(1000));
        remove(in(1000));
    }));
}

}  // namespace
