#include <zorvel/errors.h>

#include "tests/faults/endings.h"
#include "tests/faults/own_files.h"
#include "tests/faults/read_write_shapes.h"
#include "tests/support/fake_timer.h"

#include <gmock/gmock.h>

#include <algorithm>

// Every single operation of an acquire of a reader and of a writer, and of a
// downgrade, fails, once and for ever, by false and by exceptions. The caller
// gets what is promised, and no file, guard, thread or locked mutex stays.

namespace {

using namespace zorvel::test;
using testing::IsEmpty;

bool begins(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

/// One operation of a shape, and which part of it that belongs to.
class Place
{
public:
    Place(const std::vector<std::string>& operations, std::size_t number)
        : m_operations(operations), m_index(number - 1)
    {
    }

    const std::string& operation() const { return m_operations[m_index]; }
    bool is(const std::string& beginning) const { return begins(operation(), beginning); }

    /// The removal of the file that is not needed any more: the guard's, or
    /// the writer's after its downgrade.
    bool isRelease() const { return is("remove #0") || m_index + 1 == m_operations.size(); }
    bool isLast() const { return m_index + 1 == m_operations.size(); }
    /// The guard on its way down from level 1.
    bool isInDescent() const { return m_index > indexOf("create #1") && m_index < indexOf("refresh #0"); }
    /// A question about a file's age.
    bool isInJudgement() const { return is("isDirectory") || is("create CAL") || is("mtime"); }
    bool isBefore(const std::string& beginning) const
    {
        const std::size_t index = indexOf(beginning);
        return index < m_operations.size() && m_index < index;
    }
    bool has(const std::string& beginning) const { return indexOf(beginning) < m_operations.size(); }

private:
    /// The number of operations when there is none.
    std::size_t indexOf(const std::string& beginning) const
    {
        const auto found = std::find_if(m_operations.begin(), m_operations.end(),
                                        [&](const std::string& line) { return begins(line, beginning); });
        return static_cast<std::size_t>(found - m_operations.begin());
    }

    const std::vector<std::string>& m_operations;
    const std::size_t m_index;
};

Ending missing()
{
    return endingOf([]() -> bool { throw zvNoSuchDirectory("D"); });
}

Ending noUniqueFile()
{
    return endingOf([]() -> bool { throw zvFileAccessError(" Could not create unique file in D"); });
}

/// What the guard throws while it is queued is the base itself.
Ending narrowedInDescent(const Place& place, const Ending& ending)
{
    return place.isInDescent() ? base(ending.text) : ending;
}

Ending expectedForExceptionOnce(const Place& place, Failure failure)
{
    if (place.isRelease())
        return acquired();
    if (failure == Failure::outOfMemory)
        return unchanged(failure);
    if (place.is("remove CAL"))
        return acquired();
    // What vanishes while it is judged is not stale; the next look decides.
    if (place.isInJudgement() && failure == Failure::fileNotFound)
        return acquired();
    return narrowedInDescent(place, unchanged(failure));
}

Ending expectedForExceptionForEver(const Place& place, Failure failure)
{
    if (place.isLast())
        return acquired();
    // A denied clean-up of the guard's queue is swallowed; another exception
    // there takes the place of the first.
    if (place.isInDescent() && failure == Failure::permissionDenied)
        return base(unchanged(failure).text);
    return unchanged(failure);
}

Ending expectedForFalseOnce(const Place& place)
{
    if (place.is("isDirectory"))
        return narrowedInDescent(place, missing());
    if (place.is("exists own") || place.is("exists W") || place.is("refresh W"))
        return notAcquired();
    return acquired();
}

/// Without a guard, whose files cannot be had. A reader goes on drawing
/// numbers until the failures end; a writer's file is not there.
Ending expectedForFalseForEver(const Place& place)
{
    if (place.isLast())
        return acquired();
    if (place.is("isDirectory") || (place.isInDescent() && place.isBefore("isDirectory")))
        return narrowedInDescent(place, missing());
    if (place.is("create CAL"))
        return narrowedInDescent(place, noUniqueFile());
    if (place.has("walk R*")) {
        const bool judgesFirst = place.isBefore("isDirectory") && !place.has("create #1");
        return judgesFirst ? missing() : notAcquired();
    }
    if (place.has("exists own") && (place.is("refresh own") || place.is("exists own")))
        return notAcquired();
    return acquired();
}

Ending expected(const Place& place, const FailurePlan& plan)
{
    const bool once = plan.persistence == Persistence::once;
    if (plan.failure == Failure::answersFalse)
        return once ? expectedForFalseOnce(place) : expectedForFalseForEver(place);
    return once ? expectedForExceptionOnce(place, plan.failure) : expectedForExceptionForEver(place, plan.failure);
}

/// Nobody can tell whether a lock file that ran out of memory has removed
/// itself: then a claimed file goes stale.
bool mayGoStale(const Place& place, const FailurePlan& plan)
{
    return plan.failure == Failure::outOfMemory && place.is("refresh ");
}

void expectNoFileStays(ReadWriteScene& scene)
{
    for (const std::string& file : ownFiles(scene.fs()))
        EXPECT_TRUE(wasGivenUp(scene.fs(), file)) << file << " stays and nobody tried to remove it";
}

/// One of the two holds; the guard has no thread any more.
void expectHeld(ReadWriteScene& scene)
{
    EXPECT_NE(scene.reader().isAcquired(), scene.writer().isAcquired());
    EXPECT_EQ(1u, fake_timer::running());
    EXPECT_NE(scene.reader().release(), scene.writer().release());
    EXPECT_EQ(0u, fake_timer::running());
    expectNoFileStays(scene);
}

void expectIdle(ReadWriteScene& scene)
{
    EXPECT_FALSE(scene.reader().isAcquired());
    EXPECT_FALSE(scene.writer().isAcquired());
    EXPECT_EQ(0u, fake_timer::running());
    EXPECT_FALSE(scene.reader().release());
    EXPECT_FALSE(scene.writer().release());
}

/// The writer that could not become a reader, as it was.
void expectStillWriting(ReadWriteScene& scene)
{
    EXPECT_FALSE(scene.reader().isAcquired());
    EXPECT_TRUE(scene.writer().isAcquired());
    EXPECT_TRUE(scene.fs().has(scene.nameOfWriter()));
    EXPECT_EQ(1u, fake_timer::running());
}

/// A healthy directory is acquired and freed again, by both.
void expectUsable(ReadWriteScene& scene)
{
    scene.heal();
    scene.writer().release();
    for (const std::string& file : scene.fs().files())
        scene.fs().removeFileNow(file);
    EXPECT_TRUE(scene.reader().tryAcquire(false));
    EXPECT_TRUE(scene.reader().release());
    EXPECT_TRUE(scene.writer().tryAcquire(false));
    EXPECT_TRUE(scene.writer().release());
    EXPECT_THAT(scene.fs().files(), IsEmpty());
    EXPECT_EQ(0u, fake_timer::running());
}

/// More operations than any wait of ten seconds makes.
const std::size_t endOfForEver = 12000;

void checkOne(const ReadWriteShape& shape, const Place& place, FailurePlan plan)
{
    SCOPED_TRACE(testing::Message() << shape.name << ", " << place.operation() << ", " << plan);
    plan.until = endOfForEver;
    ReadWriteScene scene;
    prepare(scene, shape);
    const bool wrote = scene.writer().isAcquired();
    scene.fail(plan);
    const Ending ending = endingOf([&] { return shape.act(scene); });
    EXPECT_EQ(expected(place, plan), ending);
    if (ending.acquired)
        expectHeld(scene);
    else if (wrote)
        expectStillWriting(scene);
    else
        expectIdle(scene);
    if (!ending.acquired && !mayGoStale(place, plan))
        expectNoFileStays(scene);
    expectUsable(scene);
}

class ReadWriteFaults : public testing::TestWithParam<ReadWriteShape>
{
protected:
    void checkAll(Persistence persistence, Failure failure) const
    {
        const ReadWriteShape shape = GetParam();
        const std::vector<std::string> operations = healthyOperations(shape);
        for (std::size_t number = 1; number <= operations.size(); ++number)
            checkOne(shape, Place(operations, number), FailurePlan(number, persistence, failure));
    }

    void checkAll(Failure failure) const
    {
        checkAll(Persistence::once, failure);
        checkAll(Persistence::forEver, failure);
    }
};

TEST_P(ReadWriteFaults, NoneActs)
{
    ReadWriteScene scene;
    prepare(scene, GetParam());
    EXPECT_TRUE(GetParam().act(scene));
    expectHeld(scene);
    EXPECT_THAT(ownFiles(scene.fs()), IsEmpty());
    expectUsable(scene);
}

TEST_P(ReadWriteFaults, FalseOnce)
{
    checkAll(Persistence::once, Failure::answersFalse);
}

TEST_P(ReadWriteFaults, FalseForEver)
{
    checkAll(Persistence::forEver, Failure::answersFalse);
}

TEST_P(ReadWriteFaults, NoSuchDirectory)
{
    checkAll(Failure::noSuchDirectory);
}

TEST_P(ReadWriteFaults, PermissionDenied)
{
    checkAll(Failure::permissionDenied);
}

TEST_P(ReadWriteFaults, FileAccessError)
{
    checkAll(Failure::fileAccessError);
}

TEST_P(ReadWriteFaults, FileNotFound)
{
    checkAll(Failure::fileNotFound);
}

TEST_P(ReadWriteFaults, OutOfMemory)
{
    checkAll(Failure::outOfMemory);
}

/// A hold ends, whatever becomes of its file.
TEST_P(ReadWriteFaults, ReleaseIsTrue)
{
    for (const Failure failure : {Failure::answersFalse, Failure::noSuchDirectory, Failure::permissionDenied,
                                  Failure::fileAccessError, Failure::fileNotFound, Failure::outOfMemory}) {
        ReadWriteScene scene;
        prepare(scene, GetParam());
        EXPECT_TRUE(GetParam().act(scene));
        scene.fs().clearLog();
        scene.fail(FailurePlan(1, Persistence::forEver, failure));
        EXPECT_NE(scene.reader().release(), scene.writer().release());
        EXPECT_EQ(1u, scene.operations().size());
        EXPECT_EQ(1u, scene.countOf("remove "));
        expectIdle(scene);
        expectUsable(scene);
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, ReadWriteFaults, testing::ValuesIn(readWriteShapes),
                         testing::PrintToStringParamName());

}  // namespace
