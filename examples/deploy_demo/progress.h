#pragma once

#include <chrono>
#include <ostream>
#include <string>

namespace zorvel {
namespace demo {

/// One line that tells how it goes: written over on a terminal, otherwise a
/// new one every five seconds.
class Progress
{
public:
    /// The stream is the caller's and must outlive this object.
    Progress(std::ostream& out, bool terminal);

    void show(const std::string& text);

    /// Writes a line that stays.
    void say(const std::string& text);

    /// Takes the last line away from a terminal.
    void clear();

private:
    std::ostream& m_out;
    const bool m_terminal;
    std::chrono::steady_clock::time_point m_due;
};

}  // namespace demo
}  // namespace zorvel
