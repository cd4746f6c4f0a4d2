// The functions that write separators: zvAddPathSep, zvAddPathSepAt, zvReplacePathSeps, zvWashPathSep. They look at
// bytes and not at characters, whatever the lead bytes are.
//
// Input: lead bytes ('0' none, '1' Shift_JIS, '2' every byte, '3' and '4' the library's own test in C and in
// Shift_JIS), an index, a replacement, the text.

#include "fuzz/naive/separators.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/lead_bytes.h"
#include "fuzz/support/require.h"

using namespace zorvel;

namespace {

void checkAdd(const std::string& text)
{
    std::string expected = text;
    if (!expected.empty() && naive::isSeparator(expected.back()))
        expected.pop_back();
    expected += '\\';
    fuzz::HeapText bytes = fuzz::HeapText::terminated(text, expected.size() - text.size());
    fuzz::require(zvAddPathSep(bytes.data()), "zvAddPathSep");
    fuzz::requireSame(expected + '\0', bytes.str(), "zvAddPathSep");
}

void checkAddAt(const std::string& text, int index)
{
    std::string expected = text;
    const std::size_t at = static_cast<std::size_t>(index);
    const bool inserts = index >= 0 && at <= text.size() && (index == 0 || !naive::isSeparator(text[at - 1]));
    if (inserts)
        expected.insert(at, 1, '\\');
    fuzz::HeapText bytes = fuzz::HeapText::terminated(text, expected.size() - text.size());
    fuzz::requireSame(inserts ? 1 : 0, zvAddPathSepAt(bytes.data(), index), "zvAddPathSepAt");
    fuzz::requireSame(expected + '\0', bytes.str(), "zvAddPathSepAt");
}

void checkReplace(const std::string& text, char replacement)
{
    std::string expected = text;
    for (char& byte : expected)
        byte = byte == '\\' || byte == '/' ? replacement : byte;
    fuzz::HeapText bytes = fuzz::HeapText::terminated(text);
    zvReplacePathSeps(bytes.data(), replacement);
    fuzz::requireSame(expected + '\0', bytes.str(), "zvReplacePathSeps");

    fuzz::HeapText washed = fuzz::HeapText::terminated(text);
    zvWashPathSep(washed.data());
    fuzz::requireSame(naive::washed(text) + '\0', washed.str(), "zvWashPathSep");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    fuzz::chooseLeadBytes(input);
    const int index = static_cast<int>(input.choice(256));
    const char replacement = static_cast<char>(input.byte());
    const std::string text = fuzz::untilNul(input.rest());
    checkAdd(text);
    checkAddAt(text, index == 255 ? -1 : index % static_cast<int>(text.size() + 2));
    checkReplace(text, replacement);
    return 0;
}
