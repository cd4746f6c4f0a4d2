// zvCollapsePath.
//
// Input: codeset ('0' C, '1' Shift_JIS), a text that may be stretched ('0': it is not).

#include "fuzz/naive/canonical.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"

#include <zorvel/paths.h>

using namespace zorvel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseCodeset(input);
    const std::string text = fuzz::untilNul(fuzz::stretchedText(input, {250}));
    const std::string expected = naive::collapsed(text, isLead);

    fuzz::HeapText in = fuzz::HeapText::terminated(text);
    fuzz::HeapText out(260);
    fuzz::require(zvCollapsePath(out.data(), in.data()) == out.data(), "the buffer is returned");
    fuzz::requireSame(expected, std::string(out.data()), "collapsed");

    if (text.size() < 260) {
        fuzz::HeapText both = fuzz::HeapText::terminated(text, 260 - text.size());
        zvCollapsePath(both.data(), both.data());
        fuzz::requireSame(expected, std::string(both.data()), "collapsed in place");
    }
    return 0;
}
