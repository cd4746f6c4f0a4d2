#include "tests/unit/lockfile/seam_faults.h"

#include "platform/directory.h"
#include "platform/files.h"

#include <limits>
#include <mutex>

namespace zorvel {
namespace test {
namespace seam_faults {

namespace {

struct Plan
{
    int code = 0;
    std::size_t left = 0;
    std::size_t calls = 0;
};

std::mutex guard;
Plan plans[operationCount];

/// The code that this call is to fail with; 0: it is to be done.
int next(Operation operation)
{
    const std::lock_guard<std::mutex> lock(guard);
    Plan& plan = plans[operation];
    ++plan.calls;
    if (plan.left == 0)
        return 0;
    --plan.left;
    return plan.code;
}

}  // namespace

void failNext(Operation operation, int code, std::size_t times)
{
    const std::lock_guard<std::mutex> lock(guard);
    plans[operation].code = code;
    plans[operation].left = times;
}

void failAlways(Operation operation, int code)
{
    failNext(operation, code, std::numeric_limits<std::size_t>::max());
}

void reset()
{
    const std::lock_guard<std::mutex> lock(guard);
    for (Plan& plan : plans)
        plan = Plan();
}

std::size_t calls(Operation operation)
{
    const std::lock_guard<std::mutex> lock(guard);
    return plans[operation].calls;
}

}  // namespace seam_faults
}  // namespace test
}  // namespace zorvel

using namespace zorvel::platform;
namespace faults = zorvel::test::seam_faults;

int realRemoveFile(const char* path) __asm__("__real__ZN6zorvel8platform10removeFileEPKc");
int realModificationTime(const char* path, std::int64_t& seconds) __asm__(ZORVEL_REAL_TIME);
int realOpen(WritableFile* self, const char* path, OpenMode mode)
    __asm__("__real__ZN6zorvel8platform12WritableFile4openEPKcNS0_8OpenModeE");
int realSearch(DirectorySearch* self, const char* pattern)
    __asm__("__real__ZN6zorvel8platform15DirectorySearch4openEPKc");
int realSearchEnd(const DirectorySearch* self) __asm__("__real__ZNK6zorvel8platform15DirectorySearch4codeEv");
int realWrite(WritableFile* self, const void* data, std::size_t size) __asm__(ZORVEL_REAL_WRITE);
int realFlush(WritableFile* self) __asm__("__real__ZN6zorvel8platform12WritableFile5flushEv");

int wrappedFlush(WritableFile* self) __asm__("__wrap__ZN6zorvel8platform12WritableFile5flushEv");
int wrappedRemoveFile(const char* path) __asm__("__wrap__ZN6zorvel8platform10removeFileEPKc");
int wrappedModificationTime(const char* path, std::int64_t& seconds) __asm__(ZORVEL_WRAPPED_TIME);
int wrappedOpen(WritableFile* self, const char* path, OpenMode mode)
    __asm__("__wrap__ZN6zorvel8platform12WritableFile4openEPKcNS0_8OpenModeE");
int wrappedSearch(DirectorySearch* self, const char* pattern)
    __asm__("__wrap__ZN6zorvel8platform15DirectorySearch4openEPKc");
int wrappedSearchEnd(const DirectorySearch* self) __asm__("__wrap__ZNK6zorvel8platform15DirectorySearch4codeEv");
int wrappedWrite(WritableFile* self, const void* data, std::size_t size) __asm__(ZORVEL_WRAPPED_WRITE);

int wrappedRemoveFile(const char* path)
{
    const int code = faults::next(faults::removeFile);
    return code != 0 ? code : realRemoveFile(path);
}

int wrappedModificationTime(const char* path, std::int64_t& seconds)
{
    const int code = faults::next(faults::modificationTime);
    return code != 0 ? code : realModificationTime(path, seconds);
}

int wrappedFlush(WritableFile* self)
{
    const int code = faults::next(faults::flush);
    return code != 0 ? code : realFlush(self);
}

int wrappedOpen(WritableFile* self, const char* path, OpenMode mode)
{
    const int code = faults::next(faults::open);
    return code != 0 ? code : realOpen(self, path, mode);
}

int wrappedWrite(WritableFile* self, const void* data, std::size_t size)
{
    const int code = faults::next(faults::write);
    return code != 0 ? code : realWrite(self, data, size);
}

int wrappedSearch(DirectorySearch* self, const char* pattern)
{
    const int code = faults::next(faults::search);
    return code != 0 ? code : realSearch(self, pattern);
}

int wrappedSearchEnd(const DirectorySearch* self)
{
    const int code = faults::next(faults::searchEnd);
    return code != 0 ? code : realSearchEnd(self);
}
