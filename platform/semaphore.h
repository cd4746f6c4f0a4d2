#pragma once

#include <string>

/// Semaphores that processes share by name. All thread-safe. Where a function
/// fails the system's last error (platform/system_error.h) says why.
///
/// Windows: the system's objects. Linux: the same life and death, made of a
/// file that the processes share (platform/posix/semaphore_file.h).
namespace zorvel {
namespace platform {

/// Opens the semaphore of a name or creates it. Null on failure; a name that
/// holds NUL is refused. The handle is never reused for another semaphore on
/// Linux; Windows may.
void* createSemaphore(const std::string& name, long initialCount, long maximumCount);

/// Without a limit, as milliseconds for waitForSemaphore.
const unsigned long waitForever = 0xFFFFFFFFul;

/// What waitForSemaphore answers.
const unsigned long waitSucceeded = 0;
const unsigned long waitAbandoned = 128;
const unsigned long waitTimedOut = 258;
const unsigned long waitFailed = 0xFFFFFFFFul;

/// Takes one off the count as soon as there is one, for at most so many
/// milliseconds.
unsigned long waitForSemaphore(void* handle, unsigned long milliseconds);

/// Adds one to the count; false when it is at its maximum.
bool releaseSemaphore(void* handle);

/// Closes a handle: the system's result, which is not 0 for success. One that is
/// closed already is refused; on Windows as long as the system has not given
/// its value to something else.
int closeSemaphore(void* handle);

}  // namespace platform
}  // namespace zorvel
