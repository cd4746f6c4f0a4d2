// zvPathString: assigning through the standard normaliser, and without it.
//
// Input: lead bytes ('0' none, '1' Shift_JIS, '2' every byte, '3' and '4' the library's own test in C and in
// Shift_JIS), codeset but with the last two ('0' C, '1' Shift_JIS), the text.

#include "fuzz/naive/path_text.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/lead_bytes.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"

using namespace zorvel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseLeadBytes(input);
    const naive::LeadTest isCodesetLead = fuzz::testIsOwn() ? isLead : fuzz::chooseCodeset(input);
    const std::string text = input.rest();
    const std::string expected = naive::normalized(text, isLead, isCodesetLead);
    fuzz::HeapText bytes = fuzz::HeapText::exact(text);
    fuzz::HeapText terminated = fuzz::HeapText::terminated(fuzz::untilNul(text));

    zvPathString path;
    path.assign(bytes.data(), text.size());
    fuzz::requireSame(expected, std::string(path), "assigned");
    path.assign(std::string(text));
    fuzz::requireSame(expected, std::string(path), "assigned again");
    path = terminated.data();
    fuzz::requireSame(naive::normalized(fuzz::untilNul(text), isLead, isCodesetLead), std::string(path),
                      "assigned text");

    // What is put there past the normaliser stays as it is until something is assigned.
    static_cast<std::string&>(path) = text;
    path.setNormalizer(zvPathString::normalizer_ptr());
    const zvPathString copy(path);
    fuzz::requireSame(text, std::string(copy), "copied");
    path.assign(path.data(), path.size());
    fuzz::requireSame(expected, std::string(path), "assigned to itself");
    return 0;
}
