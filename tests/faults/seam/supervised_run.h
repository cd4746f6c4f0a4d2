#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>

namespace zorvel {
namespace test {
namespace seam {

/// Does a run that `name` stands for in the messages, and looks for what it
/// leaves behind. It may be done up to three times: what grows once is kept for
/// later; what grows each time is lost.
void runForLeaks(const std::string& name, const std::function<void()>& run);

/// The same without looking: what is made once for the whole process is made by
/// the first run.
void runOnce(const std::string& name, const std::function<void()>& run);

/// Whether a run with a fault is to be made: the one that ZORVEL_FAULT names, or
/// those in the share that ZORVEL_FAULT_SHARE asks for (with 20 a twentieth of
/// all is, the same each time; without it all are) and those that always are.
bool isWanted(const std::string& name, bool isAlways);

/// How the faults of a scenario ended, without the number of the call.
class Endings
{
public:
    /// `fault` is "function call answer once|ever".
    void remember(const std::string& fault, const std::string& ending);

    /// Prints them when ZORVEL_FAULT_ENDINGS is set.
    void print(const std::string& scenario) const;

private:
    std::map<std::string, std::set<std::string>> m_endings;
};

}  // namespace seam
}  // namespace test
}  // namespace zorvel
