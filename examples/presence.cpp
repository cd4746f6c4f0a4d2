/// Tells whether somebody is at work, by a file that is kept fresh as long as
/// somebody is. Who is alone makes the file, and is at work until Enter is
/// pressed. A file that was not refreshed for 30 seconds is one of the dead.
///
///   presence FILE

#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

#include <boost/date_time/posix_time/posix_time.hpp>

#include <iostream>

namespace {

using boost::posix_time::seconds;

void work(const char* name)
{
    const zvLockFile file(name, seconds(1), zvGetDefaultFSImp());  // refreshed every second, removed at the end
    std::cout << "at work" << std::endl;
    std::cin.get();
}

bool isStale(const char* name)
{
    const zvPathString directory = zvPathString(name).directoryPart();
    zvLockFileIsStale isStale(directory.empty() ? zvPathString(".") : directory, zvGetDefaultFSImp());
    return isStale(name, 30, boost::posix_time::microsec_clock::local_time() + seconds(1));
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "usage: presence FILE\n";
        return 2;
    }
    try {
        if (zvGetDefaultFSImp()->createFileExclusive(argv[1]))
            work(argv[1]);
        else
            std::cout << (isStale(argv[1]) ? "somebody died at work\n" : "somebody else is at work\n");
        return 0;
    } catch (const zvFileBasedLockError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
