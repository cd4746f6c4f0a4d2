// zvIsRootDir.
//
// Input: codeset ('0' C, '1' Shift_JIS), the text.

#include "fuzz/naive/separators.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"

#include <zorvel/paths.h>

using namespace zorvel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    fuzz::chooseCodeset(input);
    const std::string text = fuzz::untilNul(input.rest());
    fuzz::HeapText bytes = fuzz::HeapText::terminated(text);
    fuzz::requireSame(naive::isRoot(text), zvIsRootDir(bytes.data()), "zvIsRootDir");
    return 0;
}
