#include <zorvel/ipc.h>

#include "errors/messages.h"
#include "ipc/detail/semaphore_name.h"
#include "platform/semaphore.h"

#include <zorvel/errors.h>

#include <iostream>

namespace {

namespace platform = zorvel::platform;

const std::size_t longestName = 1281;
const unsigned long notSupported = 0xFFFFFFFFul;
const unsigned long theLastError = 0xFFFFFFFFul;

/// A stream that the application lets throw must not make an operation throw.
template <class... Arguments>
void report(zvMessageId message, Arguments... arguments)
try {
    zorvel::errors::emitMessage(zorvel::errors::messageEmitter, std::cerr, message, arguments...);
} catch (...) {
}

/// Right after the failed call: the system's text is that of the last error.
void reportSystemError(zvMessageId message, const std::string& name)
try {
    const std::string text = zvGetWinErrorMessage(theLastError);
    report(message, name.c_str(), text.c_str());
} catch (...) {
}

}  // namespace

// By value, as callers were compiled against.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
zvSemaphoreIPC::zvSemaphoreIPC(std::string givenName, int timeOutSeconds, bool givenOption)
    : name(zorvel::ipc::escapedName(givenName)),
      timeOut(timeOutSeconds),
      ownsLock(false),
      option(givenOption),
      handle(nullptr),
      lastError(0),
      count(1)
{
    if (name.size() > longestName)
        report(ZORVEL_SEM_NAME_TOO_LONG, name.c_str(), static_cast<int>(name.size()), static_cast<int>(longestName));
}

/// The handle is shared, not duplicated, and the old one not closed: callers
/// rely on both objects meaning one handle, and answer for it.
zvSemaphoreIPC& zvSemaphoreIPC::operator=(const zvSemaphoreIPC& other) = default;

zvSemaphoreIPC::~zvSemaphoreIPC()
{
    lastError = 0;
    if (!handle)
        return;
    // All bits set, not 0, though 0 is what a refused close answers: handles are shared between objects by assignment,
    // and the second close of one passes without a word.
    if (platform::closeSemaphore(handle) == -1)
        reportSystemError(ZORVEL_SEM_CLOSE_FAILED, name);
}

bool zvSemaphoreIPC::Open()
{
    if (name.empty())
        return handle != nullptr;
    // The handle of an earlier call is not closed: another object may share it.
    handle = platform::createSemaphore(name, count, count);
    if (!handle)
        reportSystemError(ZORVEL_SEM_OPEN_FAILED, name);
    return handle != nullptr;
}

bool zvSemaphoreIPC::Acquire(bool timed)
{
    return AcquireLock(timed, false);
}

bool zvSemaphoreIPC::TryAcquire()
{
    return AcquireLock(false, true);
}

bool zvSemaphoreIPC::AcquireLock(bool timed, bool tryOnly)
{
    lastError = 0;
    if (!handle)
        return false;
    const std::uint32_t limit = static_cast<std::uint32_t>(timeOut) * 1000u;
    const unsigned long result = platform::waitForSemaphore(handle, tryOnly ? 0
                                                                    : timed ? limit
                                                                            : platform::waitForever);
    if (__builtin_expect(result == platform::waitSucceeded, true)) {
        ownsLock = true;
        return true;
    }
    if (result == platform::waitFailed) {
        // lastError stays 0: callers tell a refused wait from a timeout by that.
        reportSystemError(ZORVEL_SEM_WAIT_FAILED, name);
        return false;
    }
    lastError = result;
    reportWait(tryOnly);
    return false;
}

/// A wait that came to something else than success or a refusal.
void zvSemaphoreIPC::reportWait(bool tryOnly) const
{
    if (lastError == platform::waitAbandoned)
        report(ZORVEL_SEM_WAIT_ABANDONED, name.c_str());
    else if (lastError != platform::waitTimedOut)
        report(ZORVEL_SEM_INVALID_RETURN_VALUE, "WaitForSingleObject", name.c_str(), static_cast<int>(lastError));
    else if (!tryOnly)
        report(ZORVEL_SEM_WAIT_TIMED_OUT, name.c_str(), static_cast<int>(timeOut));
}

bool zvSemaphoreIPC::Release()
{
    lastError = 0;
    if (!handle)
        return false;
    const bool released = platform::releaseSemaphore(handle);
    if (!released)
        reportSystemError(ZORVEL_SEM_POST_FAILED, name);
    ownsLock = false;
    return released;
}

bool zvSemaphoreIPC::GetValue(long*)
{
    lastError = notSupported;
    report(ZORVEL_SEM_GETVALUE_NOT_IMPLEMENTED, name.c_str(), "unimplemented function");
    return false;
}

bool zvSemaphoreIPC::IsValid() const
{
    return handle != nullptr;
}

unsigned long zvSemaphoreIPC::LastError() const
{
    return lastError;
}

unsigned long& zvSemaphoreIPC::LastError()
{
    return lastError;
}

bool zvSemaphoreIPC::WaitTimedOut() const
{
    return lastError == platform::waitTimedOut;
}

bool zvSemaphoreIPC::OwnsLock() const
{
    return ownsLock;
}

std::string zvSemaphoreIPC::Name()
{
    return name;
}

int& zvSemaphoreIPC::TimeOut()
{
    return timeOut;
}
