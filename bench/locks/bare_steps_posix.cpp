// What is prescribed for an acquire and release, and nothing else: the pauses and the file operations, by bare system
// calls on ready-made names. Nothing is refreshed, nobody is found dead.
//
//   locks_bare pauses|exclusive|read|write DIR cycles COUNT
//   locks_bare kept-exclusive|kept-read|kept-write DIR cycles COUNT    and a thread that waits for each file held
//   locks_bare exclusive DIR contend LOG HOLD_MS
//   locks_bare thread DIR cycles COUNT    start and end of a thread that waits, each after a pause

#include "bench/locks/contender.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdint>
#include <iostream>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

using namespace zorvel::bench;

/// A thread that waits until it is told to end.
class WaitingThread
{
public:
    WaitingThread() : m_thread([this] { wait(); }) {}

    ~WaitingThread()
    {
        {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_ended = true;
        }
        m_end.notify_one();
        m_thread.join();
    }

private:
    void wait()
    {
        std::unique_lock<std::mutex> guard(m_mutex);
        m_end.wait(guard, [this] { return m_ended; });
    }

    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_ended = false;
    std::thread m_thread;
};

/// What keeps one file fresh while it is held: nothing, or a thread.
class Keeper
{
public:
    explicit Keeper(bool hasThread) : m_hasThread(hasThread) {}

    bool begin()
    {
        if (m_hasThread)
            m_thread.reset(new WaitingThread);
        return true;
    }

    void end() { m_thread.reset(); }

private:
    const bool m_hasThread;
    std::unique_ptr<WaitingThread> m_thread;
};

class Steps
{
public:
    Steps(const std::string& directory, bool isKept)
        : m_directory(directory),
          m_writer(directory + "/.deploy_write_lock"),
          m_reader(directory + "/.deploy_read_lock.1"),
          m_guardKeeper(isKept),
          m_keeper(isKept)
    {
        for (std::size_t level = 0; level < 1024; ++level)
            m_levels.push_back(directory + "/.deploy_lock." + std::to_string(level));
    }

    static void pause()
    {
        const timespec fiveMsec = {0, 5000000};
        nanosleep(&fiveMsec, nullptr);
    }

    bool takeGuard()
    {
        descend(queue());
        return touch(m_levels[0]) && m_guardKeeper.begin() && look(m_levels[0]);
    }

    bool giveGuard()
    {
        m_guardKeeper.end();
        return remove(m_levels[0]);
    }

    bool enterAsReader()
    {
        return takeGuard() && !look(m_writer) && create(m_reader) && touch(m_reader) && m_keeper.begin() &&
               look(m_reader) && giveGuard();
    }

    bool leaveAsReader()
    {
        m_keeper.end();
        return remove(m_reader);
    }

    bool enterAsWriter()
    {
        return takeGuard() && list() && !look(m_writer) && list() && !look(m_writer) && touch(m_writer) &&
               m_keeper.begin() && look(m_writer) && giveGuard();
    }

    bool leaveAsWriter()
    {
        m_keeper.end();
        return remove(m_writer);
    }

private:
    std::size_t queue() const
    {
        for (std::size_t level = 0;; ++level) {
            if (look(m_levels.at(level)))
                continue;
            look(m_directory);
            pause();
            if (create(m_levels[level]))
                return level;
        }
    }

    void descend(std::size_t level) const
    {
        if (level > 0)
            pause();
        while (level > 0) {
            if (create(m_levels[level - 1])) {
                remove(m_levels[level--]);
            } else if (look(m_levels[level - 1])) {
                pause();
            }
        }
    }

    static bool look(const std::string& path)
    {
        struct stat status;
        return lstat(path.c_str(), &status) == 0;
    }

    static bool create(const std::string& path)
    {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        return file != -1 && close(file) == 0;
    }

    static bool touch(const std::string& path)
    {
        const std::uint32_t content = 1;
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        const bool isWritten = file != -1 && pwrite(file, &content, sizeof content, 0) == sizeof content;
        return file != -1 && close(file) == 0 && isWritten;
    }

    static bool remove(const std::string& path) { return unlink(path.c_str()) == 0; }

    bool list() const
    {
        DIR* const listing = opendir(m_directory.c_str());
        if (!listing)
            return false;
        while (readdir(listing)) {
        }
        return closedir(listing) == 0;
    }

    const std::string m_directory;
    std::vector<std::string> m_levels;
    const std::string m_writer;
    const std::string m_reader;
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

/// A step that failed would make the floor too low.
void require(bool isDone)
{
    if (!isDone)
        throw std::runtime_error("a step failed");
}

template <class Enter, class Leave>
Lock lockOf(const Enter& enter, const Leave& leave)
{
    return Lock{[=] {
                    require(enter());
                    return true;
                },
                [=] { require(leave()); }, &ownProcessorTime};
}

Lock makeLock(const std::string& wanted, const std::string& directory)
{
    const std::string kept = "kept-";
    const bool isKept = wanted.compare(0, kept.size(), kept) == 0;
    const std::string kind = isKept ? wanted.substr(kept.size()) : wanted;
    const auto steps = std::make_shared<Steps>(directory, isKept);
    if (kind == "exclusive")
        return lockOf([=] { return steps->takeGuard(); }, [=] { return steps->giveGuard(); });
    if (kind == "read")
        return lockOf([=] { return steps->enterAsReader(); }, [=] { return steps->leaveAsReader(); });
    if (kind == "write")
        return lockOf([=] { return steps->enterAsWriter(); }, [=] { return steps->leaveAsWriter(); });
    if (kind == "thread")
        return waitingThread();
    return lockOf(
        [] {
            Steps::pause();
            return true;
        },
        [] { return true; });
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> words = wordsOf(argc, argv);
    if (words.size() < 3) {
        std::cerr << "see the beginning of bare_steps_posix.cpp" << std::endl;
        return 2;
    }
    return carryOut(makeLock(words[0], words[1]), std::vector<std::string>(words.begin() + 2, words.end()));
}
