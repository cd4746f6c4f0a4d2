#include "tests/faults/seam/runner.h"

#include "tests/faults/seam/residue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using seam_faults::Answer;
using seam_faults::Counts;

typedef std::vector<std::string> Words;

Words wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    return Words(std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>());
}

bool contains(const Words& words, const std::string& word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool fits(const Rule& rule, const Fault& fault)
{
    const Words answers = wordsOf(rule.answers);
    return rule.function == fault.function && (answers.empty() || contains(answers, fault.answer.name)) &&
           (rule.persistence == Persistence::both || (rule.persistence == Persistence::ever) == fault.forEver);
}

std::string allowedEndings(const Scenario& scenario, const Fault* fault)
{
    for (const Rule& rule : scenario.rules)
        if (fault && fits(rule, *fault))
            return rule.endings;
    return scenario.ending;
}

/// The value of a variable of the environment, or the empty text.
std::string setting(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

/// How the faults of a scenario ended, without the number of the call.
typedef std::map<std::string, std::set<std::string>> Endings;

class Runner
{
public:
    explicit Runner(const Scenario& scenario) : m_scenario(scenario), m_runs(0) {}

    std::size_t run()
    {
        // What is made once for the whole process is made by the first.
        runOne(nullptr, false);
        const Counts counts = runOne(nullptr, true);
        for (std::size_t function = 0; function < counts.size(); ++function)
            failAll(static_cast<Function>(function), counts[function]);
        if (!setting("ZORVEL_SEAM_ENDINGS").empty())
            print();
        return m_runs;
    }

private:
    bool isChosen(std::size_t call, std::size_t count) const { return call < m_scenario.calls || call == count; }

    void failAll(Function function, std::size_t count)
    {
        for (std::size_t call = 1; call <= count; ++call)
            for (const Answer& answer : seam_faults::answersOf(function))
                for (const bool forEver : {false, true})
                    if (isChosen(call, count))
                        failOne({function, call, forEver, answer});
    }

    void failOne(const Fault& fault)
    {
        const std::string wanted = setting("ZORVEL_SEAM_FAULT");
        if (!wanted.empty() && wanted != m_scenario.name + (" " + seam_faults::textOf(fault)))
            return;
        runOne(&fault, true);
        ++m_runs;
    }

    Counts runOne(const Fault* fault, bool looksForLeaks)
    {
        const std::string name = m_scenario.name + (fault ? " " + seam_faults::textOf(*fault) : std::string());
        const Announcement announcement(name);
        SCOPED_TRACE("ZORVEL_SEAM_FAULT=\"" + name + "\"");
        if (!looksForLeaks)
            return actAndCheck(fault);
        // What grows once is kept for later; what grows each time is lost.
        // Failures are kept too, and are worse.
        const int failuresBefore = failures();
        for (int attempts = 3;; --attempts) {
            const Residue before;
            const Counts counts = actAndCheck(fault);
            const std::string leak = Residue::growthSince(before);
            if (leak.empty() || failures() != failuresBefore)
                return counts;
            if (attempts == 1) {
                ADD_FAILURE() << leak << "stay behind";
                return counts;
            }
        }
    }

    static int failures()
    {
        return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
    }

    Counts actAndCheck(const Fault* fault)
    {
        const std::unique_ptr<Run> run = m_scenario.prepare();
        std::size_t failed = 0;
        seam_faults::begin(fault);
        const std::string ending = endingOf([&] { return run->act(); });
        const Counts counts = seam_faults::end(failed);
        EXPECT_EQ(fault != nullptr, failed != 0) << "whether the fault came";
        const std::string allowed = allowedEndings(m_scenario, fault);
        EXPECT_TRUE(contains(wordsOf(allowed), ending)) << ending << " instead of " << allowed;
        run->check(ending, fault);
        if (fault)
            remember(*fault, ending);
        return counts;
    }

    void remember(Fault fault, const std::string& ending)
    {
        fault.call = 0;
        m_endings[seam_faults::textOf(fault)].insert(ending);
    }

    void print() const
    {
        for (const auto& each : m_endings) {
            std::cout << m_scenario.name << ": " << each.first << " =>";
            for (const std::string& ending : each.second)
                std::cout << ' ' << ending;
            std::cout << '\n';
        }
    }

    const Scenario& m_scenario;
    std::size_t m_runs;
    Endings m_endings;
};

void append(Scenarios& all, const Scenarios& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

std::size_t runAll(const Scenario& scenario)
{
    return Runner(scenario).run();
}

Scenarios wantedScenarios()
{
    Scenarios all;
    for (const auto part : {&exclusiveScenarios, &readWriteScenarios, &downgradeScenarios, &removalScenarios,
                            &creationScenarios, &walkScenarios, &queryScenarios, &semaphoreScenarios,
                            &moduleScenarios, &temporaryNameScenarios})
        append(all, part());
    const Words wanted = wordsOf(setting("ZORVEL_SEAM_FAULT"));
    if (!wanted.empty())
        all.erase(std::remove_if(all.begin(), all.end(), [&](const Scenario& s) { return wanted[0] != s.name; }),
                  all.end());
    return all;
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
