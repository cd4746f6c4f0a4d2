#pragma once

#include "platform/codepage.h"
#include "suite/lead_bytes.h"

#include <zorvel/paths.h>

namespace zorvel {
namespace paths {

/// A plain pointer, as documented: installed once, before threads use paths.
ZORVEL_LOCAL extern zvMultiByteLeadTest installedTest;

/// Whether the installed lead-byte test is the code page's own, of which is known that it gives one byte one answer
/// and that no byte below 0x80 is a lead byte: texts may then be looked at from any side. A test of the application's
/// own is asked for one character after another.
inline bool testIsOfCodePage()
{
    return installedTest == &qxIsMultiByteLead && suite::knowsLeadBytes;
}

/// What that test answers, for all bytes.
inline const platform::LeadBytes& leadBytesOfCodePage()
{
    return suite::leadBytes();
}

/// Whether the byte at p is the second one of a character of the text that begins at start. Only the lead bytes right
/// before it can tell: the first of them begins a character, whatever stands before it.
inline bool isSecondByte(const char* start, const char* p, const platform::LeadBytes& leads)
{
    const char* first = p;
    while (first != start && leads.of[static_cast<unsigned char>(first[-1])])
        --first;
    return (p - first) % 2 != 0;
}

/// The same by the code page, which has to be asked only behind a byte from 0x80.
inline bool isSecondByte(const char* start, const char* p)
{
    return p != start && (p[-1] & 0x80) != 0 && isSecondByte(start, p, leadBytesOfCodePage());
}

}  // namespace paths
}  // namespace zorvel
