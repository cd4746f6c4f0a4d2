// Objects for a debugger to look at. Locks the folder that it is given.
#include <zorvel/zorvel.h>

#include <string>

namespace {

typedef zvPathString::normalizer_ptr Normalizer;

/// Where the debugger stops.
__attribute__((noinline)) void look(const void* object)
{
    asm volatile("" : : "r"(object) : "memory");
}

}  // namespace

int main()
{
    const boost::shared_ptr<zvAbstractFS> fs = zvGetDefaultFSImp();
    const zvMBCSSafeString text("a \\ text");
    const zvMBCSSafeString longText(std::string(300, 'x'));
    const zvPathString path(" C:/dir//name ");
    const zvPathString& reference = path;
    zvPathString changed(path);
    changed.append("//more");
    zvPathString own;
    own.setNormalizer(Normalizer(new zvWellFormedPathNormalizer<zvPathString>));
    own.assign("a//b");

    zvDirectoryExclusiveLock once("locked/once", "first", fs);
    zvDirectoryExclusiveLock twice("locked/twice", "second", fs);
    const zvDirectoryExclusiveLock never("locked/never", "third", fs);
    const zvLockFile file("locked/file", boost::posix_time::milliseconds(2500), fs);
    const zvLockFile plain("locked/plain", zvLockFile::NO_REFRESH, fs);
    const zvDirectoryReadWriteLock both("locked/both", fs);
    zvDirectoryReadWriteLock::ReadLock reader = both.getReadLock();
    const zvDirectoryReadWriteLock::WriteLock writer = both.getWriteLock();
    if (!once.acquire(true) || !twice.acquire(false) || !twice.acquire(false) || !reader.acquire(false))
        return 1;
    look(&reference);
    return 0;
}
