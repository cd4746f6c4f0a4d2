// The names of semaphores: escaped so that no two are alike and each can be read back.
//
// Input: a name that may be stretched ('0': it is not).

#include "fuzz/naive/semaphore.h"
#include "fuzz/support/captured_errors.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"

#include <zorvel/ipc.h>

using namespace zorvel;

namespace {

/// Whatever the escaping is, what can be undone gives no two names one form.
std::string unescaped(const std::string& escaped)
{
    std::string name;
    for (std::size_t i = 0; i < escaped.size(); ++i) {
        fuzz::require(escaped[i] != '\\' && escaped[i] != ':', "no '\\' and no ':'");
        if (escaped[i] != '_') {
            name += escaped[i];
            continue;
        }
        ++i;
        fuzz::require(i < escaped.size(), "'_' is followed by something");
        const char kind = escaped[i];
        fuzz::require(kind == '_' || kind == 's' || kind == 'c', "'_' is followed by '_', 's' or 'c'");
        name += kind == '_' ? '_' : kind == 's' ? '\\' : ':';
    }
    return name;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const std::string name = fuzz::stretchedText(input, {1275});
    fuzz::CapturedErrors errors;
    zvSemaphoreIPC semaphore(name, 3, false);

    const std::string escaped = naive::escapedSemaphoreName(name);
    fuzz::requireSame(escaped, semaphore.Name(), "escaped");
    fuzz::requireSame(name, unescaped(semaphore.Name()), "read back");
    fuzz::requireSame(naive::longNameMessage(escaped), errors.text(), "messages");
    fuzz::require(!semaphore.IsValid() && !semaphore.OwnsLock() && semaphore.LastError() == 0, "nothing is open");
    fuzz::require(!semaphore.TryAcquire() && !semaphore.Release() && semaphore.LastError() == 0, "nothing to use");
    return 0;
}
