#include <zorvel/zorvel.h>

#include <boost/thread/thread.hpp>

#include <iostream>
#include <string>

/// What crosses the edge of the shared library: objects, exceptions, and the
/// interruption of a thread that waits inside it.
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
    failures += report("frees the directory", lock.release());
    return failures;
}
