#include "examples/deploy_demo/event.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <sstream>

namespace zorvel {
namespace demo {

namespace {

/// In the order of Word.
const char* const words[] = {"ready", "clock", "queue",    "cleared", "hold",  "met",    "half",
                             "start", "stall", "deployed", "spoiled", "lower", "served", "unfinished",
                             "torn",  "leave", "free",     "done",    "killed"};

}  // namespace

Microseconds now()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count();
}

std::string lineOf(const Event& event)
{
    std::ostringstream line;
    line << event.time << ' ' << words[static_cast<int>(event.word)] << ' ' << event.number << ' ' << event.name;
    return line.str();
}

bool readEvent(std::size_t process, const std::string& line, Event& event)
{
    std::istringstream stream(line);
    std::string word;
    if (!(stream >> event.time >> word >> event.number))
        return false;
    const auto found = std::find(std::begin(words), std::end(words), word);
    if (found == std::end(words))
        return false;
    event.process = process;
    event.word = static_cast<Word>(found - std::begin(words));
    event.name.clear();
    stream >> event.name;
    return true;
}

}  // namespace demo
}  // namespace zorvel
