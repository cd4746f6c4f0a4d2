// What is prescribed for an acquire and release, and nothing else: the pauses, the file operations and the thread for
// each file that is held, by bare system calls on ready-made names. The threads only wait: no hold here is so long that
// its file would be refreshed, and nobody is found dead.
//
//   locks_bare pauses|exclusive|read|write DIR cycles COUNT
//   locks_bare exclusive DIR contend LOG HOLD_MS
//   locks_bare thread DIR cycles COUNT    start and end of a thread that waits, each after a pause

#include "bench/locks/bare_locks.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace zorvel::bench;

typedef std::chrono::steady_clock Clock;

/// A thread that waits until it is told to end.
class WaitingThread
{
public:
    WaitingThread() : m_thread([this] { wait(); }) {}

    /// To be woken takes longer than the thread's end, so that is looked for before anybody goes to sleep over it.
    ~WaitingThread()
    {
        tell();
        const Clock::time_point end = Clock::now() + std::chrono::microseconds(100);
        while (!hasEnded() && Clock::now() < end) {
            std::this_thread::yield();
            const Clock::time_point turn = Clock::now() + std::chrono::microseconds(25);
            while (!hasEnded() && Clock::now() < turn) {
            }
        }
        m_thread.join();
    }

private:
    void tell()
    {
        {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_isTold = true;
        }
        m_end.notify_one();
    }

    void wait()
    {
        std::unique_lock<std::mutex> guard(m_mutex);
        m_end.wait(guard, [this] { return m_isTold; });
    }

    bool hasEnded()
    {
        clockid_t clock;
        return pthread_getcpuclockid(m_thread.native_handle(), &clock) != 0;
    }

    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_isTold = false;
    std::thread m_thread;
};

void sleepForPause()
{
    const timespec fiveMsec = {0, 5000000};
    nanosleep(&fiveMsec, nullptr);
}

bool look(const std::string& path)
{
    struct stat status;
    return lstat(path.c_str(), &status) == 0;
}

/// The time of a file as its server has it.
bool askTime(const std::string& path)
{
    struct statx status;
    return statx(AT_FDCWD, path.c_str(), AT_STATX_FORCE_SYNC, STATX_MTIME, &status) == 0;
}

bool create(const std::string& path)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return file != -1 && close(file) == 0;
}

bool touch(const std::string& path)
{
    const std::uint32_t content = 1;
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    const bool isWritten = file != -1 && pwrite(file, &content, sizeof content, 0) == sizeof content;
    return file != -1 && close(file) == 0 && isWritten;
}

bool remove(const std::string& path)
{
    return unlink(path.c_str()) == 0;
}

bool list(const std::string& directory)
{
    const int file = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file == -1)
        return false;
    char entries[32768];
    long read = 0;
    do
        read = syscall(SYS_getdents64, file, entries, sizeof entries);
    while (read > 0);
    return close(file) == 0 && read == 0;
}

/// The way of one contender to level 0.
class Queue
{
public:
    explicit Queue(const std::string& directory)
        : m_directory(directory), m_calibration(directory + "/." + std::to_string(getpid()))
    {
        for (std::size_t level = 0; level < 1024; ++level)
            m_levels.push_back(directory + "/.deploy_lock." + std::to_string(level));
    }

    const std::string& lowest() const { return m_levels[0]; }

    void pass() { descend(join()); }

private:
    std::size_t join() const
    {
        for (std::size_t level = 0;; ++level) {
            if (look(m_levels.at(level)))
                continue;
            look(m_directory);
            sleepForPause();
            if (claim(m_levels[level]))
                return level;
        }
    }

    void descend(std::size_t level)
    {
        if (level > 0)
            sleepForPause();
        for (Clock::time_point touched = Clock::now(); level > 0;) {
            if (Clock::now() - touched >= std::chrono::seconds(1) && touch(m_levels[level]))
                touched = Clock::now();
            if (claim(m_levels[level - 1])) {
                touched = Clock::now();
                remove(m_levels[level--]);
            } else if (isHeld(m_levels[level - 1])) {
                sleepForPause();
            }
        }
    }

    /// Whatever the creation says, a missing directory is reported first.
    bool claim(const std::string& path) const
    {
        if (create(path))
            return true;
        look(m_directory);
        return false;
    }

    bool isHeld(const std::string& path)
    {
        if (!m_isCalibrated)
            calibrate();
        return askTime(path);
    }

    /// Once for each lock, what time it is at the file server.
    void calibrate()
    {
        m_isCalibrated = look(m_directory) && create(m_calibration) && askTime(m_calibration) && remove(m_calibration);
    }

    const std::string m_directory;
    const std::string m_calibration;
    std::vector<std::string> m_levels;
    bool m_isCalibrated = false;
};

class Steps
{
public:
    explicit Steps(const std::string& directory)
        : m_directory(directory),
          m_writer(directory + "/.deploy_write_lock"),
          m_reader(directory + "/.deploy_read_lock.1"),
          m_queue(directory)
    {
    }

    static void pause() { sleepForPause(); }

    bool takeGuard()
    {
        m_queue.pass();
        return hold(m_queue.lowest(), m_guardKeeper);
    }

    bool giveGuard() { return end(m_queue.lowest(), m_guardKeeper); }

    bool enterAsReader()
    {
        return takeGuard() && !look(m_writer) && create(m_reader) && hold(m_reader, m_keeper) && giveGuard();
    }

    bool leaveAsReader() { return end(m_reader, m_keeper); }

    bool enterAsWriter()
    {
        return takeGuard() && list(m_directory) && !look(m_writer) && list(m_directory) && !look(m_writer) &&
               hold(m_writer, m_keeper) && giveGuard();
    }

    bool leaveAsWriter() { return end(m_writer, m_keeper); }

private:
    typedef std::unique_ptr<WaitingThread> Keeper;

    static bool hold(const std::string& file, Keeper& keeper)
    {
        if (!touch(file))
            return false;
        keeper.reset(new WaitingThread);
        return look(file);
    }

    /// The thread has ended before its file is removed: it could touch it once more.
    static bool end(const std::string& file, Keeper& keeper)
    {
        keeper.reset();
        return remove(file);
    }

    const std::string m_directory;
    const std::string m_writer;
    const std::string m_reader;
    Queue m_queue;
    Keeper m_guardKeeper;
    Keeper m_keeper;
};

Lock waitingThread()
{
    const auto thread = std::make_shared<std::unique_ptr<WaitingThread>>();
    const auto start = [=] {
        thread->reset(new WaitingThread);
        return true;
    };
    return Lock{start, [=] { thread->reset(); }, &ownProcessorTime, &Steps::pause};
}

}  // namespace

int main(int argc, char** argv)
{
    return carryOutBare(argc, argv, [](const std::string& kind, const std::string& directory) {
        return kind == "thread" ? waitingThread() : bareLock<Steps>(kind, directory);
    });
}
