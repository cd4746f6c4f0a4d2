#include "tests/multiprocess/storm.h"

#include "tests/multiprocess/sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <thread>

namespace zorvel {
namespace test {

namespace {

const int killedStatus = 128 + 9;
/// In the place of a worker's number.
const int driver = -1;
const int unlimited = 1000000000;
/// Rarely enough that the storm goes on most of the time.
const std::chrono::seconds firstSpared(30);
const std::chrono::seconds betweenSpared(100);

const std::chrono::milliseconds betweenLooks(50);

double secondsSince(std::chrono::steady_clock::time_point then)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - then).count();
}

bool beginsHold(const Mark& mark)
{
    return mark.event == "read" || mark.event == "write" || mark.event == "downgraded";
}

/// The file that says that its owner is inside.
std::string lockFileOf(const std::set<std::string>& owned, bool writes)
{
    const std::string readers = ".deploy_read_lock.";
    const auto found = std::find_if(owned.begin(), owned.end(), [&](const std::string& name) {
        return name.compare(0, readers.size(), readers) == 0;
    });
    if (!writes)
        return found == owned.end() ? std::string() : *found;
    if (owned.count(".deploy_write_lock") > 0)
        return ".deploy_write_lock";
    return owned.count(".deploy_lock.0") > 0 ? ".deploy_lock.0" : std::string();
}

}  // namespace

Storm::Storm(const StormPlan& plan)
    : m_plan(plan), m_kinds(launchers()), m_random(plan.seed), m_numbers(0), m_places(plan.parts.size())
{
    m_scene.writeFirstRelease();
}

std::unique_ptr<Worker> Storm::startWorker(std::size_t index, const Part& part)
{
    std::unique_ptr<Worker> worker(
        new Worker(m_kinds[index % m_kinds.size()], m_scene.directory(), m_nextId++, part, -1, m_numbers));
    worker->go();
    return worker;
}

void Storm::start(std::size_t index)
{
    Part part = m_plan.parts[index];
    part.role = "storm-" + part.role;
    part.holds = unlimited;
    m_places[index] = Place();
    m_places[index].worker = startWorker(index, part);
}

