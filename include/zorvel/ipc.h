#pragma once

/// @file
/// A semaphore between the processes of a machine. What is here: @ref semaphore.

#include <zorvel/export.h>

#include <cstdint>
#include <string>

/// @defgroup semaphore Semaphore
/// @brief One token that the processes of a machine share by name.
///
/// For several machines there are the @ref dirlock, which also notice that a holder died.
///
/// @include one_at_a_time.cpp
///
/// @{

/// A semaphore of count one that processes of one machine share by name.
///
/// Nothing throws but for exhausted memory. A failure shows in the result, and
/// as a numbered message in the user's language on std::cerr. One object is
/// used by one thread at a time; messages of threads that fail at the same time
/// may mix. Objects that were opened under one name exclude each other, in one
/// process or in several. Any process that has the semaphore open may release
/// it, whoever acquired it.
///
/// The semaphore exists as long as somebody has it open. A holder that dies
/// does not give it back: it stays taken until everybody who has it open closes
/// it (or somebody releases it), and who opens it after that finds it free.
///
/// Windows: a semaphore object of the session, with the rights that the system
/// gives it.
///
/// Linux: a file of 64 bytes in /dev/shm, made readable and writable by all as
/// far as the umask allows; who may not write it is refused with a message.
/// - The last to close it removes the file. A process that is killed leaves it,
///   with its owner and mode; the next who may write it finds the semaphore
///   free.
/// - A child made by fork() has the semaphore open as well until it ends or
///   calls exec(), also one that another thread of the process makes.
/// - Containers with a /dev/shm of their own do not meet. Where the system
///   clears a user's files in /dev/shm at logout, those who open the semaphore
///   afterwards do not meet those who have it open.
/// - A process that is stopped while it opens or closes the semaphore makes the
///   others wait who open or close it.
class ZORVEL_API zvSemaphoreIPC
{
public:
    /// Opens nothing yet.
    ///
    /// - `name`: every byte but NUL may be in it; case counts. It is escaped:
    ///   `_` becomes `__`, `\` becomes `_s` and `:` becomes `_c`. More than 1281
    ///   characters after that give a message here and are tried all the same.
    /// - `timeOut`: the limit of a timed acquire in seconds; a negative one, or
    ///   one of 4294968 and more, wraps at 2^32 ms.
    /// - `option`: kept, and without meaning.
    zvSemaphoreIPC(std::string name, int timeOut, bool option);

    /// Shares the handle of the other object, as the assignment does.
    zvSemaphoreIPC(const zvSemaphoreIPC&) = default;

    /// Copies every field, the handle included, which is not duplicated: both
    /// objects use one handle and both close it, after which the other's
    /// operations fail (on Windows they reach whatever the system gave the value
    /// to meanwhile). The handle that this object had stays open until the
    /// process ends.
    zvSemaphoreIPC& operator=(const zvSemaphoreIPC& other);

    /// Closes the handle. Does not release what the object owns: call
    /// Release() first. Never throws; a close that fails gives a message.
    ~zvSemaphoreIPC();

    /// Creates the semaphore, free, or opens the one of that name. False, with
    /// a message, when the system refuses: an escaped name that holds NUL or is
    /// too long (Windows documents 260 characters as its limit, Linux takes
    /// 32767), one that is taken by something else, no permission, no room.
    /// False without one for an empty name. A second call opens another handle;
    /// the one before stays open until the process ends.
    bool Open();

    /// Waits for the semaphore and takes it: without limit, or, when timed, for
    /// at most TimeOut() seconds. False when it could not be had in time
    /// (WaitTimedOut(), with a message), when the semaphore is not open
    /// (without a message), and when waiting failed (with one). The wait is no
    /// interruption point.
    bool Acquire(bool timed);

    /// Takes the semaphore if it is free; never waits. False without a message
    /// when it is taken (WaitTimedOut()).
    bool TryAcquire();

    /// Gives the semaphore back; nobody asks who took it. False when it is not
    /// open, and, with a message, when it is free already.
    bool Release();

    /// Not supported: false with a message, LastError() is 0xFFFFFFFF, and
    /// value is left alone (null too).
    bool GetValue(long* value);

    /// Whether the semaphore was opened, by this object or by the one that it
    /// was copied from.
    bool IsValid() const;

    /// What the last operation came to: 0, 258 (timed out), 128 (abandoned),
    /// another unexpected result of the wait, or 0xFFFFFFFF (not supported). A
    /// wait that the system refuses leaves 0, and so does a failed release. Open()
    /// leaves it as it was. The same numbers on both systems. It may be set, too.
    /// @{
    unsigned long LastError() const;
    unsigned long& LastError();
    /// @}

    /// Whether LastError() is 258.
    bool WaitTimedOut() const;

    /// Whether this object has acquired the semaphore and not released it. It
    /// does not know what other objects and processes do.
    bool OwnsLock() const;

    /// The escaped name.
    std::string Name();

    /// Seconds of a timed acquire, to be read and set. The reference lives as
    /// long as this object.
    int& TimeOut();

private:
    ZORVEL_LOCAL bool AcquireLock(bool timed, bool tryOnly);
    ZORVEL_LOCAL void reportWait(bool tryOnly) const;

    std::string name;
    std::int32_t timeOut;
    bool ownsLock;
    [[maybe_unused]] bool option;  // kept for callers that copy it; no operation here reads it
    void* handle;
    unsigned long lastError;
    std::int32_t count;
};

/// @}
