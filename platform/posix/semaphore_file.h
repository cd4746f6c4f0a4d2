#pragma once

#include "platform/posix/semaphore_patience.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace zorvel {
namespace platform {
namespace posix {

/// What the processes share: the content of the file, 64 bytes.
struct SharedSemaphore
{
    char mark[16];
    std::atomic<std::uint32_t> count;
    std::atomic<std::uint32_t> maximum;
    /// How many sleep. Too high when one of them was killed, never too low.
    std::atomic<std::uint32_t> sleepers;
    char reserved[36];
};
static_assert(sizeof(SharedSemaphore) == 64, "the file is shared by all versions of the library");
static_assert(std::atomic<std::uint32_t>::is_always_lock_free, "processes share the words, not a lock");

/// An open semaphore: a file in memory that every process which uses the
/// semaphore maps, and a lock on the file for each time that it is open.
///
/// The locks tell who lives. They belong to the open file and so end with the
/// process, however it ends. Whoever opens the file and finds that nobody lives
/// writes a fresh semaphore into it, whatever was there before; whoever is the
/// last to leave removes it. What a killed process leaves behind is therefore a
/// file, and no taken semaphore. Opening and leaving happen one after another;
/// a process that is stopped in the middle of one keeps the others from both,
/// but not from waiting and releasing.
///
/// Locks of the open-file-description kind are used because two of one process
/// exclude each other, and because a lock is turned from exclusive to shared
/// without a moment between in which it is neither.
class SemaphoreFile
{
public:
    /// Opens the semaphore of a path or makes it. Null on failure, with errno.
    static std::shared_ptr<SemaphoreFile> open(const std::string& path, std::uint32_t count, std::uint32_t maximum);

    ~SemaphoreFile();

    SemaphoreFile(const SemaphoreFile&) = delete;
    SemaphoreFile& operator=(const SemaphoreFile&) = delete;

    /// What the processes share, at a SemaphorePlace.
    SharedSemaphore& shared() { return *m_shared; }

    /// Of this process.
    SemaphorePatience& patience() { return m_patience; }

private:
    enum class Outcome
    {
        opened,
        failed,
        again
    };

    explicit SemaphoreFile(const std::string& path) : m_path(path), m_descriptor(-1), m_shared(nullptr) {}

    Outcome tryOpen(std::uint32_t count, std::uint32_t maximum);
    Outcome openFile();
    bool makeFresh(std::uint32_t count, std::uint32_t maximum);
    bool join();
    void leave();
    bool isStillNamed() const;
    bool holdsOurs() const;
    bool map();
    void close();

    std::string m_path;
    int m_descriptor;
    SharedSemaphore* m_shared;
    SemaphorePatience m_patience;
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
