// Opening semaphores by any name, and what is then true of them. The names get a beginning that is this process's own.
//
// Input: a name, '|', another name. Either may be empty.

#include "fuzz/naive/semaphore.h"
#include "fuzz/support/captured_errors.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"

#include <zorvel/ipc.h>

#include <random>

using namespace zorvel;

namespace {

std::string ownName(const std::string& name)
{
    static const std::string begin = "fuzz" + std::to_string(std::random_device()()) + ".";
    return name.empty() ? name : begin + name;
}

/// Why the system refuses a name; empty when it does not.
std::string refusal(const std::string& escaped)
{
    if (escaped.size() > 32767)
        return "File name too long";
    return escaped.find('\0') == std::string::npos ? "" : "Invalid argument";
}

/// Opens a semaphore; whether it is open as its name lets expect.
bool opens(zvSemaphoreIPC& semaphore, fuzz::CapturedErrors& errors)
{
    const std::string escaped = semaphore.Name();
    const std::string refused = refusal(escaped);
    errors.text();
    const bool opened = semaphore.Open();
    fuzz::requireSame(!escaped.empty() && refused.empty(), opened, "whether it opens");
    fuzz::requireSame(opened, semaphore.IsValid(), "whether it is open");
    const std::string expected = refused.empty() ? "" : naive::failureMessage("open", escaped, refused);
    fuzz::requireSame(expected, errors.text(), "messages");
    return opened;
}

/// Two that were opened under one name are one semaphore, with one token.
void checkShared(zvSemaphoreIPC& first, zvSemaphoreIPC& second, fuzz::CapturedErrors& errors)
{
    fuzz::require(first.TryAcquire() && first.OwnsLock(), "a fresh one is free");
    fuzz::require(!second.TryAcquire() && second.WaitTimedOut() && !second.OwnsLock(), "it is taken for others");
    fuzz::require(second.Release() && second.Acquire(true) && second.OwnsLock(), "whoever has it open releases it");
    fuzz::require(first.Release(), "released again");
    fuzz::requireSame(std::string(), errors.text(), "no messages");
    fuzz::require(!first.Release() && !first.OwnsLock() && first.LastError() == 0, "it is free already");
    const char* const reason = "Value too large for defined data type";
    fuzz::requireSame(naive::failureMessage("release (increment)", first.Name(), reason), errors.text(),
                      "the message of a release too many");
}

void checkPair(const std::string& name, const std::string& other, fuzz::CapturedErrors& errors)
{
    zvSemaphoreIPC first(name, 1, false);
    if (!opens(first, errors))
        return;
    zvSemaphoreIPC second(name, 1, true);
    fuzz::require(opens(second, errors), "it opens a second time");
    checkShared(first, second, errors);
    fuzz::require(first.TryAcquire(), "it is taken when it goes");

    zvSemaphoreIPC another(other, 1, false);
    if (opens(another, errors))
        fuzz::requireSame(other != name, another.TryAcquire(), "another name is another semaphore");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const std::string name = ownName(input.text());
    const std::string other = ownName(input.rest());
    fuzz::CapturedErrors errors;
    checkPair(name, other, errors);

    // The last who had it open took it along, and the token that was left taken.
    zvSemaphoreIPC fresh(name, 1, false);
    if (opens(fresh, errors))
        fuzz::require(fresh.TryAcquire(), "it is free when everybody has gone");
    return 0;
}
