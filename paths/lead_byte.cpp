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
