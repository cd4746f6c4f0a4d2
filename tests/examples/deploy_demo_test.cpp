#include "examples/deploy_demo/figures.h"
#include "examples/deploy_demo/timeline.h"
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
using zorvel::test::TemporaryTree;
using testing::HasSubstr;

namespace {

const Microseconds second = 1000 * 1000;
const Microseconds start = 1000 * second;

History historyOf(const std::vector<Event>& events)
{
    History history({{"P1", "Linux"}, {"P2", "Wine"}, {"P3", "Linux"}});
    for (Event event : events) {
        event.time += start;
        history.add(event);
    }
    history.finish();
    return history;
}

/// P1 holds from 1 to 2 s; P2 queues from 1.5 s and holds from `second` on.
std::vector<Event> twoHolds(Microseconds secondBegins)
{
    return {{0, 0, Word::queue, 0, ""},
            {0, 1 * second, Word::hold, 0, ""},
            {1, 1500 * 1000, Word::queue, 0, ""},
            {0, 2 * second, Word::leave, 0, ""},
            {1, secondBegins, Word::hold, 0, ""},
            {1, 4 * second, Word::leave, 0, ""}};
}

/// P1 dies at 2 s with half of release 7 written; P2 takes over at 33 s.
std::vector<Event> aDeath()
{
    return {{0, 0, Word::queue, 0, ""},
            {0, 1 * second, Word::hold, 0, ""},
            {0, 1 * second, Word::start, 7, ""},
            {1, 1 * second, Word::queue, 0, ""},
            {0, 2 * second, Word::killed, 0, ""},
            {1, 33 * second, Word::hold, 0, ""},
            {1, 33 * second, Word::met, 0, "P1"},
            {1, 33 * second, Word::half, 4, ""},
            {1, 33 * second, Word::start, 7, ""},
            {1, 34 * second, Word::deployed, 7, ""},
            {1, 34 * second, Word::leave, 0, ""}};
}

std::string tableOf(const History& history)
{
    std::ostringstream out;
    printTable(out, history, figuresOf(history));
    return out.str();
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
    const History history = historyOf(twoHolds(2 * second + 7000));
    const Figures figures = figuresOf(history);
    EXPECT_EQ(0, figures.overlapsOfIntervals);
    EXPECT_EQ(2, figures.acquired);
    EXPECT_EQ(1, figures.handovers.count);
    EXPECT_EQ(7000, figures.handovers.median);
    EXPECT_EQ(7000, figures.handovers.longest);
    EXPECT_EQ(507000, figures.members[1].all.longest);
    EXPECT_EQ(0, figures.members[2].acquired);
}

TEST(DeployDemoFigures, AHoldThatBeginsInsideAnotherIsAnOverlap)
{
    const History history = historyOf(twoHolds(2 * second - 1));
    EXPECT_EQ(1, figuresOf(history).overlapsOfIntervals);
    EXPECT_THAT(tableOf(history), HasSubstr("overlaps found: 1 "));
}

TEST(DeployDemoFigures, TheMarkOfALiveProcessIsAnOverlap)
{
    std::vector<Event> events = twoHolds(3 * second);
    events.push_back({1, 3 * second, Word::met, 0, "P1"});
    EXPECT_THAT(tableOf(historyOf(events)), HasSubstr("overlaps found: 1 "));
}

TEST(DeployDemoFigures, AReleaseThatSomebodyElseWroteIntoIsAnOverlap)
{
    std::vector<Event> events = twoHolds(3 * second);
    events.push_back({1, 3 * second, Word::spoiled, 2, ""});
    EXPECT_THAT(tableOf(historyOf(events)), HasSubstr("overlaps found: 1 "));
}

TEST(DeployDemoFigures, ADeadHoldersMarkIsTakenForWhatItIs)
{
    const std::string table = tableOf(historyOf(aDeath()));
    EXPECT_THAT(table, HasSubstr("overlaps found: 0 "));
    EXPECT_THAT(table, HasSubstr("killed: P1 (kill -9) at 2.00 s, inside, half way through release 7"));
    EXPECT_THAT(table, HasSubstr("taken over: 31.00 s, by P2"));
    EXPECT_THAT(table, HasSubstr("P2 found P1's mark in the directory and 4 files of release 7"));
    EXPECT_EQ(0, figuresOf(historyOf(aDeath())).members[1].ordinary.count);
}

TEST(DeployDemoTimeline, ShowsEveryIntervalOnceInWellFormedXml)
{
    const std::string svg = timelineOf(historyOf(aDeath()));
    EXPECT_EQ(2, countBars(svg, "holding"));
    EXPECT_EQ(2, countBars(svg, "queued"));
    EXPECT_EQ(1, countBars(svg, "left"));
    EXPECT_THAT(svg, HasSubstr("P1 killed (kill -9) half way through release 7"));
    EXPECT_THAT(svg, HasSubstr("P2 takes the stale lock over, 31.0 s after the kill"));
    EXPECT_EQ(svg, timelineOf(historyOf(aDeath())));
}

TEST(DeployDemo, ASmallRunEndsInATableAndAPicture)
{
    const TemporaryTree tree;
    std::string output, errors;
    EXPECT_EQ(0, runDemo({"--processes", "3", "--releases", "2", "--no-kill", "--output", directoryOf(tree)}, output,
                         errors));
    EXPECT_EQ("", errors);
    EXPECT_THAT(output, HasSubstr("overlaps found: 0 (by marks in the directory: 0, by times: 0, in 6 acquisitions)"));
    EXPECT_THAT(output, HasSubstr("releases 1 to 6 are all whole, no lock file is left"));
    EXPECT_THAT(output, HasSubstr("handover from release to next acquire: median "));
    for (const char* name : {"\nP1 ", "\nP2 ", "\nP3 "})
        EXPECT_THAT(output, HasSubstr(name));
    EXPECT_EQ(std::vector<std::string>({"timeline.svg"}), tree.names());
    EXPECT_EQ(6, countBars(tree.content("timeline.svg"), "holding"));
}

TEST(DeployDemo, AWorkerThatFailsMakesItFail)
{
    const TemporaryTree tree;
    std::string output, errors;
    EXPECT_EQ(1, runDemo({"--no-kill", "--worker", "/bin/false", "--output", directoryOf(tree)}, output, errors));
    EXPECT_THAT(errors, HasSubstr("ended at once"));
    EXPECT_EQ(std::vector<std::string>(), tree.names());
}
