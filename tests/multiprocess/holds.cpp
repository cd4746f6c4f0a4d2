#include "tests/multiprocess/holds.h"

#include <algorithm>
#include <map>
#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

void sortByNumber(std::vector<Mark>& marks)
{
    std::sort(marks.begin(), marks.end(),
              [](const Mark& left, const Mark& right) { return left.number < right.number; });
}

/// Makes holds out of one worker's marks.
class Reading
{
public:
    Reading(int worker, std::vector<Hold>& holds) : m_worker(worker), m_holds(holds) {}

    void add(const Mark& mark)
    {
        if (mark.event == "read" || mark.event == "write")
            begin(mark);
        else if (mark.event == "downgraded")
            becomeReader(mark);
        else if (mark.event == (m_open && m_holds[m_last].writes ? "written" : "left"))
            end(mark.number);
        else
            fail(mark.number);
    }

    bool open() const { return m_open; }

    void end(int number)
    {
        if (!m_open)
            fail(number);
        m_holds[m_last].end = m_holds[m_last].coveredUntil = number;
        if (m_downgraded)
            m_holds[m_written].coveredUntil = number;
        m_open = false;
    }

private:
    void begin(const Mark& mark)
    {
        if (m_open)
            fail(mark.number);
        m_open = true;
        m_downgraded = false;
        m_last = m_holds.size();
        m_holds.push_back(Hold{m_worker, mark.event == "write", mark.number, -1, -1});
    }

    void becomeReader(const Mark& mark)
    {
        if (m_open || m_last == none || !m_holds[m_last].writes)
            fail(mark.number);
        m_written = m_last;
        begin(mark);
        m_downgraded = true;
    }

    [[noreturn]] void fail(int number) const
    {
        throw std::runtime_error("worker " + std::to_string(m_worker) + ": no sense in mark " + std::to_string(number));
    }

    static const std::size_t none = static_cast<std::size_t>(-1);

    const int m_worker;
    std::vector<Hold>& m_holds;
    bool m_open = false;
    bool m_downgraded = false;
    std::size_t m_last = none;
    std::size_t m_written = none;
};

std::string nameOf(const Hold& hold)
{
    return (hold.writes ? "writer " : "reader ") + std::to_string(hold.worker) + " [" + std::to_string(hold.begin) +
           ", " + std::to_string(hold.end) + "]";
}

bool meet(int begin, int end, const Hold& other)
{
    return begin < other.end && other.begin < end;
}

/// What a writer's hold and another one should not have in common.
std::string clash(const Hold& writer, const Hold& other)
{
    if (meet(writer.begin, writer.end, other))
        return nameOf(writer) + " and " + nameOf(other) + " were inside together";
    if (other.writes && meet(writer.begin, writer.coveredUntil, other))
        return nameOf(other) + " came before " + nameOf(writer) + ", a reader until " +
               std::to_string(writer.coveredUntil) + ", had left";
    return std::string();
}

}  // namespace

std::vector<Hold> holdsOf(std::vector<Mark> marks, int victim, int endOfDead)
{
    sortByNumber(marks);
    std::vector<Hold> holds;
    std::map<int, Reading> readings;
    for (const Mark& mark : marks)
        readings.emplace(mark.worker, Reading(mark.worker, holds)).first->second.add(mark);
    for (auto& reading : readings)
        if (reading.second.open() && reading.first != victim)
            throw std::runtime_error("worker " + std::to_string(reading.first) + " never left");
        else if (reading.second.open())
            reading.second.end(endOfDead);
    return holds;
}

std::vector<std::string> overlaps(const std::vector<Hold>& holds)
{
    std::vector<std::string> found;
    for (std::size_t i = 0; i < holds.size(); ++i)
        for (std::size_t j = 0; j < holds.size(); ++j) {
            // Two writers are compared once for each of them.
            if (!holds[i].writes || holds[i].worker == holds[j].worker)
                continue;
            const std::string what = clash(holds[i], holds[j]);
            if (!what.empty())
                found.push_back(what);
        }
    return found;
}

int mostReaders(const std::vector<Hold>& holds)
{
    std::vector<std::pair<int, int>> changes;
    for (const Hold& hold : holds)
        if (!hold.writes) {
            changes.emplace_back(hold.begin, 1);
            changes.emplace_back(hold.end, -1);
        }
    std::sort(changes.begin(), changes.end());
    int inside = 0;
    int most = 0;
    for (const auto& change : changes)
        most = std::max(most, inside += change.second);
    return most;
}

int writesAmongReads(const std::vector<Hold>& holds)
{
    const auto reads = [](const Hold& hold) { return !hold.writes; };
    const auto first = std::find_if(holds.begin(), holds.end(), reads);
    const auto last = std::find_if(holds.rbegin(), std::make_reverse_iterator(first), reads).base();
    return static_cast<int>(std::count_if(first, last, [](const Hold& hold) { return hold.writes; }));
}

int changesOfWriter(const std::vector<Hold>& holds)
{
    int changes = 0;
    const Hold* before = nullptr;
    for (const Hold& hold : holds) {
        if (!hold.writes)
            continue;
        changes += before && before->worker != hold.worker ? 1 : 0;
        before = &hold;
    }
    return changes;
}

bool complete(const std::vector<Mark>& marks)
{
    std::vector<int> numbers;
    for (const Mark& mark : marks)
        numbers.push_back(mark.number);
    std::sort(numbers.begin(), numbers.end());
    for (std::size_t i = 0; i < numbers.size(); ++i)
        if (numbers[i] != static_cast<int>(i))
            return false;
    return true;
}

}  // namespace test
}  // namespace zorvel
