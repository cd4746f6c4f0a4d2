#include "tests/simulation/trace.h"

#include <iomanip>
#include <ostream>

namespace zorvel {
namespace sim {

void Trace::event(Time time, int process, const std::string& what)
{
    if (!m_on)
        return;
    m_seen.clear();
    m_rows.push_back(Row{time, process, what, ""});
}

void Trace::operation(Time time, int process, const std::string& what, const std::string& answer, bool changes)
{
    if (!m_on)
        return;
    if (changes)
        m_seen.clear();
    else if (!m_seen.insert(std::to_string(process) + what + answer).second)
        return;
    m_rows.push_back(Row{time, process, what, answer});
}

void Trace::print(std::ostream& out, bool untilWrong) const
{
    for (const Row& row : m_rows) {
        const std::string who = row.process < 0 ? "-" : std::string(1, static_cast<char>('A' + row.process));
        out << std::setw(9) << row.time / second << '.' << std::setw(6) << std::setfill('0') << row.time % second
            << std::setfill(' ') << "  " << std::left << std::setw(3) << who << std::setw(34) << row.what << row.answer
            << std::right << '\n';
        if (untilWrong && row.what.compare(0, 3, "***") == 0)
            return;
    }
}

}  // namespace sim
}  // namespace zorvel
