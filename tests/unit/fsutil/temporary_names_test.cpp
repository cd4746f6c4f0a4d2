#include <zorvel/fsutil.h>

#include "tests/support/child.h"
#include "tests/support/fake_tick_count.h"
#include "tests/support/fixed_memory.h"
#include "tests/support/system_facts.h"
#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <boost/thread/thread.hpp>

#include <cstdint>
#include <cstring>
#include <iostream>
#include <memory>
#include <set>

using namespace zorvel::test;

// The directory is chosen once and the counter starts once in a process, so each case has a child of its own, whose
// TEMP is the tree of the test. A child prints one line for each thing that a test looks at.
namespace {

const std::uint32_t multiplier = 0x20001;

/// The lower 32 bits of a buffer's address.
std::uint32_t lowBits(const char* buffer)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(buffer));
}

/// What a buffer's address adds to the seed.
std::uint32_t addressPart(const char* buffer)
{
    const std::int64_t address = lowBits(buffer);
    const std::int64_t asSigned = address < 0x80000000 ? address : address - 0x100000000;
    const std::int64_t quotient = asSigned / 0x200000;
    const std::int64_t shiftedRight = quotient - (asSigned % 0x200000 < 0 ? 1 : 0);
    return static_cast<std::uint32_t>(shiftedRight) + lowBits(buffer) * 128;
}

std::uint32_t seedOf(std::uint32_t counter, std::uint32_t ticks, const char* buffer)
{
    return (counter + ticks) * multiplier + addressPart(buffer);
}

/// The time at which a call has a seed: the multiplier is odd, so that it has
/// an inverse modulo 2^32.
std::uint32_t ticksFor(std::uint32_t seed, std::uint32_t counter, const char* buffer)
{
    std::uint32_t inverse = 1;
    for (int step = 0; step < 5; ++step)
        inverse *= 2 - multiplier * inverse;
    return (seed - addressPart(buffer)) * inverse - counter;
}

std::string nameOf(std::uint32_t number)
{
    const std::string digits = std::to_string(number);
    return "tp" + std::string(6 - digits.size(), '0') + digits;
}

std::string firstNameFor(std::uint32_t seed)
{
    return nameOf((seed + 1) % 1000000);
}

/// The part of a path behind the last separator.
std::string lastPart(const std::string& path)
{
    return path.substr(path.rfind('\\') + 1);
}

/// Whether it is "tp" and six digits in the temporary directory.
bool isTemporaryName(const std::string& path)
{
    const std::string name = lastPart(path);
    return path == zvGetTempDir() + name && name.size() == 8 && name.compare(0, 2, "tp") == 0 &&
           name.find_first_not_of("0123456789", 2) == std::string::npos;
}

typedef std::vector<std::string> Arguments;

std::string outputOf(const char* mode, const TemporaryTree& tree, const Arguments& arguments = {})
{
    ProcessOptions options;
    options.set = {{"TEMP", tree.root()}};
    const ChildResult child = runChild(mode, arguments, options);
    EXPECT_EQ(0, child.status) << child.errors;
    return child.output;
}

/// Room for any path here.
struct Buffer
{
    char text[4000] = {};
};

/// With each argument as the seed of its call: prints what each call gives.
int drawWithSeeds(const Arguments& seeds)
{
    Buffer buffer;
    std::uint32_t counter = 0;
    for (const std::string& seed : seeds) {
        ++counter;
        setTickCount(ticksFor(static_cast<std::uint32_t>(std::stoul(seed)), counter, buffer.text));
        std::cout << lastPart(zvGetTempName(buffer.text)) << '\n';
    }
    return 0;
}

const ChildMode drawWithSeedsMode("draw-with-seeds", &drawWithSeeds);

