#include <zorvel/paths.h>

namespace {

/// A plain pointer, as documented: installed once, before threads use paths.
zvMultiByteLeadTest installedTest = &qxIsMultiByteLead;

}  // namespace

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
