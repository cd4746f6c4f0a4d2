/// A count in a directory that any number of processes share.
///
///   shared_counter DIRECTORY        prints the count
///   shared_counter DIRECTORY add    adds one and prints the count

#include <zorvel/dirlock.h>
#include <zorvel/errors.h>

#include <fstream>
#include <iostream>
#include <string>

namespace {

typedef zvDirectoryReadWriteLock Lock;

long countIn(const std::string& file)
{
    long count = 0;
    std::ifstream(file) >> count;
    return count;
}

/// Alone in the directory while it writes. The result reads: others may read as
/// well by then, and nobody has written in between.
Lock::ReadLock addOne(const Lock& lock, const std::string& file)
{
    Lock::WriteLock writer = lock.getWriteLock();
    if (writer.acquire(false)) {
        const long count = countIn(file) + 1;
        std::ofstream(file) << count << '\n';
    }
    return writer.downgrade();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return 2;
    const std::string file = std::string(argv[1]) + "/count";
    try {
        const Lock lock(argv[1], zvGetDefaultFSImp());
        Lock::ReadLock reader = lock.getReadLock();
        if (argc > 2)
            reader = addOne(lock, file);
        else
            reader.acquire(false);
        if (!reader.isAcquired())
            return 1;
        std::cout << countIn(file) << '\n';
        return 0;  // the reader's hold ends with its last handle
    } catch (const zvFileBasedLockError& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
