#include "tests/hosts/machines.h"

#include "tests/support/process.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

std::string outputOf(const std::vector<std::string>& command)
{
    Process process(command);
    std::string output;
    std::string errors;
    const int status = process.finish(&output, &errors);
    if (status == 0)
        return output;
    std::string text;
    for (const std::string& word : command)
        text += word + ' ';
    throw std::runtime_error(text + "ended with status " + std::to_string(status) + ": " + errors);
}

}  // namespace

std::string setting(const char* name)
{
    const char* value = std::getenv(name);
    if (!value)
        throw std::runtime_error(std::string(name) + " is not set");
    return value;
}

std::vector<std::string> settings(const char* name)
{
    std::istringstream words(setting(name));
    std::vector<std::string> result;
    for (std::string word; words >> word;)
        result.push_back(word);
    return result;
}

std::string onMachine(const std::string& machine, const std::vector<std::string>& command)
{
    std::vector<std::string> words = {setting("ZORVEL_RIG") + "/on", machine};
    words.insert(words.end(), command.begin(), command.end());
    return outputOf(words);
}

void control(const std::string& what, const std::string& machine)
{
    outputOf({setting("ZORVEL_RIG") + "/control", what, machine});
}

void moveClock(const std::string& machine, int seconds)
{
    onMachine(machine, {"sh", "-c", "date -s @$(($(date +%s) + $0))", std::to_string(seconds)});
}

}  // namespace test
}  // namespace zorvel
