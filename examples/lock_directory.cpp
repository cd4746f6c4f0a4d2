#include <zorvel/zorvel.h>

#include <iostream>

int main(int argc, char** argv)
{
    const char* const directory = argc > 1 ? argv[1] : ".";
    try {
        zvDirectoryExclusiveLock lock(directory, "lock_directory", zvGetDefaultFSImp());
        if (!lock.acquire(boost::posix_time::seconds(10), false)) {
            std::cerr << directory << " is still in use after 10 seconds\n";
            return 1;
        }
        std::cout << "nobody else works in " << directory << " now\n";
        lock.release();
        return 0;
    } catch (const zvFileBasedLockError& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
