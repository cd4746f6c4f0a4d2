// The functions that find separators: zvIsPathSep, zvIsPathSepByPtr, zvFindLastSep, zvFindLastNotSep.
//
// Input: lead bytes ('0' none, '1' Shift_JIS, '2' every byte, '3' and '4' the library's own test in C and in
// Shift_JIS), an index, the text.

#include "fuzz/naive/separators.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/lead_bytes.h"
#include "fuzz/support/require.h"

using namespace zorvel;

namespace {

std::size_t indexOf(const char* found, const char* begin)
{
    return found == nullptr ? std::string::npos : static_cast<std::size_t>(found - begin);
}

/// From an index to the end, the last byte included.
void checkRange(const std::string& text, naive::LeadTest isLead)
{
    fuzz::HeapText bytes = fuzz::HeapText::exact(text);
    const char* const first = bytes.data();
    const char* const last = first + text.size() - 1;
    fuzz::requireSame(naive::lastSeparator(text, isLead), indexOf(zvFindLastSep(first, last), first), "last separator");
    fuzz::requireSame(naive::lastNotSeparator(text, isLead), indexOf(zvFindLastNotSep(first, last), first),
                      "last that is none");
    for (std::size_t i = 0; i < text.size(); ++i)
        fuzz::requireSame(naive::separatesAt(text, i, isLead), zvIsPathSepByPtr(first + i, first), "by pointer");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseLeadBytes(input);
    const std::size_t index = input.choice(256);
    const std::string text = input.rest();

    const int character = static_cast<int>(index << 24 | text.size() << 8) + (text.empty() ? 0 : text[0]);
    fuzz::requireSame(character == 92 || character == 47, zvIsPathSep(character), "a character");
    if (text.empty())
        return 0;
    checkRange(text, isLead);
    checkRange(text.substr(0, index % text.size() + 1), isLead);

    fuzz::HeapText bytes = fuzz::HeapText::exact(text);
    char* const begin = bytes.data();
    char* const inside = begin + index % text.size();
    fuzz::requireSame(text.find_first_of("\\/") == 0, zvIsPathSepByPtr(begin, inside), "start not before the byte");
    if (inside != begin)
        fuzz::require(!zvFindLastSep(inside, begin) && !zvFindLastNotSep(inside, begin), "empty range");
    fuzz::requireSame(bytes.str(), text, "nothing is written");
    return 0;
}
