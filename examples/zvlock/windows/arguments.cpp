#include "examples/zvlock/arguments.h"

#include <memory>
#include <new>

#include <windows.h>

#include <shellapi.h>

namespace zorvel {
namespace zvlock {

std::vector<NativeText> argumentsOf(int, char**)
{
    int count = 0;
    wchar_t** const list = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!list)
        throw std::bad_alloc();
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(list, &LocalFree);
    return count > 0 ? std::vector<NativeText>(words.get() + 1, words.get() + count) : std::vector<NativeText>();
}

/// A character that is merely alike could name another directory.
std::string inCodePage(const NativeText& text)
{
    const int length = static_cast<int>(text.size());
    std::string bytes(4 * text.size(), '\0');
    const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), length, &bytes[0],
                                         static_cast<int>(bytes.size()), "?", nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

}  // namespace zvlock
}  // namespace zorvel
