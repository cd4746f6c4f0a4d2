#include <zorvel/fsutil.h>

#include "platform/files.h"
#include "platform/tick_count.h"
#include "suite/qx.h"

#include <zorvel/paths.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const std::size_t pathSize = 2562;
const std::uint32_t nameCount = 1000000;

/// Where the directory is kept, with its separator.
class TemporaryDirectory
{
public:
    TemporaryDirectory()
    {
        if (!take(std::getenv("TEMP")) && !take(std::getenv("TMP")) && !takeCurrentDirectory())
            std::strcpy(m_path, "\\tmp");
        // Looks at the last byte alone: behind a double-byte character that ends in 0x5C none is added. Callers write
        // the same name everywhere.
        zvAddPathSep(m_path);
    }

    const char* path() const { return m_path; }

private:
    /// A value that leaves no room for the separator is not cut, because it
    /// would name another directory.
    bool take(const char* value)
    {
        const std::size_t length = value ? strnlen(value, pathSize) : pathSize;
        if (length > pathSize - 2)
            return false;
        std::memcpy(m_path, value, length + 1);
        return true;
    }

    /// With room left for the separator.
    bool takeCurrentDirectory() { return qxGetcwd(m_path, pathSize - 1) != nullptr; }

    char m_path[pathSize];
};

/// The low 32 bits of an address.
std::uint32_t lowBits(const void* address)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address));
}

/// Where the search for a free number begins: spread over the numbers by the
/// clock, by the calls of this process, and by the buffers of its threads.
std::uint32_t seedFor(const char* buffer)
{
    // Two threads may draw one number: the plain step is enough, because the buffer's address keeps them apart.
    static std::atomic<std::uint32_t> counter(0);
    const std::uint32_t number = counter.load(std::memory_order_relaxed) + 1;
    counter.store(number, std::memory_order_relaxed);
    const std::uint32_t shiftedAsSigned = static_cast<std::uint32_t>(static_cast<std::int32_t>(lowBits(buffer)) >> 21);
    return (number + zorvel::platform::tickCount()) * 0x20001u + shiftedAsSigned + (lowBits(buffer) << 7);
}

}  // namespace

const char* zvGetTempDir()
{
    static const TemporaryDirectory directory;
    return directory.path();
}

/// No limit on the attempts, and no reservation: who asks creates the file
/// exclusively and asks again.
char* zvGetTempName(char* buffer)
{
    if (!buffer)
        return nullptr;
    std::uint32_t seed = seedFor(buffer);
    std::strcpy(buffer, zvGetTempDir());
    char* const name = buffer + std::strlen(buffer);
    do {
        seed = (seed + 1) % nameCount;
        (void)std::snprintf(name, sizeof "tp000000", "tp%06lu", static_cast<unsigned long>(seed));
    } while (zorvel::platform::entryKind(buffer) != zorvel::platform::EntryKind::none);
    return buffer;
}
