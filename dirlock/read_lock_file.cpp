#include "dirlock/detail/read_lock_file.h"

#include "dirlock/detail/claimed_lock_file.h"

#include <boost/thread/thread.hpp>

#include <string>

namespace zorvel {
namespace dirlock {

const char* const readLockPrefix = ".deploy_read_lock.";

std::pair<bool, zvPathString> createUniqueReadLockFile(const zvPathString& directory,
                                                       const boost::shared_ptr<zvAbstractFS>& fs,
                                                       UniqueNumbers& numbers, std::uint32_t attempts)
{
    zvPathString name;
    for (; attempts > 0; --attempts) {
        const std::string file = readLockPrefix + std::to_string(numbers.next());
        name = zvPathString(directory, file.c_str());
        if (fs->createFileExclusive(name.c_str()))
            return {true, name};
        boost::this_thread::interruption_point();
    }
    return {false, name};
}

boost::shared_ptr<zvLockFile> makeReadLockFile(const zvPathString& directory,
                                               const boost::posix_time::time_duration& interval,
                                               const boost::shared_ptr<zvAbstractFS>& fs)
{
    const std::pair<bool, zvPathString> created =
        createUniqueReadLockFile(directory, fs, UniqueNumbers::ofProcess(), UniqueNumbers::modulus);
    if (!created.first)
        return boost::shared_ptr<zvLockFile>();
    return makeClaimedLockFile(created.second, interval, fs);
}

}  // namespace dirlock
}  // namespace zorvel
