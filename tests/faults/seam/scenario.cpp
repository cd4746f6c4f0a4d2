#include "tests/faults/seam/scenario.h"

#include <zorvel/errors.h>

#include <boost/system/system_error.hpp>
#include <boost/thread/exceptions.hpp>

#include <new>
#include <ostream>

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
