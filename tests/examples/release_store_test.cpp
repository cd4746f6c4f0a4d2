#include "examples/deploy_demo/marks.h"
#include "examples/deploy_demo/release_store.h"
#include "tests/support/temporary_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

using namespace zorvel::demo;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

std::string directoryOf(const zorvel::test::TemporaryTree& tree)
{
    std::string path = tree.root();
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

class DeployDemoStore : public testing::Test
{
protected:
    DeployDemoStore() : store(directoryOf(tree)) { store.create("demo"); }

    void writeFiles(int release, int count, const std::string& author)
    {
        for (int i = 0; i < count; ++i)
            store.write(release, i, author);
    }

    zorvel::test::TemporaryTree tree;
    ReleaseStore store;
};

class DeployDemoMarks : public testing::Test
{
protected:
    DeployDemoMarks() : marks(directoryOf(tree)) { marks.create(); }

    zorvel::test::TemporaryTree tree;
    Marks marks;
};

}  // namespace

TEST_F(DeployDemoStore, BeginsWithAWholeRelease)
{
    EXPECT_TRUE(store.isWhole());
    EXPECT_EQ(Manifest::finished, store.manifest().state);
    EXPECT_EQ(1, store.manifest().release);
    EXPECT_EQ("demo", store.manifest().author);
    EXPECT_EQ(2, store.next());
}

TEST_F(DeployDemoStore, AReleaseThatIsBegunIsUnfinishedUntilItIsPublished)
{
    store.begin(2, "W1");
    writeFiles(2, 4, "W1");
    EXPECT_EQ(Manifest::unfinished, store.manifest().state);
    EXPECT_EQ("W1", store.manifest().author);
    EXPECT_EQ(4, store.filesOf(2));
    EXPECT_EQ(4, store.filesOf(1));
    EXPECT_EQ(2, store.next());
    EXPECT_FALSE(store.isWhole());

    store.begin(2, "W2");
    writeFiles(2, ReleaseStore::FILES_PER_RELEASE, "W2");
    EXPECT_TRUE(store.publish(2, "W2"));
    EXPECT_TRUE(store.isWhole());
    EXPECT_EQ("W2", store.manifest().author);
    EXPECT_EQ(3, store.next());
}

TEST_F(DeployDemoStore, AFileOfAnotherReleaseDoesNotMatch)
{
    const Manifest before = store.manifest();
    store.write(2, 3, "W1");
    EXPECT_TRUE(store.matches(before, 2));
    EXPECT_FALSE(store.matches(before, 3));
    EXPECT_FALSE(store.isWhole());
}

TEST_F(DeployDemoStore, AFileOfAnotherAuthorDoesNotMatch)
{
    store.begin(2, "W1");
    writeFiles(2, ReleaseStore::FILES_PER_RELEASE, "W1");
    store.write(2, 5, "W2");
    EXPECT_TRUE(store.publish(2, "W1"));
    EXPECT_FALSE(store.isWhole());
}

TEST_F(DeployDemoStore, AFileThatIsBeingWrittenDoesNotMatch)
{
    std::ofstream(directoryOf(tree) + "/live/file.0", std::ios::app) << 'x';
    EXPECT_FALSE(store.matches(store.manifest(), 0));
    std::ofstream(directoryOf(tree) + "/live/file.1", std::ios::trunc);
    EXPECT_FALSE(store.matches(store.manifest(), 1));
}

TEST_F(DeployDemoStore, PublishingSaysWhetherSomebodyElseBeganMeanwhile)
{
    store.begin(2, "W1");
    store.begin(2, "W2");
    EXPECT_FALSE(store.publish(2, "W1"));
    EXPECT_FALSE(store.publish(2, "W2"));
}

TEST_F(DeployDemoStore, IsOpenUntilItIsClosed)
{
    EXPECT_FALSE(store.isClosed());
    store.close();
    EXPECT_TRUE(store.isClosed());
}

TEST_F(DeployDemoMarks, ReadersMeetWritersAndWritersMeetEverybody)
{
    EXPECT_THAT(marks.enterAsReader("R1"), IsEmpty());
    EXPECT_THAT(marks.enterAsReader("R2"), IsEmpty());
    EXPECT_THAT(marks.enterAsWriter("W1"), UnorderedElementsAre("R1", "R2"));
    EXPECT_THAT(marks.enterAsReader("R3"), ElementsAre("W1"));
    EXPECT_THAT(marks.enterAsWriter("W2"), UnorderedElementsAre("W1", "R3"));
    EXPECT_THAT(marks.enterAsReader("R4"), ElementsAre("W2"));
}

TEST_F(DeployDemoMarks, WhoHasLeftIsNotMet)
{
    marks.enterAsReader("R1");
    marks.leaveAsReader("R1");
    EXPECT_THAT(marks.enterAsWriter("W1"), IsEmpty());
    marks.leaveAsWriter("W1");
    EXPECT_THAT(marks.enterAsReader("R1"), IsEmpty());
}

TEST_F(DeployDemoMarks, AWriterThatBecomesAReaderDoesNotMeetItself)
{
    marks.enterAsWriter("W1");
    EXPECT_THAT(marks.enterAsReader("W1"), IsEmpty());
    marks.leaveAsWriter("W1");
    EXPECT_THAT(marks.enterAsReader("R1"), IsEmpty());
    EXPECT_THAT(marks.enterAsWriter("W2"), UnorderedElementsAre("W1", "R1"));
}
