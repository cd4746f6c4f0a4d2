#include "examples/deploy_demo/table.h"
#include "examples/deploy_demo/timeline.h"
#include "examples/deploy_demo/timeline_moments.h"
#include "examples/deploy_demo/verdict.h"
#include "tests/support/process.h"
#include "tests/support/temporary_tree.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

using namespace zorvel::demo;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using zorvel::test::TemporaryTree;

namespace {

const Microseconds second = 1000 * 1000;
const Microseconds start = 1000 * second;

const std::size_t w1 = 0, w2 = 1, r1 = 2, r2 = 3;

History historyOf(const std::vector<Event>& events)
{
    History history({{"W1", "Linux", Role::writer},
                     {"W2", "Wine", Role::writer},
                     {"R1", "Linux", Role::reader},
                     {"R2", "Wine", Role::reader}});
    for (Event event : events) {
        event.time += start;
        history.add(event);
    }
    history.finish();
    return history;
}

std::vector<Event> operator+(std::vector<Event> left, const std::vector<Event>& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// A request at `asks`, granted at `from`, released at `to`.
std::vector<Event> hold(std::size_t process, Microseconds asks, Microseconds from, Microseconds to)
{
    return {{process, asks, Word::queue, 0, ""}, {process, from, Word::hold, 0, ""}, {process, to, Word::leave, 0, ""}};
}

/// W1 writes from 1 to 2 s; another asks at 1.5 s and holds from `begins` to 4 s.
std::vector<Event> afterAWriter(std::size_t process, Microseconds begins)
{
    return hold(w1, 0, 1 * second, 2 * second) + hold(process, 1500 * 1000, begins, 4 * second);
}

/// W1 writes from 1 to 2 s, is a reader from then to 3 s, and serves release 5.
std::vector<Event> aDowngrade()
{
    return {{w1, 0, Word::queue, 0, ""},          {w1, 1 * second, Word::hold, 0, ""},
            {w1, 1 * second, Word::start, 5, ""}, {w1, 2 * second, Word::deployed, 5, ""},
            {w1, 2 * second, Word::lower, 5, ""}, {w1, 3 * second, Word::served, 5, "W1"},
            {w1, 3 * second, Word::leave, 0, ""}};
}

/// W2 dies at 2 s with half of release 7 written. R1 clears its lock away at 32
/// s and serves nothing; W1 deploys the release from 33 s on.
std::vector<Event> aWritersDeath()
{
    return {{w2, 0, Word::queue, 0, ""},
            {w2, 1 * second, Word::hold, 0, ""},
            {w2, 1 * second, Word::start, 7, ""},
            {r1, 1 * second, Word::queue, 0, ""},
            {w1, 1 * second, Word::queue, 0, ""},
            {w2, 2 * second, Word::killed, 0, ""},
            {r1, 32 * second, Word::cleared, 0, ".deploy_write_lock"},
            {r1, 32 * second, Word::hold, 0, ""},
            {r1, 32 * second, Word::met, 0, "W2"},
            {r1, 32 * second, Word::unfinished, 7, "W2"},
            {r1, 33 * second, Word::leave, 0, ""},
            {w1, 33 * second, Word::hold, 0, ""},
            {w1, 33 * second, Word::met, 0, "W2"},
            {w1, 33 * second, Word::half, 4, "W2"},
            {w1, 33 * second, Word::start, 7, ""},
            {w1, 34 * second, Word::deployed, 7, ""},
            {w1, 34 * second, Word::leave, 0, ""}};
}

/// R2 dies at 2 s while it reads release 3. R1 reads in spite of it; W1 clears
/// its lock away at 31.5 s.
std::vector<Event> aReadersDeath()
{
    return std::vector<Event>{{r2, 0, Word::queue, 0, ""},
                              {r2, 1 * second, Word::hold, 0, ""},
                              {r2, 1 * second, Word::stall, 3, ""},
                              {r2, 2 * second, Word::killed, 0, ""}} +
           hold(r1, 3 * second, 4 * second, 5 * second) +
           std::vector<Event>{{w1, 1 * second, Word::queue, 0, ""},
                              {w1, 31500 * 1000, Word::cleared, 0, ".deploy_read_lock.4821"},
                              {w1, 31500 * 1000, Word::hold, 0, ""},
                              {w1, 31500 * 1000, Word::met, 0, "R2"},
                              {w1, 32 * second, Word::leave, 0, ""}};
}

/// All events from `from` on come so much later or, with a negative time,
/// sooner.
std::vector<Event> moved(std::vector<Event> events, Microseconds from, Microseconds by)
{
    for (Event& event : events)
        event.time += event.time >= from ? by : 0;
    return events;
}

/// W2's death and its end, then R2's, which takes so long. Everybody has
/// verified a release.
std::vector<Event> twoDeaths(Microseconds readersStaleness)
{
    const Microseconds next = 40 * second;
    return aWritersDeath() + moved(moved(aReadersDeath(), 31500 * 1000, readersStaleness - 29500 * 1000), 0, next) +
           std::vector<Event>{{r1, 45 * second, Word::served, 6, "W1"}, {r2, 41 * second, Word::served, 6, "W1"}};
}

std::vector<std::string> verdictOf(const History& history)
{
    return verdict(Options(), Cast(), history, figuresOf(history));
}

std::string tableOf(const History& history)
{
    std::ostringstream out;
    printTable(out, history, figuresOf(history));
    return out.str();
}

/// As the table counts them; W1 makes them all.
std::string downgrades(int count, int intruders)
{
    return "downgrades: " + std::to_string(count) +
           ", all by W1 (other writers before the reading that followed had ended: " + std::to_string(intruders) +
           ")\n";
}

/// The elements of an SVG document; throws when it is not well-formed.
boost::property_tree::ptree elementsOf(const std::string& svg)
{
    std::istringstream stream(svg);
    boost::property_tree::ptree tree;
    boost::property_tree::read_xml(stream, tree);
    return tree.get_child("svg");
}

int countBars(const std::string& svg, const std::string& look)
{
    const boost::property_tree::ptree elements = elementsOf(svg);
    return static_cast<int>(std::count_if(elements.begin(), elements.end(), [&](const auto& element) {
        return element.first == "rect" && element.second.template get<std::string>("<xmlattr>.class") == look &&
               element.second.count("title") == 1;
    }));
}

std::string environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : std::string();
}

std::string directoryOf(const TemporaryTree& tree)
{
    std::string path = tree.root();
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

int runDemo(std::vector<std::string> options, std::string& output, std::string& errors)
{
    options.insert(options.begin(), environment("ZORVEL_DEPLOY_DEMO"));
    if (!environment("ZORVEL_WINDOWS_WORKER").empty())
        options.insert(options.end(), {"--windows-worker", environment("ZORVEL_WINDOWS_WORKER"), "--windows-runner",
                                       environment("ZORVEL_WINDOWS_RUNNER")});
    return zorvel::test::Process(options).finish(&output, &errors);
}

}  // namespace

TEST(DeployDemoFigures, HoldsOneAfterTheOtherAreNoOverlap)
{
    for (const std::size_t next : {w2, r1}) {
        const Figures figures = figuresOf(historyOf(afterAWriter(next, 2 * second + 7000)));
        EXPECT_EQ(0, figures.overlapsOfIntervals);
        EXPECT_EQ(2, figures.holds);
        EXPECT_EQ(507000, figures.members[next].all.longest);
        EXPECT_EQ(0, figures.members[r2].holds);
        const Handovers& handovers = next == w2 ? figures.toWriters : figures.toReaders;
        EXPECT_EQ(1, handovers.count);
        EXPECT_EQ(7000, handovers.median);
        EXPECT_EQ(7000, handovers.longest);
    }
}

TEST(DeployDemoFigures, AHoldThatBeginsInsideAWritersIsAnOverlap)
{
    for (const std::size_t next : {w2, r1}) {
        const History history = historyOf(afterAWriter(next, 2 * second - 1));
        EXPECT_EQ(1, figuresOf(history).overlapsOfIntervals);
        EXPECT_THAT(tableOf(history), HasSubstr("overlaps found: 1 "));
    }
}

TEST(DeployDemoFigures, AWriterInsideAReadersHoldIsAnOverlap)
{
    const History history = historyOf(hold(r1, 0, 1 * second, 3 * second) + hold(w1, 0, 2 * second, 4 * second));
    EXPECT_EQ(1, figuresOf(history).overlapsOfIntervals);
}

TEST(DeployDemoFigures, ReadersInsideTogetherAreNone)
{
    const History history = historyOf(hold(r1, 0, 1 * second, 3 * second) + hold(r2, 0, 2 * second, 4 * second));
    EXPECT_EQ(0, figuresOf(history).overlapsOfIntervals);
    EXPECT_EQ(0, figuresOf(history).toReaders.count);
}

TEST(DeployDemoFigures, AWriterThatWaitedForReadersGoesByTheLastOfThem)
{
    const History history = historyOf(hold(r1, 0, 1 * second, 3 * second) + hold(r2, 0, 2 * second, 4 * second) +
                                      hold(w1, 2 * second, 4 * second + 9000, 5 * second));
    EXPECT_EQ(9000, figuresOf(history).toWriters.longest);
}

TEST(DeployDemoFigures, ReadersMayComeInAfterADowngrade)
{
    const History history = historyOf(aDowngrade() + hold(r1, 1 * second, 2 * second + 5000, 4 * second));
    const Figures figures = figuresOf(history);
    EXPECT_EQ(0, figures.overlapsOfIntervals);
    EXPECT_EQ(0, figures.intruders);
    EXPECT_EQ(1, figures.members[w1].holds);
    EXPECT_EQ(5000, figures.toReaders.longest);
    EXPECT_EQ(1, figures.readings.verified);
    EXPECT_THAT(tableOf(history), HasSubstr("releases deployed: 1, " + downgrades(1, 0)));
}

TEST(DeployDemoFigures, AReaderBeforeADowngradeIsAnOverlap)
{
    const History history = historyOf(aDowngrade() + hold(r1, 1 * second, 2 * second - 1, 4 * second));
    EXPECT_EQ(1, figuresOf(history).overlapsOfIntervals);
}

TEST(DeployDemoFigures, AWriterInADowngradeIsAnIntruder)
{
    const History history = historyOf(aDowngrade() + hold(w2, 0, 3 * second - 1, 4 * second));
    EXPECT_EQ(1, figuresOf(history).intruders);
    EXPECT_THAT(tableOf(history), HasSubstr(downgrades(1, 1)));
    EXPECT_EQ(0, figuresOf(historyOf(aDowngrade() + hold(w2, 0, 3 * second, 4 * second))).intruders);
}

TEST(DeployDemoFigures, TheMarkOfALiveProcessIsAnOverlap)
{
    const History history =
        historyOf(afterAWriter(r1, 3 * second) + std::vector<Event>{{r1, 3 * second, Word::met, 0, "W1"}});
    EXPECT_THAT(tableOf(history), HasSubstr("overlaps found: 1 "));
}

TEST(DeployDemoFigures, AReleaseThatSomebodyElseWroteIntoIsCounted)
{
    EXPECT_EQ(1, historyOf({{w1, 3 * second, Word::spoiled, 2, ""}}).spoiled());
}

TEST(DeployDemoFigures, AnUnfinishedReleaseOfALiveWriterIsNoneThatADeadOneLeft)
{
    const History history = historyOf(aReadersDeath() + std::vector<Event>{{r1, 40 * second, Word::unfinished, 4, "W1"},
                                                                           {w2, 41 * second, Word::half, 4, "W1"}});
    EXPECT_EQ(2, history.spoiled());
    EXPECT_EQ(0, figuresOf(history).readings.unfinished);
}

TEST(DeployDemoFigures, ATornReadIsCounted)
{
    const History history = historyOf({{r1, 1 * second, Word::torn, 4, "W1"}, {r1, 2 * second, Word::served, 4, "W1"}});
    EXPECT_THAT(tableOf(history), HasSubstr("reads verified: 1, torn reads: 1, "));
}

TEST(DeployDemoFigures, ALockFileOfALiveOwnerThatIsRemovedIsCounted)
{
    const Event removal = {r1, 50 * second, Word::cleared, 0, ".deploy_read_lock.17"};
    EXPECT_EQ(1, historyOf({removal}).robbed());
    EXPECT_EQ(1, historyOf(aWritersDeath() + std::vector<Event>{removal}).robbed());
    EXPECT_EQ(1, historyOf(aReadersDeath() + std::vector<Event>{removal}).robbed());
    EXPECT_EQ(0, historyOf(aReadersDeath()).robbed());
}

TEST(DeployDemoFigures, ADeadWritersMarkAndReleaseAreTakenForWhatTheyAre)
{
    const History history = historyOf(aWritersDeath());
    const Figures figures = figuresOf(history);
    const std::string table = tableOf(history);
    EXPECT_THAT(table, HasSubstr("overlaps found: 0 "));
    EXPECT_THAT(table, HasSubstr("killed: W2 (kill -9) at 2.00 s, half way through release 7"));
    EXPECT_THAT(table, HasSubstr("its stale lock file was removed 30.00 s later by R1 (stale 30 s after"));
    EXPECT_THAT(table, HasSubstr("W1 found 4 files of the unfinished release 7"));
    EXPECT_EQ(0, history.spoiled());
    EXPECT_EQ(1, figures.readings.unfinished);
    EXPECT_EQ(0, figures.members[r1].ordinary.count);
    EXPECT_EQ(0, figures.members[w1].ordinary.count);
    EXPECT_EQ(0, figures.toReaders.count);
}

TEST(DeployDemoFigures, ADeadReaderKeepsWritersWaitingOnly)
{
    const History history = historyOf(aReadersDeath());
    const Figures figures = figuresOf(history);
    EXPECT_EQ(0, history.strangersMet());
    EXPECT_EQ(0, figures.overlapsOfIntervals);
    EXPECT_EQ(1, figures.members[r1].ordinary.count);
    EXPECT_EQ(0, figures.members[w1].ordinary.count);
    EXPECT_EQ(0, figures.toWriters.count);
    EXPECT_THAT(tableOf(history), HasSubstr("killed: R2 (kill -9) at 2.00 s, reading release 3"));
    EXPECT_THAT(tableOf(history), HasSubstr("its stale lock file was removed 29.50 s later by W1"));
}

/// The dead writer's lock file is removed at 32 s.
TEST(DeployDemoFigures, WhoeverComesInBeforeADeadWritersLockFileIsRemovedIsAnOverlap)
{
    for (const std::size_t next : {w1, r2}) {
        const std::vector<Event> inside = hold(next, 1 * second, 10 * second, 11 * second);
        EXPECT_EQ(1, figuresOf(historyOf(inside + aWritersDeath())).overlapsOfIntervals);
    }
    EXPECT_EQ(0, figuresOf(historyOf(aWritersDeath())).overlapsOfIntervals);
}

TEST(DeployDemoFigures, AWriterThatComesInBeforeADeadReadersLockFileIsRemovedIsAnOverlap)
{
    const std::vector<Event> inside = hold(w2, 1 * second, 10 * second, 11 * second);
    EXPECT_EQ(1, figuresOf(historyOf(aReadersDeath() + inside)).overlapsOfIntervals);
}

TEST(DeployDemoVerdict, FindsNothingWrongWithTwoDeathsWhoseLocksWentStale)
{
    EXPECT_THAT(verdictOf(historyOf(twoDeaths(29 * second))), IsEmpty());
}

TEST(DeployDemoVerdict, FindsALockFileThatWasRemovedTooSoon)
{
    EXPECT_THAT(verdictOf(historyOf(twoDeaths(26 * second))), ElementsAre("R2's lock file was removed too soon"));
    EXPECT_THAT(verdictOf(historyOf(moved(aWritersDeath(), 32 * second, -20 * second))),
                Contains("W2's lock file was removed too soon"));
}

TEST(DeployDemoTimeline, ShowsEveryIntervalOnceInWellFormedXml)
{
    const std::string svg = timelineOf(historyOf(aWritersDeath()), "by turns");
    EXPECT_EQ(2, countBars(svg, "writing"));
    EXPECT_EQ(3, countBars(svg, "waiting"));
    EXPECT_EQ(1, countBars(svg, "unfinished"));
    EXPECT_EQ(1, countBars(svg, "dead-writer"));
    EXPECT_EQ(0, countBars(svg, "reading"));
    EXPECT_THAT(svg, HasSubstr("1 releases into one directory, 2 served and verified them, by turns"));
    EXPECT_THAT(svg, HasSubstr("W2 killed half way through release 7"));
    EXPECT_THAT(svg, HasSubstr("R1 removes W2's stale lock file, 30.0 s later"));
    EXPECT_EQ(svg, timelineOf(historyOf(aWritersDeath()), "by turns"));
}

TEST(DeployDemoTimeline, TellsReadersFromWritersAndMarksTheDowngrade)
{
    const std::string svg =
        timelineOf(historyOf(aDowngrade() + hold(r1, 1 * second, 2 * second, 4 * second)), "by turns");
    EXPECT_EQ(1, countBars(svg, "writing"));
    EXPECT_EQ(2, countBars(svg, "reading"));
    EXPECT_THAT(svg, HasSubstr("class=\"diamond\""));
    EXPECT_THAT(svg, HasSubstr("downgrade: the writer goes on as a reader"));
}

TEST(DeployDemoTimeline, LeavesOutEachTimeOfWaitingForStaleness)
{
    const History history = historyOf(twoDeaths(29500 * 1000));
    const TimeScale scale(history, 0, 1000);
    EXPECT_EQ(2u, scale.cuts().size());
    EXPECT_TRUE(scale.isCutOut(10));
    EXPECT_FALSE(scale.isCutOut(35));
    EXPECT_TRUE(scale.isCutOut(50));
    double before = -1;
    for (int time = 0; time <= 72; ++time) {
        EXPECT_LT(before, scale.atSecond(time));
        before = scale.atSecond(time);
    }
    EXPECT_NEAR(1000, scale.at(history.end()), 0.01);
}

TEST(DeployDemoTimeline, PutsNoLineThroughAText)
{
    const History history = historyOf(twoDeaths(29500 * 1000));
    for (const double right : {700.0, 900.0, 1176.0, 3000.0}) {
        const TimeScale scale(history, 142, right);
        const std::vector<Moment> moments = momentsOf(history, scale, right);
        ASSERT_EQ(4u, moments.size());
        for (const Moment& text : moments)
            for (const Moment& line : moments) {
                const double from = text.left ? text.x - widthOf(text.text) : text.x;
                const bool crosses = line.x > from && line.x < from + widthOf(text.text);
                EXPECT_FALSE(&text != &line && crosses && line.row <= text.row) << text.text << " and " << line.text;
                EXPECT_LE(from + widthOf(text.text), right);
            }
    }
}

TEST(DeployDemo, ASmallRunEndsInATableAndAPicture)
{
    const TemporaryTree tree;
    std::string output, errors;
    EXPECT_EQ(0, runDemo({"--readers", "2", "--releases", "2", "--no-kill", "--output", directoryOf(tree)}, output,
                         errors));
    EXPECT_EQ("", errors);
    EXPECT_THAT(output, HasSubstr("overlaps found: 0 (by the marks that each process leaves while it is inside: 0, "
                                  "by times: 0, in "));
    EXPECT_THAT(output, HasSubstr(", torn reads: 0, reads that found an unfinished release and served nothing: 0\n"));
    EXPECT_THAT(output, HasSubstr("releases deployed: 4, " + downgrades(2, 0)));
    EXPECT_THAT(output, HasSubstr("starting 4 processes: writers W1 (verifies its own releases as a reader) and W2, "
                                  "readers R1 and R2\n"));
    EXPECT_THAT(output, HasSubstr("in the end: release 5 is whole, no lock file is left"));
    EXPECT_THAT(output, EndsWith("\nnothing went wrong\n"));
    for (const char* name : {"\nW1 ", "\nW2 ", "\nR1 ", "\nR2 "})
        EXPECT_THAT(output, HasSubstr(name));
    EXPECT_EQ(std::vector<std::string>({"timeline.svg"}), tree.names());
    EXPECT_EQ(4, countBars(tree.content("timeline.svg"), "writing"));
}

TEST(DeployDemo, WithoutTheLockItFails)
{
    const TemporaryTree tree;
    std::string output, errors;
    EXPECT_EQ(1, runDemo({"--releases", "3", "--no-kill", "--no-lock", "--output", directoryOf(tree)}, output, errors));
    EXPECT_THAT(errors, HasSubstr("overlaps of a writer's time with another's"));
    EXPECT_THAT(errors, HasSubstr("marks met of processes that should have been outside"));
    EXPECT_THAT(errors, HasSubstr("releases that a live writer lost or had not finished"));
    EXPECT_THAT(output, Not(HasSubstr("in the end:")));
    EXPECT_THAT(output, Not(HasSubstr("nothing went wrong")));
}

TEST(DeployDemo, AWorkerThatFailsMakesItFail)
{
    const TemporaryTree tree;
    std::string output, errors;
    EXPECT_EQ(1, runDemo({"--no-kill", "--worker", "/bin/false", "--output", directoryOf(tree)}, output, errors));
    EXPECT_THAT(errors, HasSubstr("ended at once"));
    EXPECT_EQ(std::vector<std::string>(), tree.names());
}

TEST(DeployDemo, RefusesAKillThatNobodyWouldBeLeftToSee)
{
    const TemporaryTree tree;
    for (const std::vector<std::string>& few :
         {std::vector<std::string>{"--writers", "1"}, {"--readers", "1"}, {"--releases", "3"}, {"--no-lock"}}) {
        std::vector<std::string> options = few;
        options.insert(options.end(), {"--output", directoryOf(tree)});
        std::string output, errors;
        EXPECT_EQ(1, runDemo(options, output, errors));
        EXPECT_THAT(errors, HasSubstr("--no-kill"));
        EXPECT_EQ(std::vector<std::string>(), tree.names());
    }
}
