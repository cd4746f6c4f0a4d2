#include "platform/semaphore.h"

#include "platform/posix/semaphore_file.h"
#include "platform/posix/semaphore_place.h"
#include "platform/posix/semaphore_wait.h"

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <map>
#include <mutex>
#include <new>

#include <errno.h>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zorvel {
namespace platform {
namespace {

using posix::SemaphoreFile;
using posix::SemaphorePlace;
using posix::SharedSemaphore;
using posix::take;

/// More than any name needs; a bound on what is hashed.
const std::size_t longestName = 32767;

/// The open semaphores of the process, for those who keep one: it stays as long as they do, also when its handle is
/// closed meanwhile.
class Handles
{
public:
    void* add(const std::shared_ptr<SemaphoreFile>& file)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        std::shared_ptr<SemaphoreFile>& kept = m_files[&file->shared()];
        kept = file;
        return SemaphorePlace::openHandle(&file->shared());
    }

    std::shared_ptr<SemaphoreFile> find(void* handle)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        const auto found = m_files.find(SemaphorePlace::of(handle));
        return found == m_files.end() ? nullptr : found->second;
    }

    /// What was open, for the caller to let go of outside the mutex.
    std::shared_ptr<SemaphoreFile> remove(void* handle)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        const auto found = m_files.find(SemaphorePlace::of(handle));
        if (found == m_files.end())
            return nullptr;
        std::shared_ptr<SemaphoreFile> file = found->second;
        SemaphorePlace::closeHandle(handle);
        m_files.erase(found);
        return file;
    }

private:
    std::mutex m_mutex;
    std::map<const void*, std::shared_ptr<SemaphoreFile>> m_files;
};

/// Never destroyed: semaphores of the application's static objects outlive ours.
Handles& handles()
{
    static Handles* const all = new Handles;
    return *all;
}

/// A name may have bytes and a length that no file's name has.
std::string pathOf(const std::string& name)
{
    const boost::uuids::name_generator_sha1 generator(boost::uuids::ns::oid());
    return "/dev/shm/zorvel-semaphore-" + to_string(generator(name));
}

void* openOrMake(const std::string& name, long initialCount, long maximumCount)
{
    const std::shared_ptr<SemaphoreFile> file =
        SemaphoreFile::open(pathOf(name), static_cast<std::uint32_t>(initialCount),
                            static_cast<std::uint32_t>(maximumCount));
    return file ? handles().add(file) : nullptr;
}

__attribute__((noinline)) void wakeSleeper(SharedSemaphore& semaphore)
{
    ::syscall(SYS_futex, &semaphore.count, FUTEX_WAKE, 1, nullptr, nullptr, 0);
}

/// Adds one; false at the maximum. Whoever gives one back has most often the only one. Somebody may have gone to sleep
/// for it.
inline bool give(SharedSemaphore& semaphore)
{
    std::uint32_t count = 0;
    do {
        if (count >= semaphore.maximum)
            return false;
    } while (!semaphore.count.compare_exchange_weak(count, count + 1));
    if (semaphore.sleepers > 0)
        wakeSleeper(semaphore);
    return true;
}

/// What neither can be had at once nor refused at once, with the semaphore kept for as long as it takes. By itself, so
/// that what can be had at once is had without anything on the stack: that has to be in memory before the processes'
/// word is touched.
__attribute__((noinline)) unsigned long waitForKept(void* handle, unsigned long milliseconds)
{
    const std::shared_ptr<SemaphoreFile> file = handles().find(handle);
    if (!file) {
        errno = EBADF;
        return waitFailed;
    }
    if (take(file->shared()))
        return waitSucceeded;
    if (milliseconds == 0)
        return waitTimedOut;
    return posix::waitForTaken(*file, milliseconds);
}

__attribute__((noinline)) bool releaseKept(void* handle)
{
    const std::shared_ptr<SemaphoreFile> file = handles().find(handle);
    if (file && give(file->shared()))
        return true;
    errno = file ? EOVERFLOW : EBADF;
    return false;
}

}  // namespace

void* createSemaphore(const std::string& name, long initialCount, long maximumCount)
{
    if (name.size() > longestName || name.find('\0') != std::string::npos) {
        errno = name.size() > longestName ? ENAMETOOLONG : EINVAL;
        return nullptr;
    }
    try {
        return openOrMake(name, initialCount, maximumCount);
    } catch (const std::bad_alloc&) {
        errno = ENOMEM;
        return nullptr;
    }
}

unsigned long waitForSemaphore(void* handle, unsigned long milliseconds)
{
    SharedSemaphore* const open = static_cast<SharedSemaphore*>(SemaphorePlace::of(handle));
    return open && take(*open) ? waitSucceeded : waitForKept(handle, milliseconds);
}

bool releaseSemaphore(void* handle)
{
    SharedSemaphore* const open = static_cast<SharedSemaphore*>(SemaphorePlace::of(handle));
    return (open && give(*open)) || releaseKept(handle);
}

int closeSemaphore(void* handle)
{
    if (handles().remove(handle))
        return 1;
    errno = EBADF;
    return 0;
}

}  // namespace platform
}  // namespace zorvel