/// Compares every name with the formula, for all kinds of times and addresses.
int compareWithFormula(const Arguments&)
{
    const FixedMemory lowHalf(0x7FFF0000);
    const FixedMemory highHalf(0xFFFF0000);
    const FixedMemory middle(0x80000000);
    static Buffer global;
    Buffer local;
    const std::unique_ptr<Buffer> allocated(new Buffer);
    char* const buffers[] = {local.text,        global.text,          allocated->text,
                             lowHalf.address(), highHalf.address(),   highHalf.address() + 0x8001,
                             middle.address(),  middle.address() + 77};
    std::uint32_t counter = 0;
    for (const std::uint32_t ticks : {0u, 1u, 12345u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFF0u, 0xFFFFFFFFu})
        for (char* const buffer : buffers) {
            setTickCount(ticks);
            const std::string expected = firstNameFor(seedOf(++counter, ticks, buffer));
            const std::string name = lastPart(zvGetTempName(buffer));
            std::cout << (name == expected ? "" : name + " instead of " + expected + '\n');
        }
    std::cout << counter << " calls\n";
    return 0;
}

const ChildMode compareWithFormulaMode("compare-with-formula", &compareWithFormula);

}  // namespace

TEST(TemporaryNames, SeedIsMadeOfCallsTimeAndAddress)
{
    TemporaryTree tree;
    EXPECT_EQ("56 calls\n", outputOf("compare-with-formula", tree));
}

TEST(TemporaryNames, FirstCandidateFollowsTheSeed)
{
    TemporaryTree tree;
    EXPECT_EQ("tp000001\ntp000000\ntp999999\ntp000000\n",
              outputOf("draw-with-seeds", tree, {"0", "999999", "999998", "1999999"}));
    // 4294967294 + 1 = 4294967295; one more wraps at 32 bits, not at a million.
    EXPECT_EQ("tp967295\ntp000000\n", outputOf("draw-with-seeds", tree, {"4294967294", "4294967295"}));
}

TEST(TemporaryNames, WhatExistsIsPassedOver)
{
    TemporaryTree tree;
    for (const char* name : {"tp000101", "tp000102", "tp000104"})
        tree.file(name);
    tree.directory("tp000103");
    EXPECT_EQ("tp000105\ntp000100\ntp000105\n", outputOf("draw-with-seeds", tree, {"100", "99", "104"}));
}

TEST(TemporaryNames, AfterTheLastNumberComesTheFirst)
{
    TemporaryTree tree;
    for (const char* name : {"tp999998", "tp999999", "tp000000"})
        tree.file(name);
    EXPECT_EQ("tp000001\ntp000001\ntp999997\n", outputOf("draw-with-seeds", tree, {"999997", "4294967295", "999996"}));
}

TEST(TemporaryNames, ALinkToSomethingExists)
{
    TemporaryTree tree;
    tree.directory("target");
    tree.link("target", "tp000008");
    EXPECT_EQ("tp000009\n", outputOf("draw-with-seeds", tree, {"7"}));
}

TEST(TemporaryNames, NothingIsCreated)
{
    TemporaryTree tree;
    EXPECT_EQ("tp000006\ntp000006\n", outputOf("draw-with-seeds", tree, {"5", "5"}));
    EXPECT_TRUE(tree.names().empty());
}

namespace {

/// Two calls at one time with one buffer differ by the counter alone.
int drawTwice(const Arguments&)
{
    Buffer buffer;
    setTickCount(ticksFor(0, 1, buffer.text));
    std::cout << lastPart(zvGetTempName(buffer.text)) << '\n';
    std::cout << lastPart(zvGetTempName(buffer.text)) << '\n';
    std::cout << lastPart(zvGetTempName(buffer.text)) << '\n';
    return 0;
}

const ChildMode drawTwiceMode("draw-at-one-time", &drawTwice);

}  // namespace

TEST(TemporaryNames, EveryCallCounts)
{
    TemporaryTree tree;
    EXPECT_EQ("tp000001\ntp131074\ntp262147\n", outputOf("draw-at-one-time", tree));
}

