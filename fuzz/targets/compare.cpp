// zvMBCSSafeString: the operators == and !=.
//
// Input: lead bytes ('0' none, '1' Shift_JIS, '2' every byte, '3' and '4' the library's own test in C and in
// Shift_JIS), a text, '|', another text.

#include "fuzz/support/heap_text.h"
#include "fuzz/support/lead_bytes.h"
#include "fuzz/support/require.h"

using namespace zorvel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseLeadBytes(input);
    const zvMBCSSafeString left(input.text());
    const zvMBCSSafeString right(input.rest());
    fuzz::HeapText rightText = fuzz::HeapText::terminated(fuzz::untilNul(right));

    const bool same = naive::sameCharacters(left, right, isLead);
    fuzz::requireSame(same, left == right, "string == string");
    fuzz::requireSame(same, right == left, "string == string, other way round");
    fuzz::requireSame(!same, left != right, "string != string");
    fuzz::requireSame(same, left == std::string(right), "string == plain string");

    const bool sameText = naive::sameCharacters(left, fuzz::untilNul(right), isLead);
    fuzz::requireSame(sameText, left == rightText.data(), "string == text");
    fuzz::requireSame(sameText, rightText.data() == left, "text == string");
    fuzz::requireSame(!sameText, left != rightText.data(), "string != text");
    fuzz::requireSame(!sameText, rightText.data() != left, "text != string");
    return 0;
}