void Storm::run()
{
    const Clock::time_point end = Clock::now() + m_plan.duration;
    m_nextSpared = Clock::now() + firstSpared;
    for (std::size_t i = 0; i < m_places.size(); ++i)
        start(i);
    while (Clock::now() < end) {
        killWhoeverIsDue();
        if (m_nextLook <= Clock::now()) {
            ageWhatTheDeadLeft();
            m_nextLook = Clock::now() + betweenLooks;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

void Storm::killWhoeverIsDue()
{
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        Place& place = m_places[i];
        if (!place.ready && place.worker->said("ready") > 0)
            chooseEnd(place);
        if (!place.worker->running())
            bury(*place.worker, place.worker->finish(), killedStatus);
        else if (isDue(place))
            kill(place);
        else
            continue;
        start(i);
    }
}

/// Lives are as if at every moment a kill were as likely as at any other; to
/// be inside is so rare that some are aimed at it.
void Storm::chooseEnd(Place& place)
{
    std::exponential_distribution<double> life(1.0 / m_plan.life.count());
    place.ready = true;
    place.aimed = m_random() % 3 == 0;
    place.end = Clock::now() + std::chrono::microseconds(static_cast<long long>(1000 * life(m_random)));
}

bool Storm::isDue(const Place& place)
{
    const Clock::duration over = Clock::now() - place.end;
    if (!place.ready || over < Clock::duration::zero())
        return false;
    return !place.aimed || place.worker->said("held") > place.worker->said("free") || over > std::chrono::seconds(5);
}

void Storm::kill(Place& place)
{
    place.worker->kill();
    const int status = place.worker->finish();
    ++m_kills;
    if (m_plan.patient && m_nextSpared <= Clock::now())
        spareWhatItLeft(*place.worker);
    bury(*place.worker, status, killedStatus);
}

void Storm::bury(Worker& dead, int status, int expected)
{
    tell(dead.id(), "is dead");
    if (status != expected)
        m_complaints.push_back("worker " + std::to_string(dead.id()) + " ended with status " + std::to_string(status));
    for (const char* word : {"held", "took", "cleared", "unfinished", "repairing", "downgrading"})
        m_said[word] += dead.said(word);
    m_marks.insert(m_marks.end(), dead.marks().begin(), dead.marks().end());
    m_story.insert(m_story.end(), dead.claims().begin(), dead.claims().end());
    m_complaints.insert(m_complaints.end(), dead.complaints().begin(), dead.complaints().end());
    keepLastHold(dead);
}

void Storm::keepLastHold(const Worker& dead)
{
    if (dead.marks().empty() || !beginsHold(dead.marks().back()))
        return;
    ++m_diedInside;
    const bool writes = dead.marks().back().event == "write";
    const OpenHold hold = {dead.id(), writes, lockFileOf(dead.owned(), writes)};
    if (hold.lockFile.empty() || m_sparedWorker == dead.id())
        close(hold);
    else
        m_open.push_back(hold);
}

void Storm::close(const OpenHold& hold)
{
    m_marks.push_back(Mark{m_numbers++, hold.worker, hold.writes ? "written" : "left"});
    const std::string shown = hold.writes ? "inside" : "reading." + std::to_string(hold.worker);
    std::error_code notThere;
    std::filesystem::remove(std::filesystem::path(m_scene.directory()) / shown, notThere);
}

void Storm::closeHoldUnder(const std::string& lockFile)
{
    const auto found =
        std::find_if(m_open.begin(), m_open.end(), [&](const OpenHold& hold) { return hold.lockFile == lockFile; });
    if (found == m_open.end())
        return;
    close(*found);
    m_open.erase(found);
}

void Storm::closeAllHolds()
{
    for (const OpenHold& hold : m_open)
        close(hold);
    m_open.clear();
}

void Storm::spareWhatItLeft(const Worker& dead)
{
    const std::map<std::string, Scene::Stamp> files = m_scene.stamps();
    for (const std::string& name : dead.owned()) {
        const auto file = files.find(name);
        if (file == files.end())
            continue;
        m_spared[name] = file->second;
        m_sparedWorker = dead.id();
        ++m_sparedFiles;
        tell(dead.id(), "spared " + name);
        m_nextSpared = Clock::now() + betweenSpared;
    }
}

bool Storm::spared(const std::string& name, Scene::Stamp stamp) const
{
    const auto found = m_spared.find(name);
    return found != m_spared.end() && found->second == stamp;
}

std::map<std::string, Scene::Stamp> Storm::candidates() const
{
    std::map<std::string, Scene::Stamp> files = m_scene.quietLockFiles();
    for (auto file = files.begin(); file != files.end();)
        file = spared(file->first, file->second) ? files.erase(file) : std::next(file);
    return files;
}

/// Who is not ready owns nothing that was there before.
std::set<std::string> Storm::ownedByTheLiving()
{
    std::vector<std::pair<Worker*, int>> asked;
    for (const Place& place : m_places)
        if (place.worker && place.worker->said("ready") > 0) {
            asked.emplace_back(place.worker.get(), place.worker->said("synced") + 1);
            place.worker->tell("sync");
        }
    std::set<std::string> owned;
    for (const auto& one : asked) {
        // Who has ended meanwhile is no living one.
        if (!one.first->waitSaid("synced", one.second))
            continue;
        const std::set<std::string> own = one.first->owned();
        owned.insert(own.begin(), own.end());
    }
    return owned;
}

void Storm::ageWhatTheDeadLeft()
{
    const std::map<std::string, Scene::Stamp> files = candidates();
    if (files.empty())
        return;
    const std::set<std::string> owned = ownedByTheLiving();
    for (const auto& file : files) {
        if (owned.count(file.first) > 0)
            continue;
        closeHoldUnder(file.first);
        if (!m_scene.ageQuiet(file.first, file.second))
            continue;
        ++m_aged;
        tell(driver, "aged " + file.first);
    }
}

/// Nobody lives any more, so whatever is left is certain to be of the dead.
void Storm::end()
{
    for (const Place& place : m_places)
        place.worker->kill();
    for (Place& place : m_places)
        kill(place);
    closeAllHolds();
    m_leftAtTheEnd = static_cast<int>(m_scene.lockFiles().size());
    if (!m_plan.patient) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        ageWhatTheDeadLeft();
    }
    letNewcomersIn();
    m_leftBehind = static_cast<int>(m_scene.lockFiles().size());
    waitUntilStale();
    sweepQueue(m_scene, zvGetDefaultFSImp());
    EXPECT_EQ(std::vector<std::string>(), m_scene.lockFiles());
    m_calibrations = m_scene.calibrations();
}

void Storm::waitUntilStale() const
{
    const auto isAged = [this](const std::string& name) { return m_scene.aged(name); };
    for (std::vector<std::string> left = m_scene.lockFiles(); !std::all_of(left.begin(), left.end(), isAged);
         left = m_scene.lockFiles())
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

void Storm::letNewcomersIn()
{
    std::set<std::string> roles;
    for (const Part& part : m_plan.parts)
        roles.insert(part.role);
    for (const std::string& role : roles) {
        const Clock::time_point asked = Clock::now();
        const std::unique_ptr<Worker> newcomer = startWorker(0, Part{"storm-" + role, 1, 0, 0});
        EXPECT_TRUE(newcomer->waitHeld(1)) << role;
        m_newcomers.push_back(secondsSince(asked));
        bury(*newcomer, newcomer->finish(), 0);
    }
}

void Storm::expectOrder()
{
    const std::vector<std::string> found = overlaps(holdsOf(m_marks));
    m_overlaps = static_cast<int>(found.size());
    EXPECT_EQ(std::vector<std::string>(), m_complaints);
    EXPECT_EQ(std::vector<std::string>(), found);
    EXPECT_EQ(std::string(), m_scene.release().fault);
    if (!m_complaints.empty() || !found.empty())
        tellStory();
    EXPECT_LT(0, m_kills);
    EXPECT_LT(0, m_said["held"]);
    // What a storm that is hardly longer than the start of a process need not see.
    if (m_plan.patient) {
        EXPECT_LT(0, m_diedInside);
        EXPECT_LT(0, m_said["took"]);
    }
}

void Storm::expectViolations()
{
    m_overlaps = static_cast<int>(overlaps(holdsOf(m_marks)).size());
    EXPECT_LT(0, m_overlaps);
    EXPECT_FALSE(m_complaints.empty());
}

void Storm::tell(int worker, const std::string& what)
{
    m_story.push_back(storyLine(m_numbers, worker, what));
}

void Storm::tellStory()
{
    for (const Mark& mark : m_marks)
        m_story.push_back(storyLine(mark.number, mark.worker, "marked " + mark.event));
    const std::size_t number = storyLine(0, 0, std::string()).find(']');
    std::stable_sort(m_story.begin(), m_story.end(), [number](const std::string& left, const std::string& right) {
        return left.compare(0, number, right, 0, number) < 0;
    });
    for (const std::string& line : m_story)
        std::cout << line << '\n';
}

void Storm::report() const
{
    const auto said = [this](const char* word) {
        const auto found = m_said.find(word);
        return found == m_said.end() ? 0 : found->second;
    };
    std::ostringstream text;
    text << m_places.size() << " processes, " << m_plan.duration.count() << " s: " << said("held") << " holds ("
         << said("downgrading") << " downgraded), " << m_kills << " kills (" << m_diedInside << " inside), " << m_nextId
         << " starts\n  overlaps " << m_overlaps << ", complaints " << m_complaints.size() << ", files aged " << m_aged
         << ", left to go stale " << m_sparedFiles << ", places taken over " << said("took") << ", marks cleared "
         << said("cleared") << ", unfinished releases seen " << said("unfinished") << ", repaired " << said("repairing")
         << "\n  at the end " << m_leftAtTheEnd << " files of the dead; newcomers inside after";
    for (const double seconds : m_newcomers)
        text << ' ' << seconds;
    text << " s; left then: " << m_leftBehind << ", calibration files left by the dead: " << m_calibrations << "\n";
    std::cout << text.str() << std::flush;
}

}  // namespace test
}  // namespace zorvel
