#include <zorvel/errors.h>

#include "tests/faults/endings.h"
#include "tests/faults/own_files.h"
#include "tests/faults/shapes.h"
#include "tests/support/fake_timer.h"

#include <gmock/gmock.h>

#include <stdexcept>

// Every single operation of an acquire fails, once and for ever, by false and
// by each exception of the family. The caller gets what is promised, and no
// file, thread or locked mutex stays behind.

namespace {

using namespace zorvel::test;
using boost::posix_time::seconds;
using testing::IsEmpty;

bool begins(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

/// One operation of a shape, and which part of the acquire it belongs to.
class Place
{
public:
    Place(const std::vector<std::string>& operations, std::size_t number)
        : m_operations(operations), m_index(number - 1)
    {
    }

    const std::string& operation() const { return m_operations[m_index]; }
    bool is(const std::string& beginning) const { return begins(operation(), beginning); }

    /// Until the first file is made.
    bool isInQueue() const { return m_index <= firstCreated(); }
    /// The lock file that holds level 0.
    bool isInHold() const { return m_index + 2 >= m_operations.size(); }
    bool isInDescent() const { return !isInQueue() && !isInHold(); }
    bool isInJudgement() const
    {
        return isInDescent() && (is("isDirectory") || is("mtime") || operation().find("CAL") != std::string::npos);
    }
    bool isBefore(const std::string& beginning) const { return m_index < indexOf(beginning); }

private:
    std::size_t indexOf(const std::string& beginning) const
    {
        for (std::size_t i = 0; i < m_operations.size(); ++i)
            if (begins(m_operations[i], beginning))
                return i;
        throw std::logic_error("no operation " + beginning);
    }
    std::size_t firstCreated() const
    {
        const std::vector<std::string>::const_iterator found =
            std::find_if(m_operations.begin(), m_operations.end(), [](const std::string& line) {
                return begins(line, "create #") && line.find("-> true") != std::string::npos;
            });
        return static_cast<std::size_t>(found - m_operations.begin());
    }

    const std::vector<std::string>& m_operations;
    const std::size_t m_index;
};

Ending expectedForExceptionOnce(const Place& place, Failure failure)
{
    if (!place.isInDescent())
        return unchanged(failure);
    if (place.is("remove CAL"))
        return acquired();
    if (place.isInJudgement() && failure == Failure::fileNotFound)
        return acquired();
    return base(unchanged(failure).text);
}

/// The clean-up of the queue fails too: a denied permission is swallowed
/// there, another exception takes the place of the first.
Ending expectedForExceptionForEver(const Place& place, Failure failure)
{
    if (place.isInDescent() && failure == Failure::permissionDenied)
        return base(unchanged(failure).text);
    return unchanged(failure);
}

Ending expectedForFalseOnce(const Place& place)
{
    if (place.is("isDirectory"))
        return base(zvNoSuchDirectory("D").what());
    if (place.isInHold() && place.is("exists"))
        return notAcquired();
    return acquired();
}

Ending expectedForFalseForEver(const Place& place)
{
    if (!place.isInDescent())
        return notAcquired();
    if (place.is("isDirectory") || place.isBefore("isDirectory"))
        return base(zvNoSuchDirectory("D").what());
    if (place.is("create CAL"))
        return base(zvFileAccessError(" Could not create unique file in D").what());
    return notAcquired();
}

Ending expected(const Place& place, const FailurePlan& plan)
{
    const bool once = plan.persistence == Persistence::once;
    if (plan.failure == Failure::answersFalse)
        return once ? expectedForFalseOnce(place) : expectedForFalseForEver(place);
    return once ? expectedForExceptionOnce(place, plan.failure) : expectedForExceptionForEver(place, plan.failure);
}

void expectNoFileStays(Scene& scene)
{
    for (const std::string& file : ownFiles(scene.fs()))
        EXPECT_TRUE(wasGivenUp(scene.fs(), file)) << file << " stays and nobody tried to remove it";
}

void expectHeld(Scene& scene)
{
    EXPECT_TRUE(scene.lock().isAcquired());
    EXPECT_TRUE(scene.isTaken(0));
    EXPECT_EQ(1u, fake_timer::running());
    EXPECT_TRUE(scene.lock().release());
}

void expectIdle(Scene& scene)
{
    EXPECT_FALSE(scene.lock().isAcquired());
    EXPECT_EQ(0u, fake_timer::running());
    expectNoFileStays(scene);
    EXPECT_FALSE(scene.lock().release());
}

/// A healthy directory is acquired and freed again.
void expectUsable(Scene& scene)
{
    scene.heal();
    for (const std::string& file : scene.fs().files())
        scene.fs().removeFileNow(file);
    EXPECT_TRUE(scene.lock().tryAcquire(false));
    EXPECT_TRUE(scene.lock().release());
    EXPECT_THAT(scene.fs().files(), IsEmpty());
    EXPECT_EQ(0u, fake_timer::running());
}

/// More operations than any acquire with a deadline of ten seconds makes.
const std::size_t endOfForEver = 30000;

void checkOne(const Shape& shape, const Place& place, FailurePlan plan)
{
    SCOPED_TRACE(testing::Message() << shape.name << ", " << place.operation() << ", " << plan);
    plan.until = endOfForEver;
    Scene scene;
    prepare(scene, shape);
    scene.fail(plan);
    const Ending ending = endingOf([&] { return scene.lock().acquire(seconds(10), false); });
    EXPECT_EQ(expected(place, plan), ending);
    if (ending.acquired)
        expectHeld(scene);
    else
        expectIdle(scene);
    expectUsable(scene);
}

class ExclusiveLockFaults : public testing::TestWithParam<Shape>
{
protected:
    void checkAll(Persistence persistence, Failure failure) const
    {
        const Shape shape = GetParam();
        const std::vector<std::string> operations = healthyOperations(shape);
        for (std::size_t number = 1; number <= operations.size(); ++number)
            checkOne(shape, Place(operations, number), FailurePlan(number, persistence, failure));
    }
};

TEST_P(ExclusiveLockFaults, NoneAcquires)
{
    Scene scene;
    prepare(scene, GetParam());
    EXPECT_TRUE(scene.lock().acquire(seconds(10), false));
    expectHeld(scene);
    expectUsable(scene);
}

TEST_P(ExclusiveLockFaults, FalseOnce)
{
    checkAll(Persistence::once, Failure::answersFalse);
}

TEST_P(ExclusiveLockFaults, FalseForEver)
{
    checkAll(Persistence::forEver, Failure::answersFalse);
}

TEST_P(ExclusiveLockFaults, NoSuchDirectoryOnce)
{
    checkAll(Persistence::once, Failure::noSuchDirectory);
}

TEST_P(ExclusiveLockFaults, NoSuchDirectoryForEver)
{
    checkAll(Persistence::forEver, Failure::noSuchDirectory);
}

TEST_P(ExclusiveLockFaults, PermissionDeniedOnce)
{
    checkAll(Persistence::once, Failure::permissionDenied);
}

TEST_P(ExclusiveLockFaults, PermissionDeniedForEver)
{
    checkAll(Persistence::forEver, Failure::permissionDenied);
}

TEST_P(ExclusiveLockFaults, FileAccessErrorOnce)
{
    checkAll(Persistence::once, Failure::fileAccessError);
}

TEST_P(ExclusiveLockFaults, FileAccessErrorForEver)
{
    checkAll(Persistence::forEver, Failure::fileAccessError);
}

TEST_P(ExclusiveLockFaults, FileNotFoundOnce)
{
    checkAll(Persistence::once, Failure::fileNotFound);
}

TEST_P(ExclusiveLockFaults, FileNotFoundForEver)
{
    checkAll(Persistence::forEver, Failure::fileNotFound);
}

INSTANTIATE_TEST_SUITE_P(Shapes, ExclusiveLockFaults, testing::ValuesIn(shapes), testing::PrintToStringParamName());

}  // namespace
