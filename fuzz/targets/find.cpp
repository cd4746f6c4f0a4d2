// zvPathString: the search by character.
//
// Input: lead bytes ('0' none, '1' Shift_JIS, '2' every byte, '3' and '4' the library's own test in C and in
// Shift_JIS), the index, the text that is searched for, '|', the text that is searched.

#include "fuzz/support/heap_text.h"
#include "fuzz/support/lead_bytes.h"
#include "fuzz/support/require.h"

using namespace zorvel;

namespace {

/// A path string that holds the bytes as they are.
zvPathString plainPath(const std::string& text)
{
    zvPathString path;
    static_cast<std::string&>(path) = text;
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseLeadBytes(input);
    const std::size_t from = input.choice(256);
    const std::string wanted = input.text();
    const zvPathString path = plainPath(input.rest());
    fuzz::HeapText wantedText = fuzz::HeapText::terminated(fuzz::untilNul(wanted));

    fuzz::requireSame(naive::find(path, wanted, from, isLead), path.find(zvMBCSSafeString(wanted), from), "a string");
    fuzz::requireSame(naive::find(path, fuzz::untilNul(wanted), from, isLead), path.find(wantedText.data(), from),
                      "a text");
    const char byte = wanted.empty() ? '\0' : wanted[0];
    fuzz::requireSame(naive::find(path, std::string(1, byte), from, isLead), path.find(byte, from), "a character");
    return 0;
}
