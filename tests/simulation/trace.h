#pragma once

#include "tests/simulation/plan.h"

#include <iosfwd>
#include <set>
#include <string>
#include <vector>

namespace zorvel {
namespace sim {

/// What happened, as a table for people. A look that gave the answer that it
/// gave before, nothing having changed since, is left out.
class Trace
{
public:
    explicit Trace(bool on) : m_on(on) {}

    bool isOn() const { return m_on; }

    /// Something that a process did or that befell it.
    void event(Time time, int process, const std::string& what);

    /// An operation at the server. `changes`: a file came or went.
    void operation(Time time, int process, const std::string& what, const std::string& answer, bool changes);

    /// All of it, or only up to the first time that something goes wrong.
    void print(std::ostream& out, bool untilWrong = false) const;

private:
    struct Row
    {
        Time time;
        int process;
        std::string what;
        std::string answer;
    };

    const bool m_on;
    std::vector<Row> m_rows;
    std::set<std::string> m_seen;
};

}  // namespace sim
}  // namespace zorvel
