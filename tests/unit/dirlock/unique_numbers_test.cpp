#include <zorvel/dirlock.h>

#include "dirlock/detail/read_lock_file.h"
#include "platform/process.h"
#include "tests/support/child.h"
#include "tests/support/recording_fs.h"

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>

#include <gmock/gmock.h>

#include <cstdint>
#include <iostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

// The numbers of readers' files: the process identifier, its double, its
// triple... modulo 2038074743, over all locks of a process.

namespace {

using namespace zorvel::test;
using zorvel::dirlock::createUniqueReadLockFile;
using zorvel::dirlock::UniqueNumbers;

const unsigned long modulus = 2038074743ul;
const std::string prefix = "D\\.deploy_read_lock.";

unsigned long step()
{
    return zorvel::platform::processId() % modulus;
}

/// The numbers of the creations that were tried, in their order.
std::vector<unsigned long> drawn(const RecordingFs& fs)
{
    const std::string beginning = "create " + prefix;
    std::vector<unsigned long> numbers;
    for (const std::string& line : fs.log())
        if (line.compare(0, beginning.size(), beginning) == 0)
            numbers.push_back(std::stoul(line.substr(beginning.size())));
    return numbers;
}

/// Draws for readers of two objects, a downgrade and collisions.
void drawSome(const boost::shared_ptr<RecordingFs>& fs)
{
    zvDirectoryReadWriteLock both("D", fs);
    zvDirectoryReadWriteLock::ReadLock one = both.getReadLock();
    zvDirectoryReadWriteLock::WriteLock writer = zvDirectoryReadWriteLock("D", fs).getWriteLock();
    one.tryAcquire(true);
    both.getReadLock().tryAcquire(true);
    one.release();
    writer.tryAcquire(true);
    writer.downgrade().release();
    int refused = 3;
    fs->setScript([&refused](const Operation& operation) -> boost::optional<bool> {
        if (operation.verb == "create" && operation.name.compare(0, prefix.size(), prefix) == 0 && --refused >= 0)
            return false;
        return boost::none;
    });
    one.tryAcquire(true);
    fs->setScript(nullptr);
}

boost::shared_ptr<RecordingFs> makeFs()
{
    const boost::shared_ptr<RecordingFs> fs = boost::make_shared<RecordingFs>();
    fs->addDirectory("D");
    return fs;
}

int printFirstNumbers(const std::vector<std::string>&)
{
    const boost::shared_ptr<RecordingFs> fs = makeFs();
    drawSome(fs);
    unsigned long expected = 0;
    for (const unsigned long number : drawn(*fs)) {
        expected = (expected + step()) % modulus;
        std::cout << (number == expected ? "as expected" : "another") << '\n';
    }
    return 0;
}
const ChildMode firstNumbersMode("first-numbers", &printFirstNumbers);

/// In a process that has not drawn before: value and step are the identifier.
TEST(UniqueNumbers, BeginWithTheProcessIdentifierAndAreItsMultiples)
{
    const std::string line = "as expected\n";
    EXPECT_EQ(line + line + line + line + line + line + line, runChild("first-numbers").output);
}

TEST(UniqueNumbers, AreOneSequenceForReadersAndDowngrades)
{
    const boost::shared_ptr<RecordingFs> fs = makeFs();
    drawSome(fs);
    const std::vector<unsigned long> numbers = drawn(*fs);
    ASSERT_EQ(7u, numbers.size());
    for (std::size_t i = 1; i < numbers.size(); ++i)
        EXPECT_EQ((numbers[i - 1] + step()) % modulus, numbers[i]) << i;
}

TEST(UniqueNumbers, AreTheMultiplesOfAnIdentifierModuloAPrime)
{
    const std::uint64_t identifiers[] = {
        1, 4242, 12345678, modulus / 2 + 1, modulus - 1, modulus + 1, 4 * std::uint64_t(1073741823) + 3};
    for (const std::uint64_t identifier : identifiers) {
        UniqueNumbers numbers(identifier);
        std::uint64_t expected = 0;
        for (int i = 0; i < 5000; ++i) {
            expected = (expected + identifier) % modulus;
            ASSERT_EQ(expected, numbers.next()) << identifier << ", draw " << i;
        }
    }
}

/// Nobody has such an identifier; the search for a free number still ends.
TEST(UniqueNumbers, OfAMultipleOfThePrimeAreAllTheSame)
{
    for (const std::uint64_t identifier : {std::uint64_t(0), std::uint64_t(modulus), 2 * std::uint64_t(modulus)}) {
        UniqueNumbers numbers(identifier);
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(0u, numbers.next());
    }
}

TEST(UniqueNumbers, AreTriedAsOftenAsIsAllowed)
{
    const boost::shared_ptr<RecordingFs> fs = makeFs();
    fs->setScript([](const Operation&) { return boost::optional<bool>(false); });
    UniqueNumbers numbers(7);
    EXPECT_FALSE(createUniqueReadLockFile(zvPathString("D"), fs, numbers, 3).first);
    EXPECT_EQ((std::vector<unsigned long>{7, 14, 21}), drawn(*fs));
    EXPECT_FALSE(createUniqueReadLockFile(zvPathString("D"), fs, numbers, 0).first);
    EXPECT_EQ(3u, fs->log().size());
}

TEST(UniqueNumbers, TheFirstThatIsFreeEndsTheSearch)
{
    const boost::shared_ptr<RecordingFs> fs = makeFs();
    fs->addFile(prefix + "7");
    fs->addFile(prefix + "14");
    UniqueNumbers numbers(7);
    const std::pair<bool, zvPathString> created = createUniqueReadLockFile(zvPathString("D"), fs, numbers, 3);
    EXPECT_TRUE(created.first);
    EXPECT_EQ(prefix + "21", created.second);
    EXPECT_TRUE(fs->has(prefix + "21"));
    EXPECT_EQ((std::vector<unsigned long>{7, 14, 21}), drawn(*fs));
    EXPECT_EQ(28u, numbers.next());
}

TEST(UniqueNumbers, AreGivenToOneThreadEach)
{
    UniqueNumbers numbers(12345678);
    const int threadCount = 8;
    const int draws = 20000;
    std::vector<std::vector<std::uint32_t>> drawnBy(threadCount);
    boost::thread_group threads;
    for (std::vector<std::uint32_t>& mine : drawnBy)
        threads.create_thread([&numbers, &mine] {
            for (int draw = 0; draw < draws; ++draw)
                mine.push_back(numbers.next());
        });
    threads.join_all();
    std::set<std::uint32_t> all;
    for (const std::vector<std::uint32_t>& mine : drawnBy)
        all.insert(mine.begin(), mine.end());
    EXPECT_EQ(std::size_t(threadCount * draws), all.size());
}

/// Threads with directories of their own, so that nobody waits and moves the
/// clock, get different numbers and leave none out.
TEST(UniqueNumbers, AreDrawnByManyThreads)
{
    const boost::shared_ptr<RecordingFs> first = makeFs();
    drawSome(first);
    const unsigned long before = drawn(*first).back();
    const int threadCount = 8;
    const int draws = 25;
    std::vector<boost::shared_ptr<RecordingFs>> systems;
    boost::thread_group threads;
    for (int i = 0; i < threadCount; ++i) {
        const boost::shared_ptr<RecordingFs> fs = makeFs();
        systems.push_back(fs);
        threads.create_thread([fs] {
            zvDirectoryReadWriteLock::WriteLock writer = zvDirectoryReadWriteLock("D", fs).getWriteLock();
            zvDirectoryReadWriteLock::ReadLock reader = zvDirectoryReadWriteLock("D", fs).getReadLock();
            for (int draw = 0; draw < draws; ++draw) {
                if (draw % 5 == 0) {
                    EXPECT_TRUE(writer.acquire(true));
                    writer.downgrade().release();
                } else {
                    EXPECT_TRUE(reader.acquire(true));
                    reader.release();
                }
            }
        });
    }
    threads.join_all();
    std::vector<unsigned long> numbers;
    for (const boost::shared_ptr<RecordingFs>& fs : systems) {
        const std::vector<unsigned long> some = drawn(*fs);
        numbers.insert(numbers.end(), some.begin(), some.end());
    }
    EXPECT_EQ(std::size_t(threadCount * draws), numbers.size());
    std::set<unsigned long> expected;
    for (unsigned long i = 1; i <= numbers.size(); ++i)
        expected.insert((before + i * step()) % modulus);
    EXPECT_EQ(expected, std::set<unsigned long>(numbers.begin(), numbers.end()));
}

}  // namespace
