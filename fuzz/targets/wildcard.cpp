// The wild cards of the Linux side.
//
// Input: codeset ('0' C, '1' Shift_JIS), a component, '|', a name.

#include "fuzz/naive/wildcard.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"
#include "platform/posix/wildcard.h"

using namespace zorvel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseCodeset(input);
    const std::string component = fuzz::untilNul(input.text());
    const std::string name = fuzz::untilNul(input.rest());
    fuzz::HeapText componentText = fuzz::HeapText::terminated(component);
    fuzz::HeapText nameText = fuzz::HeapText::terminated(name);

    fuzz::requireSame(naive::hasWildcards(component), platform::posix::hasWildcards(componentText.data()),
                      "whether there are wild cards");
    fuzz::requireSame(naive::matchesWildcards(component, name, isLead),
                      platform::posix::matchesWildcards(componentText.data(), nameText.data()), "whether it matches");
    return 0;
}
