#include "tests/faults/shapes.h"
#include "tests/support/fake_timer.h"

#include <boost/thread/thread.hpp>

#include <gmock/gmock.h>

#include <functional>

// The thread of an acquire is interrupted before every single operation, by
// its own interruption and by one that a file operation throws.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::IsEmpty;

/// A file whose removal was cut short stays; it is in nobody's way.
void dropFileOfCutRemoval(Scene& scene)
{
    for (const std::string& line : scene.fs().log())
        if (line.compare(0, 7, "remove ") == 0 && line.find(" -> another exception") != std::string::npos)
            scene.fs().removeFileNow(line.substr(7, line.find(' ', 7) - 7));
}

void expectIdle(Scene& scene)
{
    EXPECT_FALSE(scene.lock().isAcquired());
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_FALSE(scene.isTaken(1));
    scene.heal();
    scene.free(0);
    EXPECT_THAT(scene.fs().files(), IsEmpty());
    EXPECT_TRUE(scene.lock().tryAcquire(false));
    EXPECT_TRUE(scene.lock().release());
}

/// Runs something before the nth operation.
void beforeOperation(Scene& scene, std::size_t number, const std::function<void()>& action)
{
    scene.fs().setHook([number, action](const Operation& operation) {
        if (operation.number == number)
            action();
    });
}

class ExclusiveLockInterruptions : public testing::TestWithParam<Shape>
{
protected:
    const Shape m_shape = GetParam();
    const std::size_t m_count = healthyOperations(m_shape).size();
};

TEST_P(ExclusiveLockInterruptions, BetweenAnyTwoOperations)
{
    for (std::size_t number = 1; number <= m_count; ++number) {
        SCOPED_TRACE(number);
        Scene scene;
        m_shape.prepare(scene);
        bool acquired = false;
        bool interrupted = false;
        boost::thread thread;
        boost::mutex begin;
        boost::unique_lock<boost::mutex> notYet(begin);
        beforeOperation(scene, number, [&] { thread.interrupt(); });
        thread = boost::thread([&] {
            {
                const boost::lock_guard<boost::mutex> started(begin);
            }
            try {
                acquired = scene.lock().acquire(seconds(10), false);
            } catch (const boost::thread_interrupted&) {
                interrupted = true;
            }
        });
        notYet.unlock();
        thread.join();
        EXPECT_NE(acquired, interrupted);
        EXPECT_EQ(acquired, scene.lock().release());
        expectIdle(scene);
    }
}

TEST_P(ExclusiveLockInterruptions, OutOfAnyOperation)
{
    for (std::size_t number = 1; number <= m_count; ++number) {
        SCOPED_TRACE(number);
        Scene scene;
        m_shape.prepare(scene);
        beforeOperation(scene, number, [] { throw boost::thread_interrupted(); });
        bool acquired = false;
        try {
            acquired = scene.lock().acquire(seconds(10), false);
        } catch (const boost::thread_interrupted&) {
        }
        EXPECT_EQ(acquired, scene.lock().release());
        EXPECT_FALSE(scene.isTaken(1));
        dropFileOfCutRemoval(scene);
        expectIdle(scene);
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, ExclusiveLockInterruptions, testing::ValuesIn(shapes),
                         testing::PrintToStringParamName());

}  // namespace
