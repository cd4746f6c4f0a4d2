#include "tests/faults/seam/runner.h"

#include "tests/faults/seam/supervised_run.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using seam_faults::Answer;
using seam_faults::Counts;
using seam_faults::Record;

class Runner
{
public:
    explicit Runner(const Scenario& scenario) : m_scenario(scenario), m_runs(0) {}

    std::size_t run()
    {
        runOnce(m_scenario.name, [this] { actAndCheck(nullptr); });
        Counts counts = Counts();
        runForLeaks(m_scenario.name, [&] { counts = actAndCheck(nullptr); });
        for (std::size_t function = 0; function < counts.size(); ++function)
            failAll(static_cast<Function>(function), counts[function]);
        m_endings.print(m_scenario.name);
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
        const std::string name = m_scenario.name + (" " + seam_faults::textOf(fault));
        if (!isWanted(name, m_runs == 0))
            return;
        runForLeaks(name, [&] { actAndCheck(&fault); });
        ++m_runs;
    }

    Counts actAndCheck(const Fault* fault)
    {
        const std::unique_ptr<Run> run = m_scenario.prepare();
        seam_faults::begin(fault);
        const std::string ending = endingOf([&] { return run->act(); });
        const Record record = seam_faults::end();
        EXPECT_EQ(fault != nullptr, record.failures != 0) << "whether the fault came";
        const std::string allowed = fault ? endingsWith(m_scenario, *fault) : m_scenario.ending;
        EXPECT_TRUE(contains(wordsOf(allowed), ending)) << ending << " instead of " << allowed;
        run->check(ending, fault ? Faults(1, *fault) : Faults());
        if (fault)
            m_endings.remember(seam_faults::textOf(*fault), ending);
        return record.counts;
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
                            &creationScenarios, &walkScenarios, &queryScenarios, &textScenarios, &semaphoreScenarios,
                            &moduleScenarios, &temporaryNameScenarios})
        append(all, part());
    return wantedOf(all);
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
