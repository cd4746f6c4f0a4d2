#include "tests/faults/seam/scenario.h"

#include <zorvel/errors.h>

#include <boost/system/system_error.hpp>
#include <boost/thread/exceptions.hpp>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <new>
#include <ostream>
#include <sstream>

namespace zorvel {
namespace test {
namespace seam {

Run::~Run() = default;

Rules operator+(const Rules& special, const Rules& general)
{
    Rules both = special;
    both.insert(both.end(), general.begin(), general.end());
    return both;
}

bool contains(const Faults& faults, Function function)
{
    return std::any_of(faults.begin(), faults.end(), [&](const Fault& fault) { return fault.function == function; });
}

namespace {

bool fits(const Rule& rule, const Fault& fault)
{
    const Words answers = wordsOf(rule.answers);
    return rule.function == fault.function && (answers.empty() || contains(answers, fault.answer.name)) &&
           (rule.persistence == Persistence::both || (rule.persistence == Persistence::ever) == fault.forEver);
}

}  // namespace

std::string endingsWith(const Scenario& scenario, const Fault& fault)
{
    for (const Rule& rule : scenario.rules)
        if (fits(rule, fault))
            return rule.endings;
    return scenario.ending;
}

Words wordsOf(const std::string& text)
{
    std::istringstream stream(text);
    return Words(std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>());
}

bool contains(const Words& words, const std::string& word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

Scenarios wantedOf(const Scenarios& scenarios)
{
    const Words wanted = wordsOf(setting("ZORVEL_FAULT"));
    Scenarios chosen;
    for (const Scenario& scenario : scenarios)
        if (wanted.empty() || wanted[0] == scenario.name)
            chosen.push_back(scenario);
    return chosen;
}

std::string setting(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? value : "";
}

void PrintTo(const Scenario& scenario, std::ostream* stream)
{
    *stream << scenario.name;
}

std::string endingOf(const std::function<std::string()>& call)
{
    try {
        return call();
    } catch (const zvNoSuchDirectory&) {
        return "zvNoSuchDirectory";
    } catch (const zvPermissionDenied&) {
        return "zvPermissionDenied";
    } catch (const zvFileAccessError&) {
        return "zvFileAccessError";
    } catch (const zvFileNotFoundError&) {
        return "zvFileNotFoundError";
    } catch (const zvFileBasedLockError&) {
        return "zvFileBasedLockError";
    } catch (const boost::thread_interrupted&) {
        return "interrupted";
    } catch (const boost::thread_resource_error&) {
        return "thread_resource_error";
    } catch (const boost::system::system_error&) {
        return "system_error";
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    }
}

const char* textOf(bool value)
{
    return value ? "true" : "false";
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
