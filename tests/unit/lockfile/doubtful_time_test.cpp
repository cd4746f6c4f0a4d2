#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include "tests/support/fake_clock.h"
#include "tests/support/temporary_tree.h"

#include <boost/thread/thread.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Times of files that are out of the question, as a file that is just being
// created on NFS shows them.

using namespace zorvel::test;

namespace {

const long day = 24 * 60 * 60;

class DoubtfulTime : public testing::Test
{
protected:
    /// The clock shows the time of the file that is made here.
    void SetUp() override
    {
        m_tree.file("file");
        m_written = m_tree.modificationTime("file");
        const boost::posix_time::ptime epoch(boost::gregorian::date(1970, 1, 1));
        fake_clock::set(epoch + boost::posix_time::seconds(m_written));
    }

    long long time() { return m_fs->getModificationTime(m_tree.path("file").c_str()); }

    fake_clock::Scope m_clock;
    TemporaryTree m_tree;
    const boost::shared_ptr<zvAbstractFS> m_fs = zvGetDefaultFSImp();
    long long m_written = 0;
};

}  // namespace

TEST_F(DoubtfulTime, OneOfTheLastOrTheNextDayIsBelievedAtOnce)
{
    EXPECT_EQ(m_written, time());
    m_tree.age("file", -day + 2);
    EXPECT_EQ(m_written - day + 2, time());
    m_tree.age("file", 2 * day - 4);
    EXPECT_EQ(m_written + day - 2, time());
    EXPECT_EQ(std::vector<long>(), fake_clock::sleeps());
}

TEST_F(DoubtfulTime, AnyOtherIsAskedForForASecondAndThenBelieved)
{
    m_tree.age("file", -day - 2);
    EXPECT_EQ(m_written - day - 2, time());
    EXPECT_EQ(std::vector<long>(100, 10), fake_clock::sleeps());
    m_tree.age("file", 2 * day + 4);
    EXPECT_EQ(m_written + day + 2, time());
    EXPECT_EQ(std::vector<long>(200, 10), fake_clock::sleeps());
}

TEST_F(DoubtfulTime, OneThatIsPutRightMeanwhileIsTheRightOne)
{
    m_tree.age("file", -20 * 365 * day);
    const boost::posix_time::ptime now = fake_clock::now();
    fake_clock::reset(fake_clock::manual);
    fake_clock::set(now);
    long long found = 0;
    boost::thread asker([&] { found = time(); });
    EXPECT_TRUE(fake_clock::waitForSleepers(1));
    m_tree.age("file", 20 * 365 * day);
    fake_clock::advance(boost::posix_time::milliseconds(10));
    asker.join();
    EXPECT_EQ(m_written, found);
    EXPECT_EQ(std::vector<long>(1, 10), fake_clock::sleeps());
}

TEST_F(DoubtfulTime, AFileThatGoesMeanwhileIsMissing)
{
    m_tree.age("file", -2 * day);
    const boost::posix_time::ptime now = fake_clock::now();
    fake_clock::reset(fake_clock::manual);
    fake_clock::set(now);
    bool missing = false;
    boost::thread asker([&] {
        try {
            time();
        } catch (const zvFileNotFoundError&) {
            missing = true;
        }
    });
    EXPECT_TRUE(fake_clock::waitForSleepers(1));
    EXPECT_EQ(0, m_fs->removeEntry(m_tree.path("file").c_str()));
    fake_clock::advance(boost::posix_time::milliseconds(10));
    asker.join();
    EXPECT_TRUE(missing);
}

/// Where the local clock is wrong, questions take longer, nothing else.
TEST_F(DoubtfulTime, AWrongClockChangesNoAnswer)
{
    fake_clock::set(fake_clock::now() + boost::posix_time::hours(24 * 400));
    EXPECT_EQ(m_written, time());
    EXPECT_EQ(100u, fake_clock::sleeps().size());
}
