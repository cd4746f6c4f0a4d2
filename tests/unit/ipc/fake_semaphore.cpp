#include "tests/unit/ipc/fake_semaphore.h"

#include "platform/semaphore.h"
#include "tests/support/system_facts.h"

#include <cstdint>

namespace zorvel {
namespace test {
namespace fake_semaphore {

namespace {

struct Script
{
    std::vector<std::string> calls;
    std::uintptr_t handles = 0;
    bool creates = true;
    unsigned long waitResult = platform::waitSucceeded;
    bool releases = true;
    int closeResult = 1;
};

Script script;

std::string nameOf(void* handle)
{
    return std::to_string(reinterpret_cast<std::uintptr_t>(handle));
}

void leaveLastError(bool failed)
{
    if (failed)
        failToOpenAFile();
    else
        clearLastError();
}

}  // namespace

void reset()
{
    script = Script();
}

std::vector<std::string> takeCalls()
{
    std::vector<std::string> calls;
    calls.swap(script.calls);
    return calls;
}

void refuseToCreate()
{
    script.creates = false;
}

void answerWaits(unsigned long result)
{
    script.waitResult = result;
}

void refuseToRelease()
{
    script.releases = false;
}

void answerCloses(int result)
{
    script.closeResult = result;
}

}  // namespace fake_semaphore
}  // namespace test

namespace platform {

using namespace test;
using test::fake_semaphore::script;

void* createSemaphore(const std::string& name, long initialCount, long maximumCount)
{
    script.calls.push_back("create " + name + ' ' + std::to_string(initialCount) + ' ' + std::to_string(maximumCount));
    fake_semaphore::leaveLastError(!script.creates);
    return script.creates ? reinterpret_cast<void*>(++script.handles) : nullptr;
}

unsigned long waitForSemaphore(void* handle, unsigned long milliseconds)
{
    script.calls.push_back("wait " + fake_semaphore::nameOf(handle) + ' ' + std::to_string(milliseconds));
    fake_semaphore::leaveLastError(script.waitResult == waitFailed);
    return script.waitResult;
}

bool releaseSemaphore(void* handle)
{
    script.calls.push_back("release " + fake_semaphore::nameOf(handle));
    fake_semaphore::leaveLastError(!script.releases);
    return script.releases;
}

int closeSemaphore(void* handle)
{
    script.calls.push_back("close " + fake_semaphore::nameOf(handle));
    fake_semaphore::leaveLastError(script.closeResult != 1);
    return script.closeResult;
}

}  // namespace platform
}  // namespace zorvel
