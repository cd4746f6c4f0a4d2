// What is prescribed for an acquire and release by one who is alone, and nothing else: the pause, the file operations,
// and for each file that is held a thread that waits; by the calls that are prescribed, on ready-made names.
//
//   locks_bare pauses|exclusive|read|write DIR cycles COUNT

#include "bench/locks/bare_locks.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cstdint>
#include <memory>
#include <string>

namespace {

using namespace zorvel::bench;

/// The prescribed thread, which can be interrupted and is joined, by bare calls: it has an event for the interruption
/// and starts when all is ready. It waits by what costs the system least.
class WaitingThread
{
public:
    WaitingThread()
        : m_interruption(CreateEventA(nullptr, TRUE, FALSE, nullptr)),
          m_thread(reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, &run, this, CREATE_SUSPENDED, nullptr)))
    {
        ResumeThread(m_thread);
    }

    ~WaitingThread()
    {
        AcquireSRWLockExclusive(&m_lock);
        m_ended = true;
        ReleaseSRWLockExclusive(&m_lock);
        WakeConditionVariable(&m_end);
        SetEvent(m_interruption);
        WaitForSingleObject(m_thread, INFINITE);
        CloseHandle(m_interruption);
        CloseHandle(m_thread);
    }

    bool isRunning() const { return m_interruption && m_thread; }

private:
    static unsigned __stdcall run(void* self)
    {
        static_cast<WaitingThread*>(self)->wait();
        return 0;
    }

    void wait()
    {
        AcquireSRWLockExclusive(&m_lock);
        while (!m_ended)
            SleepConditionVariableSRW(&m_end, &m_lock, INFINITE, 0);
        ReleaseSRWLockExclusive(&m_lock);
    }

    SRWLOCK m_lock = SRWLOCK_INIT;
    CONDITION_VARIABLE m_end = CONDITION_VARIABLE_INIT;
    bool m_ended = false;
    const HANDLE m_interruption;
    const HANDLE m_thread;
};

class Steps
{
public:
    explicit Steps(const std::string& directory)
        : m_directory(directory),
          m_guard(directory + "/.deploy_lock.0"),
          m_writer(directory + "\\.deploy_write_lock"),
          m_reader(directory + "\\.deploy_read_lock.1"),
          m_readers(directory + "\\.deploy_read_lock.*")
    {
    }

    static bool pause()
    {
        Sleep(5);
        return true;
    }

    bool takeGuard()
    {
        return !look(m_guard) && look(m_directory) && pause() && create(m_guard) && touch(m_guard) &&
               begin(m_guardKeeper) && look(m_guard);
    }

    bool giveGuard()
    {
        m_guardKeeper.reset();
        return remove(m_guard.c_str()) == 0;
    }

    bool enterAsReader()
    {
        return takeGuard() && !find(m_writer) && create(m_reader) && touch(m_reader) && begin(m_keeper) &&
               look(m_reader) && giveGuard();
    }

    bool leaveAsReader()
    {
        m_keeper.reset();
        return remove(m_reader.c_str()) == 0;
    }

    bool enterAsWriter()
    {
        return takeGuard() && !find(m_readers) && !find(m_writer) && !find(m_readers) && !find(m_writer) &&
               touch(m_writer) && begin(m_keeper) && look(m_writer) && giveGuard();
    }

    bool leaveAsWriter()
    {
        m_keeper.reset();
        return remove(m_writer.c_str()) == 0;
    }

private:
    typedef std::unique_ptr<WaitingThread> Keeper;

    static bool begin(Keeper& keeper)
    {
        keeper.reset(new WaitingThread);
        return keeper->isRunning();
    }

    static bool look(const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

    static bool find(const std::string& pattern)
    {
        WIN32_FIND_DATAA found;
        const HANDLE search = FindFirstFileA(pattern.c_str(), &found);
        return search != INVALID_HANDLE_VALUE && FindClose(search);
    }

    static int open(const std::string& path, int flags)
    {
        return _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_BINARY | _O_NOINHERIT | flags, _S_IREAD | _S_IWRITE);
    }

    static bool create(const std::string& path)
    {
        const int file = open(path, _O_EXCL);
        return file != -1 && _close(file) == 0;
    }

    static bool touch(const std::string& path)
    {
        const std::uint32_t content = 1;
        const int file = open(path, 0);
        const bool isWritten = file != -1 && _write(file, &content, sizeof content) == sizeof content;
        return file != -1 && _close(file) == 0 && isWritten;
    }

    const std::string m_directory;
    const std::string m_guard;
    const std::string m_writer;
    const std::string m_reader;
    const std::string m_readers;
    Keeper m_guardKeeper;
    Keeper m_keeper;
};

}  // namespace

int main(int argc, char** argv)
{
    return carryOutBare(argc, argv, &bareLock<Steps>);
}
