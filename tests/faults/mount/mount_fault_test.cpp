#include "tests/faults/mount/mount_faults.h"
#include "tests/faults/mount/posix/mounted_folder.h"
#include "tests/faults/seam/supervised_run.h"
#include "tests/support/fake_clock.h"
#include "tests/support/system_facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <set>

// The same scenarios as in seam_fault_test, on a mount of which every operation
// fails in every way: what the kernel, the C library and the seam make of it is
// what the library gets.

namespace {

using namespace zorvel::test;
using fault_mount::Control;
using fault_mount::Fault;
using fault_mount::Operation;
using seam::Run;
using seam::Scenario;
using seam::Scenarios;

std::unique_ptr<fault_mount::MountedFolder> mounted;
std::size_t runs = 0;
std::size_t scenarios = 0;

Control& control()
{
    return mounted->control();
}

/// Hits that have been counted, and what the library's clock takes one for.
std::size_t hitsSeen = 0;
boost::posix_time::time_duration lengthOfHit;

/// Time passes for the library when an operation is late.
std::size_t hits()
{
    const std::size_t now = control().hits;
    if (now != hitsSeen && lengthOfHit.ticks() != 0)
        fake_clock::set(fake_clock::now() + lengthOfHit * static_cast<int>(now - hitsSeen));
    hitsSeen = now;
    return now;
}

/// Operations count, and fail with a fault, for as long as the object lives.
class Armed
{
public:
    explicit Armed(const Fault* fault)
    {
        const bool isLate = fault && fault->answer.code == 0;
        control().operation = fault ? fault->operation : fault_mount::operationCount;
        control().call = fault ? static_cast<std::uint32_t>(fault->call) : 0;
        control().isForEver = fault && fault->isForEver;
        control().isDone = fault && fault->answer.isDone;
        control().code = fault ? static_cast<std::uint32_t>(fault->answer.code) : 0;
        control().delay = isLate ? 1000 : 0;
        control().limit = isLate ? 5 : seam_faults::endOfForEver;
        control().hits = 0;
        for (auto& count : control().counts)
            count = 0;
        hitsSeen = 0;
        lengthOfHit = boost::posix_time::seconds(isLate ? 5 : 0);
        control().isArmed = 1;
    }
    ~Armed() { control().isArmed = 0; }
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;
};

typedef std::array<std::size_t, fault_mount::operationCount> Counts;

/// Runs that are in every share, because they once failed.
const std::set<std::string> foundSomething = {
    "exclusive_refresh statfs 1 EACCES once",
    "reader_refresh_and_release statfs 1 EACCES once",
    "writer_refresh_and_release statfs 2 EACCES ever",
};

/// " openFile=5 entryKind=0".
std::string textOf(const seam_faults::Hits& hits)
{
    std::string text;
    for (const auto& hit : hits)
        text += std::string(" ") + seam_faults::nameOf(hit.first) + '=' + std::to_string(hit.second);
    return text;
}

class Runner
{
public:
    explicit Runner(const Scenario& scenario) : m_scenario(scenario), m_runs(0) {}

    std::size_t run()
    {
        seam::runOnce(m_scenario.name, [this] { actAndCheck(nullptr); });
        Counts counts = Counts();
        seam::runForLeaks(m_scenario.name, [&] { counts = actAndCheck(nullptr); });
        for (std::size_t operation = 0; operation < counts.size(); ++operation)
            failAll(static_cast<Operation>(operation), counts[operation]);
        m_endings.print(m_scenario.name);
        return m_runs;
    }

private:
    /// A call of the seam is some ten steps to a path, and hardly ever more than
    /// one of anything else.
    bool isChosen(Operation operation, std::size_t call, std::size_t count) const
    {
        const std::size_t calls = operation == fault_mount::getattr ? 10 * m_scenario.calls : m_scenario.calls;
        return call < calls || call == count;
    }

    void failAll(Operation operation, std::size_t count)
    {
        for (std::size_t call = 1; call <= count; ++call)
            for (const fault_mount::Answer& answer : fault_mount::answersOf(operation))
                for (const bool isForEver : {false, true})
                    if (isChosen(operation, call, count))
                        failOne({operation, call, isForEver, answer});
    }

    void failOne(const Fault& fault)
    {
        const std::string name = m_scenario.name + (" " + fault_mount::textOf(fault));
        if (!seam::isWanted(name, m_runs == 0 || foundSomething.count(name) != 0))
            return;
        seam::runForLeaks(name, [&] { actAndCheck(&fault); });
        ++m_runs;
    }

    Counts actAndCheck(const Fault* fault)
    {
        const std::unique_ptr<Run> run = m_scenario.prepare();
        seam_faults::Record record;
        std::string ending;
        {
            const Armed armed(fault);
            seam_faults::begin(nullptr);
            ending = seam::endingOf([&] { return run->act(); });
            record = seam_faults::end();
        }
        EXPECT_EQ(fault != nullptr, control().hits != 0) << "whether the fault came";
        check(*run, ending, fault, record.hits);
        Counts counts;
        std::copy(std::begin(control().counts), std::end(control().counts), counts.begin());
        return counts;
    }

    void check(Run& run, const std::string& ending, const Fault* fault, const seam_faults::Hits& hits)
    {
        if (!fault) {
            EXPECT_EQ(m_scenario.ending, ending);
            run.check(ending, seam::Faults());
            return;
        }
        const seam::Words allowed = fault_mount::allowedEndings(m_scenario, *fault, hits);
        EXPECT_TRUE(seam::contains(allowed, ending))
            << ending << " instead of " << testing::PrintToString(allowed) << " by" << textOf(hits);
        run.check(ending, fault_mount::faultsOfSeam(*fault, hits));
        m_endings.remember(fault_mount::textOf(*fault), ending);
    }

    const Scenario& m_scenario;
    std::size_t m_runs;
    seam::Endings m_endings;
};

/// The scenarios that touch files.
Scenarios scenariosOnFiles()
{
    Scenarios all;
    for (const auto part :
         {&seam::exclusiveScenarios, &seam::readWriteScenarios, &seam::downgradeScenarios, &seam::removalScenarios,
          &seam::creationScenarios, &seam::walkScenarios, &seam::queryScenarios, &seam::temporaryNameScenarios})
        for (const Scenario& scenario : part())
            all.push_back(scenario);
    return seam::wantedOf(all);
}

class Mount : public testing::Environment
{
public:
    void SetUp() override
    {
        mounted.reset(new fault_mount::MountedFolder);
        setEnvironment("TMPDIR", mounted->nativePath());
        setEnvironment("TEMP", mounted->path());
        seam_faults::watchBelow(&hits);
    }

    void TearDown() override
    {
        EXPECT_EQ(std::vector<std::string>(), mounted->names());
        mounted.reset();
        std::cout << "mount faults: " << runs << " runs over " << scenarios << " scenarios" << std::endl;
    }
};

testing::Environment* const mount = testing::AddGlobalTestEnvironment(new Mount);

class MountFaults : public testing::TestWithParam<Scenario>
{
};

TEST_P(MountFaults, EveryOperation)
{
    const std::size_t number = Runner(GetParam()).run();
    std::cout << GetParam().name << ": " << number << " runs" << std::endl;
    EXPECT_NE(0u, number) << "a scenario without an operation that can fail, or no such fault";
    runs += number;
    ++scenarios;
}

std::string nameOf(const testing::TestParamInfo<Scenario>& scenario)
{
    return scenario.param.name;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, MountFaults, testing::ValuesIn(scenariosOnFiles()), &nameOf);

}  // namespace
