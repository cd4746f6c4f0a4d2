#include "tests/faults/own_files.h"
#include "tests/faults/read_write_shapes.h"
#include "tests/support/fake_timer.h"

#include <boost/thread/thread.hpp>

#include <gmock/gmock.h>

#include <functional>

// The thread of a reader or writer is interrupted before every single
// operation, by its own interruption and by one that a file operation throws.

namespace {

using namespace zorvel::test;
using testing::IsEmpty;

enum Outcome
{
    acquired,
    notAcquired,
    interrupted
};

Outcome outcomeOf(ReadWriteScene& scene, const ReadWriteShape& shape)
{
    try {
        return shape.act(scene) ? acquired : notAcquired;
    } catch (const boost::thread_interrupted&) {
        return interrupted;
    }
}

/// Runs something before the nth operation from now.
void beforeOperation(ReadWriteScene& scene, std::size_t number, const std::function<void()>& action)
{
    scene.fs().setHook([number, action](const Operation& operation) {
        if (operation.number == number)
            action();
    });
}

Outcome interruptedBefore(ReadWriteScene& scene, const ReadWriteShape& shape, std::size_t number)
{
    Outcome outcome = notAcquired;
    boost::thread thread;
    boost::mutex begin;
    boost::unique_lock<boost::mutex> notYet(begin);
    beforeOperation(scene, number, [&] { thread.interrupt(); });
    thread = boost::thread([&] {
        {
            const boost::lock_guard<boost::mutex> started(begin);
        }
        outcome = outcomeOf(scene, shape);
    });
    notYet.unlock();
    thread.join();
    return outcome;
}

/// A file whose removal was cut short stays; it is in nobody's way.
std::vector<std::string> staying(ReadWriteScene& scene)
{
    std::vector<std::string> files;
    for (const std::string& file : ownFiles(scene.fs()))
        if (!wasGivenUp(scene.fs(), file))
            files.push_back(file);
    return files;
}

/// Ends the hold that there is (a writer's, if its downgrade was cut short),
/// and finds everything as before.
void expectConsistent(ReadWriteScene& scene, Outcome outcome, bool wrote)
{
    EXPECT_NE(notAcquired, outcome);
    const bool holds = outcome == acquired || wrote;
    EXPECT_EQ(holds ? 1u : 0u, fake_timer::running());
    const bool reads = scene.reader().release();
    const bool writes = scene.writer().release();
    EXPECT_EQ(holds, reads || writes);
    EXPECT_FALSE(reads && writes);
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_THAT(staying(scene), IsEmpty());
}

void expectUsable(ReadWriteScene& scene)
{
    scene.heal();
    for (const std::string& file : scene.fs().files())
        scene.fs().removeFileNow(file);
    EXPECT_TRUE(scene.reader().tryAcquire(false));
    EXPECT_TRUE(scene.reader().release());
    EXPECT_TRUE(scene.writer().tryAcquire(false));
    EXPECT_TRUE(scene.writer().release());
    EXPECT_THAT(scene.fs().files(), IsEmpty());
}

class ReadWriteInterruptions : public testing::TestWithParam<ReadWriteShape>
{
protected:
    const ReadWriteShape m_shape = GetParam();
    const std::size_t m_count = healthyOperations(m_shape).size();
};

TEST_P(ReadWriteInterruptions, BetweenAnyTwoOperations)
{
    std::size_t interruptions = 0;
    for (std::size_t number = 1; number <= m_count; ++number) {
        SCOPED_TRACE(number);
        ReadWriteScene scene;
        m_shape.prepare(scene);
        const bool wrote = scene.writer().isAcquired();
        const Outcome outcome = interruptedBefore(scene, m_shape, number);
        interruptions += outcome == interrupted;
        expectConsistent(scene, outcome, wrote);
        EXPECT_THAT(ownFiles(scene.fs()), IsEmpty());
        expectUsable(scene);
    }
    // All have a pause, but for the downgrade.
    EXPECT_EQ(m_shape.act == &becomeReader, interruptions == 0);
}

TEST_P(ReadWriteInterruptions, OutOfAnyOperation)
{
    for (std::size_t number = 1; number <= m_count; ++number) {
        SCOPED_TRACE(number);
        ReadWriteScene scene;
        m_shape.prepare(scene);
        const bool wrote = scene.writer().isAcquired();
        beforeOperation(scene, number, [] { throw boost::thread_interrupted(); });
        const Outcome outcome = outcomeOf(scene, m_shape);
        expectConsistent(scene, outcome, wrote);
        expectUsable(scene);
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, ReadWriteInterruptions, testing::ValuesIn(readWriteShapes),
                         testing::PrintToStringParamName());

}  // namespace