namespace {

/// Names at many times.
int drawMany(const Arguments&)
{
    Buffer buffer;
    int wrong = 0;
    std::set<std::string> names;
    for (std::uint32_t call = 0; call < 2000; ++call) {
        setTickCount(call * 2654435761u);
        wrong += zvGetTempName(buffer.text) == buffer.text && isTemporaryName(buffer.text) ? 0 : 1;
        names.insert(buffer.text);
    }
    std::cout << wrong << " wrong, " << (names.size() > 1900 ? "many names" : "few names") << '\n';
    return 0;
}

const ChildMode drawManyMode("draw-many", &drawMany);

/// A buffer that is just large enough, with bytes around that stay.
int drawIntoTheSmallestBuffer(const Arguments&)
{
    const std::size_t size = std::strlen(zvGetTempDir()) + 9;
    const std::unique_ptr<char[]> exact(new char[size]);
    std::cout << (isTemporaryName(zvGetTempName(exact.get())) ? "fits" : "wrong") << '\n';
    Buffer buffer;
    std::memset(buffer.text, '#', sizeof buffer.text);
    zvGetTempName(buffer.text + 1);
    std::cout << buffer.text[0] << buffer.text[size + 1] << std::strlen(buffer.text + 1) - size + 1 << '\n';
    return 0;
}

const ChildMode smallestBufferMode("draw-into-smallest-buffer", &drawIntoTheSmallestBuffer);

}  // namespace

TEST(TemporaryNames, HaveEightCharacters)
{
    TemporaryTree tree;
    EXPECT_EQ("0 wrong, many names\n", outputOf("draw-many", tree));
}

TEST(TemporaryNames, BufferNeedsNineBytesBehindTheDirectory)
{
    TemporaryTree tree;
    EXPECT_EQ("fits\n##0\n", outputOf("draw-into-smallest-buffer", tree));
}

TEST(TemporaryNames, WhatCannotBeExaminedIsTakenForFree)
{
    for (const std::string& directory : {std::string("no such directory\\below"), std::string(2560, 'x')}) {
        ProcessOptions options;
        options.set = {{"TEMP", directory}};
        EXPECT_EQ("fits\n##0\n", runChild("draw-into-smallest-buffer", {}, options).output);
        EXPECT_EQ("tp000012\n", runChild("draw-with-seeds", {"11"}, options).output);
    }
}

namespace {

int drawIntoNull(const Arguments&)
{
    Buffer buffer;
    std::cout << (zvGetTempName(nullptr) ? "something" : "null") << '\n'
              << (isTemporaryName(zvGetTempName(buffer.text)) ? "name" : "wrong") << '\n';
    return 0;
}

const ChildMode drawIntoNullMode("draw-into-null", &drawIntoNull);

}  // namespace

TEST(TemporaryNames, NullGivesNull)
{
    TemporaryTree tree;
    EXPECT_EQ("null\nname\n", outputOf("draw-into-null", tree));
}

namespace {

void drawInThread(int& wrong)
{
    Buffer buffer;
    for (std::uint32_t call = 0; call < 200; ++call)
        wrong += isTemporaryName(zvGetTempName(buffer.text)) ? 0 : 1;
}

/// The first calls of the process come from threads.
int drawInThreads(const Arguments&)
{
    std::vector<int> wrong(8, 0);
    boost::thread_group threads;
    for (int& mine : wrong)
        threads.create_thread([&mine] { drawInThread(mine); });
    threads.join_all();
    for (const int count : wrong)
        std::cout << count;
    std::cout << '\n';
    return 0;
}

const ChildMode drawInThreadsMode("draw-in-threads", &drawInThreads);

/// What the environment says later does not count.
int drawAfterTheDirectoryIsChosen(const Arguments&)
{
    Buffer buffer;
    const std::string directory = zvGetTempDir();
    setEnvironment("TEMP", "changed");
    const std::string path = zvGetTempName(buffer.text);
    std::cout << (path == directory + lastPart(path) ? "same directory" : path) << '\n';
    return 0;
}

const ChildMode drawAfterMode("draw-after-choice", &drawAfterTheDirectoryIsChosen);

}  // namespace

TEST(TemporaryNames, ThreadsDrawAtTheSameTime)
{
    TemporaryTree tree;
    EXPECT_EQ("00000000\n", outputOf("draw-in-threads", tree));
}

TEST(TemporaryNames, AreInTheDirectoryThatWasChosen)
{
    TemporaryTree tree;
    EXPECT_EQ("same directory\n", outputOf("draw-after-choice", tree));
}
