#include <zorvel/paths.h>

#include "paths/lead_bytes.h"
using zorvel::paths::installedTest;

zvMultiByteLeadTest zorvel::paths::installedTest = &qxIsMultiByteLead;

bool zvIsMultiByteLead(unsigned char byte)
{
    return installedTest != nullptr && installedTest(byte);
}

zvMultiByteLeadTest zvSetIsMultiByteLead(zvMultiByteLeadTest test)
{
    const zvMultiByteLeadTest previous = installedTest;
    installedTest = test;
    return previous;
}

namespace zorvel {
namespace paths {

bool isSecondByte(const char* start, const char* p, const platform::LeadBytes& leads)
{
    const char* first = p;
    while (first != start && leads.of[static_cast<unsigned char>(first[-1])])
        --first;
    return (p - first) % 2 != 0;
}

}  // namespace paths
}  // namespace zorvel
