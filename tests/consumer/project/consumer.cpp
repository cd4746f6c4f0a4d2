#include <zorvel/zorvel.h>

#include <boost/thread/condition_variable.hpp>
#include <boost/thread/lock_guard.hpp>
#include <boost/thread/thread.hpp>

#include <iostream>
#include <random>
#include <string>

/// What crosses the edge of the shared library: objects, exceptions, calls back,
/// and the interruption of a thread that waits inside it.
namespace {

const boost::posix_time::time_duration tenSeconds = boost::posix_time::seconds(10);

bool takesTheDirectory(zvDirectoryExclusiveLock& lock)
{
    return lock.acquire(tenSeconds, false);
}

bool catchesByType()
{
    zvDirectoryExclusiveLock lock("no such directory", "consumer", zvGetDefaultFSImp());
    try {
        lock.acquire(tenSeconds, false);
    } catch (const zvNoSuchDirectory& error) {
        return std::string(error.what()).find("no such directory") != std::string::npos;
    }
    return false;
}

/// A template of the headers, and a virtual function that the library calls.
bool walks(const std::string& directory)
{
    std::string found;
    const auto keep = [&](const char* path) { found += path; };
    const zvStringProcedureAdapter<decltype(keep)> files(keep);
    const zvPathString pattern(zvPathString(directory), "*");
    const int calls = zvFindMatchingFilesAndDirs(pattern.c_str(), files, zvIgnoreString(), 0, false);
    return calls == 1 && pattern.find("\\*") != std::string::npos && found.find("lock") != std::string::npos;
}

/// A function of the program, called on a thread of the library.
bool isCalledByATimer()
{
    boost::mutex mutex;
    boost::condition_variable changed;
    bool called = false;
    const boost::shared_ptr<zvTimerTask> timer = zvSetTimer(
        [&] {
            const boost::lock_guard<boost::mutex> guard(mutex);
            called = true;
            changed.notify_one();
        },
        boost::posix_time::milliseconds(1), false);
    boost::unique_lock<boost::mutex> guard(mutex);
    const bool inTime = changed.timed_wait(guard, tenSeconds, [&] { return called; });
    guard.unlock();
    timer->cancel();
    return inTime;
}

bool takesASemaphore()
{
    zvSemaphoreIPC semaphore("zorvel consumer " + std::to_string(std::random_device{}()), 1, false);
    return semaphore.Open() && semaphore.TryAcquire() && semaphore.Release();
}

/// The directory is held by another object, so the thread waits until it is
/// interrupted.
bool isInterrupted(const std::string& directory)
{
    bool interrupted = false;
    boost::thread waiting([&] {
        zvDirectoryExclusiveLock lock(directory, "waiting", zvGetDefaultFSImp());
        try {
            lock.acquire(boost::posix_time::pos_infin, false);
        } catch (const boost::thread_interrupted&) {
            interrupted = true;
        }
    });
    waiting.interrupt();
    waiting.join();
    return interrupted;
}

int report(const char* what, bool done)
{
    std::cout << what << ": " << (done ? "yes" : "NO") << std::endl;
    return done ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string directory = argc > 1 ? argv[1] : ".";
    zvDirectoryExclusiveLock lock(directory, "consumer", zvGetDefaultFSImp());
    int failures = report("takes the directory", takesTheDirectory(lock));
    failures += report("catches an exception of the library by its type", catchesByType());
    failures += report("interrupts a thread that waits in the library", isInterrupted(directory));
    failures += report("walks the directory", walks(directory));
    failures += report("is called by a timer", isCalledByATimer());
    failures += report("takes a semaphore", takesASemaphore());
    failures += report("frees the directory", lock.release());
    return failures;
}
